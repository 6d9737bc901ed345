#pragma once

/// A message box as the player sees it. The host keeps those that are up in a list, the newest on
/// top and alone served, and hands the answer to the thread that asked.

#include <optional>
#include <string>
#include <vector>

#include "host/floating_box.h"
#include "platform/dialogs/dialogs.h"

namespace qv {

struct BoxView {
  std::string text, caption;  ///< Shift-JIS
  uint32_t flags = BoxNotice;
};

class Box : public FloatingBox {
 public:
  Box(BoxView view, TextRenderer& text);

  std::optional<BoxAnswer> answer() const;
  /// What the end of the run answers: cancel, no where there is no cancel, OK where it stands
  /// alone.
  BoxAnswer abortAnswer() const;
  /// True where the box has such a button: what a play script may answer.
  bool offers(BoxAnswer answer) const;
  /// The lines as they are broken and shown.
  const std::vector<std::string>& lines() const { return lines_; }
  /// The part of the screen that text and icon keep to.
  BoxRect textRect() const { return inside(); }

 protected:
  void drawInside(Frame& frame) const override;
  std::optional<int> cancelResult() const override;

 private:
  int lineHeight() const;

  BoxView view_;
  TextStyle style_;
  std::vector<std::string> lines_;
};

/// Breaks a text at its line feeds and wherever a line would be wider: at a space, else between
/// characters, never before a closing mark.
std::vector<std::string> wrapText(TextRenderer& text, const TextStyle& style, std::string_view run,
                                  int widthPixels);

}  // namespace qv
