#include <algorithm>
#include <string>
#include <utility>

#include "foundation/string.h"
#include "foundation/string_body.h"
#include "platform/dialogs/dialogs.h"
#include "platform/services.h"
#include "platform/text/shift_jis.h"

// Searches, tokens and parts. All of them step by whole characters, so that the second byte of a
// character is never taken for a backslash or a separator.

namespace qv {

namespace {

constexpr size_t None = std::string_view::npos;

/// The character at `at`: one or two bytes; empty at the end.
std::string_view characterAt(std::string_view text, size_t at) {
  return text.substr(at, characterBytes(text, at));
}

/// True if `needle` stands at `at`, character for character: it may not end inside one.
bool matchesAt(std::string_view text, size_t at, std::string_view needle) {
  if (text.substr(at, needle.size()) != needle) return false;
  size_t end = at;
  while (end < at + needle.size())
    end += characterBytes(text, end);
  return end == at + needle.size();
}

size_t findFrom(std::string_view text, size_t at, std::string_view needle) {
  if (needle.empty()) return at;
  while (at < text.size()) {
    if (matchesAt(text, at, needle)) return at;
    at += characterBytes(text, at);
  }
  return None;
}

bool inSet(std::string_view set, std::string_view character) {
  for (size_t at = 0; at < set.size(); at += characterBytes(set, at))
    if (characterAt(set, at) == character) return true;
  return false;
}

/// The next character that is in the set, or that is not.
size_t scanFrom(std::string_view text, size_t at, std::string_view set, bool wanted) {
  for (; at < text.size(); at += characterBytes(text, at))
    if (inSet(set, characterAt(text, at)) == wanted) return at;
  return None;
}

struct Token {
  size_t start = 0;
  size_t end = 0;  ///< of the text when no separator follows
};

Token tokenFrom(std::string_view text, size_t at, std::string_view separators) {
  Token token;
  token.start = std::min(scanFrom(text, at, separators, false), text.size());
  token.end = std::min(scanFrom(text, token.start, separators, true), text.size());
  return token;
}

}  // namespace

const char* QVString::cursorOn(size_t place) {
  cursor_ = text() + std::min(place, view().size());
  return place == None ? nullptr : cursor_;
}

const char* QVString::find(const char* needle) {
  if (!needle) return nullptr;
  return cursorOn(findFrom(view(), static_cast<size_t>(cursorIndex()), needle));
}

const char* QVString::findChars(const char* set) {
  if (!set) return nullptr;
  return cursorOn(scanFrom(view(), static_cast<size_t>(cursorIndex()), set, true));
}

const char* QVString::findLast(const char* set) {
  if (!set) return nullptr;
  size_t last = None;
  auto at = static_cast<size_t>(cursorIndex());
  while ((at = scanFrom(view(), at, set, true)) != None) {
    last = at;
    at += characterBytes(view(), at);
  }
  return cursorOn(last);
}

const char* QVString::findNotChars(const char* set) {
  if (!set) return nullptr;
  return cursorOn(scanFrom(view(), static_cast<size_t>(cursorIndex()), set, false));
}

const char* QVString::findToken(const char* wanted, const char* separators) {
  if (!wanted) return nullptr;
  if (!separators) return find(wanted);
  auto at = static_cast<size_t>(cursorIndex());
  while (at < view().size()) {
    const Token token = tokenFrom(view(), at, separators);
    if (token.start == token.end) break;
    if (view().substr(token.start, token.end - token.start) == wanted) return cursorOn(token.start);
    at = token.end;
  }
  return cursorOn(None);
}

void QVString::replaceAll(const char* old, const char* replacement) {
  // An empty text stands everywhere, without end.
  if (!old || !*old || !replacement) return;
  const std::string_view needle = old, inserted = replacement;
  size_t hits = 0;
  for (size_t at = 0; (at = findFrom(view(), at, needle)) != None; at += needle.size())
    ++hits;
  const size_t length = view().size() - hits * needle.size() + hits * inserted.size();
  Body* body = Body::makeRoom(grain(), length, Body::AppendTitle);
  char* target = body->text;
  size_t at = 0;
  for (; hits > 0; --hits) {
    const size_t hit = findFrom(view(), at, needle);
    target = std::copy(text() + at, text() + hit, target);
    target = std::copy(inserted.begin(), inserted.end(), target);
    at = hit + needle.size();
  }
  std::copy(text() + at, text() + view().size(), target);
  take(body);
}

const char* QVString::nextToken(QVString& target, const char* separators, int keep) {
  if (!separators) return nullptr;
  const Token token = tokenFrom(view(), static_cast<size_t>(cursorIndex()), separators);
  size_t behind = token.end;
  if (keep == 1) behind += characterBytes(view(), behind);
  cursorOn(behind);
  const bool ofItself = &target == this;
  target.createView(TokenGrain, view().substr(token.start, token.end - token.start),
                    Body::TokenTitle);
  if (token.start == token.end) return nullptr;
  return ofItself ? text() : text() + token.start;
}

void QVString::substring(QVString& target, const char* from, const char* to) const {
  const auto base = reinterpret_cast<uintptr_t>(text());
  auto first = from ? reinterpret_cast<uintptr_t>(from) : base;
  auto last = to ? reinterpret_cast<uintptr_t>(to) : base + view().size();
  const auto outside = [&](uintptr_t place) {
    return place < base || place > base + view().size();
  };
  if (outside(first) || outside(last)) {
    const std::string report =
        "  start:" + std::to_string(first) + "\n    end:" + std::to_string(last) +
        "\nstrings:" + std::to_string(base) + "\n length:" + std::to_string(length());
    if (Dialogs* dialogs = services().dialogs)
      dialogs->messageBox(report, "QVString class", BoxNotice);
    return;
  }
  if (first > last) std::swap(first, last);
  // The end of the text is a place too; its final zero is no part of the result.
  target.createView(DefaultGrain, view().substr(first - base, last - first + 1), Body::CreateTitle);
}

}  // namespace qv
