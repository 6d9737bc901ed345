#pragma once

/// What the readers of picture files share: a file and the position at which it stood when it was
/// given. Every operation leaves the file there. One thread at a time.

#include <cstddef>
#include <cstdint>
#include <span>

#include "foundation/file.h"
#include "graphics/heap_block.h"

namespace qv {

/// A decoded picture: 40 bytes of header, what stands between header and pixels, the pixels with
/// the bottom row first. Empty: there is no picture.
struct PackedPicture {
  HeapBlock block;
  size_t pixelsAt = 0;

  bool empty() const { return block.empty(); }
  std::span<const uint8_t> head() const { return block.span().first(pixelsAt); }
  std::span<const uint8_t> pixels() const { return block.span().subspan(pixelsAt); }
  std::span<uint8_t> pixels() { return block.span().subspan(pixelsAt); }
};

class PictureReader {
 public:
  virtual ~PictureReader() = default;
  PictureReader(const PictureReader&) = delete;
  PictureReader& operator=(const PictureReader&) = delete;

  /// Remembers the file and its position; a closed file is passed over. The file is borrowed.
  virtual void attach(QVFile& file);
  virtual bool isSupported() { return true; }
  virtual bool isValid() = 0;  ///< whether the file's magic is this reader's

 protected:
  PictureReader() = default;
  bool attached() const { return file_ && file_->isOpen(); }
  /// Reads from `offset` bytes behind the entry position; gives the bytes read.
  size_t readAt(int64_t offset, std::span<uint8_t> target);
  size_t writeAt(int64_t offset, std::span<const uint8_t> source);
  /// What lies behind `offset`, but no more than `limit` bytes.
  HeapBlock readRest(int64_t offset, size_t limit);

 private:
  QVFile* file_ = nullptr;
  int64_t entry_ = 0;
};

}  // namespace qv
