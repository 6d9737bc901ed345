/// Any bytes as a wave: the reader stays in the file and takes no more memory than the file has,
/// and what a device can play is played to its end.

#include <algorithm>
#include <vector>

#include "audio/wave_file.h"
#include "platform/sound/mixer_wave.h"
#include "tests/fuzz/fuzz_files.h"

using namespace qv;
using namespace qv::fuzz;

namespace {

class Bytes : public WaveInput {
 public:
  Bytes(const uint8_t* data, size_t size) : bytes_(data, size) {}
  uint64_t size() override { return bytes_.size(); }
  bool readAt(uint64_t at, std::span<uint8_t> target) override {
    if (at > bytes_.size() || target.size() > bytes_.size() - at) return false;
    std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(at), target.size(), target.begin());
    return true;
  }

 private:
  std::span<const uint8_t> bytes_;
};

constexpr uint32_t OutputRate = 48000, PartFrames = 500;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static FuzzFiles ground;
  Bytes input(data, size);
  const auto file = readWave(input);
  if (!file) return 0;
  require(file->samples.size() <= size, "more samples than the file has bytes");

  MixerWave wave(OutputRate);
  Event done("done", Event::Reset::Manual);
  const bool opened = wave.open(file->format, done);
  require(opened == isPlayable(file->format), "a format that is only sometimes playable");
  if (!opened) return 0;
  done.reset();
  constexpr uint32_t Times = 2;
  require(wave.write(file->samples.span(), Times), "the buffer is refused");
  const uint64_t frames = file->samples.size() / file->format.blockBytes;
  const uint64_t length = (Times * frames * OutputRate) / file->format.samplesPerSecond;
  std::vector<float> stereo(size_t{2} * PartFrames);
  uint64_t rendered = 0;
  for (; rendered < length + 2 * PartFrames && !done.isSet(); rendered += PartFrames) {
    std::fill(stereo.begin(), stereo.end(), 0.0F);
    wave.render(stereo.data(), PartFrames, 1.0F);
    for (const float sample : stereo)
      require(sample >= -1.0F && sample <= 1.0F, "a sample outside the range");
  }
  require(done.isSet(), "no end");
  require(rendered + 2 * PartFrames >= length, "an end before the last sample");
  return 0;
}
