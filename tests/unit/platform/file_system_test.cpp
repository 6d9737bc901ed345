#include "platform/files/file_system.h"

#include <fstream>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/text/shift_jis.h"
#include "tests/support/test_platform.h"

namespace qv {
namespace {

namespace fs = std::filesystem;
using testing::TestPlatform;

class FileSystemTest : public ::testing::Test {
 protected:
  TestPlatform platform{true};
  FileSystem& files = *services().files;

  uint32_t openError(std::string_view path, uint32_t disposition = OpenExisting,
                     uint32_t access = GenericRead) {
    const auto opened = files.open(path, disposition, access, ShareRead, AttributeNormal);
    files.discard(opened.handle);
    return opened.error;
  }
  std::string content(std::string_view path) {
    const auto opened = files.open(path, OpenExisting, GenericRead, ShareRead, AttributeNormal);
    if (opened.error != FileOk) return "error " + std::to_string(opened.error);
    std::string bytes(1000, '\0');
    const auto got = files.read(opened.handle, bytes.data(), bytes.size());
    bytes.resize(static_cast<size_t>(std::max<int64_t>(got.bytes, 0)));
    EXPECT_EQ(files.commit(opened.handle), FileOk);
    return bytes;
  }
};

TEST_F(FileSystemTest, ReadsTheGameInAnyLetterCase) {
  platform.writeFile(platform.game() / "Dat" / "L0Pal.dat", "palette");
  EXPECT_EQ(content("dat\\l0pal.DAT"), "palette");
  EXPECT_EQ(content("C:\\DAT\\L0PAL.DAT"), "palette");
  EXPECT_EQ(content("Dat/L0Pal.dat"), "palette");
}

TEST_F(FileSystemTest, FoldsFullWidthLettersToo) {
  platform.writeFile(platform.game() / "ＡＢソ.dat", "wide");
  EXPECT_EQ(content(sjis("ａｂソ.dat")), "wide");
}

TEST_F(FileSystemTest, PrefersTheExactSpellingThenTheFirstInByteOrder) {
  platform.writeFile(platform.game() / "ab", "small");
  platform.writeFile(platform.game() / "AB", "capital");
  platform.writeFile(platform.game() / "aB", "mixed");
  EXPECT_EQ(content("ab"), "small");
  EXPECT_EQ(content("AB"), "capital");
  EXPECT_EQ(content("Ab"), "capital");
}

TEST_F(FileSystemTest, LooksInThePlayersFolderFirst) {
  platform.writeFile(platform.game() / "dat" / "x.dat", "game");
  EXPECT_EQ(content("dat\\x.dat"), "game");
  platform.writeFile(platform.player() / "DAT" / "X.DAT", "player");
  EXPECT_EQ(content("dat\\x.dat"), "player");
}

TEST_F(FileSystemTest, SeesFilesThatAppearAndVanishWhileItRuns) {
  EXPECT_EQ(openError("late.dat"), FileNotFound);
  platform.writeFile(platform.game() / "LATE.dat", "now");
  EXPECT_EQ(content("late.dat"), "now");
  fs::remove(platform.game() / "LATE.dat");
  EXPECT_EQ(openError("late.dat"), FileNotFound);
}

TEST_F(FileSystemTest, TellsAMissingFileFromAMissingFolder) {
  fs::create_directories(platform.game() / "dat");
  EXPECT_EQ(openError("x.dat"), FileNotFound);
  EXPECT_EQ(openError("DAT\\x.dat"), FileNotFound);
  EXPECT_EQ(openError("no\\x.dat"), FilePathNotFound);
  EXPECT_EQ(openError("no\\no\\x.dat"), FilePathNotFound);
  platform.writeFile(platform.game() / "file", "");
  EXPECT_EQ(openError("file\\x.dat"), FilePathNotFound);
  EXPECT_EQ(openError("file\\"), FilePathNotFound);
}

TEST_F(FileSystemTest, RefusesAFolderAsAFile) {
  fs::create_directories(platform.game() / "dat");
  EXPECT_EQ(openError("dat"), FileAccessDenied);
  EXPECT_EQ(openError("C:\\"), FileAccessDenied);
  EXPECT_EQ(openError("dat", CreateAlways, GenericWrite), FileAccessDenied);
}

TEST_F(FileSystemTest, RefusesAPipeInsteadOfWaitingForIt) {
  ASSERT_EQ(mkfifo((platform.game() / "pipe").c_str(), 0644), 0);
  EXPECT_EQ(openError("pipe"), FileAccessDenied);
}

TEST_F(FileSystemTest, KnowsNoOtherDrivesAndNoNetwork) {
  EXPECT_EQ(openError("E:\\x.dat"), FilePathNotFound);
  EXPECT_EQ(openError("A:x.dat"), FilePathNotFound);
  EXPECT_EQ(openError("\\\\server\\share\\x.dat"), FileBadNetworkPath);
}

TEST_F(FileSystemTest, CannotBeLedOutByDots) {
  platform.writeFile(platform.game().parent_path() / "secret", "secret");
  EXPECT_EQ(openError("..\\secret"), FileNotFound);
  EXPECT_EQ(openError("../../../../../../etc/passwd"), FilePathNotFound);
  EXPECT_EQ(openError("D:\\..\\secret"), FileNotFound);
}

TEST_F(FileSystemTest, CannotBeLedOutByLinks) {
  platform.writeFile(platform.game().parent_path() / "out" / "secret", "secret");
  for (const fs::path& root : {platform.game(), platform.player(), platform.disc()}) {
    fs::create_directory_symlink(platform.game().parent_path() / "out", root / "absolute");
    fs::create_directory_symlink("../out", root / "relative");
    fs::create_symlink("../out/secret", root / "file");
  }
  for (const char* drive : {"C:\\", "D:\\"}) {
    for (const char* name : {"absolute\\secret", "relative\\secret", "file", "FILE"}) {
      const std::string path = std::string(drive) + name;
      EXPECT_EQ(openError(path), FileAccessDenied) << path;
      EXPECT_FALSE(files.attributes(path)) << path;
      EXPECT_FALSE(files.hostPath(path)) << path;
    }
  }
  EXPECT_EQ(openError("relative\\new", CreateAlways, GenericWrite), FileAccessDenied);
  EXPECT_EQ(openError("file", CreateAlways, GenericWrite), FileAccessDenied);
  EXPECT_TRUE(files.list("C:\\").empty());
  EXPECT_TRUE(files.list("C:\\relative").empty());
  EXPECT_EQ(files.remove("relative\\secret"), FileAccessDenied);
  EXPECT_EQ(platform.readFile(platform.game().parent_path() / "out" / "secret"), "secret");
}

TEST_F(FileSystemTest, FollowsLinksThatStayInside) {
  platform.writeFile(platform.game() / "cg" / "x.mcg", "picture");
  fs::create_directory_symlink("cg", platform.game() / "relative");
  fs::create_directory_symlink(platform.game() / "cg", platform.game() / "absolute");
  EXPECT_EQ(content("RELATIVE\\x.mcg"), "picture");
  EXPECT_EQ(content("Absolute\\X.mcg"), "picture");
}

TEST_F(FileSystemTest, SurvivesLinksInACircle) {
  fs::create_symlink("b", platform.game() / "a");
  fs::create_symlink("a", platform.game() / "b");
  EXPECT_EQ(openError("a"), FileAccessDenied);
}

TEST_F(FileSystemTest, RefusesNamesThatCouldMeanSomethingElse) {
  EXPECT_EQ(openError(std::string_view("x\0.dat", 6)), FileInvalidName);
  EXPECT_EQ(openError("x.dat:stream"), FileInvalidName);
  EXPECT_EQ(openError(std::string(300, 'x')), FilePathNotFound);
  EXPECT_EQ(openError("x?.dat"), FileInvalidName);
}

TEST_F(FileSystemTest, GivesTheDiscAsADriveOfTheDiscKindThatIsNeverWritten) {
  platform.writeFile(platform.disc() / "VOICE" / "v.wav", "voice");
  EXPECT_EQ(content("d:\\voice\\V.WAV"), "voice");
  EXPECT_EQ(files.logicalDrives(), 0b1100u);
  EXPECT_EQ(files.driveType("D:\\"), DriveCdRom);
  EXPECT_EQ(files.driveType("C:\\"), DriveFixed);
  EXPECT_EQ(files.driveType("c:"), DriveFixed);
  EXPECT_EQ(files.driveType("E:\\"), DriveNoRoot);
  EXPECT_EQ(files.driveType("D:\\VOICE"), DriveNoRoot);
  EXPECT_EQ(openError("D:\\VOICE\\v.wav", CreateAlways, GenericWrite), FileAccessDenied);
  EXPECT_EQ(openError("D:\\new", CreateAlways, GenericWrite), FileAccessDenied);
  EXPECT_EQ(openError("D:\\VOICE\\v.wav", OpenExisting, GenericRead | GenericWrite),
            FileAccessDenied);
  EXPECT_EQ(files.remove("D:\\VOICE\\v.wav"), FileAccessDenied);
}

TEST_F(FileSystemTest, SaysThatADiscWhichWasTakenAwayIsNotReady) {
  fs::remove_all(platform.disc());
  EXPECT_EQ(openError("D:\\x"), FileNotReady);
  EXPECT_EQ(files.driveType("D:\\"), DriveCdRom);
  platform.writeFile(platform.disc() / "x", "back");
  EXPECT_EQ(content("D:\\x"), "back");
}

TEST(FileSystemWithoutADisc, HasNoDriveD) {
  TestPlatform platform;
  FileSystem& files = *services().files;
  EXPECT_EQ(files.logicalDrives(), 0b100u);
  EXPECT_EQ(files.driveType("D:\\"), DriveNoRoot);
  EXPECT_EQ(files.open("D:\\x", OpenExisting, GenericRead, 1, 128).error, FilePathNotFound);
}

TEST_F(FileSystemTest, StartsInTheRootAndChangesItsDirectory) {
  platform.writeFile(platform.game() / "dat" / sjis("x"), "x");
  fs::create_directories(platform.game() / "ソ");
  EXPECT_EQ(files.currentDirectory(), "C:\\");
  EXPECT_TRUE(files.setCurrentDirectory("dat"));
  EXPECT_EQ(files.currentDirectory(), "C:\\dat\\");
  EXPECT_EQ(content("x"), "x");
  EXPECT_EQ(content("..\\DAT\\x"), "x");
  EXPECT_FALSE(files.setCurrentDirectory("x"));
  EXPECT_FALSE(files.setCurrentDirectory("no"));
  EXPECT_EQ(files.currentDirectory(), "C:\\dat\\");
  EXPECT_TRUE(files.setCurrentDirectory("\\\x83\x5C\\"));
  EXPECT_EQ(files.currentDirectory(), "C:\\\x83\x5C\\");
  EXPECT_TRUE(files.setCurrentDirectory("D:"));
  EXPECT_EQ(files.currentDirectory(), "D:\\");
}

TEST_F(FileSystemTest, ListsBothLayersOnceSortedByName) {
  platform.writeFile(platform.game() / "dat" / "b", "four");
  platform.writeFile(platform.game() / "dat" / "a", "1");
  platform.writeFile(platform.game() / "dat" / "é", "cannot be said");
  platform.writeFile(platform.game() / "dat" / "ソ", "");
  platform.writeFile(platform.player() / "Dat" / "B", "player");
  fs::create_directories(platform.player() / "Dat" / "c");
  const auto entries = files.list("DAT");
  ASSERT_EQ(entries.size(), 4u);
  EXPECT_EQ(entries[0].name, "B");
  EXPECT_EQ(entries[0].bytes, 6);
  EXPECT_EQ(entries[1].name, "a");
  EXPECT_EQ(entries[2].name, "c");
  EXPECT_TRUE(entries[2].directory);
  EXPECT_EQ(entries[3].name, "\x83\x5C");
  EXPECT_TRUE(files.list("no").empty());
  EXPECT_TRUE(files.list("dat\\a").empty());
}

TEST_F(FileSystemTest, TellsAttributes) {
  platform.writeFile(platform.game() / "dat" / "a", "1");
  platform.writeFile(platform.player() / "locked", "1");
  chmod((platform.player() / "locked").c_str(), 0444);
  EXPECT_EQ(files.attributes("dat\\a"), AttributeNormal);
  EXPECT_EQ(files.attributes("dat"), AttributeDirectory);
  EXPECT_EQ(files.attributes("dat\\"), AttributeDirectory);
  EXPECT_EQ(files.attributes("locked"), AttributeReadOnly);
  uint32_t error = 0;
  EXPECT_FALSE(files.attributes("none", &error));
  EXPECT_EQ(error, FileNotFound);
  EXPECT_FALSE(files.attributes("no\\ne", &error));
  EXPECT_EQ(error, FilePathNotFound);
  EXPECT_TRUE(files.attributes("dat", &error));
  EXPECT_EQ(error, FileOk);
}

TEST_F(FileSystemTest, SeeksInsideBounds) {
  platform.writeFile(platform.game() / "x", "0123456789");
  const auto opened = files.open("x", OpenExisting, GenericRead, ShareRead, AttributeNormal);
  const auto handle = opened.handle;
  EXPECT_EQ(files.size(handle), 10);
  EXPECT_EQ(files.seek(handle, -3, SeekFrom::End), 7);
  char bytes[8] = {};
  EXPECT_EQ(files.read(handle, bytes, 8).bytes, 3);
  EXPECT_STREQ(bytes, "789");
  EXPECT_EQ(files.read(handle, bytes, 8).bytes, 0);
  EXPECT_EQ(files.seek(handle, -11, SeekFrom::Current), -1);
  EXPECT_EQ(files.seek(handle, -10, SeekFrom::Current), 0);
  EXPECT_EQ(files.seek(handle, INT64_MAX, SeekFrom::End), -1);
  EXPECT_EQ(files.seek(handle, INT64_MIN, SeekFrom::End), -1);
  EXPECT_EQ(files.seek(handle, 0, static_cast<SeekFrom>(7)), -1);
  EXPECT_EQ(files.seek(handle, 20, SeekFrom::Start), 20);
  EXPECT_EQ(files.read(handle, bytes, 8).bytes, 0);
  EXPECT_EQ(files.write(handle, bytes, 1).error, FileAccessDenied);
  EXPECT_EQ(files.commit(handle), FileOk);
  EXPECT_EQ(platform.readFile(platform.game() / "x"), "0123456789");
}

TEST_F(FileSystemTest, AnswersBadHandlesWithAnError) {
  char byte = 0;
  for (const int handle : {-1, 0, 1, 255, 256, 1'000'000, INT_MIN}) {
    EXPECT_EQ(files.read(handle, &byte, 1).error, FileInvalidHandle);
    EXPECT_EQ(files.write(handle, &byte, 1).error, FileInvalidHandle);
    EXPECT_EQ(files.seek(handle, 0, SeekFrom::Start), -1);
    EXPECT_EQ(files.size(handle), -1);
    EXPECT_FALSE(files.time(handle, FileTime::Write));
    EXPECT_EQ(files.commit(handle), FileInvalidHandle);
    files.discard(handle);
  }
}

TEST_F(FileSystemTest, RunsOutOfHandlesWithAnErrorAndRecovers) {
  platform.writeFile(platform.game() / "x", "x");
  std::vector<int> handles;
  FileSystem::Opened opened;
  while ((opened = files.open("x", OpenExisting, GenericRead, 1, 128)).error == FileOk) {
    handles.push_back(opened.handle);
    ASSERT_LT(handles.size(), 1000u);
  }
  EXPECT_EQ(opened.error, FileTooManyOpen);
  for (const int handle : handles)
    files.discard(handle);
  EXPECT_EQ(content("x"), "x");
}

TEST_F(FileSystemTest, GivesTheMachinesPathOfAFile) {
  platform.writeFile(platform.game() / "Midi" / "K01a.mid", "");
  EXPECT_EQ(files.hostPath("midi\\k01A.mid"), platform.game() / "Midi" / "K01a.mid");
  EXPECT_FALSE(files.hostPath("midi\\none"));
}

TEST_F(FileSystemTest, RefusesUnknownDispositions) {
  EXPECT_EQ(openError("x", 0), FileInvalidParameter);
  EXPECT_EQ(openError("x", 6), FileInvalidParameter);
  EXPECT_EQ(openError("x", TruncateExisting, GenericRead), FileInvalidParameter);
}

}  // namespace
}  // namespace qv
