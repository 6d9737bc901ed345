#include "host/machine_sound.h"

#include "host/silent_sound.h"
#include "platform/devices/disc_folder.h"
#include "platform/devices/midi_port.h"
#include "platform/devices/synthesiser.h"
#include "platform/sdl/audio_output.h"
#include "platform/sound/mixer_disc.h"
#include "platform/sound/sound_mixer.h"

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

std::unique_ptr<SoundDevices> makeSilentSound(const SoundRequest& request) {
  return std::make_unique<SilentSound>(std::make_unique<NullDiscPlayer>(openDisc(request)));
}

class MachineSound : public SoundDevices {
 public:
  MachineSound(std::unique_ptr<AudioOutput> output, const SoundRequest& request)
      : mixer_(output->framesPerSecond(), *request.volumes),
        disc_(openDisc(request), output->framesPerSecond()),
        output_(std::move(output)) {
    openMidi(request);
    mixer_.setDisc(&disc_);
    output_->start(mixer_);
  }

  WaveOutput* wave() override { return &mixer_.wave(); }
  MidiOutput* midi() override {
    return port_ ? port_.get() : static_cast<MidiOutput*>(synthesiser_.get());
  }
  DiscPlayer* disc() override { return &disc_; }

 private:
  void openMidi(const SoundRequest& request) {
    if (request.midiPort == NoMidi) return;
    std::string whyNot;
    if (!request.midiPort.empty()) port_ = makeMidiPort(request.midiPort, whyNot);
    if (!whyNot.empty()) request.notice(whyNot);
    if (port_) return;
    whyNot.clear();
    synthesiser_ = makeSynthesiser(request.soundFont.empty() ? UsualSoundFont : request.soundFont,
                                   mixer_.framesPerSecond(), whyNot);
    if (!whyNot.empty()) request.notice(whyNot);
    mixer_.setSong(synthesiser_.get());
  }

  std::unique_ptr<MidiOutput> port_;
  std::unique_ptr<Synthesiser> synthesiser_;
  SoundMixer mixer_;
  MixerDisc disc_;
  std::unique_ptr<AudioOutput> output_;  ///< the first to go: it asks the others for samples
};

}  // namespace

std::unique_ptr<SoundDevices> makeMachineSound(const SoundRequest& request) {
  if (request.silent) return makeSilentSound(request);
  std::string whyNot;
  auto output = openAudioOutput(whyNot);
  if (output) return std::make_unique<MachineSound>(std::move(output), request);
  request.notice(whyNot + " The game goes on in silence.");
  return makeSilentSound(request);
}

}  // namespace qv
