#include "platform/files/fresh_file.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include "platform/files/classic_path.h"
#include "platform/files/folder_root.h"
#include "platform/files/system_calls.h"

namespace qv {

namespace {

// Saves and settings fit whole: one write, and no failure before the commit.
constexpr size_t BufferBytes = 64 * 1024;
constexpr int NameAttempts = 1000;

std::atomic<unsigned> unfinishedCount{0};

/// A file that is ours alone: no cleaner took it between its creation and its lock.
Descriptor createLocked(int folder, std::string& name, unsigned mode, int& error) {
  for (int attempt = 0; attempt < NameAttempts; ++attempt) {
    name = std::string(UnfinishedPrefix) + std::to_string(getpid()) + "." +
           std::to_string(unfinishedCount++);
    Descriptor file(fileCalls().createIn(folder, name.c_str(), mode));
    if (!file) {
      error = errno;
      if (error == EEXIST) continue;
      return file;
    }
    if (flock(file.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) continue;
    struct stat status {};
    if (fstat(file.get(), &status) == 0 && status.st_nlink == 0) continue;
    error = 0;
    return file;
  }
  error = EBUSY;
  return Descriptor();
}

}  // namespace

FreshFile::FreshFile(Descriptor folder, Descriptor file, std::string name,
                     std::string unfinishedName)
    : folder_(std::move(folder)),
      file_(std::move(file)),
      name_(std::move(name)),
      unfinishedName_(std::move(unfinishedName)) {}

std::unique_ptr<FreshFile> FreshFile::begin(Descriptor folder, std::string name, unsigned mode,
                                            int& error) {
  std::string unfinished;
  Descriptor file = createLocked(folder.get(), unfinished, mode, error);
  if (!file) return nullptr;
  return std::unique_ptr<FreshFile>(
      new FreshFile(std::move(folder), std::move(file), std::move(name), std::move(unfinished)));
}

FreshFile::~FreshFile() {
  if (!committed_) fileCalls().removeIn(folder_.get(), unfinishedName_.c_str());
}

int FreshFile::flush() {
  size_t done = 0;
  int error = 0;
  while (done < buffer_.size() && error == 0) {
    const ssize_t count =
        fileCalls().writeAt(file_.get(), buffer_.data() + done, buffer_.size() - done,
                            static_cast<off_t>(bufferAt_ + static_cast<int64_t>(done)));
    if (count > 0) {
      done += static_cast<size_t>(count);
    } else {
      error = count < 0 ? errno : ENOSPC;
    }
  }
  bufferAt_ += static_cast<int64_t>(done);
  written_ = std::max(written_, bufferAt_);
  buffer_.erase(buffer_.begin(), buffer_.begin() + static_cast<std::ptrdiff_t>(done));
  return error;
}

int FreshFile::write(int64_t at, const void* data, size_t size) {
  if (size == 0) return 0;
  const bool follows = at == bufferAt_ + static_cast<int64_t>(buffer_.size());
  if (!follows || buffer_.size() + size > BufferBytes) {
    if (const int error = flush()) return error;
    bufferAt_ = at;
  }
  const auto* bytes = static_cast<const std::byte*>(data);
  // A block larger than the buffer goes through it whole, so that a failure half way can be
  // taken back here, and tried again.
  buffer_.insert(buffer_.end(), bytes, bytes + size);
  if (buffer_.size() <= BufferBytes) return 0;
  const int error = flush();
  if (error != 0) buffer_.clear();
  return error;
}

int FreshFile::read(int64_t at, void* buffer, size_t size, size_t& count) {
  count = 0;
  if (const int error = flush()) return error;
  const ssize_t got = fileCalls().readAt(file_.get(), buffer, size, static_cast<off_t>(at));
  if (got < 0) return errno;
  count = static_cast<size_t>(got);
  return 0;
}

int FreshFile::sync() {
  // After a failed flush the machine takes the pages for clean, and the next flush would say yes
  // without writing them: they are written again first.
  if (syncFailed_) {
    std::vector<std::byte> block(BufferBytes);
    for (int64_t at = 0; at < written_;) {
      size_t count = 0;
      if (const int error = read(at, block.data(), block.size(), count)) return error;
      if (count == 0) return EIO;
      block.resize(count);
      bufferAt_ = at;
      buffer_.swap(block);
      if (const int error = flush()) return error;
      at += static_cast<int64_t>(count);
      block.resize(BufferBytes);
    }
  }
  syncFailed_ = fileCalls().sync(file_.get()) != 0;
  return syncFailed_ ? errno : 0;
}

int64_t FreshFile::size() const {
  return buffer_.empty() ? written_
                         : std::max(written_, bufferAt_ + static_cast<int64_t>(buffer_.size()));
}

/// Until the folder is on the disk too, a loss of power may bring the old name's file back.
int FreshFile::syncFolder() const {
  // What leads to the folder may not have been opened for such a call.
  const Descriptor folder(openat(folder_.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!folder || fileCalls().sync(folder.get()) == 0) return 0;
  // There are disks that know no such call for folders.
  return errno == EINVAL || errno == ENOTSUP ? 0 : errno;
}

int FreshFile::commit(bool flushed, std::optional<int64_t> modifiedMillis) {
  if (!committed_) {
    if (const int error = takeName(flushed, modifiedMillis)) return error;
    committed_ = true;
  }
  return flushed ? syncFolder() : 0;
}

int FreshFile::takeName(bool flushed, std::optional<int64_t> modifiedMillis) {
  if (const int error = flush()) return error;
  struct stat old {};
  struct stat fresh {};
  // A file that the player gave other permissions keeps them.
  if (fstatat(folder_.get(), name_.c_str(), &old, AT_SYMLINK_NOFOLLOW) == 0 &&
      S_ISREG(old.st_mode) && fstat(file_.get(), &fresh) == 0 && old.st_mode != fresh.st_mode) {
    if (fchmod(file_.get(), old.st_mode & 0777) != 0) return errno;
  }
  if (modifiedMillis) {
    int64_t seconds = *modifiedMillis / 1000, millis = *modifiedMillis % 1000;
    if (millis < 0) {
      millis += 1000;
      seconds -= 1;
    }
    timespec time{};
    time.tv_sec = static_cast<time_t>(seconds);
    time.tv_nsec = static_cast<long>(millis * 1'000'000);
    const timespec times[2] = {time, time};
    if (futimens(file_.get(), times) != 0) return errno;
  }
  if (flushed) {
    if (const int error = sync()) return error;
  }
  const int renamed = fileCalls().renameIn(folder_.get(), unfinishedName_.c_str(), name_.c_str());
  return renamed == 0 ? 0 : errno;
}

void FreshFile::removeLeftovers(int folder) {
  for (const std::string& name : namesIn(folder)) {
    if (!isUnfinishedName(name)) continue;
    const Descriptor file(
        openat(folder, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (file && flock(file.get(), LOCK_EX | LOCK_NB) == 0) unlinkat(folder, name.c_str(), 0);
  }
}

int replaceFile(const char* folder, const std::string& name, const std::string& bytes, bool flushed,
                std::optional<int64_t> modifiedMillis) {
  Descriptor opened(::open(folder, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!opened) return errno;
  FreshFile::removeLeftovers(opened.get());
  int error = 0;
  const auto file = FreshFile::begin(std::move(opened), name, 0644, error);
  if (file) error = file->write(0, bytes.data(), bytes.size());
  if (file && error == 0) error = file->commit(flushed, modifiedMillis);
  return error;
}

}  // namespace qv
