// From an event in the window to the scenario thread awake, with the real clock: a press on a click
// map, and a key for a wait of the host's. First in a real window, from the moment when a hand on
// the X server's devices has moved; then on the display without a window, which is what of it is
// ours: queue, desk, gate, event.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "bench/ground.h"
#include "bench/ratio.h"
#include "bench/x_server.h"
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

constexpr uint8_t MapRegion = 7, Plum = 5;
constexpr int X = 100, Y = 100;
constexpr uint32_t PlumColour = 0x800080;

/// How the one input of a bench is made and taken back.
struct Hand {
  std::function<void()> act;
  std::function<void()> letGo = [] {};
};

class Bench {
 public:
  explicit Bench(Display& display)
      : display_(display),
        host_(EmptyModule),
        boxes_(text_),
        loop_(host_, display_, boxes_, recorder_, {}) {}

  /// Milliseconds from each act of the hand to the wait's return, sorted.
  std::vector<double> run(const Hand& hand, int32_t wanted, bool onMap,
                          const std::function<void()>& isShown) {
    std::vector<double> millis;
    Thread scenario, player;
    Event ready("ready", Event::Reset::Automatic);
    Clock::time_point began;
    player.start("player", [&] {
      while (ready.wait(WaitForever, WaitKind::Service) == 0) {
        hand.letGo();
        sleepMillis(RestMillis);
        began = Clock::now();
        hand.act();
      }
    });
    scenario.start("scenario", [&] {
      loop_.setScenarioThread(Thread::currentId());
      {
        QVScenario manager;
        manager.Start(&host_, "Bench", 1, 1, 1);
        manager.CreateView("cg.view", nullptr, 0, 0, ScreenWidth, ScreenHeight, 0);
        manager.FillObject("cg.view", Plum);
        manager.CreateClickMap("all", ScreenWidth, ScreenHeight, MapRegion, 0);
        manager.ConnectObjects("all", "cg.view");
        isShown();
        for (int i = 0; i < Inputs; ++i) {
          ready.set();
          const int32_t result =
              onMap ? manager.ClickWait("all", -1, 1) : host_.WaitForInput(InputForever, 0, 0);
          millis.push_back(std::chrono::duration<double, std::milli>(Clock::now() - began).count());
          if (result != wanted) {
            std::fprintf(stderr, "a wait gave %d\n", result);
            std::abort();
          }
        }
      }
      host_.queue.post({MessageScenarioEnded, 0, 0});
    });
    loop_.run();
    scenario.join();
    player.terminate();
    player.join();
    std::sort(millis.begin(), millis.end());
    return millis;
  }

 private:
  Display& display_;
  TextRenderer text_;
  GameHost host_;
  BoxDesk boxes_;
  Recorder recorder_;
  UiLoop loop_;
};

void addRows(bench::Table& table, const std::string& what, const std::vector<double>& millis) {
  table.atMost((what + " to its wait, median, milliseconds").c_str(), millis[millis.size() / 2],
               0.5);
  table.atMost((what + ", the worst of a thousand").c_str(), millis.back(), 5);
}

constexpr int32_t KeyResult = 2048 + KeyReturn;

void measureInAWindow(bench::Table& table) {
  const bench::XServer screen;
  const auto openWindow = [] {
    std::string whyNot;
    auto window = makeWindowDisplay({.title = "input bench"}, whyNot);
    if (!window) {
      std::fprintf(stderr, "%s\n", whyNot.c_str());
      std::exit(1);
    }
    return window;
  };
  // Without a window manager it stands in the middle, and what comes with it is over after a while.
  const auto isShown = [&] {
    screen.await(PlumColour, true);
    screen.movePointer((bench::XServer::RootWidth - ScreenWidth) / 2 + X,
                       (bench::XServer::RootHeight - ScreenHeight) / 2 + Y);
    sleepMillis(500);
  };
  {
    const auto window = openWindow();
    addRows(
        table, "in a window, a press on a map",
        Bench(*window).run({[&] { screen.leftButton(true); }, [&] { screen.leftButton(false); }},
                           MapRegion, true, isShown));
    screen.leftButton(false);
  }
  const auto window = openWindow();
  addRows(table, "in a window, a key",
          Bench(*window).run({[&] { screen.returnKey(true); }, [&] { screen.returnKey(false); }},
                             KeyResult, false, isShown));
  screen.returnKey(false);
}

void measureOurs(bench::Table& table, const char* what, const DisplayEvent& event, int32_t wanted,
                 bool onMap) {
  HeadlessDisplay display;
  const Hand hand{[&] { display.push(event); }};
  addRows(table, what, Bench(display).run(hand, wanted, onMap, [] {}));
}

}  // namespace

int main() {
  bench::Table table;
  const bench::Ground ground;
  measureInAWindow(table);
  DisplayEvent press;
  press.kind = DisplayEvent::Kind::ButtonDown;
  press.x = X;
  press.y = Y;
  measureOurs(table, "a press on a map", press, MapRegion, true);
  DisplayEvent key;
  key.kind = DisplayEvent::Kind::KeyDown;
  key.key = KeyReturn;
  measureOurs(table, "a key", key, KeyResult, false);
  return table.status();
}
