#include "foundation/path_name.h"

#include <gtest/gtest.h>

#include "foundation/registry_key.h"
#include "platform/text/shift_jis.h"
#include "tests/support/test_platform.h"

namespace qv {
namespace {

namespace fs = std::filesystem;
using testing::TestPlatform;

constexpr const char* EngineKey = "Software\\Dorin\\QVLIB";

std::string expanded(const char* name) {
  return QVPathName(name).text();
}

std::string rememberedDisc() {
  RegistryKey key;
  key.open(CurrentUser, EngineKey, KeyVolatile, "");
  return key.queryString("CD-ROM").text();
}

TEST(QVPathName, PutsAPlainNameBehindTheCurrentDirectoryOfThatMoment) {
  TestPlatform platform;
  fs::create_directories(platform.game() / "sub");
  EXPECT_EQ(expanded("dat\\mframe.mcg"), "C:\\dat\\mframe.mcg");
  ASSERT_TRUE(services().files->setCurrentDirectory("sub"));
  EXPECT_EQ(expanded("dat\\mframe.mcg"), "C:\\sub\\dat\\mframe.mcg");
}

TEST(QVPathName, KeepsDriveAndNetworkPathsAsTheyStand) {
  TestPlatform platform;
  EXPECT_EQ(expanded("E:\\x.dat"), "E:\\x.dat");
  EXPECT_EQ(expanded("c:x"), "c:x");
  EXPECT_EQ(expanded("\\\\server\\share\\x"), "\\\\server\\share\\x");
}

TEST(QVPathName, TakesNullForTheCurrentDirectory) {
  TestPlatform platform;
  QVPathName path("x");
  path.set(static_cast<const char*>(nullptr));
  EXPECT_STREQ(path.text(), "C:\\");
  path.set("x");
  path.setCurrent();
  EXPECT_STREQ(path.text(), "C:\\");
  EXPECT_STREQ(QVPathName().text(), "");
}

TEST(QVPathName, SetsARelativeNameWithoutLookingAtIt) {
  TestPlatform platform;
  QVPathName path;
  path.setRelative("%:\\x");
  EXPECT_STREQ(path.text(), "C:\\%:\\x");
  path.set("y");
  path.setRelative(path.text());
  EXPECT_STREQ(path.text(), "C:\\C:\\y");
  path.set(QVString("z"));
  EXPECT_STREQ(path.text(), "C:\\z");
}

TEST(QVPathName, FindsTheDiscOnceAndRemembersIt) {
  TestPlatform platform(true);
  platform.writeFile(platform.disc() / "VOICE" / "V00" / "0000_001.wav", "voice");
  EXPECT_EQ(rememberedDisc(), "");
  EXPECT_EQ(expanded("%:\\VOICE\\V00\\0000_001.wav"), "D:\\VOICE\\V00\\0000_001.wav");
  EXPECT_EQ(rememberedDisc(), "D:");
  EXPECT_TRUE(services().files->attributes(expanded("%:\\voice\\v00\\0000_001.WAV")));
  // Volatile: nothing of it lasts.
  EXPECT_FALSE(fs::exists(platform.player() / "settings.toml"));
}

TEST(QVPathName, BelievesTheRememberedDiscWithoutScanning) {
  TestPlatform platform(true);
  RegistryKey key;
  key.open(CurrentUser, EngineKey, KeyVolatile, "");
  key.setString("CD-ROM", QVString("C:\\disc"));
  EXPECT_EQ(expanded("%:\\VOICE\\x.wav"), "C:\\disc\\VOICE\\x.wav");
  EXPECT_EQ(rememberedDisc(), "C:\\disc");
}

TEST(QVPathName, LooksFromTheRootOfTheDriveWithoutADisc) {
  TestPlatform platform;
  platform.writeFile(platform.game() / "VOICE" / "x.wav", "voice");
  fs::create_directories(platform.game() / "sub");
  ASSERT_TRUE(services().files->setCurrentDirectory("sub"));
  EXPECT_EQ(expanded("%:\\VOICE\\x.wav"), "\\VOICE\\x.wav");
  EXPECT_TRUE(services().files->attributes(expanded("%:\\VOICE\\x.wav")));
  EXPECT_EQ(rememberedDisc(), "");
}

TEST(QVPathName, KnowsTheSpecialPaths) {
  TestPlatform platform;
  fs::create_directories(platform.game() / "sub");
  ASSERT_TRUE(services().files->setCurrentDirectory("sub"));
  const auto special = [](int32_t code) {
    QVPathName path("kept");
    path.setSpecial(code);
    return std::string(path.text());
  };
  EXPECT_EQ(special(QVPathName::ProgramFile), "C:\\qvrun.exe");
  EXPECT_EQ(special(QVPathName::ProgramFolder), "C:\\");
  EXPECT_EQ(special(QVPathName::SystemRoot), "C:\\WINDOWS\\");
  EXPECT_EQ(special(QVPathName::SystemFolder), "C:\\WINDOWS\\SYSTEM\\");
  for (const int32_t code : {30585, 30588, 30589, 30590, 30591, 30592}) {
    EXPECT_EQ(special(code), "C:\\sub\\") << code;
  }
  for (const int32_t code : {0, 2, 5, 8, 9, 11, 19, 20, 21, 22, 23, 24}) {
    EXPECT_TRUE(special(code).starts_with("C:\\")) << code;
    EXPECT_TRUE(special(code).ends_with("\\")) << code;
    EXPECT_NE(special(code), "C:\\sub\\") << code;
  }
  for (const int32_t code : {-1, 1, 3, 10, 25, 30582, 30593, INT32_MIN}) {
    EXPECT_EQ(special(code), "C:\\sub\\kept") << code;
  }
}

TEST(QVPathName, TellsWhetherAFinalBackslashIsMissing) {
  TestPlatform platform;
  EXPECT_TRUE(QVPathName("C:\\dat").lacksFinalBackslash());
  EXPECT_FALSE(QVPathName("C:\\dat\\").lacksFinalBackslash());
  EXPECT_TRUE(QVPathName().lacksFinalBackslash());
  // The last byte is a backslash's, the character is not.
  EXPECT_TRUE(QVPathName("C:\\\x83\x5C").lacksFinalBackslash());
  QVPathName path("C:\\dat\\");
  path.lacksFinalBackslash();
  EXPECT_EQ(path.path().cursorIndex(), 0);
}

TEST(QVPathName, ChangesTheExtensionOfTheLastElementOnly) {
  TestPlatform platform;
  const auto changed = [](const char* name, const char* extension) {
    QVPathName path(name);
    path.changeExtension(extension);
    return std::string(path.text());
  };
  EXPECT_EQ(changed("C:\\a\\b.mcg", ".bmp"), "C:\\a\\b.bmp");
  EXPECT_EQ(changed("C:\\a\\b.c.mcg", ".bmp"), "C:\\a\\b.c.bmp");
  EXPECT_EQ(changed("C:\\a.b\\c", ".bmp"), "C:\\a.b\\c");
  EXPECT_EQ(changed("C:\\a\\b.mcg", ""), "C:\\a\\b");
  EXPECT_EQ(changed("C:\\a\\b.mcg", nullptr), "C:\\a\\b");
  // The double-byte character before the point ends in a backslash's byte.
  EXPECT_EQ(changed("C:\\x.y\x83\x5C.mcg", ".bmp"), "C:\\x.y\x83\x5C.bmp");
}

TEST(QVPathName, GivesTheNameBehindTheLastBackslash) {
  TestPlatform platform;
  QVString name("old");
  QVPathName("C:\\a\\b.mcg").fileName(name);
  EXPECT_STREQ(name.text(), "b.mcg");
  QVPathName("C:\\a\\\x83\x5C.mcg").fileName(name);
  EXPECT_STREQ(name.text(), "\x83\x5C.mcg");
  QVPathName("C:\\a\\").fileName(name);
  EXPECT_STREQ(name.text(), "");
  QVPathName("c:x").fileName(name);
  EXPECT_STREQ(name.text(), "c:x");
}

TEST(QVPathName, ReportsACurrentDirectoryThatCannotBeHad) {
  TestPlatform platform;
  Services without = services();
  without.files = nullptr;
  const ServicesScope scope(without);
  QVPathName path;
  path.setCurrent();
  ASSERT_EQ(platform.dialogs.shown.size(), 1u);
  EXPECT_EQ(platform.dialogs.shown[0].text,
            sjis("QVPathName - create()でエラーが発生しました\nエラーコードは、21です"));
  EXPECT_EQ(platform.dialogs.shown[0].caption, "QVString class");
  EXPECT_EQ(platform.dialogs.shown[0].flags, 0x12000u);
}

TEST(QVPathName, SurvivesNamesOfAnyLength) {
  TestPlatform platform;
  const std::string name(100'000, 'x');
  EXPECT_EQ(expanded(name.c_str()), "C:\\" + name);
  EXPECT_FALSE(services().files->attributes(expanded(name.c_str())));
}

}  // namespace
}  // namespace qv
