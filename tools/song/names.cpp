// What instruments, drums and keys are called.

#include <array>
#include <string>
#include <utility>

#include "tools/song/song.h"

namespace qv::song {

namespace {

constexpr std::array<const char*, 128> Programs = {"piano",
                                                   "bright-piano",
                                                   "electric-grand",
                                                   "honky-tonk",
                                                   "electric-piano",
                                                   "electric-piano-2",
                                                   "harpsichord",
                                                   "clavi",
                                                   "celesta",
                                                   "glockenspiel",
                                                   "music-box",
                                                   "vibraphone",
                                                   "marimba",
                                                   "xylophone",
                                                   "tubular-bells",
                                                   "dulcimer",
                                                   "organ",
                                                   "percussive-organ",
                                                   "rock-organ",
                                                   "church-organ",
                                                   "reed-organ",
                                                   "accordion",
                                                   "harmonica",
                                                   "tango-accordion",
                                                   "nylon-guitar",
                                                   "steel-guitar",
                                                   "jazz-guitar",
                                                   "clean-guitar",
                                                   "muted-guitar",
                                                   "overdriven-guitar",
                                                   "distortion-guitar",
                                                   "guitar-harmonics",
                                                   "acoustic-bass",
                                                   "finger-bass",
                                                   "pick-bass",
                                                   "fretless-bass",
                                                   "slap-bass",
                                                   "slap-bass-2",
                                                   "synth-bass",
                                                   "synth-bass-2",
                                                   "violin",
                                                   "viola",
                                                   "cello",
                                                   "contrabass",
                                                   "tremolo-strings",
                                                   "pizzicato",
                                                   "harp",
                                                   "timpani",
                                                   "strings",
                                                   "slow-strings",
                                                   "synth-strings",
                                                   "synth-strings-2",
                                                   "choir",
                                                   "voice",
                                                   "synth-voice",
                                                   "orchestra-hit",
                                                   "trumpet",
                                                   "trombone",
                                                   "tuba",
                                                   "muted-trumpet",
                                                   "french-horn",
                                                   "brass",
                                                   "synth-brass",
                                                   "synth-brass-2",
                                                   "soprano-sax",
                                                   "alto-sax",
                                                   "tenor-sax",
                                                   "baritone-sax",
                                                   "oboe",
                                                   "english-horn",
                                                   "bassoon",
                                                   "clarinet",
                                                   "piccolo",
                                                   "flute",
                                                   "recorder",
                                                   "pan-flute",
                                                   "bottle",
                                                   "shakuhachi",
                                                   "whistle",
                                                   "ocarina",
                                                   "square-lead",
                                                   "saw-lead",
                                                   "calliope",
                                                   "chiff",
                                                   "charang",
                                                   "voice-lead",
                                                   "fifths",
                                                   "bass-lead",
                                                   "new-age-pad",
                                                   "warm-pad",
                                                   "poly-pad",
                                                   "choir-pad",
                                                   "bowed-pad",
                                                   "metallic-pad",
                                                   "halo-pad",
                                                   "sweep-pad",
                                                   "fx-rain",
                                                   "soundtrack",
                                                   "crystal",
                                                   "atmosphere",
                                                   "brightness",
                                                   "goblins",
                                                   "echoes",
                                                   "sci-fi",
                                                   "sitar",
                                                   "banjo",
                                                   "shamisen",
                                                   "koto",
                                                   "kalimba",
                                                   "bagpipe",
                                                   "fiddle",
                                                   "shanai",
                                                   "tinkle-bell",
                                                   "agogo",
                                                   "steel-drums",
                                                   "woodblock",
                                                   "taiko",
                                                   "melodic-tom",
                                                   "synth-drum",
                                                   "reverse-cymbal",
                                                   "fret-noise",
                                                   "breath-noise",
                                                   "seashore",
                                                   "bird",
                                                   "telephone",
                                                   "helicopter",
                                                   "applause",
                                                   "gunshot"};

constexpr std::pair<const char*, int> Drums[] = {
    {"bd", 36}, {"rs", 37}, {"sd", 38}, {"cp", 39}, {"lt", 41}, {"hh", 42}, {"ph", 44},
    {"mt", 45}, {"oh", 46}, {"cr", 49}, {"ht", 50}, {"rd", 51}, {"tb", 54}, {"cb", 56},
    {"sh", 70}, {"cl", 75}, {"wb", 76}, {"tr", 81}, {"br", 40}, {"bt", 84}};

}  // namespace

std::string keyName(int key) {
  static constexpr const char* Names[] = {"c",  "c#", "d",  "d#", "e",  "f",
                                          "f#", "g",  "g#", "a",  "a#", "b"};
  return Names[key % 12] + std::to_string(key / 12 - 1);
}

const char* programName(int program) {
  return Programs[static_cast<size_t>(program) & 127];
}

int programOf(const std::string& name) {
  for (size_t at = 0; at < Programs.size(); ++at)
    if (name == Programs[at]) return static_cast<int>(at);
  return -1;
}

const char* drumName(int key) {
  for (const auto& [name, drum] : Drums)
    if (drum == key) return name;
  return nullptr;
}

int drumKey(const std::string& name) {
  for (const auto& [drum, key] : Drums)
    if (name == drum) return key;
  return -1;
}

double secondsOf(const Song& song) {
  double seconds = 0;
  for (size_t at = 0; at < song.tempi.size(); ++at) {
    const uint32_t end = at + 1 < song.tempi.size() ? song.tempi[at + 1].tick : song.length;
    seconds += (end - song.tempi[at].tick) * 60.0 /
               (static_cast<double>(song.tempi[at].beatsPerMinute) * TicksPerQuarter);
  }
  return seconds;
}

}  // namespace qv::song
