/// The sequencer alone: a song of 16 tracks and 25,000 events in steps of 16 ms, beside the player
/// of FluidSynth.
///
/// The synthesis is taken out of theirs as far as its interface lets: the player's events go to a
/// function that counts them, and the synthesiser that is its clock has no sound font, one voice,
/// neither reverb nor chorus. That clock is the only one that can be driven faster than time goes
/// by; it calls the player once in each block of 64 samples. What the synthesiser's empty blocks
/// cost without a player is measured too, and a row has it taken off. At the library's own sample
/// rate a step of 16 ms is eleven blocks; at its lowest, where its player is called too seldom to
/// keep time as well as ours, two.

#include <algorithm>
#include <cstdio>
#include <span>
#include <string>
#include <vector>

#include <fluidsynth.h>

#include "audio/midi_file.h"
#include "audio/midi_sequencer.h"
#include "bench/ground.h"
#include "bench/ratio.h"
#include "foundation/file.h"
#include "tests/support/song_bytes.h"

using namespace qv;
using namespace qv::bench;

namespace {

constexpr uint32_t StepMillis = 16;
constexpr int Tracks = 16, EventsPerTrack = 25'000 / Tracks;
constexpr uint32_t Division = 480, TicksBetween = 96;  // sixteen events a track in 1.6 s at 120
constexpr int SampleRate = 44100, LowestSampleRate = 8000;
constexpr int MostStepFrames = SampleRate * StepMillis / 1000;
/// Of a song in one measurement, so that it takes some milliseconds.
constexpr int Songs = 20;

std::string songOf(int idleTracks) {
  std::vector<testing::TrackBytes> tracks;
  for (int track = 0; track < Tracks; ++track) {
    testing::TrackBytes bytes;
    // The tracks stand a little beside each other, as the hands of players do.
    for (int event = 0; event < EventsPerTrack; ++event)
      bytes.event(event == 0 ? static_cast<uint32_t>(track * 5) : TicksBetween,
                  {0x90 | track, 40 + event % 40, event % 2 ? 0 : 90});
    tracks.push_back(bytes.end(1));
  }
  for (int track = 0; track < idleTracks; ++track)
    tracks.push_back(testing::TrackBytes().end(Division * 10'000));
  return testing::song(tracks, Division);
}

/// Counts, so that nothing can be left out.
class CountingOutput : public MidiOutput {
 public:
  bool available() const override { return true; }
  bool open() override { return true; }
  void shortMessage(uint32_t message) override { sum += message, ++count; }
  void longMessage(std::span<const uint8_t>) override { ++count; }
  void reset() override {}
  void close() override {}
  uint64_t sum = 0, count = 0;
};

class Ours {
 public:
  explicit Ours(const std::string& bytes) {
    {
      QVFile file;
      file.openName("song.mid", CreateAlways, GenericRead | GenericWrite, ShareRead,
                    AttributeNormal);
      file.write(bytes.data(), static_cast<int32_t>(bytes.size()));
      file.close();
    }
    QVFile file;
    file.openName("song.mid", OpenExisting, GenericRead, ShareRead, AttributeNormal);
    file_ = MidiFile(file);
    sequencer_.load(file_);
  }
  /// The whole song; gives its number of events.
  uint64_t play(int steps) {
    output_.count = 0;
    sequencer_.start(output_, false, 0, 0);
    for (int step = 0; step < steps; ++step)
      sequencer_.step(StepMillis);
    return output_.count;
  }
  /// The longest of the song's steps, in seconds.
  double worstStep(int steps) {
    sequencer_.start(output_, false, 0, 0);
    double worst = 0;
    for (int step = 0; step < steps; ++step)
      worst = std::max(worst, secondsOf([&] { sequencer_.step(StepMillis); }));
    return worst;
  }

 private:
  MidiFile file_;
  MidiSequencer sequencer_;
  CountingOutput output_;
};

uint64_t theirEvents = 0;

class Theirs {
 public:
  explicit Theirs(int sampleRate)
      : stepFrames_(sampleRate * static_cast<int>(StepMillis) / 1000),
        settings_(new_fluid_settings()) {
    fluid_set_log_function(FLUID_WARN, nullptr, nullptr);
    fluid_settings_setnum(settings_, "synth.sample-rate", sampleRate);
    fluid_settings_setint(settings_, "synth.reverb.active", 0);
    fluid_settings_setint(settings_, "synth.chorus.active", 0);
    fluid_settings_setint(settings_, "synth.polyphony", 1);
    fluid_settings_setint(settings_, "synth.threadsafe-api", 0);
    fluid_settings_setstr(settings_, "player.timing-source", "sample");
    synth_ = new_fluid_synth(settings_);
  }
  ~Theirs() {
    delete_fluid_synth(synth_);
    delete_fluid_settings(settings_);
  }
  Theirs(const Theirs&) = delete;
  Theirs& operator=(const Theirs&) = delete;

  void steps(int count) {
    for (int step = 0; step < count; ++step)
      fluid_synth_write_float(synth_, stepFrames_, samples_, 0, 2, samples_, 1, 2);
  }
  /// The song without its reading, which is done by the first step.
  double secondsOfSong(const std::string& bytes, int count) {
    fluid_player_t* player = new_fluid_player(synth_);
    fluid_player_set_playback_callback(
        player, [](void*, fluid_midi_event_t*) { return ++theirEvents, FLUID_OK; }, nullptr);
    fluid_player_add_mem(player, bytes.data(), bytes.size());
    fluid_player_play(player);
    steps(1);
    const double seconds = threadSecondsOf([&] { steps(count - 1); });
    delete_fluid_player(player);
    return seconds;
  }
  double secondsOfBlocks(int count) {
    return threadSecondsOf([&] { steps(count - 1); });
  }

 private:
  int stepFrames_;
  fluid_settings_t* settings_;
  fluid_synth_t* synth_ = nullptr;
  float samples_[2 * MostStepFrames] = {};
};

double median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<long>(values.size() / 2),
                   values.end());
  return values[values.size() / 2];
}

}  // namespace

