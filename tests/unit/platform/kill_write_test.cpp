// A writer that is killed at every system call of a save, at its entry and at its exit: each time
// the file must be the old one or the new one whole, and the next start must find its way.

#include <csignal>
#include <cstdio>
#include <fstream>
#include <functional>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include "foundation/file.h"
#include "foundation/path_name.h"
#include "platform/files/system_calls.h"
#include "platform/settings/settings_store.h"
#include "tests/support/test_platform.h"

namespace qv {
namespace {

namespace fs = std::filesystem;

// As large as the system file and a save's registers, and then some more than any buffer.
std::string contentOf(char letter) {
  std::string bytes;
  for (int i = 0; bytes.size() < 150'000; ++i)
    bytes += letter + std::to_string(i);
  return bytes;
}

struct Folders {
  qv::testing::TemporaryFolder folder;
  fs::path game = folder.path() / "game";
  fs::path player = folder.path() / "player";

  Folders() {
    fs::create_directories(game);
    fs::create_directories(player);
  }
};

/// A whole program's worth: kernel, files, one save.
void save(const Folders& folders, Durability durability, const std::string& bytes) {
  const KernelScope kernel(makeRealKernel());
  FileSystem files({folders.game, folders.player, {}});
  SettingsStore settings{fs::path()};
  testing::RecordingDialogs dialogs;
  const ServicesScope scope({.files = &files, .settings = &settings, .dialogs = &dialogs});
  QVFile file;
  file.open(QVPathName("C:\\save0.dat"), CreateAlways, GenericRead | GenericWrite, ShareRead,
            AttributeNormal);
  file.setDurability(durability);
  for (size_t at = 0; at < bytes.size(); at += 700) {
    file.write(bytes.data() + at, static_cast<int32_t>(std::min<size_t>(700, bytes.size() - at)));
  }
  file.close();
}

void saveSettings(const Folders& folders, char letter) {
  const KernelScope kernel(makeRealKernel());
  SettingsStore store(folders.player / "save0.dat");
  SettingValue value;
  value.data.assign(20'000, static_cast<uint8_t>(letter));
  value.data.push_back(0);
  if (!store.set("key", "name", value, true)) _exit(2);
}

enum class Outcome { Killed, Ended, Refused };

/// Runs `work` in a child that is killed at its `stop`th system call stop.
Outcome killAtStop(int stop, const std::function<void()>& work) {
  const pid_t child = fork();
  if (child == 0) {
    if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) _exit(77);
    raise(SIGSTOP);
    work();
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  if (WIFEXITED(status)) return Outcome::Refused;
  const auto options = reinterpret_cast<void*>(PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
  if (ptrace(PTRACE_SETOPTIONS, child, nullptr, options) != 0) {
    kill(child, SIGKILL);
    waitpid(child, &status, 0);
    return Outcome::Refused;
  }
  long signal = 0;
  for (int seen = 0;;) {
    ptrace(PTRACE_SYSCALL, child, nullptr, reinterpret_cast<void*>(signal));
    signal = 0;
    waitpid(child, &status, 0);
    if (WIFEXITED(status)) {
      EXPECT_EQ(WEXITSTATUS(status), 0);
      return Outcome::Ended;
    }
    if (!WIFSTOPPED(status)) {
      ADD_FAILURE() << "the writer died by itself, of signal " << WTERMSIG(status);
      return Outcome::Ended;
    }
    if (WSTOPSIG(status) != (SIGTRAP | 0x80)) {
      signal = WSTOPSIG(status);
    } else if (seen++ == stop) {
      kill(child, SIGKILL);
      waitpid(child, &status, 0);
      return Outcome::Killed;
    }
  }
}

int callsUntilKill = 0;
void countCall() {
  if (callsUntilKill-- == 0) raise(SIGKILL);
}

/// Where tracing is forbidden: the writer kills itself before and after each call of the file
/// table that changes something.
Outcome killAtCall(int stop, const std::function<void()>& work) {
  const pid_t child = fork();
  if (child == 0) {
    callsUntilKill = stop;
    FileCalls& calls = fileCalls();
    calls.createIn = [](int folder, const char* name, unsigned mode) {
      countCall();
      const int made = machineFileCalls().createIn(folder, name, mode);
      countCall();
      return made;
    };
    calls.writeAt = [](int file, const void* bytes, size_t size, off_t at) {
      countCall();
      const ssize_t written = machineFileCalls().writeAt(file, bytes, size, at);
      countCall();
      return written;
    };
    calls.sync = [](int file) {
      countCall();
      const int done = machineFileCalls().sync(file);
      countCall();
      return done;
    };
    calls.renameIn = [](int folder, const char* from, const char* to) {
      countCall();
      const int done = machineFileCalls().renameIn(folder, from, to);
      countCall();
      return done;
    };
    work();
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  if (WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) return Outcome::Killed;
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  return Outcome::Ended;
}

std::string bytesOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// `oldFile` empty: there is none before. `work` turns it into `newFile`.
void killEverywhere(const Folders& folders, const std::string& oldFile, const std::string& newFile,
                    const std::function<void()>& work) {
  const fs::path target = folders.player / "save0.dat";
  bool traced = true;
  int kills = 0, oldSeen = 0, newSeen = 0;
  for (int stop = 0;; ++stop) {
    ASSERT_LT(stop, 5000) << "the writer never ends";
    // Every run starts from the same folder, so that the stops count the same calls: with what an
    // earlier kill left behind, which is to be swept up on the way.
    fs::remove_all(folders.player);
    fs::create_directories(folders.player);
    std::ofstream(folders.player / ".qv-unfinished.1.0") << "left behind";
    if (!oldFile.empty()) std::ofstream(target, std::ios::binary) << oldFile;
    Outcome outcome = traced ? killAtStop(stop, work) : killAtCall(stop, work);
    if (outcome == Outcome::Refused) {
      ASSERT_EQ(stop, 0);
      traced = false;
      outcome = killAtCall(stop, work);
    }
    const std::string found = fs::exists(target) ? bytesOf(target) : std::string();
    if (outcome == Outcome::Ended) {
      EXPECT_TRUE(found == newFile);
      break;
    }
    ++kills;
    oldSeen += found == oldFile;
    newSeen += found == newFile;
    ASSERT_TRUE(found == oldFile || found == newFile)
        << "at stop " << stop << " the file has " << found.size() << " bytes";
  }
  std::printf("%d kills %s, %d found the old file, %d the new one\n", kills,
              traced ? "at system calls (ptrace)" : "at file calls (no ptrace here)", oldSeen,
              newSeen);
  // The test means something only where kills fell on both sides of the change.
  EXPECT_GE(kills, 8);
  EXPECT_GE(oldSeen, 4);
  EXPECT_GE(newSeen, traced ? 2 : 1);
  // The last run ended by itself and left nothing but the file.
  EXPECT_EQ(std::distance(fs::directory_iterator(folders.player), fs::directory_iterator()), 1);
}

TEST(AKilledSave, LeavesTheOldFileOrTheNewOneWhole) {
  const Folders folders;
  const std::string oldFile = contentOf('a'), newFile = contentOf('b');
  killEverywhere(folders, oldFile, newFile, [&] { save(folders, Durability::Flushed, newFile); });
}

TEST(AKilledSave, LeavesNoFileOrTheFirstOneWhole) {
  const Folders folders;
  const std::string newFile = contentOf('b');
  killEverywhere(folders, {}, newFile, [&] { save(folders, Durability::Flushed, newFile); });
}

TEST(AKilledSave, IsWholeWithoutAFlushToo) {
  const Folders folders;
  const std::string oldFile = contentOf('a'), newFile = contentOf('b');
  killEverywhere(folders, oldFile, newFile, [&] { save(folders, Durability::Renamed, newFile); });
}

TEST(AKilledSave, LeavesTheSettingsWhole) {
  const Folders folders;
  saveSettings(folders, 'a');
  const std::string oldFile = bytesOf(folders.player / "save0.dat");
  saveSettings(folders, 'b');
  const std::string newFile = bytesOf(folders.player / "save0.dat");
  ASSERT_NE(oldFile, newFile);
  killEverywhere(folders, oldFile, newFile, [&] { saveSettings(folders, 'b'); });
}

}  // namespace
}  // namespace qv
