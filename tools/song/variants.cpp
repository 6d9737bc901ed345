#include "tools/song/variants.h"

#include <algorithm>
#include <array>
#include <utility>

namespace qv::song {

namespace {

Instrument asWritten(const Part& part) {
  return {.program = part.program};
}

/// Its neighbours in colour, from the first bank of variations.
Instrument otherColours(const Part& part) {
  static constexpr std::pair<int, int> Swaps[] = {
      {0, 1},   {8, 10},  {24, 25}, {32, 33}, {40, 110}, {48, 49},
      {52, 53}, {68, 71}, {73, 72}, {75, 73}, {88, 89},
  };
  if (part.drums) return {.program = part.program};
  int program = part.program;
  for (const auto& [from, to] : Swaps)
    if (from == part.program) program = to;
  return {.bankHigh = 1, .bankLow = 0, .program = program};
}

/// The banks that level 2 gives to melodies and to drums.
Instrument levelTwo(const Part& part) {
  constexpr int MelodyBank = 121, RhythmBank = 120;
  return {.bankHigh = part.drums ? RhythmBank : MelodyBank, .bankLow = 0, .program = part.program};
}

/// One instrument stands for each family of eight programs.
Instrument eightInstruments(const Part& part) {
  static constexpr std::array<int, 16> OfFamily = {0,  11, 19, 24, 32, 48, 48, 60,
                                                   73, 73, 73, 48, 48, 24, 11, 48};
  if (part.drums) return {.program = 0};
  return {.program = OfFamily[static_cast<size_t>(part.program) / 8]};
}

const std::vector<Variant>& variants() {
  static const std::vector<Variant> All = {
      {.letter = 'a', .instrument = asWritten},
      {.letter = 'b', .instrument = otherColours},
      {.letter = 'c', .voices = 24, .effects = false, .instrument = asWritten},
      {.letter = 'd',
       .instrument = levelTwo,
       // Global parameter control: the reverb is a large hall, the chorus the third kind.
       .exclusive = {{0xF0, 0x7F, 0x7F, 0x04, 0x05, 0x01, 0x01, 0x01, 0x01, 0x01, 0x00, 0x04, 0xF7},
                     {0xF0, 0x7F, 0x7F, 0x04, 0x05, 0x01, 0x01, 0x01, 0x01, 0x02, 0x00, 0x02,
                      0xF7}}},
      {.letter = 'e',
       .voices = 16,
       .melodicParts = 5,
       .effects = false,
       .instrument = eightInstruments},
  };
  return All;
}

struct Sounding {
  size_t part = 0, note = 0;
  uint32_t end = 0;
  int importance = 0;
};

/// What stays longest has the greatest number.
int importanceOf(const Part& part, size_t index, const Note& note, uint8_t low, uint8_t high) {
  constexpr int OfDrums = 1000, OfPart = 10, OfEdge = 5;
  const bool edge = note.key == low || note.key == high;
  return part.drums ? OfDrums : OfPart * (Channels - static_cast<int>(index)) + (edge ? OfEdge : 0);
}

}  // namespace

const Variant* variantOf(char letter) {
  for (const Variant& variant : variants())
    if (variant.letter == letter) return &variant;
  return nullptr;
}

void limitVoices(Song& song, int voices) {
  std::vector<std::pair<size_t, size_t>> order;
  for (size_t part = 0; part < song.parts.size(); ++part)
    for (size_t note = 0; note < song.parts[part].notes.size(); ++note)
      order.emplace_back(part, note);
  const auto at = [&](const std::pair<size_t, size_t>& place) -> Note& {
    return song.parts[place.first].notes[place.second];
  };
  std::stable_sort(order.begin(), order.end(),
                   [&](const auto& a, const auto& b) { return at(a).tick < at(b).tick; });

  std::vector<Sounding> sounding;
  for (const auto& place : order) {
    Note& note = at(place);
    std::erase_if(sounding, [&](const Sounding& other) { return other.end <= note.tick; });
    const std::vector<Note>& notes = song.parts[place.first].notes;
    uint8_t low = note.key, high = note.key;
    for (size_t next = place.second; next-- > 0 && notes[next].tick == note.tick;) {
      low = std::min(low, notes[next].key);
      high = std::max(high, notes[next].key);
    }
    for (size_t next = place.second; next < notes.size() && notes[next].tick == note.tick; ++next) {
      low = std::min(low, notes[next].key);
      high = std::max(high, notes[next].key);
    }
    sounding.push_back({place.first, place.second, note.tick + note.length,
                        importanceOf(song.parts[place.first], place.first, note, low, high)});
    if (sounding.size() <= static_cast<size_t>(voices)) continue;
    const auto least = std::min_element(
        sounding.begin(), sounding.end(),
        [](const Sounding& a, const Sounding& b) { return a.importance < b.importance; });
    Note& loser = song.parts[least->part].notes[least->note];
    loser.length = note.tick - loser.tick;  // nothing is left of one that would begin now
    sounding.erase(least);
  }
  for (Part& part : song.parts)
    std::erase_if(part.notes, [](const Note& note) { return note.length == 0; });
}

Song arrange(const Song& song, const Variant& variant) {
  Song arranged = song;
  if (variant.melodicParts != 0) {
    int left = variant.melodicParts;
    std::erase_if(arranged.parts, [&](const Part& part) { return !part.drums && left-- <= 0; });
  }
  if (variant.voices != 0) limitVoices(arranged, variant.voices);
  return arranged;
}

}  // namespace qv::song
