#pragma once

// What the tests of print areas stand on: an area on a surface or a view, with fixed widths.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "message/print_area.h"
#include "platform/text/shift_jis.h"
#include "tests/support/fixed_text_device.h"
#include "tests/support/test_platform.h"
#include "tests/unit/graphics/animation/animation_ground.h"

namespace qv::testing {

/// An area of 200 by 100 at 0, 0 of a surface; single bytes are 9 pixels wide, others 18.
class AreaTest : public ::testing::Test {
 protected:
  AreaTest() {
    surface.create(640, 480);
    area.setTextDevice(device);
    area.setSurface(&surface);
    area.setRect(0, 0, 200, 100);
  }
  void print(const std::string& utf8) { area.printText(sjis(utf8).c_str()); }
  /// The drawn runs as "X,Y TEXT".
  std::vector<std::string> drawn() const {
    std::vector<std::string> runs;
    for (const DrawnRun& run : device.drawn)
      runs.push_back(std::to_string(run.x) + "," + std::to_string(run.y) + " " +
                     utf8OfShiftJis(run.text));
    return runs;
  }
  using Runs = std::vector<std::string>;
  std::vector<ShownBox>& boxes() { return platform.dialogs.shown; }
  void expectPen(int32_t x, int32_t y) {
    EXPECT_EQ(area.position().x, x);
    EXPECT_EQ(area.position().y, y);
  }

  TestPlatform platform{false, makeSimulatedKernel()};
  FixedTextDevice device;
  QVVSurface surface;
  QVPrintArea area;
};

inline constexpr const char* OutsideText =
    "表示許可領域外に初期化しようとしています\n"
    "表示許可領域の左上座標で初期化して処理を継続します";
inline constexpr const char* IndentText =
    "プリントエリアに関連付けられたインデント幅が大きすぎて\n"
    "初期位置がプリントエリアの外にはみ出しています。\n"
    "システムは、インデントを０に設定して処理を継続します。";

}  // namespace qv::testing
