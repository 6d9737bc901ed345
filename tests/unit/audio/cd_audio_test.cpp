#include "audio/cd_audio.h"

#include <gtest/gtest.h>

#include "platform/sound/track_player.h"
#include "tests/support/test_platform.h"

namespace qv::testing {
namespace {

/// Track 1 is data, track 2 lasts ten seconds and a bit, track 3 half a second.
class Tracks : public DiscTracks {
 public:
  int32_t count() const override { return 3; }
  DiscTime length(int32_t track) const override {
    return track == 2 ? DiscTime{0, 10, 15} : track == 3 ? DiscTime{0, 0, 38} : DiscTime{};
  }
  std::unique_ptr<TrackReader> open(int32_t) override { return nullptr; }
};

/// A drive that notes what it is told.
class Drive : public NullDiscPlayer {
 public:
  Drive() : NullDiscPlayer(std::make_unique<Tracks>()) {}
  DiscError open() override {
    log.push_back("open");
    return NullDiscPlayer::open();
  }
  void close() override {
    log.push_back("close");
    NullDiscPlayer::close();
  }
  DiscError play(int32_t track, DiscTime from, DiscTime to) override {
    log.push_back("play " + std::to_string(track));
    last = to;
    return failing ? DiscError::Unreadable : NullDiscPlayer::play(track, from, to);
  }
  bool playing() override {
    ++looks;
    return NullDiscPlayer::playing();
  }
  std::vector<std::string> log;
  DiscTime last;
  std::atomic<int> looks = 0;
  std::atomic<bool> failing = false;
};

using Log = std::vector<std::string>;

class CdAudioTest : public ::testing::Test {
 protected:
  CdAudioTest() : withDrive(services()), scope((withDrive.disc = &drive, withDrive)) {}
  static uint32_t millisOf(const std::function<void()>& work) {
    const uint32_t start = tickCount();
    work();
    return tickCount() - start;
  }
  TestPlatform platform{false, makeSimulatedKernel()};
  Drive drive;
  Services withDrive;
  ServicesScope scope;
};

TEST_F(CdAudioTest, CountsTheTracksFirst) {
  CdAudio audio;
  EXPECT_EQ(audio.trackCount(), -1);
  EXPECT_FALSE(audio.play(2, 0)) << "load must come first";
  EXPECT_TRUE(audio.load());
  EXPECT_EQ(audio.trackCount(), 3);
  EXPECT_EQ(drive.log, Log({"open", "close"}));
}

TEST_F(CdAudioTest, PlaysATrackFromItsStartToItsLength) {
  CdAudio audio;
  audio.load();
  EXPECT_EQ(millisOf([&] { EXPECT_TRUE(audio.play(2, 0)); }), 0u);
  EXPECT_TRUE(audio.isPlaying());
  EXPECT_EQ(drive.last, (DiscTime{0, 10, 15}));
  EXPECT_EQ(audio.lastError(), DiscError::None);
  sleepMillis(10'100);
  EXPECT_TRUE(audio.isPlaying());
  sleepMillis(1'000);
  EXPECT_FALSE(audio.isPlaying());
  EXPECT_EQ(drive.log, Log({"open", "close", "open", "play 2", "close"}));
  audio.stop();
  EXPECT_EQ(drive.log.size(), 5u) << "a later stop finds no device";
}

TEST_F(CdAudioTest, AsksTheDriveOnceASecond) {
  CdAudio audio;
  audio.load();
  audio.play(2, 0);
  drive.looks = 0;
  sleepMillis(5'500);
  EXPECT_LE(drive.looks, 6);
  EXPECT_GE(drive.looks, 5);
}

TEST_F(CdAudioTest, StopsWithinATenthOfASecond) {
  CdAudio audio;
  audio.load();
  audio.play(2, 1);
  sleepMillis(3'230);
  EXPECT_LE(millisOf([&] { audio.stop(); }), CdAudio::PollMillis);
  EXPECT_FALSE(audio.isPlaying());
  EXPECT_EQ(drive.log.back(), "close");
}

TEST_F(CdAudioTest, RepeatsATrackInALoop) {
  CdAudio audio;
  audio.load();
  audio.play(3, 1);
  sleepMillis(9'500);
  audio.stop();
  EXPECT_EQ(std::count(drive.log.begin(), drive.log.end(), "play 3"), 10);
}

TEST_F(CdAudioTest, EndsWhenTheRepeatFails) {
  CdAudio audio;
  audio.load();
  audio.play(3, 1);
  drive.failing = true;
  sleepMillis(3'000);
  EXPECT_FALSE(audio.isPlaying());
  EXPECT_EQ(audio.lastError(), DiscError::Unreadable);
  EXPECT_EQ(drive.log.back(), "close");
}

TEST_F(CdAudioTest, StopsWhatPlaysForTheNext) {
  CdAudio audio;
  audio.load();
  audio.play(2, 1);
  EXPECT_TRUE(audio.play(3, 0));
  EXPECT_EQ(drive.log, Log({"open", "close", "open", "play 2", "close", "open", "play 3"}));
}

TEST_F(CdAudioTest, KeepsErrorsToItself) {
  CdAudio audio;
  audio.load();
  for (const int32_t track : {0, -1, 4, 99}) {
    drive.log.clear();
    EXPECT_FALSE(audio.play(track, 0)) << track;
    EXPECT_TRUE(drive.log.empty()) << "no thread for a track that is not there";
  }
  EXPECT_FALSE(audio.play(1, 0)) << "a track of data has no length";
  EXPECT_EQ(audio.lastError(), DiscError::NoSuchTrack);
  drive.failing = true;
  EXPECT_FALSE(audio.play(2, 0));
  EXPECT_EQ(audio.lastError(), DiscError::Unreadable);
  EXPECT_STREQ(audio.errorText().text(), "The track cannot be read.");
  EXPECT_EQ(drive.log.back(), "close");
  EXPECT_TRUE(platform.dialogs.shown.empty());
  drive.failing = false;
  EXPECT_TRUE(audio.play(2, 0));
  EXPECT_EQ(audio.errorText().length(), 0);
}

TEST_F(CdAudioTest, LetsAnotherUserHaveTheDriveAfterIt) {
  auto first = std::make_unique<CdAudio>();
  CdAudio second;
  first->load();
  second.load();
  first->play(2, 1);
  EXPECT_FALSE(second.play(3, 0));
  EXPECT_EQ(second.lastError(), DiscError::DeviceTaken);
  first.reset();
  EXPECT_TRUE(second.play(3, 0));
}

TEST_F(CdAudioTest, AStopWithNothingPlayingReturnsAtOnce) {
  CdAudio audio;
  EXPECT_EQ(millisOf([&] { audio.stop(); }), 0u);
}

TEST(CdAudioWithoutADisc, LoadsNothingAndPlaysNothing) {
  TestPlatform platform(false, makeSimulatedKernel());
  CdAudio audio;
  EXPECT_FALSE(audio.load());
  EXPECT_FALSE(audio.play(1, 0));
  EXPECT_FALSE(audio.isPlaying());
  EXPECT_STREQ(audio.errorText().text(), "There is no disc with audio tracks.");
}

}  // namespace
}  // namespace qv::testing
