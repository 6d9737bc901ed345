#include <fstream>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/files/file_system.h"
#include "platform/settings/settings_store.h"
#include "platform/text/shift_jis.h"
#include "tests/support/test_platform.h"

namespace qv {
namespace {

namespace fs = std::filesystem;
using testing::TestPlatform;

constexpr uint32_t ValueOfOneByte = 3;

class FileSystemWrite : public ::testing::Test {
 protected:
  TestPlatform platform{true};
  FileSystem& files = *services().files;

  FileSystem::Opened open(std::string_view path, uint32_t disposition = CreateAlways,
                          uint32_t access = GenericRead | GenericWrite,
                          uint32_t attributes = AttributeNormal) {
    return files.open(path, disposition, access, ShareRead, attributes);
  }
  void put(int handle, std::string_view bytes) {
    EXPECT_EQ(files.write(handle, bytes.data(), bytes.size()).bytes,
              static_cast<int64_t>(bytes.size()));
  }
  uint32_t write(std::string_view path, std::string_view bytes) {
    const auto opened = open(path);
    if (opened.error != FileOk) return opened.error;
    put(opened.handle, bytes);
    return files.commit(opened.handle);
  }
  size_t entriesOf(const fs::path& folder) {
    return static_cast<size_t>(
        std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
  }
};

TEST_F(FileSystemWrite, GoesToThePlayersFolderAlone) {
  platform.writeFile(platform.game() / "Dat" / "X.dat", "game");
  EXPECT_EQ(write("dat\\x.DAT", "player"), FileOk);
  EXPECT_EQ(platform.readFile(platform.game() / "Dat" / "X.dat"), "game");
  // Folder and file take the spelling that the game has.
  EXPECT_EQ(platform.readFile(platform.player() / "Dat" / "X.dat"), "player");
}

TEST_F(FileSystemWrite, NeedsAFolderThatIsThereInSomeLayer) {
  EXPECT_EQ(write("no\\x.dat", "x"), FilePathNotFound);
  platform.writeFile(platform.game() / "file", "x");
  EXPECT_EQ(write("file\\x.dat", "x"), FilePathNotFound);
  fs::create_directories(platform.game() / "a" / "B" / "c");
  fs::create_directories(platform.player() / "A");
  EXPECT_EQ(write("a\\b\\c\\x", "deep"), FileOk);
  EXPECT_EQ(platform.readFile(platform.player() / "A" / "B" / "c" / "x"), "deep");
}

TEST_F(FileSystemWrite, MakesThePlayersFolderWhereItIsMissing) {
  fs::remove_all(platform.player());
  EXPECT_EQ(write("save0.dat", "first"), FileOk);
  EXPECT_EQ(platform.readFile(platform.player() / "save0.dat"), "first");
}

TEST_F(FileSystemWrite, ShowsTheOldFileUntilTheCommit) {
  platform.writeFile(platform.player() / "save0.dat", "old");
  const auto opened = open("SAVE0.DAT");
  put(opened.handle, "new");
  EXPECT_EQ(platform.readFile(platform.player() / "save0.dat"), "old");
  EXPECT_EQ(files.list("C:\\").size(), 1u);
  EXPECT_EQ(files.commit(opened.handle), FileOk);
  EXPECT_EQ(platform.readFile(platform.player() / "save0.dat"), "new");
  EXPECT_EQ(entriesOf(platform.player()), 1u);
}

TEST_F(FileSystemWrite, VanishesWhenDiscarded) {
  platform.writeFile(platform.player() / "save0.dat", "old");
  auto opened = open("save0.dat");
  put(opened.handle, "new");
  files.discard(opened.handle);
  opened = open("other.dat");
  put(opened.handle, std::string(100'000, 'x'));
  files.discard(opened.handle);
  EXPECT_EQ(platform.readFile(platform.player() / "save0.dat"), "old");
  EXPECT_EQ(entriesOf(platform.player()), 1u);
}

TEST_F(FileSystemWrite, FollowsTheDispositions) {
  platform.writeFile(platform.player() / "x", "old");
  EXPECT_EQ(open("x", CreateNew).error, FileExists);
  EXPECT_EQ(open("none", TruncateExisting).error, FileNotFound);
  EXPECT_EQ(open("none", OpenExisting).error, FileNotFound);

  auto opened = open("x", TruncateExisting);
  EXPECT_EQ(files.size(opened.handle), 0);
  EXPECT_EQ(files.commit(opened.handle), FileOk);
  EXPECT_EQ(platform.readFile(platform.player() / "x"), "");

  for (const uint32_t disposition : {CreateNew, OpenAlways}) {
    const std::string name = "fresh" + std::to_string(disposition);
    opened = open(name, disposition);
    put(opened.handle, "made");
    EXPECT_EQ(files.commit(opened.handle), FileOk);
    EXPECT_EQ(platform.readFile(platform.player() / name), "made");
  }
}

TEST_F(FileSystemWrite, ChangesAnExistingFileInACopy) {
  platform.writeFile(platform.game() / "x", std::string(100'000, 'a') + "tail");
  const auto opened = open("x", OpenExisting);
  EXPECT_EQ(files.size(opened.handle), 100'004);
  EXPECT_EQ(files.seek(opened.handle, 2, SeekFrom::Start), 2);
  put(opened.handle, "BB");
  char bytes[5] = {};
  EXPECT_EQ(files.seek(opened.handle, 100'000, SeekFrom::Start), 100'000);
  EXPECT_EQ(files.read(opened.handle, bytes, 4).bytes, 4);
  EXPECT_STREQ(bytes, "tail");
  EXPECT_FALSE(fs::exists(platform.player() / "x"));
  EXPECT_EQ(files.commit(opened.handle), FileOk);
  EXPECT_EQ(platform.readFile(platform.player() / "x"), "aaBB" + std::string(99'996, 'a') + "tail");
  EXPECT_EQ(platform.readFile(platform.game() / "x"), std::string(100'000, 'a') + "tail");
}

TEST_F(FileSystemWrite, LeavesAFileAloneThatWasOpenedForChangeAndNotChanged) {
  platform.writeFile(platform.game() / "x", "game");
  const auto opened = open("x", OpenAlways);
  EXPECT_EQ(files.commit(opened.handle), FileOk);
  EXPECT_FALSE(fs::exists(platform.player() / "x"));
}

TEST_F(FileSystemWrite, MixesWritesReadsAndSeeksInAnyOrder) {
  const auto opened = open("x");
  std::string expected;
  uint32_t state = 7;
  const auto random = [&](uint32_t limit) {
    state = state * 1664525 + 1013904223;
    return (state >> 8) % limit;
  };
  for (int round = 0; round < 300; ++round) {
    const size_t at = random(200'000);
    const size_t size = round % 50 == 0 ? 70'000 + random(70'000) : random(5000);
    ASSERT_EQ(files.seek(opened.handle, static_cast<int64_t>(at), SeekFrom::Start),
              static_cast<int64_t>(at));
    if (random(3) == 0) {
      std::string got(size, '?');
      const auto read = files.read(opened.handle, got.data(), size);
      ASSERT_GE(read.bytes, 0);
      got.resize(static_cast<size_t>(read.bytes));
      ASSERT_EQ(got, at < expected.size() ? expected.substr(at, size) : "");
    } else {
      const std::string block(size, static_cast<char>('a' + round % 26));
      put(opened.handle, block);
      if (size > 0 && expected.size() < at + size) expected.resize(at + size, '\0');
      expected.replace(at, size, block);
    }
    ASSERT_EQ(files.size(opened.handle), static_cast<int64_t>(expected.size()));
  }
  EXPECT_EQ(files.commit(opened.handle), FileOk);
  EXPECT_EQ(platform.readFile(platform.player() / "x"), expected);
}

TEST_F(FileSystemWrite, RefusesAReadOnlyFileOfThePlayer) {
  platform.writeFile(platform.player() / "x", "locked");
  chmod((platform.player() / "x").c_str(), 0444);
  EXPECT_EQ(open("x").error, FileAccessDenied);
  EXPECT_EQ(open("x", OpenExisting).error, FileAccessDenied);
  EXPECT_EQ(open("x", OpenExisting, GenericRead).error, FileOk);
  EXPECT_EQ(files.remove("x"), FileAccessDenied);
  EXPECT_EQ(platform.readFile(platform.player() / "x"), "locked");
}

TEST_F(FileSystemWrite, TreatsAReadOnlyFileOfTheGameAsOneToLayOver) {
  // Games come from read-only media; the copy in the player's folder is the player's.
  platform.writeFile(platform.game() / "x", "locked");
  chmod((platform.game() / "x").c_str(), 0444);
  EXPECT_EQ(write("x", "own"), FileOk);
  EXPECT_EQ(platform.readFile(platform.player() / "x"), "own");
}

TEST_F(FileSystemWrite, KeepsTheModeOfAFileAndGivesNewOnesTheUsualOne) {
  const mode_t mask = umask(022);
  platform.writeFile(platform.player() / "x", "old");
  chmod((platform.player() / "x").c_str(), 0600);
  EXPECT_EQ(write("x", "new"), FileOk);
  EXPECT_EQ(write("y", "new"), FileOk);
  const auto opened = open("z", CreateAlways, GenericWrite, AttributeReadOnly);
  EXPECT_EQ(files.commit(opened.handle), FileOk);
  umask(mask);
  struct stat status {};
  stat((platform.player() / "x").c_str(), &status);
  EXPECT_EQ(status.st_mode & 0777, 0600u);
  stat((platform.player() / "y").c_str(), &status);
  EXPECT_EQ(status.st_mode & 0777, 0644u);
  EXPECT_EQ(files.attributes("z"), AttributeReadOnly);
}

TEST_F(FileSystemWrite, RemovesThePlayersFileAndShowsTheGamesAgain) {
  platform.writeFile(platform.game() / "x", "game");
  EXPECT_EQ(write("x", "player"), FileOk);
  EXPECT_EQ(files.remove("X"), FileOk);
  EXPECT_FALSE(fs::exists(platform.player() / "x"));
  EXPECT_EQ(files.remove("x"), FileAccessDenied);
  EXPECT_EQ(platform.readFile(platform.game() / "x"), "game");
  EXPECT_EQ(files.remove("none"), FileNotFound);
  fs::create_directories(platform.player() / "folder");
  EXPECT_EQ(files.remove("folder"), FileAccessDenied);
}

TEST_F(FileSystemWrite, SweepsUpWhatAKilledWriterLeftButNotWhatALivingOneWrites) {
  platform.writeFile(platform.player() / ".qv-unfinished.1.0", "left behind");
  fs::create_directories(platform.game() / "dat");
  platform.writeFile(platform.player() / "dat" / ".qv-unfinished.1.1", "left behind");
  const auto living = open("first.dat");
  put(living.handle, "living");
  EXPECT_EQ(entriesOf(platform.player()), 2u);  // the living one and "dat"

  FileSystem second({platform.game(), platform.player(), {}});
  const auto opened = second.open("second.dat", CreateAlways, GenericWrite, 1, 128);
  EXPECT_EQ(second.commit(opened.handle), FileOk);
  EXPECT_EQ(write("dat\\x", "x"), FileOk);
  EXPECT_EQ(entriesOf(platform.player() / "dat"), 1u);
  EXPECT_EQ(files.commit(living.handle), FileOk);
  EXPECT_EQ(platform.readFile(platform.player() / "first.dat"), "living");
  EXPECT_EQ(entriesOf(platform.player()), 3u);
}

TEST_F(FileSystemWrite, DiscardsWhatIsOpenWhenTheFileSystemEnds) {
  {
    FileSystem own({platform.game(), platform.player(), {}});
    const auto opened = own.open("x", CreateAlways, GenericWrite, 1, 128);
    EXPECT_EQ(own.write(opened.handle, "x", 1).bytes, 1);
  }
  EXPECT_EQ(entriesOf(platform.player()), 0u);
}

TEST_F(FileSystemWrite, RefusesPositionsThatNoClassicFileHas) {
  const auto opened = open("x");
  EXPECT_EQ(files.seek(opened.handle, 0x100000000, SeekFrom::Start), -1);
  EXPECT_EQ(files.seek(opened.handle, 0xFFFFFFFF, SeekFrom::Start), 0xFFFFFFFF);
  EXPECT_EQ(files.write(opened.handle, "x", 1).error, FileDiskFull);
  files.discard(opened.handle);
}

TEST_F(FileSystemWrite, MayComeFromManyThreadsAtOnce) {
  fs::create_directories(platform.game() / "dat" / "deep");
  const auto work = [&](int number) {
    const std::string name = "C:\\dat\\deep\\save" + std::to_string(number);
    const std::string bytes(5000, static_cast<char>('a' + number));
    for (int round = 0; round < 20; ++round) {
      EXPECT_EQ(write(name, bytes), FileOk);
      const auto opened = files.open(name, OpenExisting, GenericRead, ShareRead, AttributeNormal);
      std::string back(6000, '?');
      EXPECT_EQ(files.read(opened.handle, back.data(), back.size()).bytes, 5000);
      EXPECT_TRUE(back.starts_with(bytes));
      files.discard(opened.handle);
      EXPECT_TRUE(files.setCurrentDirectory(round % 2 == 0 ? "C:\\dat" : "C:\\"));
      EXPECT_TRUE(files.currentDirectory().starts_with("C:\\"));
      SettingValue value{ValueOfOneByte, {static_cast<uint8_t>(round)}};
      EXPECT_TRUE(services().settings->set("key", name, value, round == 0));
      EXPECT_EQ(services().settings->get("key", name), value);
    }
  };
  Thread threads[3];
  for (int i = 0; i < 3; ++i)
    threads[i].start("writer", [&, i] { work(i); });
  for (Thread& thread : threads)
    EXPECT_TRUE(thread.join());
  EXPECT_EQ(entriesOf(platform.player() / "dat" / "deep"), 3u);
}

class TraceLines : public TraceSink {
 public:
  void line(std::string_view what, std::string_view detail) override {
    lines.push_back(std::string(what) + " " + std::string(detail));
  }
  std::vector<std::string> lines;
};

TEST_F(FileSystemWrite, TracesWhatTookItsName) {
  TraceLines lines;
  Services traced = services();
  traced.trace = &lines;
  const ServicesScope scope(traced);
  EXPECT_EQ(write(sjis("セーブ.dat"), "x"), FileOk);
  files.discard(open("y").handle);
  EXPECT_EQ(lines.lines, std::vector<std::string>{"file C:\\セーブ.dat"});
}

TEST(FileTimes, AreTheMachinesOnTheRealKernel) {
  TestPlatform platform;
  platform.writeFile(platform.game() / "x", "x");
  const timespec times[2] = {{1'000'000'000, 0}, {1'000'000'001, 500'000'000}};
  utimensat(AT_FDCWD, (platform.game() / "x").c_str(), times, 0);
  FileSystem& files = *services().files;
  const auto opened = files.open("x", OpenExisting, GenericRead, 1, 128);
  EXPECT_EQ(files.time(opened.handle, FileTime::Write), 1'000'000'001'500);
  EXPECT_EQ(files.time(opened.handle, FileTime::Access), 1'000'000'000'000);
  EXPECT_GT(files.time(opened.handle, FileTime::Creation), 1'500'000'000'000);
  EXPECT_FALSE(files.time(opened.handle, static_cast<FileTime>(9)));
  files.discard(opened.handle);
}

TEST(FileTimes, ComeFromTheSimulatedClock) {
  TestPlatform platform(false, makeSimulatedKernel({.seed = 1}));
  FileSystem& files = *services().files;
  sleepMillis(90'000);
  auto opened = files.open("x", CreateAlways, GenericWrite, 1, 128);
  EXPECT_EQ(files.time(opened.handle, FileTime::Write), Kernel::current().wallClockMillis());
  files.write(opened.handle, "x", 1);
  const int64_t written = Kernel::current().wallClockMillis();
  EXPECT_EQ(files.commit(opened.handle), FileOk);
  sleepMillis(5'000);
  opened = files.open("x", OpenExisting, GenericRead, 1, 128);
  for (const auto which : {FileTime::Write, FileTime::Creation, FileTime::Access}) {
    EXPECT_EQ(files.time(opened.handle, which), written);
  }
  EXPECT_EQ(written, SimulatedKernelOptions{}.startUtcMillis + 90'000);
  files.discard(opened.handle);
}

}  // namespace
}  // namespace qv
