#pragma once

/// What stands behind a handle of FileSystem: a file that is read, and beside it the one that is
/// written in its place, from the first write on. Belongs to one thread at a time.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/files/descriptor.h"
#include "platform/files/file_system.h"
#include "platform/files/fresh_file.h"

namespace qv {

/// Where a written file goes.
struct WriteTarget {
  Descriptor folder;
  std::string name;
  unsigned mode = 0644;  ///< of a new file
};

class OpenFile {
 public:
  /// `source` empty: the file is made afresh, at once.
  OpenFile(Descriptor source, uint32_t access, std::string traceName)
      : source_(std::move(source)), access_(access), traceName_(std::move(traceName)) {}

  void setTarget(WriteTarget target) { target_ = std::move(target); }
  /// Starts the fresh file; FileOk or the error.
  uint32_t begin();
  void setDurability(Durability durability) { durability_ = durability; }

  FileSystem::Transferred read(void* buffer, size_t size);
  FileSystem::Transferred write(const void* buffer, size_t size);
  int64_t seek(int64_t offset, SeekFrom from);
  int64_t size() const;
  std::optional<int64_t> time(FileTime which) const;
  uint32_t commit();

 private:
  struct FailedWrite {
    int64_t at = 0;
    size_t size = 0;
    uint32_t error = FileOk;
  };

  uint32_t copySource();

  Descriptor source_;
  uint32_t access_;
  std::string traceName_;  ///< UTF-8
  WriteTarget target_;
  std::unique_ptr<FreshFile> fresh_;
  Durability durability_ = Durability::Flushed;
  int64_t position_ = 0;
  std::optional<FailedWrite> failed_;
};

}  // namespace qv
