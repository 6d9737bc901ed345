#pragma once

/// The cue sheet of a data disc: a small text that says which file and which place in it is which
/// track. Of the many words that programs write into such sheets only FILE, TRACK and INDEX are
/// read; the others are passed over. Pure; any thread.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qv {

inline constexpr uint32_t DiscFramesPerSecond = 75;
inline constexpr int32_t MostTracks = 99;

struct CueFile {
  std::string name;     ///< as written, without its quotes
  bool binary = false;  ///< raw sectors; otherwise a sound file
};

struct CueTrack {
  int32_t number = 1;  ///< 1 to MostTracks, rising
  bool audio = true;
  size_t file = 0;          ///< index into the sheet's files
  uint32_t startFrame = 0;  ///< INDEX 01, in 75ths of a second from the file's start
};

struct CueSheet {
  std::vector<CueFile> files;
  std::vector<CueTrack> tracks;
  std::string complaint;  ///< "line 3: ..." for the first bad line; the sheet is empty then

  /// The next track's start in the same file, where one follows; otherwise `endOfFile`.
  uint32_t endFrame(size_t track, uint32_t endOfFile) const;
};

inline constexpr size_t MostCueBytes = 1 << 20;
CueSheet parseCueSheet(std::string_view text);

}  // namespace qv
