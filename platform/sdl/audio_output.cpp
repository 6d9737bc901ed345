#include "platform/sdl/audio_output.h"

#define SDL_MAIN_HANDLED
#include <algorithm>

#include <SDL2/SDL.h>

#include "platform/sound/sound_mixer.h"

namespace qv {

namespace {

constexpr int WantedRate = 48000, LeastRate = 8000, MostRate = 96000;
/// A new sound begins with the next buffer: some ten milliseconds.
constexpr uint16_t WantedFrames = 512;

class SdlAudioOutput : public AudioOutput {
 public:
  ~SdlAudioOutput() override {
    if (device_) SDL_CloseAudioDevice(device_);
    if (started_) SDL_QuitSubSystem(SDL_INIT_AUDIO);
  }

  bool open(std::string& whyNot) {
    SDL_SetMainReady();
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    SDL_SetHint(SDL_HINT_AUDIO_DEVICE_APP_NAME, "qvrun");
    started_ = SDL_InitSubSystem(SDL_INIT_AUDIO) == 0;
    if (started_) openDevice(SDL_AUDIO_ALLOW_FREQUENCY_CHANGE);
    if (device_ && (obtained_.freq < LeastRate || obtained_.freq > MostRate)) {
      SDL_CloseAudioDevice(device_);
      openDevice(0);
    }
    if (!device_) whyNot = std::string("There is no sound output: ") + SDL_GetError() + ".";
    return device_ != 0;
  }

  uint32_t framesPerSecond() const override { return static_cast<uint32_t>(obtained_.freq); }
  uint32_t bufferFrames() const override { return obtained_.samples; }

  void start(SoundMixer& mixer) override {
    mixer_ = &mixer;  // the device's thread is paused and has never called
    SDL_PauseAudioDevice(device_, 0);
  }

 private:
  void openDevice(int allowedChanges) {
    SDL_AudioSpec wanted{};
    wanted.freq = WantedRate;
    wanted.format = AUDIO_F32SYS;
    wanted.channels = 2;
    wanted.samples = WantedFrames;
    wanted.callback = [](void* output, uint8_t* bytes, int count) {
      static_cast<SdlAudioOutput*>(output)->fill(bytes, count);
    };
    wanted.userdata = this;
    device_ = SDL_OpenAudioDevice(nullptr, 0, &wanted, &obtained_, allowedChanges);
  }

  void fill(uint8_t* bytes, int count) {
    auto* stereo = reinterpret_cast<float*>(bytes);
    constexpr size_t FrameBytes = 2 * sizeof(float);
    mixer_->render(stereo, static_cast<uint32_t>(static_cast<size_t>(count) / FrameBytes));
  }

  bool started_ = false;
  SDL_AudioDeviceID device_ = 0;
  SDL_AudioSpec obtained_{};
  SoundMixer* mixer_ = nullptr;
};

}  // namespace

std::unique_ptr<AudioOutput> openAudioOutput(std::string& whyNot) {
  auto output = std::make_unique<SdlAudioOutput>();
  if (!output->open(whyNot)) return nullptr;
  return output;
}

}  // namespace qv
