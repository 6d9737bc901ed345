#pragma once

/// Register files: arrays with a guarded index, and their self-describing blocks in files. All
/// state of a running game lives in them. Scenario thread only; no lock.

#include <cstdint>

#include "foundation/string.h"
#include "scenario/file_block.h"

namespace qv {

class QVFile;

/// Numeric registers: 32-bit words, signed or unsigned as each number's user takes them.
class QVReg {
 public:
  QVReg() = default;
  QVReg(const QVReg&) = delete;
  QVReg& operator=(const QVReg&) = delete;
  virtual ~QVReg();
  /// Writes the block; a closed file is passed over.
  virtual void save(QVFile& file) const;
  /// Replaces the table by the block's; a foreign header, or a count that the file cannot hold,
  /// leaves table and file position as they were.
  virtual void load(QVFile& file);

  /// A new table of zeros; a count of zero or less changes nothing.
  /// Throws NotEnoughMemoryException.
  void create(int32_t count);
  void release();
  void swap(QVReg& other) noexcept;
  int32_t count() const { return count_; }

  /// The entry. A bad index is reported in a box and gives entry 0, on purpose.
  int32_t& item(int32_t index) {
    if (static_cast<uint32_t>(index) < static_cast<uint32_t>(count_)) [[likely]]
      return table_[index];
    return badItem(index);
  }

 private:
  int32_t& badItem(int32_t index);
  int32_t* table_ = nullptr;
  int32_t count_ = 0;
};

/// String registers.
class QVStrReg {
 public:
  QVStrReg() = default;
  QVStrReg(const QVStrReg&) = delete;
  QVStrReg& operator=(const QVStrReg&) = delete;
  virtual ~QVStrReg();
  virtual void save(QVFile& file) const;
  virtual void load(QVFile& file);

  void create(int32_t count);
  void release();
  void swap(QVStrReg& other) noexcept;
  int32_t count() const { return count_; }
  QVString& item(int32_t index) {
    if (static_cast<uint32_t>(index) < static_cast<uint32_t>(count_)) [[likely]]
      return table_[index];
    return badItem(index);
  }

 private:
  QVString& badItem(int32_t index);
  QVString* table_ = nullptr;
  int32_t count_ = 0;
};

}  // namespace qv
