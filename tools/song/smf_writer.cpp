#include "tools/song/smf_writer.h"

#include <algorithm>
#include <bit>
#include <string_view>

namespace qv::song {

namespace {

using Bytes = std::vector<uint8_t>;

void putBig(Bytes& bytes, uint32_t value, int count) {
  for (int at = count - 1; at >= 0; --at)
    bytes.push_back(static_cast<uint8_t>(value >> 8 * at));
}

void putQuantity(Bytes& bytes, uint32_t value) {
  int groups = 1;
  while (groups < 5 && value >> 7 * groups != 0)
    ++groups;
  for (int at = groups - 1; at >= 0; --at)
    bytes.push_back(static_cast<uint8_t>((value >> 7 * at & 0x7F) | (at > 0 ? 0x80 : 0)));
}

/// One track while it is written: events in rising ticks.
class Track {
 public:
  void message(uint32_t tick, std::initializer_list<int> message) {
    delta(tick);
    for (const int byte : message)
      bytes_.push_back(static_cast<uint8_t>(byte));
  }
  void meta(uint32_t tick, int type, std::string_view content) {
    message(tick, {0xFF, type});
    putQuantity(bytes_, static_cast<uint32_t>(content.size()));
    bytes_.insert(bytes_.end(), content.begin(), content.end());
  }
  void exclusive(uint32_t tick, const Bytes& whole) {
    delta(tick);
    bytes_.push_back(whole.front());
    putQuantity(bytes_, static_cast<uint32_t>(whole.size() - 1));
    bytes_.insert(bytes_.end(), whole.begin() + 1, whole.end());
  }
  void putInto(Bytes& file, uint32_t end) {
    meta(end, 0x2F, {});
    file.insert(file.end(), {'M', 'T', 'r', 'k'});
    putBig(file, static_cast<uint32_t>(bytes_.size()), 4);
    file.insert(file.end(), bytes_.begin(), bytes_.end());
  }

 private:
  void delta(uint32_t tick) {
    putQuantity(bytes_, tick - tick_);
    tick_ = tick;
  }
  Bytes bytes_;
  uint32_t tick_ = 0;
};

Track conductor(const Song& song, const Variant& variant) {
  Track track;
  if (!song.title.empty()) track.meta(0, 0x03, song.title);
  if (!song.composer.empty()) track.meta(0, 0x02, song.composer);
  const char metre[] = {static_cast<char>(song.beats),
                        static_cast<char>(std::countr_zero(static_cast<unsigned>(song.beatUnit))),
                        24, 8};
  track.meta(0, 0x58, std::string_view(metre, sizeof(metre)));
  const char key[] = {static_cast<char>(song.sharps), static_cast<char>(song.minor ? 1 : 0)};
  track.meta(0, 0x59, std::string_view(key, sizeof(key)));
  for (const Bytes& whole : variant.exclusive)
    track.exclusive(0, whole);
  for (const TempoChange& change : song.tempi) {
    const uint32_t micros = microsecondsOf(change.beatsPerMinute);
    const char tempo[] = {static_cast<char>(micros >> 16), static_cast<char>(micros >> 8),
                          static_cast<char>(micros)};
    track.meta(change.tick, 0x51, std::string_view(tempo, sizeof(tempo)));
  }
  return track;
}

void setUp(Track& track, const Song& song, const Part& part, const Variant& variant) {
  constexpr int Volume = 7, Pan = 10, Expression = 11, Reverb = 91, Chorus = 93;
  const int control = 0xB0 | part.channel;
  const Instrument instrument = variant.instrument(part);
  track.meta(0, 0x03, part.name);
  // The player has one volume for all channels, the last that it saw; balance is the expression's.
  track.message(0, {control, Volume, song.volume});
  if (instrument.bankHigh >= 0) track.message(0, {control, 0, instrument.bankHigh});
  if (instrument.bankLow >= 0) track.message(0, {control, 32, instrument.bankLow});
  track.message(0, {0xC0 | part.channel, instrument.program});
  track.message(0, {control, Pan, part.pan});
  track.message(0, {control, Expression, part.expression});
  if (!variant.effects) return;
  track.message(0, {control, Reverb, part.reverb});
  track.message(0, {control, Chorus, part.chorus});
}

struct Switch {
  uint32_t tick;
  bool on;
  uint8_t key, velocity;
};

void putNotes(Track& track, const Part& part) {
  std::vector<Switch> switches;
  for (const Note& note : part.notes) {
    switches.push_back({note.tick, true, note.key, note.velocity});
    switches.push_back({note.tick + note.length, false, note.key, 64});
  }
  // Notes stand by their ticks, so that a stable order lets a key go before it is struck anew.
  std::stable_sort(switches.begin(), switches.end(),
                   [](const Switch& a, const Switch& b) { return a.tick < b.tick; });
  for (const Switch& one : switches)
    track.message(one.tick, {(one.on ? 0x90 : 0x80) | part.channel, one.key, one.velocity});
}

}  // namespace

uint32_t microsecondsOf(int beatsPerMinute) {
  return 60'000'000u / static_cast<uint32_t>(beatsPerMinute);
}

std::vector<uint8_t> writeSmf(const Song& song, const Variant& variant) {
  const Song arranged = arrange(song, variant);
  Bytes file = {'M', 'T', 'h', 'd'};
  putBig(file, 6, 4);
  putBig(file, 1, 2);
  putBig(file, static_cast<uint32_t>(arranged.parts.size()) + 1, 2);
  putBig(file, TicksPerQuarter, 2);
  conductor(arranged, variant).putInto(file, arranged.length);
  for (const Part& part : arranged.parts) {
    Track track;
    setUp(track, arranged, part, variant);
    putNotes(track, part);
    track.putInto(file, arranged.length);
  }
  return file;
}

}  // namespace qv::song
