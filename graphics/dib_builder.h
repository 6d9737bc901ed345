#pragma once

/// DibBuilder: the one way in which a QVDib gets its contents. It checks a header before any memory
/// is taken for it. One thread at a time.

#include <cstdint>
#include <optional>
#include <span>

#include "graphics/dib.h"

namespace qv {

inline constexpr uint32_t CoreHeaderBytes = 12;

/// A header as it stands in a file or in memory, and where its table lies.
struct StoredHeader {
  BitmapInfoHeader info;  ///< widened where the source has the short form
  size_t bytes = 0;       ///< of the header in the source
  size_t maskBytes = 0;   ///< behind the header, with compression 3
  size_t entries = 0;     ///< of the colour table
  size_t entryBytes = 4;  ///< 3 in the short form
  size_t tableBytes() const { return entries * entryBytes; }
  /// Where what follows masks and table begins, from the header's start.
  size_t endOfTable() const { return bytes + maskBytes + tableBytes(); }

  /// Reads the first bytes of a header, 12 or 40 as its size word tells. Nothing when they are too
  /// few, or tell of no picture or one beyond the limits.
  static std::optional<StoredHeader> of(std::span<const uint8_t> source);
};

class DibBuilder {
 public:
  /// Sets header, masks and table from `table`, which begins behind the stored header, and takes
  /// the pixels. What is missing of masks and table is zero.
  static void build(QVDib& dib, const StoredHeader& stored, std::span<const uint8_t> table,
                    HeapBlock pixels);
};

}  // namespace qv
