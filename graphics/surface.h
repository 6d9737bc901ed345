#pragma once

/// QVVSurface and QVVSurface24: pixels in memory that the engine draws into. The first has 8 bits
/// a pixel and 256 colours, the second 32 bits (blue, green, red, fourth). A surface always has
/// pixels: 16 by 16 once constructed. Rows lie bottom row first.
///
/// A surface has two colour tables: the stored one, and the one of its device context, which is
/// what the screen shows and what fades write alone. Every operation that touches pixels or tables
/// takes the locks of its surfaces, in their order, for as long as it runs, and calls nothing else
/// meanwhile. Any thread.

#include <array>
#include <cstdint>
#include <span>

#include "foundation/string.h"
#include "graphics/clip.h"
#include "graphics/colour_key.h"
#include "graphics/dib.h"
#include "graphics/heap_block.h"
#include "graphics/kernels/kernels.h"
#include "graphics/pixel_block.h"
#include "graphics/rectangle.h"
#include "platform/kernel/kernel.h"

namespace qv {

class QVFile;
class QVPathName;
class QVVSurface24;
struct AxisMap;

using ColourTable = std::array<uint32_t, 256>;  ///< blue, green, red, 0 in memory order

/// A new surface's colours: a grey ramp with the twenty static colours.
const ColourTable& defaultColours();

class QVVSurface {
 public:
  QVVSurface();
  virtual ~QVVSurface() = default;
  QVVSurface(const QVVSurface&) = delete;
  QVVSurface& operator=(const QVVSurface&) = delete;

  virtual void loadFromPathName(const QVPathName& path);
  virtual void loadFromFile(const char* name);
  /// Only bitmaps of 8 bits; anything else is ignored without a word.
  virtual void assignDib(const QVDib& dib);
  virtual void loadByName(const char* name);
  /// A picture among the game's resources; a missing one changes nothing, and no box is shown.
  virtual void loadResource(int32_t id);
  /// New pixels, all zero, and the colours of a new surface. Sizes below 1 count as 0. More than
  /// MostPixels are refused like a lack of memory: NotEnoughMemoryException is thrown, and the
  /// surface keeps its old pixels and colours.
  virtual void create(int32_t width, int32_t height);
  /// The whole surface stretched onto the rectangle, clipped to `target`. Each pixel takes the
  /// index under its centre: column i of w columns takes column (2i + 1) * width / 2w, rounded
  /// down; rows alike. Sizes below 1 draw nothing.
  virtual void stretchTo(QVVSurface& target, int32_t x, int32_t y, int32_t w, int32_t h);
  /// Only bitmaps of 8 bits, at the top left; colours stay.
  virtual void blitDib(const QVDib& dib, ColourKey key);
  /// Repeats this surface over the rectangle, or over the whole target.
  virtual void tileOnto(QVVSurface& target, const Rectangle* rectangle, bool copyPalette);

  // Whatever changes stored colours shows them at once.

  /// Firsts outside the table and counts below 1 do nothing; a count ends with either table.
  virtual void setColours(const ColourTable& table, int32_t targetFirst, int32_t sourceFirst,
                          int32_t count);
  /// The same entries of both tables; `first` is clamped into the table.
  virtual void setColoursRange(const ColourTable& table, int32_t first, int32_t count);
  virtual void copyPaletteFrom(const QVVSurface& source);
  virtual void copyPaletteFromDib(const QVDib& dib);
  /// Shows colours between the stored ones and the target's, fast at first (a quarter circle);
  /// what is stored stays, so that each step starts from the same colours. A step outside 0 to
  /// `steps`, so also steps + 1, and `steps` below 1 store the target.
  virtual void fadePalette(const ColourTable& target, int32_t step, int32_t steps);

  /// A tag, the header with the stored colours, the pixels. A closed file is passed over.
  virtual void saveTagged(QVFile& file);
  /// A foreign tag, and a record that the file cannot hold, leave the surface as it was and the
  /// file's position behind the tag.
  virtual void loadTagged(QVFile& file);
  /// The extension ".bmp" takes the place of the path's own.
  virtual void saveBmpByName(const char* path);
  virtual void writeBmp(QVFile& file);

