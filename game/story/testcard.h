#pragma once

/// What the pages of the test card are made of: the page itself, lettering, buttons. All names of
/// objects begin with "card."; what a page remembers stands in registers. Scenario thread.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "graphics/rectangle.h"
#include "input/animated_control.h"
#include "message/print_area.h"
#include "scenario/scenario.h"
#include "scenes/scene_form.h"

namespace card {

/// The button that was pressed last, over all pages; how many were.
inline constexpr int32_t ButtonRegister = 2300, PressCountRegister = 2301;
/// When the song that plays was begun, as a tick; how often it was.
inline constexpr int32_t SongStartRegister = 2302, SongCountRegister = 2303;

inline constexpr const char* Screen = "cg.view";
/// The sheet that a page offers.
inline constexpr qv::Rectangle Sheet{40, 88, 592, 414};

// As 0x00BBGGRR: what the pages' pictures hold, and white.
inline constexpr qv::ColourRef Navy = 0x5C3422, Paper = 0xFCF8F2, Shade = 0xD6BDA9, Sky = 0xE4D07C,
                               White = 0xFFFFFF;

struct Lettering {
  int32_t height = 16;
  const char* face = "ＭＳ Ｐゴシック";  ///< UTF-8
  qv::ColourRef colour = Navy, outline = White;
  uint32_t flags = 0;
  int32_t weight = 400;
};

/// Brings a page's picture out of black, with its name and what the player may do (UTF-8).
void openPage(const char* picture, const char* title, const char* hint);
/// One text at a place of the screen.
void write(const qv::Rectangle& place, const std::string& utf8, const Lettering& lettering = {});
/// The same with its shade behind it: printed twice.
void writeShaded(const qv::Rectangle& place, const std::string& utf8, const Lettering& lettering);

/// Keeps what lies on the sheet now: the player's wait clears it to that.
void keepSheet();
/// The sheet's blinking sign, until a click or a key.
void waitForPlayer();

/// Takes into the screen's colours those that a picture owns.
void takeColours(const char* picture);
/// All that the card has made is gone, and it is quiet.
void putAway();

/// The buttons of a page, for as long as it lives.
class Board {
 public:
  static constexpr int32_t Home = 99, Cancelled = -1, NothingPressed = -2;
  static constexpr int32_t ButtonWidth = 152, ButtonHeight = 38;

  Board();
  ~Board();
  Board(const Board&) = delete;
  Board& operator=(const Board&) = delete;

  void add(int32_t region, int32_t x, int32_t y, const char* label, bool enabled = true);
  /// The way back, with its word beside it.
  void addHome(int32_t x, int32_t y, const char* label);
  /// All buttons stand on the screen, and the keys are theirs.
  void open();
  /// The button that was pressed, Cancelled for the right button or Esc, or NothingPressed when the
  /// time is over or only the focus has moved. Tenths of a second, 0 for ever.
  int32_t wait(int32_t tenths);

 private:
  qv::AnimatedControl* control_;
  std::vector<std::unique_ptr<qv::ControlItem>> items_;
};

/// A text that changes, on the page that lies under it.
class StateText {
 public:
  explicit StateText(const qv::Rectangle& place);
  ~StateText();
  StateText(const StateText&) = delete;
  StateText& operator=(const StateText&) = delete;
  void show(const std::string& utf8);

 private:
  qv::Rectangle place_;
  std::string shown_;
};

}  // namespace card
