// What a line does with its voice and with the mouths that stand.

#include "message/line_voice.h"

#include <gtest/gtest.h>

namespace qv::testing {
namespace {

constexpr LineSettings Everything{
    .hasVoice = true, .hasSwitch = true, .switchedOn = true, .voiceEnabled = true, .skip = false};

LineSettings without(bool LineSettings::*member) {
  LineSettings settings = Everything;
  settings.*member = false;
  return settings;
}

/// Slots 1 and 3 show speaker 1, slot 4 speaker 2 without a mouth.
constexpr MouthSlots Slots{{{0, 0}, {1, 1}, {0, 1}, {1, 1}, {2, 0}, {3, 2}}};

TEST(LineVoice, PlaysWithTheFirstMouthOfItsSpeaker) {
  const LineVoice line = voiceOfLine(1, Everything, Slots);
  EXPECT_TRUE(line.plays);
  EXPECT_EQ(line.mouthSlot, 1);
  EXPECT_TRUE(line.speakerOnScreen);
}

TEST(LineVoice, PlaysWithoutAMouthWhereNoneStands) {
  for (const int32_t speakerClass : {2, 3, 7}) {
    const LineVoice line = voiceOfLine(speakerClass, Everything, Slots);
    EXPECT_TRUE(line.plays) << speakerClass;
    EXPECT_EQ(line.mouthSlot, NoMouthSlot) << speakerClass << ": only 1 tells of a mouth";
  }
}

TEST(LineVoice, ThatIsSwitchedOffMovesTheMouthInSilence) {
  for (const auto member : {&LineSettings::switchedOn, &LineSettings::voiceEnabled}) {
    const LineVoice line = voiceOfLine(1, without(member), Slots);
    EXPECT_FALSE(line.plays);
    EXPECT_EQ(line.mouthSlot, 1);
    EXPECT_TRUE(line.speakerOnScreen);
  }
}

TEST(LineVoice, ThatIsNotThereOrHasNoSwitchMovesNothing) {
  for (const auto member : {&LineSettings::hasVoice, &LineSettings::hasSwitch}) {
    const LineVoice line = voiceOfLine(1, without(member), Slots);
    EXPECT_FALSE(line.plays);
    EXPECT_EQ(line.mouthSlot, NoMouthSlot);
    EXPECT_TRUE(line.speakerOnScreen) << "the speaker's class alone tells";
  }
}

TEST(LineVoice, IsNeverHeardWhileLinesAreSkipped) {
  LineSettings settings = Everything;
  settings.skip = true;
  const LineVoice line = voiceOfLine(1, settings, Slots);
  EXPECT_FALSE(line.plays);
  EXPECT_EQ(line.mouthSlot, NoMouthSlot);
  EXPECT_TRUE(line.speakerOnScreen);
}

TEST(LineVoice, WithoutAClassCountsAsSpeakingOnlyWhileItSounds) {
  EXPECT_TRUE(voiceOfLine(0, Everything, Slots).speakerOnScreen);
  EXPECT_FALSE(voiceOfLine(0, without(&LineSettings::switchedOn), Slots).speakerOnScreen);
  EXPECT_FALSE(voiceOfLine(254, without(&LineSettings::hasSwitch), Slots).speakerOnScreen);
}

TEST(LineVoice, OfSlotZeroComesFirst) {
  MouthSlots slots = Slots;
  slots[0] = {1, 1};
  EXPECT_EQ(voiceOfLine(1, Everything, slots).mouthSlot, 0);
}

}  // namespace
}  // namespace qv::testing
