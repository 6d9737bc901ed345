#include "host/file_box.h"

#include <gtest/gtest.h>

#include "platform/display/key_codes.h"
#include "platform/text/shift_jis.h"
#include "tests/support/golden.h"
#include "tests/support/test_platform.h"

namespace qv {
namespace {

class FileBoxTest : public ::testing::Test {
 protected:
  void SetUp() override {
    for (const char* name : {"b.bmp", "a.bmp", "note.txt"})
      platform_.writeFile(platform_.game() / "cg" / name, "x");
    platform_.writeFile(platform_.game() / "cg" / "deep" / "d.bmp", "x");
    for (int i = 10; i < 40; ++i)
      platform_.writeFile(platform_.game() / "many" / ("f" + std::to_string(i) + ".bmp"), "x");
    std::filesystem::create_directories(platform_.game() / "empty");
  }
  FileBox make(bool saving, const std::string& folder = "C:\\cg\\", const std::string& path = "") {
    return FileBox({saving, "", "*.bmp", folder, path}, text_);
  }
  static void key(FileBox& box, int code) {
    DisplayEvent event;
    event.kind = DisplayEvent::Kind::KeyDown;
    event.key = code;
    box.take(event);
  }
  static void type(FileBox& box, const std::string& utf8) {
    DisplayEvent event;
    event.kind = DisplayEvent::Kind::Text;
    event.text = utf8;
    box.take(event);
  }
  static void click(FileBox& box, const BoxRect& rect) {
    for (const auto kind : {DisplayEvent::Kind::ButtonDown, DisplayEvent::Kind::ButtonUp}) {
      DisplayEvent event;
      event.kind = kind;
      event.x = rect.x + 3;
      event.y = rect.y + 3;
      box.take(event);
    }
  }
  static std::vector<std::string> names(const FileBox& box) {
    std::vector<std::string> names;
    for (const FileEntry& entry : box.entries())
      names.push_back(entry.name);
    return names;
  }

