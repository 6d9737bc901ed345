#pragma once

/// An X server of a bench's own, looked at and played on from outside the program that it shows.
/// Whatever cannot be had ends the bench with a sentence. The library's names stay in the source.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace qv::bench {

/// A program that is ended with the object.
class Program {
 public:
  explicit Program(const std::vector<std::string>& command);
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  /// Seconds of a processor that it has used.
  double processorSeconds() const;
  /// The most memory that it has held so far, in MB.
  double largestMegabytes() const;

 private:
  int process_ = 0;
};

/// On the first display number that is free, as the display of this program and those that follow.
class XServer {
 public:
  static constexpr int RootWidth = 1280, RootHeight = 960;

  XServer();
  ~XServer();
  XServer(const XServer&) = delete;
  XServer& operator=(const XServer&) = delete;

  /// Looks at the middle of the screen until it has the colour, or has it no more.
  void await(uint32_t colour, bool there) const;

  // As a hand on the devices; what was done is with the server on return.
  void movePointer(int x, int y) const;
  void leftButton(bool down) const;
  void returnKey(bool down) const;

 private:
  struct Connection;
  uint32_t middle() const;

  std::unique_ptr<Program> server_;
  std::unique_ptr<Connection> connection_;
};

}  // namespace qv::bench
