#include "host/run.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>

#include <unistd.h>

#include "host/box_desk.h"
#include "host/frame_folder.h"
#include "host/game_host.h"
#include "host/module_loader.h"
#include "host/play_script.h"
#include "host/recorder.h"
#include "host/scene_runner.h"
#include "host/sound_devices.h"
#include "host/trace_file.h"
#include "host/ui_loop.h"
#include "host/volumes.h"
#include "platform/display/headless_display.h"
#include "platform/files/file_system.h"
#include "platform/services.h"
#include "platform/settings/settings_store.h"
#include "platform/text/font_search.h"
#include "platform/text/shift_jis.h"
#include "platform/text/text_renderer.h"

namespace qv {

namespace fs = std::filesystem;

namespace {

constexpr size_t MostScriptBytes = 64u << 20;

/// Reads and checks the play script; false with a sentence.
bool readScript(const fs::path& file, std::vector<ScriptLine>& lines, std::string& whyNot) {
  std::ifstream stream(file, std::ios::binary);
  std::string text;
  std::array<char, 1 << 16> part{};
  while (text.size() <= MostScriptBytes && (stream.read(part.data(), part.size()), stream.gcount()))
    text.append(part.data(), static_cast<size_t>(stream.gcount()));
  if (!stream.eof()) {
    whyNot = "The play script " + file.string() +
             (text.size() > MostScriptBytes ? " is too large." : " cannot be read.");
    return false;
  }
  ParsedScript script = parsePlayScript(text);
  if (!script.complaint.empty()) {
    whyNot = file.string() + ": " + script.complaint + ".";
    return false;
  }
  if (const ScriptLine* line = ScriptPlayer::unsupportedLine(script.lines)) {
    whyNot = file.string() + ": line " + std::to_string(line->number) + ": this program cannot \"" +
             line->source + "\" yet.";
    return false;
  }
  lines = std::move(script.lines);
  return true;
}

std::unique_ptr<Kernel> makeKernel(const Options& options) {
  if (!options.simulate) return makeRealKernel();
  SimulatedKernelOptions simulation;
  simulation.seed = *options.simulate;
  return makeSimulatedKernel(simulation);
}

/// The player's folder: as told, or in the XDG data home.
fs::path playerFolder(const Options& options, const std::string& applicationName) {
  if (!options.user.empty()) return options.user;
  const char* dataHome = std::getenv("XDG_DATA_HOME");
  const char* home = std::getenv("HOME");
  fs::path base = dataHome && *dataHome ? fs::path(dataHome)
                                        : fs::path(home && *home ? home : ".") / ".local/share";
  return base / "qvlib" / applicationName;
}

fs::path discFolder(const Options& options) {
  if (!options.disc.empty()) return options.disc;
  std::error_code error;
  const fs::path own = options.game / "disc";
  return fs::is_directory(own, error) ? own : fs::path{};
}

/// Which fonts are missing, in a sentence; empty when none are.
std::string fontComplaint(const TextRenderer& text) {
  std::string missing;
  for (const FontFace face : {FontFace::Gothic, FontFace::ProportionalGothic, FontFace::Mincho,
                              FontFace::ProportionalMincho})
    if (!text.hasFont(face))
      missing += (missing.empty() ? "" : ", ") + std::string(fontFileName(face));
  if (missing.empty()) return missing;
  return "Fonts are missing (" + missing +
         "), and text in them is drawn with the built-in one, which has no kanji; the packages "
         "fonts-ipafont-gothic and fonts-ipafont-mincho bring them.";
}

int complain(const Options& options, int status, const std::string& sentence) {
  std::fprintf(stderr, "%s: %s\n", options.program.c_str(), sentence.c_str());
  return status;
}

/// The run once kernel and module stand: everything below lives inside one call.
class Run {
 public:
  Run(const Options& options, LoadedModule& module, const MakeSoundDevices& makeSoundDevices)
      : options_(options),
        module_(module),
        makeSoundDevices_(makeSoundDevices),
        text_(options.fonts) {}
  int play();

 private:
  bool prepare(std::string& whyNot);
  std::unique_ptr<Display> openDisplay(const std::string& title, std::string& whyNot) const;
  std::unique_ptr<SoundDevices> openSound() const;
  int status(const UiLoop& loop, const RunResult& result, const Display& display) const;
  int complain(int status, const std::string& sentence) const {
    return qv::complain(options_, status, sentence);
  }