  // All blits clip to both surfaces; nothing inside both is nothing drawn, silently. A blit within
  // one surface works in the classic order (overlap.h): rows from the top, each from the left.

  void blit(QVVSurface& target, int32_t dx, int32_t dy, int32_t sx, int32_t sy, int32_t w,
            int32_t h, ColourKey key) const;
  /// `level`: -15 to -1 a pattern, 0 and 1 a copy, 2 and above a comb, -16 and below nothing.
  void blitBlended(QVVSurface& target, int32_t dx, int32_t dy, int32_t sx, int32_t sy, int32_t w,
                   int32_t h, int32_t level) const;
  void blitBlendedKey(QVVSurface& target, int32_t dx, int32_t dy, int32_t sx, int32_t sy, int32_t w,
                      int32_t h, int32_t level, ColourKey key) const;
  void blitTo32(QVVSurface24& target, int32_t dx, int32_t dy, int32_t sx, int32_t sy, int32_t w,
                int32_t h, ColourKey key) const;
  /// `level`: 0 to 16, sixteenths.
  void blitTo32Blend(QVVSurface24& target, int32_t dx, int32_t dy, int32_t sx, int32_t sy,
                     int32_t w, int32_t h, int32_t level) const;
  void blitTo32BlendKey(QVVSurface24& target, int32_t dx, int32_t dy, int32_t sx, int32_t sy,
                        int32_t w, int32_t h, int32_t level, ColourKey key) const;
  /// A factor of 2 and above makes each pixel that large, -2 and below takes every second pixel and
  /// so on, -1 to 1 leave the size. Without key; w and h are of the source. Pixels that the source
  /// does not have are not drawn.
  void blitScaled(QVVSurface& target, int32_t dx, int32_t dy, int32_t sx, int32_t sy, int32_t w,
                  int32_t h, int32_t xFactor, int32_t yFactor) const;
  void fill(uint8_t index, const Rectangle* rectangle = nullptr);
  /// Within the rectangle; `axis` 1 exchanges rows, 2 reverses each row; w or h of 0 means full.
  void mirror(int32_t axis, int32_t x, int32_t y, int32_t w, int32_t h);
  /// Shows tinted greys of the stored colours; a count of 0 means to the end of the table.
  void tintMonochrome(int32_t red, int32_t green, int32_t blue, int32_t first, int32_t count);

  /// Paints a part through the shown colours onto 0x00RRGGBB pixels, top row first, clipped to
  /// both: what a window does with its surface.
  void paint(std::span<uint32_t> pixels, int32_t width, int32_t height, int32_t x, int32_t y,
             const Rectangle& part) const;

  int32_t width() const;
  int32_t height() const;
  static constexpr int32_t strideOf(int32_t width) { return (width + 3) & ~3; }
  uint8_t pixel(int32_t x, int32_t y) const;  ///< 0 outside
  ColourTable storedColours() const;
  ColourTable shownColours() const;

  /// The pixels under the lock, for who walks over them; nothing else may be called meanwhile.
  class Access {
   public:
    explicit Access(QVVSurface& surface) : surface_(surface) { surface.lock_.lock(); }
    ~Access() { surface_.lock_.unlock(); }
    Access(const Access&) = delete;
    Access& operator=(const Access&) = delete;
    /// Row y from the top, strideOf(width) bytes.
    uint8_t* row(int32_t y) const { return surface_.at(0, y); }

   private:
    QVVSurface& surface_;
  };

 protected:
  /// Whether the surface is the record's now; otherwise it is as it was.
  bool takeTagged(QVFile& file);

 private:
  friend class QVVSurface24;
  friend class SurfacePair;

  /// Header, stored colours and pixels as files have them.
  HeapBlock infoBlockAndPixels() const;

