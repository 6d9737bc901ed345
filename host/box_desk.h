#pragma once

/// The boxes that are up. A thread that asks one stands until it is answered; the UI thread shows
/// the newest on top, gives it the input, and hands the answer over. After the abort every box is
/// answered at once: cancel, or OK where there is no cancel.

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/box.h"
#include "host/file_box.h"
#include "platform/dialogs/dialogs.h"
#include "platform/kernel/kernel.h"

namespace qv {

class BoxDesk : public Dialogs {
 public:
  explicit BoxDesk(TextRenderer& text);

  // Any thread. On the UI thread a box cannot wait: it is answered as by the abort.
  BoxAnswer messageBox(std::string_view text, std::string_view caption, uint32_t flags) override;
  bool fileDialog(FileDialogRequest& request) override;

  /// Called when a box opens; set before the first.
  void setWakeHook(std::function<void()> hook) { wakeHook_ = std::move(hook); }
  /// Nobody is there to answer: boxes are told on the standard error and answered as by the abort.
  void setUnattended() { unattended_ = true; }
  void setUiThread(uint32_t id) { uiThreadId_ = id; }

  // UI thread.
  bool up() const;
  bool holds(uint32_t threadId) const;       ///< that thread waits for a box
  bool holdsOther(uint32_t threadId) const;  ///< a thread that is not this one waits for a box
  std::string describe() const;              ///< caption and text of the top box, UTF-8
  /// Gives the top box its input; false when none is up. `answered` tells what was chosen.
  bool handle(const DisplayEvent& event, std::optional<BoxAnswer>* answered = nullptr);
  /// Answers the top box; false when it has no such button.
  bool answer(BoxAnswer answer);
  void abort();
  void draw(Frame& frame) const;
  bool takeChanged();  ///< the picture of the boxes has changed since the last call

 private:
  struct Open {
    Open() : answered("box", Event::Reset::Manual) {}
    std::unique_ptr<Box> box;  ///< one of the two
    std::unique_ptr<FileBox> fileBox;
    FloatingBox& floating() const;
    std::string description;
    uint32_t threadId = 0;
    BoxAnswer answer = BoxAnswer::Cancel;
    Event answered;
  };

  bool cannotWait(const Open& open);
  void ask(const std::shared_ptr<Open>& open);
  void closeTop(BoxAnswer answer);

  TextRenderer& text_;
  mutable Lock lock_;                        ///< guards all below
  std::vector<std::shared_ptr<Open>> open_;  ///< the newest last
  bool aborted_ = false;
  bool changed_ = false;
  bool unattended_ = false;
  uint32_t uiThreadId_ = 0;
  std::function<void()> wakeHook_;
};

}  // namespace qv
