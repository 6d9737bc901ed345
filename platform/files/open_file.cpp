#include "platform/files/open_file.h"

#include <algorithm>
#include <cerrno>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>

#include "platform/files/file_errors.h"
#include "platform/files/system_calls.h"
#include "platform/kernel/kernel.h"
#include "platform/services.h"

namespace qv {

namespace {

constexpr int64_t MaxPosition = 0xFFFFFFFF;  // of the classic platform
constexpr size_t CopyBytes = 64 * 1024;

int64_t millisOf(const statx_timestamp& time) {
  return time.tv_sec * 1000 + time.tv_nsec / 1'000'000;
}

}  // namespace

uint32_t OpenFile::begin() {
  int error = 0;
  fresh_ = FreshFile::begin(std::move(target_.folder), target_.name, target_.mode, error);
  return fileErrorOfErrno(error);
}

/// Changes to an existing file are made to a copy, which takes its place in `commit`.
uint32_t OpenFile::copySource() {
  if (!target_.folder) return FileInvalidHandle;
  // The target stays ours until the copy is whole, so that a failed one can be tried again.
  Descriptor again(fcntl(target_.folder.get(), F_DUPFD_CLOEXEC, 0));
  if (!again) return fileErrorOfErrno(errno);
  int error = 0;
  auto copy = FreshFile::begin(std::move(again), target_.name, target_.mode, error);
  if (!copy) return fileErrorOfErrno(error);
  std::vector<char> block(CopyBytes);
  for (int64_t at = 0;;) {
    const ssize_t count =
        fileCalls().readAt(source_.get(), block.data(), block.size(), static_cast<off_t>(at));
    if (count < 0) return fileErrorOfErrno(errno);
    if (count == 0) break;
    error = copy->write(at, block.data(), static_cast<size_t>(count));
    if (error != 0) return fileErrorOfErrno(error);
    at += count;
  }
  fresh_ = std::move(copy);
  return FileOk;
}

FileSystem::Transferred OpenFile::read(void* buffer, size_t size) {
  if ((access_ & GenericRead) == 0) return {-1, FileAccessDenied};
  size_t count = 0;
  if (fresh_) {
    if (const int error = fresh_->read(position_, buffer, size, count)) {
      return {-1, fileErrorOfErrno(error)};
    }
  } else {
    const ssize_t got =
        fileCalls().readAt(source_.get(), buffer, size, static_cast<off_t>(position_));
    if (got < 0) return {-1, fileErrorOfErrno(errno)};
    count = static_cast<size_t>(got);
  }
  position_ += static_cast<int64_t>(count);
  return {static_cast<int64_t>(count), FileOk};
}

FileSystem::Transferred OpenFile::write(const void* buffer, size_t size) {
  if ((access_ & GenericWrite) == 0) return {-1, FileAccessDenied};
  if (size == 0) return {0, FileOk};
  uint32_t error = FileOk;
  if (static_cast<uint64_t>(position_) + size > static_cast<uint64_t>(MaxPosition)) {
    error = FileDiskFull;
  } else if (!fresh_) {
    error = copySource();
  }
  if (error == FileOk) error = fileErrorOfErrno(fresh_->write(position_, buffer, size));
  if (error != FileOk) {
    if (!failed_) failed_ = FailedWrite{position_, size, error};
    return {-1, error};
  }
  if (failed_ && failed_->at == position_ && failed_->size == size) failed_.reset();
  position_ += static_cast<int64_t>(size);
  return {static_cast<int64_t>(size), FileOk};
}

int64_t OpenFile::seek(int64_t offset, SeekFrom from) {
  int64_t base = 0;
  switch (from) {
    case SeekFrom::Start:
      break;
    case SeekFrom::Current:
      base = position_;
      break;
    case SeekFrom::End:
      base = size();
      break;
    default:
      return -1;
  }
  if (base < 0 || offset < -base || offset > MaxPosition - base) return -1;
  position_ = base + offset;
  return position_;
}

int64_t OpenFile::size() const {
  if (fresh_) return fresh_->size();
  struct stat status {};
  return fstat(source_.get(), &status) == 0 ? static_cast<int64_t>(status.st_size) : -1;
}

std::optional<int64_t> OpenFile::time(FileTime which) const {
  Kernel& kernel = Kernel::current();
  if (fresh_) return kernel.wallClockMillis();
  struct statx status {};
  if (statx(source_.get(), "", AT_EMPTY_PATH, STATX_BASIC_STATS | STATX_BTIME, &status) != 0) {
    return std::nullopt;
  }
  // In simulated time only the time of writing is the simulation's; the machine sets the others.
  if (kernel.simulated()) which = FileTime::Write;
  switch (which) {
    case FileTime::Write:
      return millisOf(status.stx_mtime);
    case FileTime::Access:
      return millisOf(status.stx_atime);
    case FileTime::Creation:
      return millisOf((status.stx_mask & STATX_BTIME) != 0 ? status.stx_btime : status.stx_mtime);
  }
  return std::nullopt;
}

uint32_t OpenFile::commit() {
  if (failed_) return failed_->error;
  if (!fresh_) return FileOk;
  Kernel& kernel = Kernel::current();
  const auto modified =
      kernel.simulated() ? std::optional<int64_t>(kernel.wallClockMillis()) : std::nullopt;
  const int error = fresh_->commit(durability_ == Durability::Flushed, modified);
  if (error == 0) trace("file", traceName_);
  return fileErrorOfErrno(error);
}

}  // namespace qv
