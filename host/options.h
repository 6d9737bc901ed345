#pragma once

/// What the command line of qvrun says.

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "host/volumes.h"
#include "platform/display/display.h"

namespace qv {

struct Options {
  std::string program = "qvrun";  ///< who speaks when something is wrong
  std::filesystem::path game = ".";
  std::filesystem::path user;   ///< the player's folder; empty: the XDG data home
  std::filesystem::path disc;   ///< empty: the folder `disc` of the game folder, if it is there
  std::filesystem::path fonts;  ///< where the fonts are; empty: where the machine has them
  std::filesystem::path play;   ///< a play script
  std::filesystem::path shots = ".";
  std::filesystem::path frames;  ///< every frame goes here as a picture; means headless
  std::filesystem::path trace;
  std::filesystem::path record;
  std::string scene;  ///< start there
  bool headless = false;
  std::optional<uint64_t> simulate;  ///< the seed; means headless
  Scaling scaling = Scaling::Fit;
  bool fullScreen = false;
  WantedVolumes volumes;            ///< percents, where the player wants other ones
  std::filesystem::path soundFont;  ///< empty: the usual one
  std::string midiPort;             ///< empty: the synthesiser; "none": no MIDI device
  bool noSound = false;
  int scale = 1;  ///< of the window when it opens
};

/// Exit statuses of qvrun.
inline constexpr int StatusGood = 0, StatusFailed = 1, StatusUsage = 2;

/// Reads the command line. Gives a status when the program is to end at once (help, version, or a
/// bad option, told in a sentence).
std::optional<int> readOptions(int argc, char** argv, const char* version, Options& options);

}  // namespace qv
