#pragma once

/// QVClickMap: how the game knows what the player points at. An 8-bit surface of the size of a view
/// whose pixels are region numbers. The window side looks the pixel under the pointer up and tells
/// the map; the scene side sleeps on the map and gets one integer.
///
/// Threads: `inputCallback` and the look-ups come from the UI thread, `postResult` from any, the
/// rest from the scenario thread. The event is the crossing point; of two inputs before the wake
/// the later wins.

#include <cstdint>
#include <vector>

#include "graphics/animation/advance_receiver.h"
#include "graphics/surface.h"
#include "graphics/view.h"
#include "input/input_host.h"
#include "platform/kernel/kernel.h"

namespace qv {

class QVFile;

/// The messages of pointers, as the window system numbers them.
inline constexpr uint32_t PointerMoved = 512, LeftButtonDown = 513, RightButtonDown = 516;

/// What a wait gives.
inline constexpr int32_t ClickTimeout = -2, ClickCancel = -1, FirstKeyResult = 2048,
                         FirstHoverResult = 4096;

class QVClickMap : public QVVSurface, public AdvanceReceiver {
 public:
  using InputCallback = void (*)(QVClickMap& map, uint32_t message, int32_t region);

  QVClickMap();
  ~QVClickMap() override;  ///< detaches

  using QVVSurface::create;
  using QVVSurface::loadFromFile;
  virtual void create(int32_t width, int32_t height, uint8_t fill, int32_t hoverEnabled,
                      InputHost* host);
  virtual void loadDib(const QVDib& dib, int32_t hoverEnabled, InputHost* host);
  /// A bitmap, a map file, or a picture of the game (its indices are the regions).
  virtual void loadFromFile(QVFile& file, int32_t hoverEnabled, InputHost* host);
  virtual void setCallback(InputCallback callback);
  virtual int32_t originX() const;
  virtual int32_t originY() const;
  virtual void setOrigin(int32_t x, int32_t y);
  virtual void saveAs(const char* path);
  virtual void loadFrom(const char* path);
  virtual void write(QVFile& file);
  virtual void read(QVFile& file);

  /// Fills a rectangle with a region.
  void addRect(int32_t x, int32_t y, int32_t width, int32_t height, int32_t region);
  void Stamp(const QVVSurface& source, int32_t x, int32_t y, ColourKey key);
  /// Takes the view, and with `capture` a copy of its pixels, which detaching puts back.
  void attach(View& view, int32_t x, int32_t y, int32_t capture);
  void detach();
  View* view() const;
  /// A wait on `parent` also gets this map's regions.
  void setParent(QVClickMap* parent);

  void setTick(uint32_t millis);
  void requestHover(int32_t nudge);
  /// `limitMillis`: 0xFFFFFFFF for ever. Raises ExitScenarioException, detached.
  int32_t ClickWait(uint32_t limitMillis, int32_t keys);
  int32_t ClickTickWait(uint32_t millis, int32_t keys);

  // The window side.
  void inputCallback(uint32_t message, int32_t region);
  /// The region at a point of the view; -1 outside the map.
  int32_t regionAt(int32_t x, int32_t y) const;

  void postResult(int32_t result);
  void advance(int32_t code) override { postResult(code); }
};

}  // namespace qv
