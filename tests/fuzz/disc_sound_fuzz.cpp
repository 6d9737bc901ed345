/// Any bytes as a sound file of the disc, through the library that reads it: a track of it is as
/// long as it says at the most, its rate is one that the mixer takes, and its samples are levels.

#include <cmath>
#include <fstream>
#include <vector>

#include "platform/devices/disc_folder.h"
#include "platform/sound/cue_sheet.h"
#include "platform/sound/wave_output.h"
#include "tests/fuzz/fuzz_files.h"

using namespace qv;
using namespace qv::fuzz;

namespace {

constexpr uint32_t PartFrames = 2048;
/// A few bytes of a compressed file may be hours.
constexpr int MostParts = 40;
constexpr float MostLevel = 16;

/// Reads from the present place on.
void readParts(TrackReader& reader) {
  std::vector<float> stereo(size_t{2} * PartFrames);
  for (int part = 0; part < MostParts; ++part) {
    const uint32_t frames = reader.read(stereo.data(), PartFrames);
    require(frames <= PartFrames, "more frames than were asked for");
    for (size_t i = 0; i < size_t{2} * frames; ++i)
      require(std::abs(stereo[i]) <= MostLevel, "a sample that is no level");
    if (frames < PartFrames) return;
  }
}

}  // namespace

/// libsndfile forgets an Ogg stream that ends within its heads. Named by the library, whose name is
/// known without a symbolizer; a reader that we forget has memory of libsndfile too.
extern "C" const char* __lsan_default_suppressions();  // NOLINT(bugprone-reserved-identifier)
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libvorbis.so\n";
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static FuzzFiles ground;
  static const bool sheet = [] {
    std::ofstream(ground.folder() / "disc.cue")
        << "FILE input.bin WAVE\nTRACK 01 AUDIO\nINDEX 01 0:0:0\nTRACK 02 AUDIO\nINDEX 01 0:0:7\n";
    return true;
  }();
  static_cast<void>(sheet);
  ground.input(data, size);

  std::string whyNot;
  const auto tracks = openDiscFolder(ground.folder(), whyNot);
  require(tracks && tracks->count() == 2, "the sheet is not read");
  for (const int32_t track : {1, 2}) {
    const auto reader = tracks->open(track);
    const uint32_t length = discFramesOf(tracks->length(track));
    if (!reader) {
      require(!whyNot.empty(), "a file that cannot be read is not told of");
      continue;
    }
    const uint32_t rate = reader->framesPerSecond();
    require(rate >= LeastSamplesPerSecond && rate <= MostSamplesPerSecond, "a rate of no device");
    for (const uint64_t place : {uint64_t{0}, uint64_t{length} / 2, uint64_t{length}}) {
      reader->seek(place * rate / DiscFramesPerSecond);
      readParts(*reader);
    }
  }
  return 0;
}
