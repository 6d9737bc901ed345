// From a Standard MIDI File back to the notation.

#include <algorithm>
#include <array>
#include <map>
#include <string_view>
#include <utility>

#include "tools/song/listing.h"
#include "tools/song/song.h"

namespace qv::song {

namespace {

constexpr uint32_t MostTicks = 1000 * 4 * TicksPerQuarter;

struct Voice {
  Part part;
  std::map<uint32_t, std::vector<Note>> onsets;  ///< by tick on the grid
};

struct Score {
  Song song;
  std::vector<Voice> voices;
  std::vector<std::string> remarks;
  int cut = 0;  ///< notes that end where the next begins
};

/// Every sum of the notation's lengths is a multiple of 20 ticks other than 20 itself. Places on
/// multiples of 40 and 60 are the usual ones: plain values and triplets.
uint32_t onGrid(uint64_t tick) {
  const uint64_t bounded = std::min<uint64_t>(tick, MostTicks);
  const uint64_t fours = (bounded + 20) / 40 * 40, sixes = (bounded + 30) / 60 * 60;
  const auto far = [&](uint64_t place) {
    return place > bounded ? place - bounded : bounded - place;
  };
  return static_cast<uint32_t>(far(fours) <= far(sixes) ? fours : sixes);
}

struct LengthName {
  uint32_t ticks;
  std::string_view name;
};
constexpr LengthName Lengths[] = {
    {2880, "1."}, {1920, "1"}, {1440, "2."}, {1280, "1t"}, {960, "2"}, {720, "4."},
    {640, "2t"},  {480, "4"},  {360, "8."},  {320, "4t"},  {240, "8"}, {180, "16."},
    {160, "8t"},  {120, "16"}, {80, "16t"},  {60, "32"},   {40, "32t"}};

class Speller {
 public:
  explicit Speller(const Song& song) : song_(song) {}
  std::string operator()(const Part& part, const Note& note) const {
    const int key = note.key;
    if (part.drums) {
      const char* const name = drumName(key);
      return name ? name : "bd";
    }
    static constexpr std::string_view Sharp[] = {"c",  "c#", "d",  "d#", "e",  "f",
                                                 "f#", "g",  "g#", "a",  "a#", "b"};
    static constexpr std::string_view Flat[] = {"c",  "db", "d",  "eb", "e",  "f",
                                                "gb", "g",  "ab", "a",  "bb", "b"};
    const std::span<const std::string_view, 12> names(song_.sharps < 0 ? Flat : Sharp);
    std::string name(names[static_cast<size_t>(key % 12)]);
    // What the key signature would change needs its natural sign.
    static constexpr std::string_view Sharps = "fcgdaeb", Flats = "beadgcf";
    const std::string_view order = song_.sharps < 0 ? Flats : Sharps;
    const auto signs = static_cast<size_t>(song_.sharps < 0 ? -song_.sharps : song_.sharps);
    if (name.size() == 1 && order.find(name[0]) < signs) name += '=';
    return name + std::to_string(std::max(key / 12 - 1, 0));
  }