  testing::TestPlatform platform_;
  TextRenderer text_;
};

TEST_F(FileBoxTest, ListsFoldersThenTheFilesThatMatch) {
  const FileBox box = make(false);
  EXPECT_EQ(names(box), std::vector<std::string>({"..", "deep", "a.bmp", "b.bmp"}));
  EXPECT_EQ(box.selected(), 2);
}

TEST_F(FileBoxTest, ReturnOpensTheSelectedFile) {
  FileBox box = make(false);
  key(box, KeyDown);
  key(box, KeyReturn);
  EXPECT_TRUE(box.done());
  EXPECT_TRUE(box.accepted());
  EXPECT_EQ(box.path(), "C:\\cg\\b.bmp");
}

TEST_F(FileBoxTest, EscAndTheSecondButtonCancel) {
  FileBox first = make(false), second = make(true);
  key(first, KeyEscape);
  click(second, second.buttonRect(1));
  EXPECT_TRUE(first.done());
  EXPECT_FALSE(first.accepted());
  EXPECT_TRUE(second.done());
  EXPECT_FALSE(second.accepted());
}

TEST_F(FileBoxTest, AClickSelectsAndTheFirstButtonOpens) {
  FileBox box = make(false);
  click(box, box.entryRect(3));
  EXPECT_EQ(box.selected(), 3);
  EXPECT_FALSE(box.done());
  click(box, box.buttonRect(0));
  EXPECT_EQ(box.path(), "C:\\cg\\b.bmp");
}

TEST_F(FileBoxTest, GoesIntoFoldersAndBack) {
  FileBox box = make(false);
  key(box, KeyUp);
  key(box, KeyReturn);
  EXPECT_EQ(box.folder(), "C:\\cg\\deep\\");
  EXPECT_EQ(names(box), std::vector<std::string>({"..", "d.bmp"}));
  key(box, KeyHome);
  key(box, KeyReturn);
  EXPECT_EQ(box.folder(), "C:\\cg\\");
  key(box, KeyBack);
  EXPECT_EQ(box.folder(), "C:\\");
  EXPECT_EQ(names(box), std::vector<std::string>({"cg", "empty", "many"}));
  EXPECT_FALSE(box.done());
}

TEST_F(FileBoxTest, ScrollsByPagesAndWheel) {
  FileBox box = make(false, "C:\\many");
  EXPECT_EQ(box.entries().size(), 31u);
  key(box, KeyPageDown);
  EXPECT_EQ(box.selected(), 13);
  EXPECT_NE(box.entryRect(13).height, 0);
  EXPECT_EQ(box.entryRect(0).height, 0);
  key(box, KeyEnd);
  EXPECT_EQ(box.selected(), 30);
  key(box, KeyPageUp);
  EXPECT_EQ(box.selected(), 18);
  DisplayEvent wheel;
  wheel.kind = DisplayEvent::Kind::Wheel;
  wheel.y = 1;
  for (int i = 0; i < 20; ++i)
    box.take(wheel);
  EXPECT_NE(box.entryRect(0).height, 0);
  EXPECT_EQ(box.selected(), 18);
}

TEST_F(FileBoxTest, TakesATypedNameWhenSaving) {
  FileBox box = make(true, "C:\\cg\\", "shot.bmp");
  EXPECT_EQ(box.name(), "shot.bmp");
  for (int i = 0; i < 4; ++i)
    key(box, KeyBack);
  type(box, "一枚");
  type(box, "/\\:*?\"<>|\n");
  key(box, KeySpace);
  type(box, " ");
  EXPECT_EQ(box.name(), "shot" + sjis("一枚") + " ");
  key(box, KeyBack);
  key(box, KeyBack);
  type(box, ".bmp");
  EXPECT_FALSE(box.done());
  key(box, KeyReturn);
  EXPECT_EQ(box.path(), "C:\\cg\\shot" + sjis("一") + ".bmp");
}

TEST_F(FileBoxTest, AChosenFileLendsItsName) {
  FileBox box = make(true);
  EXPECT_EQ(box.name(), "");
  key(box, KeyDown);
  EXPECT_EQ(box.name(), "b.bmp");
}

TEST_F(FileBoxTest, NamesHaveABound) {
  FileBox box = make(true);
  for (int i = 0; i < 100; ++i)
    type(box, "四文字だ");
  EXPECT_LE(box.name().size(), 255u);
}

TEST_F(FileBoxTest, AScriptTakesTheProposedOrTheFirstFile) {
  FileBox first = make(false), proposed = make(false, "", "C:\\cg\\b.bmp"),
          saving = make(true, "", "cg\\new.bmp"), none = make(false, "C:\\empty");
  EXPECT_TRUE(first.acceptSelected());
  EXPECT_EQ(first.path(), "C:\\cg\\a.bmp");
  EXPECT_TRUE(proposed.acceptSelected());
  EXPECT_EQ(proposed.path(), "C:\\cg\\b.bmp");
  EXPECT_TRUE(saving.acceptSelected());
  EXPECT_EQ(saving.path(), "C:\\cg\\new.bmp");
  EXPECT_FALSE(none.acceptSelected());
  none.cancel();
  EXPECT_FALSE(none.accepted());
}

TEST_F(FileBoxTest, SurvivesAFolderThatIsNotThere) {
  FileBox box = make(false, "C:\\nowhere");
  for (const int code : {KeyUp, KeyDown, KeyPageDown, KeyEnd, KeyReturn})
    key(box, code);
  Frame frame(static_cast<size_t>(ScreenWidth) * ScreenHeight, 0);
  box.draw(frame);
  EXPECT_FALSE(box.done());
}

TEST_F(FileBoxTest, SpaceAndReturnOnAButtonPressIt) {
  FileBox box = make(true, "C:\\cg\\", "x.bmp");
  key(box, KeyTab);
  EXPECT_EQ(box.focus(), 0u);
  key(box, KeyTab);
  EXPECT_EQ(box.focus(), 1u);
  key(box, KeyTab);
  EXPECT_FALSE(box.focus());
  key(box, KeyTab);
  key(box, KeySpace);
  EXPECT_EQ(box.path(), "C:\\cg\\x.bmp");
}

TEST_F(FileBoxTest, LooksLikeTheGoldenPicture) {
  if (!text_.hasFont(FontFace::Gothic)) GTEST_SKIP() << "the IPA fonts are not installed";
  FileBox box = make(true, "C:\\cg\\", sjis("新しい絵.bmp"));
  Frame frame(static_cast<size_t>(ScreenWidth) * ScreenHeight, 0x305070);
  box.draw(frame);
  EXPECT_TRUE(testing::matchesGolden({ScreenWidth, ScreenHeight, frame},
                                     QV_SOURCE_DIR "/tests/golden/file_box.png"));
}

TEST(FilePattern, MatchesWholeCharactersBlindToCase) {
  EXPECT_TRUE(matchesPattern("A.BMP", "*.bmp"));
  EXPECT_TRUE(matchesPattern("a.b.bmp", "*.bmp"));
  EXPECT_FALSE(matchesPattern("a.bmp.txt", "*.bmp"));
  EXPECT_TRUE(matchesPattern("a.png", "*.bmp;*.png"));
  EXPECT_TRUE(matchesPattern("noextension", "*.*"));
  EXPECT_TRUE(matchesPattern("anything", ""));
  EXPECT_TRUE(matchesPattern(sjis("表.bmp"), "?.bmp"));
  EXPECT_FALSE(matchesPattern(sjis("表.bmp"), "??.bmp"));
  EXPECT_TRUE(matchesPattern(sjis("ミミ.bmp"), sjis("ミ*.bmp")));
  EXPECT_FALSE(matchesPattern("\x83\x41.bmp", "\x83\x61.bmp"));  // trail bytes have no case
}

}  // namespace
}  // namespace qv
