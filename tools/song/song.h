#pragma once

/// A song as a composer means it: parts with their instruments and notes in ticks. The text reader
/// fills it, the file writer turns it into a Standard MIDI File. Plain values; any thread.

#include <cstdint>
#include <string>
#include <vector>

namespace qv::song {

constexpr uint32_t TicksPerQuarter = 480;
constexpr int Channels = 16;
constexpr int DrumChannel = 9;  ///< counted from 0, as in the messages
constexpr int SlowestTempo = 20, FastestTempo = 300;

struct Note {
  uint32_t tick = 0;     ///< from the song's start
  uint32_t length = 0;   ///< ticks that it sounds, above 0
  uint8_t key = 0;       ///< 60 is c4
  uint8_t velocity = 0;  ///< 1 to 127
  bool operator==(const Note&) const = default;
};

struct Part {
  std::string name;
  int channel = -1;  ///< from 0
  bool drums = false;
  int program = 0;  ///< from 0; of drums the kit
  int pan = 64, expression = 100, reverb = 40, chorus = 0;
  int gate = 92;  ///< per cent of its length that a note sounds
  int transpose = 0;
  int line = 0;             ///< where it was declared
  std::vector<Note> notes;  ///< by tick
};

struct TempoChange {
  uint32_t tick = 0;
  int beatsPerMinute = 120;
  bool operator==(const TempoChange&) const = default;
};

struct Song {
  std::string title, composer;
  int beats = 4, beatUnit = 4;
  int sharps = 0;  ///< of the key signature; flats are negative
  bool minor = false;
  int volume = 100;  ///< controller 7, one for all channels
  std::vector<TempoChange> tempi{TempoChange{}};
  std::vector<Part> parts;  ///< the most important first
  uint32_t length = 0;      ///< ticks

  uint32_t barTicks() const {
    return static_cast<uint32_t>(beats) * TicksPerQuarter * 4 / static_cast<uint32_t>(beatUnit);
  }
};

/// The song's length in time.
double secondsOf(const Song& song);

/// "c4" for 60; with sharps alone.
std::string keyName(int key);
/// The instrument of a program (0 to 127), as the notation spells it.
const char* programName(int program);
/// The program of a name; -1 for none.
int programOf(const std::string& name);
/// The short name of a drum's key as the notation spells it; null for a key that has none.
const char* drumName(int key);
/// The key of a drum's name; -1 for none.
int drumKey(const std::string& name);

}  // namespace qv::song
