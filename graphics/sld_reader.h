#pragma once

/// SldReader: the older sibling of the MCG format. A head of 1040 bytes with the size and always
/// 256 colours, and the pixels with 8 bits, bottom row first, as one LZSS stream of the classical
/// form.

#include <array>
#include <cstdint>
#include <span>

#include "graphics/picture_reader.h"

namespace qv {

inline constexpr uint32_t SldMagic = 0x444C53;  ///< "SLD" and a zero
inline constexpr size_t SldHeadBytes = 1040, SldPaletteAt = 16;

class SldReader : public PictureReader {
 public:
  SldReader();

  /// Reads the head as well.
  void attach(QVFile& file) override;
  bool isValid() override;
  /// Empty for a file that is none or damaged. Throws NotEnoughMemoryException and the file's.
  virtual PackedPicture decode();
  /// The same from a whole file in memory, without a file attached.
  PackedPicture decodeMemory(std::span<const uint8_t> image);

  int32_t width() const { return width_; }
  int32_t height() const { return height_; }
  /// The file's 256 entries as stored; those of a new surface until a file was read.
  std::span<const uint32_t, 256> palette() const { return palette_; }

 private:
  void takeHead(std::span<const uint8_t> head);
  size_t pixelBytes() const;  ///< 0 for a head that tells of no picture
  PackedPicture expand(std::span<const uint8_t> stream) const;

  uint32_t magic_ = 0;
  int32_t width_ = 0, height_ = 0;
  std::array<uint32_t, 256> palette_;
};

}  // namespace qv
