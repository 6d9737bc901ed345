#include <algorithm>
#include <cstring>
#include <mutex>
#include <string_view>

#include "foundation/file.h"
#include "foundation/path_name.h"
#include "graphics/surface.h"
#include "graphics/surface_size.h"
#include "graphics/tagged_record.h"

// Bitmaps into QVVSurface, and files of it.

namespace qv {

namespace {

constexpr int32_t BitCount = 8;

bool fits(const QVDib& dib) {
  return !dib.empty() && dib.bitCount() == BitCount;
}

}  // namespace

void QVVSurface::takeColours(const QVDib& dib) {
  const std::span<const uint32_t> words = dib.tableWords();
  std::copy_n(words.begin(), std::min(words.size(), stored_.size()), stored_.begin());
  showStored();
}

void QVVSurface::takePixels(const QVDib& dib) {
  const std::span<const uint8_t> bits = dib.bits();
  const SurfaceSize size = bits.empty() ? SurfaceSize{} : surfaceSize(dib.width(), dib.height());
  const size_t stride = static_cast<size_t>(strideOf(size.width));
  const size_t wanted = stride * static_cast<size_t>(size.height);
  // What lies beside the pixels is zero, whatever the bitmap has there.
  const bool allCopied = static_cast<size_t>(size.width) == stride && bits.size() >= wanted;
  remake(size.width, size.height, !allCopied);
  if (allCopied) {
    if (wanted) std::memcpy(bits_.data(), bits.data(), wanted);
    return;
  }
  for (size_t at = 0; at < std::min(wanted, bits.size()); at += stride)
    std::memcpy(bits_.data() + at, bits.data() + at,
                std::min(static_cast<size_t>(size.width), bits.size() - at));
}

void QVVSurface::assignDib(const QVDib& dib) {
  if (!fits(dib)) return;
  const std::lock_guard guard(lock_);
  takePixels(dib);
  takeColours(dib);
  // Files made of this surface tell the bitmap's resolution and the like again. What would make
  // them unreadable does not come along: a longer header, a compression, a wrong size.
  const BitmapInfoHeader& given = dib.header();
  header_.xPelsPerMeter = given.xPelsPerMeter;
  header_.yPelsPerMeter = given.yPelsPerMeter;
  header_.coloursImportant = given.coloursImportant;
  if (given.sizeImage == bits_.size()) header_.sizeImage = given.sizeImage;
}

void QVVSurface::blitDib(const QVDib& dib, ColourKey key) {
  if (!fits(dib)) return;
  QVVSurface picture;
  picture.assignDib(dib);
  picture.blit(*this, 0, 0, 0, 0, picture.width(), picture.height(), key);
}

void QVVSurface::loadFromPathName(const QVPathName& path) {
  QVDib dib;
  dib.loadFromPathName(path);
  assignDib(dib);
}

void QVVSurface::loadFromFile(const char* name) {
  loadByName(name);
}

void QVVSurface::loadByName(const char* name) {
  QVDib dib;
  dib.loadByName(name);
  assignDib(dib);
}

void QVVSurface::loadResource(int32_t id) {
  QVDib dib;
  dib.loadResource(id);
  assignDib(dib);
}

HeapBlock QVVSurface::infoBlockAndPixels() const {
  const std::lock_guard guard(lock_);
  BitmapInfoHeader header = header_;
  header.width = width_;
  header.height = height_;
  header.bitCount = BitCount;
  HeapBlock bytes(sizeof header + sizeof stored_ + bits_.size(), HeapBlock::Content::Undefined,
                  "QVHeap - malloc");
  std::memcpy(bytes.data(), &header, sizeof header);
  std::memcpy(bytes.data() + sizeof header, stored_.data(), sizeof stored_);
  if (bits_.size())
    std::memcpy(bytes.data() + sizeof header + sizeof stored_, bits_.data(), bits_.size());
  return bytes;
}

void QVVSurface::saveTagged(QVFile& file) {
  writeTagged(file, TaggedSurface, infoBlockAndPixels().span());
}

void QVVSurface::loadTagged(QVFile& file) {
  takeTagged(file);
}

bool QVVSurface::takeTagged(QVFile& file) {
  const HeapBlock record = readTagged(file, TaggedSurface);
  if (record.empty()) return false;
  QVDib dib;
  dib.loadPacked(record.span());
  if (!dib.empty()) {
    assignDib(dib);
    return true;
  }
  // No bitmap tells of a surface without extent.
  BitmapInfoHeader header;
  std::memcpy(&header, record.data(), sizeof header);
  const std::lock_guard guard(lock_);
  remake(header.width, header.height, true);
  std::memcpy(stored_.data(), record.data() + sizeof header, sizeof stored_);
  showStored();
  return true;
}

void QVVSurface::writeBmp(QVFile& file) {
  writeBitmapFile(file, TaggedSurface, infoBlockAndPixels().span());
}

void QVVSurface::saveBmpByName(const char* path) {
  constexpr std::string_view Extension = ".bmp";
  QVPathName name(path);
  name.changeExtension(Extension.data());
  QVString text = name.path();
  if (!text.view().ends_with(Extension)) text.append(Extension.data());
  QVFile file;
  file.openName(text.text(), CreateAlways, GenericRead | GenericWrite, ShareRead, AttributeNormal);
  writeBmp(file);
  file.close();
}

}  // namespace qv