  const Options& options_;
  LoadedModule& module_;
  const MakeSoundDevices& makeSoundDevices_;
  HostVolumes volumes_;
  std::vector<ScriptLine> script_;
  TraceFile trace_;
  Recorder recorder_;
  TextRenderer text_;
};

bool Run::prepare(std::string& whyNot) {
  if (!options_.play.empty() && !readScript(options_.play, script_, whyNot)) return false;
  if (!options_.disc.empty() && !fs::is_directory(options_.disc)) {
    whyNot = "The disc's folder " + options_.disc.string() + " is not there.";
    return false;
  }
  if (!options_.fonts.empty() && !fs::is_directory(options_.fonts)) {
    whyNot = "The fonts' folder " + options_.fonts.string() + " is not there.";
    return false;
  }
  if (!options_.trace.empty() && !trace_.open(options_.trace)) {
    whyNot = "The trace " + options_.trace.string() + " cannot be written.";
    return false;
  }
  if (!options_.record.empty() && !recorder_.open(options_.record)) {
    whyNot = "The record " + options_.record.string() + " cannot be written.";
    return false;
  }
  if (!options_.scene.empty() && !findScene(*module_.table(), options_.scene.c_str())) {
    whyNot = "The game has no scene named " + options_.scene + ".";
    return false;
  }
  return true;
}

std::unique_ptr<Display> Run::openDisplay(const std::string& title, std::string& whyNot) const {
  if (!options_.frames.empty()) return std::make_unique<FrameFolder>(options_.frames);
  if (options_.headless) return std::make_unique<HeadlessDisplay>();
  return makeWindowDisplay({.title = title,
                            .scaling = options_.scaling,
                            .fullScreen = options_.fullScreen,
                            .scale = options_.scale},
                           whyNot);
}

std::unique_ptr<SoundDevices> Run::openSound() const {
  return makeSoundDevices_(
      {.silent = options_.headless || options_.noSound,
       .disc = discFolder(options_),
       .soundFont = options_.soundFont,
       .midiPort = options_.midiPort,
       .volumes = &volumes_,
       .notice = [this](const std::string& sentence) { complain(StatusGood, sentence); }});
}

int Run::play() {
  std::string whyNot;
  if (!prepare(whyNot)) return complain(StatusUsage, whyNot);
  const std::string name = utf8OfShiftJis(module_.table()->applicationName);
  const std::unique_ptr<Display> display = openDisplay(name, whyNot);
  if (!display) return complain(StatusUsage, whyNot);

  const fs::path player = playerFolder(options_, name);
  std::error_code error;
  fs::create_directories(player, error);
  if (error)
    return complain(StatusUsage, "The player's folder " + player.string() +
                                     " cannot be made: " + error.message() + ".");
  FileSystem files({options_.game, player, discFolder(options_)});
  SettingsStore settings(player / "settings.toml");
  if (!settings.complaint().empty()) complain(StatusGood, settings.complaint());
  if (const std::string missing = fontComplaint(text_); !missing.empty())
    complain(StatusGood, missing);
  takeVolumes(settings, options_.volumes, volumes_);
  const std::unique_ptr<SoundDevices> sound = openSound();
  BoxDesk boxes(text_);
  if (options_.headless && options_.play.empty()) boxes.setUnattended();
  const ServicesScope services({.files = &files,
                                .settings = &settings,
                                .dialogs = &boxes,
                                .text = &text_,
                                .wave = sound->wave(),
                                .midi = sound->midi(),
                                .disc = sound->disc(),
                                .trace = options_.trace.empty() ? nullptr : &trace_});
  const SceneFunction first = options_.scene.empty()
                                  ? SceneFunction{}
                                  : findScene(*module_.table(), options_.scene.c_str());

  GameHost host(*module_.table());
  UiLoop loop(host, *display, boxes, recorder_,
              {.canShow = !options_.headless,
               .shots = options_.shots,
               .applicationName = name,
               .pictureShown = [&sound] { sound->pictureShown(); }});
  if (!options_.play.empty()) loop.play(std::move(script_), options_.play.string());

  QVScenario* manager = module_.table()->createManager();
  RunResult result;
  Thread scenario;
  scenario.start("scenario", [&] {
    loop.setScenarioThread(Thread::currentId());
    result = SceneRunner(*module_.table(), host).run(first);
    host.queue.post({MessageScenarioEnded, 0, 0});
  });
  loop.run();
  const int exitStatus = status(loop, result, *display);
  if (!scenario.join(loop.scenarioEnded() ? WaitForever : 0)) {
    // A scene that does not come back holds on to the module: the process leaves around it.
    complain(exitStatus, "A scene did not end in time and is left behind.");
    std::_Exit(exitStatus);
  }
  module_.table()->destroyManager(manager);
  return exitStatus;
}

int Run::status(const UiLoop& loop, const RunResult& result, const Display& display) const {
  if (!loop.failure().empty()) return complain(StatusFailed, loop.failure());
  if (loop.scenarioEnded() && result.end == RunResult::End::Failed)
    return complain(StatusFailed, "The game ended with an error: " + result.what);
  const auto* const frames = dynamic_cast<const FrameFolder*>(&display);
  if (frames && !frames->complaint().empty()) return complain(StatusFailed, frames->complaint());
  return StatusGood;
}

}  // namespace

int runGame(const Options& options, const MakeSoundDevices& makeSoundDevices) {
  std::error_code error;
  if (!fs::is_directory(options.game, error))
    return complain(options, StatusUsage, "There is no game folder " + options.game.string() + ".");
  const KernelScope kernel(makeKernel(options));
  LoadedModule module;
  std::string whyNot;
  if (!module.load(options.game, whyNot)) return complain(options, StatusUsage, whyNot);
  return Run(options, module, makeSoundDevices).play();
}

}  // namespace qv
