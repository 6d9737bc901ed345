#include "tools/song/listing.h"

#include <algorithm>
#include <cstdio>

#include "tools/song/song.h"

namespace qv::song {

namespace {

struct Metre {
  uint32_t beats = 4, beatTicks = TicksPerQuarter;
};

Metre metreOf(const SmfFile& file) {
  Metre metre;
  metre.beatTicks = static_cast<uint32_t>(std::max(file.division, 1));
  for (const SmfTrack& track : file.tracks)
    for (const SmfEvent& event : track.events) {
      if (event.status != 0xFF || event.type != 0x58 || event.data.size() < 2) continue;
      if (event.data[0] == 0 || event.data[1] > 5) continue;
      metre.beats = event.data[0];
      metre.beatTicks = std::max(metre.beatTicks * 4 >> event.data[1], 1u);
      return metre;
    }
  return metre;
}

/// Text of a file on a terminal: control characters could do anything there.
std::string shown(const std::vector<uint8_t>& bytes) {
  std::string text;
  for (const uint8_t byte : bytes)
    text += byte < 0x20 || byte == 0x7F ? '.' : static_cast<char>(byte);
  return text;
}

std::string hex(const std::vector<uint8_t>& bytes) {
  std::string text;
  char two[4];
  for (const uint8_t byte : bytes) {
    std::snprintf(two, sizeof(two), " %02X", byte);
    text += two;
  }
  return text;
}

std::string controllerName(int number) {
  switch (number) {
    case 0:
      return "bank";
    case 1:
      return "modulation";
    case 7:
      return "volume";
    case 10:
      return "pan";
    case 11:
      return "expression";
    case 32:
      return "bank, low part";
    case 64:
      return "pedal";
    case 91:
      return "reverb";
    case 93:
      return "chorus";
    case 120:
      return "all sound off";
    case 121:
      return "reset controllers";
    case 123:
      return "all notes off";
    default:
      return "controller " + std::to_string(number);
  }
}

std::string metaText(const SmfEvent& event) {
  const auto& data = event.data;
  if (event.type == 0x2F) return "end of track";
  if (event.type == 0x03) return "name \"" + shown(data) + "\"";
  if (event.type >= 0x01 && event.type <= 0x07) return "text \"" + shown(data) + "\"";
  if (event.type == 0x51 && data.size() == 3) {
    const uint32_t micros =
        static_cast<uint32_t>(data[0]) << 16 | static_cast<uint32_t>(data[1]) << 8 | data[2];
    return "tempo " + std::to_string(micros == 0 ? 0 : 60'000'000 / micros) + " (" +
           std::to_string(micros) + " us)";
  }
  if (event.type == 0x58 && data.size() >= 2 && data[1] < 8)
    return "metre " + std::to_string(data[0]) + "/" + std::to_string(1 << data[1]);
  if (event.type == 0x59 && data.size() == 2)
    return "key signature " + std::to_string(data[0] < 128 ? data[0] : data[0] - 256) +
           (data[1] != 0 ? " minor" : " major");
  return "meta" + hex({event.type}) + ":" + hex(data);
}

std::string messageText(const SmfEvent& event) {
  const int kind = event.status & 0xF0, channel = (event.status & 0x0F) + 1;
  const int first = event.data.empty() ? 0 : event.data[0];
  const int second = event.data.size() < 2 ? 0 : event.data[1];
  const char* const drum = channel - 1 == DrumChannel ? drumName(first) : nullptr;
  const std::string key = drum ? drum : keyName(first);
  std::string text = "channel " + std::to_string(channel) + "  ";
  switch (kind) {
    case 0x80:
      return text + "off " + key;
    case 0x90:
      return second == 0 ? text + "off " + key : text + "on  " + key + " " + std::to_string(second);
    case 0xA0:
      return text + "pressure " + key + " " + std::to_string(second);
    case 0xB0:
      return text + controllerName(first) + " " + std::to_string(second);
    case 0xC0:
      return text + "program " + std::to_string(first + 1) +
             (channel - 1 == DrumChannel ? "" : std::string(" ") + programName(first));
    case 0xD0:
      return text + "pressure " + std::to_string(first);
    default:
      return text + "bend " + std::to_string(second * 128 + first - 8192);
  }
}

}  // namespace

std::string listSmf(const SmfFile& file) {
  std::string text;
  for (const std::string& fault : file.faults)
    text += "fault: " + fault + "\n";
  text += "format " + std::to_string(file.format) + ", " + std::to_string(file.tracks.size()) +
          " tracks, division " + std::to_string(file.division) + "\n";
  const Metre metre = metreOf(file);
  for (size_t number = 0; number < file.tracks.size(); ++number) {
    text += "track " + std::to_string(number + 1) + "\n";
    for (const SmfEvent& event : file.tracks[number].events) {
      const unsigned long long beat = event.tick / metre.beatTicks, ticks = event.tick;
      char place[48];
      std::snprintf(place, sizeof(place), "  %4llu:%llu+%03llu  ", beat / metre.beats + 1,
                    beat % metre.beats + 1, ticks % metre.beatTicks);
      text += place;
      if (event.status == 0xFF)
        text += metaText(event);
      else if (event.status >= 0xF0)
        text += "exclusive" + hex(event.data);
      else
        text += messageText(event);
      text += '\n';
    }
  }
  return text;
}

}  // namespace qv::song
