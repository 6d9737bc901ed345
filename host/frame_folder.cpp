#include "host/frame_folder.h"

#include <cstdio>

#include "platform/display/png_file.h"

namespace qv {

void FrameFolder::present(const Frame& frame) {
  HeadlessDisplay::present(frame);
  if (!complaint_.empty()) return;
  if (presents() == 1) firstTick_ = tickCount();
  std::error_code error;
  std::filesystem::create_directories(folder_, error);
  char name[48];
  std::snprintf(name, sizeof name, "%04zu-%ums.png", presents(), tickCount() - firstTick_);
  writePng(frame, folder_ / name, &complaint_);
}

}  // namespace qv
