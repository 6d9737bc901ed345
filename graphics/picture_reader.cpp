#include "graphics/picture_reader.h"

#include <algorithm>

namespace qv {

void PictureReader::attach(QVFile& file) {
  if (!file.isOpen()) return;
  file_ = &file;
  entry_ = file.position();
}

size_t PictureReader::readAt(int64_t offset, std::span<uint8_t> target) {
  if (!attached() || target.empty()) return 0;
  file_->seek(entry_ + offset, SeekFrom::Start);
  const int32_t bytes = file_->read(target.data(), static_cast<int32_t>(target.size()));
  file_->seek(entry_, SeekFrom::Start);
  return bytes > 0 ? static_cast<size_t>(bytes) : 0;
}

size_t PictureReader::writeAt(int64_t offset, std::span<const uint8_t> source) {
  if (!attached() || source.empty()) return 0;
  file_->seek(entry_ + offset, SeekFrom::Start);
  const int32_t bytes = file_->write(source.data(), static_cast<int32_t>(source.size()));
  file_->seek(entry_, SeekFrom::Start);
  return bytes > 0 ? static_cast<size_t>(bytes) : 0;
}

HeapBlock PictureReader::readRest(int64_t offset, size_t limit) {
  if (!attached()) return {};
  const int64_t there = file_->size() - entry_ - offset;
  if (there <= 0) return {};
  const size_t bytes = static_cast<size_t>(std::min<int64_t>(
      there, static_cast<int64_t>(std::min<size_t>(limit, static_cast<size_t>(INT32_MAX)))));
  HeapBlock block(bytes, HeapBlock::Content::Undefined, "QVDib - create");
  block.shorten(readAt(offset, block.span()));
  return block;
}

}  // namespace qv
