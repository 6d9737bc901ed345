// reel: a picture comes onto the screen by an effect, in a window or as a folder of frames.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <sstream>
#include <string>

#include <CLI/CLI.hpp>
#include <unistd.h>

#include "host/run.h"
#include "host/silent_sound.h"
#include "tools/failure.h"
#include "tools/qvtool/commands.h"
#include "tools/qvtool/engine_picture.h"
#include "tools/qvtool/reel_module.h"

namespace qv::tool {

namespace {

namespace fs = std::filesystem;

constexpr int32_t LastEffect = 127, FirstShapeWipe = 65, LastShapeWipe = 80;
constexpr std::array PaletteEffects = {5, 9, 60, 61, 62, 63};
constexpr int32_t MostSteps = 1000;

constexpr const char* Effects =
    "Effects: 1 cut, 2-4 combs, 5 pattern, 9 palette, 10-23 wipes, 26-29 curtains, 30-37 slides,\n"
    "38-47 tiles, 48-49 lines, 50-52 sweeps, 60-63 rotations, 65-80 shape wipes (with --mask).\n"
    "In the window any key or click goes on at once; Escape or the right button ends.";

struct ReelOptions {
  fs::path picture, from, mask1, mask2, shots;
  std::vector<std::string> effects;
  std::string key, place;
  int bits = 8, scale = 1;
  double stillSeconds = 1;
  uint64_t seed = 1;
};

/// A folder that is there for as long as the run: the game and the player's folder, both empty.
class EmptyFolder {
 public:
  EmptyFolder() {
    std::string name = (fs::temp_directory_path() / "qvtool-reel-XXXXXX").string();
    if (!mkdtemp(name.data())) throw Failure("No folder for the time of the run can be made.");
    path_ = name;
  }
  ~EmptyFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  EmptyFolder(const EmptyFolder&) = delete;
  EmptyFolder& operator=(const EmptyFolder&) = delete;
  const fs::path& path() const { return path_; }

