#pragma once

/// QVAnimationSurface: the cells of an animation, cut from a strip of pictures that stand side by
/// side. It is loaded before any area draws it; from then on any thread may draw.

#include <cstdint>
#include <memory>

#include "foundation/vector.h"
#include "graphics/colour_key.h"
#include "graphics/surface.h"

namespace qv {

/// One picture of an animation. A cell without a surface holds no picture and has no size.
struct AnimationCell {
  std::unique_ptr<QVVSurface> surface;
  ColourKey key = KeyNoPicture;
};

/// The cells; there are always some more than were asked for.
class QVAnimationSurfaceContainer : public QVVector<AnimationCell> {
 public:
  static constexpr int32_t GrowthStep = 32;

  QVAnimationSurfaceContainer() : QVVector(0) {}
  /// The cell of that index, which is made where there is none. Throws NotEnoughMemoryException.
  AnimationCell& grown(int32_t index);
  /// The cell of that index if it holds a picture, else null.
  const AnimationCell* picture(int32_t index) const;
};

class QVAnimationSurface {
 public:
  struct Size {
    int32_t width = 0, height = 0;
    bool operator==(const Size&) const = default;
  };

  virtual ~QVAnimationSurface() = default;

  /// Loads a strip of `count` cells of one width. Without `useKey` they are opaque. A count below
  /// 1, or of more cells than the strip has columns, gives no cells. Throws what loading a surface
  /// throws.
  virtual void load(int32_t count, const char* file, bool useKey, ColourKey key);

  // Cells that hold no picture and cells out of range draw nothing.
  virtual void drawCell(QVVSurface& target, int32_t x, int32_t y, int32_t cell) const;
  virtual void drawCellPart(QVVSurface& target, int32_t dx, int32_t dy, int32_t sx, int32_t sy,
                            int32_t w, int32_t h, int32_t cell) const;

  virtual int32_t cellCount() const { return cells_.size(); }  ///< with those that are empty
  int32_t loadedCells() const { return loaded_; }
  const QVAnimationSurfaceContainer& cells() const { return cells_; }
  Size cellSize(int32_t cell) const;  ///< 0 by 0 without a picture

 private:
  QVAnimationSurfaceContainer cells_;
  int32_t loaded_ = 0;
};

}  // namespace qv
