// From a view's surface to the frame that the display gets: a full-screen flush with ten windows
// stacked, what an idle screen costs, and both against plain copies of the same size.

#include <ctime>

#include "bench/ratio.h"
#include "host/box_desk.h"
#include "host/recorder.h"
#include "host/ui_loop.h"
#include "host/windows.h"
#include "platform/display/headless_display.h"
#include "platform/kernel/kernel.h"
#include "platform/text/text_renderer.h"
#include "scenario/type_codes.h"

namespace {

using namespace qv;

/// A screen as the game has it: the picture, a message window with a shaped outline, a help frame,
/// and seven smaller views over it.
class Stack {
 public:
  explicit Stack(int windows) : lock_("windows", LockRank::WindowList) {
    make(TypeView, "cg.view", ScreenRectangle);
    for (int number = 1; number < windows; ++number) {
      const std::string name = "view" + std::to_string(number);
      make(TypeView, name.c_str(), Rectangle::at(20 + 50 * number, 10 + 40 * number, 120, 80));
    }
    picture().fill(60);
  }
  void make(int32_t code, const char* name, const Rectangle& place) {
    CreateWindowRequest request;
    request.typeCode = code;
    request.name.create(QVString::DefaultGrain, name);
    request.rectangle = place;
    list_.create(request);
  }
  QVVSurface& picture() { return *list_.find("cg.view")->surface8(); }
  void shape(const char* name) {
    HostWindowObject* window = list_.find(name);
    QVVSurface outline;
    outline.create(window->surface8()->width(), window->surface8()->height());
    for (int32_t y = 0; y < outline.height(); ++y) {
      const Rectangle row = {y % 9, y, outline.width() - y % 7, y + 1};
      outline.fill(1, &row);
    }
    window->SetClipShape(outline, 0);
  }
  void flush(const Rectangle* part = nullptr) { list_.find("cg.view")->flush(part, 0); }
  void take(Frame& frame) { compositor_.take(frame, false); }

 private:
  Compositor compositor_;
  PointerState pointer_;
  Lock lock_;
  WindowList list_{lock_, nullptr, compositor_, pointer_};
};

double processorSeconds() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

/// What the whole process takes of a processor while a game stands in a wait: the UI thread's loop
/// on a display without a window, and a scenario thread that has drawn and now does nothing.
double idlePercent() {
  constexpr uint32_t IdleMillis = 3000;
  const GameModule module{ModuleAbi, "Bench", nullptr, nullptr, nullptr,
                          nullptr,   nullptr, nullptr, 0};
  TextRenderer text;
  HeadlessDisplay display;
  GameHost host(module);
  BoxDesk boxes(text);
  Recorder recorder;
  UiLoop loop(host, display, boxes, recorder, {});
  double percent = 0;
  Thread scenario;
  scenario.start("scenario", [&] {
    CreateWindowRequest request;
    request.typeCode = TypeView;
    request.name.create(QVString::DefaultGrain, "cg.view");
    request.rectangle = ScreenRectangle;
    host.PostCreateRequest(request);
    host.windows.find("cg.view")->flush(nullptr, 0);
    sleepMillis(200);
    const double before = processorSeconds();
    host.WaitForInput(IdleMillis, 0, 1);
    percent = (processorSeconds() - before) * 1000 / IdleMillis * 100;
    host.queue.post({MessageScenarioEnded, 0, 0});
  });
  loop.run();
  scenario.join();
  return percent;
}

}  // namespace

int main() {
  qv::bench::Table table;
  const KernelScope kernel(makeRealKernel());
  constexpr int Times = 50;
  const auto repeated = [](const std::function<void()>& work) {
    return [work] {
      for (int time = 0; time < Times; ++time)
        work();
    };
  };

  Frame from(static_cast<size_t>(ScreenWidth) * ScreenHeight), to(from);
  const auto copy = repeated([&] {
    to = from;
    qv::bench::keep(to.front());
  });
  Frame taken;
  Stack one(1), ten(10), shaped(10);
  shaped.shape("view3");
  shaped.shape("view7");
  const auto millis = [&](Stack& stack) {
    return qv::bench::measure(repeated([&] { stack.flush(); }), copy);
  };
  const auto first = millis(one), stacked = millis(ten), outlined = millis(shaped);
  table.note("a frame's copy, ms", stacked.theirs / Times * 1000);
  table.atMost("full-screen flush, one window, ms", first.ours / Times * 1000, 0.3);
  table.atMost("full-screen flush under nine windows, ms", stacked.ours / Times * 1000, 0.3);
  table.atMost("the same, two of them with an outline, ms", outlined.ours / Times * 1000, 0.3);
  const auto whole = qv::bench::measure(repeated([&] {
                                          ten.flush();
                                          ten.take(taken);
                                        }),
                                        copy);
  table.atMost("flush and the copy that the display gets, ms", whole.ours / Times * 1000, 0.5);
  const auto tile = qv::bench::measure(repeated([&] {
                                         const Rectangle part = {300, 200, 304, 204};
                                         ten.flush(&part);
                                       }),
                                       copy);
  table.note("flush of a tile of 4 by 4, microseconds", tile.ours / Times * 1e6);
  table.atMost("an idle game, percent of a processor", idlePercent(), 1);
  return table.status();
}
