#pragma once

/// The calls of the operating system that can fail in a player's hands: a full disk, a missing
/// permission, a drive that went away. They go through one table, so that a test can let each of
/// them fail where the machine itself would not (root is refused nothing). A test that changes the
/// table does so while no other thread touches files.

#include <cstddef>

#include <sys/types.h>

namespace qv {

struct FileCalls {
  /// Opens a path below an open folder; never leaves it, whatever links say. -1 and errno.
  int (*openBeneath)(int folder, const char* relative, int flags);
  /// Makes a new file in an open folder; refuses an existing name. -1 and errno.
  int (*createIn)(int folder, const char* name, unsigned mode);
  ssize_t (*readAt)(int file, void* buffer, size_t size, off_t at);
  ssize_t (*writeAt)(int file, const void* buffer, size_t size, off_t at);
  int (*sync)(int file);
  int (*renameIn)(int folder, const char* from, const char* to);
  int (*removeIn)(int folder, const char* name);
};

/// The table in use. At first the machine's own calls.
FileCalls& fileCalls();
/// The machine's own calls, to go back to.
const FileCalls& machineFileCalls();

}  // namespace qv
