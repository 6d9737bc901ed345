#include "message/print_layout.h"

#include <algorithm>

#include "platform/text/shift_jis.h"

namespace qv {

namespace {

constexpr char LineFeed = '\n';

uint16_t characterAt(std::string_view text, size_t at) {
  const auto first = static_cast<unsigned char>(text[at]);
  if (characterBytes(text, at) < 2) return first;
  return static_cast<uint16_t>(first << 8 | static_cast<unsigned char>(text[at + 1]));
}

/// Where the characters of the text's first `end` bytes and of the one behind them begin; `end` is
/// moved to the begin of a character that it lies in.
std::vector<size_t> beginsUpTo(std::string_view text, size_t& end) {
  std::vector<size_t> begins;
  size_t at = 0;
  while (at < end) {
    const size_t bytes = characterBytes(text, at);
    if (at + bytes > end) break;
    begins.push_back(at);
    at += bytes;
  }
  end = at;
  return begins;
}

/// The line's end, pulled back before characters that may not begin the next one. A line of nothing
/// else stays as wide as it fits.
size_t endBefore(std::string_view text, size_t fitting, const std::vector<size_t>& begins,
                 const NoLineStart& noLineStart) {
  size_t end = fitting;
  size_t index = begins.size();
  while (noLineStart.contains(characterAt(text, end))) {
    if (index == 0) return fitting;
    end = begins[--index];
  }
  return end == 0 ? fitting : end;
}

}  // namespace

NoLineStart::NoLineStart(std::string_view text) {
  for (size_t at = 0, bytes; (bytes = characterBytes(text, at)) != 0; at += bytes)
    characters_.push_back(characterAt(text, at));
  std::ranges::sort(characters_);
}

bool NoLineStart::contains(uint16_t character) const {
  return std::ranges::binary_search(characters_, character);
}

bool TextRuns::takeLeadingFeed() {
  if (at_ >= text_.size() || text_[at_] != LineFeed) return false;
  ++at_;
  return true;
}

std::string_view TextRuns::next() {
  while (at_ < text_.size() && text_[at_] == LineFeed)
    ++at_;
  const size_t begin = at_;
  at_ = std::min(text_.find(LineFeed, begin), text_.size());
  return text_.substr(begin, at_ - begin);
}

LinePart nextLine(const LineRequest& request, const NoLineStart& noLineStart,
                  const TextStyle& style, TextDevice& device) {
  const std::string_view rest = request.rest;
  size_t fitting = std::min(device.fitBytes(style, rest, request.available), rest.size());
  const std::vector<size_t> begins = beginsUpTo(rest, fitting);
  if (fitting == rest.size() || request.oneLine) return {fitting, AfterLine::End};
  if (fitting == 0) {
    if (!request.lineStart) return {0, AfterLine::NewLineFirst};
    // Not one character fits on any line: one each, so that the text comes to its end.
    const size_t one = characterBytes(rest, 0);
    return {one, one == rest.size() ? AfterLine::End : AfterLine::NewLine};
  }
  return {endBefore(rest, fitting, begins, noLineStart), AfterLine::NewLine};
}

}  // namespace qv
