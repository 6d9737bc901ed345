#include "platform/devices/midi_port.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include <RtMidi.h>

namespace qv {

namespace {

constexpr const char* ClientName = "QVLIB";
constexpr uint8_t Channels = 16;
constexpr uint8_t ControlChange = 0xB0, ResetAllControllers = 121, AllNotesOff = 123;

/// Errors of a port are silence, not exceptions in the sequencer's step.
void passOver(RtMidiError::Type, const std::string&, void*) {}

/// Of this one interface alone: another one that the library may choose ends the program where
/// there are no ports. Null where the machine has no sequencer.
std::unique_ptr<RtMidiOut> makeClient() {
  // The libraries complain on the terminal where it is missing; we say it in our own sentence.
  std::error_code none;
  if (!std::filesystem::exists("/dev/snd/seq", none)) return nullptr;
  try {
    return std::make_unique<RtMidiOut>(RtMidi::LINUX_ALSA, ClientName);
  } catch (const RtMidiError&) {
    return nullptr;
  }
}

std::vector<std::string> portNames(RtMidiOut& client) {
  std::vector<std::string> names;
  try {
    const unsigned count = client.getPortCount();
    for (unsigned port = 0; port < count; ++port)
      names.push_back(client.getPortName(port));
  } catch (const RtMidiError&) {
    // A port went while we looked.
  }
  return names;
}

class MidiPort : public MidiOutput {
 public:
  MidiPort(std::unique_ptr<RtMidiOut> client, unsigned number, std::string name)
      : client_(std::move(client)), number_(number), name_(std::move(name)) {
    client_->setErrorCallback(passOver);
  }
  ~MidiPort() override { MidiPort::close(); }

  bool available() const override { return true; }
  const char* name() const override { return name_.c_str(); }
  bool open() override {
    if (client_->isPortOpen()) return false;
    try {
      client_->openPort(number_, "song");
    } catch (const RtMidiError&) {
      return false;
    }
    return client_->isPortOpen();
  }
  void shortMessage(uint32_t message) override {
    const uint8_t bytes[3] = {static_cast<uint8_t>(message),
                              static_cast<uint8_t>(message >> 8 & 0x7F),
                              static_cast<uint8_t>(message >> 16 & 0x7F)};
    const uint32_t kind = message & 0xF0;
    send({bytes, kind == 0xC0 || kind == 0xD0 ? size_t{2} : size_t{3}});
  }
  void longMessage(std::span<const uint8_t> message) override { send(message); }
  void reset() override {
    for (uint8_t channel = 0; channel < Channels; ++channel)
      for (const uint8_t controller : {AllNotesOff, ResetAllControllers})
        send(std::array<uint8_t, 3>{static_cast<uint8_t>(ControlChange | channel), controller, 0});
  }
  void close() override { client_->closePort(); }

 private:
  void send(std::span<const uint8_t> bytes) {
    if (!client_->isPortOpen()) return;
    try {
      client_->sendMessage(bytes.data(), bytes.size());
    } catch (const RtMidiError&) {
      // The other end is gone: the song goes on in silence.
    }
  }

  std::unique_ptr<RtMidiOut> client_;
  const unsigned number_;
  const std::string name_;
};

std::optional<size_t> placeOf(const std::vector<std::string>& names, const std::string& wanted) {
  size_t number = 0;
  const char* end = wanted.data() + wanted.size();
  const auto [behind, error] = std::from_chars(wanted.data(), end, number);
  if (error == std::errc() && behind == end)
    return number < names.size() ? std::optional(number) : std::nullopt;
  const auto found = std::find_if(names.begin(), names.end(), [&](const std::string& name) {
    return name.find(wanted) != std::string::npos;
  });
  if (wanted.empty() || found == names.end()) return std::nullopt;
  return static_cast<size_t>(found - names.begin());
}

}  // namespace

std::vector<std::string> midiPortNames() {
  const std::unique_ptr<RtMidiOut> client = makeClient();
  return client ? portNames(*client) : std::vector<std::string>();
}

std::unique_ptr<MidiOutput> makeMidiPort(const std::string& nameOrNumber, std::string& whyNot) {
  whyNot.clear();
  std::unique_ptr<RtMidiOut> client = makeClient();
  if (!client) {
    whyNot = "This machine has no MIDI sequencer, so there is no port " + nameOrNumber + ".";
    return nullptr;
  }
  const std::vector<std::string> names = portNames(*client);
  const std::optional<size_t> place = placeOf(names, nameOrNumber);
  if (!place) {
    whyNot = "There is no MIDI port " + nameOrNumber + "; there are";
    for (size_t port = 0; port < names.size(); ++port)
      whyNot += (port ? ", " : " ") + std::to_string(port) + " \"" + names[port] + "\"";
    whyNot += names.empty() ? " none." : ".";
    return nullptr;
  }
  return std::make_unique<MidiPort>(std::move(client), static_cast<unsigned>(*place),
                                    names[*place]);
}

}  // namespace qv
