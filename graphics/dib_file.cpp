// Pictures from files: what they are is told by their content, never by their name.

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "foundation/file.h"
#include "foundation/path_name.h"
#include "graphics/dib.h"
#include "graphics/dib_builder.h"
#include "graphics/little_endian.h"
#include "graphics/mcg_reader.h"
#include "graphics/sld_reader.h"
#include "platform/dialogs/dialogs.h"
#include "platform/services.h"

namespace qv {

namespace {

constexpr uint16_t BitmapMagic = 0x4D42;  // "BM"
constexpr size_t FileHeaderBytes = 14, FileSizeAt = 2, PixelsAtAt = 10;
constexpr uint32_t RcgMagic = 0x20474352;  // "RCG "
constexpr size_t RcgLengthAt = 4, RcgImageAt = 8;
constexpr const char* Creation = "QVDib - create";
constexpr const char* ResourceFolder = "C:\\res\\";
/// No resource is larger than a picture of the most pixels with 32 bits.
constexpr int64_t LargestResource = MostPixels * 4 + 4096;

size_t readInto(QVFile& file, int64_t at, std::span<uint8_t> target) {
  if (target.empty()) return 0;
  file.seek(at, SeekFrom::Start);
  return static_cast<size_t>(
      std::max(0, file.read(target.data(), static_cast<int32_t>(target.size()))));
}

/// At most `bytes` of the file from `at`.
HeapBlock blockOf(QVFile& file, int64_t at, int64_t bytes) {
  const int64_t there = std::clamp<int64_t>(file.size() - at, 0, INT32_MAX);
  HeapBlock block(static_cast<size_t>(std::clamp<int64_t>(bytes, 0, there)),
                  HeapBlock::Content::Undefined, Creation);
  block.shorten(readInto(file, at, block.span()));
  return block;
}

using FileHeader = std::array<uint8_t, FileHeaderBytes>;

bool isBitmap(const FileHeader& header) {
  return littleWord(header.data()) == BitmapMagic;
}

/// `blockAt` gives at most so many bytes of the file from a place in it.
template <class BlockAt>
void loadBitmap(const FileHeader& fileHeader, BlockAt blockAt, QVDib& dib) {
  const HeapBlock head = blockAt(FileHeaderBytes, MostHeaderBytes);
  const std::optional<StoredHeader> stored = StoredHeader::of(head.span());
  if (!stored) return;
  const HeapBlock table = blockAt(static_cast<int64_t>(FileHeaderBytes + stored->bytes),
                                  static_cast<int64_t>(stored->maskBytes + stored->tableBytes()));
  if (table.size() < stored->maskBytes + stored->tableBytes()) return;
  const int64_t fileSize = littleLong(&fileHeader[FileSizeAt]);
  const int64_t pixelsAt = littleLong(&fileHeader[PixelsAtAt]);
  DibBuilder::build(dib, *stored, table.span(), blockAt(pixelsAt, fileSize - pixelsAt));
  dib.PaletteUseTable.fill(0);
}

void loadPicture(const PackedPicture& picture, QVDib& dib) {
  if (!picture.empty()) dib.loadPacked(picture.head(), picture.pixels());
}

/// A name that stays in the folder of resources.
bool isResourceName(std::string_view name) {
  constexpr std::string_view Refused = "\\/:*?\"<>|";
  return !name.empty() && std::none_of(name.begin(), name.end(), [&](char byte) {
    return byte <= ' ' || byte > '~' || Refused.find(byte) != std::string_view::npos;
  });
}

/// The bytes of a resource file; empty when there is none.
HeapBlock resourceBytes(std::string_view name, const char* extension) {
  const std::string path = ResourceFolder + std::string(name) + extension;
  if (!QVFile::existsName(path.c_str())) return {};
  QVFile file;
  file.openName(path.c_str(), OpenExisting, GenericRead, ShareRead, AttributeNormal);
  HeapBlock bytes = blockOf(file, 0, LargestResource);
  file.close();
  return bytes;
}

}  // namespace

void QVDib::loadFromFile(QVFile& file) {
  clear();
  if (!file.isOpen()) return;
  const int64_t position = file.position();
  FileHeader fileHeader{};
  if (readInto(file, 0, fileHeader) == fileHeader.size() && isBitmap(fileHeader)) {
    const auto blockAt = [&](int64_t at, int64_t bytes) { return blockOf(file, at, bytes); };
    loadBitmap(fileHeader, blockAt, *this);
    return;
  }

  file.seek(position, SeekFrom::Start);
  McgReader mcg;
  mcg.attach(file);
  if (mcg.isValid()) {
    mcg.readPaletteUse(PaletteUseTable);
    loadPicture(mcg.decodeFile(), *this);
    return;
  }
  SldReader sld;
  sld.attach(file);
  if (sld.isValid()) loadPicture(sld.decode(), *this);
}

void QVDib::loadFromMemory(std::span<const uint8_t> image) {
  clear();
  FileHeader fileHeader{};
  std::copy_n(image.begin(), std::min(image.size(), fileHeader.size()), fileHeader.begin());
  if (image.size() >= fileHeader.size() && isBitmap(fileHeader)) {
    const auto blockAt = [&](int64_t at, int64_t bytes) {
      const auto from = std::min(image.size(), static_cast<size_t>(at));
      const int64_t there = static_cast<int64_t>(image.size() - from);
      const auto part =
          image.subspan(from, static_cast<size_t>(std::clamp<int64_t>(bytes, 0, there)));
      HeapBlock block(part.size(), HeapBlock::Content::Undefined, Creation);
      std::copy(part.begin(), part.end(), block.data());
      return block;
    };
    loadBitmap(fileHeader, blockAt, *this);
  } else if (image.size() >= 4 && littleLong(image.data()) == McgMagic) {
    McgReader::paletteUseOf(image, PaletteUseTable);
    loadPicture(McgReader().decodeMemory(image), *this);
  } else {
    loadPicture(SldReader().decodeMemory(image), *this);
  }
}

void QVDib::loadFromPathName(const QVPathName& path) {
  clear();
  QVPathName chosen(path);
  if (chosen.path().length() == 0) {
    FileDialogRequest request;
    request.folder = services().files->currentDirectory();
    if (!services().dialogs->fileDialog(request) || request.path.empty()) return;
    chosen.set(request.path.c_str());
  }
  QVFile file;
  file.open(chosen, OpenExisting, GenericRead, ShareRead, AttributeNormal);
  loadFromFile(file);
  file.close();
}

void QVDib::loadByName(const char* name) {
  QVPathName path;
  if (name && *name) path.set(name);
  loadFromPathName(path);
}

void QVDib::loadResource(const char* name) {
  clear();
  if (!name || !isResourceName(name)) return;
  // A bitmap in a program's resources has no file header; ours are files that any tool opens.
  const HeapBlock bitmap = resourceBytes(name, ".bmp");
  if (bitmap.size() > FileHeaderBytes && littleWord(bitmap.data()) == BitmapMagic) {
    const size_t pixelsAt = littleLong(&bitmap.data()[PixelsAtAt]);
    loadPacked(bitmap.span().subspan(FileHeaderBytes),
               bitmap.span().subspan(std::min(pixelsAt, bitmap.size())));
    return;
  }
  const HeapBlock rcg = resourceBytes(name, ".rcg");
  if (rcg.size() < RcgImageAt || littleLong(rcg.data()) != RcgMagic) return;
  const std::span<const uint8_t> image = rcg.span().subspan(RcgImageAt);
  McgReader mcg;
  loadPicture(mcg.decodeMemory(image.first(
                  std::min<size_t>(image.size(), littleLong(&rcg.data()[RcgLengthAt])))),
              *this);
}

void QVDib::loadResource(int32_t id) {
  loadResource(std::to_string(id).c_str());
}

}  // namespace qv
