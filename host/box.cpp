#include "host/box.h"

#include <algorithm>

#include "host/box_drawing.h"
#include "platform/display/key_codes.h"
#include "platform/text/shift_jis.h"

namespace qv {

using namespace box_look;

namespace {

constexpr int WidestText = 560, TallestText = 360;
constexpr int IconSize = 32, IconGap = 14;
constexpr uint32_t IconMask = 0xF0, DefaultMask = 0xF00;

struct ButtonForm {
  BoxAnswer answer;
  const char* label;
  int key;
};

constexpr ButtonForm OkButton{BoxAnswer::Ok, "OK", 0};
constexpr ButtonForm CancelButton{BoxAnswer::Cancel, "キャンセル", 0};
constexpr ButtonForm RetryButton{BoxAnswer::Retry, "再試行", 0};
constexpr ButtonForm YesButton{BoxAnswer::Yes, "はい", KeyA + ('Y' - 'A')};
constexpr ButtonForm NoButton{BoxAnswer::No, "いいえ", KeyA + ('N' - 'A')};

/// The buttons by the low digit of the flags. Nobody asks for kind 2 (abort, retry, ignore): it
/// is shown as kind 5, whose answers mean the same to who must go on safely.
std::vector<ButtonForm> buttonForms(uint32_t flags) {
  switch (flags & BoxButtonMask) {
    case 1:
      return {OkButton, CancelButton};
    case 3:
      return {YesButton, NoButton, CancelButton};
    case 4:
      return {YesButton, NoButton};
    case 2:
    case 5:
      return {RetryButton, CancelButton};
    default:
      return {OkButton};
  }
}

struct IconForm {
  uint32_t flag;
  const char* sign;
  uint32_t colour;
};

const IconForm* iconOf(uint32_t flags) {
  static constexpr IconForm Icons[] = {{0x10, "×", 0xB23A34},
                                       {0x20, "？", 0x3D6482},
                                       {0x30, "！", 0xC98A1B},
                                       {0x40, "ｉ", 0x3D6482}};
  for (const IconForm& icon : Icons)
    if ((flags & IconMask) == icon.flag) return &icon;
  return nullptr;
}

bool isClosingMark(std::string_view character) {
  static const std::string Marks = sjis("、。，．！？」』）］】〉》ー…");
  if (character.size() == 1)
    return std::string_view(",.!?)]}").find(character) != std::string::npos;
  for (size_t at = 0; at < Marks.size(); at += 2)
    if (character == std::string_view(Marks).substr(at, 2)) return true;
  return false;
}

/// Where a line that may hold `fit` bytes is best broken; at least one character.
size_t breakBefore(std::string_view line, size_t fit) {
  fit = std::max(fit, characterBytes(line, 0));
  size_t afterSpace = 0, last = 0, previous = 0;
  bool inWord = false;  // the break at `fit` would cut a word of single bytes
  for (size_t at = 0; at < fit; at += characterBytes(line, at)) {
    previous = last;
    last = at;
    inWord = characterBytes(line, at) == 1;
    if (line[at] == ' ' || !inWord) afterSpace = at + characterBytes(line, at);
  }
  const bool goesOn = characterBytes(line, fit) == 1 && line[fit] != ' ';
  if (inWord && goesOn && afterSpace > 0) return afterSpace;
  // One character moves down with the closing mark that would else begin a line.
  if (isClosingMark(line.substr(fit, characterBytes(line, fit))) && last > previous) return last;
  return fit;
}

void wrapLine(TextRenderer& text, const TextStyle& style, std::string_view line, int widthPixels,
              std::vector<std::string>& lines) {
  for (;;) {
    const size_t fit = text.fitBytes(style, line, widthPixels);
    if (fit >= line.size()) break;
    const size_t taken = breakBefore(line, fit);
    lines.emplace_back(line.substr(0, taken));
    line.remove_prefix(taken);
    while (!line.empty() && line.front() == ' ')
      line.remove_prefix(1);
    if (line.empty()) return;
  }
  lines.emplace_back(line);
}

}  // namespace

std::vector<std::string> wrapText(TextRenderer& text, const TextStyle& style, std::string_view run,
                                  int widthPixels) {
  std::vector<std::string> lines;
  while (!run.empty() && (run.back() == '\n' || run.back() == '\r'))
    run.remove_suffix(1);
  for (;;) {
    const size_t feed = run.find('\n');
    std::string_view line = run.substr(0, feed);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    wrapLine(text, style, line, widthPixels, lines);
    if (feed == std::string_view::npos) return lines;
    run.remove_prefix(feed + 1);
  }
}

Box::Box(BoxView view, TextRenderer& text)
    : FloatingBox(
          text, view.caption,
          [&] {
            std::vector<Button> buttons;
            for (const ButtonForm& form : buttonForms(view.flags))
              buttons.push_back({sjis(form.label), static_cast<int>(form.answer), form.key});
            return buttons;
          }()),
      view_(std::move(view)) {
  const int iconWidth = iconOf(view_.flags) ? IconSize + IconGap : 0;
  // A long text is set smaller before any of it is left out.
  for (const int height : {16, 12}) {
    style_ = {FontFace::Gothic, height};
    lines_ = wrapText(text, style_, view_.text, WidestText - iconWidth);
    if (static_cast<int>(lines_.size()) * lineHeight() <= TallestText) break;
  }
  const size_t room = static_cast<size_t>(TallestText / lineHeight());
  if (lines_.size() > room) {
    lines_.resize(room);
    lines_.back() = "...";
  }
  int width = 0;
  for (const std::string& line : lines_)
    width = std::max(width, text.measure(style_, line));
  const int height = static_cast<int>(lines_.size()) * lineHeight();
  layOut(width + iconWidth, std::max(height, iconWidth ? IconSize : 0));
  const size_t wanted = (view_.flags & DefaultMask) >> 8;
  setFocus(wanted < buttonCount() ? wanted : 0);
}

int Box::lineHeight() const {
  return style_.heightPixels + style_.heightPixels / 4;
}

std::optional<BoxAnswer> Box::answer() const {
  if (!chosen()) return std::nullopt;
  return static_cast<BoxAnswer>(*chosen());
}

bool Box::offers(BoxAnswer answer) const {
  return std::any_of(buttons().begin(), buttons().end(), [&](const Button& button) {
    return button.result == static_cast<int>(answer);
  });
}

BoxAnswer Box::abortAnswer() const {
  for (const BoxAnswer answer : {BoxAnswer::Cancel, BoxAnswer::No})
    if (offers(answer)) return answer;
  return BoxAnswer::Ok;
}

/// Yes and no alone leave no way round the question.
std::optional<int> Box::cancelResult() const {
  if (offers(BoxAnswer::Cancel)) return static_cast<int>(BoxAnswer::Cancel);
  if (buttonCount() == 1) return static_cast<int>(BoxAnswer::Ok);
  return std::nullopt;
}

void Box::drawInside(Frame& frame) const {
  const BoxRect area = inside();
  int left = area.x;
  if (const IconForm* icon = iconOf(view_.flags)) {
    const BoxRect disc = {area.x, area.y, IconSize, IconSize};
    fillDisc(frame, disc, icon->colour);
    drawRun(frame, text(), disc, disc.x + (IconSize - 20) / 2, disc.y + (IconSize - 20) / 2,
            {FontFace::Gothic, 20}, sjis(icon->sign), 0xFFFFFF);
    left += IconSize + IconGap;
  }
  int top = area.y;
  for (const std::string& line : lines_) {
    drawRun(frame, text(), area, left, top + (lineHeight() - style_.heightPixels) / 2, style_, line,
            Ink);
    top += lineHeight();
  }
}

}  // namespace qv
