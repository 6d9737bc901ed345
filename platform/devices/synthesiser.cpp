#include "platform/devices/synthesiser.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <system_error>

#include <fluidsynth.h>

#include "platform/sound/midi_message_queue.h"

namespace qv {

namespace {

constexpr int Channels = 16;
constexpr uint32_t ChunkFrames = 256;
constexpr int AllNotesOff = 123;
// Loud enough beside voices and effects, and a full song of sixteen channels does not clip.
constexpr double SynthesiserGain = 0.4;
constexpr int Voices = 256;

// System exclusive messages, without the bytes around them.
constexpr uint8_t RealTime = 0x7F, NonRealTime = 0x7E;
constexpr uint8_t DeviceControl = 0x04, MasterVolume = 0x01, Tuning = 0x08, GeneralMidi = 0x09;
constexpr float MostMasterVolume = 16383.0F;

template <auto remove>
struct Delete {
  template <class Object>
  void operator()(Object* object) const {
    remove(object);
  }
};

void beQuiet(int, const char*, void*) {}

class FluidSynthesiser : public Synthesiser {
 public:
  FluidSynthesiser(fluid_settings_t* settings, fluid_synth_t* synth, bool hasFont)
      : settings_(settings), synth_(synth), hasFont_(hasFont) {
    blockFrames_ = static_cast<uint32_t>(std::max(fluid_synth_get_internal_bufsize(synth), 1));
  }

  bool available() const override { return true; }
  const char* name() const override { return "built-in synthesiser"; }
  bool open() override { return !opened_.exchange(true); }
  void shortMessage(uint32_t message) override { queue_.put(message); }
  void longMessage(std::span<const uint8_t> message) override { queue_.put(message); }
  void reset() override { queue_.putReset(); }
  void close() override { opened_ = false; }

  void render(float* stereo, uint32_t frames, float gain) override {
    queue_.take([this] { resetNow(); }, [this](uint32_t message) { sendShort(message); },
                [this](std::span<const uint8_t> message) { sendLong(message); });
    if (queue_.takeLost())
      // Ends of notes may be among what was lost.
      for (int channel = 0; channel < Channels; ++channel)
        fluid_synth_cc(synth_.get(), channel, AllNotesOff, 0);
    if (!awake_ || !hasFont_) return;
    for (; frames > 0;) {
      const uint32_t chunk = std::min(frames, ChunkFrames);
      renderChunk(stereo, chunk, gain * masterGain_);
      stereo += size_t{2} * chunk;
      frames -= chunk;
    }
  }

 private:
  void renderChunk(float* stereo, uint32_t frames, float gain) {
    writeSamples(frames);
    // A change of the volume is spread over the chunk, so that it does not click.
    const float step = (gain - lastGain_) / static_cast<float>(frames);
    float now = lastGain_;
    for (uint32_t frame = 0; frame < frames; ++frame) {
      now += step;
      const size_t left = size_t{2} * frame;
      stereo[left] += samples_[left] * now;
      stereo[left + 1] += samples_[left + 1] * now;
    }
    lastGain_ = gain;
  }

  void writeSamples(uint32_t frames) {
    fluid_synth_write_float(synth_.get(), static_cast<int>(frames), samples_.data(), 0, 2,
                            samples_.data(), 1, 2);
    framesInBlock_ = (framesInBlock_ + frames) % blockFrames_;
  }

  /// Silence, and the state in which every song begins, so that it always sounds the same.
  void resetNow() {
    fluid_synth_system_reset(synth_.get());
    // The library works by blocks of samples; what is left of the last one belongs to the old song.
    if (framesInBlock_ != 0) writeSamples(blockFrames_ - framesInBlock_);
    masterGain_ = 1;
    awake_ = false;
  }

  void sendShort(uint32_t message) {
    wake();
    const int channel = message & 0x0F;
    const int first = message >> 8 & 0x7F, second = message >> 16 & 0x7F;
    fluid_synth_t* synth = synth_.get();
    switch (message & 0xF0) {
      case 0x80:
        fluid_synth_noteoff(synth, channel, first);
        break;
      case 0x90:
        fluid_synth_noteon(synth, channel, first, second);
        break;
      case 0xA0:
        fluid_synth_key_pressure(synth, channel, first, second);
        break;
      case 0xB0:
        fluid_synth_cc(synth, channel, first, second);
        break;
      case 0xC0:
        fluid_synth_program_change(synth, channel, first);
        break;
      case 0xD0:
        fluid_synth_channel_pressure(synth, channel, first);
        break;
      case 0xE0:
        fluid_synth_pitch_bend(synth, channel, first | second << 7);
        break;
      default:
        break;
    }
  }

