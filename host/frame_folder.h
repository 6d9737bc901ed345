#pragma once

/// A display without a window that keeps every frame it is given as a picture in a folder, so that
/// the steps of an effect can be looked at one by one. UI thread, as any display.

#include <filesystem>
#include <string>

#include "platform/display/headless_display.h"

namespace qv {

class FrameFolder : public HeadlessDisplay {
 public:
  /// Files are "0001-0ms.png" and so on: a running number, and the kernel's time since the first
  /// frame.
  explicit FrameFolder(std::filesystem::path folder) : folder_(std::move(folder)) {}

  void present(const Frame& frame) override;
  /// Why the first picture that was not written was not; empty when all were.
  const std::string& complaint() const { return complaint_; }

 private:
  std::filesystem::path folder_;
  uint32_t firstTick_ = 0;
  std::string complaint_;
};

}  // namespace qv
