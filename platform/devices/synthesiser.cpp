#include "platform/devices/synthesiser.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <fstream>
#include <system_error>
#include <utility>

#include <fluidsynth.h>

#include "platform/kernel/kernel.h"
#include "platform/sound/midi_message_queue.h"

namespace qv {

namespace {

constexpr int Channels = 16;
constexpr uint32_t ChunkFrames = 256;
// Songs of many parts peak at 0.2 to 0.4, ten decibels and more under a voice, which peaks at 0.7:
// only where the loudest moments of both meet is the output's limit reached.
constexpr double SynthesiserGain = 0.8;
constexpr int Voices = 256;

constexpr float MostMasterVolume = 16383.0F;

// Beginnings of system exclusive messages, without their first byte; -1 is the device's number.
constexpr std::array<int16_t, 4> MasterVolume = {0x7F, -1, 0x04, 0x01};
constexpr std::array<int16_t, 3> Tuning = {0x7E, -1, 0x08}, TuningNow = {0x7F, -1, 0x08};
// All as it was at the beginning: general, and in the ways of two makers.
constexpr std::array<int16_t, 3> GeneralReset = {0x7E, -1, 0x09};
constexpr std::array<int16_t, 7> FirstMakersReset = {0x41, -1, 0x42, 0x12, 0x40, 0x00, 0x7F};
constexpr std::array<int16_t, 6> SecondMakersReset = {0x43, -1, 0x4C, 0x00, 0x00, 0x7E};
constexpr std::span<const int16_t> Resets[] = {GeneralReset, FirstMakersReset, SecondMakersReset};

bool beginsLike(std::span<const uint8_t> message, std::span<const int16_t> beginning) {
  return message.size() >= beginning.size() &&
         std::equal(beginning.begin(), beginning.end(), message.begin(),
                    [](int16_t wanted, uint8_t byte) { return wanted < 0 || wanted == byte; });
}

template <auto remove>
struct Delete {
  template <class Object>
  void operator()(Object* object) const {
    remove(object);
  }
};

void beQuiet(int, const char*, void*) {}

/// One synthesiser of the library. It is made on the sequencer's side, used by the output's thread
/// alone, and taken apart on the sequencer's side again, when it sounds no more.
class Engine {
 public:
  /// `font`: shared with other engines and longer-lived, or null.
  Engine(uint32_t sampleRate, fluid_sfont_t* font) : settings_(new_fluid_settings()), font_(font) {
    if (!settings_) return;
    fluid_settings_setnum(settings_.get(), "synth.sample-rate", sampleRate);
    fluid_settings_setnum(settings_.get(), "synth.gain", SynthesiserGain);
    fluid_settings_setint(settings_.get(), "synth.polyphony", Voices);
    fluid_settings_setint(settings_.get(), "synth.midi-channels", Channels);
    // One thread at a time uses it.
    fluid_settings_setint(settings_.get(), "synth.threadsafe-api", 0);
    fluid_settings_setint(settings_.get(), "synth.cpu-cores", 1);
    synth_.reset(new_fluid_synth(settings_.get()));
    if (!synth_ || !font_) return;
    fluid_synth_add_sfont(synth_.get(), font_);
    fluid_synth_program_reset(synth_.get());
  }
  ~Engine() {
    if (synth_ && font_) fluid_synth_remove_sfont(synth_.get(), font_);
  }
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;

  fluid_synth_t* synth() const { return synth_.get(); }
  void write(float* stereo, uint32_t frames) {
    fluid_synth_write_float(synth(), static_cast<int>(frames), stereo, 0, 2, stereo, 1, 2);
  }

 private:
  std::unique_ptr<fluid_settings_t, Delete<delete_fluid_settings>> settings_;
  std::unique_ptr<fluid_synth_t, Delete<delete_fluid_synth>> synth_;
  fluid_sfont_t* font_;
};

bool looksLikeSoundFont(const std::filesystem::path& path) {
  char head[12] = {};
  std::ifstream file(path, std::ios::binary);
  file.read(head, sizeof head);
  return file && std::memcmp(head, "RIFF", 4) == 0 && std::memcmp(head + 8, "sfbk", 4) == 0;
}

/// The library's synthesiser keeps traces of what it has played: echoes, phases of its effects,
/// filters of its voices. So every song gets one of its own, and sounds the same each time. The
/// change is made at a reset, by the output's thread.
class FluidSynthesiser : public Synthesiser {
 public:
  FluidSynthesiser(uint32_t sampleRate, const std::filesystem::path& soundFont, std::string& whyNot)
      : sampleRate_(sampleRate) {
    whyNot = loadFont(soundFont);
  }
  ~FluidSynthesiser() override {
    delete fresh_.load();
    delete retired_.load();
  }

  bool available() const override { return true; }
  const char* name() const override { return "built-in synthesiser"; }
  bool open() override {
    if (opened_.exchange(true)) return false;
    delete retired_.exchange(nullptr);
    // Where there is no memory for a new one, the old one plays on.
    if (font_ && !fresh_.load()) fresh_.store(makeEngine().release());
    queue_.putReset();
    return true;
  }
  void shortMessage(uint32_t message) override { queue_.put(message); }
  void longMessage(std::span<const uint8_t> message) override { queue_.put(message); }
  void reset() override { queue_.putReset(); }
  void close() override { opened_ = false; }

