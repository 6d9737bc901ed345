#pragma once

/// Who is told that an animation has run to its end, so that a film moves a waiting scene on. A
/// click map takes the input code as a result that was posted to it; the parent of a view's window
/// takes it as a key that was pressed.

#include <cstdint>

namespace qv {

class AdvanceReceiver {
 public:
  virtual ~AdvanceReceiver() = default;
  /// On the animation's thread, which holds no lock. Must not stop that animation.
  virtual void advance(int32_t code) = 0;
};

/// What an area does at its end. Without a click map the view's parent gets the space key.
struct AutoAdvance {
  static constexpr int32_t SpaceKey = 32;

  bool wanted = false;
  AdvanceReceiver* clickMap = nullptr;
  int32_t inputCode = 0;
  AdvanceReceiver* viewParent = nullptr;
};

}  // namespace qv
