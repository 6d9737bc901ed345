#include "platform/sdl/audio_output.h"

#define SDL_MAIN_HANDLED
#include <SDL2/SDL.h>
#include <alsa/asoundlib.h>

#include "platform/sdl/subsystem.h"
#include "platform/sound/sound_mixer.h"

namespace qv {

namespace {

/// A new sound begins with the next buffer: some ten milliseconds.
constexpr uint16_t WantedFrames = 512;

/// ALSA tells the terminal of every name that it does not find on a machine without a card, and a
/// player is told once, in one sentence.
void tellNobody(const char*, int, const char*, int, const char*, ...) {}

class SdlAudioOutput : public AudioOutput {
 public:
  SdlAudioOutput() {
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    SDL_SetHint(SDL_HINT_AUDIO_DEVICE_APP_NAME, "qvrun");
  }
  ~SdlAudioOutput() override {
    if (device_) SDL_CloseAudioDevice(device_);
    if (started_) quitSubsystem(SDL_INIT_AUDIO);
  }

  bool open(std::string& whyNot) override {
    snd_lib_error_set_handler(tellNobody);
    started_ = startSubsystem(SDL_INIT_AUDIO);
    if (started_) openDevice();
    if (!device_) whyNot = std::string("There is no sound output: ") + SDL_GetError() + ".";
    SDL_TLSCleanup();  // SDL gives back what it keeps for a thread at the end of its own ones alone
    return device_ != 0;
  }

  void start(SoundMixer& mixer) override {
    mixer_ = &mixer;  // the device's thread is paused and has never called
    SDL_PauseAudioDevice(device_, 0);
  }

 private:
  void openDevice() {
    SDL_AudioSpec wanted{};
    wanted.freq = static_cast<int>(OutputRate);
    wanted.format = AUDIO_F32SYS;
    wanted.channels = 2;
    wanted.samples = WantedFrames;
    wanted.callback = [](void* output, uint8_t* bytes, int count) {
      static_cast<SdlAudioOutput*>(output)->fill(bytes, count);
    };
    wanted.userdata = this;
    SDL_AudioSpec obtained{};
    device_ = SDL_OpenAudioDevice(nullptr, 0, &wanted, &obtained, 0);
  }

  void fill(uint8_t* bytes, int count) {
    auto* stereo = reinterpret_cast<float*>(bytes);
    constexpr size_t FrameBytes = 2 * sizeof(float);
    mixer_->render(stereo, static_cast<uint32_t>(static_cast<size_t>(count) / FrameBytes));
  }

  bool started_ = false;
  SDL_AudioDeviceID device_ = 0;
  SoundMixer* mixer_ = nullptr;
};

}  // namespace

std::unique_ptr<AudioOutput> makeAudioOutput() {
  return std::make_unique<SdlAudioOutput>();
}

}  // namespace qv