 private:
  const Song& song_;
};

uint32_t scaled(uint64_t tick, int division) {
  const uint64_t bounded = std::min<uint64_t>(tick, uint64_t{1} << 40);
  return static_cast<uint32_t>(std::min<uint64_t>(
      bounded * TicksPerQuarter / static_cast<uint64_t>(std::max(division, 1)), MostTicks));
}

void readController(Score& score, Part& part, int number, int value) {
  switch (number) {
    case 7:
      score.song.volume = std::max(value, 1);
      break;
    case 10:
      part.pan = value;
      break;
    case 11:
      part.expression = value;
      break;
    case 91:
      part.reverb = value;
      break;
    case 93:
      part.chorus = value;
      break;
    default:
      break;
  }
}

void readMeta(Score& score, const SmfEvent& event, uint32_t tick) {
  const auto& data = event.data;
  Song& song = score.song;
  if (event.type == 0x51 && data.size() == 3) {
    const uint32_t micros =
        static_cast<uint32_t>(data[0]) << 16 | static_cast<uint32_t>(data[1]) << 8 | data[2];
    const int tempo = std::clamp(micros == 0 ? FastestTempo : static_cast<int>(60'000'000 / micros),
                                 SlowestTempo, FastestTempo);
    if (tick == 0)
      song.tempi.front().beatsPerMinute = tempo;
    else
      song.tempi.push_back({tick, tempo});
  } else if (event.type == 0x58 && data.size() >= 2 && tick == 0) {
    if (data[0] >= 1 && data[0] <= 16 && data[1] >= 1 && data[1] <= 4) {
      song.beats = data[0];
      song.beatUnit = 1 << data[1];
    }
  } else if (event.type == 0x59 && data.size() == 2) {
    const int sharps = data[0] < 128 ? data[0] : data[0] - 256;
    if (sharps < -7 || sharps > 7) return;
    song.sharps = sharps;
    song.minor = data[1] != 0;
  }
}

void addToChord(std::vector<Note>& chord, const Note& note) {
  const bool twice = std::any_of(chord.begin(), chord.end(),
                                 [&](const Note& other) { return other.key == note.key; });
  if (!twice && chord.size() < 8) chord.push_back(note);
}

/// Notes 20 ticks apart, a gap that no length fills, become a chord.
void joinNearOnsets(Voice& voice) {
  for (auto at = voice.onsets.begin(); at != voice.onsets.end();) {
    const auto next = std::next(at);
    if (next == voice.onsets.end() || next->first - at->first != 20) {
      at = next;
      continue;
    }
    for (const Note& note : next->second)
      addToChord(at->second, note);
    voice.onsets.erase(next);
  }
}

/// One track of one channel's notes; tracks of several channels become several voices.
void readTrack(Score& score, const SmfFile& file, const SmfTrack& track, size_t number) {
  std::array<Voice, Channels> voices;
  std::array<std::map<int, std::vector<Note>>, Channels> open;
  for (const SmfEvent& event : track.events) {
    const uint32_t tick = scaled(event.tick, file.division);
    score.song.length = std::max(score.song.length, tick);
    if (event.status == 0xFF) {
      readMeta(score, event, tick);
      if (event.type == 0x03 && number == 0 && score.song.title.empty())
        score.song.title = "from a file";
      continue;
    }
    if (event.status >= 0xF0) continue;
    const auto channel = static_cast<size_t>(event.status & 0x0F);
    Voice& voice = voices[channel];
    voice.part.channel = static_cast<int>(channel);
    voice.part.drums = voice.part.channel == DrumChannel;
    const int kind = event.status & 0xF0;
    if (kind == 0xB0 && voice.onsets.empty())
      readController(score, voice.part, event.data[0], event.data[1]);
    if (kind == 0xC0 && voice.onsets.empty()) voice.part.program = event.data[0];
    if (kind != 0x80 && kind != 0x90) continue;
    std::vector<Note>& sounding = open[channel][event.data[0]];
    if (kind == 0x90 && event.data[1] != 0) {
      sounding.push_back({tick, 0, event.data[0], event.data[1]});
      voice.onsets[onGrid(tick)];
    } else if (!sounding.empty()) {
      Note note = sounding.front();
      sounding.erase(sounding.begin());
      note.length = std::max(tick - note.tick, 1u);
      addToChord(voice.onsets[onGrid(note.tick)], note);
    }
  }
  for (Voice& voice : voices) {
    joinNearOnsets(voice);
    std::erase_if(voice.onsets, [](const auto& onset) { return onset.second.empty(); });
    if (voice.onsets.empty()) continue;
    voice.part.name = "part" + std::to_string(score.voices.size() + 1);
    score.voices.push_back(std::move(voice));
  }
}

/// Writes one voice from one bar to another.
class Line {
 public:
  Line(Score& score, Voice& voice, const Speller& spell)
      : score_(score), voice_(voice), spell_(spell) {}

  std::string write(uint32_t from, uint32_t to) {
    text_.clear();
    length_ = {};
    velocity_ = 0;
    tick_ = from;
    for (auto onset = voice_.onsets.lower_bound(from);
         onset != voice_.onsets.end() && onset->first < to; ++onset) {
      const auto following = std::next(onset);
      const uint32_t next = std::min(following == voice_.onsets.end() ? to : following->first, to);
      fill("r", onset->first);
      if (tick_ > onset->first || next <= tick_) continue;
      writeChord(onset->second, next);
    }
    fill("r", to);
    return text_;
  }

 private:
  void writeChord(std::vector<Note>& chord, uint32_t next) {
    std::sort(chord.begin(), chord.end(),
              [](const Note& a, const Note& b) { return a.key < b.key; });
    uint32_t sounding = 0;
    for (const Note& note : chord)
      sounding = std::max(sounding, note.length);
    const uint32_t room = next - tick_;
    uint32_t length = room;
    if (sounding > room + TicksPerQuarter / 8) ++score_.cut;
    // A player lets go early; only a longer silence is a rest.
    if (!voice_.part.drums && sounding * 10 < room * 7) {
      for (const LengthName& name : Lengths)
        if (name.ticks >= sounding && name.ticks < room) length = name.ticks;
      // No value fills a gap of 20, before the next note or at a bar line.
      const uint32_t bar = score_.song.barTicks(), inBar = (tick_ + length) % bar;
      if (room - length == 20 || inBar == 20 || bar - inBar == 20) length = room;
    }
    if (const int velocity = chord.front().velocity; velocity != velocity_) {
      velocity_ = velocity;
      text_ += " v" + std::to_string(velocity);
    }
    std::string token;
    for (const Note& note : chord)
      token += (token.empty() ? "" : " ") + spell_(voice_.part, note);
    fill(chord.size() > 1 ? "[" + token + "]" : token, tick_ + length);
  }

