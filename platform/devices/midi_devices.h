#pragma once

/// The MIDI devices in one table. The libraries behind them bring some forty others, which a player
/// would wait for before the first picture: so the program loads the table from a module of its
/// own, when it gets its sound ready.

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

namespace qv {

class MidiOutput;
class Synthesiser;

struct MidiDevices {
  /// As in synthesiser.h and midi_port.h. Any thread.
  std::unique_ptr<Synthesiser> (*makeSynthesiser)(uint32_t sampleRate,
                                                  const std::filesystem::path& soundFont,
                                                  std::string& whyNot);
  std::unique_ptr<MidiOutput> (*makeMidiPort)(const std::string& nameOrNumber, std::string& whyNot);
};

}  // namespace qv

extern "C" const qv::MidiDevices qvMidiDevices;
