// Faults of a real disk under a save: full, read-only, a folder in the file's place. Mounts live
// in a namespace of one thread and end with it; where they are not allowed, limits and
// permissions of the process stand in, and the test says so.

#include <csignal>
#include <functional>
#include <thread>

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "foundation/diagnostic.h"
#include "foundation/file.h"
#include "foundation/path_name.h"
#include "platform/text/shift_jis.h"
#include "tests/support/test_platform.h"

namespace qv {
namespace {

namespace fs = std::filesystem;
using testing::TestPlatform;

constexpr uint32_t ReadWrite = GenericRead | GenericWrite;

/// Runs a test in a thread whose mounts nobody else sees; `mounts` tells whether it may mount.
void withOwnMounts(const std::function<void(bool mounts)>& test) {
  std::thread([&] {
    test(unshare(CLONE_NEWNS) == 0 &&
         mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0);
  }).join();
}

/// Boxes that act before they answer "retry", as a player would; then cancel.
class ActingDialogs : public testing::RecordingDialogs {
 public:
  explicit ActingDialogs(std::function<void()> given) : act(std::move(given)) {}
  BoxAnswer messageBox(std::string_view text, std::string_view caption, uint32_t flags) override {
    if (act) answers.push_back(BoxAnswer::Retry);
    const BoxAnswer answer = testing::RecordingDialogs::messageBox(text, caption, flags);
    if (act) std::exchange(act, nullptr)();
    return answer;
  }
  std::function<void()> act;
};

void save(const std::string& bytes) {
  QVFile file;
  file.openName("save0.dat", CreateAlways, ReadWrite, ShareRead, AttributeNormal);
  file.write(bytes.data(), static_cast<int32_t>(bytes.size()));
  file.close();
}

TEST(AFullDisk, KeepsTheOldSaveAndTakesTheNewOneOnceThereIsRoom) {
  withOwnMounts([](bool mounts) {
    TestPlatform platform;
    const fs::path player = platform.player();
    const bool small = mounts && mount("tmpfs", player.c_str(), "tmpfs", 0, "size=256k") == 0;
    rlimit usual{};
    if (!small) {
      std::printf("no mounts here: the limit of a file's size stands in for a full disk\n");
      getrlimit(RLIMIT_FSIZE, &usual);
      signal(SIGXFSZ, SIG_IGN);
    }
    const std::string oldSave(20'000, 'o'), newSave(30'000, 'n');
    save(oldSave);
    const auto fill = [&] {
      if (small) {
        const std::string block(4096, 'f');
        std::FILE* filler = std::fopen((player / "filler").c_str(), "wb");
        while (std::fwrite(block.data(), 1, block.size(), filler) == block.size() &&
               std::fflush(filler) == 0) {
        }
        std::fclose(filler);
      } else {
        const rlimit limit{10'000, usual.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
      }
    };
    const auto free = [&] {
      if (small) {
        fs::remove(player / "filler");
      } else {
        setrlimit(RLIMIT_FSIZE, &usual);
      }
    };

    fill();
    EXPECT_THROW(save(newSave), CannotWriteException);
    ASSERT_EQ(platform.dialogs.shown.size(), 1u);
    EXPECT_EQ(platform.dialogs.shown[0].caption, "QVFile - write");
    EXPECT_EQ(platform.dialogs.shown[0].text,
              sjis("save0.dat書き込みできません\nError code : 112"));
    EXPECT_EQ(platform.readFile(player / "save0.dat"), oldSave);

    ActingDialogs helping(free);
    Services helped = services();
    helped.dialogs = &helping;
    {
      const ServicesScope scope(helped);
      save(newSave);
    }
    EXPECT_EQ(helping.shown.size(), 1u);
    EXPECT_EQ(platform.readFile(player / "save0.dat"), newSave);
    EXPECT_EQ(std::distance(fs::directory_iterator(player), fs::directory_iterator()), 1);
    if (small) umount2(player.c_str(), MNT_DETACH);
  });
}

TEST(AReadOnlyFolder, RefusesTheSaveWithABoxAndKeepsTheOldOne) {
  withOwnMounts([](bool mounts) {
    TestPlatform platform;
    const fs::path player = platform.player();
    save("old");
    const bool bound =
        mounts && mount(player.c_str(), player.c_str(), nullptr, MS_BIND, nullptr) == 0 &&
        mount(nullptr, player.c_str(), nullptr, MS_BIND | MS_REMOUNT | MS_RDONLY, nullptr) == 0;
    if (!bound) {
      if (geteuid() == 0) GTEST_SKIP() << "root without mounts is refused nothing";
      std::printf("no mounts here: permissions stand in\n");
      chmod(player.c_str(), 0555);
    }
    EXPECT_THROW(save("new"), CannotOpenException);
    ASSERT_EQ(platform.dialogs.shown.size(), 1u);
    EXPECT_EQ(platform.dialogs.shown[0].caption, "QVFile - open");
    EXPECT_EQ(platform.dialogs.shown[0].text, sjis("save0.dat\nアクセスが拒否されました"));
    EXPECT_EQ(platform.readFile(player / "save0.dat"), "old");
    if (bound) {
      umount2(player.c_str(), MNT_DETACH);
    } else {
      chmod(player.c_str(), 0755);
    }
  });
}

TEST(AFolderInTheFilesPlace, IsRefusedWithABoxAndStays) {
  TestPlatform platform;
  platform.writeFile(platform.player() / "save0.dat" / "inside", "kept");
  EXPECT_THROW(save("new"), CannotOpenException);
  ASSERT_EQ(platform.dialogs.shown.size(), 1u);
  EXPECT_EQ(platform.dialogs.shown[0].text, sjis("save0.dat\nアクセスが拒否されました"));
  EXPECT_EQ(platform.readFile(platform.player() / "save0.dat" / "inside"), "kept");
}

TEST(AFolderInTheFilesPlace, ThatComesDuringTheSaveIsRefusedAtTheClose) {
  TestPlatform platform;
  QVFile file;
  file.openName("save0.dat", CreateAlways, ReadWrite, ShareRead, AttributeNormal);
  file.write("new", 3);
  platform.writeFile(platform.player() / "save0.dat" / "inside", "kept");
  ActingDialogs helping([&] { fs::remove_all(platform.player() / "save0.dat"); });
  Services helped = services();
  helped.dialogs = &helping;
  const ServicesScope scope(helped);
  file.close();
  ASSERT_EQ(helping.shown.size(), 1u);
  EXPECT_EQ(helping.shown[0].caption, "QVFile - write");
  EXPECT_EQ(helping.shown[0].text, sjis("save0.datは\n読み込み専用で開かれています"));
  EXPECT_EQ(platform.readFile(platform.player() / "save0.dat"), "new");
}

TEST(AVanishedFolder, FailsTheCloseWithABoxAndNothingElse) {
  TestPlatform platform;
  QVFile file;
  file.openName("save0.dat", CreateAlways, ReadWrite, ShareRead, AttributeNormal);
  file.write("new", 3);
  fs::remove_all(platform.player());
  EXPECT_THROW(file.close(), CannotWriteException);
  EXPECT_EQ(platform.dialogs.shown.size(), 1u);
  fs::create_directories(platform.player());
  save("later");
  EXPECT_EQ(platform.readFile(platform.player() / "save0.dat"), "later");
}

}  // namespace
}  // namespace qv
