// What reading costs: a line, a picture with figures, the first picture of a story in a window, the
// memory of it all. The sample's pictures and sounds, with the whole host around them.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <time.h>
#include <unistd.h>

#include "bench/ground.h"
#include "bench/ratio.h"
#include "bench/x_server.h"
#include "graphics/scene/commands.h"
#include "host/box_desk.h"
#include "host/recorder.h"
#include "host/silent_sound.h"
#include "host/ui_loop.h"
#include "message/commands.h"
#include "message/message_strip.h"
#include "message/text_areas.h"
#include "platform/sdl/audio_output.h"
#include "platform/text/shift_jis.h"
#include "platform/text/text_renderer.h"
#include "scenario/commands.h"
#include "scenario/scenario.h"
#include "scenario/start/start.h"
#include "scenario/story_tables.h"
#include "tests/walker/reading_display.h"
#include "tools/picture_codec/picture_files.h"
#include "tools/qvtool/files.h"

namespace {

using namespace qv;
namespace fs = std::filesystem;

constexpr int Lines = 4000, Pictures = 60, Starts = 15;
constexpr const char* Sample = QV_OUTPUT_DIR "/vorlane";

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

// --- Inside: lines and pictures ---

/// The processor's time of all threads, which take turns: where a line's time goes must not depend
/// on what else the machine does.
double processorSecondsOf(const std::function<void()>& work) {
  const auto now = [] {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
  };
  const double start = now();
  work();
  return now() - start;
}

struct Measured {
  double wallSeconds = 0, lineSeconds = 0, speakSeconds = 0, printSeconds = 0, faceSeconds = 0;
  std::vector<double> pictureSeconds{};
};
Measured measured;

const std::string& tag() {
  static const std::string text = sjis("【　ベルーネ　】");
  return text;
}
const std::string& words() {
  static const std::string text =
      sjis("「ねえ、覚えてる？　あの夏の日のこと。\n雨のあがった坂道で、ふたりで空を見ていた」");
  return text;
}

void speakLines(int count) {
  for (int line = 0; line < count; ++line) {
    SpeakLine(tag().c_str(), nullptr);
    PrintMessage(words().c_str());
    WaitClick(WaitWithoutLimit, 0);
  }
}

/// The parts of a line, each alone; the rest of its time is the wait with its threads.
void measureLines() {
  speakLines(200);  // warm
  measured.wallSeconds = bench::secondsOf(
      [] { measured.lineSeconds = processorSecondsOf([] { speakLines(Lines); }); });
  measured.speakSeconds = processorSecondsOf([] {
    for (int line = 0; line < Lines; ++line)
      SpeakLine(tag().c_str(), nullptr);
  });
  const LineAreas areas;
  measured.printSeconds = processorSecondsOf([&] {
    for (int line = 0; line < Lines; ++line) {
      areas.home();
      areas.message->printText(words().c_str());
    }
  });
  measured.faceSeconds = processorSecondsOf([] {
    for (int line = 0; line < Lines; ++line)
      showFaceOfLine();
  });
}

void measurePictures() {
  for (int round = 0; round < Pictures; ++round) {
    BgCommand(round % 2 ? "KBA014" : "KBA021");
    SpriteCommand("KUS012", 1);
    SpriteCommand("KUS022", 3);
    SpriteCommand("KUS024", 5);
    const double seconds = bench::secondsOf([] { EffectCommand(1, 16, EffectConstant); });
    if (round >= 4) measured.pictureSeconds.push_back(seconds);
  }
}

SceneFunction readScene() {
  BgCommand("BLACK");
  EffectCommand(1, 16, EffectConstant);
  measureLines();
  measurePictures();
  return {};
}

constexpr SpriteRow Sprites[] = {
    {"KUS012", 1, -150, 0, "KDS012", "Kds012_a", 136, 125, 169},
    {"KUS022", 2, -150, 0, "KDS022", "Kds022_a", 132, 139, 211},
    {"KUS024", 3, -150, 0, "KDS024", "Kds024_a", 136, 139, 211},
};
const SpeakerRow Speakers[] = {{tag().c_str(), tag().c_str(), nullptr, 1, false}};

SceneFunction startReading(ScenarioHost* host) {
  static const StoryTables tables{.speakers = Speakers, .sprites = Sprites};
  return startStory(host, {"Bench", readScene, &tables});
}

constexpr SceneEntry Scenes[] = {{"sc_menu", readScene}};
constexpr GameModule Module{
    ModuleAbi,     "Bench",        startReading, endStory, endAfterException,
    createManager, destroyManager, Scenes,       1};

void readInside(const bench::BenchFolder& root) {
  const KernelScope kernel(makeSimulatedKernel());
  FileSystem files(FileRoots{Sample, root.folder("inside"), fs::path(Sample) / "disc"});
  SettingsStore settings(root.folder("inside") / "settings.toml");
  bench::NoDialogs dialogs;
  TextRenderer text;
  SilentSound sound;
  const ServicesScope services({.files = &files,
                                .settings = &settings,
                                .dialogs = &dialogs,
                                .text = &text,
                                .wave = sound.wave(),
                                .midi = sound.midi()});
  testing::ReadingDisplay display;
  BoxDesk boxes(text);
  Recorder recorder;
  GameHost host(Module);
  UiLoop loop(host, display, boxes, recorder, {});
  display.read(host, {});
  QVScenario* const manager = createManager();
  Thread scenario;
  scenario.start("scenario", [&] {
    loop.setScenarioThread(Thread::currentId());
    for (SceneFunction scene = Module.start(&host); scene;)
      scene = scene();
    endStory();
    host.queue.post({MessageScenarioEnded, 0, 0});
  });
  loop.run();
  scenario.join();
  destroyManager(manager);
}

// --- Outside: the runner in a window ---

constexpr uint8_t Entry = 40;
constexpr uint32_t Colour = 0xE0C040;

/// A player's folder that holds all of the game but its module; the background is all one colour,
/// so that it is known when it comes.
fs::path playersFolder(const bench::BenchFolder& root) {
  fs::path player = root.folder("player");
  for (const char* folder : {"dat", "cg", "midi"})
    fs::copy(fs::path(Sample) / folder, player / folder, fs::copy_options::recursive);
  codec::IndexedPicture picture;
  picture.width = 640, picture.height = 480;
  picture.colours[Entry] = Colour;
  picture.pixels.assign(640 * 480, Entry);
  tool::writeFile(player / "cg/KBA014.mcg", codec::encodeMcg(picture));
  return player;
}

/// Thrown, so that the programs that were started end with it.
[[noreturn]] void giveUp(const std::string& why) {
  throw std::runtime_error(why);
}

std::string textOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// The runner with what it says, traces and plays, each in a file.
struct Reading {
  explicit Reading(const bench::BenchFolder& root)
      : said(root.folder("reading") / "said"),
        trace(root.folder("reading") / "trace"),
        sound(root.folder("reading") / "sound.raw"),
        command{"sh",
                "-c",
                "exec \"$0\" \"$@\" 2>" + said.string(),
                QV_BIN_DIR "/qvrun",
                "--user",
                playersFolder(root).string(),
                "--disc",
                std::string(Sample) + "/disc",
                "--trace",
                trace.string(),
                QV_OUTPUT_DIR "/reading"} {
    // The device that plays into a file, at the pace of one that is heard.
    setenv("SDL_AUDIODRIVER", "disk", 1);
    setenv("SDL_DISKAUDIOFILE", sound.c_str(), 1);
  }

