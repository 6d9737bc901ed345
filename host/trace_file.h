#pragma once

/// The run's trace as a text file: one line, with the tick, for each thing that happened. Any
/// thread. Lines are written whole and at once, so that a run that is cut short keeps them.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>

#include "platform/kernel/kernel.h"
#include "platform/services.h"

namespace qv {

class TraceFile : public TraceSink {
 public:
  TraceFile();
  ~TraceFile() override;
  /// False when the file cannot be written.
  bool open(const std::filesystem::path& file);
  void line(std::string_view what, std::string_view detail) override;

 private:
  Lock lock_;  ///< guards file_
  std::FILE* file_ = nullptr;
  uint32_t startTick_ = 0;
};

}  // namespace qv
