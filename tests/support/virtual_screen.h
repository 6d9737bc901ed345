#pragma once

/// An X server that shows nothing to anybody, and a window manager on it: what tests need to look
/// at a window from outside.

#include <string>
#include <vector>

#include <sys/types.h>

#include "tests/support/test_platform.h"

namespace qv::testing {

inline constexpr int RootWidth = 1280, RootHeight = 960;
/// White: what a window leaves alone is not taken for what it painted black.
inline constexpr uint32_t RootColour = 0xFFFFFF;

bool installed(const char* program);

/// A program in the background with its output thrown away; ended with the object.
class BackgroundProgram {
 public:
  explicit BackgroundProgram(const std::vector<std::string>& command);
  ~BackgroundProgram();
  BackgroundProgram(const BackgroundProgram&) = delete;
  BackgroundProgram& operator=(const BackgroundProgram&) = delete;
  /// The exit status once it has ended by itself within the limit, else -1.
  int awaitEnd(int limitMillis);

 private:
  pid_t process_ = -1;
};

/// An X server of the test's own, on the first display number that is free.
class VirtualScreen {
 public:
  VirtualScreen();
  ~VirtualScreen();
  VirtualScreen(const VirtualScreen&) = delete;
  VirtualScreen& operator=(const VirtualScreen&) = delete;
  const std::string& name() const { return name_; }  ///< ":N", or empty when it did not start
  /// Makes it the display of this process and its children.
  void use() const;

 private:
  pid_t server_ = -1;
  std::string name_;
};

/// openbox on the display that is in use; `started` tells whether it came up.
class WindowManager {
 public:
  WindowManager();
  bool started() const { return started_; }

 private:
  TemporaryFolder folder_;
  BackgroundProgram program_;
  bool started_ = false;
};

}  // namespace qv::testing
