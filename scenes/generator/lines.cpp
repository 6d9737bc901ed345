#include "scenes/generator/lines.h"

#include "scenes/generator/text.h"

namespace qv::scenec {

namespace {

constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view WideAt = "\xEF\xBC\xA0";
constexpr std::string_view WideHash = "\xEF\xBC\x83";

Line tellApart(std::string_view raw, int number) {
  Line line;
  line.number = number;
  line.raw = std::string(raw);
  const std::string_view bare = trim(raw);
  if (bare.empty()) return line;
  const bool command = bare.front() == '@' || startsWith(bare, WideAt);
  if (command) {
    std::string_view rest;
    line.kind = Line::Kind::Command;
    const size_t sign = bare.front() == '@' ? 1 : WideAt.size();
    line.command = narrow(firstWord(bare.substr(sign), rest));
    line.rest = std::string(rest);
    return line;
  }
  line.kind = Line::Kind::Text;
  // An ideographic space in front is part of a paragraph's look; ASCII spaces are only layout.
  line.rest = std::string(trimAscii(raw));
  return line;
}

bool isComment(std::string_view raw) {
  const std::string_view bare = trim(raw);
  return startsWith(bare, "#") || startsWith(bare, WideHash);
}

}  // namespace

std::vector<Line> splitLines(std::string_view bytes) {
  if (startsWith(bytes, ByteOrderMark)) bytes.remove_prefix(ByteOrderMark.size());
  std::vector<Line> lines;
  int number = 0;
  bool inCpp = false;  // "#" and "@" mean something else in C++
  while (!bytes.empty()) {
    const size_t end = bytes.find('\n');
    std::string_view raw = bytes.substr(0, end);
    bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
    if (!raw.empty() && raw.back() == '\r') raw.remove_suffix(1);
    ++number;
    Line line;
    if (!isComment(raw) || inCpp)
      line = tellApart(raw, number);
    else
      continue;
    if (inCpp) {
      if (line.kind == Line::Kind::Command && line.command == "end" && trim(line.rest) == "cpp")
        inCpp = false;
    } else if (line.kind == Line::Kind::Command && line.command == "cpp") {
      inCpp = true;
    }
    lines.push_back(std::move(line));
  }
  return lines;
}

}  // namespace qv::scenec