  void render(float* stereo, uint32_t frames, float gain) override {
    if (!font_) return;
    queue_.take([this] { resetNow(); }, [this](uint32_t message) { sendShort(message); },
                [this](std::span<const uint8_t> message) { sendLong(message); });
    if (queue_.takeLost()) endNotes();
    if (!awake_) return;
    while (frames > 0) {
      const uint32_t chunk = std::min(frames, ChunkFrames);
      renderChunk(stereo, chunk, gain * masterGain_);
      stereo += size_t{2} * chunk;
      frames -= chunk;
    }
  }

 private:
  /// What is wrong, in a sentence.
  std::string loadFont(const std::filesystem::path& path) {
    for (int level = FLUID_PANIC; level < LAST_LOG_LEVEL; ++level)
      fluid_set_log_function(level, beQuiet, nullptr);
    std::error_code none;
    if (!std::filesystem::is_regular_file(path, none))
      return "There is no sound font " + path.string() + "; songs stay silent.";
    fontKeeper_ = std::make_unique<Engine>(sampleRate_, nullptr);
    if (!fontKeeper_->synth()) return "The synthesiser cannot be started; songs stay silent.";
    // Other kinds of files are not given to the library, which would complain on the terminal.
    fluid_sfont_t* font = nullptr;
    if (looksLikeSoundFont(path) &&
        fluid_synth_sfload(fontKeeper_->synth(), path.c_str(), 0) != FLUID_FAILED)
      font = fluid_synth_get_sfont(fontKeeper_->synth(), 0);
    if (!font) return path.string() + " is no sound font that can be read; songs stay silent.";
    font_ = font;
    current_ = makeEngine();
    if (current_) return {};
    font_ = nullptr;
    return "The synthesiser cannot be started; songs stay silent.";
  }

  std::unique_ptr<Engine> makeEngine() const {
    auto engine = std::make_unique<Engine>(sampleRate_, font_);
    return engine->synth() ? std::move(engine) : nullptr;
  }

  void renderChunk(float* stereo, uint32_t frames, float gain) {
    current_->write(samples_.data(), frames);
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

  /// Silence; and where a song begins, its own engine.
  void resetNow() {
    if (awake_) {
      // An engine that is taken apart must hold no samples of the shared font any more.
      fluid_synth_all_sounds_off(current_->synth(), -1);
      skipBlock();
    }
    // The place is free: `open` has emptied it before it left a fresh one.
    if (Engine* fresh = fresh_.exchange(nullptr))
      retired_.store(std::exchange(current_, std::unique_ptr<Engine>(fresh)).release());
    else
      fluid_synth_system_reset(current_->synth());
    masterGain_ = 1;
    awake_ = false;
  }

  /// Ends of notes may be among what was lost.
  void endNotes() {
    // The library's own queue for a block has overflowed as well.
    skipBlock();
    fluid_synth_all_notes_off(current_->synth(), -1);
  }

  void skipBlock() {
    const int frames = fluid_synth_get_internal_bufsize(current_->synth());
    current_->write(samples_.data(),
                    std::min<uint32_t>(static_cast<uint32_t>(frames), ChunkFrames));
  }

  void sendShort(uint32_t message) {
    wake();
    const int channel = message & 0x0F;
    const int first = message >> 8 & 0x7F, second = message >> 16 & 0x7F;
    fluid_synth_t* synth = current_->synth();
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
    if (beginsLike(inner, MasterVolume) && inner.size() >= MasterVolume.size() + 2) {
      // The library leaves it alone. By the square, as volumes of channels go.
      const int value = (inner[4] & 0x7F) | (inner[5] & 0x7F) << 7;
      const float part = static_cast<float>(value) / MostMasterVolume;
      masterGain_ = part * part;
      return;
    }
    for (const std::span<const int16_t> whole : Resets)
      if (beginsLike(inner, whole)) {
        fluid_synth_system_reset(current_->synth());
        masterGain_ = 1;
        return;
      }
    // Tunings take memory, which this thread must not ask for.
    if (beginsLike(inner, Tuning) || beginsLike(inner, TuningNow)) return;
    fluid_synth_sysex(current_->synth(), reinterpret_cast<const char*>(inner.data()),
                      static_cast<int>(inner.size()), nullptr, nullptr, nullptr, 0);
  }

  void wake() {
    if (awake_) return;
    awake_ = true;
    lastGain_ = 0;
  }

  const uint32_t sampleRate_;
  std::unique_ptr<Engine> fontKeeper_;  ///< never sounds
  fluid_sfont_t* font_ = nullptr;       ///< null: nothing is rendered
  std::atomic<bool> opened_ = false;
  MidiMessageQueue queue_;
  std::atomic<Engine*> fresh_ = nullptr;    ///< for the output's thread to take
  std::atomic<Engine*> retired_ = nullptr;  ///< for `open` to take apart

  // The output's thread's.
  std::unique_ptr<Engine> current_;
  bool awake_ = false;  ///< between a reset and the next message there is nothing to render
  float masterGain_ = 1, lastGain_ = 0;
  std::array<float, size_t{2} * ChunkFrames> samples_{};
};

}  // namespace

std::unique_ptr<Synthesiser> makeSynthesiser(uint32_t sampleRate,
                                             const std::filesystem::path& soundFont,
                                             std::string& whyNot) {
  return std::make_unique<FluidSynthesiser>(sampleRate, soundFont, whyNot);
}

}  // namespace qv
