#include "tools/song/smf_reader.h"

#include <algorithm>
#include <utility>

namespace qv::song {

namespace {

uint32_t big(std::span<const uint8_t> bytes) {
  uint32_t value = 0;
  for (const uint8_t byte : bytes)
    value = value << 8 | byte;
  return value;
}

bool tagged(std::span<const uint8_t> bytes, const char* tag) {
  return std::equal(bytes.begin(), bytes.begin() + 4, tag,
                    [](uint8_t byte, char c) { return byte == static_cast<uint8_t>(c); });
}

/// Reads within one chunk; after something was missing, `ok` stays false.
class Cursor {
 public:
  explicit Cursor(std::span<const uint8_t> bytes) : bytes_(bytes) {}
  bool ok() const { return ok_; }
  bool atEnd() const { return at_ == bytes_.size(); }
  uint8_t byte() {
    if (at_ == bytes_.size()) {
      ok_ = false;
      return 0;
    }
    return bytes_[at_++];
  }
  void back() { --at_; }
  /// A quantity of at most four bytes.
  uint32_t quantity() {
    uint32_t value = 0;
    for (int count = 0; count < 4; ++count) {
      const uint8_t next = byte();
      value = value << 7 | (next & 0x7Fu);
      if (next < 0x80) return value;
    }
    ok_ = false;
    return value;
  }
  std::vector<uint8_t> take(uint32_t count) {
    if (count > bytes_.size() - at_) {
      ok_ = false;
      count = static_cast<uint32_t>(bytes_.size() - at_);
    }
    const std::span<const uint8_t> taken = bytes_.subspan(at_, count);
    at_ += count;
    return {taken.begin(), taken.end()};
  }

 private:
  std::span<const uint8_t> bytes_;
  size_t at_ = 0;
  bool ok_ = true;
};

/// A sentence about what is wrong with the event, or nothing.
std::string readEvent(Cursor& cursor, uint8_t& running, SmfEvent& event) {
  uint8_t status = cursor.byte();
  if (cursor.ok() && status < 0x80) {
    if (running == 0) return "begins with running status";
    status = running;
    cursor.back();
  }
  event.status = status;
  if (status == 0xFF) {
    event.type = cursor.byte();
    event.data = cursor.take(cursor.quantity());
  } else if (status == 0xF0 || status == 0xF7) {
    event.data = cursor.take(cursor.quantity());
  } else if (status >= 0xF1) {
    return "has a status byte that no file may have";
  } else {
    running = status;
    const int kind = status & 0xF0;
    event.data = cursor.take(kind == 0xC0 || kind == 0xD0 ? 1 : 2);
    if (std::any_of(event.data.begin(), event.data.end(), [](uint8_t data) { return data > 127; }))
      return "has a data byte above 127";
  }
  return cursor.ok() ? std::string() : "ends within an event";
}

SmfTrack readTrack(std::span<const uint8_t> chunk, std::string& fault) {
  SmfTrack track;
  Cursor cursor(chunk);
  uint8_t running = 0;
  uint64_t tick = 0;
  while (!track.ended && !cursor.atEnd()) {
    SmfEvent event;
    tick += cursor.quantity();
    event.tick = tick;
    fault = cursor.ok() ? readEvent(cursor, running, event) : "ends within a delta time";
    if (!fault.empty()) return track;
    track.ended = event.status == 0xFF && event.type == 0x2F;
    track.events.push_back(std::move(event));
  }
  if (!track.ended) fault = "has no End of Track";
  return track;
}

}  // namespace

SmfFile readSmf(std::span<const uint8_t> bytes) {
  constexpr size_t HeadBytes = 14, ChunkBytes = 8;
  SmfFile file;
  if (bytes.size() < HeadBytes || !tagged(bytes, "MThd")) {
    file.faults.emplace_back("The file is no Standard MIDI File: it does not begin with MThd.");
    return file;
  }
  file.format = static_cast<int>(big(bytes.subspan(8, 2)));
  file.declaredTracks = static_cast<int>(big(bytes.subspan(10, 2)));
  file.division = static_cast<int>(big(bytes.subspan(12, 2)));
  const uint32_t headLength = big(bytes.subspan(4, 4));
  size_t at = headLength > bytes.size() - ChunkBytes ? bytes.size() : ChunkBytes + headLength;
  while (bytes.size() - at >= ChunkBytes) {
    const std::span<const uint8_t> head = bytes.subspan(at, ChunkBytes);
    const uint32_t length = big(head.subspan(4, 4));
    at += ChunkBytes;
    const std::string name = "Track " + std::to_string(file.tracks.size() + 1);
    const bool cut = length > bytes.size() - at;
    if (cut) file.faults.push_back(name + " is longer than the file.");
    const std::span<const uint8_t> chunk =
        bytes.subspan(at, cut ? bytes.size() - at : static_cast<size_t>(length));
    at += chunk.size();
    if (!tagged(head, "MTrk")) continue;
    std::string fault;
    file.tracks.push_back(readTrack(chunk, fault));
    if (!fault.empty()) file.faults.push_back(name + " " + fault + ".");
  }
  if (static_cast<size_t>(file.declaredTracks) != file.tracks.size())
    file.faults.push_back("The file announces " + std::to_string(file.declaredTracks) +
                          " tracks and has " + std::to_string(file.tracks.size()) + ".");
  return file;
}

}  // namespace qv::song
