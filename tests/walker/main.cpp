// walker: walks every way of a built story once, in simulated time, with the whole host around it.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "foundation/diagnostic.h"
#include "host/box_desk.h"
#include "host/module_loader.h"
#include "host/recorder.h"
#include "host/silent_sound.h"
#include "host/ui_loop.h"
#include "platform/files/file_system.h"
#include "platform/services.h"
#include "platform/settings/settings_store.h"
#include "platform/text/shift_jis.h"
#include "platform/text/text_renderer.h"
#include "scenario/scenario.h"
#include "tests/support/process.h"
#include "tests/support/test_platform.h"
#include "tests/walker/reading_display.h"
#include "tests/walker/story_walk.h"
#include "tools/story/story_source.h"

namespace {

namespace fs = std::filesystem;
using namespace qv;
using namespace qv::testing;

constexpr int Good = 0, Failed = 1, BadUsage = 2;

struct Wishes {
  fs::path game, source, disc;
  uint64_t seed = 1;
  double mostSeconds = 0, mostOpenMillis = 0;
};

/// Counts lines, passes them on, and keeps the boxes: a walk has none.
class WalkTrace : public TraceSink {
 public:
  void line(std::string_view what, std::string_view detail) override {
    if (what == "line") {
      ++lines;
      if (walk) walk->hear(detail);
    }
    if (what == "box") boxes.emplace_back(detail);
  }
  StoryWalk* walk = nullptr;
  size_t lines = 0;
  std::vector<std::string> boxes;
};

struct Walked {
  WalkResult result;
  std::string failure;
  uint32_t storyMillis = 0;
};

Walked walkIn(const GameModule& module, const scenec::Story& texts, const Wishes& wishes,
              BoxDesk& boxes, WalkTrace& trace) {
  const story::StoryGraph graph = story::graphOf(texts);
  Walked walked;
  ReadingDisplay display;
  Recorder recorder;
  GameHost host(module);
  UiLoop loop(host, display, boxes, recorder, {});
  StoryWalk walk(module, texts, graph, wishes.seed);
  trace.walk = &walk;
  display.read(host, [&](int32_t count) { return walk.choose(*host.manager, count); });
  QVScenario* const manager = module.createManager();
  Thread scenario;
  scenario.start("scenario", [&] {
    loop.setScenarioThread(Thread::currentId());
    try {
      const uint32_t start = tickCount();
      walk.walk(host);
      walked.storyMillis = tickCount() - start;
      module.end();
    } catch (const ExitScenarioException&) {
      walked.failure = "the run was ended from outside";
    } catch (const Diagnostic& diagnostic) {
      walked.failure = utf8OfShiftJis(theScenario ? theScenario->sceneName().view() : "") + ": " +
                       utf8OfShiftJis(diagnostic.message());
    }
    if (!walked.failure.empty()) module.exceptionEntry();
    walked.result = walk.result();
    host.queue.post({MessageScenarioEnded, 0, 0});
  });
  loop.run();
  scenario.join();
  module.destroyManager(manager);
  trace.walk = nullptr;
  return walked;
}

void tell(const char* what, const std::vector<std::string>& list) {
  constexpr size_t MostTold = 20;
  for (size_t at = 0; at < std::min(MostTold, list.size()); ++at)
    std::printf("%s: %s\n", what, list[at].c_str());
  if (list.size() > MostTold) std::printf("and %zu more\n", list.size() - MostTold);
}

int tell(const Walked& walked, const WalkTrace& trace, double seconds, const Wishes& wishes) {
  const WalkResult& result = walked.result;
  std::printf(
      "%zu of %zu scenes and %zu of %zu ways walked in %.1f s (%.1f s of the story's time)\n",
      result.scenes, result.expectedScenes, result.ways, result.expectedWays, seconds,
      walked.storyMillis / 1000.0);
  std::printf(
      "%zu lines, %zu choices gone back to, %zu scenes played for a condition, %zu entered "
      "by name behind places\n",
      trace.lines, result.again, result.tries, result.entered);
  if (result.expectedPlaces != 0)
    std::printf("%zu of %zu ways behind places walked: no ring turns to the others yet\n",
                result.places, result.expectedPlaces);
  tell("never walked", result.missing);
  tell("not as its text", result.misread);
  for (const std::string& box : trace.boxes)
    std::printf("a box: %s\n", box.c_str());
  if (!walked.failure.empty()) std::printf("%s\n", walked.failure.c_str());
  const bool slow = wishes.mostSeconds > 0 && seconds > wishes.mostSeconds;
  if (slow) std::printf("that is longer than %.0f s\n", wishes.mostSeconds);
  const bool whole =
      result.scenes == result.expectedScenes && result.missing.empty() && result.misread.empty();
  return whole && trace.boxes.empty() && walked.failure.empty() && !slow ? Good : Failed;
}

using Clock = std::chrono::steady_clock;

/// Once, because a module that was open stays in memory; its file is made warm first.
int open(LoadedModule& module, const Wishes& wishes) {
  readWhole((wishes.game / ModuleFileName).string());
  const auto start = Clock::now();
  std::string whyNot;
  if (!module.load(wishes.game, whyNot)) {
    std::fprintf(stderr, "walker: %s\n", whyNot.c_str());
    return BadUsage;
  }
  const std::chrono::duration<double, std::milli> taken = Clock::now() - start;
  std::printf("the module of %zu scenes opened in %.1f ms\n", module.table()->sceneCount,
              taken.count());
  if (wishes.mostOpenMillis == 0 || taken.count() <= wishes.mostOpenMillis) return Good;
  std::printf("that is longer than %.0f ms\n", wishes.mostOpenMillis);
  return Failed;
}

int walk(const Wishes& wishes) {
  story::StorySource source;
  if (!story::readStorySource(wishes.source, source) || !source.problems.empty()) {
    for (const std::string& line : source.problems.lines())
      std::fprintf(stderr, "walker: %s\n", line.c_str());
    return BadUsage;
  }
  SimulatedKernelOptions simulation;
  simulation.seed = wishes.seed;
  const KernelScope kernel(makeSimulatedKernel(simulation));
  LoadedModule module;
  if (const int status = open(module, wishes)) return status;
  const TemporaryFolder player;
  FileSystem files({wishes.game, player.path(), wishes.disc});
  SettingsStore settings(player.path() / "settings.toml");
  TextRenderer text;
  SilentSound sound;
  BoxDesk boxes(text);
  boxes.setUnattended();
  WalkTrace trace;
  const ServicesScope services({.files = &files,
                                .settings = &settings,
                                .dialogs = &boxes,
                                .text = &text,
                                .wave = sound.wave(),
                                .midi = sound.midi(),
                                .disc = sound.disc(),
                                .trace = &trace});
  const auto start = Clock::now();
  const Walked walked = walkIn(*module.table(), source.story, wishes, boxes, trace);
  const std::chrono::duration<double> taken = Clock::now() - start;
  return tell(walked, trace, taken.count(), wishes);
}

}  // namespace

int main(int count, char** arguments) {
  CLI::App program("Walks every way of a built story once, in simulated time.", "walker");
  Wishes wishes;
  program.add_option("GAME", wishes.game, "The built game folder")->required();
  program.add_option("SOURCE", wishes.source, "The story's texts")->required();
  program.add_option("--disc", wishes.disc, "The data disc's folder (the game's own)");
  program.add_option("--seed", wishes.seed, "Of threads and of registers for conditions (1)");
  program.add_option("--seconds", wishes.mostSeconds, "The walk fails when it takes longer");
  program.add_option("--open-millis", wishes.mostOpenMillis, "Opening fails when it takes longer");
  CLI11_PARSE(program, count, arguments);
  if (wishes.disc.empty() && fs::is_directory(wishes.game / "disc"))
    wishes.disc = wishes.game / "disc";
  return walk(wishes);
}
