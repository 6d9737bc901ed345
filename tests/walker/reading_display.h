#pragma once

// A display before which sits a reader who never tires: whatever the story waits for, it gets at
// once, a key for a line, a click for a choice, no for a question. It opens no window and works on
// both clocks.

#include <cstdint>
#include <functional>

#include "host/game_host.h"
#include "platform/display/headless_display.h"
#include "platform/display/key_codes.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"

namespace qv::testing {

class ReadingDisplay : public HeadlessDisplay {
 public:
  /// Called with the number of choices, on the UI thread while the scene stands: which to take,
  /// from 1.
  using Choose = std::function<int32_t(int32_t count)>;

  void read(GameHost& host, Choose choose) {
    host_ = &host;
    choose_ = std::move(choose);
  }

  bool waitEvent(DisplayEvent& event, uint32_t limitMillis) override {
    if (answer(event)) return true;
    return HeadlessDisplay::waitEvent(event, limitMillis);
  }

  uint64_t answered() const { return answered_; }

 private:
  enum class Hand { Away, Beside, Pressing };

  bool answer(DisplayEvent& event) {
    if (!host_) return false;
    GameHost::Gate gate(*host_);
    gate.tellNext();
    if (!gate.sceneWaits() || !host_->manager) return false;
    const int32_t kind = host_->manager->Reg(WaitKindRegister);
    const bool plates = kind == TwoPlates || kind == ThreePlates;
    if (!plates) hand_ = Hand::Away;
    // A key or press that was not taken is not given to the same wait again.
    const bool moves = plates && hand_ != Hand::Pressing;
    if (!moves && gate.waitOrdinal() == ordinal_) return false;
    if (!moves) ordinal_ = gate.waitOrdinal();
    // A question takes no Return before one of its answers is lit: whoever sees it again and again
    // says no, by turns, because a wait for a sound takes nothing else than Return.
    others_ = kind == 0 ? others_ + 1 : 0;
    const bool refuses = others_ > PatientWaits && others_ % 2 == 0;
    event = plates ? pointAt(kind) : keyPress(refuses ? KeyEscape : KeyReturn);
    ++answered_;
    return true;
  }

  static DisplayEvent keyPress(int32_t key) {
    DisplayEvent event;
    event.kind = DisplayEvent::Kind::KeyDown;
    event.key = key;
    return event;
  }

  /// From beside the plates onto the chosen one, so that the game sees the pointer come; then a
  /// press.
  DisplayEvent pointAt(int32_t count) {
    constexpr int32_t BesideX = 630, BesideY = 430, PlateX = 200, FirstOfTwo = 172,
                      FirstOfThree = 116, Step = 120;
    DisplayEvent event;
    event.kind = DisplayEvent::Kind::PointerMove;
    if (hand_ == Hand::Away) {
      choice_ = choose_ ? choose_(count) : 1;
      hand_ = Hand::Beside;
      event.x = BesideX;
      event.y = BesideY;
      return event;
    }
    event.x = PlateX;
    event.y = (count == TwoPlates ? FirstOfTwo : FirstOfThree) + (choice_ - 1) * Step;
    if (hand_ == Hand::Pressing) event.kind = DisplayEvent::Kind::ButtonDown;
    hand_ = hand_ == Hand::Beside ? Hand::Pressing : Hand::Away;
    return event;
  }

  static constexpr int32_t TwoPlates = 2, ThreePlates = 3;
  static constexpr int PatientWaits = 4;

  GameHost* host_ = nullptr;
  Choose choose_;
  uint32_t ordinal_ = 0;
  uint64_t answered_ = 0;
  int others_ = 0;  ///< waits in a row that are neither lines nor choices
  Hand hand_ = Hand::Away;
  int32_t choice_ = 1;
};

}  // namespace qv::testing
