#include "platform/sound/cue_sheet.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace qv {

namespace {

constexpr uint32_t MostMinutes = 999;
constexpr int32_t StartIndex = 1;

bool isBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r';
}

/// A word, or what stands in quotes; empty at the end.
std::string_view takeWord(std::string_view& rest) {
  while (!rest.empty() && isBlank(rest.front()))
    rest.remove_prefix(1);
  const bool quoted = !rest.empty() && rest.front() == '"';
  if (quoted) rest.remove_prefix(1);
  size_t end = 0;
  while (end < rest.size() && (quoted ? rest[end] != '"' : !isBlank(rest[end])))
    ++end;
  const std::string_view word = rest.substr(0, end);
  rest.remove_prefix(std::min(end + (quoted ? 1 : 0), rest.size()));
  return word;
}

bool takeNumber(std::string_view text, uint32_t& number, uint32_t most) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() && number <= most;
}

/// "mm:ss:ff"
bool takeTime(std::string_view text, uint32_t& frames) {
  const size_t first = text.find(':'), second = text.find(':', first + 1);
  if (first == std::string_view::npos || second == std::string_view::npos) return false;
  uint32_t minutes = 0, seconds = 0, part = 0;
  if (!takeNumber(text.substr(0, first), minutes, MostMinutes) ||
      !takeNumber(text.substr(first + 1, second - first - 1), seconds, 59) ||
      !takeNumber(text.substr(second + 1), part, DiscFramesPerSecond - 1))
    return false;
  frames = (minutes * 60 + seconds) * DiscFramesPerSecond + part;
  return true;
}

class Reader {
 public:
  /// Empty for a good line; otherwise what is wrong.
  std::string readLine(std::string_view line) {
    const std::string_view word = takeWord(line);
    if (word == "FILE") return readFile(line);
    if (word == "TRACK") return readTrack(line);
    if (word == "INDEX") return readIndex(line);
    return {};
  }
  std::string finish() { return started_ ? std::string() : "the track has no INDEX 01"; }
  CueSheet sheet;

 private:
  std::string readFile(std::string_view rest) {
    if (!started_) return finish();
    CueFile file;
    file.name = takeWord(rest);
    if (file.name.empty()) return "a FILE needs a name";
    file.binary = takeWord(rest) == "BINARY";
    sheet.files.push_back(std::move(file));
    return {};
  }

  std::string readTrack(std::string_view rest) {
    if (!started_) return finish();
    if (sheet.files.empty()) return "a TRACK needs a FILE before it";
    uint32_t number = 0;
    if (!takeNumber(takeWord(rest), number, MostTracks) || number == 0)
      return "a TRACK has a number from 1 to 99";
    if (!sheet.tracks.empty() && static_cast<int32_t>(number) <= sheet.tracks.back().number)
      return "the numbers of tracks rise";
    const bool audio = takeWord(rest) == "AUDIO";
    sheet.tracks.push_back({.number = static_cast<int32_t>(number),
                            .audio = audio,
                            .file = sheet.files.size() - 1,
                            .startFrame = 0});
    started_ = false;
    return {};
  }

  std::string readIndex(std::string_view rest) {
    uint32_t number = 0, frames = 0;
    if (sheet.tracks.empty()) return "an INDEX needs a TRACK before it";
    if (!takeNumber(takeWord(rest), number, MostTracks) || !takeTime(takeWord(rest), frames))
      return "an INDEX is a number and a time as mm:ss:ff";
    if (number != StartIndex) return {};
    CueTrack& track = sheet.tracks.back();
    if (started_) return "the track has two INDEX 01";
    if (sheet.tracks.size() > 1) {
      const CueTrack& before = sheet.tracks[sheet.tracks.size() - 2];
      if (before.file == track.file && frames < before.startFrame)
        return "a track begins before the one before it";
    }
    track.startFrame = frames;
    started_ = true;
    return {};
  }

  bool started_ = true;  ///< the last track has its start
};

}  // namespace

uint32_t CueSheet::endFrame(size_t track, uint32_t endOfFile) const {
  const bool follows = track + 1 < tracks.size() && tracks[track + 1].file == tracks[track].file;
  return follows ? std::min(tracks[track + 1].startFrame, endOfFile) : endOfFile;
}

CueSheet parseCueSheet(std::string_view text) {
  constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
  const auto refused = [](int line, const std::string& why) {
    CueSheet sheet;
    sheet.complaint = "line " + std::to_string(line) + ": " + why;
    return sheet;
  };
  if (text.size() > MostCueBytes) return refused(1, "the cue sheet is too large");
  if (text.starts_with(ByteOrderMark)) text.remove_prefix(ByteOrderMark.size());
  Reader reader;
  int line = 0;
  while (!text.empty()) {
    const size_t end = std::min(text.find('\n'), text.size());
    ++line;
    if (const std::string why = reader.readLine(text.substr(0, end)); !why.empty())
      return refused(line, why);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  if (const std::string why = reader.finish(); !why.empty()) return refused(line, why);
  return std::move(reader.sheet);
}

}  // namespace qv
