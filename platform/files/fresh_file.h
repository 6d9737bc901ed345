#pragma once

/// A file in the making: written beside its name and given that name in one step, so that a kill
/// at any moment leaves the old file or the new one whole. An unfinished file is locked by its
/// writer as long as it lives; those that nobody locks are leftovers of a kill and are removed.
/// Belongs to one thread at a time.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/files/descriptor.h"

namespace qv {

class FreshFile {
 public:
  /// Starts a file that will be `name` in the open folder. Null and errno in `error` on failure.
  static std::unique_ptr<FreshFile> begin(Descriptor folder, std::string name, unsigned mode,
                                          int& error);
  ~FreshFile();  ///< removes what was not committed
  FreshFile(const FreshFile&) = delete;
  FreshFile& operator=(const FreshFile&) = delete;

  // The calls below give 0 or errno. After a failure nothing is lost: the call can be tried again.

  /// All or nothing as seen from here: what is accepted is buffered until the disk takes it.
  int write(int64_t at, const void* data, size_t size);
  /// `count` gets the bytes read, fewer at the end.
  int read(int64_t at, void* buffer, size_t size, size_t& count);
  int64_t size() const;
  /// Takes the name. With `flushed` the bytes are on the disk before, and the name is when it
  /// returns; where the disk refuses the name alone, the file stands and a further call asks the
  /// disk again. `modifiedMillis` (UTC since 1970) becomes its time where the machine's clock is
  /// not the one that counts.
  int commit(bool flushed, std::optional<int64_t> modifiedMillis);

  /// Removes the leftovers of killed writers in an open folder.
  static void removeLeftovers(int folder);

 private:
  FreshFile(Descriptor folder, Descriptor file, std::string name, std::string unfinishedName);
  int flush();
  int sync();
  int takeName(bool flushed, std::optional<int64_t> modifiedMillis);
  int syncFolder() const;

  Descriptor folder_, file_;
  std::string name_, unfinishedName_;
  std::vector<std::byte> buffer_;
  int64_t bufferAt_ = 0;  ///< the buffer's place in the file
  int64_t written_ = 0;   ///< the size on the disk
  bool syncFailed_ = false;
  bool committed_ = false;
};

/// Replaces a file by these bytes, whole or not at all; 0 or errno.
int replaceFile(const char* folder, const std::string& name, const std::string& bytes, bool flushed,
                std::optional<int64_t> modifiedMillis);

}  // namespace qv
