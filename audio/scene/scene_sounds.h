#pragma once

/// The rules by which scenes are heard: names become files by the tables, the player's switches are
/// kept, and registers note what should be sounding, so that a load or a switch brings it back.
/// Scenario thread.

#include <cstdint>
#include <string>

namespace qv {

class QVScenario;

/// What the rules ask of the players; the manager's operations in a game.
class SoundChannels {
 public:
  virtual ~SoundChannels() = default;
  virtual bool hasMidiDevice() = 0;
  virtual void playSong(const std::string& file, uint32_t loop) = 0;
  virtual void fadeInSong(const std::string& file, uint32_t millis) = 0;
  virtual void fadeOutSong(uint32_t millis) = 0;
  virtual void stopSong() = 0;
  virtual void playWave(const std::string& file, uint32_t loops) = 0;
  virtual void stopWave() = 0;
};

class SceneSounds {
 public:
  SceneSounds(QVScenario& manager, SoundChannels& channels)
      : manager_(manager), channels_(channels) {}

  void playBgm(const char* name, const char* mode);
  void restoreBgm();
  void playSe(const char* name, int32_t loops);
  void restoreSe();
  void stopSe();

 private:
  bool musicIsOn();
  void startSong(int32_t number, const char* mode);
  void setBgm(int32_t number);
  void setSe(int32_t code, int32_t loops);

  QVScenario& manager_;
  SoundChannels& channels_;
};

}  // namespace qv
