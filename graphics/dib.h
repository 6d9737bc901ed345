#pragma once

/// QVDib: a bitmap in ordinary memory, the form in which every picture arrives from a file or a
/// resource before it is put onto a surface. Pixels lie bottom row first, rows padded to 4 bytes.
/// Belongs to one thread at a time.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "foundation/string.h"
#include "graphics/heap_block.h"

namespace qv {

class QVFile;
class QVPathName;

/// The classic platform's bitmap header, 40 bytes, little endian in files.
struct BitmapInfoHeader {
  uint32_t size = 40;
  int32_t width = 0, height = 0;
  uint16_t planes = 1, bitCount = 8;
  uint32_t compression = 0, sizeImage = 0;
  int32_t xPelsPerMeter = 0, yPelsPerMeter = 0;
  uint32_t coloursUsed = 0, coloursImportant = 0;

  /// Both read coloursUsed only when the header reaches it; they differ on purpose with
  /// compression 3.
  int32_t colourCount() const;
  int32_t colourTableWordCount() const;
};
static_assert(sizeof(BitmapInfoHeader) == 40);

/// No picture may have more pixels: what announces more is refused as damaged.
inline constexpr int64_t MostPixels = 64'000'000;

class QVDib {
 public:
  QVDib();
  virtual ~QVDib() = default;

  void clear();  ///< the palette use table stays
  bool empty() const { return header_.empty(); }
  /// Width and height of the picture, 0 by 0 when empty.
  int32_t width() const;
  int32_t height() const;
  int32_t bitCount() const;
  const BitmapInfoHeader& header() const;  ///< asserts that there is one
  /// The header block: 40 bytes, three mask words with compression 3, the colour table. It is
  /// never shorter than its header tells.
  std::span<const uint8_t> headerBlock() const { return header_.span(); }
  /// Entries blue, green, red, fourth, at most 256; empty when there is no table. They begin 40
  /// bytes into the block, with compression 3 at 44.
  std::span<const uint32_t> colours() const;
  /// The same table as far as surfaces take it: as many words as `colourTableWordCount` tells and
  /// the block holds. With compression 3 these are more than the colours.
  std::span<const uint32_t> tableWords() const;
  /// What the source held: damaged pictures, and packed ones whose size field is small, have fewer
  /// bytes than their rows need, others have more.
  std::span<const uint8_t> bits() const { return bits_.span(); }
  int32_t strideBytes() const;  ///< of a row, rounded up to 4

  int32_t colourCount() const;  ///< the two differ on purpose with compression 3
  int32_t colourTableWordCount() const;
  bool hasColourTable() const;

  /// 0: the picture owns the colour; anything else: the index is free.
  std::array<uint32_t, 256> PaletteUseTable;

  /// Detection by content at the file's position: BMP, MCG, SLD. Empty when it is none of them or
  /// damaged. Throws NotEnoughMemoryException and the file's exceptions.
  void loadFromFile(QVFile& file);
  /// The same from a whole file in memory.
  void loadFromMemory(std::span<const uint8_t> image);
  /// By path; an empty path asks the player for a file.
  void loadFromPathName(const QVPathName& path);
  void loadByName(const char* name);
  /// A resource of the game by number or name: the bitmap "C:\res\NAME.bmp", else the "RCG"
  /// "C:\res\NAME.rcg". Empty when there is none; no other file is touched, and no box shown.
  void loadResource(const char* name);
  void loadResource(int32_t id);
  /// From a packed bitmap in memory; `pixels` takes them from there instead of behind the header.
  /// Copies what the block holds and no more: colours that are missing are zero, pixels that are
  /// missing are missing.
  void loadPacked(std::span<const uint8_t> block);
  void loadPacked(std::span<const uint8_t> block, std::span<const uint8_t> pixels);

 private:
  friend class DibBuilder;
  HeapBlock header_, bits_;
};

}  // namespace qv
