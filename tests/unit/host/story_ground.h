#pragma once

// A host with its UI thread, and a scene with a manager on the scenario thread: what tests of
// commands on real windows stand on.

#include <functional>
#include <memory>
#include <utility>

#include "foundation/diagnostic.h"
#include "host/ui_loop.h"
#include "platform/display/headless_display.h"
#include "platform/text/text_renderer.h"
#include "scenario/commands.h"
#include "scenario/handles.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"
#include "tests/support/test_platform.h"

namespace qv::testing {

inline const GameModule StoryModule{ModuleAbi, "Test",  nullptr, nullptr, nullptr,
                                    nullptr,   nullptr, nullptr, 0};

class StoryGround {
 public:
  using Kind = DisplayEvent::Kind;
  /// `open` makes a display of another kind, once there is a kernel; it may find none.
  explicit StoryGround(std::unique_ptr<Kernel> kernel,
                       const std::function<std::unique_ptr<Display>()>& open = nullptr)
      : platform(false, std::move(kernel)),
        window(open ? open() : nullptr),
        host(StoryModule),
        boxes(text),
        loop(host, window ? *window : display, boxes, recorder, {}) {}

  /// Runs `scene` on the scenario thread, and the loop until it has ended.
  void run(const std::function<void(QVScenario&)>& scene) {
    Thread scenario;
    scenario.start("scenario", [&] {
      loop.setScenarioThread(Thread::currentId());
      {
        QVScenario manager;
        manager.Start(&host, "Test", RegisterCount, StringRegisterCount, SystemRegisterCount);
        setTheScenario(&manager);
        manager.CreateView("cg.view", nullptr, 0, 0, 640, 480, 0);
        try {
          scene(manager);
        } catch (const ExitScenarioException&) {
          aborted = true;
        }
        setTheScenario(nullptr);
      }
      host.queue.post({MessageScenarioEnded, 0, 0});
    });
    loop.run();
    scenario.join();
  }
  void push(Kind kind, int x, int y, PointerButton button = PointerButton::Left) {
    DisplayEvent event;
    event.kind = kind;
    event.x = x;
    event.y = y;
    event.button = button;
    display.push(event);
  }
  void key(int code) {
    DisplayEvent event;
    event.kind = Kind::KeyDown;
    event.key = code;
    display.push(event);
  }
  /// The colour that stands in the frame.
  uint32_t at(int x, int y) {
    Frame frame;
    host.compositor.take(frame, true);
    return frame[static_cast<size_t>(y) * ScreenWidth + static_cast<size_t>(x)];
  }
  /// Long enough for the UI thread to have done everything.
  static void settle() { sleepMillis(100); }

  TestPlatform platform;
  TextRenderer text;
  HeadlessDisplay display;
  std::unique_ptr<Display> window;
  GameHost host;
  BoxDesk boxes;
  Recorder recorder;
  UiLoop loop;
  bool aborted = false;
};

}  // namespace qv::testing
