// What picture commands leave in the registers. Pictures are flat and drawn by the test.

#include <string>

#include <gtest/gtest.h>

#include "graphics/scene/commands.h"
#include "graphics/scene/picture_drawing.h"
#include "graphics/scene/picture_registers.h"
#include "graphics/scene/picture_tables.h"
#include "scenario/commands.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"
#include "tests/support/flat_pictures.h"
#include "tests/unit/scenario/fake_host.h"

namespace qv::testing {
namespace {

constexpr SpriteRow Sprites[] = {
    {"KUS012", 1, -10, 4, "A", "A_a", 20, 30, 44},
    {"KUS013", 3, -20, 5, nullptr, nullptr, 0, 0, MouthWithoutKey},
    {"KUS082", 8, 1, 2, nullptr, "Kus082_a", 3, 4, 55},
    {"KUC016", 1, 7, 8, nullptr, "Kuc016_a", 9, 10, 66},
    {"KUC021", 2, 7, 8, nullptr, "Kuc021_a", 9, 10, MouthWithoutKey},
    {"KUS110", 13, 5, 6, nullptr, "Kus110_a", 7, 8, 77},
    {"KUS091", 5, 33, 44, nullptr, nullptr, 0, 0, MouthWithoutKey},
};
constexpr PictureRow Pictures[] = {
    {"KUC201",
     nullptr,
     2,
     {{5, 2, nullptr, 0, 0, MouthWithoutKey}, {6, 3, nullptr, 0, 0, MouthWithoutKey}}},
    {"KAI001", nullptr, 1, {{2, 0, "KAI001_a", 11, 12, 13}}},
};

class PictureRegisters : public ::testing::Test {
 protected:
  PictureRegisters() {
    const auto cg = platform.game() / "cg";
    for (const char* name : {"A", "KUS082", "KXS082", "KXS012", "KUC016", "KZC016", "KYC016",
                             "KUC021", "KZC021", "KUS110", "KDS011"})
      writeFlatPicture(cg / (std::string(name) + ".mcg"), 8, 100, 60);
    manager.Start(&host, "Test", RegisterCount, StringRegisterCount, SystemRegisterCount);
    setTheScenario(&manager);
    tables.sprites = Sprites;
    tables.pictures = Pictures;
    setStoryTables(&tables);
  }
  ~PictureRegisters() override {
    setStoryTables(nullptr);
    manager.Release();
    setTheScenario(nullptr);
  }

  static std::string text(int32_t number) {
    return std::string(theScenario->StrReg(number).view());
  }
  static void expectSlot(int32_t slot, const std::string& picture, int32_t speaker, int32_t x,
                         int32_t y) {
    const int32_t base = 10 + 10 * slot;
    EXPECT_EQ(text(11 + slot), picture) << "slot " << slot;
    EXPECT_EQ(Reg(base), speaker) << "slot " << slot;
    EXPECT_EQ(Reg(base + 2), x) << "slot " << slot;
    EXPECT_EQ(Reg(base + 3), y) << "slot " << slot;
  }
  static void expectMouth(int32_t slot, const std::string& name, int32_t x, int32_t y,
                          int32_t key) {
    const int32_t base = 10 + 10 * slot;
    EXPECT_EQ(text(21 + slot), name.empty() ? "" : "CG\\" + name + ".mcg") << "slot " << slot;
    EXPECT_EQ(Reg(base + 4), x) << "slot " << slot;
    EXPECT_EQ(Reg(base + 5), y) << "slot " << slot;
    EXPECT_EQ(Reg(slot <= 2 ? 26 : base + 6), key) << "slot " << slot;
  }
  bool seen(int32_t flag) { return manager.SysReg(300 + flag) == 1; }

