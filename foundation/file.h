#pragma once

/// QVFile: a raw file by handle, with a box that offers to retry on every failure. Belongs to one
/// thread at a time. A file written afresh appears whole or not at all: `close` gives it its name
/// after writes without error, the destructor discards an unfinished one.

#include <cstdint>

#include "foundation/string.h"
#include "platform/files/file_system.h"
#include "platform/kernel/kernel.h"

namespace qv {

class QVPathName;

class QVFile {
 public:
  QVFile() = default;
  virtual ~QVFile();
  QVFile(const QVFile&) = delete;
  QVFile& operator=(const QVFile&) = delete;

  /// Throws CannotOpenException when the player gives up.
  void open(const QVPathName& path, uint32_t disposition, uint32_t access, uint32_t share,
            uint32_t attributes);
  /// The same with a scene's file name, expanded first; closes an open file.
  void openName(const char* name, uint32_t disposition, uint32_t access, uint32_t share,
                uint32_t attributes);
  /// Closes if open. A failure to finish a written file offers to retry, then throws
  /// CannotWriteException.
  void close();
  void setDurability(Durability durability);  ///< Flushed unless said otherwise

  /// Bytes read or written; short counts are no failure. Throw CannotReadException and
  /// CannotWriteException when the player gives up.
  int32_t read(void* buffer, int32_t size);
  int32_t write(const void* buffer, int32_t size);
  int64_t seek(int64_t offset, SeekFrom from);
  int64_t position();
  int64_t size();
  int64_t remaining() { return size() - position(); }

  /// Fills the time fields in local time and gives them; zero fields when closed.
  const CalendarTime& getTime(FileTime which);

  bool isOpen() const { return handle_ != FileSystem::NoHandle; }
  int handle() const { return handle_; }
  const QVString& name() const { return name_; }

  /// 1 if the attributes can be read; otherwise shows a notice and gives 0.
  static int exists(const QVPathName& path);
  static int existsName(const char* name);  ///< the same without a notice

 private:
  void openPath(const char* path, uint32_t disposition, uint32_t access, uint32_t share,
                uint32_t attributes);
  void forget();

  int handle_ = FileSystem::NoHandle;
  QVString name_;
  int64_t time_ = 0;
  CalendarTime calendar_;
};

}  // namespace qv
