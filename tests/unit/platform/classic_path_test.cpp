#include "platform/files/classic_path.h"

#include <gtest/gtest.h>

#include "platform/text/shift_jis.h"

namespace qv {
namespace {

using Names = std::vector<std::string>;

ClassicPath parse(std::string_view text, const ClassicPath& current = {}) {
  return parseClassicPath(text, current);
}

TEST(ClassicPath, SplitsAtBothSlashes) {
  const ClassicPath path = parse("C:\\dat/L0pal.dat");
  EXPECT_EQ(path.error, FileOk);
  EXPECT_EQ(path.drive, 'C');
  EXPECT_EQ(path.elements, (Names{"dat", "L0pal.dat"}));
  EXPECT_FALSE(path.folder);
}

TEST(ClassicPath, DoesNotSplitInsideADoubleByteCharacter) {
  // The second byte of both characters is the backslash's.
  const ClassicPath path = parse("\x83\x5C\x95\x5C\\x.dat");
  EXPECT_EQ(path.elements, (Names{"ソ表", "x.dat"}));
}

TEST(ClassicPath, ResolvesDotsAndNeverRisesAboveTheRoot) {
  EXPECT_EQ(parse("C:\\a\\.\\b\\..\\c").elements, (Names{"a", "c"}));
  EXPECT_EQ(parse("..\\..\\..\\etc\\passwd").elements, (Names{"etc", "passwd"}));
  EXPECT_TRUE(parse("C:\\a\\..").elements.empty());
}

TEST(ClassicPath, TakesWhatIsLeftOutFromTheCurrentDirectory) {
  const ClassicPath current = parse("C:\\dat\\deep");
  EXPECT_EQ(parse("x", current).elements, (Names{"dat", "deep", "x"}));
  EXPECT_EQ(parse("C:x", current).elements, (Names{"dat", "deep", "x"}));
  EXPECT_EQ(parse("\\x", current).elements, (Names{"x"}));
  EXPECT_EQ(parse("d:x", current).drive, 'D');
  EXPECT_EQ(parse("d:x", current).elements, (Names{"x"}));
}

TEST(ClassicPath, KnowsThatAFinalBackslashAsksForAFolder) {
  EXPECT_TRUE(parse("C:\\dat\\").folder);
  EXPECT_TRUE(parse("C:\\").folder);
  EXPECT_FALSE(parse("C:\\dat").folder);
}

TEST(ClassicPath, RefusesWhatCannotBeAName) {
  EXPECT_EQ(parse(std::string_view("a\0b", 3)).error, FileInvalidName);
  EXPECT_EQ(parse("a:b:c").error, FileInvalidName);
  EXPECT_EQ(parse("dat\\x.dat:stream").error, FileInvalidName);
  EXPECT_EQ(parse("*.dat").error, FileInvalidName);
  EXPECT_EQ(parse("...").error, FileInvalidName);
  EXPECT_EQ(parse("bad\x81").error, FileInvalidName);
  EXPECT_EQ(parse("").error, FilePathNotFound);
  EXPECT_EQ(parse("\\\\server\\x").error, FileBadNetworkPath);
  EXPECT_EQ(parse("//server/x").error, FileBadNetworkPath);
}

TEST(ClassicPath, RefusesOverlongPathsAndNames) {
  EXPECT_EQ(parse("C:\\" + std::string(255, 'a')).error, FileOk);
  EXPECT_EQ(parse("C:\\" + std::string(256, 'a')).error, FileInvalidName);
  EXPECT_EQ(parse(std::string(260, 'a')).error, FilePathNotFound);
  // 100 characters of two bytes are 300 bytes on the machine's disk.
  std::string wide;
  for (int i = 0; i < 100; ++i)
    wide += "\x83\x5C";
  EXPECT_EQ(parse(wide).error, FileInvalidName);
}

TEST(ClassicPath, DropsDotsAndSpacesAtTheEndOfAName) {
  EXPECT_EQ(parse("save0.dat. .").elements, (Names{"save0.dat"}));
}

TEST(ClassicPath, CannotNameAnUnfinishedFile) {
  EXPECT_EQ(parse(".qv-unfinished.17.0").error, FileAccessDenied);
  EXPECT_EQ(parse(".QV-Unfinished.17.0").error, FileAccessDenied);
  EXPECT_TRUE(classicNameOf(".qv-unfinished.17.0").empty());
}

TEST(ClassicPath, FoldsTheLettersOfTheCharacterSetAndNothingElse) {
  EXPECT_EQ(foldedName("Save0.DAT"), "save0.dat");
  EXPECT_EQ(foldedName("ＡＺａ"), "ａｚａ");
  EXPECT_EQ(foldedName("ΑΩЁЖⅩ"), "αωёжⅹ");
  EXPECT_EQ(foldedName("アア漢"), "アア漢");
  EXPECT_EQ(foldedName("\xE3\x81"), "\xE3\x81");  // cut off
  EXPECT_EQ(foldedName("\xFF\xC2"), "\xFF\xC2");
  EXPECT_EQ(foldedName("😀A"), "😀a");
}

TEST(ClassicPath, GivesClassicNamesOnlyToFilesThatAPathCanName) {
  EXPECT_EQ(classicNameOf("ソ.dat"), "\x83\x5C.dat");
  EXPECT_TRUE(classicNameOf("a:b").empty());
  EXPECT_TRUE(classicNameOf("a\\b").empty());
  EXPECT_TRUE(classicNameOf("é").empty());
  EXPECT_TRUE(classicNameOf("x.").empty());
}

TEST(ClassicPath, IsTracedInFull) {
  EXPECT_EQ(utf8OfClassicPath(parse("dat\\..\\\x83\x5C")), "C:\\ソ");
  EXPECT_EQ(utf8OfClassicPath(parse("D:\\")), "D:\\");
}

}  // namespace
}  // namespace qv