  /// A runner without an output or without instruments says so, and is no measure. The output's
  /// library says its own about the file.
  void checkSilent() const {
    std::istringstream lines(textOf(said));
    for (std::string line; std::getline(lines, line);)
      if (line.starts_with("qvrun")) giveUp(line);
  }
  void checkSounds() const {
    const std::string bytes = textOf(sound);
    std::vector<float> samples(bytes.size() / sizeof(float));
    std::memcpy(samples.data(), bytes.data(), samples.size() * sizeof(float));
    constexpr float Audible = 0.01F;
    const auto loud =
        std::ranges::count_if(samples, [](float sample) { return std::fabs(sample) > Audible; });
    if (loud < OutputRate / 10) giveUp("nothing is heard of the song: its instruments are missing");
  }
  void checkSpeaks() const {
    if (textOf(trace).find("wave %:\\VOICE\\V00\\0000_001.wav") == std::string::npos)
      giveUp("the line has no voice");
  }

  fs::path said, trace, sound;
  std::vector<std::string> command;
};

void readInWindow(const bench::BenchFolder& root, bench::Table& table) {
  const Reading reading(root);
  const bench::XServer screen;
  std::vector<double> seconds, processor;
  for (int start = 0; start < Starts; ++start) {
    std::unique_ptr<bench::Program> program;
    seconds.push_back(bench::secondsOf([&] {
      program = std::make_unique<bench::Program>(reading.command);
      screen.await(Colour, true);
    }));
    processor.push_back(program->processorSeconds());
    if (start + 1 == Starts) {
      sleep(2);  // the song alone
      reading.checkSounds();
      screen.await(Colour, false);
      sleep(3);  // three figures and the line
      reading.checkSpeaks();
      table.atMost("memory of a reading with its sound font, MB", program->largestMegabytes(), 80);
    }
    reading.checkSilent();
    program.reset();
    screen.await(Colour, false);
  }
  table.atMost("from start to the story's first picture in a window, ms", median(seconds) * 1000,
               200);
  table.note("  the processor's time in it, ms", median(processor) * 1000);
}

}  // namespace

int main() try {
  bench::Table table;
  const bench::BenchFolder root;
  readInside(root);
  table.atLeast("lines a second: spoken, printed, answered at once", Lines / measured.wallSeconds,
                2000);
  table.note("  the processor's time of a line, microseconds", 1e6 * measured.lineSeconds / Lines);
  const auto share = [&](const char* what, double seconds) {
    table.note(what, 100 * seconds / measured.lineSeconds);
  };
  share("  of it SpeakLine with the name, percent", measured.speakSeconds);
  share("  of it laying out and drawing the text, percent", measured.printSeconds);
  share("  of it bringing the face to the screen, percent", measured.faceSeconds);
  share(
      "  the rest: the wait, its prompt and its threads, percent",
      measured.lineSeconds - measured.speakSeconds - measured.printSeconds - measured.faceSeconds);
  table.atMost("a background with three figures, cut, ms", median(measured.pictureSeconds) * 1000,
               8);
  readInWindow(root, table);
  return table.status();
} catch (const std::runtime_error& error) {
  std::fprintf(stderr, "story_bench: %s\n", error.what());
  return 1;
}
