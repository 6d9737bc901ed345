/// Any bytes as a song: nothing is read outside, every step sends a bounded number of messages, and
/// memory stays below what the file could hold.

#include "audio/midi_file.h"
#include "audio/midi_sequencer.h"
#include "tests/fuzz/fuzz_files.h"

using namespace qv;
using namespace qv::fuzz;

namespace {

/// Looks at every byte that it is given.
class CountingOutput : public MidiOutput {
 public:
  bool available() const override { return true; }
  bool open() override { return true; }
  void shortMessage(uint32_t message) override {
    require((message & 0x80) != 0, "a message without a status");
    require((message & 0xFF) < 0xF0, "a system message");
    ++messages;
  }
  void longMessage(std::span<const uint8_t> message) override {
    require(message.size() >= 2 && message.size() <= MidiSequencer::LongestMessage,
            "a long message without its ends, or too long");
    require(message.front() == 0xF0 && message.back() == 0xF7, "ends of a long message");
    for (const uint8_t byte : message)
      sum += byte;
    ++messages;
  }
  void reset() override {}
  void close() override {}
  size_t messages = 0;
  uint64_t sum = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static FuzzFiles files;
  // Tracks that lie over each other are bounded by the step; longer files only take longer.
  if (size > 8192) return 0;
  const MidiFile file(files.input(data, size));
  require(file.tracks().size() <= size / MidiFile::ChunkHeadBytes, "more tracks than chunks");
  MidiSequencer sequencer;
  sequencer.load(file);
  CountingOutput output;
  sequencer.start(output, size % 2 == 0, 100, 1);
  for (int step = 0; step < 40; ++step) {
    output.messages = 0;
    if (step == 30) sequencer.fadeOut(100);
    // The last steps are long, so that late events come too.
    sequencer.step(step < 20 ? 16 : 100'000);
    require(output.messages <= MidiSequencer::MostStepBytes + 64, "a step without measure");
  }
  if (sequencer.state() != MidiSequencer::Stopped) sequencer.stop();
  return 0;
}
