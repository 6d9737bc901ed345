#include "scenes/generator/problems.h"

#include <algorithm>
#include <cstdint>

namespace qv::scenec {

namespace {

constexpr size_t MostLines = 100;
constexpr int MostGuesses = 300;

/// Start offsets of the characters; bytes that continue a character start none.
std::vector<std::string> characters(const std::string& text) {
  std::vector<std::string> parts;
  for (const char byte : text) {
    const bool continues = (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
    if (continues && !parts.empty())
      parts.back() += byte;
    else
      parts.emplace_back(1, byte);
  }
  return parts;
}

size_t distance(const std::vector<std::string>& left, const std::vector<std::string>& right) {
  std::vector<size_t> row(right.size() + 1);
  for (size_t column = 0; column <= right.size(); ++column)
    row[column] = column;
  for (size_t line = 1; line <= left.size(); ++line) {
    size_t diagonal = row[0];
    row[0] = line;
    for (size_t column = 1; column <= right.size(); ++column) {
      const size_t above = row[column];
      row[column] = std::min({above + 1, row[column - 1] + 1,
                              diagonal + (left[line - 1] == right[column - 1] ? 0 : 1)});
      diagonal = above;
    }
  }
  return row.back();
}

}  // namespace

void Problems::add(Place place, std::string what) {
  problems_.push_back({place, std::move(what)});
}

std::vector<std::string> Problems::lines(const std::string& root) const {
  std::vector<Problem> sorted = problems_;
  std::stable_sort(sorted.begin(), sorted.end(), [](const Problem& left, const Problem& right) {
    if (left.place.file != right.place.file) return left.place.file < right.place.file;
    return left.place.line < right.place.line;
  });
  std::vector<std::string> texts;
  for (const Problem& problem : sorted) {
    if (texts.size() == MostLines) {
      texts.push_back("and " + std::to_string(sorted.size() - MostLines) + " more");
      break;
    }
    const size_t file = static_cast<size_t>(problem.place.file);
    std::string text = root + (file < files.size() ? files[file] : "?");
    if (problem.place.line > 0) text += ":" + std::to_string(problem.place.line);
    texts.push_back(text + ": " + problem.what);
  }
  return texts;
}

std::string nearest(const std::string& word, const std::vector<std::string>& known) {
  constexpr size_t LongestCompared = 60;  // words beyond it are no slips of the pen
  const std::vector<std::string> wanted = characters(word);
  if (wanted.size() > LongestCompared) return {};
  std::string best;
  size_t bestDistance = SIZE_MAX;
  for (const std::string& candidate : known) {
    const std::vector<std::string> other = characters(candidate);
    if (other.size() > LongestCompared) continue;
    const size_t away = distance(wanted, other);
    const size_t limit = std::max<size_t>(1, std::max(wanted.size(), other.size()) / 3);
    if (away <= limit && away < other.size() && away < bestDistance) {
      best = candidate;
      bestDistance = away;
    }
  }
  return best;
}

std::string Problems::suggestion(const std::string& word, const std::vector<std::string>& known,
                                 const std::string& otherwise) {
  if (++guesses_ > MostGuesses) return otherwise;
  const std::string close = nearest(word, known);
  return close.empty() ? otherwise : " Did you mean \"" + close + "\"?";
}

}  // namespace qv::scenec
