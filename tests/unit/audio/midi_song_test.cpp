/// What a song's bytes become: messages by the number of the step that sends them.

#include <gtest/gtest.h>

#include "tests/unit/audio/midi_stage.h"

namespace qv::testing {
namespace {

// At 120 beats a minute and the builder's division.
constexpr uint32_t TicksPerStep = 120;

TrackBytes noteAfter(uint32_t delta, int key = 0x40) {
  TrackBytes track;
  track.event(delta, {0x90, key, 0x40});
  return track.end();
}

// --- Time ---

TEST(MidiSong, SendsAnEventInTheStepThatReachesItsTick) {
  MidiStage stage;
  TrackBytes track;
  track.event(0, {0x90, 1, 9}).event(TicksPerStep, {0x90, 2, 9}).event(1, {0x90, 3, 9}).end();
  EXPECT_EQ(stage.heardOf(song({track}), 5), (Heard{{1, "900109"}, {1, "900209"}, {2, "900309"}}));
}

TEST(MidiSong, SendsWithinAStepTrackByTrackNotTickByTick) {
  MidiStage stage;
  TrackBytes first, second, third;
  first.event(100, {0x90, 1, 9}).event(10, {0x90, 2, 9}).end();
  second.event(TicksPerStep * 2, {0x91, 1, 9}).end();
  third.event(1, {0x92, 1, 9}).event(150, {0x92, 2, 9}).end();
  EXPECT_EQ(stage.heardOf(song({first, second, third}), 5),
            (Heard{{1, "900109"}, {1, "900209"}, {1, "920109"}, {2, "910109"}, {2, "920209"}}));
}

TEST(MidiSong, TakesWholeBeatsPerMinuteFromATempo) {
  MidiStage stage;
  // 60000 ticks a beat of division: N beats a minute are N ticks a millisecond.
  const auto stepOf = [&](uint32_t micros, uint32_t delta) {
    TrackBytes track;
    track.tempo(0, micros).event(delta, {0x90, 1, 9}).end();
    const Heard heard = stage.heardOf(song({track}, 60000), 12);
    return heard.empty() ? 0 : heard[0].first;
  };
  // The first step's 16 ms still run at 120; from then on 85 and 180 ticks a millisecond.
  const uint32_t first = 120 * 16;
  EXPECT_EQ(stepOf(700000, first + 85 * 16 * 5), 6u);
  EXPECT_EQ(stepOf(700000, first + 85 * 16 * 5 + 1), 7u);
  EXPECT_EQ(stepOf(333333, first + 180 * 16 * 5), 6u);
  EXPECT_EQ(stepOf(333333, first + 180 * 16 * 5 + 1), 7u);
}

TEST(MidiSong, FoldsNoTicksAtTheSecondOfTwoTemposOfOneTick) {
  MidiStage stage;
  TrackBytes once, twice;
  once.tempo(100, 250000).event(600, {0x90, 1, 9}).end();
  twice.tempo(100, 1000000).tempo(0, 250000).event(600, {0x90, 1, 9}).end();
  const Heard heard = stage.heardOf(song({once}), 20);
  ASSERT_EQ(heard.size(), 1u);
  EXPECT_EQ(stage.heardOf(song({twice}), 20), heard);
}

TEST(MidiSong, FeelsATempoFromTheNextStepInAllTracks) {
  MidiStage stage;
  TrackBytes notes, tempo;
  notes.event(TicksPerStep, {0x90, 1, 9}).event(TicksPerStep * 2, {0x90, 2, 9}).end();
  tempo.tempo(0, 250000).end(1000);
  EXPECT_EQ(stage.heardOf(song({notes, tempo}), 5), (Heard{{1, "900109"}, {2, "900209"}}));
}

// --- Events ---

TEST(MidiSong, SendsEachKindOfMessageWithItsOwnLength) {
  MidiStage stage;
  TrackBytes track;
  track.event(0, {0x81, 1, 2}).event(0, {0x92, 3, 4}).event(0, {0xA3, 5, 6});
  track.event(0, {0xB4, 10, 8}).event(0, {0xC5, 9}).event(0, {0xD6, 10}).event(0, {0xE7, 11, 12});
  EXPECT_EQ(stage.heardOf(song({track.end()}), 1), (Heard{{1, "810102"},
                                                          {1, "920304"},
                                                          {1, "a30506"},
                                                          {1, "b40a08"},
                                                          {1, "c509"},
                                                          {1, "d60a"},
                                                          {1, "e70b0c"}}));
}

TEST(MidiSong, RepeatsTheLastStatusWhateverKindItWas) {
  MidiStage stage;
  TrackBytes track;
  track.event(0, {0x90, 1, 9}).event(0, {2, 9}).event(0, {3, 9});
  // A meta event's status repeats too: type 1, one byte.
  track.event(0, {0xFF, 1, 1, 'x'}).event(0, {1, 1, 'y'}).event(0, {0x91, 4, 9}).end();
  EXPECT_EQ(stage.heardOf(song({track}), 1),
            (Heard{{1, "900109"}, {1, "900209"}, {1, "900309"}, {1, "910409"}}));
}

TEST(MidiSong, PassesOverSystemMessagesWithOneByteAndActiveSensingWithNone) {
  MidiStage stage;
  TrackBytes track;
  track.event(0, {0xF1, 1}).event(0, {0xF7, 2}).event(0, {0xFD, 3}).event(0, {0xFE});
  track.event(0, {0x90, 1, 9}).end();
  EXPECT_EQ(stage.heardOf(song({track}), 1), (Heard{{1, "900109"}}));
}

TEST(MidiSong, PassesOverOtherMetaEventsByTheirLength) {
  MidiStage stage;
  TrackBytes track;
  track.raw(quantity(0) + bytesOf({0xFF, 3}) + quantity(200) + std::string(200, '\x90'));
  track.event(0, {0x90, 1, 9}).end();
  EXPECT_EQ(stage.heardOf(song({track}), 1), (Heard{{1, "900109"}}));
}

TEST(MidiSong, EndsATrackAtItsEventNotAtItsChunksLength) {
  MidiStage stage;
  TrackBytes track;
  track.event(0, {0x90, 1, 9}).event(0, {0x90, 2, 9}).end();
  std::string bytes = song({track});
  bytes[14 + 7] = 4;
  EXPECT_EQ(stage.heardOf(bytes, 1), (Heard{{1, "900109"}, {1, "900209"}}));
}

TEST(MidiSong, SendsAnExclusiveMessageUpToItsLastByteWhateverItsLengthSays) {
  MidiStage stage;
  TrackBytes track;
  track.exclusive(0, "\x7E\x7F\x09\x01").raw(bytesOf({0, 0xF0, 99, 1, 2, 0xF7}));
  track.event(0, {0x90, 1, 9}).end();
  EXPECT_EQ(stage.heardOf(song({track}), 1),
            (Heard{{1, "f07e7f0901f7"}, {1, "f00102f7"}, {1, "900109"}}));
}

TEST(MidiSong, LeavesOutAnExclusiveMessageOfMoreThan2048Bytes) {
  MidiStage stage;
  const auto songWith = [](size_t inner) {
    TrackBytes track;
    track.exclusive(0, std::string(inner, '\x11')).event(0, {0x90, 1, 9}).end();
    return song({track});
  };
  const Heard fits = stage.heardOf(songWith(2046), 1);
  ASSERT_EQ(fits.size(), 2u);
  EXPECT_EQ(fits[0].second.size(), 2u * 2048);
  EXPECT_EQ(stage.heardOf(songWith(2047), 1), (Heard{{1, "900109"}}));
  EXPECT_EQ(stage.heardOf(songWith(100000), 1), (Heard{{1, "900109"}}));
}

// --- Loops ---

TEST(MidiSong, BeginsAnewInTheStepBehindItsLastOneAndKeepsTheTempo) {
  MidiStage stage;
  TrackBytes track;
  track.event(0, {0x90, 1, 9}).event(TicksPerStep, {0x90, 2, 9}).tempo(0, 250000).end();
  // Step 1 plays all; step 2 rewinds; step 3 is the new first one, twice as fast.
  EXPECT_EQ(stage.heardOf(song({track}), 6, 1), (Heard{{1, "900109"},
                                                       {1, "900209"},
                                                       {3, "900109"},
                                                       {3, "900209"},
                                                       {5, "900109"},
                                                       {5, "900209"}}));
}

TEST(MidiSong, WithoutALoopStaysInSilence) {
  MidiStage stage;
  EXPECT_EQ(stage.heardOf(song({noteAfter(0)}), 100), (Heard{{1, "904040"}}));
}

TEST(MidiSong, WhoseTracksTakeNoTimeDoesNotSpin) {
  MidiStage stage;
  const Heard heard = stage.heardOf(song({noteAfter(0, 1), noteAfter(0, 2)}), 100, 1);
  EXPECT_EQ(heard.size(), 100u);  // two notes in every second step
  EXPECT_TRUE(stage.heardOf(song({TrackBytes(), TrackBytes()}), 100, 1).empty());
}

// --- Broken songs: silence, or the part that is sound ---

TEST(BrokenSong, WithMoreTracksThanChunksPlaysThoseThatAreThere) {
  MidiStage stage;
  const std::string bytes = songHead(65535, 3750) + chunk(noteAfter(0).bytes());
  EXPECT_EQ(stage.heardOf(bytes, 3), (Heard{{1, "904040"}}));
  EXPECT_EQ(stage.heardOf(bytes + "MTrk", 3), (Heard{{1, "904040"}}));
}

TEST(BrokenSong, CutShortAnywherePlaysWhatIsWhole) {
  MidiStage stage;
  TrackBytes track;
  track.event(0, {0x90, 1, 9}).exclusive(1, "abc").event(1, {0xFF, 1, 4, 1, 2, 3, 4});
  track.tempo(1, 250000).event(1, {0xB0, 7, 80}).event(1, {0xC0, 5}).end();
  const std::string whole = song({track, noteAfter(1)});
  const Heard all = stage.heardOf(whole, 2);
  ASSERT_EQ(all.size(), 5u);
  for (size_t length = 0; length < whole.size(); ++length)
    EXPECT_LE(stage.heardOf(whole.substr(0, length), 2).size(), all.size()) << length;
  EXPECT_EQ(stage.heardOf(whole.substr(0, 14 + 8 + 4), 2), (Heard{{1, "900109"}}));
}

TEST(BrokenSong, WithLengthsPastTheEndKeepsToTheFile) {
  MidiStage stage;
  const auto withTail = [](const std::string& tail) {
    TrackBytes track;
    return song({track.event(0, {0x90, 1, 9}).raw(tail)});
  };
  const Heard note = {{1, "900109"}};
  for (const std::string& tail :
       {bytesOf({0, 0xFF, 1, 0xFF, 0xFF, 0xFF, 0x7F}), bytesOf({0, 0xF0, 0x8F, 0x7F, 1, 2, 3}),
        bytesOf({0, 0xFF, 0x51, 3, 1}), bytesOf({0, 0xFF, 0x51}), bytesOf({0, 0xFF}),
        bytesOf({0, 0x90}), bytesOf({0, 0x90, 1}), bytesOf({0, 0xB0, 7}), bytesOf({0xFF})})
    EXPECT_EQ(stage.heardOf(withTail(tail), 3), note) << tail.size();

  // A chunk and a head that announce more than there is.
  std::string bytes = song({noteAfter(0), noteAfter(0)});
  bytes[14 + 4] = '\x7F';
  EXPECT_EQ(stage.heardOf(bytes, 3), (Heard{{1, "904040"}}));
  bytes[4] = '\xFF';
  EXPECT_TRUE(stage.heardOf(bytes, 3).empty());
}

TEST(BrokenSong, ThatBeginsWithoutAStatusSendsNothingForIt) {
  MidiStage stage;
  TrackBytes track;
  track.event(0, {0x40}).event(0, {0x41}).event(0, {0x90, 1, 9}).end();
  EXPECT_EQ(stage.heardOf(song({track}), 2), (Heard{{1, "900109"}}));
}

TEST(BrokenSong, WithADeltaTimeWithoutEndIsOver) {
  MidiStage stage;
  TrackBytes track, other;
  track.event(0, {0x90, 1, 9}).raw(std::string(100000, '\xFF'));
  const Heard once = {{1, "900109"}};
  EXPECT_EQ(stage.heardOf(song({track}), 3), once);
  // Over is over: the loop goes on without it.
  EXPECT_EQ(stage.heardOf(song({track}), 4, 1), (Heard{{1, "900109"}, {3, "900109"}}));
}

TEST(BrokenSong, WithDeltaTimesBeyondAllTicksWaitsForEver) {
  MidiStage stage;
  TrackBytes track;
  track.event(0, {0x90, 1, 9});
  track.raw(bytesOf({0x8F, 0xFF, 0xFF, 0xFF, 0x7F, 0x90, 2, 9}));
  track.event(1, {0x90, 3, 9}).end();
  EXPECT_EQ(stage.heardOf(song({track}), 1000), (Heard{{1, "900109"}}));
}

TEST(BrokenSong, WithATempoOfZeroKeepsTheTempoThatItHad) {
  MidiStage stage;
  TrackBytes track;
  track.tempo(0, 0).event(TicksPerStep * 3, {0x90, 1, 9}).end();
  EXPECT_EQ(stage.heardOf(song({track}), 5), (Heard{{3, "900109"}}));
}

TEST(BrokenSong, WithADivisionOfZeroPlaysOnlyItsFirstTick) {
  MidiStage stage;
  TrackBytes track;
  track.event(0, {0x90, 1, 9}).event(1, {0x90, 2, 9}).end();
  EXPECT_EQ(stage.heardOf(song({track}, 0), 1000), (Heard{{1, "900109"}}));
}

TEST(BrokenSong, AtTheFastestTempoAndDivisionRunsThroughAndEnds) {
  MidiStage stage;
  TrackBytes track;
  track.tempo(0, 1);
  for (int note = 0; note < 100; ++note)
    track.event(0x0FFFFFFF, {0x90, note, 9});
  const Heard heard = stage.heardOf(song({track.end()}, 65535), 1000);
  ASSERT_EQ(heard.size(), 100u);
  EXPECT_EQ(heard.back().second, "906309");
}

/// A hundred thousand messages as a track's events.
std::string thickTrack() {
  std::string events;
  for (int note = 0; note < 100'000; ++note)
    events += bytesOf({0, 0x90, note & 0x7F, 9});
  return events;
}

TEST(BrokenSong, WhoseTracksLieOverEachOtherPlaysInStepsOfABoundedLength) {
  MidiStage stage;
  // Each chunk says that it is empty, so that all tracks run through the same notes.
  std::string bytes = songHead(1000, 3750);
  for (int track = 0; track < 1000; ++track)
    bytes += "MTrk" + bigEndian(0, 4);
  const Heard heard = stage.heardOf(bytes + thickTrack(), 4);
  size_t counts[5] = {};
  for (const auto& [step, message] : heard)
    ++counts[step];
  // An event takes three bytes of the image and its delta time's one.
  for (int step = 1; step <= 4; ++step)
    EXPECT_LE(counts[step], MidiSequencer::MostStepBytes / 3) << step;
  EXPECT_GT(heard.size(), 100'000u);
}

TEST(BrokenSong, ThatWantsMoreThanAStepMayTakeGoesOnInTheNext) {
  MidiStage stage;
  const Heard heard = stage.heardOf(songHead(1, 3750) + chunk(thickTrack()), 4);
  EXPECT_EQ(heard.size(), 100'000u);
  EXPECT_EQ(heard.front().first, 1u);
  EXPECT_EQ(heard.back().first, 2u);
}

TEST(BrokenSong, WithAnyOneBitFlippedIsSurvived) {
  MidiStage stage;
  TrackBytes track;
  track.event(0, {0x90, 1, 9}).exclusive(1, "abc").event(1, {0xFF, 1, 4, 1, 2, 3, 4});
  track.tempo(1, 250000).event(1, {0xB0, 7, 80}).event(1, {0xC0, 5}).end();
  const std::string whole = song({track, noteAfter(1)});
  for (size_t bit = 0; bit < whole.size() * 8; ++bit) {
    std::string bytes = whole;
    bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ 1 << bit % 8);
    EXPECT_LE(stage.heardOf(bytes, 3, 1).size(), bytes.size() * 2) << bit;
  }
}

}  // namespace
}  // namespace qv::testing
