#pragma once

/// DibBuilder: the one way in which a QVDib gets its contents. It checks a header before any memory
/// is taken for it. One thread at a time.

#include <array>
#include <cstdint>
#include <optional>
#include <span>

#include "graphics/dib.h"

namespace qv {

inline constexpr uint32_t CoreHeaderBytes = 12;
inline constexpr size_t MostHeaderBytes = 52;  ///< of a header that are looked at, masks included

/// A header as it stands in a file or in memory, and where its table lies.
struct StoredHeader {
  BitmapInfoHeader info;  ///< widened where the source has the short form
  size_t bytes = 0;       ///< of the header in the source
  size_t maskBytes = 0;   ///< of the masks behind the header, with compression 3
  /// The masks of a header that is long enough to hold them itself; none lie behind it then.
  std::optional<std::array<uint8_t, 12>> ownMasks = {};
  size_t entries = 0;     ///< of the colour table
  size_t entryBytes = 4;  ///< 3 in the short form
  size_t tableBytes() const { return entries * entryBytes; }
  /// Where what follows masks and table begins, from the header's start.
  size_t endOfTable() const { return bytes + maskBytes + tableBytes(); }

  /// Reads the first bytes of a header, at most MostHeaderBytes of those that its size word tells.
  /// Nothing when they are too few, or tell of no picture or one beyond the limits.
  static std::optional<StoredHeader> of(std::span<const uint8_t> source);
};

class DibBuilder {
 public:
  /// Sets header, masks and table, and takes the pixels. `table` begins behind the stored header,
  /// with the masks where the header does not hold them. What is missing of it is zero.
  static void build(QVDib& dib, const StoredHeader& stored, std::span<const uint8_t> table,
                    HeapBlock pixels);
};

}  // namespace qv
