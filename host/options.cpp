#include "host/options.h"

#include <array>
#include <cstdio>
#include <utility>

#include <CLI/CLI.hpp>

namespace qv {

std::optional<int> readOptions(int argc, char** argv, const char* version, Options& options) {
  CLI::App app("Plays a visual novel from its game folder.", "qvrun");
  uint64_t seed = 0;
  bool wholeFactors = false;
  app.add_option("GAME_FOLDER", options.game, "the folder of the game (default: this one)");
  app.add_option("--play", options.play, "drive the game by this play script");
  app.add_flag("--headless", options.headless, "no window and no sound device");
  const CLI::Option* simulate = app.add_option(
      "--simulate", seed, "simulated time and threads from this seed; no window, no device");
  app.add_option("--shots", options.shots, "where the play script's pictures go");
  app.add_option("--frames", options.frames,
                 "keep every frame in this folder; no window, no device");
  app.add_option("--trace", options.trace, "write what happens, a line each, to this file");
  app.add_option("--user", options.user, "the player's folder, for saves and settings");
  app.add_option("--disc", options.disc, "the folder of the data disc");
  app.add_option("--fonts", options.fonts, "look for the fonts in this folder alone");
  app.add_option("--scene", options.scene, "start with this scene");
  app.add_option("--record", options.record, "write what the player does as a play script");
  app.add_flag("--full-screen", options.fullScreen, "start in full screen");
  app.add_flag("--whole-factors", wholeFactors, "scale the picture by whole factors only");
  constexpr std::array<std::pair<const char*, const char*>, VolumeCount> Volumes{{
      {"--volume-whole", "volume of everything, 0 to 100; kept for later runs, as are the next"},
      {"--volume-music", "volume of songs"},
      {"--volume-wave", "volume of voices and effects"},
      {"--volume-disc", "volume of the disc's tracks"},
  }};
  for (size_t i = 0; i < VolumeCount; ++i)
    app.add_option(Volumes[i].first, options.volumes[i], Volumes[i].second)
        ->check(CLI::Range(0, 100));
  app.add_option("--sound-font", options.soundFont, "the sound font that plays songs");
  app.add_option("--midi-port", options.midiPort,
                 "send songs to this port, by name or number, or to none");
  app.add_flag("--no-sound", options.noSound, "no sound device; all sounds keep their time");
  app.set_version_flag("--version", std::string("qvrun ") + version);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {  // help and version
      app.exit(error);
      return StatusGood;
    }
    std::fprintf(stderr, "qvrun: %s (see qvrun --help).\n", error.what());
    return StatusUsage;
  }
  if (simulate->count() > 0) {
    options.simulate = seed;
    options.headless = true;
  }
  if (!options.frames.empty()) options.headless = true;
  if (wholeFactors) options.scaling = Scaling::WholeFactors;
  return std::nullopt;
}

}  // namespace qv
