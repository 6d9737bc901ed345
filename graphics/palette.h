#pragma once

/// scobjPalette: a free-standing colour table, and the merging of pictures' tables. Entries are
/// blue, green, red, 0 in memory order. One thread at a time.

#include <array>
#include <cstdint>
#include <span>

#include "graphics/pixel_block.h"
#include "graphics/surface.h"

namespace qv {

class QVDib;
class QVFile;

class scobjPalette {
 public:
  virtual ~scobjPalette() = default;

  /// All zero; exactly 256 entries get the twenty static colours; a count of zero or less leaves
  /// the palette as it was. Throws NotEnoughMemoryException.
  void create(int32_t count);
  void loadFromPicture(const char* fileName);
  void takeFromSurface(const QVVSurface& surface);
  /// "PF" or tagged form; a foreign file leaves the palette as it was.
  void readFile(const char* name);
  void set(int32_t index, int32_t red, int32_t green, int32_t blue);
  void copyRange(int32_t targetFirst, const scobjPalette& source, int32_t sourceFirst,
                 int32_t count);
  /// Tinted greys; 255 leaves plain ones. `first` is clamped into the table, a count ends with it,
  /// and a count of 0 means to its end; so too of `bright`.
  void tint(int32_t red, int32_t green, int32_t blue, int32_t first, int32_t count);
  /// Percent 0 to 200; 100 changes nothing.
  void bright(int32_t percent, int32_t first, int32_t count);
  /// The last index is changed too, by `raise` and by `fill`.
  void raise(int32_t first, int32_t last, int32_t amount, bool red, bool green, bool blue);
  void fill(int32_t first, int32_t last, int32_t red, int32_t green, int32_t blue);

  int32_t count() const { return static_cast<int32_t>(entries_.size()); }
  std::span<const uint32_t> entries() const { return {entries_.data(), entries_.size()}; }
  /// The first 256 entries; what is missing is zero.
  ColourTable table() const;

 private:
  void makeEntries(int32_t count);  ///< all zero
  void readEntries(QVFile& file, int32_t count);
  std::span<uint32_t> range(int32_t first, int32_t count);
  std::span<uint32_t> firstToLast(int32_t first, int32_t last);

  PixelBlock<uint32_t> entries_;
};

/// Copies the picture's colours into the table where it owns them, or all with `force`, from
/// `first` to `last`. 0 when the picture has not 256 colours, else 1.
int MergePalette(const QVDib& picture, ColourTable& table, int32_t first, int32_t last, bool force);
/// A's colours, then B's where B owns them. 0 when either has not 256 colours, and then the table
/// stays.
int MergePalette(const QVDib& pictureA, const QVDib& pictureB, ColourTable& table);
/// The same of two files.
int MergePalette(const char* pictureA, const char* pictureB, ColourTable& table);

}  // namespace qv
