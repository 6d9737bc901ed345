#include "tools/qvtool/font_source.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <optional>
#include <sstream>
#include <utility>

#include "platform/text/shift_jis.h"
#include "tools/failure.h"
#include "tools/qvtool/font_outline.h"

namespace qv::tool {

namespace {

constexpr int UnitsPerEm = 1024, Ascent = 896, Descent = 128;
constexpr int SmallestGrid = 8, LargestGrid = 1024;
constexpr uint16_t FirstExternal = 0xF040, LastExternal = 0xF9FC;
constexpr size_t LargestGlyph = 4096;  // points; no sign that one can draw by hand has more

using Words = std::vector<std::string>;
using Outlines = std::vector<GridOutline>;

class Reader {
 public:
  explicit Reader(std::string name) : name_(std::move(name)) {}
  void readLine(const std::string& line);
  OutlineFont finished();

 private:
  struct Sign {
    std::optional<uint16_t> code;  // of a part none
    Outlines outlines;
  };
  using Reading = void (Reader::*)(const Words&);
  struct Word {
    const char* name;
    Reading read;
    const char* form;
    size_t least, most;  // words behind it
  };
  static const Word WordTable[];
  static constexpr size_t Any = 1000;

  [[noreturn]] void fail(const std::string& sentence) const {
    throw Failure(name_ + ":" + std::to_string(line_) + ": " + sentence);
  }
  double number(const std::string& word) const;
  GridPoint point(const std::string& word) const;
  std::vector<GridPoint> points(const Words& words, size_t from) const;
  double penWidth(const std::string& word) const;
  void add(GridOutline outline);
  void addAll(const Outlines& outlines);
  void begin(const std::string& name, std::optional<uint16_t> code);

  void readFont(const Words& words);
  void readGrid(const Words& words);
  void readGlyph(const Words& words);
  void readPart(const Words& words) { begin(words[1], std::nullopt); }
  void readFill(const Words& words) { add(turned(points(words, 1), false)); }
  void readCut(const Words& words) { add(turned(points(words, 1), true)); }
  void readDisc(const Words& words);
  void readLineShape(const Words& words) { addAll(penLine(points(words, 2), penWidth(words[1]))); }
  void readCurve(const Words& words) { addAll(penCurve(points(words, 2), penWidth(words[1]))); }
  void readUse(const Words& words);

