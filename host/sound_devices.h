#pragma once

/// What a run sounds through. The program that owns main() makes the machine's devices, with the
/// libraries behind them; runs without a window, and all tests, take the silent ones.

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "platform/sound/mixer.h"

namespace qv {

class DiscPlayer;
class MidiOutput;
class WaveOutput;

class SoundDevices {
 public:
  virtual ~SoundDevices() = default;
  /// The first picture is on the screen: what would have kept it back may begin. The UI thread.
  virtual void pictureShown() {}
  virtual WaveOutput* wave() = 0;
  virtual MidiOutput* midi() = 0;  ///< null: songs are sent nowhere
  virtual DiscPlayer* disc() = 0;  ///< null: there is no disc with audio tracks
};

struct SoundRequest {
  bool silent = false;              ///< only time is kept
  std::filesystem::path disc;       ///< the data disc's folder, or none
  std::filesystem::path soundFont;  ///< empty: the usual one
  std::string midiPort;             ///< empty: the synthesiser; "none": no MIDI device
  const HostVolumes* volumes = nullptr;
  /// Takes a sentence (UTF-8) for the player about what is missing.
  std::function<void(const std::string& sentence)> notice;
};

using MakeSoundDevices = std::function<std::unique_ptr<SoundDevices>(const SoundRequest& request)>;

}  // namespace qv
