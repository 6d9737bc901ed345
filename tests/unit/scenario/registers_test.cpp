#include "scenario/registers.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include "foundation/diagnostic.h"
#include "foundation/file.h"
#include "foundation/path_name.h"
#include "platform/text/shift_jis.h"
#include "tests/support/test_platform.h"

namespace qv {
namespace {

using ::testing::Test;
using testing::TestPlatform;

std::string word(uint32_t value) {
  return std::string(reinterpret_cast<const char*>(&value), sizeof value);
}
std::string text(std::string_view bytes) {
  return word(static_cast<uint32_t>(bytes.size() + 1)) + std::string(bytes) + '\0';
}
std::string block(std::initializer_list<uint32_t> values) {
  std::string bytes = text("QVReg") + word(static_cast<uint32_t>(values.size()));
  for (const uint32_t value : values)
    bytes += word(value);
  return bytes;
}
std::string stringBlock(std::initializer_list<const char*> values) {
  std::string bytes = text("QVStrReg") + word(static_cast<uint32_t>(values.size()));
  for (const char* value : values)
    bytes += text(value);
  return bytes;
}

class Registers : public Test {
 protected:
  void open(QVFile& file, std::string_view bytes, int64_t position = 0) {
    platform.writeFile(platform.game() / "block.dat", bytes);
    file.open(QVPathName("block.dat"), OpenExisting, GenericRead, ShareRead, AttributeNormal);
    file.seek(position, SeekFrom::Start);
  }
  std::string written(const auto& registers) {
    QVFile file;
    file.open(QVPathName("out.dat"), CreateAlways, GenericWrite, ShareRead, AttributeNormal);
    registers.save(file);
    file.close();
    return platform.readFile(platform.player() / "out.dat");
  }
  TestPlatform platform;
};

class QVRegItem : public Registers {};
class QVRegBlock : public Registers {};
class QVStrRegBlock : public Registers {};
class QVRegCreate : public Registers {};

std::vector<int32_t> values(QVReg& registers) {
  std::vector<int32_t> all;
  for (int32_t i = 0; i < registers.count(); ++i)
    all.push_back(registers.item(i));
  return all;
}
std::vector<std::string> values(QVStrReg& registers) {
  std::vector<std::string> all;
  for (int32_t i = 0; i < registers.count(); ++i)
    all.emplace_back(registers.item(i).view());
  return all;
}
void fill(QVReg& registers, std::initializer_list<int32_t> all) {
  registers.create(static_cast<int32_t>(all.size()));
  int32_t at = 0;
  for (const int32_t value : all)
    registers.item(at++) = value;
}
void fill(QVStrReg& registers, std::initializer_list<const char*> all) {
  registers.create(static_cast<int32_t>(all.size()));
  int32_t at = 0;
  for (const char* value : all)
    registers.item(at++).create(QVString::DefaultGrain, value);
}

// --- item ---

TEST_F(QVRegItem, JustBehindTheLastReportsTheRangeAndWritesEntryZero) {
  QVReg registers;
  registers.create(2500);
  registers.item(2500) = 77;
  EXPECT_EQ(registers.item(0), 77);
  ASSERT_EQ(platform.dialogs.shown.size(), 1u);
  const auto& box = platform.dialogs.shown[0];
  EXPECT_EQ(box.caption, "QVReg - item()");
  EXPECT_EQ(box.flags, 0x12000u);
  EXPECT_EQ(box.text,
            sjis("指定されたインデックス2500は\n本レジスタの範囲 0 ～ 2499を越えています。\n"
                 "０番インデックスが指定されたと仮定して処理を継続します。"));
  EXPECT_NE(box.text.find(" 0 \x81\x60 2499"), std::string::npos);
  EXPECT_NE(box.text.find("\n\x82\x4f\x94\xd4"), std::string::npos);
}

TEST_F(QVRegItem, OfMinusOneTakesTheSamePathAndNamesIt) {
  QVReg registers;
  registers.create(2500);
  EXPECT_EQ(&registers.item(-1), &registers.item(0));
  ASSERT_EQ(platform.dialogs.shown.size(), 1u);
  EXPECT_NE(platform.dialogs.shown[0].text.find(sjis("インデックス-1は")), std::string::npos);
}

TEST_F(QVRegItem, OnATableThatWasNeverCreatedMakesOneEntryAndSaysSo) {
  QVReg registers;
  registers.item(5) = 9;
  EXPECT_EQ(registers.count(), 1);
  EXPECT_EQ(registers.item(0), 9);
  ASSERT_EQ(platform.dialogs.shown.size(), 1u);
  EXPECT_EQ(platform.dialogs.shown[0].text,
            sjis("レジスタ領域は、まだ create されていません\n代入時の悪影響をさけるため、"
                 "１つの要素を持った領域を作成して\n処理を継続します。"));
  EXPECT_EQ(platform.dialogs.shown[0].caption, "QVReg - item()");
}

TEST_F(QVRegItem, OnAGoodIndexReportsNothing) {
  QVReg registers;
  registers.create(3);
  registers.item(0) = 1;
  registers.item(2) = 3;
  EXPECT_EQ(values(registers), (std::vector<int32_t>{1, 0, 3}));
  EXPECT_TRUE(platform.dialogs.shown.empty());
}

TEST_F(QVRegItem, OfStringsHasItsOwnCaptionOnBothPaths) {
  QVStrReg strings;
  strings.item(0).append("a");
  EXPECT_EQ(strings.count(), 1);
  EXPECT_EQ(&strings.item(1), &strings.item(0));
  ASSERT_EQ(platform.dialogs.shown.size(), 2u);
  EXPECT_EQ(platform.dialogs.shown[0].caption, "QVStrReg - item()");
  EXPECT_EQ(platform.dialogs.shown[1].caption, "QVStrReg - item()");
  EXPECT_NE(platform.dialogs.shown[1].text.find(" 0 \x81\x60 0"), std::string::npos);
}

// --- create ---

TEST_F(QVRegCreate, WithACountOfZeroOrLessKeepsTheTable) {
  QVReg registers;
  fill(registers, {4, 5, 6});
  registers.create(0);
  registers.create(-3);
  EXPECT_EQ(values(registers), (std::vector<int32_t>{4, 5, 6}));
  QVStrReg strings;
  fill(strings, {"x"});
  strings.create(0);
  EXPECT_EQ(values(strings), std::vector<std::string>{"x"});
}

TEST_F(QVRegCreate, MakesAFreshTableOfZeros) {
  QVReg registers;
  fill(registers, {4, 5, 6});
  registers.create(2);
  EXPECT_EQ(values(registers), (std::vector<int32_t>{0, 0}));
}

TEST_F(QVRegCreate, ReleaseLeavesNoTable) {
  QVReg registers;
  registers.create(4);
  registers.release();
  EXPECT_EQ(registers.count(), 0);
  registers.item(0);
  EXPECT_EQ(platform.dialogs.shown.size(), 1u);
}

// A process of its own with little address space shows what is allocated. The sanitizers need
// their own, so they are left out.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define QV_MEMORY_TEST(name) DISABLED_##name
#else
#define QV_MEMORY_TEST(name) name
#endif

void limitMemory() {
  constexpr rlim_t Bytes = 512u << 20;
  const rlimit limit{Bytes, Bytes};
  if (setrlimit(RLIMIT_AS, &limit) != 0) std::_Exit(3);
}
constexpr int32_t TooMany = 0x1FFFFFFF;

template <typename Registers>
void createTooMany(const char* title) {
  limitMemory();
  Registers registers;
  try {
    registers.create(TooMany);
  } catch (const NotEnoughMemoryException& failure) {
    std::_Exit(std::strcmp(failure.title(), title) == 0 && registers.count() == 0 ? 0 : 2);
  }
  std::_Exit(1);
}

TEST_F(QVRegCreate, QV_MEMORY_TEST(WithoutMemoryNamesTheOperation)) {
  EXPECT_EXIT(createTooMany<QVReg>("QVReg - create"), ::testing::ExitedWithCode(0), "");
  EXPECT_EXIT(createTooMany<QVStrReg>("QVStrReg - create"), ::testing::ExitedWithCode(0), "");
}

TEST_F(QVRegBlock, QV_MEMORY_TEST(AsksForNoMemoryThatItsFileCannotHold)) {
  const auto loadBoth = [&] {
    limitMemory();
    QVReg registers;
    QVStrReg strings;
    QVFile file;
    open(file, text("QVReg") + word(TooMany) + word(1));
    registers.load(file);
    file.close();
    open(file, text("QVStrReg") + word(0x00FFFFFF) + text("a"));
    strings.load(file);
    std::_Exit(registers.count() + strings.count());
  };
  EXPECT_EXIT(loadBoth(), ::testing::ExitedWithCode(0), "");
}

// --- blocks of numbers ---

TEST_F(QVRegBlock, IsNameCountAndEntries) {
  QVReg registers;
  fill(registers, {1, -2, 0x01020304});
  EXPECT_EQ(written(registers), block({1, 0xFFFFFFFE, 0x01020304}));
}

TEST_F(QVRegBlock, OfAClosedFileIsPassedOver) {
  QVReg registers;
  fill(registers, {1});
  QVStrReg strings;
  fill(strings, {"a"});
  QVFile closed;
  registers.save(closed);
  registers.load(closed);
  strings.save(closed);
  strings.load(closed);
  EXPECT_EQ(values(registers), std::vector<int32_t>{1});
  EXPECT_EQ(values(strings), std::vector<std::string>{"a"});
  EXPECT_TRUE(platform.dialogs.shown.empty());
}

TEST_F(QVRegBlock, DecidesTheSizeOfTheTableItIsReadInto) {
  for (const size_t old : {size_t{1}, size_t{9}}) {
    QVReg registers;
    registers.create(static_cast<int32_t>(old));
    QVFile file;
    open(file, block({7, 8, 9}) + "tail");
    registers.load(file);
    EXPECT_EQ(values(registers), (std::vector<int32_t>{7, 8, 9}));
    EXPECT_EQ(file.remaining(), 4);
  }
}

TEST_F(QVRegBlock, OfCountZeroLeavesNoTable) {
  QVReg registers;
  fill(registers, {1, 2});
  QVFile file;
  open(file, block({}));
  registers.load(file);
  EXPECT_EQ(registers.count(), 0);
  EXPECT_EQ(file.remaining(), 0);
  registers.item(0) = 3;
  ASSERT_EQ(platform.dialogs.shown.size(), 1u);
  EXPECT_NE(platform.dialogs.shown[0].text.find("create"), std::string::npos);
}

TEST_F(QVRegBlock, ThatIsForeignLeavesTableAndPosition) {
  const std::string foreign[] = {
      text("QVRxg") + word(1) + word(5),                      // right length, other text
      text("qvreg") + word(1) + word(5),                      // other case
      text("QVRegs") + word(1) + word(5),                     // longer
      word(0) + word(1) + word(5),                            // no name
      std::string("\6\0\0\0QVRegX", 10) + word(1) + word(5),  // no final zero
      stringBlock({"a", "b"}),
      std::string(),
      std::string("\6\0", 2),
  };
  for (const std::string& bytes : foreign) {
    QVReg registers;
    fill(registers, {4, 5});
    QVFile file;
    open(file, "head" + bytes, 4);
    registers.load(file);
    EXPECT_EQ(values(registers), (std::vector<int32_t>{4, 5}));
    EXPECT_EQ(file.position(), 4);
  }
  EXPECT_TRUE(platform.dialogs.shown.empty());
}

TEST_F(QVRegBlock, WithACountThatTheFileCannotHoldIsRefusedLikeAForeignOne) {
  for (const uint32_t count : {2u, 0x7FFFFFFFu, 0x40000001u, 0x80000000u, 0xFFFFFFFFu}) {
    QVReg registers;
    fill(registers, {4, 5});
    QVFile file;
    open(file, text("QVReg") + word(count) + word(1) + "xyz");
    registers.load(file);
    EXPECT_EQ(values(registers), (std::vector<int32_t>{4, 5})) << count;
    EXPECT_EQ(file.position(), 0);
  }
}

TEST_F(QVRegBlock, CutShortAnywhereKeepsTableAndPosition) {
  const std::string whole = block({1, 2, 3});
  for (size_t length = 0; length < whole.size(); ++length) {
    QVReg registers;
    fill(registers, {4, 5});
    QVFile file;
    open(file, std::string_view(whole).substr(0, length));
    registers.load(file);
    EXPECT_EQ(values(registers), (std::vector<int32_t>{4, 5})) << length;
    EXPECT_EQ(file.position(), 0) << length;
  }
}

TEST_F(QVRegBlock, WithAnyOneBitFlippedIsReadWithinItsBoundsOrRefused) {
  const std::string whole = block({1, 2, 3});
  const size_t countAt = 10, entriesAt = 14;
  for (size_t bit = 0; bit < whole.size() * 8; ++bit) {
    std::string bytes = whole;
    bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ (1 << bit % 8));
    QVReg registers;
    fill(registers, {4, 5});
    QVFile file;
    open(file, bytes);
    registers.load(file);
    const std::vector<int32_t> got = values(registers);
    if (bit / 8 < countAt) {
      EXPECT_EQ(got, (std::vector<int32_t>{4, 5})) << bit;
      EXPECT_EQ(file.position(), 0) << bit;
    } else if (bit / 8 < entriesAt) {
      // A smaller count is a block of its own, a larger one is more than the file holds.
      int32_t count = 0;
      std::memcpy(&count, bytes.data() + countAt, sizeof count);
      const bool fits = count >= 0 && count <= 3;
      EXPECT_EQ(got.size(), fits ? static_cast<size_t>(count) : 2u) << bit;
    } else {
      EXPECT_EQ(got.size(), 3u) << bit;
    }
  }
  EXPECT_TRUE(platform.dialogs.shown.empty());
}

// --- blocks of strings ---

TEST_F(QVStrRegBlock, IsNameCountAndStringBlocks) {
  QVStrReg strings;
  fill(strings, {"", "abc", "\x95\x5c\x8e\xa6"});
  EXPECT_EQ(written(strings), stringBlock({"", "abc", "\x95\x5c\x8e\xa6"}));
}

TEST_F(QVStrRegBlock, GrowsAStringBeyondItsDefaultCapacity) {
  const std::string longText(700, 'k');
  QVStrReg strings;
  QVFile file;
  open(file, stringBlock({"a", longText.c_str(), "b"}) + "tail");
  strings.load(file);
  EXPECT_EQ(values(strings), (std::vector<std::string>{"a", longText, "b"}));
  EXPECT_EQ(file.remaining(), 4);
}

TEST_F(QVStrRegBlock, TakesAStoredLengthOfZeroAsEmpty) {
  QVStrReg strings;
  QVFile file;
  open(file, text("QVStrReg") + word(2) + word(0) + text("z"));
  strings.load(file);
  EXPECT_EQ(values(strings), (std::vector<std::string>{"", "z"}));
}

TEST_F(QVStrRegBlock, OfCountZeroLeavesNoTable) {
  QVStrReg strings;
  fill(strings, {"a"});
  QVFile file;
  open(file, stringBlock({}));
  strings.load(file);
  EXPECT_EQ(strings.count(), 0);
}

TEST_F(QVStrRegBlock, WithACountThatTheFileCannotHoldIsRefused) {
  for (const uint32_t count : {3u, 0x00FFFFFFu, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
    QVStrReg strings;
    fill(strings, {"old"});
    QVFile file;
    open(file, text("QVStrReg") + word(count) + text("a") + text("b"));
    strings.load(file);
    EXPECT_EQ(values(strings), std::vector<std::string>{"old"}) << count;
    EXPECT_EQ(file.position(), 0);
  }
}

TEST_F(QVStrRegBlock, CutShortAnywhereKeepsTableAndPosition) {
  const std::string whole = stringBlock({"ab", "", "cde"});
  for (size_t length = 0; length < whole.size(); ++length) {
    QVStrReg strings;
    fill(strings, {"old", "table"});
    QVFile file;
    open(file, std::string_view(whole).substr(0, length));
    strings.load(file);
    EXPECT_EQ(values(strings), (std::vector<std::string>{"old", "table"})) << length;
    EXPECT_EQ(file.position(), 0) << length;
  }
}

TEST_F(QVStrRegBlock, WithAnyOneBitFlippedStaysInsideTheFile) {
  const std::string whole = stringBlock({"ab", "", "cde"});
  for (size_t bit = 0; bit < whole.size() * 8; ++bit) {
    std::string bytes = whole;
    bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ (1 << bit % 8));
    QVStrReg strings;
    fill(strings, {"old"});
    QVFile file;
    open(file, bytes);
    strings.load(file);
    size_t total = 0;
    for (const std::string& value : values(strings))
      total += value.size();
    EXPECT_LE(total, whole.size()) << bit;
    if (bit / 8 < 13) {
      EXPECT_EQ(values(strings), std::vector<std::string>{"old"}) << bit;
      EXPECT_EQ(file.position(), 0) << bit;
    }
  }
  EXPECT_TRUE(platform.dialogs.shown.empty());
}

// --- checkHeader ---

class CheckHeader : public Registers {
 protected:
  struct Result {
    bool ok;
    int64_t position;
    bool operator==(const Result&) const = default;
  };
  Result check(std::string_view bytes, int64_t position, const char* name) {
    QVFileBlock expected;
    expected.setName(name);
    QVFile file;
    open(file, bytes, position);
    const bool ok = expected.checkHeader(file);
    return {ok, file.position()};
  }
};

TEST_F(CheckHeader, StandsBehindANameThatFits) {
  EXPECT_EQ(check("xy" + text("QVReg") + "z", 2, "QVReg"), (Result{true, 12}));
}

TEST_F(CheckHeader, GoesBackOverARightLengthWithOtherText) {
  EXPECT_EQ(check("xy" + text("QVRex") + "z", 2, "QVReg"), (Result{false, 2}));
}

TEST_F(CheckHeader, GoesBackOverAnotherLength) {
  EXPECT_EQ(check(text("QVRegs"), 0, "QVReg"), (Result{false, 0}));
  EXPECT_EQ(check(text("QVRe"), 0, "QVReg"), (Result{false, 0}));
}

TEST_F(CheckHeader, TakesStoredZeroAndOneAsTheEmptyName) {
  EXPECT_EQ(check(word(0) + "z", 0, ""), (Result{true, 4}));
  EXPECT_EQ(check(text("") + "z", 0, ""), (Result{true, 5}));
  EXPECT_EQ(check(word(0) + "z", 0, "a"), (Result{false, 0}));
}

TEST_F(CheckHeader, FailsOnAClosedFile) {
  QVFileBlock expected;
  expected.setName("QVReg");
  QVFile closed;
  EXPECT_FALSE(expected.checkHeader(closed));
}

TEST_F(CheckHeader, ReadsBackWhatWriteNameWrote) {
  QVFileBlock written, read;
  written.setName("cg.surf");
  QVFile file;
  file.open(QVPathName("name.dat"), CreateAlways, GenericRead | GenericWrite, ShareRead,
            AttributeNormal);
  written.writeName(file);
  file.seek(0, SeekFrom::Start);
  read.readName(file);
  EXPECT_TRUE(read.equals("cg.surf"));
  EXPECT_TRUE(read.equals(written.name()));
  EXPECT_FALSE(read.equals("cg.Surf"));
}

}  // namespace
}  // namespace qv