  /// Sounds `token` until `end`, held over bar lines and where one length does not say it.
  void fill(const std::string& token, uint32_t end) {
    const uint32_t bar = score_.song.barTicks();
    std::string_view now = token;
    while (tick_ < end) {
      const uint32_t room = std::min(end, tick_ / bar * bar + bar) - tick_;
      const LengthName* fitting = nullptr;
      for (const LengthName& name : Lengths)
        if (!fitting && name.ticks <= room && room - name.ticks != 20) fitting = &name;
      if (!fitting) {
        tick_ += room;
        return;
      }
      if (tick_ % bar == 0) text_ += " |";
      if (length_ != fitting->name) text_ += " " + std::string(fitting->name);
      length_ = fitting->name;
      text_ += " ";
      text_ += now;
      if (now != "r") now = "~";
      tick_ += fitting->ticks;
    }
  }

  Score& score_;
  Voice& voice_;
  const Speller& spell_;
  std::string text_;
  std::string_view length_;
  int velocity_ = 0;
  uint32_t tick_ = 0;
};

std::string headOf(const Score& score) {
  static constexpr std::string_view Fifths[] = {"Cb", "Gb", "Db", "Ab", "Eb", "Bb",
                                                "F",  "C",  "G",  "D",  "A",  "E",
                                                "B",  "F#", "C#", "G#", "D#", "A#"};
  const Song& song = score.song;
  std::string text;
  for (const std::string& remark : score.remarks)
    text += "# " + remark + "\n";
  text += "tempo " + std::to_string(song.tempi.front().beatsPerMinute) + "\n";
  text += "metre " + std::to_string(song.beats) + "/" + std::to_string(song.beatUnit) + "\n";
  text += "key ";
  text += Fifths[song.sharps + 7 + (song.minor ? 3 : 0)];
  text += song.minor ? " minor\n" : " major\n";
  text += "volume " + std::to_string(song.volume) + "\n";
  for (const Voice& voice : score.voices) {
    const Part& part = voice.part;
    text += "part " + part.name + " " +
            (part.drums ? std::string("drums") : std::string(programName(part.program))) + " pan " +
            std::to_string(part.pan) + " expression " + std::to_string(part.expression) +
            " reverb " + std::to_string(part.reverb) + " chorus " + std::to_string(part.chorus) +
            "\n";
  }
  return text;
}

}  // namespace

std::string notationOf(const SmfFile& file) {
  Score score;
  score.remarks = file.faults;
  for (size_t number = 0; number < file.tracks.size() && score.voices.size() < Channels; ++number)
    readTrack(score, file, file.tracks[number], number);
  if (score.voices.empty()) score.remarks.emplace_back("The file has no note.");
  std::stable_sort(score.song.tempi.begin(), score.song.tempi.end(),
                   [](const TempoChange& a, const TempoChange& b) { return a.tick < b.tick; });

  const uint32_t bar = score.song.barTicks();
  const uint32_t end = (score.song.length + bar - 1) / bar * bar;
  // Sections begin where the tempo changes, at the bar line before.
  std::map<uint32_t, int> tempi;
  for (const TempoChange& change : score.song.tempi)
    if (tempi.size() < 60) tempi[change.tick / bar * bar] = change.beatsPerMinute;

  const Speller spell(score.song);
  std::string body;
  int section = 0;
  for (auto start = tempi.begin(); start != tempi.end(); ++start) {
    const auto following = std::next(start);
    const uint32_t to = following == tempi.end() ? end : following->first;
    if (to <= start->first) continue;
    body += "\n[S" + std::to_string(++section) + "] tempo " + std::to_string(start->second) + "\n";
    for (Voice& voice : score.voices)
      body += voice.part.name + Line(score, voice, spell).write(start->first, to) + " |\n";
  }
  if (score.cut != 0)
    score.remarks.push_back(std::to_string(score.cut) +
                            " notes end where the next of their part begin.");
  return headOf(score) + body;
}

}  // namespace qv::song
