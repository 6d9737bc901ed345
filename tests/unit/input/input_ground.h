#pragma once

// What tests of maps stand on: a host whose waits are answered by hand, and a view that is only a
// surface.

#include <functional>
#include <utility>
#include <vector>

#include "foundation/event.h"
#include "graphics/click_target.h"
#include "graphics/surface.h"
#include "graphics/view.h"
#include "input/input_host.h"
#include "tests/support/test_platform.h"

namespace qv::testing {

class HandHost : public InputHost {
 public:
  Event& exitEvent() override { return exit.handle(); }
  Event& armKeys() override {
    ++armed;
    keyValue = 0;
    key.reset();
    return key.handle();
  }
  int32_t disarmKeys() override { return keyValue; }
  Event* beginMapWait(ClickTarget& map, bool keys) override {
    ++waits;
    waiting = &map;
    Event* event = InputHost::beginMapWait(map, keys);
    if (const auto hook = onWait) hook();
    return event;
  }
  int32_t endMapWait(bool keys) override {
    if (onWaitEnds) onWaitEnds();
    waiting = nullptr;
    return InputHost::endMapWait(keys);
  }
  int32_t hostWait(int32_t, int32_t, int32_t) override { return 258; }
  void setPointer(int32_t, int32_t) override {}
  void movePointerBy(int32_t dx, int32_t dy) override {
    moves.emplace_back(dx, dy);
    if (onMove) onMove();
  }
  void pressPointer() override {}

  void press(int32_t code) {
    keyValue = code;
    key.set();
  }

  QVEvent exit{"exit"}, key{"key", true};
  int32_t keyValue = 0;
  int armed = 0, waits = 0;
  ClickTarget* waiting = nullptr;
  std::vector<std::pair<int32_t, int32_t>> moves;
  std::function<void()> onWait, onWaitEnds, onMove;
};

class SurfaceView : public View {
 public:
  explicit SurfaceView(int32_t width = 64, int32_t height = 48) { surface.create(width, height); }
  int typeCode() const override { return 5; }
  void resize(int32_t width, int32_t height, int32_t) override { surface.create(width, height); }
  void update() override {}
  void invalidate(const Rectangle* area, int32_t) override {
    if (area) invalidated.push_back(*area);
  }
  QVVSurface* surface8() override { return &surface; }
  QVVSurface24* surface32() override { return nullptr; }
  Rectangle clientRectangle() const override { return {0, 0, surface.width(), surface.height()}; }
  void hold() override {}
  void release(bool) override {}
  bool rightButtonDown() const override { return false; }
  void addClickMap(ClickTarget& map) override { maps.push_back(&map); }
  bool removeClickMap(ClickTarget& map) override { return std::erase(maps, &map) > 0; }

  QVVSurface surface;
  std::vector<Rectangle> invalidated;
  std::vector<ClickTarget*> maps;
};

}  // namespace qv::testing
