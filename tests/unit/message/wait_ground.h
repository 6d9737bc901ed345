#pragma once

// What tests of waits without a screen stand on: a host whose picture and pendant are surfaces, and
// a manager that scenes' commands find.

#include <functional>

#include <gtest/gtest.h>

#include "input/click_map.h"
#include "message/pendant.h"
#include "message/standing_names.h"
#include "scenario/click_map_objects.h"
#include "scenario/commands.h"
#include "scenario/register_numbers.h"
#include "tests/unit/scenario/view_host.h"

namespace qv::testing {

/// A window that tells when it is shown and hidden.
class ToldWindow : public ViewWindow {
 public:
  using ViewWindow::ViewWindow;
  bool placeInParent(Rectangle& place) const override {
    place = {0, 0, 64, 48};
    return true;
  }
  void show(bool visible) override {
    if (onShow) onShow(visible);
  }
  std::function<void(bool visible)> onShow;
};

class WaitHost : public ViewHost {
 public:
  WindowObject* FindWindowObject(const char* name) override {
    for (ToldWindow* window : {&pendant, &pendantClient})
      if (window->name.equals(name)) return window;
    return ViewHost::FindWindowObject(name);
  }
  ToldWindow pendant{PendantWindow, TypeFrameless},
      pendantClient{(std::string(PendantWindow) + "Client").c_str(), TypeView};
};

class WaitTest : public ::testing::Test {
 protected:
  WaitTest() {
    MessageWindowHiddenFlag = 0;
    manager.Start(&host, "Test", RegisterCount, StringRegisterCount, SystemRegisterCount);
    setTheScenario(&manager);
    manager.CreateClickMap(WholeScreenMap, 64, 48, AdvanceRegion, 1);
    manager.ConnectObjects(WholeScreenMap, "cg.view");
  }
  ~WaitTest() override { setTheScenario(nullptr); }
  /// What the polls of the screen's map give, one by one.
  void answer(std::initializer_list<int32_t> codes) {
    for (const int32_t code : codes)
      findClickMap(manager, WholeScreenMap)->postResult(code);
  }
  QVVSurface& createSurface(const char* name, int32_t width, int32_t height) {
    manager.CreateObject(name, TypeSurface, {width, height});
    return *static_cast<QVVSurface*>(manager.FindNative(name, TypeSurface));
  }

  TestPlatform platform{false, makeSimulatedKernel()};
  WaitHost host;
  QVScenario manager;
};

}  // namespace qv::testing