 private:
  fs::path path_;
};

/// Effects work on pictures with a palette.
QVDib eightBitPicture(const fs::path& path) {
  if (path.empty()) return {};
  const EnginePicture picture = readEnginePicture(path);
  if (picture.dib.bitCount() != 8)
    throw Failure(path.string() + " has " + std::to_string(picture.dib.bitCount()) +
                  " bits a pixel; effects show pictures of 8 bits.");
  return picture.dib;
}

std::optional<int32_t> effectNumber(const std::string& text) {
  const bool digits =
      !text.empty() && text.size() <= 3 &&
      std::all_of(text.begin(), text.end(), [](char byte) { return byte >= '0' && byte <= '9'; });
  const int32_t number = digits ? std::atoi(text.c_str()) : 0;
  if (number < 1 || number > LastEffect) return std::nullopt;
  return number;
}

/// "40", "38-47" or several with commas between.
void addEffects(const std::string& text, std::vector<int32_t>& effects) {
  std::istringstream parts(text);
  for (std::string part; std::getline(parts, part, ',');) {
    const size_t dash = part.find('-');
    const auto first = effectNumber(part.substr(0, dash));
    const auto last = dash == std::string::npos ? first : effectNumber(part.substr(dash + 1));
    if (!first || !last || *last < *first)
      throw Failure("\"" + part +
                    "\" is no effect; write 40, or 38-47 for all of them (1 to 127).");
    for (int32_t effect = *first; effect <= *last; ++effect)
      effects.push_back(effect);
  }
}

ColourKey keyOf(const std::string& text) {
  if (text.empty()) return KeyNone;
  if (text == "top-left") return KeyTopLeft;
  int index = 0, taken = 0;
  if (std::sscanf(text.c_str(), "%3d%n", &index, &taken) != 1 ||
      taken != static_cast<int>(text.size()) || index < 0 || index > 255)
    throw Failure("\"" + text + "\" is no key; write an index from 0 to 255, or top-left.");
  return index;
}

void parsePlace(const std::string& text, ReelWishes& wishes) {
  int taken = 0;
  if (text.empty()) return;
  if (std::sscanf(text.c_str(), "%5d,%5d%n", &wishes.x, &wishes.y, &taken) != 2 ||
      taken != static_cast<int>(text.size()))
    throw Failure("\"" + text + "\" is no place; write 40,120.");
}

void readWishes(const ReelOptions& options, ReelWishes& wishes) {
  for (const std::string& text : options.effects)
    addEffects(text, wishes.effects);
  wishes.key = keyOf(options.key);
  parsePlace(options.place, wishes);
  wishes.picture = eightBitPicture(options.picture);
  wishes.from = eightBitPicture(options.from);
  wishes.mask1 = eightBitPicture(options.mask1);
  wishes.mask2 = eightBitPicture(options.mask2);
  wishes.trueColour = options.bits == 32;
  for (const int32_t effect : wishes.effects) {
    if (effect >= FirstShapeWipe && effect <= LastShapeWipe && wishes.mask1.empty())
      throw Failure("Effect " + std::to_string(effect) + " is a shape wipe; give it a --mask.");
    if (wishes.trueColour && std::ranges::find(PaletteEffects, effect) != std::end(PaletteEffects))
      throw Failure("Effect " + std::to_string(effect) + " needs a palette, so a view of 8 bits.");
  }
  wishes.stillTenths = static_cast<int32_t>(std::lround(options.stillSeconds * 10));
  if (wishes.rounds == 0 && !options.shots.empty()) wishes.rounds = 1;
}

void playReel(const ReelOptions& reel) {
  readWishes(reel, reelWishes());
  const EmptyFolder folder;
  Options run;
  run.program = "qvtool";
  run.game = run.user = folder.path();
  run.scale = reel.scale;
  if (!reel.shots.empty()) {
    run.headless = true;
    run.frames = reel.shots;
    run.simulate = reel.seed;
  }
  const auto silence = [](const SoundRequest&) { return std::make_unique<SilentSound>(); };
  if (const int status = runGame(run, silence)) throw ToldFailure{status};
}

}  // namespace

void addReelCommand(CLI::App& program) {
  CLI::App* command =
      program.add_subcommand("reel", "Play a picture with an effect, in a window or into frames");
  command->footer(Effects);
  const auto options = std::make_shared<ReelOptions>();
  ReelWishes& wishes = reelWishes();
  const CLI::Range steps(1, MostSteps);
  command->add_option("PICTURE", options->picture, "The picture that comes")->required();
  command->add_option("--effect", options->effects, "Its number, or several: 40, 38-47, 2,5")
      ->required()
      ->allow_extra_args(false);
  command->add_option("--from", options->from, "The picture that stands before (black)");
  command->add_option("--key", options->key, "INDEX or top-left: pixels that are left out");
  command->add_option("--at", options->place, "X,Y: where the picture goes (0,0)");
  command->add_option("--steps", wishes.steps, "Of a palette fade or a shape wipe (16)")
      ->check(steps);
  command->add_option("--delay", wishes.delayMillis, "Of a shape wipe's step, in ms (15)")
      ->check(CLI::Range(0, 1000));
  command->add_option("--degrees", wishes.degrees, "Of a rotation's frame (5)")
      ->check(CLI::Range(1, 90));
  command->add_option("--turns", wishes.turns, "Of a rotation (0)")->check(CLI::Range(0, 100));
  command->add_option("--mask", options->mask1, "The shape of a wipe, a rotation's back side");
  command->add_option("--mask2", options->mask2, "The shape of a wipe's second half");
  command->add_option("--bits", options->bits, "8 or 32: of the view that it goes to (8)")
      ->check(CLI::IsMember({8, 32}));
  command->add_option("--scale", options->scale, "Of the window, in whole game screens (1)")
      ->check(CLI::Range(1, 8));
  command->add_option("--still", options->stillSeconds, "Seconds before and behind (1)")
      ->check(CLI::Range(0.0, 60.0));
  command->add_option("--rounds", wishes.rounds, "How often; 0: until the window is closed")
      ->check(CLI::Range(0, MostSteps));
  command->add_option("--shots", options->shots,
                      "Write every frame into this folder, in simulated time, without a window");
  command->add_option("--seed", options->seed, "Of what is random in the shots (1)");
  command->callback([options] { playReel(*options); });
}

}  // namespace qv::tool
