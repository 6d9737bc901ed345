#pragma once

/// The built-in synthesiser: a MIDI output whose messages become samples of the mixer. It opens no
/// device of its own. The sequencer's thread puts messages into a queue, the output's thread takes
/// them out in `render`; neither waits for the other.

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "platform/sound/midi_output.h"
#include "platform/sound/mixer.h"

namespace qv {

/// MidiOutput's operations come from one thread at a time (the sequencer's lock sees to that),
/// `render` from the output's thread. The queue holds some thousands of messages; what comes while
/// it is full is lost, but a `reset` never is.
class Synthesiser : public MidiOutput, public SampleSource {};

/// Reads the instruments, some ten milliseconds long. `sampleRate`: frames in a second, 8000 to
/// 96000; the mixer's. A file that cannot be read leaves a synthesiser that is silent and keeps
/// songs running, and `whyNot` says what is wrong in one sentence (UTF-8). A song renders to the
/// same samples each time. Any thread.
std::unique_ptr<Synthesiser> makeSynthesiser(uint32_t sampleRate,
                                             const std::filesystem::path& soundFont,
                                             std::string& whyNot);

}  // namespace qv
