#pragma once

/// Tagged records: a surface in a file, as a tag, a bitmap's header with its colours, and the
/// pixels. Belongs to the file's thread.

#include <cstdint>
#include <span>

#include "graphics/heap_block.h"

namespace qv {

class QVFile;

/// What differs between the records of the two kinds of surface.
struct TaggedForm {
  const char* tag;
  int32_t blockBytes;  ///< header and colours
  uint16_t bitCount;
};

inline constexpr TaggedForm TaggedSurface = {"QVVSurface", 1064, 8},
                            TaggedSurface24 = {"QVVSurface24", 40, 32};

/// Closed files are passed over.
void writeTagged(QVFile& file, const TaggedForm& form, std::span<const uint8_t> blockAndPixels);
/// Header, colours and pixels as a packed bitmap; empty for a foreign tag, a header of another kind
/// and a size that the rest of the file does not hold. The file then stands behind the tag.
HeapBlock readTagged(QVFile& file, const TaggedForm& form);

/// A bitmap file of the same bytes.
void writeBitmapFile(QVFile& file, const TaggedForm& form, std::span<const uint8_t> blockAndPixels);

}  // namespace qv
