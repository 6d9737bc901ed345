#include "platform/files/classic_path.h"

#include <algorithm>

#include "platform/text/shift_jis.h"

namespace qv {

namespace {

constexpr size_t MaxPathBytes = 259;     // the classic platform's limit without the final zero
constexpr size_t MaxElementBytes = 255;  // of UTF-8: what the machine's file systems take
constexpr std::string_view Replacement = "\xEF\xBF\xBD";

constexpr bool isSeparator(char byte) {
  return byte == '\\' || byte == '/';
}
constexpr bool isLetter(char byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}
constexpr char upper(char byte) {
  return byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - 'a' + 'A') : byte;
}

bool sayable(std::string_view utf8) {
  if (utf8.empty() || utf8.size() > MaxElementBytes) return false;
  if (utf8.find_first_of("\\/:*?\"<>|") != std::string_view::npos) return false;
  if (utf8.find(Replacement) != std::string_view::npos) return false;
  return std::none_of(utf8.begin(), utf8.end(),
                      [](char byte) { return static_cast<unsigned char>(byte) < 0x20; });
}

/// One name of a path: resolves the dots, checks, converts.
void addElement(ClassicPath& path, std::string_view element) {
  if (element.empty() || element == ".") return;
  if (element == "..") {
    // Above the root there is nothing but the root.
    if (!path.elements.empty()) path.elements.pop_back();
    return;
  }
  std::string name = utf8OfShiftJis(element);
  // The classic platform never kept dots and spaces at a name's end.
  name.erase(name.find_last_not_of(". ") + 1);
  if (!sayable(name)) {
    path.error = FileInvalidName;
  } else if (isUnfinishedName(name)) {
    path.error = FileAccessDenied;
  } else {
    path.elements.push_back(std::move(name));
  }
}

void addElements(ClassicPath& path, std::string_view rest) {
  size_t start = 0, at = 0;
  path.folder = rest.empty() || isSeparator(rest.front());
  while (at < rest.size() && path.error == FileOk) {
    const size_t bytes = characterBytes(rest, at);
    if (bytes == 1 && isSeparator(rest[at])) {
      addElement(path, rest.substr(start, at - start));
      start = at + 1;
    }
    at += bytes;
  }
  if (path.error == FileOk) {
    const std::string_view last = rest.substr(std::min(start, rest.size()));
    path.folder = last.empty() || last == "." || last == "..";
    addElement(path, last);
  }
}

struct Span {
  char32_t from, to;
  char32_t distance;
};
constexpr Span CapitalSpans[] = {
    {U'A', U'Z', 32},     {0xFF21, 0xFF3A, 32}, {0x0391, 0x03A9, 32},
    {0x0410, 0x042F, 32}, {0x0401, 0x0401, 80}, {0x2160, 0x2169, 16},
};

char32_t lowered(char32_t character) {
  for (const Span& span : CapitalSpans) {
    if (character >= span.from && character <= span.to) return character + span.distance;
  }
  return character;
}

bool isContinuation(unsigned char byte) {
  return (byte & 0xC0) == 0x80;
}

}  // namespace

ClassicPath parseClassicPath(std::string_view text, const ClassicPath& current) {
  ClassicPath path;
  if (text.empty() || text.size() > MaxPathBytes) {
    path.error = FilePathNotFound;
    return path;
  }
  if (text.size() >= 2 && isSeparator(text[0]) && isSeparator(text[1])) {
    path.error = FileBadNetworkPath;
    return path;
  }
  path.drive = current.drive;
  bool rooted = isSeparator(text[0]);
  if (text.size() >= 2 && text[1] == ':' && isLetter(text[0])) {
    path.drive = upper(text[0]);
    text.remove_prefix(2);
    // A drive that is not the current one stands at its root.
    rooted = (!text.empty() && isSeparator(text[0])) || path.drive != current.drive;
  }
  if (!rooted) path.elements = current.elements;
  addElements(path, text);
  return path;
}

std::string utf8OfClassicPath(const ClassicPath& path) {
  std::string text{path.drive, ':'};
  if (path.elements.empty()) text += '\\';
  for (const std::string& element : path.elements)
    text += '\\' + element;
  return text;
}

std::string foldedName(std::string_view utf8) {
  std::string folded;
  folded.reserve(utf8.size());
  // All capitals outside ASCII that fold are of two or three bytes, and stay of that length.
  for (size_t at = 0; at < utf8.size();) {
    const auto byte = [&](size_t offset) {
      return at + offset < utf8.size() ? static_cast<unsigned char>(utf8[at + offset]) : 0u;
    };
    const unsigned lead = byte(0);
    const auto next = static_cast<unsigned char>(byte(1)),
               third = static_cast<unsigned char>(byte(2));
    if (lead >= 0xC2 && lead < 0xE0 && isContinuation(next)) {
      const char32_t low = lowered((lead & 0x1F) << 6 | (next & 0x3F));
      folded += static_cast<char>(0xC0 | low >> 6);
      folded += static_cast<char>(0x80 | (low & 0x3F));
      at += 2;
    } else if (lead >= 0xE0 && lead < 0xF0 && isContinuation(next) && isContinuation(third)) {
      const char32_t low = lowered((lead & 0xF) << 12 | (next & 0x3Fu) << 6 | (third & 0x3Fu));
      folded += static_cast<char>(0xE0 | low >> 12);
      folded += static_cast<char>(0x80 | (low >> 6 & 0x3F));
      folded += static_cast<char>(0x80 | (low & 0x3F));
      at += 3;
    } else {
      folded += lead < 0x80 ? static_cast<char>(lowered(lead)) : utf8[at];
      at += 1;
    }
  }
  return folded;
}

bool isUnfinishedName(std::string_view utf8) {
  return foldedName(utf8.substr(0, UnfinishedPrefix.size())) == UnfinishedPrefix;
}

std::string classicNameOf(std::string_view utf8) {
  if (!sayable(utf8) || utf8.back() == '.' || utf8.back() == ' ' || isUnfinishedName(utf8)) {
    return {};
  }
  ShiftJisResult converted = shiftJisOfUtf8(utf8);
  return converted.ok ? std::move(converted.text) : std::string();
}

}  // namespace qv