  std::string name_;
  int line_ = 0;
  std::string fontName_ = "Signs";
  double grid_ = 32;
  std::map<std::string, Sign> signs_;
  Sign* sign_ = nullptr;  // the one that shapes are added to
};

const Reader::Word Reader::WordTable[] = {
    {"font", &Reader::readFont, "font NAME", 1, Any},
    {"grid", &Reader::readGrid, "grid SIZE", 1, 1},
    {"glyph", &Reader::readGlyph, "glyph CODE NAME", 2, 2},
    {"part", &Reader::readPart, "part NAME", 1, 1},
    {"fill", &Reader::readFill, "fill X,Y X,Y X,Y...", 3, Any},
    {"cut", &Reader::readCut, "cut X,Y X,Y X,Y...", 3, Any},
    {"disc", &Reader::readDisc, "disc X,Y RADIUS, or RADIUS,RADIUS", 2, 2},
    {"line", &Reader::readLineShape, "line WIDTH X,Y X,Y...", 2, Any},
    {"curve", &Reader::readCurve, "curve WIDTH X,Y X,Y...", 2, Any},
    {"use", &Reader::readUse, "use NAME [X,Y [PERCENT]]", 1, 3},
};

void Reader::readLine(const std::string& line) {
  ++line_;
  std::istringstream stream(line.substr(0, line.find('#')));
  Words words;
  for (std::string word; stream >> word;)
    words.push_back(word);
  if (words.empty()) return;
  for (const Word& known : WordTable) {
    if (words[0] != known.name) continue;
    if (words.size() <= known.least || words.size() - 1 > known.most)
      fail("write \"" + std::string(known.form) + "\".");
    return (this->*known.read)(words);
  }
  fail("\"" + words[0] + "\" is no word of a font.");
}

double Reader::number(const std::string& word) const {
  double value = 0;
  const char* const end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, value, std::chars_format::fixed);
  if (word.empty() || error != std::errc() || stop != end || !(std::abs(value) <= LargestGrid))
    fail("\"" + word + "\" is no number from -1024 to 1024.");
  return value;
}

GridPoint Reader::point(const std::string& word) const {
  const size_t comma = word.find(',');
  if (comma == std::string::npos) fail("\"" + word + "\" is no place; write X,Y.");
  const bool bends = word[0] == '~';
  return {number(word.substr(bends ? 1 : 0, comma - (bends ? 1 : 0))),
          number(word.substr(comma + 1)), !bends};
}

std::vector<GridPoint> Reader::points(const Words& words, size_t from) const {
  std::vector<GridPoint> row;
  for (size_t at = from; at < words.size(); ++at)
    row.push_back(point(words[at]));
  return row;
}

double Reader::penWidth(const std::string& word) const {
  const double width = number(word);
  if (width <= 0) fail("a pen is wider than nothing.");
  return width;
}

void Reader::add(GridOutline outline) {
  if (!sign_) fail("a shape belongs behind a \"glyph\" or \"part\".");
  size_t count = outline.size();
  for (const GridOutline& other : sign_->outlines)
    count += other.size();
  if (count > LargestGlyph) fail("the glyph has too many points; 4096 are the most.");
  sign_->outlines.push_back(std::move(outline));
}

void Reader::addAll(const Outlines& outlines) {
  for (const GridOutline& outline : outlines)
    add(turned(outline, false));
}

void Reader::begin(const std::string& name, std::optional<uint16_t> code) {
  const auto [place, fresh] = signs_.emplace(name, Sign{code, {}});
  if (!fresh) fail("there is a \"" + name + "\" already.");
  sign_ = &place->second;
}

void Reader::readFont(const Words& words) {
  fontName_.clear();
  for (size_t at = 1; at < words.size(); ++at)
    fontName_ += (at > 1 ? " " : "") + words[at];
  const bool plain =
      std::all_of(fontName_.begin(), fontName_.end(), [](char c) { return c >= ' ' && c <= '~'; });
  if (!plain || fontName_.size() > 31) fail("a font's name is up to 31 letters of ASCII.");
}

void Reader::readGrid(const Words& words) {
  grid_ = number(words[1]);
  if (grid_ < SmallestGrid) fail("a grid has from 8 to 1024 lines.");
  if (!signs_.empty()) fail("the grid stands before the first glyph.");
}

void Reader::readGlyph(const Words& words) {
  unsigned code = 0;
  const char* const end = words[1].data() + words[1].size();
  const auto [stop, error] = std::from_chars(words[1].data(), end, code, 16);
  const bool known = error == std::errc() && stop == end && code >= FirstExternal &&
                     code <= LastExternal && unicodeOfShiftJis(static_cast<uint16_t>(code)) != 0;
  if (!known) fail("\"" + words[1] + "\" is no external character; they are F040 to F9FC.");
  for (const auto& [name, sign] : signs_)
    if (sign.code == code) fail(words[1] + " is \"" + name + "\" already.");
  begin(words[2], static_cast<uint16_t>(code));
}

void Reader::readDisc(const Words& words) {
  const bool two = words[2].find(',') != std::string::npos;
  const GridPoint radius = two ? point(words[2]) : GridPoint{number(words[2]), number(words[2])};
  if (radius.x <= 0 || radius.y <= 0) fail("a disc's radius is more than nothing.");
  add(turned(disc(point(words[1]), radius.x, radius.y), false));
}

void Reader::readUse(const Words& words) {
  const auto found = signs_.find(words[1]);
  if (found == signs_.end()) fail("there is no \"" + words[1] + "\" above.");
  if (&found->second == sign_) fail("a glyph cannot use itself.");
  const GridPoint move = words.size() > 2 ? point(words[2]) : GridPoint{};
  const double percent = words.size() > 3 ? number(words[3]) : 100;
  if (percent < 1) fail("a size is 1 percent and more.");
  // What cuts in there cuts in here: the outlines keep their turns.
  for (GridOutline outline : found->second.outlines) {
    for (GridPoint& place : outline)
      place = {place.x * percent / 100 + move.x, place.y * percent / 100 + move.y, place.onCurve};
    add(std::move(outline));
  }
}

OutlineFont Reader::finished() {
  OutlineFont font;
  font.name = fontName_;
  font.unitsPerEm = UnitsPerEm;
  font.ascent = Ascent;
  font.descent = Descent;
  for (const auto& [name, sign] : signs_) {
    if (!sign.code) continue;
    OutlineGlyph glyph;
    glyph.character = static_cast<uint16_t>(unicodeOfShiftJis(*sign.code));
    for (const GridOutline& outline : sign.outlines) {
      Contour contour;
      for (const GridPoint& place : outline) {
        const double x = place.x * UnitsPerEm / grid_, y = Ascent - place.y * UnitsPerEm / grid_;
        if (std::abs(x) > 2 * UnitsPerEm || std::abs(y) > 2 * UnitsPerEm)
          throw Failure(name_ + ": \"" + name + "\" reaches far beyond its cell.");
        contour.push_back(
            {static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y)), place.onCurve});
      }
      glyph.contours.push_back(std::move(contour));
    }
    if (glyph.contours.empty()) throw Failure(name_ + ": \"" + name + "\" is empty.");
    font.glyphs.push_back(std::move(glyph));
  }
  std::sort(font.glyphs.begin(), font.glyphs.end(),
            [](const OutlineGlyph& a, const OutlineGlyph& b) { return a.character < b.character; });
  if (font.glyphs.empty()) throw Failure(name_ + ": there is no glyph in it.");
  return font;
}

}  // namespace

OutlineFont readFontSource(std::string_view text, const std::string& name) {
  Reader reader(name);
  while (!text.empty()) {
    const size_t end = std::min(text.find('\n'), text.size());
    reader.readLine(std::string(text.substr(0, end)));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return reader.finished();
}

}  // namespace qv::tool
