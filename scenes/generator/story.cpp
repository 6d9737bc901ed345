#include "scenes/generator/story.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace qv::scenec {

namespace {

bool isDigit(char byte) {
  return byte >= '0' && byte <= '9';
}
bool isLetter(char byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}

constexpr std::array<std::string_view, 6> Routes{"ma", "mb", "mc", "m", "n", "a"};
constexpr size_t ChapterDigits = 6, Prefix = 2, LongestName = 64;

/// Bytes of the route suffix at the front of `text`.
size_t routeLength(std::string_view text) {
  for (const std::string_view route : Routes)
    if (text.substr(0, route.size()) == route) return route.size();
  return text.substr(0, 1) == "b" ? 1 : 0;
}

bool hasNumber(std::string_view name) {
  return name.size() >= Prefix + ChapterDigits && name.substr(0, Prefix) == "sc" &&
         std::all_of(name.begin() + Prefix, name.begin() + Prefix + ChapterDigits, isDigit);
}

}  // namespace

bool isSceneName(const std::string& name) {
  const std::string_view text = name;
  if (text.size() > LongestName) return false;
  if (hasNumber(text)) {
    std::string_view rest = text.substr(Prefix + ChapterDigits);
    rest.remove_prefix(routeLength(rest));
    if (rest.empty()) return true;
    if (rest.front() != '_') return false;
    rest.remove_prefix(1);
    if (!rest.empty() && isLetter(rest.back())) rest.remove_suffix(1);
    return !rest.empty() && std::all_of(rest.begin(), rest.end(), isDigit);
  }
  constexpr std::string_view Word = "sc_";
  if (text.substr(0, Word.size()) != Word || text.size() == Word.size()) return false;
  return isLetter(text[Word.size()]) &&
         std::all_of(text.begin() + Word.size(), text.end(),
                     [](char byte) { return isDigit(byte) || isLetter(byte) || byte == '_'; });
}

std::string chapterOf(const std::string& name) {
  if (!hasNumber(name)) return {};
  return name.substr(Prefix, name.find('_') - Prefix);
}

bool isEngineScene(const std::string& name) {
  return name == "sc_start";
}

bool alwaysLeaves(const std::vector<Act>& acts) {
  return std::any_of(acts.begin(), acts.end(), [](const Act& act) { return alwaysLeaves(act); });
}
bool alwaysLeaves(const Act& act) {
  switch (act.kind) {
    case Act::Kind::Go:
    case Act::Kind::Choose:
    case Act::Kind::Places:
      return true;
    case Act::Kind::If:
      return !act.branches.empty() && act.branches.back().condition.empty() &&
             std::all_of(act.branches.begin(), act.branches.end(),
                         [](const Branch& branch) { return alwaysLeaves(branch.acts); });
    default:
      return false;
  }
}

int waitsOf(const std::vector<Act>& acts) {
  int sum = 0;
  for (const Act& act : acts) {
    switch (act.kind) {
      case Act::Kind::Message:
      case Act::Kind::Click:
      case Act::Kind::Choose:
      case Act::Kind::Places:
        ++sum;
        break;
      case Act::Kind::If: {
        int most = 0;
        for (const Branch& branch : act.branches)
          most = std::max(most, waitsOf(branch.acts));
        sum += most;
        break;
      }
      default:
        break;
    }
  }
  return sum;
}

}  // namespace qv::scenec