  void sendLong(std::span<const uint8_t> message) {
    if (message.size() < 2) return;
    wake();
    // The library wants neither the first byte nor the last.
    const std::span<const uint8_t> inner = message.subspan(1, message.size() - 2);
    const bool universal = inner.size() >= 4 && (inner[0] == RealTime || inner[0] == NonRealTime);
    if (universal && inner[0] == RealTime && inner[2] == DeviceControl &&
        inner[3] == MasterVolume && inner.size() >= 6) {
      // The library leaves it alone. By the square, as volumes of channels go.
      const int value = (inner[4] & 0x7F) | (inner[5] & 0x7F) << 7;
      const float part = static_cast<float>(value) / MostMasterVolume;
      masterGain_ = part * part;
      return;
    }
    if (universal && inner[0] == NonRealTime && inner[2] == GeneralMidi) {
      // On or off: all as it was at the beginning.
      fluid_synth_system_reset(synth_.get());
      masterGain_ = 1;
      return;
    }
    // Tunings take memory, which this thread must not ask for.
    if (universal && inner[2] == Tuning) return;
    fluid_synth_sysex(synth_.get(), reinterpret_cast<const char*>(inner.data()),
                      static_cast<int>(inner.size()), nullptr, nullptr, nullptr, 0);
  }

  void wake() {
    if (awake_) return;
    awake_ = true;
    lastGain_ = 0;
  }

  std::unique_ptr<fluid_settings_t, Delete<delete_fluid_settings>> settings_;
  std::unique_ptr<fluid_synth_t, Delete<delete_fluid_synth>> synth_;
  const bool hasFont_;
  std::atomic<bool> opened_ = false;
  MidiMessageQueue queue_;

  // The output's thread's.
  uint32_t blockFrames_ = 1, framesInBlock_ = 0;
  bool awake_ = false;  ///< between a reset and the next message there is nothing to render
  float masterGain_ = 1, lastGain_ = 0;
  std::array<float, size_t{2} * ChunkFrames> samples_{};
};

void applySettings(fluid_settings_t* settings, uint32_t sampleRate) {
  fluid_settings_setnum(settings, "synth.sample-rate", sampleRate);
  fluid_settings_setnum(settings, "synth.gain", SynthesiserGain);
  fluid_settings_setint(settings, "synth.polyphony", Voices);
  fluid_settings_setint(settings, "synth.midi-channels", Channels);
  // One thread alone uses it.
  fluid_settings_setint(settings, "synth.threadsafe-api", 0);
  fluid_settings_setint(settings, "synth.cpu-cores", 1);
}

}  // namespace

std::unique_ptr<Synthesiser> makeSynthesiser(const std::filesystem::path& soundFontPath,
                                             uint32_t sampleRate, std::string& whyNot) {
  whyNot.clear();
  for (int level = FLUID_PANIC; level < LAST_LOG_LEVEL; ++level)
    fluid_set_log_function(level, beQuiet, nullptr);
  fluid_settings_t* settings = new_fluid_settings();
  if (settings) applySettings(settings, sampleRate);
  fluid_synth_t* synth = settings ? new_fluid_synth(settings) : nullptr;
  if (!synth) {
    delete_fluid_settings(settings);
    whyNot = "The synthesiser cannot be started; songs stay silent.";
    return nullptr;
  }
  std::error_code none;
  if (!std::filesystem::is_regular_file(soundFontPath, none))
    whyNot = "There is no sound font " + soundFontPath.string() + "; songs stay silent.";
  else if (fluid_synth_sfload(synth, soundFontPath.c_str(), 1) == FLUID_FAILED)
    whyNot = soundFontPath.string() + " is no sound font that can be read; songs stay silent.";
  return std::make_unique<FluidSynthesiser>(settings, synth, whyNot.empty());
}

}  // namespace qv
