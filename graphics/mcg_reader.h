#pragma once

/// McgReader: the format of the game's own pictures. A head of 64 bytes, three mask words where the
/// compression field is 3, the palette, and the pixels with the top row first as one LZSS stream.
/// Numbers are little endian; there is no check sum. A palette entry's fourth byte is its mark: 0
/// for a colour that the picture uses, anything else for an index that it leaves free.

#include <array>
#include <cstdint>
#include <optional>
#include <span>

#include "graphics/dib.h"
#include "graphics/picture_reader.h"

namespace qv {

inline constexpr uint32_t McgMagic = 0x2047434D;  ///< "MCG "
inline constexpr size_t McgHeadBytes = 64;

/// The fields of the head that mean something. The others are unread and written as zero.
struct McgHead {
  int32_t width = 0, height = 0;
  uint16_t bitCount = 8;
  uint32_t pixelBytes = 0;  ///< of the expanded pixels, row padding included
  uint32_t entries = 0;
  uint32_t compression = 0;

  /// Nothing when the bytes are fewer than a head or begin with another magic.
  static std::optional<McgHead> of(std::span<const uint8_t> bytes);
  std::array<uint8_t, McgHeadBytes> bytes() const;
  size_t maskBytes() const { return compression == 3 ? 12 : 0; }
  size_t paletteBytes() const { return size_t{entries} * 4; }
  size_t streamAt() const { return McgHeadBytes + maskBytes() + paletteBytes(); }
  /// Whether the sizes fit each other and the limit of pixels, so that memory may be taken.
  bool plausible() const;
};

class McgReader : public PictureReader {
 public:
  using UseTable = std::array<uint32_t, 256>;

  bool isValid() override;
  /// Empty for a file that is none or damaged. Throws NotEnoughMemoryException and the file's.
  virtual PackedPicture decodeFile();
  virtual PackedPicture decodeMemory(std::span<const uint8_t> image);
  /// The palette's fourth bytes; entries beyond the palette are zero.
  virtual void readPaletteUse(UseTable& table);
  static void paletteUseOf(std::span<const uint8_t> image, UseTable& table);
  virtual int32_t paletteCount();
  /// Entries as stored, with their marks; gives how many were copied.
  virtual int32_t readPalette(std::span<uint32_t> out);
  /// Over the stored palette in place, never more than it has entries; gives how many.
  virtual int32_t writePalette(std::span<const uint32_t> entries);

 private:
  std::optional<McgHead> head();
};

}  // namespace qv
