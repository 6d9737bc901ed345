#pragma once

/// QVPrintArea: a rectangle of a surface or a view into which text and small pictures are printed.
/// It has its font, its colours, a pen, and the rule of what happens when the next line no longer
/// fits: an area with a view waits for the player, then every area clears itself and goes on at the
/// top. A text is laid out and drawn whole inside one call.
///
/// Threads: the scenario thread prints; any thread may call. One lock guards an area; it is taken
/// before a surface's and held across the wait at a page's end, so that whoever else wants the area
/// sleeps as long as the player thinks.

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/string.h"
#include "graphics/colour_key.h"
#include "graphics/rectangle.h"
#include "graphics/surface.h"
#include "graphics/view.h"
#include "input/hitret.h"
#include "message/area_lock.h"
#include "message/print_layout.h"
#include "message/text_device.h"
#include "message/text_font.h"

namespace qv {

class QVAnimationArea;
class QVWave;

struct PenPosition {
  int32_t x = 0, y = 0;  ///< y is the top of the line that is being written
  bool operator==(const PenPosition&) const = default;
};

class QVPrintArea {
 public:
  static constexpr uint32_t FlagHomeAfterPrint = 0x001, FlagOneLine = 0x100, FlagCentre = 0x200,
                            FlagOutline = 0x400;
  static constexpr int32_t DefaultLineHeight = 20;
  static constexpr uint8_t DefaultClearIndex = 255;

  QVPrintArea();
  virtual ~QVPrintArea() = default;
  QVPrintArea(const QVPrintArea&) = delete;
  QVPrintArea& operator=(const QVPrintArea&) = delete;

  /// Prints into the view's surface from now on; null leaves the target and only ends the waits.
  /// Gives the view before.
  View* setView(View* view);
  /// A surface that no view shows; null: printing does nothing.
  void setSurface(QVVSurface* surface);
  void setWave(QVWave* wave);
  /// An area that is cleared together with this one.
  void setLink(QVPrintArea* link);
  /// Takes the wait of another step as the one at this area's page ends.
  void setHitret(const QVHitret& hitret);
  void setRect(int32_t left, int32_t top, int32_t width, int32_t height);
  /// A place outside the rectangle is reported in a box; the pen is then at the left top corner.
  void setPosition(int32_t x, int32_t y);
  int32_t setLineHeight(int32_t height);  ///< gives the old one; values below 1 are ignored
  /// Pixels kept free at the left (side 0) or right of each line; gives the old value.
  int32_t setIndent(int32_t pixels, int32_t side);
  void setFlags(uint32_t flags, bool replace = true);
  void setNoLineStart(const char* text);
  void setColour(ColourRef colour, int32_t which);  ///< 0 the text, else the outline
  /// As TextFont::set. A font that is set while the area prints counts from the next print.
  void setFont(int32_t height, int32_t weight, int32_t style, int32_t pitch, int32_t charset,
               const char* face);
  /// Measures and draws with another device; for tests.
  void setTextDevice(TextDevice& device);

  /// Keeps what lies under the rectangle now; `clear` puts it back from then on, where it filled
  /// with a colour before. Throws NotEnoughMemoryException.
  void saveBackground();
  void clear(bool withLink, bool withFlush);
  void home();

  /// Shift-JIS; a line feed ends a line, those at the beginning each count. The voice, or without
  /// one the mouth by itself, starts first. `hitret` null: the area's own wait. With `wait`, an
  /// area with a view runs the wait behind the text, ends voice and mouth and is cleared. What a
  /// wait raises passes on, with voice and mouth stopped.
  void printText(const char* text, QVHitret* hitret = nullptr, const char* wavePath = nullptr,
                 QVAnimationArea* mouth = nullptr, bool wait = false);
  /// A part of a picture at the pen, or all of it where the rectangle has no width. `clip`: not
  /// beyond the area.
  void printSurface(const QVVSurface& source, const Rectangle& part, ColourKey key, bool clip,
                    bool wait);
  /// A picture file of 8 bits; a missing one, or one of another kind, does nothing.
  void printImageFile(const char* path, ColourKey key, bool clip, bool wait);
  void printSurfaceKeyless(const QVVSurface& source, const Rectangle& part, bool clip, bool wait) {
    printSurface(source, part, KeyNone, clip, wait);
  }
  void printImageKeyless(const char* path, bool clip, bool wait) {
    printImageFile(path, KeyNone, clip, wait);
  }

  /// A surface or an area that is about to go is not used any more.
  void forget(const void* member);

  PenPosition position() const;
  Rectangle rectangle() const;
  uint32_t flags() const;
  int32_t indentLeft() const;
  TextFont font() const;
  /// How many pages were full since the area was made.
  uint32_t fullPages() const;

 private:
  class DeviceUse;

  void newLine(QVHitret& hitret);
  void goHome();
  void movePen(int32_t x, int32_t y);
  void reportIndent();
  void paintBackground();
  void flushArea();
  void runWait(QVHitret& hitret, int32_t tenths);
  void layOut(std::string_view text, QVHitret& hitret);
  void printRun(std::string_view run, QVHitret& hitret);
  void endRun(std::string_view line);
  void drawLine(std::string_view line);
  void startVoice(const char* path, QVAnimationArea* mouth);
  void stopVoice(const char* path, QVAnimationArea* mouth);
  int32_t roomAtPen() const;

  mutable AreaLock lock_;  ///< guards all below
  View* view_ = nullptr;
  PrintTarget target_;
  QVWave* wave_ = nullptr;
  QVHitret hitret_;
  QVPrintArea* link_ = nullptr;
  bool clearing_ = false;  ///< a chain of links may come round to this area
  QVVSurface background_;
  bool clearsToBackground_ = false;
  uint8_t clearIndex_ = DefaultClearIndex;
  Rectangle rect_;
  PenPosition position_;
  int32_t lineHeight_ = DefaultLineHeight;
  int32_t indentLeft_ = 0, indentRight_ = 0;
  uint32_t flags_ = 0;
  TextFont font_;
  ColourRef textColour_ = 0, outlineColour_ = 0xFFFFFF;
  NoLineStart noLineStart_;
  int32_t waitTenths_ = -1;
  uint32_t fullPages_ = 0;
  TextDevice* device_;

  // What the device was set to when the outermost print began.
  int deviceUses_ = 0;
  TextStyle usedStyle_;
  ColourRef usedColour_ = 0;
};

}  // namespace qv
