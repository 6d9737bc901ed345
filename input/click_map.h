#pragma once

/// QVClickMap: how the game knows what the player points at. An 8-bit surface of the size of a view
/// whose pixels are region numbers. The window side looks the pixel under the pointer up and tells
/// the map; the scene side sleeps on the map and gets one integer.
///
/// Threads: `inputCallback`, `report` and the look-ups come from the UI thread, `postResult` from
/// any, the rest from the scenario thread. The event is the crossing point; of two inputs before
/// the wake the later wins here, but the host's gate lets only the first through, which answers.

#include <atomic>
#include <cstdint>
#include <deque>
#include <vector>

#include "foundation/event.h"
#include "graphics/animation/advance_receiver.h"
#include "graphics/click_target.h"
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

/// Where the pointer lies on no map.
inline constexpr int32_t NoRegion = -1;

class QVClickMap : public QVVSurface, public ClickTarget, public AdvanceReceiver {
 public:
  using InputCallback = void (*)(QVClickMap& map, uint32_t message, int32_t region);

  /// Whatever the region: the next move counts as one to another.
  static constexpr int32_t AnyMoveCounts = -3;

  QVClickMap();
  ~QVClickMap() override;  ///< detaches, and leaves its stack

  using QVVSurface::create;
  using QVVSurface::loadFromFile;
  /// Sizes as of every surface; throws NotEnoughMemoryException.
  virtual void create(int32_t width, int32_t height, uint8_t fill, int32_t hoverEnabled,
                      InputHost* host);
  /// Only bitmaps of 8 bits give regions.
  virtual void loadDib(const QVDib& dib, int32_t hoverEnabled, InputHost* host);
  /// A bitmap, a map file, or a picture of the game (its indices are the regions). Of anything else
  /// the pixels stay as they are.
  virtual void loadFromFile(QVFile& file, int32_t hoverEnabled, InputHost* host);
  /// Null: the map's own.
  virtual void setCallback(InputCallback callback);
  virtual int32_t originX() const { return originX_; }
  virtual int32_t originY() const { return originY_; }
  /// Where the map lies in its view.
  virtual void setOrigin(int32_t x, int32_t y);
  /// Writes a map file; a file that is there is written over only when the player says so.
  virtual void saveAs(const char* path);
  virtual void loadFrom(const char* path);
  /// The map's form in files: signature, origin, the surface's record.
  virtual void write(QVFile& file);
  /// A foreign signature leaves the map and the file's position as they were; behind the right one
  /// a record that the file does not hold leaves the map as it was.
  virtual void read(QVFile& file);
  void saveTagged(QVFile& file) override { write(file); }
  void loadTagged(QVFile& file) override { read(file); }
  /// Whether a map file stands at the file's position: then it is behind the signature afterwards,
  /// otherwise it is where it was.
  static bool readSignature(QVFile& file);

  /// Fills a rectangle with a region; nothing for a width or height below 1.
  void addRect(int32_t x, int32_t y, int32_t width, int32_t height, int32_t region);
  /// Copies a picture or another map onto this one. Nothing unless they overlap.
  void Stamp(const QVVSurface& source, int32_t x, int32_t y, ColourKey key);
  /// Whether a stamp keeps what it covers in `underlay`.
  void setStampMode(int32_t keep) { stampMode_ = keep; }
  const QVVSurface& underlay() const { return underlay_; }

  /// Takes the view, and with `capture` a copy of its pixels, which detaching puts back. The map's
  /// former view is left first.
  void attach(View& view, int32_t x, int32_t y, int32_t capture);
  void detach();
  View* view() const { return view_; }
  const QVVSurface& viewCopy() const { return viewCopy_; }
  /// A wait on `parent` also gets this map's regions; null leaves the stack. A parent that stands
  /// below this map already is not taken.
  void setParent(QVClickMap* parent);
  QVClickMap* parent() const { return parent_; }

  void setHost(InputHost* host) { host_ = host; }
  void setHover(int32_t enabled) { hoverEnabled_ = enabled; }
  int32_t hoverEnabled() const { return hoverEnabled_; }

  /// The interval of ClickTickWait, which begins now.
  void setTick(uint32_t millis);
  /// Lets the next wait tell what lies under the pointer; `nudge` moves the pointer for that, by
  /// nothing in the end.
  void requestHover(int32_t nudge);
  /// `limitMillis`: 0xFFFFFFFF for ever. Raises ExitScenarioException, detached.
  int32_t ClickWait(uint32_t limitMillis, int32_t keys);
  /// Waits until `millis` (0: the tick) have passed since its last return, 1 ms where they have.
  int32_t ClickTickWait(uint32_t millis, int32_t keys);
  static uint32_t tickWaitMillis(uint32_t millis, uint32_t now, uint32_t lastReturn);
  uint32_t tick() const { return tick_; }

  /// What ended a wait.
  enum class Leg { Timeout, MapEvent, Exit, Key, Cut };
  /// The result of a wait that ended so, with the key that came. Clears the map's event at a
  /// time-out; takes a result that was posted, which overrules.
  int32_t resultOf(Leg leg, int32_t key);

  // The window side.
  void inputCallback(uint32_t message, int32_t region);
  int32_t regionAt(int32_t x, int32_t y) const override;
  ClickTarget* above() const override { return parent_; }
  bool report(uint32_t message, int32_t region) override;
  uint32_t lastMessage() const { return lastMessage_; }
  int32_t lastRegion() const { return lastRegion_; }
  int32_t lastHit() const { return lastHit_; }
  bool eventIsSet() { return event_.handle().isSet(); }

  /// A result for the wait that runs, or the next one. Any thread.
  void postResult(int32_t result);
  void advance(int32_t code) override { postResult(code); }

 private:
  struct Wake {
    Leg leg;
    int32_t key;
  };
  Wake sleep(uint32_t limitMillis, bool keys);
  void startRefresh();
  bool hasPosted() const;
  void capture();
  void putBack();

  int32_t originX_ = 0, originY_ = 0;
  View* view_ = nullptr;
  QVEvent event_;
  InputHost* host_ = nullptr;
  // What two threads write stands between a write and a set, or a wake and a read, of the event.
  std::atomic<int32_t> hoverEnabled_ = 0;
  InputCallback callback_ = nullptr;  ///< null: inputCallback
  std::atomic<int32_t> lastHit_ = 0;
  int32_t refreshPending_ = 0, refreshNudge_ = 1;
  bool captured_ = false;
  QVVSurface viewCopy_;  ///< of the view, where the map lies
  QVVSurface underlay_;  ///< what the last stamp covered
  int32_t stampMode_ = 1;
  std::atomic<uint32_t> lastMessage_ = 0;
  std::atomic<int32_t> lastRegion_ = 0;
  QVClickMap* parent_ = nullptr;
  std::vector<QVClickMap*> below_;  ///< the maps whose parent this is
  mutable Lock postedLock_;         ///< guards what was posted
  std::deque<int32_t> posted_;
  uint32_t lastReturn_;  ///< of ClickTickWait
  uint32_t tick_ = 0;
};

}  // namespace qv
