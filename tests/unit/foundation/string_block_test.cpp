#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "foundation/diagnostic.h"
#include "foundation/file.h"
#include "foundation/string.h"
#include "tests/support/failing_heap.h"
#include "tests/support/test_platform.h"

namespace qv {
namespace {

using namespace std::string_view_literals;

class QVStringBlock : public ::testing::Test {
 protected:
  std::string saved(const QVString& text) {
    QVFile file;
    file.openName("block.dat", CreateAlways, GenericRead | GenericWrite, ShareRead,
                  AttributeNormal);
    text.save(file);
    file.close();
    return platform_.readFile(platform_.player() / "block.dat");
  }
  void openBlock(std::string_view bytes) {
    platform_.writeFile(platform_.player() / "block.dat", bytes);
    file_.openName("block.dat", OpenExisting, GenericRead, ShareRead, AttributeNormal);
  }

  testing::TestPlatform platform_;
  QVFile file_;
  QVString text_{"old", 32};
};

TEST_F(QVStringBlock, HoldsTheLengthWithItsZeroAndTheBytes) {
  EXPECT_EQ(saved(QVString("abc")), "\4\0\0\0abc\0"sv);
  EXPECT_EQ(saved(QVString()), "\1\0\0\0\0"sv);
}

TEST_F(QVStringBlock, ComesBackWithGrain256) {
  const std::string longText(1000, 'x');
  openBlock(saved(QVString(longText.c_str(), 16)) + saved(QVString("\x95\x5c")));
  text_.setCursorIndex(2);
  text_.load(file_);
  EXPECT_EQ(text_.view(), longText);
  EXPECT_EQ(text_.grain(), 256);
  EXPECT_EQ(text_.cursorIndex(), 0);
  text_.load(file_);
  EXPECT_STREQ(text_.text(), "\x95\x5c");
  EXPECT_EQ(file_.remaining(), 0);
}

TEST_F(QVStringBlock, PassesOverAClosedFile) {
  QVFile closed;
  text_.save(closed);
  text_.load(closed);
  EXPECT_STREQ(text_.text(), "old");
}

TEST_F(QVStringBlock, GivesTheTextThatIsThereWhereTheLengthIsTooLarge) {
  openBlock(
      "\xff\xff\xff\xff"
      "abc"sv);
  text_.load(file_);
  EXPECT_STREQ(text_.text(), "abc");
  EXPECT_EQ(text_.capacity(), 256);
}

TEST_F(QVStringBlock, StaysAsItWasWhereNotEvenALengthIsLeft) {
  openBlock("\4\0\0"sv);
  text_.load(file_);
  EXPECT_STREQ(text_.text(), "old");
}

TEST_F(QVStringBlock, IsEmptyForALengthOfZero) {
  openBlock("\0\0\0\0abc"sv);
  text_.load(file_);
  EXPECT_STREQ(text_.text(), "");
  EXPECT_EQ(file_.position(), 4);
}

TEST_F(QVStringBlock, EndsAtItsFirstZeroAndPassesOverTheRest) {
  openBlock("\6\0\0\0ab\0cd\0z"sv);
  text_.load(file_);
  EXPECT_STREQ(text_.text(), "ab");
  EXPECT_EQ(file_.position(), 10);
}

TEST_F(QVStringBlock, NamesTheHeapWhenThereIsNoMemoryToReadIt) {
  openBlock("\4\0\0\0abc\0"sv);
  const testing::FailingHeap heap(0, 1);
  try {
    text_.load(file_);
    FAIL() << "nothing was raised";
  } catch (const NotEnoughMemoryException& exception) {
    EXPECT_STREQ(exception.title(), "QVHeap - malloc");
  }
  EXPECT_STREQ(text_.text(), "old");
}

}  // namespace
}  // namespace qv
