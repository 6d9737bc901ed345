#include "foundation/file.h"

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "foundation/diagnostic.h"
#include "foundation/path_name.h"
#include "platform/files/system_calls.h"
#include "platform/text/shift_jis.h"
#include "tests/support/test_platform.h"

namespace qv {
namespace {

namespace fs = std::filesystem;
using testing::TestPlatform;

constexpr uint32_t Read = GenericRead, ReadWrite = GenericRead | GenericWrite;

/// The error number that the faked calls below give.
int fakedErrno = 0;
int fakedCalls = 0;     ///< how often a faked call was made
int fakedFailures = 0;  ///< how many of the next calls fail

bool fails() {
  ++fakedCalls;
  if (fakedFailures == 0) return false;
  --fakedFailures;
  errno = fakedErrno;
  return true;
}

class QVFileTest : public ::testing::Test {
 protected:
  ~QVFileTest() override { fileCalls() = machineFileCalls(); }

  void fail(int number, int times) {
    fakedErrno = number;
    fakedFailures = times;
    fakedCalls = 0;
  }
  void fakeOpen() {
    fileCalls().openBeneath = [](int folder, const char* relative, int flags) {
      if ((flags & (O_PATH | O_DIRECTORY)) != 0)
        return machineFileCalls().openBeneath(folder, relative, flags);
      return fails() ? -1 : machineFileCalls().openBeneath(folder, relative, flags);
    };
  }
  void fakeRead() {
    fileCalls().readAt = [](int file, void* buffer, size_t size, off_t at) {
      return fails() ? -1 : machineFileCalls().readAt(file, buffer, size, at);
    };
  }
  void fakeWrite() {
    fileCalls().writeAt = [](int file, const void* buffer, size_t size, off_t at) {
      return fails() ? -1 : machineFileCalls().writeAt(file, buffer, size, at);
    };
  }
  void answer(std::initializer_list<BoxAnswer> answers) {
    platform.dialogs.shown.clear();
    platform.dialogs.answers.assign(answers);
  }
  const std::vector<testing::ShownBox>& boxes() const { return platform.dialogs.shown; }
  void openNew(QVFile& file) {
    file.openName("save0.dat", CreateAlways, ReadWrite, ShareRead, AttributeNormal);
  }
  std::string saved() const { return platform.readFile(platform.player() / "save0.dat"); }

