#pragma once

/// SystemButton: a small picture button on a view, with a strip of four frames: up, pressed,
/// disabled, disabled and pressed. It has no hit logic: its region lies in a click map, and whoever
/// waits flashes the button after a hit. Its flash ends on a thread of its own.
///
/// Threads: one, the scenario's, drives it; the flash thread meets it in the state and the drawing,
/// which the lock guards. The view stays for as long as the button is used.

#include <cstdint>

#include "foundation/event.h"
#include "foundation/thread.h"
#include "graphics/surface.h"
#include "graphics/view.h"
#include "platform/kernel/kernel.h"

namespace qv {

class SystemButton {
 public:
  static constexpr int32_t FrameCount = 4;
  // Bits of the state.
  static constexpr uint32_t Enabled = 0x0001, Pressed = 0x0002, NoImage = 0x8000;

  /// `exit`: an event whose set ends flashes at once, such as the end of the game; may be null.
  explicit SystemButton(Event* exit = nullptr);
  virtual ~SystemButton();  ///< ends a flash and draws nothing
  SystemButton(const SystemButton&) = delete;
  SystemButton& operator=(const SystemButton&) = delete;

  /// Loads the strip, shows the button. Without an 8-bit view the button stays unplaced. With
  /// `keepBackground` and a key, what lies behind the button is kept, and frames with holes never
  /// show each other. Throws NotEnoughMemoryException and the file's exceptions.
  virtual void place(View* view, int32_t x, int32_t y, const char* file, ColourKey key,
                     int32_t enabled, int32_t pressed, int32_t keepBackground);
  // Nothing happens to a button that is not placed.
  virtual void redraw();
  /// Shows it pressed for that many tenths of a second, or with 0 until `release`. Nothing while it
  /// is pressed or an earlier flash runs. With `wait` it returns when the button is up again.
  virtual void flash(int32_t tenths, int32_t wait);
  virtual void release();
  virtual void enable();
  virtual void disable();

  uint32_t state() const;
  int32_t width() const { return width_; }  ///< of one frame
  int32_t height() const { return height_; }
  int32_t x() const { return x_; }
  int32_t y() const { return y_; }
  bool flashing() const { return flashThread_.running(); }

 protected:
  /// Ends a flash without a word: a class with a `release` of its own calls it before it goes.
  void endFlash();

 private:
  static constexpr uint32_t TenthMillis = 100;

  static void runFlash(void* button);
  void keepWhatLiesBehind();
  void showFrame(uint32_t state);

  Event* const exit_;
  View* view_ = nullptr;
  QVVSurface strip_;
  QVVSurface saved_, compose_;
  bool keepBackground_ = true;
  int32_t width_ = 0, height_ = 0;
  int32_t x_ = 0, y_ = 0;
  ColourKey key_ = KeyNone;
  uint32_t state_ = NoImage;
  mutable Lock lock_;  ///< guards the state and the drawing; never held while the flash is joined
  QVThread flashThread_;
  QVEvent flashEnd_;  ///< set when the button goes
  uint32_t flashStart_ = 0, flashMillis_ = 0;
};

}  // namespace qv
