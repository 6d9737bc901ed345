#include "host/machine_sound.h"

#include "host/silent_sound.h"
#include "platform/devices/disc_folder.h"
#include "platform/devices/midi_port.h"
#include "platform/devices/synthesiser.h"
#include "platform/sdl/audio_output.h"
#include "platform/sound/mixer_disc.h"
#include "platform/sound/sound_mixer.h"
#include "platform/sound/unheard.h"

namespace qv {

namespace {

constexpr const char* UsualSoundFont = "/usr/share/sounds/sf2/TimGM6mb.sf2";
constexpr const char* NoMidi = "none";

std::unique_ptr<DiscTracks> openDisc(const SoundRequest& request) {
  std::string whyNot;
  auto tracks = openDiscFolder(request.disc, whyNot);
  if (!whyNot.empty()) request.notice(whyNot);
  return tracks;
}

/// What takes long is done beside the first picture: the search for an output, and the instruments.
/// Until an output is found, sounds wait for it at their beginning.
class MachineSound : public SoundDevices {
 public:
  explicit MachineSound(const SoundRequest& request)
      : stop_("sound output stop", Event::Reset::Manual),
        mixer_(OutputRate, *request.volumes),
        disc_(openDisc(request), OutputRate),
        output_(makeAudioOutput()) {
    chooseMidi(request);
    mixer_.setDisc(&disc_);
    starter_.start("sound output", [this, request] { startOutput(request); });
  }
  ~MachineSound() override {
    stop_.set();
    starter_.join();
  }

  WaveOutput* wave() override { return &mixer_.wave(); }
  MidiOutput* midi() override {
    return port_ ? port_.get() : static_cast<MidiOutput*>(synthesiser_.get());
  }
  DiscPlayer* disc() override { return &disc_; }

 private:
  void chooseMidi(const SoundRequest& request) {
    if (request.midiPort == NoMidi) return;
    std::string whyNot;
    if (!request.midiPort.empty()) port_ = makeMidiPort(request.midiPort, whyNot);
    if (!whyNot.empty()) request.notice(whyNot);
    if (!port_) synthesiser_ = makeSynthesiser(OutputRate);
  }

  void startOutput(const SoundRequest& request) {
    std::string whyNot;
    if (!output_->open(whyNot)) {
      request.notice(whyNot + " The game goes on in silence.");
      if (synthesiser_) synthesiser_->loadNothing();
      playUnheard(mixer_, stop_);
      return;
    }
    if (synthesiser_) {
      synthesiser_->load(request.soundFont.empty() ? UsualSoundFont : request.soundFont, whyNot);
      if (!whyNot.empty()) request.notice(whyNot);
      mixer_.setSong(synthesiser_.get());
    }
    output_->start(mixer_);
  }

  std::unique_ptr<MidiOutput> port_;
  std::unique_ptr<Synthesiser> synthesiser_;
  Event stop_;
  SoundMixer mixer_;
  MixerDisc disc_;
  std::unique_ptr<AudioOutput> output_;  ///< the first to go: it asks the others for samples
  Thread starter_;
};

}  // namespace

std::unique_ptr<SoundDevices> makeMachineSound(const SoundRequest& request) {
  if (request.silent)
    return std::make_unique<SilentSound>(std::make_unique<NullDiscPlayer>(openDisc(request)));
  return std::make_unique<MachineSound>(request);
}

}  // namespace qv
