/// Any bytes as a cue sheet: what is read is in order and inside its bounds, or nothing is there
/// but a complaint.

#include "platform/sound/cue_sheet.h"
#include "tests/fuzz/fuzz_files.h"

using namespace qv;
using namespace qv::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const CueSheet sheet = parseCueSheet({reinterpret_cast<const char*>(data), size});
  if (!sheet.complaint.empty()) {
    require(sheet.files.empty() && sheet.tracks.empty(), "a complaint beside a sheet");
    return 0;
  }
  require(sheet.tracks.size() <= static_cast<size_t>(MostTracks), "too many tracks");
  int32_t number = 0;
  for (size_t at = 0; at < sheet.tracks.size(); ++at) {
    const CueTrack& track = sheet.tracks[at];
    require(track.number > number && track.number <= MostTracks, "numbers that do not rise");
    require(track.file < sheet.files.size(), "a track of no file");
    require(sheet.endFrame(at, UINT32_MAX) >= track.startFrame,
            "a track that ends before it begins");
    number = track.number;
  }
  for (const CueFile& file : sheet.files)
    require(!file.name.empty(), "a file without a name");
  return 0;
}
