#pragma once

/// What both kinds of surface count alike: their sizes, and the part of them that a window paints.

#include <algorithm>
#include <cstdint>
#include <span>

#include "foundation/diagnostic.h"
#include "graphics/clip.h"
#include "graphics/dib.h"
#include "graphics/kernels/kernels.h"
#include "graphics/rectangle.h"
#include "platform/assert.h"

namespace qv {

struct SurfaceSize {
  int32_t width, height;
};

/// The size that a surface takes. Throws NotEnoughMemoryException above MostPixels.
inline SurfaceSize surfaceSize(int32_t width, int32_t height) {
  const SurfaceSize size = {std::max(width, 0), std::max(height, 0)};
  // Rows of 8 bits are padded to 4 bytes: so a pixel may take 4 bytes in either kind, not more.
  // A side alone is bounded too, since strides are counted where there are no pixels.
  if (std::max(size.width, size.height) > MostPixels ||
      int64_t{size.width} * size.height > MostPixels)
    throw NotEnoughMemoryException("QVHeap - malloc");
  return size;
}

/// The loops that this processor's surfaces run.
KernelForm kernelFormHere();

/// A part of a surface on its way to a window. Unlike a blit's, a part that begins outside the
/// surface keeps its place.
struct PaintArea : BlitArea {
  PaintArea(const Rectangle& part, int32_t targetX, int32_t targetY)
      : BlitArea(targetX, targetY, part.left, part.top, 0, 0) {
    x.count = int64_t{part.right} - part.left;
    y.count = int64_t{part.bottom} - part.top;
  }

  bool clip(int32_t targetWidth, int32_t targetHeight, int32_t sourceWidth, int32_t sourceHeight) {
    for (BlitAxis* axis : {&x, &y}) {
      const int64_t outside = std::max<int64_t>({-axis->target, -axis->source, 0});
      axis->target += outside;
      axis->source += outside;
      axis->count -= outside;
    }
    return BlitArea::clip(targetWidth, targetHeight, sourceWidth, sourceHeight);
  }

  /// The target's half of the loops: a window's rows go up in memory, so its stride is negative.
  KernelRows targetRows(std::span<uint32_t> pixels, int32_t targetWidth) const {
    const int64_t last = (y.target + y.count - 1) * targetWidth + x.target + x.count;
    QV_ASSERT(last <= static_cast<int64_t>(pixels.size()));
    KernelRows rows;
    rows.target = reinterpret_cast<uint8_t*>(pixels.data() + y.target * targetWidth + x.target);
    rows.targetStride = -targetWidth * static_cast<int>(sizeof(uint32_t));
    rows.width = width();
    rows.height = height();
    return rows;
  }
};

}  // namespace qv
