#pragma once

/// Writes what a player does as a play script: each input with the number of the wait that took
/// it, so that it replays exactly. UI thread.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>

#include "platform/dialogs/dialogs.h"
#include "platform/display/display.h"

namespace qv {

class Recorder {
 public:
  Recorder() = default;
  ~Recorder();
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;
  bool open(const std::filesystem::path& file);

  /// An input that a wait has taken.
  void taken(const DisplayEvent& event, uint32_t waitOrdinal);
  /// A window was dragged by its caption from one place of the pointer to another, while that wait
  /// stood, or none (0).
  void dragged(int fromX, int fromY, int toX, int toY, uint32_t waitOrdinal);
  /// The state of the window, whatever the game is doing.
  void minimised() { write("now minimise"); }
  void restored() { write("now restore"); }
  void closed() { write("quit"); }
  void answered(BoxAnswer answer);

 private:
  void write(const std::string& line);
  std::FILE* file_ = nullptr;
};

/// The input as a line of a play script without its wait; empty for events that are none.
std::string scriptTextOf(const DisplayEvent& event);

}  // namespace qv
