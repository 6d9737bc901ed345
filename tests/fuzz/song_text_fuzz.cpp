#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "tools/song/smf_reader.h"
#include "tools/song/smf_writer.h"
#include "tools/song/song_text.h"

/// Whatever the bytes: problems are told with lines that are there, or each variant is a sound
/// file.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace qv::song;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const ReadSong read = readSong(text);
  if (!read.problems.empty()) {
    for (const Problem& problem : read.problems)
      if (problem.line < 0 || problem.line > static_cast<int>(size) || problem.what.empty())
        std::abort();
    return 0;
  }
  for (const char letter : {'a', 'e'}) {
    const std::vector<uint8_t> bytes = writeSmf(read.song, *variantOf(letter));
    const SmfFile file = readSmf(bytes);
    if (!file.faults.empty()) std::abort();
    for (const SmfTrack& track : file.tracks)
      if (track.events.back().tick != read.song.length) std::abort();
  }
  return 0;
}