  TestPlatform platform{true};
};

TEST_F(QVFileTest, WritesAndReadsBack) {
  QVFile file;
  EXPECT_FALSE(file.isOpen());
  openNew(file);
  EXPECT_TRUE(file.isOpen());
  EXPECT_STREQ(file.name().text(), "save0.dat");
  EXPECT_EQ(file.write("hello", 5), 5);
  EXPECT_EQ(file.position(), 5);
  EXPECT_EQ(file.seek(1, SeekFrom::Start), 1);
  EXPECT_EQ(file.remaining(), 4);
  char bytes[8] = {};
  EXPECT_EQ(file.read(bytes, 8), 4);
  EXPECT_STREQ(bytes, "ello");
  file.close();
  EXPECT_FALSE(file.isOpen());
  EXPECT_EQ(file.handle(), -1);
  EXPECT_STREQ(file.name().text(), "");
  EXPECT_EQ(saved(), "hello");
  EXPECT_TRUE(boxes().empty());
}

TEST_F(QVFileTest, MayBeClosedTwice) {
  QVFile file;
  file.close();
  openNew(file);
  file.close();
  file.close();
  EXPECT_TRUE(boxes().empty());
}

TEST_F(QVFileTest, AsksAgainOnRetryAndThrowsOnCancel) {
  answer({BoxAnswer::Retry, BoxAnswer::Retry, BoxAnswer::Cancel});
  QVFile file;
  const std::string name = sjis("画像.mcg");
  try {
    file.openName(name.c_str(), OpenExisting, Read, ShareRead, AttributeNormal);
    FAIL() << "nothing was thrown";
  } catch (const CannotOpenException& e) {
    EXPECT_STREQ(e.title(), "cannot open");
    EXPECT_EQ(e.message(), name);
  }
  ASSERT_EQ(boxes().size(), 3u);
  EXPECT_EQ(boxes()[0].text, sjis("画像.mcgが\n見付かりません"));
  EXPECT_EQ(boxes()[0].caption, "QVFile - open");
  EXPECT_EQ(boxes()[0].flags, 0x12005u);
  EXPECT_FALSE(file.isOpen());
}

TEST_F(QVFileTest, OpensWhenARetryFindsTheFile) {
  // The player puts the file there before answering.
  class Helping : public testing::RecordingDialogs {
   public:
    explicit Helping(const TestPlatform& given) : platform(given) {}
    BoxAnswer messageBox(std::string_view, std::string_view, uint32_t) override {
      ++boxes;
      platform.writeFile(platform.game() / "late.dat", "here");
      return BoxAnswer::Retry;
    }
    const TestPlatform& platform;
    int boxes = 0;
  } helping(platform);
  Services helped = services();
  helped.dialogs = &helping;
  const ServicesScope scope(helped);
  QVFile file;
  file.openName("late.dat", OpenExisting, Read, ShareRead, AttributeNormal);
  EXPECT_EQ(file.size(), 4);
  EXPECT_EQ(helping.boxes, 1);
}

TEST_F(QVFileTest, SaysWhyAFileCannotBeOpened) {
  fs::create_directories(platform.game() / "folder");
  platform.writeFile(platform.game() / "x", "x");
  const auto boxFor = [&](const char* name) {
    answer({BoxAnswer::Cancel});
    QVFile file;
    EXPECT_THROW(file.openName(name, OpenExisting, Read, ShareRead, AttributeNormal),
                 CannotOpenException);
    return boxes().size() == 1 ? boxes()[0].text : "no box";
  };
  EXPECT_EQ(boxFor("none"), sjis("noneが\n見付かりません"));
  EXPECT_EQ(boxFor("no\\ne"), sjis("no\\neで\n指定されたパスが見付かりません"));
  EXPECT_EQ(boxFor("folder"), sjis("folder\nアクセスが拒否されました"));
  EXPECT_EQ(boxFor("\\\\s\\x"), sjis("\\\\s\\xネットワークドライブにアクセスできません"));
  EXPECT_EQ(boxFor("a:b:c"), sjis("a:b:c\n未知のエラーです code:123"));
  fs::remove_all(platform.disc());
  EXPECT_EQ(boxFor("D:\\x"), sjis("D:\\x\nドライブの準備ができていません"));
  fakeOpen();
  fail(EIO, 1);
  EXPECT_EQ(boxFor("x"), sjis("x\nメディアはフォーマットされていないか、準備ができていません"));
  fail(EBUSY, 1);
  EXPECT_EQ(boxFor("x"), sjis("xは\n他のアプリケーションによって開かれています"));
  fail(EMFILE, 1);
  EXPECT_EQ(boxFor("x"), sjis("x\n未知のエラーです code:4"));
}

TEST_F(QVFileTest, ReallyCallsTheSystemAgainAfterAFailedOpen) {
  platform.writeFile(platform.game() / "x", "x");
  fakeOpen();
  fail(EACCES, 2);
  answer({BoxAnswer::Retry, BoxAnswer::Retry});
  QVFile file;
  file.openName("x", OpenExisting, Read, ShareRead, AttributeNormal);
  EXPECT_TRUE(file.isOpen());
  EXPECT_EQ(boxes().size(), 2u);
  EXPECT_EQ(fakedCalls, 3);
}

TEST_F(QVFileTest, NamesTheWholePathWhenOpenedByAPathObject) {
  platform.writeFile(platform.game() / "x", "x");
  QVFile file;
  file.open(QVPathName("x"), OpenExisting, Read, ShareRead, AttributeNormal);
  EXPECT_STREQ(file.name().text(), "C:\\x");
  answer({BoxAnswer::Cancel});
  EXPECT_THROW(file.open(QVPathName("none"), OpenExisting, Read, ShareRead, AttributeNormal),
               CannotOpenException);
  EXPECT_EQ(boxes()[0].text, sjis("C:\\noneが\n見付かりません"));
}

TEST_F(QVFileTest, ReadsAgainOnRetry) {
  platform.writeFile(platform.game() / "x", "content");
  QVFile file;
  file.openName("x", OpenExisting, Read, ShareRead, AttributeNormal);
  fakeRead();
  fail(EIO, 1);
  answer({BoxAnswer::Retry});
  char bytes[8] = {};
  EXPECT_EQ(file.read(bytes, 8), 7);
  EXPECT_STREQ(bytes, "content");
  ASSERT_EQ(boxes().size(), 1u);
  EXPECT_EQ(boxes()[0].text, sjis("x\nメディアはフォーマットされていないか、準備ができていません"));
  EXPECT_EQ(boxes()[0].caption, "QVFile - read");
  EXPECT_EQ(boxes()[0].flags, 0x12005u);
}

TEST_F(QVFileTest, SaysWhyAFileCannotBeRead) {
  platform.writeFile(platform.game() / "x", "content");
  QVFile file;
  file.openName("x", OpenExisting, Read, ShareRead, AttributeNormal);
  fakeRead();
  const std::string handle = std::to_string(file.handle());
  const std::pair<int, std::string> cases[] = {
      {EACCES, "xへの\nアクセスは拒否されました。"},
      {ENODEV, "x\nドライブの準備ができていません"},
      {EBUSY, "xは\n他のアプリケーションから利用されています"},
      {EAGAIN, "xは\n他のプロセスがファイルをロックしています"},
      {ENOSPC, "x読み込みできません\nError code : 112\nFile handle : " + handle},
  };
  for (const auto& [number, text] : cases) {
    fail(number, 1);
    answer({BoxAnswer::Cancel});
    char byte = 0;
    try {
      file.read(&byte, 1);
      FAIL() << "nothing was thrown";
    } catch (const CannotReadException& e) {
      EXPECT_STREQ(e.title(), "cannot read");
      EXPECT_STREQ(e.message(), "x");
    }
    ASSERT_EQ(boxes().size(), 1u);
    EXPECT_EQ(boxes()[0].text, sjis(text));
  }
  // The state is unchanged: the file goes on where it was.
  char byte = 0;
  EXPECT_EQ(file.read(&byte, 1), 1);
  EXPECT_EQ(byte, 'c');
}

TEST_F(QVFileTest, SaysWhyAFileCannotBeWritten) {
  const std::pair<int, std::string> cases[] = {
      {EROFS, "save0.datは\n読み込み専用で開かれています"},
      {ENODEV, "save0.dat\nドライブの準備ができていません"},
      {EIO, "save0.dat\nメディアはフォーマットされていないか、準備ができていません"},
      {EBUSY, "save0.datは\n他のアプリケーションから利用されています"},
      {EAGAIN, "save0.datは\n他のプロセスがファイルをロックしています"},
      {ENOSPC, "save0.dat書き込みできません\nError code : 112"},
  };
  fakeWrite();
  const std::string large(100'000, 'x');  // too large to wait for the close
  for (const auto& [number, text] : cases) {
    QVFile file;
    openNew(file);
    fail(number, 1);
    answer({BoxAnswer::Cancel});
    try {
      file.write(large.data(), static_cast<int32_t>(large.size()));
      FAIL() << "nothing was thrown";
    } catch (const CannotWriteException& e) {
      EXPECT_STREQ(e.title(), "cannot write");
      EXPECT_STREQ(e.message(), "save0.dat");
    }
    ASSERT_EQ(boxes().size(), 1u);
    EXPECT_EQ(boxes()[0].text, sjis(text));
    EXPECT_EQ(boxes()[0].caption, "QVFile - write");
  }
  EXPECT_FALSE(fs::exists(platform.player() / "save0.dat"));
}

TEST_F(QVFileTest, WritesEverythingOnceAfterARetry) {
  fakeWrite();
  QVFile file;
  openNew(file);
  file.write("head", 4);
  std::string large;
  for (int i = 0; large.size() < 100'000; ++i)
    large += std::to_string(i);
  fail(ENOSPC, 2);
  answer({BoxAnswer::Retry, BoxAnswer::Retry});
  EXPECT_EQ(file.write(large.data(), static_cast<int32_t>(large.size())),
            static_cast<int32_t>(large.size()));
  EXPECT_EQ(boxes().size(), 2u);
  file.write("tail", 4);
  file.close();
  EXPECT_EQ(saved(), "head" + large + "tail");
}

TEST_F(QVFileTest, OffersToRetryAtTheCloseAndKeepsTheOldFileMeanwhile) {
  platform.writeFile(platform.player() / "save0.dat", "old");
  fakeWrite();
  {
    QVFile file;
    openNew(file);
    file.write("new", 3);
    fail(ENOSPC, 100);
    answer({BoxAnswer::Retry, BoxAnswer::Cancel});
    EXPECT_THROW(file.close(), CannotWriteException);
    EXPECT_EQ(fakedCalls, 2);
    ASSERT_EQ(boxes().size(), 2u);
    EXPECT_EQ(boxes()[1].caption, "QVFile - write");
    EXPECT_EQ(boxes()[1].text, sjis("save0.dat書き込みできません\nError code : 112"));
    EXPECT_FALSE(file.isOpen());
  }
  EXPECT_EQ(saved(), "old");
  EXPECT_EQ(std::distance(fs::directory_iterator(platform.player()), fs::directory_iterator()), 1);

  QVFile file;
  openNew(file);
  file.write("new", 3);
  fail(ENOSPC, 1);
  answer({BoxAnswer::Retry});
  file.close();
  EXPECT_EQ(saved(), "new");
}

TEST_F(QVFileTest, NeverTakesTheNameAfterAWriteThatWasGivenUp) {
  platform.writeFile(platform.player() / "save0.dat", "old");
  fakeWrite();
  QVFile file;
  openNew(file);
  const std::string large(100'000, 'x');
  fail(ENOSPC, 1);
  answer({BoxAnswer::Cancel});
  EXPECT_THROW(file.write(large.data(), static_cast<int32_t>(large.size())), CannotWriteException);
  EXPECT_EQ(file.write("more", 4), 4);
  answer({BoxAnswer::Cancel});
  EXPECT_THROW(file.close(), CannotWriteException);
  EXPECT_EQ(saved(), "old");
}

TEST_F(QVFileTest, DiscardsWhatWasNotClosed) {
  platform.writeFile(platform.player() / "save0.dat", "old");
  {
    QVFile file;
    openNew(file);
    file.write("half", 4);
  }
  EXPECT_EQ(saved(), "old");
  // Unwinding as well, and with a disk that refuses everything.
  fakeWrite();
  fail(ENOSPC, 1000);
  try {
    QVFile file;
    openNew(file);
    file.write("half", 4);
    throw ExitScenarioException();
  } catch (const ExitScenarioException&) {
  }
  EXPECT_EQ(saved(), "old");
  EXPECT_TRUE(boxes().empty());
}

TEST_F(QVFileTest, FlushesBeforeItTakesTheNameUnlessToldOtherwise) {
  static int syncs = 0, folderSyncs = 0, renames = 0, syncsAtRename = 0;
  syncs = folderSyncs = renames = syncsAtRename = 0;
  fileCalls().sync = [](int file) {
    struct stat status {};
    fstat(file, &status);
    if (S_ISDIR(status.st_mode)) {
      ++folderSyncs;
      EXPECT_EQ(renames, 1) << "the folder behind the rename";
    } else {
      ++syncs;
    }
    return machineFileCalls().sync(file);
  };
  fileCalls().renameIn = [](int folder, const char* from, const char* to) {
    ++renames;
    syncsAtRename = syncs;
    return machineFileCalls().renameIn(folder, from, to);
  };
  QVFile file;
  openNew(file);
  file.write("x", 1);
  file.close();
  EXPECT_EQ(renames, 1);
  EXPECT_EQ(syncsAtRename, 1);
  EXPECT_EQ(folderSyncs, 1);
  openNew(file);
  file.setDurability(Durability::Renamed);
  file.write("y", 1);
  file.close();
  EXPECT_EQ(renames, 2);
  EXPECT_EQ(syncs, 1);
  EXPECT_EQ(folderSyncs, 1);
  EXPECT_EQ(saved(), "y");
}

TEST_F(QVFileTest, AsksTheDiskAgainForItsNameWhenOnlyThatFailed) {
  static int failures = 0, error = 0, renames = 0;
  fileCalls().sync = [](int file) {
    struct stat status {};
    fstat(file, &status);
    if (!S_ISDIR(status.st_mode) || failures-- <= 0) return machineFileCalls().sync(file);
    errno = error;
    return -1;
  };
  fileCalls().renameIn = [](int folder, const char* from, const char* to) {
    ++renames;
    return machineFileCalls().renameIn(folder, from, to);
  };
  const auto save = [&](const char* bytes, int times, int code) {
    failures = times, error = code, renames = 0;
    QVFile file;
    openNew(file);
    file.write(bytes, static_cast<int32_t>(std::strlen(bytes)));
    file.close();
    EXPECT_EQ(renames, 1);
    EXPECT_LE(failures, 0);
  };
  answer({BoxAnswer::Retry});
  save("first", 1, EIO);
  EXPECT_EQ(saved(), "first");
  EXPECT_EQ(boxes().size(), 1u);
  // A disk that knows no such call for folders is no disk that fails.
  save("second", 1, EINVAL);
  EXPECT_EQ(saved(), "second");
  EXPECT_EQ(boxes().size(), 1u);
  answer({BoxAnswer::Cancel});
  EXPECT_THROW(save("third", 2, EIO), CannotWriteException);
  EXPECT_EQ(saved(), "third") << "the new file is whole, wherever its name is";
}

TEST_F(QVFileTest, WritesTheBytesAgainAfterAFlushThatFailed) {
  static int failures = 0, written = 0;
  failures = 1;
  written = 0;
  fileCalls().sync = [](int file) {
    if (failures-- > 0) {
      errno = EIO;
      return -1;
    }
    return machineFileCalls().sync(file);
  };
  fileCalls().writeAt = [](int file, const void* bytes, size_t size, off_t at) {
    written += static_cast<int>(size);
    return machineFileCalls().writeAt(file, bytes, size, at);
  };
  QVFile file;
  openNew(file);
  const std::string large(150'000, 'x');
  file.write(large.data(), 150'000);
  answer({BoxAnswer::Retry});
  file.close();
  EXPECT_EQ(written, 300'000);
  EXPECT_EQ(saved(), large);
}

TEST_F(QVFileTest, TakesShortReadsForWhatTheyAre) {
  platform.writeFile(platform.game() / "x", "abc");
  QVFile file;
  file.openName("x", OpenExisting, Read, ShareRead, AttributeNormal);
  char bytes[8] = {};
  EXPECT_EQ(file.read(bytes, 8), 3);
  EXPECT_EQ(file.read(bytes, 8), 0);
  EXPECT_EQ(file.read(bytes, 0), 0);
  EXPECT_EQ(file.read(bytes, -5), 0);
  EXPECT_EQ(file.write(bytes, -5), 0);
  EXPECT_TRUE(boxes().empty());
}

TEST_F(QVFileTest, RefusesToSeekBeforeTheStart) {
  platform.writeFile(platform.game() / "x", "abc");
  QVFile file;
  EXPECT_EQ(file.position(), -1);
  EXPECT_EQ(file.size(), -1);
  EXPECT_EQ(file.remaining(), 0);
  file.openName("x", OpenExisting, Read, ShareRead, AttributeNormal);
  EXPECT_EQ(file.seek(-1, SeekFrom::Start), -1);
  EXPECT_EQ(file.position(), 0);
  EXPECT_EQ(file.seek(-1, SeekFrom::End), 2);
}

TEST_F(QVFileTest, OpeningAgainFinishesTheFirstFile) {
  QVFile file;
  openNew(file);
  file.write("first", 5);
  // The object's own name is a valid argument.
  file.openName(file.name().text(), OpenExisting, Read, ShareRead, AttributeNormal);
  EXPECT_EQ(saved(), "first");
  EXPECT_EQ(file.size(), 5);
}

TEST_F(QVFileTest, ShowsANoticeForAMissingFileOnlyWhereItIsAskedTo) {
  platform.writeFile(platform.game() / "x", "x");
  EXPECT_EQ(QVFile::exists(QVPathName("X")), 1);
  EXPECT_EQ(QVFile::existsName("x"), 1);
  EXPECT_EQ(QVFile::existsName("none"), 0);
  EXPECT_TRUE(boxes().empty());
  EXPECT_EQ(QVFile::exists(QVPathName("none")), 0);
  ASSERT_EQ(boxes().size(), 1u);
  EXPECT_EQ(boxes()[0].text, sjis("C:\\noneは\n存在しません。読み込み処理を中止します。"));
  EXPECT_EQ(boxes()[0].caption, "System Manager - inquire reading");
  EXPECT_EQ(boxes()[0].flags, 0x12000u);
}

TEST_F(QVFileTest, GivesTimesInLocalTime) {
  platform.writeFile(platform.game() / "x", "x");
  const timespec times[2] = {{1'000'000'000, 0}, {951'782'400, 123'000'000}};  // 2000-02-29 UTC
  utimensat(AT_FDCWD, (platform.game() / "x").c_str(), times, 0);
  QVFile file;
  EXPECT_EQ(file.getTime(FileTime::Write).year, 0);
  file.openName("x", OpenExisting, Read, ShareRead, AttributeNormal);
  const CalendarTime local = Kernel::current().localTime(951'782'400'123);
  const CalendarTime& written = file.getTime(FileTime::Write);
  EXPECT_EQ(written.year, local.year);
  EXPECT_EQ(written.month, local.month);
  EXPECT_EQ(written.day, local.day);
  EXPECT_EQ(written.hour, local.hour);
  EXPECT_EQ(written.millisecond, 123);
  EXPECT_EQ(file.getTime(FileTime::Access).year, 2001);
  EXPECT_EQ(file.getTime(static_cast<FileTime>(5)).year, 0);
  file.close();
  EXPECT_EQ(file.getTime(FileTime::Write).year, 0);
}

TEST_F(QVFileTest, ReportsUseOfAClosedFile) {
  QVFile file;
  answer({BoxAnswer::Cancel, BoxAnswer::Cancel});
  char byte = 0;
  EXPECT_THROW(file.read(&byte, 1), CannotReadException);
  EXPECT_THROW(file.write(&byte, 1), CannotWriteException);
  ASSERT_EQ(boxes().size(), 2u);
  EXPECT_EQ(boxes()[0].text, sjis("読み込みできません\nError code : 6\nFile handle : -1"));
  EXPECT_EQ(boxes()[1].text, sjis("書き込みできません\nError code : 6"));
}

}  // namespace
}  // namespace qv
