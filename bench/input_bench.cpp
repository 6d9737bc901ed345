// From an event in the window to the scenario thread awake, with the real clock: a press on a click
// map, and a key for a wait of the host's. The display is the one without a window, so that what is
// measured is ours: queue, desk, gate, event.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "bench/ground.h"
#include "bench/ratio.h"
#include "foundation/diagnostic.h"
#include "host/ui_loop.h"
#include "input/click_map.h"
#include "platform/display/headless_display.h"
#include "platform/display/key_codes.h"
#include "platform/text/text_renderer.h"
#include "scenario/scenario.h"

namespace {

using namespace qv;
using Clock = std::chrono::steady_clock;

constexpr int Inputs = 1000;
// Between two inputs a hand takes a while; here both threads are to be asleep.
constexpr uint32_t RestMillis = 2;

const GameModule EmptyModule{ModuleAbi, "Bench", nullptr, nullptr, nullptr,
                             nullptr,   nullptr, nullptr, 0};

class Bench {
 public:
  Bench() : host_(EmptyModule), boxes_(text_), loop_(host_, display_, boxes_, recorder_, {}) {}

  /// Milliseconds from the push of each event to the wait's return.
  std::vector<double> run(const DisplayEvent& event, int32_t wanted, bool onMap) {
    std::vector<double> millis;
    Thread scenario, hand;
    Event ready("ready", Event::Reset::Automatic);
    Clock::time_point pushed;
    hand.start("hand", [&] {
      while (ready.wait(WaitForever, WaitKind::Service) == 0) {
        sleepMillis(RestMillis);
        pushed = Clock::now();
        display_.push(event);
      }
    });
    scenario.start("scenario", [&] {
      loop_.setScenarioThread(Thread::currentId());
      {
        QVScenario manager;
        manager.Start(&host_, "Bench", 1, 1, 1);
        manager.CreateView("cg.view", nullptr, 0, 0, ScreenWidth, ScreenHeight, 0);
        manager.CreateClickMap("all", ScreenWidth, ScreenHeight, 7, 1);
        manager.ConnectObjects("all", "cg.view");
        for (int i = 0; i < Inputs; ++i) {
          ready.set();
          const int32_t result =
              onMap ? manager.ClickWait("all", -1, 1) : host_.WaitForInput(InputForever, 0, 0);
          millis.push_back(
              std::chrono::duration<double, std::milli>(Clock::now() - pushed).count());
          if (result != wanted) std::abort();
        }
      }
      host_.queue.post({MessageScenarioEnded, 0, 0});
    });
    loop_.run();
    scenario.join();
    hand.terminate();
    hand.join();
    std::sort(millis.begin(), millis.end());
    return millis;
  }

 private:
  TextRenderer text_;
  HeadlessDisplay display_;
  GameHost host_;
  BoxDesk boxes_;
  Recorder recorder_;
  UiLoop loop_;
};

void measure(bench::Table& table, const char* what, const DisplayEvent& event, int32_t wanted,
             bool onMap) {
  Bench bench;
  const std::vector<double> millis = bench.run(event, wanted, onMap);
  char row[100];
  std::snprintf(row, sizeof row, "%s to its wait, median, milliseconds", what);
  table.atMost(row, millis[millis.size() / 2], 0.5);
  std::snprintf(row, sizeof row, "%s to its wait, worst of a thousand, milliseconds", what);
  table.atMost(row, millis.back(), 5);
}

}  // namespace

int main() {
  bench::Table table;
  const bench::Ground ground;
  DisplayEvent press;
  press.kind = DisplayEvent::Kind::ButtonDown;
  press.x = press.y = 100;
  measure(table, "a press on a click map", press, 7, true);
  DisplayEvent key;
  key.kind = DisplayEvent::Kind::KeyDown;
  key.key = KeyReturn;
  measure(table, "a key", key, 2061, false);
  return table.status();
}
