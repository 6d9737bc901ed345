/// Songs by their messages: played by the real timer in simulated time, on a device that notes when
/// it was sent what.

#include <algorithm>
#include <map>
#include <utility>

#include "audio/midi.h"
#include "platform/sound/null_midi_output.h"
#include "tests/vectors/case.h"

namespace qv::vectors {
namespace {

constexpr uint32_t Period = QVMidi::PeriodMillis;
constexpr size_t MostNoted = 1'000'000;

using Sent = NullMidiOutput::Sent;
using Call = NullMidiOutput::Kind;

std::string hexOf(const std::vector<uint8_t>& bytes) {
  return hexOfBytes({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

/// Whether the sixteen messages from `at` are controller `number` with one value on all channels.
bool isOnAllChannels(const std::vector<Sent>& sent, size_t at, uint8_t number) {
  if (at + 16 > sent.size()) return false;
  for (size_t channel = 0; channel < 16; ++channel) {
    const Sent& one = sent[at + channel];
    const std::vector<uint8_t> wanted = {static_cast<uint8_t>(0xB0 | channel), number,
                                         sent[at].bytes.back()};
    if (one.kind != Call::Short || one.bytes != wanted || one.tick != sent[at].tick) return false;
  }
  return true;
}

/// The cases' form of what was sent: runs on all channels are folded. `callback` numbers a message.
template <class Number>
Json eventsOf(const std::vector<Sent>& sent, Number callback) {
  Json events = Json::array();
  for (size_t at = 0; at < sent.size();) {
    const Sent& one = sent[at];
    const Json number = callback(one.tick);
    if (isOnAllChannels(sent, at, 120) && isOnAllChannels(sent, at + 16, 121) &&
        at + 32 < sent.size() && sent[at + 32].kind == Call::Reset) {
      events.push_back({number, "Q"});
      at += 33;
      continue;
    }
    if (isOnAllChannels(sent, at, 7)) {
      events.push_back({number, "V", one.bytes[2]});
      at += 16;
      continue;
    }
    if (one.kind == Call::Short) events.push_back({number, "S", hexOf(one.bytes)});
    if (one.kind == Call::Long) events.push_back({number, "L", hexOf(one.bytes)});
    if (one.kind == Call::Reset) events.push_back({number, "reset alone"});
    ++at;
  }
  return events;
}

class Stage {
 public:
  explicit Stage(Case& given)
      : platform_(false, makeSimulatedKernel()), output_(MostNoted), services_(withOutput()) {
    output_.setAvailable(given.flag("available"));
    for (const auto& [name, bytes] : given["files"].items())
      platform_.writeFile(platform_.game() / name, bytesOfHex(bytes.get<std::string>()));
    midi_.emplace();
  }

  void run(const Json& command, const Json& log) {
    const auto name = command[0].get<std::string>();
    states_ = Json::array();
    Json events;
    if (name == "ticks") {
      const uint32_t start = tickCount();
      for (uint32_t left = command[1].get<uint32_t>(); left > 0; --left)
        tick();
      events = eventsOf(output_.takeSent(),
                        [&](uint32_t tick) { return (tick - start + inPeriod_) / Period; });
    } else {
      if (name == "play")
        midi_->play(command[1].get<std::string>().c_str(), command[2].get<int32_t>(),
                    command[3].get<uint32_t>(), command[4].get<uint32_t>());
      else if (name == "stop")
        midi_->stop(command[1].get<int32_t>(), command[2].get<uint32_t>());
      else
        throw std::invalid_argument("no such command: " + name);
      if (name == "play") inPeriod_ = 0;
      events = eventsOf(output_.takeSent(), [](uint32_t) { return 0; });
    }
    expectEqual(command.dump() + " events", events, log.at("events"));
    expectEqual(command.dump() + " states", states_, log.at("states"));
    expectEqual(command.dump() + " state", static_cast<uint32_t>(midi_->state()), log.at("state"));
  }

 private:
  Services withOutput() {
    Services with = services();
    with.midi = &output_;
    return with;
  }

  /// To the middle between this callback and the next.
  void tick() {
    const uint32_t middle = Period / 2;
    sleepMillis(inPeriod_ == 0 ? Period + middle : Period);
    inPeriod_ = middle;
    const auto state = static_cast<uint32_t>(midi_->state());
    if (states_.empty() || states_.back()[1] != state) states_.push_back({0, state});
    states_.back()[0] = states_.back()[0].get<uint32_t>() + 1;
  }

  testing::TestPlatform platform_;
  NullMidiOutput output_;
  ServicesScope services_;
  std::optional<QVMidi> midi_;
  uint32_t inPeriod_ = 0;  ///< milliseconds since the last callback of the timer
  Json states_;
};

void midi(Case& given) {
  Stage stage(given);
  const Json& script = given["script"];
  for (size_t at = 0; at < script.size(); ++at)
    stage.run(script[at], given["log"][at]);
}

constexpr Kind Kinds[] = {{"midi", midi}};

}  // namespace

std::span<const Kind> midiKinds() {
  return Kinds;
}

}  // namespace qv::vectors
