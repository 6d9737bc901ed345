// What sound costs: the mixer for a wave, a silent song and the disc together; the same with the
// synthesiser; and how long a scene stands when it starts a voice.

#include <array>
#include <cmath>
#include <fstream>
#include <numbers>

#include "audio/wave.h"
#include "bench/ground.h"
#include "bench/ratio.h"
#include "platform/devices/synthesiser.h"
#include "platform/sound/cue_sheet.h"
#include "platform/sound/mixer_disc.h"
#include "platform/sound/sound_mixer.h"

namespace {

using namespace qv;

constexpr uint32_t Rate = 48000, BufferFrames = 512, VoiceRate = 22050, VoiceSeconds = 10;
constexpr const char* SoundFont = "/usr/share/sounds/sf2/TimGM6mb.sf2";

double processSeconds() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

/// A track of ten minutes that is read from memory, so that the decoder of a format does not count.
class MemoryTracks : public DiscTracks {
 public:
  int32_t count() const override { return 1; }
  DiscTime length(int32_t) const override { return {10, 0, 0}; }
  std::unique_ptr<TrackReader> open(int32_t) override { return std::make_unique<Reader>(); }

 private:
  class Reader : public TrackReader {
   public:
    Reader() {
      for (size_t i = 0; i < samples_.size(); ++i)
        samples_[i] = static_cast<float>(0.3 * std::sin(static_cast<double>(i) * 0.02));
    }
    uint32_t framesPerSecond() const override { return 44100; }
    void seek(uint64_t) override {}
    uint32_t read(float* stereo, uint32_t frames) override {
      const size_t count = std::min<size_t>(size_t{2} * frames, samples_.size());
      std::copy_n(samples_.begin(), count, stereo);
      return static_cast<uint32_t>(count / 2);
    }

   private:
    std::array<float, 1 << 14> samples_;
  };
};

class Silence : public SampleSource {
 public:
  void render(float*, uint32_t, float) override {}
};

std::string voiceSamples() {
  std::string bytes;
  for (uint32_t i = 0; i < VoiceRate * VoiceSeconds; ++i) {
    const auto value = static_cast<int16_t>(9000 * std::sin(i * 0.06) * std::sin(i * 0.0007));
    bytes += static_cast<char>(value & 255);
    bytes += static_cast<char>(value >> 8);
  }
  return bytes;
}

std::string voiceFile() {
  const std::string samples = voiceSamples();
  const auto number = [](uint32_t value, int count) {
    std::string bytes;
    for (; count > 0; --count, value >>= 8)
      bytes += static_cast<char>(value & 255);
    return bytes;
  };
  const std::string format = number(1, 2) + number(1, 2) + number(VoiceRate, 4) +
                             number(VoiceRate * 2, 4) + number(2, 2) + number(16, 2);
  const std::string body = "WAVEfmt " + number(16, 4) + format + "data" +
                           number(static_cast<uint32_t>(samples.size()), 4) + samples;
  return "RIFF" + number(static_cast<uint32_t>(body.size()), 4) + body;
}

/// Percent of a core while the mixer gives that much sound. The disc's thread counts too, and is
/// given time to read ahead, which it has of an output.
double percentOfACore(SoundMixer& mixer, double seconds) {
  std::array<float, size_t{2} * BufferFrames> stereo;
  const auto buffers = static_cast<uint32_t>(seconds * Rate / BufferFrames);
  sleepMillis(100);
  const double start = processSeconds();
  for (uint32_t i = 0; i < buffers; ++i) {
    mixer.render(stereo.data(), BufferFrames);
    if (i % 24 == 23) sleepMillis(55);
  }
  return 100 * (processSeconds() - start) / seconds;
}

void playVoice(SoundMixer& mixer, const std::string& samples, Event& done) {
  mixer.wave().open({1, VoiceRate, 16, 2, VoiceRate * 2}, done);
  mixer.wave().write({reinterpret_cast<const uint8_t*>(samples.data()), samples.size()},
                     PlayForever);
}

void mixerRows(bench::Table& table, const std::string& samples) {
  HostVolumes volumes;
  SoundMixer mixer(Rate, volumes);
  MixerDisc disc(std::make_unique<MemoryTracks>(), Rate);
  Silence song;
  Event done("done", Event::Reset::Manual);
  mixer.setSong(&song);
  mixer.setDisc(&disc);
  playVoice(mixer, samples, done);
  disc.open();
  disc.play(1, {}, {10, 0, 0});
  table.atMost("mixer: wave, silent song and disc, percent of a core", percentOfACore(mixer, 20),
               0.3);
}

void synthesiserRow(bench::Table& table, const std::string& samples) {
  HostVolumes volumes;
  SoundMixer mixer(Rate, volumes);
  std::string whyNot;
  const auto synthesiser = makeSynthesiser(Rate, SoundFont, whyNot);
  if (!whyNot.empty()) {
    std::fprintf(stderr, "no synthesiser: %s\n", whyNot.c_str());
    std::exit(1);
  }
  Event done("done", Event::Reset::Manual);
  mixer.setSong(synthesiser.get());
  playVoice(mixer, samples, done);
  synthesiser->open();
  std::array<float, size_t{2} * BufferFrames> stereo;
  constexpr double Seconds = 20;
  const auto buffers = static_cast<uint32_t>(Seconds * Rate / BufferFrames);
  mixer.render(stereo.data(), BufferFrames);
  // A tune of five parts on chords: eight notes struck five times a second.
  const double start = processSeconds();
  for (uint32_t i = 0; i < buffers; ++i) {
    if (i % 19 == 0)
      for (uint32_t part = 0; part < 8; ++part) {
        const uint32_t channel = part % 5, key = 48 + part * 3 + i / 19 % 12;
        synthesiser->shortMessage(0xB0 | channel | 123 << 8);
        synthesiser->shortMessage(0x90 | channel | key << 8 | 90 << 16);
      }
    mixer.render(stereo.data(), BufferFrames);
  }
  table.atMost("mixer: voice and synthesised song, percent of a core",
               100 * (processSeconds() - start) / Seconds, 4);
  synthesiser->close();
}

void playRows(bench::Table& table, const bench::Ground& ground) {
  std::ofstream(ground.root.folder("game") / "voice.wav", std::ios::binary) << voiceFile();
  HostVolumes volumes;
  SoundMixer mixer(Rate, volumes);
  Services devices = services();
  devices.wave = &mixer.wave();
  const ServicesScope scope(devices);
  QVWave wave;
  wave.play("voice.wav", 1, true, nullptr);
  std::vector<double> millis;
  int heard = 0;
  for (int round = 0; round < 101; ++round) {
    wave.stop();
    millis.push_back(1000 * bench::secondsOf([&] { wave.play("voice.wav", 1, true, nullptr); }));
    std::array<float, size_t{2} * BufferFrames> stereo;
    mixer.render(stereo.data(), BufferFrames);
    for (const float sample : stereo)
      if (sample != 0) {
        ++heard;
        break;
      }
  }
  std::sort(millis.begin(), millis.end());
  table.atMost("play of a cached voice of ten seconds, median milliseconds", millis[50], 2);
  table.note("the same, worst of a hundred", millis[100]);
  table.atLeast("heard in the next buffer, of 101", heard, 101);
}

}  // namespace

int main() {
  bench::Table table;
  const bench::Ground ground;
  const std::string samples = voiceSamples();
  mixerRows(table, samples);
  synthesiserRow(table, samples);
  playRows(table, ground);
  return table.status();
}
