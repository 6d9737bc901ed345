#pragma once

// What the tests of animation stand on: a view that keeps what it was told to show, strips of
// cells as files, and surfaces as text.

#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "graphics/surface.h"
#include "graphics/view.h"
#include "tests/support/test_platform.h"

namespace qv::testing {

/// A view whose screen is a picture: `update` paints what was invalidated.
class FakeView : public View {
 public:
  FakeView(int32_t width, int32_t height) : screen(static_cast<size_t>(width * height)) {
    surface.create(width, height);
  }

  int typeCode() const override { return 5; }
  void resize(int32_t, int32_t, int32_t) override {}
  void invalidate(const Rectangle* area, int32_t) override {
    const std::lock_guard guard(lock_);
    pending_ = pending_.united(area ? *area : clientRectangle());
    ++invalidations;
  }
  void update() override {
    {
      const std::lock_guard guard(lock_);
      if (!pending_.empty())
        surface.paint(screen, surface.width(), surface.height(), pending_.left, pending_.top,
                      pending_);
      updated = pending_;
      pending_ = {};
      ++updates;
    }
    if (onUpdate) onUpdate();
  }
  void repaintClickMaps() override { ++mapRepaints; }
  QVVSurface* surface8() override { return &surface; }
  QVVSurface24* surface32() override { return nullptr; }
  Rectangle clientRectangle() const override { return {0, 0, surface.width(), surface.height()}; }
  void hold() override {}
  void release(bool) override {}
  bool rightButtonDown() const override { return false; }

  int updateCount() {
    const std::lock_guard guard(lock_);
    return updates;
  }

  QVVSurface surface;
  std::vector<uint32_t> screen;
  int invalidations = 0, updates = 0;
  std::atomic<int> mapRepaints = 0;
  Rectangle updated;  ///< by the last update
  std::function<void()> onUpdate;

 private:
  Lock lock_{"fake view", LockRank::WindowList};
  Rectangle pending_;
};

/// A picture file of 8 bits with one palette index a pixel, top row first.
inline std::string bitmapFile(int32_t width, int32_t height, const ColourTable& colours,
                              const std::function<uint8_t(int32_t x, int32_t y)>& index) {
  const int32_t stride = (width + 3) & ~3;
  std::string file;
  const auto number = [&](int32_t value, int bytes) {
    for (; bytes > 0; --bytes, value >>= 8)
      file += static_cast<char>(value & 255);
  };
  constexpr int32_t HeadBytes = 54 + 1024;
  file += "BM";
  for (const int32_t value : {HeadBytes + stride * height, 0, HeadBytes, 40, width, height})
    number(value, 4);
  number(1, 2);
  number(8, 2);
  for (int field = 0; field < 6; ++field)
    number(0, 4);
  for (const uint32_t colour : colours)
    number(static_cast<int32_t>(colour), 4);
  for (int32_t y = height; y-- > 0;)
    for (int32_t x = 0; x < stride; ++x)
      number(x < width ? index(x, y) : 0, 1);
  return file;
}

/// Such a file from rows of text: "." is 0, letters are 1 and on. Entry n of its colours is blue
/// 10n, green 5n, red n.
inline std::string bitmapOf(const std::vector<std::string>& rows) {
  ColourTable colours;
  for (uint32_t entry = 0; entry < 256; ++entry)
    colours[entry] = (entry * 10 & 255) | (entry * 5 & 255) << 8 | entry << 16;
  return bitmapFile(static_cast<int32_t>(rows[0].size()), static_cast<int32_t>(rows.size()),
                    colours, [&](int32_t x, int32_t y) {
                      const char letter = rows[static_cast<size_t>(y)][static_cast<size_t>(x)];
                      return static_cast<uint8_t>(letter == '.' ? 0 : letter - 'A' + 1);
                    });
}

/// A surface the same way, a row after the other with "/" between.
inline std::string textOf(const QVVSurface& surface) {
  std::string text;
  for (int32_t y = 0; y < surface.height(); ++y) {
    if (y > 0) text += '/';
    for (int32_t x = 0; x < surface.width(); ++x) {
      const uint8_t pixel = surface.pixel(x, y);
      text += pixel == 0 ? '.' : static_cast<char>('A' + pixel - 1);
    }
  }
  return text;
}

/// Three cells of 2 by 2, all of A, B and C, as "abc.bmp".
inline void writeLetters(TestPlatform& platform) {
  platform.writeFile(platform.game() / "abc.bmp", bitmapOf({"AABBCC", "AABBCC"}));
}

}  // namespace qv::testing
