#include "host/machine_sound.h"

#include "host/midi_module.h"
#include "host/silent_sound.h"
#include "platform/devices/disc_folder.h"
#include "platform/devices/synthesiser.h"
#include "platform/sdl/audio_output.h"
#include "platform/sound/awaited_midi.h"
#include "platform/sound/mixer_disc.h"
#include "platform/sound/null_midi_output.h"
#include "platform/sound/sound_mixer.h"
#include "platform/sound/unheard.h"

namespace qv {

namespace {

constexpr const char* UsualSoundFont = "/usr/share/sounds/sf2/TimGM6mb.sf2";
constexpr const char* NoMidi = "none";
// A story may take its time before it shows anything.
constexpr uint32_t LatestStartMillis = 200;

std::unique_ptr<DiscTracks> openDisc(const SoundRequest& request) {
  std::string whyNot;
  auto tracks = openDiscFolder(request.disc, whyNot);
  if (!whyNot.empty()) request.notice(whyNot);
  return tracks;
}

/// What takes long is done after the first picture, or once a song is wanted: the search for an
/// output, and the MIDI devices with their libraries and instruments. Until they are there, sounds
/// wait for them at their beginning.
class MachineSound : public SoundDevices {
 public:
  explicit MachineSound(const SoundRequest& request)
      : hasMidi_(request.midiPort != NoMidi),
        midi_([this] { begin_.set(); }),
        begin_("sound output wanted", Event::Reset::Manual),
        stop_("sound output stop", Event::Reset::Manual),
        mixer_(OutputRate, *request.volumes),
        disc_(openDisc(request), OutputRate),
        output_(makeAudioOutput()) {
    mixer_.setDisc(&disc_);
    starter_.start("sound output", [this, request] { start(request); });
  }
  ~MachineSound() override {
    stop_.set();
    starter_.join();
  }

  void pictureShown() override { begin_.set(); }

  WaveOutput* wave() override { return &mixer_.wave(); }
  MidiOutput* midi() override { return hasMidi_ ? &midi_ : nullptr; }
  DiscPlayer* disc() override { return &disc_; }

 private:
  void start(const SoundRequest& request) {
    if (waitAny({&stop_, &begin_}, LatestStartMillis, WaitKind::Service) == 0) return;
    std::string whyNot;
    const bool heard = output_->open(whyNot);
    if (!heard) request.notice(whyNot + " The game goes on in silence.");
    if (hasMidi_) midi_.arrive(makeMidi(request, heard));
    if (heard)
      output_->start(mixer_);
    else
      playUnheard(mixer_, stop_);
  }

  /// The port that was asked for, else the synthesiser: as far as somebody hears it.
  std::unique_ptr<MidiOutput> makeMidi(const SoundRequest& request, bool heard) {
    if (!heard && request.midiPort.empty()) return std::make_unique<NullMidiOutput>();
    std::string whyNot;
    const MidiDevices* const devices = midiDevices(whyNot);
    std::unique_ptr<MidiOutput> port;
    if (devices && !request.midiPort.empty())
      port = devices->makeMidiPort(request.midiPort, whyNot);
    if (!whyNot.empty()) request.notice(whyNot);
    if (port) return port;
    if (!devices || !heard) return std::make_unique<NullMidiOutput>();
    whyNot.clear();
    std::unique_ptr<Synthesiser> synthesiser = devices->makeSynthesiser(
        OutputRate, request.soundFont.empty() ? UsualSoundFont : request.soundFont, whyNot);
    if (!whyNot.empty()) request.notice(whyNot);
    mixer_.setSong(synthesiser.get());
    return synthesiser;
  }

  const bool hasMidi_;
  AwaitedMidi midi_;
  Event begin_, stop_;
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
