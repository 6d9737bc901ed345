#pragma once

/// A text device with the same widths on every machine: a fixed number of pixels a byte. It draws
/// nothing and keeps what it was told to.

#include <algorithm>
#include <string>
#include <vector>

#include "message/text_device.h"

namespace qv::testing {

struct DrawnRun {
  int32_t x = 0, y = 0;
  std::string text;
  ColourRef colour = 0;
  bool operator==(const DrawnRun&) const = default;
};

class FixedTextDevice : public TextDevice {
 public:
  static constexpr int32_t ByteWidth = 9;

  /// As a device may, it counts bytes and does not know characters.
  size_t fitBytes(const TextStyle&, std::string_view text, int32_t width) override {
    return width < 0 ? 0 : std::min(text.size(), static_cast<size_t>(width / ByteWidth));
  }
  int32_t measure(const TextStyle&, std::string_view text) override {
    return static_cast<int32_t>(text.size()) * ByteWidth;
  }
  void draw(const TextRun& run, ColourRef colour) override {
    drawn.push_back({run.x, run.y, std::string(run.text), colour});
    styles.push_back(run.style);
  }

  std::vector<DrawnRun> drawn;
  std::vector<TextStyle> styles;
};

}  // namespace qv::testing