  TestPlatform platform{false, makeSimulatedKernel()};
  FakeHost host;
  QVScenario manager;
  StoryTables tables;
};

// --- Slots ---

TEST_F(PictureRegisters, ClearingASlotResetsAllOfIt) {
  for (int32_t slot = 1; slot <= 5; ++slot) {
    const int32_t base = 10 + 10 * slot;
    for (int32_t number = base; number <= base + 6; ++number)
      Reg(number) = 99;
    manager.StrReg(11 + slot).create(QVString::DefaultGrain, "x");
    manager.StrReg(21 + slot).create(QVString::DefaultGrain, "y");
    ClearSlot(slot);
    expectSlot(slot, "", 0, 0, 0);
    expectMouth(slot, "", 0, 0, -2);
    EXPECT_EQ(Reg(base + 1), 0);
  }
  EXPECT_EQ(Reg(36), 99) << "the second slot has no key of its own";
}

TEST_F(PictureRegisters, ClearingTheFirstKeepsItsMouthsPlace) {
  for (int32_t number = 10; number <= 16; ++number)
    Reg(number) = 7;
  manager.StrReg(11).create(QVString::DefaultGrain, "x");
  manager.StrReg(21).create(QVString::DefaultGrain, "y");
  ClearSlot(0);
  EXPECT_EQ(text(11), "");
  EXPECT_EQ(text(21), "y");
  EXPECT_EQ(Reg(10), 0);
  EXPECT_EQ(Reg(11), 7);
  EXPECT_EQ(Reg(12), 0);
  EXPECT_EQ(Reg(14), 7);
  EXPECT_EQ(Reg(16), 7);
}

TEST_F(PictureRegisters, SlotsThatAreNoneAreLeftAlone) {
  manager.StrReg(17).create(QVString::DefaultGrain, "x");
  for (const int32_t slot : {-1, 6, 100, INT32_MAX}) {
    ClearSlot(slot);
    SetSlotSpeaker(3, slot);
    PlaceMouth(3, slot, "m", 1, 2, 3);
    EXPECT_EQ(PlaceSprite(3, slot, "A", 1, 2), slot);
    ClearSprite(slot);
  }
  EXPECT_EQ(text(17), "x");
  EXPECT_EQ(Reg(70), 0);
  EXPECT_EQ(standingPlace(6), 0);
  EXPECT_EQ(standingPlace(0), 0);
}

TEST_F(PictureRegisters, FiguresStandAtFivePlaces) {
  const int32_t places[] = {100, 210, 320, 430, 560};
  for (int32_t slot = 1; slot <= 5; ++slot) {
    EXPECT_EQ(PlaceSprite(10 + slot, slot, "A", 5, 6), slot);
    expectSlot(slot, "A", 0, 5 + places[slot - 1], 6);
  }
}

TEST_F(PictureRegisters, SpeakersOfTheFirstSlotHaveARunningFlagOfTheirOwn) {
  Reg(11) = 5;
  SetSlotSpeaker(3, 0);
  EXPECT_EQ(Reg(10), 3);
  EXPECT_EQ(Reg(11), 0);
  Reg(41) = 5;
  SetSlotSpeaker(4, 3);
  EXPECT_EQ(Reg(40), 4);
  EXPECT_EQ(Reg(41), 0);
}

TEST_F(PictureRegisters, AMouthOfTheFirstSlotHasItsPlaceThere) {
  PlaceMouth(4, 0, "m", 5, 6, 7);
  EXPECT_EQ(text(21), "CG\\m.mcg");
  EXPECT_EQ(Reg(10), 4);
  EXPECT_EQ(Reg(14), 5);
  EXPECT_EQ(Reg(15), 6);
  EXPECT_EQ(Reg(16), 7);
}

TEST_F(PictureRegisters, KeysOfTheFirstTwoMouthsAreOne) {
  PlaceMouth(1, 1, "a", 0, 0, 70);
  PlaceMouth(2, 2, "b", 0, 0, 80);
  EXPECT_EQ(Reg(26), 80);
  EXPECT_EQ(Reg(36), 0);
  PlaceMouth(3, 3, "c", 0, 0, 90);
  EXPECT_EQ(Reg(46), 90);
  ClearSlot(2);
  EXPECT_EQ(Reg(26), -2);
}

// --- Figures ---

TEST_F(PictureRegisters, AFigureStandsOnTheScreensLowerEdgeWithItsMouth) {
  SpriteCommand("KUS012", 3);
  expectSlot(3, "A", 1, 320 - 10, 480 - 100 + 4);
  expectMouth(3, "A_a", 20 + 320 - 10, 30 + 480 - 100 + 4, 44);
  EXPECT_TRUE(seen(61));
  EXPECT_EQ(manager.FindObject("ChrTempSurf"), nullptr);
  EXPECT_NE(platform.readFile(platform.player() / "Test.system.dat"), "");
}

TEST_F(PictureRegisters, AFigureWithoutAMouthHasItsTopTold) {
  Reg(41) = 1;
  SpriteCommand("KUS013", 3);
  expectSlot(3, "KDS013", 3, 320 - 20, 5);
  expectMouth(3, "", 0, 0, 0);
  EXPECT_EQ(Reg(41), 0);
  EXPECT_TRUE(seen(62));
}

TEST_F(PictureRegisters, TheSecondFigureOfASpeakerTakesTheFirstOnesPlace) {
  SpriteCommand("KUS012", 2);
  SpriteCommand("KUC016", 4);
  expectSlot(4, "", 0, 0, 0);
  expectSlot(2, "KUC016", 1, 210 + 7, 480 - 100 + 8);
  expectMouth(2, "Kuc016_a", 9 + 210 + 7, 10 + 480 - 100 + 8, 66);
}

TEST_F(PictureRegisters, OfTwoPlacesOfASpeakerTheLowestIsTaken) {
  SetSlotSpeaker(9, 4);
  SetSlotSpeaker(9, 2);
  EXPECT_EQ(PlaceSprite(9, 5, "A", 0, 0), 2);
}

TEST_F(PictureRegisters, AnEmptyNameClearsTheSlotOrAll) {
  SpriteCommand("KUS012", 2);
  SpriteCommand("KUS082", 3);
  SpriteCommand("", 2);
  expectSlot(2, "", 0, 0, 0);
  EXPECT_EQ(text(14), "KUS082");
  SpriteCommand("KUS012", 1);
  SpriteCommandKZC("", 0);
  EXPECT_EQ(text(12) + text(13) + text(14), "");
}

TEST_F(PictureRegisters, ThePairStandsInTheFirstSlotsWhateverWasAsked) {
  SpriteCommand("KUS110", 4);
  expectSlot(1, "KUS110", 13, 100 + 5, 480 - 100 + 6);
  EXPECT_EQ(text(22), "CG\\Kus110_a.mcg");
  EXPECT_EQ(Reg(30), 14);
  EXPECT_EQ(text(13), "");
  EXPECT_EQ(Reg(34), 196);
  EXPECT_EQ(Reg(35), 193);
  EXPECT_EQ(Reg(26), 85);
  expectSlot(4, "", 0, 0, 0);
  EXPECT_TRUE(seen(94));
}

TEST_F(PictureRegisters, ThePairIsTheSameTwoWhateverItsRowSays) {
  constexpr SpriteRow Still[] = {
      {"KUS110", 5, 5, 6, nullptr, nullptr, 0, 0, MouthWithoutKey},
  };
  tables.sprites = Still;
  SpriteCommand("KUS110", 4);
  expectSlot(1, "KUS110", 13, 100 + 5, 6);
  EXPECT_EQ(text(22), "");
  EXPECT_EQ(Reg(30), 14);
  EXPECT_EQ(text(23), "CG\\Kus110_b.mcg");
  EXPECT_EQ(Reg(34), 196);
  EXPECT_EQ(Reg(35), 193);
  EXPECT_EQ(Reg(26), 85);
  expectSlot(4, "", 0, 0, 0);
}

TEST_F(PictureRegisters, GroupsFillTheFirstSlotByTheirName) {
  SpriteCommand("KUS091", 3);
  expectSlot(1, "KUS091", 0, 33, 44);
  EXPECT_TRUE(seen(90));
  SpriteCommand("KUC201", 3);
  expectSlot(1, "KUC201", 0, 0, 0);
  EXPECT_EQ(Reg(30), 5);
  EXPECT_EQ(Reg(40), 6);
  EXPECT_EQ(text(13) + text(14), "");
  EXPECT_TRUE(seen(146));
}

// --- Variants ---

TEST_F(PictureRegisters, VariantsShowTheirOwnPictureWithThePlainFormsFlag) {
  SpriteCommandKZC("KUC016", 2);
  expectSlot(2, "KZC016", 1, 210 + 7, 480 - 100 + 8);
  expectMouth(2, "Kzc016_a", 9 + 210 + 7, 10 + 480 - 100 + 8, 135);
  EXPECT_TRUE(seen(110));
  SpriteCommandKYC("KUC016", 2);
  EXPECT_EQ(text(13), "KYC016");
  EXPECT_EQ(Reg(26), 87);
  // A plain form without a key has none in its variants.
  SpriteCommandKZC("KUC021", 3);
  expectMouth(3, "Kzc021_a", 9 + 320 + 7, 10 + 480 - 100 + 8, MouthWithoutKey);
}

TEST_F(PictureRegisters, TheLastFamilyTakesTwoFiguresAlone) {
  SpriteCommandKXS("KUS082", 5);
  expectSlot(5, "KXS082", 8, 560 + 1, 480 - 100 + 2);
  EXPECT_EQ(Reg(66), 55);
  EXPECT_TRUE(seen(89));
  SpriteCommandKXS("KUS012", 4);
  EXPECT_EQ(text(15), "KXS012");
  SpriteCommandKXS("KUS013", 3);
  SpriteCommandKXS("KUC016", 3);
  SpriteCommandKZC("KUS012", 3);
  SpriteCommandKZC("KUC999", 3);
  expectSlot(3, "", 0, 0, 0);
}

// --- Backgrounds and stills ---

TEST_F(PictureRegisters, ABackgroundClearsAllAndIsSeen) {
  SpriteCommand("KUS012", 2);
  EventCommand("KEV001");
  BgCommand("KBA020S2");
  EXPECT_EQ(text(10), "KBA020S2");
  EXPECT_EQ(text(11), "");
  EXPECT_EQ(text(13), "");
  EXPECT_EQ(Reg(20), 0);
  EXPECT_TRUE(seen(19));
  EXPECT_TRUE(pictureIsDark());
  for (const char* name : {"WHITE", "RED", "nothing", ""}) {
    BgCommand(name);
    EXPECT_EQ(text(10), name);
    EXPECT_FALSE(pictureIsDark());
  }
  BgCommand("BLACK");
  EXPECT_TRUE(pictureIsDark());
}

TEST_F(PictureRegisters, AnEventStandsAloneWithItsMouths) {
  BgCommand("KBA001");
  SpriteCommand("KUS012", 2);
  EventCommand("KEV003B");
  EXPECT_EQ(text(10), "");
  EXPECT_EQ(text(11), "KEV003B");
  EXPECT_EQ(text(13), "");
  expectSlot(1, "", 1, 0, 0);
  expectMouth(1, "KEV003Ba", 432, 208, -2);
  expectMouth(2, "KEV003Bb", 96, 256, -2);
  EXPECT_TRUE(seen(169));
  EventCommand("KEV007");
  EXPECT_EQ(Reg(10), 1);
  EXPECT_EQ(text(22), "");
  EXPECT_TRUE(seen(174));
  EventCommand("BLACK");
  EXPECT_TRUE(pictureIsDark());
  EventCommand("KEV205");
  EXPECT_EQ(Reg(20), 2);
  EXPECT_EQ(Reg(30), 17);
  EXPECT_EQ(Reg(40), 18);
  EXPECT_EQ(Reg(50), 19);
  EXPECT_EQ(text(12) + text(22) + text(25), "");
}

TEST_F(PictureRegisters, SomeEventsAreShownAsAnother) {
  EventCommand("KEV230B");
  EXPECT_EQ(text(11), "KEV230");
  EXPECT_TRUE(seen(202));
}

TEST_F(PictureRegisters, TitlesHaveTheStorysMouthsAndNoFlag) {
  const std::string before = platform.readFile(platform.player() / "Test.system.dat");
  TitleCommand("KAI001");
  EXPECT_EQ(text(11), "KAI001");
  EXPECT_EQ(text(21), "CG\\KAI001_a.mcg");
  EXPECT_EQ(Reg(10), 2);
  EXPECT_EQ(Reg(16), 13);
  EXPECT_EQ(platform.readFile(platform.player() / "Test.system.dat"), before);
  // An event's name is none of a title.
  TitleCommand("KEV001");
  EXPECT_EQ(text(11), "KEV001");
  EXPECT_EQ(text(22), "");
}

TEST_F(PictureRegisters, WithoutAManagerNothingHappens) {
  setTheScenario(nullptr);
  BgCommand("KBA001");
  EventCommand("KEV001");
  TitleCommand("KAI001");
  SpriteCommand("KUS012", 1);
  SpriteCommandKZC("KUC016", 1);
  SpriteCommandKXS("KUS012", 1);
  ClearSprite(0);
  EffectCommand(1, 16, EffectConstant);
  FadeToBlack(16);
  FadeScreenFast(4);
  DrawFile("x", 1, 0, 1);
  setTheScenario(&manager);
  EXPECT_EQ(text(10) + text(11) + text(12), "");
}

TEST_F(PictureRegisters, AnEffectWithoutTheScreensObjectsDoesNothing) {
  BgCommand("KBA099");
  EffectCommand(9, 16, EffectConstant);
  EXPECT_EQ(text(10), "KBA099");
}

// --- Drawing ---

TEST_F(PictureRegisters, AKeyedFileBringsTheColoursThatItOwns) {
  writeFlatPicture(platform.game() / "cg" / "K.mcg", 8, 8, 61, true);
  QVVSurface target;
  target.create(16, 16);
  target.fill(5);
  const ColourTable before = target.storedColours();
  DrawFileKeyed(target, "CG\\K.mcg", 2, 3, true, KeyTopLeft);
  EXPECT_EQ(target.storedColours()[61] & 0xFFFFFF, flatColour(61));
  EXPECT_EQ(target.storedColours()[62], before[62]);
  EXPECT_EQ(target.pixel(2, 3), 5) << "the key";
  EXPECT_EQ(target.pixel(9, 10), 61);
  EXPECT_EQ(target.pixel(10, 10), 5);
  DrawFileKeyed(target, "CG\\A.mcg", 0, 0, false, KeyNone);
  EXPECT_EQ(target.storedColours()[60], before[60]);
}

}  // namespace
}  // namespace qv::testing
