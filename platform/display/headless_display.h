#pragma once

/// A display without a window: it keeps the frame that was presented last, and its events are
/// pushed by a play script or a test. It waits on the kernel, so that it works on both clocks.
/// `push`, `wake` and the looks at what it keeps may come from any thread, the rest from the UI
/// thread.

#include <deque>

#include "platform/display/display.h"
#include "platform/kernel/kernel.h"

namespace qv {

class HeadlessDisplay : public Display {
 public:
  HeadlessDisplay();

  void present(const Frame& frame) override;
  void setTitle(std::string_view utf8) override;
  void setFullScreen(bool on) override;
  bool fullScreen() const override;
  /// True from the moment a pushed Minimised event is taken until a Restored one is.
  bool minimised() const override;
  bool waitEvent(DisplayEvent& event, uint32_t limitMillis) override;
  void wake() override;
  void movePointer(int x, int y) override;
  void setCursor(const PointerLook& look) override;

  void push(DisplayEvent event);

  Frame frame() const;  ///< a copy; black before the first present
  size_t presents() const;
  std::string title() const;
  /// Where `movePointer` last put the pointer.
  void pointer(int& x, int& y) const;
  PointerLook cursor() const;    ///< what `setCursor` gave last
  size_t cursorChanges() const;  ///< how often it was called

 private:
  bool takeEvent(DisplayEvent& event, bool& woken);

  mutable Lock lock_;  ///< guards everything below but the event
  Event arrived_;
  std::deque<DisplayEvent> events_;
  bool woken_ = false;
  Frame frame_;
  size_t presents_ = 0;
  std::string title_;
  bool fullScreen_ = false, minimised_ = false;
  int pointerX_ = 0, pointerY_ = 0;
  PointerLook cursor_;
  size_t cursorChanges_ = 0;
};

}  // namespace qv
