#pragma once

/// Reads the notation of docs/song-notation.md. Whatever the bytes are, the reader ends with a song
/// or with sentences that name the line; what it builds is bounded. Pure functions; any thread.

#include <string>
#include <string_view>
#include <vector>

#include "tools/song/song.h"

namespace qv::song {

struct Problem {
  int line = 0;      ///< from 1; 0 stands for the song as a whole
  std::string what;  ///< what is wrong and what to do, one line
};

struct ReadSong {
  Song song;                      ///< to be used where there are no problems
  std::vector<Problem> problems;  ///< by line, at most a hundred
};

ReadSong readSong(std::string_view text);

}  // namespace qv::song
