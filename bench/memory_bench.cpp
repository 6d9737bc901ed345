// A thousand pictures that come onto the screen by all kinds of effects, with the host around them
// as a player has it and time simulated: the heap is where it was.

#include <array>
#include <cstdio>
#include <string>

#include <malloc.h>

#include "bench/ground.h"
#include "bench/ratio.h"
#include "host/box_desk.h"
#include "host/recorder.h"
#include "host/silent_sound.h"
#include "host/ui_loop.h"
#include "platform/display/headless_display.h"
#include "platform/text/text_renderer.h"
#include "scenario/commands.h"
#include "scenario/handles.h"
#include "scenario/scenario.h"
#include "tools/picture_codec/picture_files.h"
#include "tools/qvtool/files.h"

namespace {

using namespace qv;

constexpr int Warmup = 100, Changes = 1000, Between = 250;
constexpr int32_t Width = 640, Height = 480;
constexpr std::array Effects{1, 2, 5, 9, 11, 20, 27, 28, 34, 38, 41, 45, 48, 51, 60};

/// Stripes of many widths, so that files and colours differ.
codec::IndexedPicture pictureOf(int number) {
  codec::IndexedPicture picture;
  picture.width = Width, picture.height = Height;
  for (uint32_t entry = 10; entry < 128; ++entry)
    picture.colours[entry] = entry * 0x010203 * static_cast<uint32_t>(number + 1) & 0xFFFFFF;
  for (int32_t y = 0; y < Height; ++y)
    for (int32_t x = 0; x < Width; ++x)
      picture.pixels.push_back(static_cast<uint8_t>(10 + (x * (number + 1) / 9 + y) % 118));
  return picture;
}

/// Bytes that are allocated, in whatever arena or mapping.
double heapBytes() {
  const struct mallinfo2 info = mallinfo2();
  return static_cast<double>(info.uordblks + info.hblkhd);
}

void change(int number) {
  const std::string file = "cg\\picture" + std::to_string(number % 5) + ".mcg";
  const int32_t effect = Effects[static_cast<size_t>(number) % Effects.size()];
  constexpr int32_t FadeSteps = 6;
  // Each seventh one by a named surface, as sprites come.
  if (number % 7 == 0) {
    const SurfaceHandle sprite("sprite", file.c_str(), DestroyWithHandle);
    theScenario->DrawTo("cg.view", "sprite", 40, 20, 200, 300, 0, 0, effect == 9 ? 1 : effect,
                        KeyTopLeft);
  } else {
    theScenario->DrawTo("cg.view", file.c_str(), effect == 9 ? FadeSteps : 0, 0, 0, 0, 0, 0,
                        effect);
  }
}

}  // namespace

int main() {
  bench::Table table;
  bench::BenchFolder root;
  const KernelScope kernel(makeSimulatedKernel());
  const std::filesystem::path game = root.folder("game"), player = root.folder("player");
  std::filesystem::create_directories(game / "cg");
  for (int number = 0; number < 5; ++number)
    tool::writeFile(game / "cg" / ("picture" + std::to_string(number) + ".mcg"),
                    codec::encodeMcg(pictureOf(number)));
  FileSystem files(FileRoots{game, player, {}});
  SettingsStore settings(player / "settings");
  bench::NoDialogs dialogs;
  TextRenderer text;
  SilentSound sound;
  const ServicesScope services({.files = &files,
                                .settings = &settings,
                                .dialogs = &dialogs,
                                .text = &text,
                                .wave = sound.wave(),
                                .midi = sound.midi()});

  const GameModule module{ModuleAbi, "Bench", nullptr, nullptr, nullptr,
                          nullptr,   nullptr, nullptr, 0};
  HeadlessDisplay display;
  GameHost host(module);
  BoxDesk boxes(text);
  Recorder recorder;
  UiLoop loop(host, display, boxes, recorder, {});
  std::array<double, Changes / Between + 1> heap{};
  Thread scenario;
  scenario.start("scenario", [&] {
    {
      QVScenario manager;
      manager.Start(&host, "Bench", 100, 10, 10);
      setTheScenario(&manager);
      manager.CreateView("cg.view", nullptr, 0, 0, Width, Height, 0);
      for (int number = 0; number < Warmup; ++number)
        change(number);
      heap[0] = heapBytes();
      for (int number = 1; number <= Changes; ++number) {
        change(number);
        if (number % Between == 0) heap[static_cast<size_t>(number / Between)] = heapBytes();
      }
      setTheScenario(nullptr);
    }
    host.queue.post({MessageScenarioEnded, 0, 0});
  });
  loop.run();
  scenario.join();

  table.note("heap after the first hundred pictures, KB", heap[0] / 1024);
  for (size_t quarter = 1; quarter < heap.size(); ++quarter)
    table.note(("after " + std::to_string(quarter * Between) + " more, KB").c_str(),
               heap[quarter] / 1024);
  constexpr double Slack = 4096;  // lists and the kernel's queues breathe
  table.atMost("a thousand picture changes grow the heap by, bytes", heap.back() - heap[0], Slack);
  return table.status();
}
