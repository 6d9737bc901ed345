#pragma once

/// A click map as views and the window side know it: what is asked about the pixel under the
/// pointer, and what then hears of it.

#include <cstdint>

namespace qv {

class ClickTarget {
 public:
  virtual ~ClickTarget() = default;

  // The window side, while the scenario thread stands in a wait.
  /// The region at a point of the view; -1 outside the map.
  virtual int32_t regionAt(int32_t x, int32_t y) const = 0;
  /// The map above this one in a stack, which may wait for this one's regions; null at the top.
  virtual ClickTarget* above() const = 0;
  /// Tells of a message (input/click_map.h) at a region. Of moves only those count that bring the
  /// pointer to another region, or whatever region while a refresh is due. True: the wait ends.
  virtual bool report(uint32_t message, int32_t region) = 0;

  /// Something was drawn over the view: draws what stands on it again. The thread that drew.
  virtual void repaint() {}
};

}  // namespace qv
