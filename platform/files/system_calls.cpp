#include "platform/files/system_calls.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "platform/files/descriptor.h"

namespace qv {

namespace {

int openResolved(int folder, const char* relative, int flags, uint64_t resolve) {
  open_how how{};
  how.flags = static_cast<uint64_t>(flags | O_CLOEXEC);
  how.resolve = resolve;
  // EAGAIN: something was renamed while the kernel walked the path.
  for (int attempt = 0;; ++attempt) {
    const long result = syscall(SYS_openat2, folder, relative, &how, sizeof how);
    if (result >= 0 || errno != EAGAIN || attempt == 8) return static_cast<int>(result);
  }
}

std::string realPath(const std::string& path) {
  const std::unique_ptr<char, void (*)(void*)> found(realpath(path.c_str(), nullptr), std::free);
  return found ? found.get() : std::string();
}

/// For links that are absolute but lead back inside, which RESOLVE_BENEATH refuses, and for
/// machines without openat2: the canonical path decides, and is then opened without following
/// anything in its last element.
int openCanonical(int folder, const char* relative, int flags) {
  const std::string root = realPath("/proc/self/fd/" + std::to_string(folder));
  const std::string target = root.empty() ? root : realPath(root + "/" + relative);
  if (target.empty()) return -1;  // errno is realpath's
  const std::string inside = root == "/" ? root : root + "/";
  if (target == root) return openat(folder, ".", flags | O_CLOEXEC);
  if (target.compare(0, inside.size(), inside) != 0) {
    errno = EXDEV;
    return -1;
  }
  const std::string rest = target.substr(inside.size());
  const int opened =
      openResolved(folder, rest.c_str(), flags, RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS);
  if (opened >= 0 || (errno != ENOSYS && errno != EPERM)) return opened;
  return openat(folder, rest.c_str(), flags | O_CLOEXEC | O_NOFOLLOW);
}

int machineOpenBeneath(int folder, const char* relative, int flags) {
  const int opened = openResolved(folder, relative, flags, RESOLVE_BENEATH | RESOLVE_NO_MAGICLINKS);
  // Some containers answer unknown calls with EPERM.
  if (opened >= 0 || (errno != EXDEV && errno != ENOSYS && errno != EPERM)) return opened;
  return openCanonical(folder, relative, flags);
}

int machineCreateIn(int folder, const char* name, unsigned mode) {
  return openat(folder, name, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
}

template <class Call>
auto untilNotInterrupted(Call call) {
  for (;;) {
    const auto result = call();
    if (result >= 0 || errno != EINTR) return result;
  }
}

ssize_t machineReadAt(int file, void* buffer, size_t size, off_t at) {
  return untilNotInterrupted([&] { return pread(file, buffer, size, at); });
}
ssize_t machineWriteAt(int file, const void* buffer, size_t size, off_t at) {
  return untilNotInterrupted([&] { return pwrite(file, buffer, size, at); });
}
int machineSync(int file) {
  return untilNotInterrupted([&] { return fsync(file); });
}
int machineRenameIn(int folder, const char* from, const char* to) {
  return renameat(folder, from, folder, to);
}
int machineRemoveIn(int folder, const char* name) {
  return unlinkat(folder, name, 0);
}

constexpr FileCalls Machine{machineOpenBeneath, machineCreateIn, machineReadAt,  machineWriteAt,
                            machineSync,        machineRenameIn, machineRemoveIn};
FileCalls inUse = Machine;

}  // namespace

FileCalls& fileCalls() {
  return inUse;
}
const FileCalls& machineFileCalls() {
  return Machine;
}

}  // namespace qv
