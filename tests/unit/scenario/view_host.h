#pragma once

// A fake host with a view and a framed window that click maps can lie on.

#include "tests/unit/input/input_ground.h"
#include "tests/unit/scenario/fake_host.h"

namespace qv::testing {

/// A view of a window list.
class ViewWindow : public WindowObject {
 public:
  ViewWindow(const char* windowName, int windowCode) : code(windowCode) {
    name.create(QVString::DefaultGrain, windowName);
  }
  int typeCode() const override { return code; }
  View* view() override { return &surfaceView; }
  bool clientRect(Rectangle& rectangle) const override {
    rectangle = {0, 0, 64, 48};
    return true;
  }
  int code;
  SurfaceView surfaceView;
};

/// Finds windows that the test itself holds.
class ViewHost : public FakeHost {
 public:
  WindowObject* FindWindowObject(const char* name) override {
    for (ViewWindow* window : {&view, &frame, &client})
      if (window->name.equals(name)) return window;
    return nullptr;
  }
  void MapWaitBegan(ClickTarget& map, bool keys) override {
    waitKeys = keys;
    FakeHost::MapWaitBegan(map, keys);
  }
  void MapWaitEnded() override { ++mapWaitsEnded; }
  void movePointerBy(int32_t, int32_t) override { ++nudges; }
  void pressKey(int32_t key) override { pressed.push_back(key); }

  ViewWindow view{"cg.view", TypeView}, frame{"win", TypeFrame}, client{"winClient", TypeView};
  bool waitKeys = false;
  int mapWaitsEnded = 0, nudges = 0;
  std::vector<int32_t> pressed;
};

}  // namespace qv::testing