  // With the locks held.
  void blitArea(QVVSurface& target, BlitArea area, ColourKey key) const;
  void blendArea(QVVSurface& target, BlitArea area, int32_t level, ColourKey key) const;
  void blendAreaTo32(QVVSurface24& target, BlitArea area, int32_t level, ColourKey key) const;
  uint8_t* at(int64_t x, int64_t y) const {
    return bits_.data() + (int64_t{height_} - y - 1) * strideOf(width_) + x;
  }
  void blitMapped(QVVSurface& target, const AxisMap& columns, const AxisMap& rows) const;
  KernelRows rowsOf(QVVSurface& target, const BlitArea& area) const;
  uint8_t keyByte(ColourKey key) const;
  void remake(int32_t width, int32_t height, bool zeroed);
  void showStored() { shown_ = stored_; }
  void takePixels(const QVDib& dib);
  void takeColours(const QVDib& dib);

  mutable Lock lock_;  ///< guards all below
  int32_t width_ = 0, height_ = 0;
  BitmapInfoHeader header_;  ///< what files are given beside the size; the last bitmap's
  PixelBlock<uint8_t> bits_;
  ColourTable stored_{}, shown_{};
  KernelForm form_;  ///< from HasMmx at construction
};

class QVVSurface24 {
 public:
  QVVSurface24();
  virtual ~QVVSurface24() = default;
  QVVSurface24(const QVVSurface24&) = delete;
  QVVSurface24& operator=(const QVVSurface24&) = delete;

  /// Bitmaps of 8, 24 and 32 bits; others are ignored. The fourth byte of every pixel is 0.
  virtual void assignDib(const QVDib& dib);
  virtual void loadByName(const char* name);
  virtual void loadResource(int32_t id);
  virtual void create(int32_t width, int32_t height);
  /// As QVVSurface::stretchTo; each pixel becomes the nearest of the colours that the target shows,
  /// the lowest of equally near ones.
  virtual void stretchTo(QVVSurface& target, int32_t x, int32_t y, int32_t w, int32_t h) const;
  /// Bitmaps of 8, 24 and 32 bits, at the top left; the key counts for those of 8 alone.
  virtual void blitDib(const QVDib& dib, ColourKey key);
  virtual void tileOnto(QVVSurface24& target, const Rectangle* rectangle);
  virtual void saveTagged(QVFile& file);
  virtual void loadTagged(QVFile& file);
  virtual void writeBmp(QVFile& file);

  void blit(QVVSurface24& target, int32_t dx, int32_t dy, int32_t sx, int32_t sy, int32_t w,
            int32_t h) const;
  void fill(uint32_t colour, const Rectangle* rectangle = nullptr);
  void paint(std::span<uint32_t> pixels, int32_t width, int32_t height, int32_t x, int32_t y,
             const Rectangle& part) const;
  int32_t width() const;
  int32_t height() const;
  uint32_t pixel(int32_t x, int32_t y) const;

  /// The pixels under the lock, as QVVSurface::Access.
  class Access {
   public:
    explicit Access(QVVSurface24& surface) : surface_(surface) { surface.lock_.lock(); }
    ~Access() { surface_.lock_.unlock(); }
    Access(const Access&) = delete;
    Access& operator=(const Access&) = delete;
    uint32_t* row(int32_t y) const { return surface_.at(0, y); }

   private:
    QVVSurface24& surface_;
  };

 private:
  friend class QVVSurface;
  friend class SurfacePair;

  HeapBlock infoBlockAndPixels() const;

  // With the locks held.
  void blitArea(QVVSurface24& target, BlitArea area) const;
  uint32_t* at(int64_t x, int64_t y) const {
    return bits_.data() + (int64_t{height_} - y - 1) * width_ + x;
  }
  void remake(int32_t width, int32_t height);

  mutable Lock lock_;  ///< guards all below
  int32_t width_ = 0, height_ = 0;
  BitmapInfoHeader header_;
  PixelBlock<uint32_t> bits_;
  KernelForm form_;
};

}  // namespace qv
