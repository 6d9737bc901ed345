#include <gtest/gtest.h>

#include "foundation/file.h"
#include "scenario/animation_objects.h"
#include "scenario/start/start.h"
#include "tests/support/wave_bytes.h"
#include "tests/unit/graphics/animation/animation_ground.h"
#include "tests/unit/scenario/fake_host.h"

namespace qv::testing {
namespace {

constexpr uint32_t VoiceMillis = 900;

class ManagerSounds : public ::testing::Test {
 protected:
  ManagerSounds() {
    platform.writeFile(platform.game() / "a.wav", silentWave(VoiceMillis));
    manager.Start(&host, "Test", 8, 4, 16);
  }
  void play(uint32_t loops = 1, const char* area = nullptr) {
    manager.PlayWave("a.wav", loops, 1, area);
  }
  static uint32_t millisOf(const std::function<void()>& work) {
    const uint32_t start = tickCount();
    work();
    return tickCount() - start;
  }
  void abortAfter(uint32_t millis) {
    closing.start("closing", [this, millis] {
      sleepMillis(millis);
      host.abortEvent.set();
    });
  }

  TestPlatform platform{false, makeSimulatedKernel()};
  FakeHost host;
  QVScenario manager;
  Thread closing;
};

TEST_F(ManagerSounds, AreStoppedByTheirChannelAlone) {
  play();
  for (const int32_t other : {ChannelMidi, 0, 1, -1, -12})
    manager.StopSound(other);
  EXPECT_TRUE(manager.IsSoundPlaying(ChannelWave));
  EXPECT_FALSE(manager.IsSoundPlaying(ChannelMidi));
  EXPECT_FALSE(manager.IsSoundPlaying(0));
  manager.StopSound(ChannelWave);
  EXPECT_FALSE(manager.IsSoundPlaying(ChannelWave));
}

TEST_F(ManagerSounds, WavesDoNotFade) {
  play();
  manager.FadeOutSound(ChannelWave, 100);
  manager.FadeInSound(ChannelWave, "none.wav", 100);
  sleepMillis(500);
  EXPECT_TRUE(manager.IsSoundPlaying(ChannelWave));
  EXPECT_EQ(platform.wave().sent().size(), 1u);
}

TEST_F(ManagerSounds, AreWaitedForToTheirEnd) {
  play();
  EXPECT_EQ(millisOf([&] { manager.WaitSound(ChannelWave); }), VoiceMillis);
  EXPECT_FALSE(manager.IsSoundPlaying(ChannelWave));
  EXPECT_EQ(millisOf([&] { manager.WaitSound(ChannelWave); }), 0u);
}

TEST_F(ManagerSounds, AnAbortEndsTheWaitForASoundAtOnce) {
  play(0);
  abortAfter(300);
  const uint32_t start = tickCount();
  EXPECT_THROW(manager.WaitSound(ChannelWave), ExitScenarioException);
  EXPECT_EQ(tickCount() - start, 300u);
  closing.join();
}

TEST_F(ManagerSounds, AnAbortEndsTheWaitForTheTurnOfTheNextWithoutASound) {
  play(0);
  abortAfter(300);
  EXPECT_EQ(millisOf([&] { manager.PlayWave("a.wav", 1, 0, nullptr); }), 300u);
  EXPECT_EQ(platform.wave().sent().size(), 1u);
  closing.join();
}

TEST_F(ManagerSounds, EndWithTheRunTheWaveFirst) {
  play(0);
  manager.Release();
  EXPECT_FALSE(manager.IsSoundPlaying(ChannelWave));
}

TEST_F(ManagerSounds, GoOnThroughALoadUnlessItReleasesEverything) {
  QVFile save;
  save.openName("save", CreateAlways, GenericRead | GenericWrite, ShareRead, AttributeNormal);
  manager.SaveState(save);
  play(0);
  save.seek(0, SeekFrom::Start);
  manager.RestoreState(save);
  EXPECT_TRUE(manager.IsSoundPlaying(ChannelWave));
  save.seek(0, SeekFrom::Start);
  manager.RestoreState(save, nullptr, 1);
  EXPECT_FALSE(manager.IsSoundPlaying(ChannelWave));
  save.close();
}

TEST_F(ManagerSounds, MoveNoMouthOfANameThatIsNone) {
  manager.CreateObject("pixels", TypeSurface, {4, 4});
  for (const char* name : {"none", "pixels", ""}) {
    play(1, name);
    EXPECT_TRUE(manager.IsSoundPlaying(ChannelWave));
  }
  EXPECT_EQ(platform.wave().sent().size(), 3u);
  EXPECT_TRUE(platform.dialogs.shown.empty());
}

/// A mouth of cells A, B, C on a surface that nobody shows.
class ManagerMouth : public ManagerSounds {
 protected:
  ManagerMouth() {
    writeLetters(platform);
    face.create(2, 2);
    face.fill(26);
    const Rectangle place{0, 0, 2, 2};
    manager.CreateObject("s", TypeAnimationSurface, {"abc.bmp", 3, KeyNone});
    manager.CreateObject("q", TypeAnimationSequence, {"BC"});
    manager.CreateObject("mouth", TypeAnimationArea, {&place});
    manager.RelateAnimation("mouth", "s", "q", 1, 0, 0, 1);
    area().setTarget(&face);
  }
  ~ManagerMouth() override { manager.DestroyObject("mouth"); }
  QVAnimationArea& area() {
    return *static_cast<QVAnimationArea*>(manager.FindNative("mouth", TypeAnimationArea));
  }
  QVVSurface face;
};

TEST_F(ManagerMouth, MovesByNameAndIsClosedAtTheEnd) {
  play(1, "mouth");
  sleepMillis(100);
  EXPECT_TRUE(area().running());
  manager.WaitSound(ChannelWave);
  EXPECT_FALSE(area().running());
  EXPECT_EQ(textOf(face), "AA/AA");
}

TEST_F(ManagerMouth, MayBeDestroyedWhileItsVoiceSounds) {
  play(0, "mouth");
  sleepMillis(100);
  manager.DestroyObject("mouth");
  EXPECT_TRUE(manager.IsSoundPlaying(ChannelWave));
  manager.StopSound(ChannelWave);
}

TEST_F(ManagerMouth, EndsWithTheRun) {
  play(0, "mouth");
  sleepMillis(100);
  manager.Release();
  EXPECT_EQ(textOf(face), "AA/AA");
}

TEST(ManagerMouthSeeds, IsDestroyedInAnyMomentOfItsVoice) {
  for (uint64_t seed = 1; seed <= 40; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    TestPlatform platform(false, makeSimulatedKernel({.seed = seed}));
    writeLetters(platform);
    platform.writeFile(platform.game() / "a.wav", silentWave(20));
    FakeHost host;
    QVVSurface face;
    face.create(2, 2);
    QVScenario manager;
    manager.Start(&host, "Test", 8, 4, 16);
    const Rectangle place{0, 0, 2, 2};
    manager.CreateObject("s", TypeAnimationSurface, {"abc.bmp", 3, KeyNone});
    manager.CreateObject("q", TypeAnimationSequence, {"BC"});
    for (uint32_t round = 0; round < 4; ++round) {
      manager.CreateObject("mouth", TypeAnimationArea, {&place});
      manager.RelateAnimation("mouth", "s", "q", 1, 0, 0, 1);
      static_cast<QVAnimationArea*>(manager.FindNative("mouth"))->setTarget(&face);
      manager.PlayWave("a.wav", round % 2, 1, "mouth");
      sleepMillis(static_cast<uint32_t>(seed + round * 7) % 25);
      manager.DestroyObject("mouth");
    }
    manager.Release();
  }
}

TEST(ManagerOfAStory, NeverTellsThatAWaitWasTooShort) {
  TestPlatform platform(false, makeSimulatedKernel());
  platform.writeFile(platform.game() / "a.wav", silentWave(10));
  FakeHost host;
  QVScenario* manager = createManager();
  startStory(&host, {"Test", {}, nullptr, true});
  manager->PlayWave("a.wav", 0, 1, nullptr);
  manager->wave().wait(0);
  EXPECT_TRUE(platform.dialogs.shown.empty());
  destroyManager(manager);
}

}  // namespace
}  // namespace qv::testing
