#include <algorithm>
#include <cmath>
#include <mutex>

#include "graphics/colour_math.h"
#include "graphics/surface.h"
#include "graphics/surface_pair.h"

// The colour tables of QVVSurface.

namespace qv {

namespace {

constexpr auto TableSize = static_cast<int32_t>(std::tuple_size_v<ColourTable>);

/// The colour a part of the way from one to another; the fourth byte is that of the first.
uint32_t between(uint32_t from, uint32_t to, double part) {
  const auto channel = [&](auto which) {
    const int start = which(from);
    // Truncated as a whole, so that falling channels are rounded down too.
    return static_cast<uint32_t>((which(to) - start) * part + start);
  };
  return (from & ~ColourMask) | channel(blueOf) | channel(greenOf) << 8 | channel(redOf) << 16;
}

}  // namespace

void QVVSurface::setColours(const ColourTable& table, int32_t targetFirst, int32_t sourceFirst,
                            int32_t count) {
  const auto inTable = [](int32_t first) { return first >= 0 && first < TableSize; };
  if (!inTable(targetFirst) || !inTable(sourceFirst) || count < 1) return;
  const int32_t copied = std::min({count, TableSize - targetFirst, TableSize - sourceFirst});
  const std::lock_guard guard(lock_);
  std::copy_n(table.begin() + sourceFirst, copied, stored_.begin() + targetFirst);
  showStored();
}

void QVVSurface::setColoursRange(const ColourTable& table, int32_t first, int32_t count) {
  const int32_t clamped = std::clamp(first, 0, TableSize - 1);
  setColours(table, clamped, clamped, count);
}

void QVVSurface::copyPaletteFrom(const QVVSurface& source) {
  const SurfacePair pair(*this, source);
  stored_ = source.stored_;
  showStored();
}

void QVVSurface::copyPaletteFromDib(const QVDib& dib) {
  if (dib.empty() || dib.bitCount() != 8) return;
  const std::lock_guard guard(lock_);
  takeColours(dib);
}

void QVVSurface::fadePalette(const ColourTable& target, int32_t step, int32_t steps) {
  const std::lock_guard guard(lock_);
  if (step < 0 || step > steps || steps < 1) {
    stored_ = target;
    showStored();
    return;
  }
  const double n = steps, s = step;
  const double part = std::sqrt((2 * n - s) * s) / n;
  for (size_t i = 0; i < stored_.size(); ++i)
    shown_[i] = between(stored_[i], target[i], part);
}

void QVVSurface::tintMonochrome(int32_t red, int32_t green, int32_t blue, int32_t first,
                                int32_t count) {
  const std::lock_guard guard(lock_);
  const TableRange range = tableRange(first, count, TableSize);
  shown_ = stored_;
  for (int32_t i = range.first; i < range.end; ++i) {
    uint32_t& entry = shown_[static_cast<size_t>(i)];
    const int64_t grey = luminanceOf(entry);
    entry = withChannels(entry, monochromeChannel(grey, red), monochromeChannel(grey, green),
                         monochromeChannel(grey, blue));
  }
}

ColourTable QVVSurface::storedColours() const {
  const std::lock_guard guard(lock_);
  return stored_;
}

ColourTable QVVSurface::shownColours() const {
  const std::lock_guard guard(lock_);
  return shown_;
}

}  // namespace qv
