#pragma once

/// Standard MIDI Files built byte by byte, for tests.

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace qv::testing {

inline std::string bytesOf(std::initializer_list<int> bytes) {
  std::string text;
  for (const int byte : bytes)
    text += static_cast<char>(byte);
  return text;
}

/// Big-endian.
inline std::string bigEndian(uint32_t value, int bytes) {
  std::string text;
  for (int at = bytes - 1; at >= 0; --at)
    text += static_cast<char>(value >> (8 * at));
  return text;
}

/// A quantity of variable length.
inline std::string quantity(uint32_t value) {
  std::string text(1, static_cast<char>(value & 0x7F));
  while (value >>= 7)
    text.insert(text.begin(), static_cast<char>((value & 0x7F) | 0x80));
  return text;
}

/// The events of a track, each with its delta time.
class TrackBytes {
 public:
  TrackBytes& event(uint32_t delta, std::initializer_list<int> bytes) {
    return raw(quantity(delta) + bytesOf(bytes));
  }
  TrackBytes& tempo(uint32_t delta, uint32_t micros) {
    return raw(quantity(delta) + bytesOf({0xFF, 0x51, 3}) + bigEndian(micros, 3));
  }
  TrackBytes& exclusive(uint32_t delta, std::string_view inner) {
    return raw(quantity(delta) + bytesOf({0xF0}) +
               quantity(static_cast<uint32_t>(inner.size() + 1)) + std::string(inner) +
               bytesOf({0xF7}));
  }
  TrackBytes& end(uint32_t delta = 0) { return event(delta, {0xFF, 0x2F, 0}); }
  TrackBytes& raw(std::string_view bytes) {
    bytes_ += bytes;
    return *this;
  }
  const std::string& bytes() const { return bytes_; }

 private:
  std::string bytes_;
};

inline std::string songHead(uint32_t tracks, uint32_t division) {
  return "MThd" + bigEndian(6, 4) + bigEndian(1, 2) + bigEndian(tracks, 2) + bigEndian(division, 2);
}

inline std::string chunk(std::string_view bytes) {
  return "MTrk" + bigEndian(static_cast<uint32_t>(bytes.size()), 4) + std::string(bytes);
}

/// At 120 beats a minute a tick of division 96 takes 5.2 ms, and one of 3750 makes 120 to a step of
/// 16 ms: ticks that are easy to count.
inline std::string song(const std::vector<TrackBytes>& tracks, uint32_t division = 3750) {
  std::string bytes = songHead(static_cast<uint32_t>(tracks.size()), division);
  for (const TrackBytes& track : tracks)
    bytes += chunk(track.bytes());
  return bytes;
}

}  // namespace qv::testing