int main() {
  const Ground ground;
  Table table;
  const std::string bytes = songOf(0), beside = songOf(16);
  // 120 beats a minute are 960 ticks a second.
  constexpr int Steps =
      EventsPerTrack * static_cast<int>(TicksBetween) * 1000 / 960 / static_cast<int>(StepMillis) +
      10;
  Ours ours(bytes), withIdle(beside);
  Theirs theirs(SampleRate), slow(LowestSampleRate);

  const uint64_t events = ours.play(Steps);
  for (Theirs* one : {&theirs, &slow}) {
    theirEvents = 0;
    one->secondsOfSong(bytes, Steps);
    if (events != uint64_t{Tracks} * EventsPerTrack || theirEvents < events ||
        withIdle.play(Steps) != events) {
      std::fprintf(stderr, "the songs were not played whole: %llu, %llu\n",
                   static_cast<unsigned long long>(events),
                   static_cast<unsigned long long>(theirEvents));
      return 1;
    }
  }

  // Seconds of one song, in the processor's time of this thread.
  const auto secondsOfOurs = [&](Ours& one) {
    return threadSecondsOf([&] {
             for (int song = 0; song < Songs; ++song)
               keep(one.play(Steps));
           }) /
           Songs;
  };
  std::vector<double> our, idle, their, theirBlocks, their8, their8Blocks;
  for (int round = 0; round < 15; ++round) {
    our.push_back(secondsOfOurs(ours));
    idle.push_back(secondsOfOurs(withIdle));
    their.push_back(theirs.secondsOfSong(bytes, Steps));
    theirBlocks.push_back(theirs.secondsOfBlocks(Steps));
    their8.push_back(slow.secondsOfSong(bytes, Steps));
    their8Blocks.push_back(slow.secondsOfBlocks(Steps));
  }
  const auto nanosOf = [&](const std::vector<double>& songs) {
    return median(songs) / Steps * 1e9;
  };
  table.note("events of the song", static_cast<double>(events));
  table.note("its steps of 16 ms", Steps);
  table.note("a step of ours, nanoseconds", nanosOf(our));
  table.note("a step of theirs at 44100, nanoseconds", nanosOf(their));
  table.note("  of these, empty blocks", nanosOf(theirBlocks));
  table.note("a step of theirs at 8000, nanoseconds", nanosOf(their8));
  table.note("  of these, empty blocks", nanosOf(their8Blocks));
  table.fasterBy("the song: ours / theirs on an empty synthesiser at 44100", 15,
                 {median(our), median(their)});
  table.note("the same, the empty blocks taken off",
             (median(their) - median(theirBlocks)) / median(our));
  table.note("the song: ours / theirs on an empty synthesiser at 8000",
             median(their8) / median(our));
  table.atMost("16 idle tracks beside it / without them", 1.15, {median(idle), median(our)});
  double worst = 1;
  for (int round = 0; round < 5; ++round)
    worst = std::min(worst, ours.worstStep(Steps));
  table.note("our worst step, microseconds", worst * 1e6);
  return table.status();
}
