// The story's font of external characters: its text, the file that is written from it, and what a
// reader of fonts makes of that file.

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <ft2build.h>

#include FT_FREETYPE_H

#include <gtest/gtest.h>

#include "graphics/surface.h"
#include "message/print_area.h"
#include "platform/text/shift_jis.h"
#include "platform/text/text_renderer.h"
#include "scenario/scenario.h"
#include "tests/support/golden.h"
#include "tests/support/process.h"
#include "tests/support/test_platform.h"
#include "tools/failure.h"
#include "tools/qvtool/font_source.h"
#include "tools/qvtool/truetype.h"

namespace qv {
namespace {

using namespace qv::testing;
using tool::encodeTrueType;
using tool::readFontSource;

const char* const Tool = QV_BIN_DIR "/qvtool";
const char* const SignsFile = QV_SOURCE_DIR "/game/font/signs.txt";

/// Those that never begin a line of a message, in the order of that list.
constexpr uint16_t LineEnders[] = {0xF040, 0xF041, 0xF042, 0xF043, 0xF044, 0xF045, 0xF048, 0xF049,
                                   0xF057, 0xF050, 0xF051, 0xF05F, 0xF05C, 0xF05D, 0xF05E, 0xF064,
                                   0xF065, 0xF074, 0xF075, 0xF076, 0xF077, 0xF09C, 0xF09D, 0xF09E,
                                   0xF09F, 0xF0A0, 0xF0A1, 0xF0A2, 0xF0A3, 0xF0A4, 0xF0A5, 0xF0A6,
                                   0xF0A7, 0xF0A8, 0xF0BE, 0xF087, 0xF084, 0xF066, 0xF056};

/// A cell of a font drawn without smoothing: rows of '#' and '.'.
using Cell = std::vector<std::string>;

/// FreeType's view of a font file.
class ReadFont {
 public:
  explicit ReadFont(std::vector<uint8_t> bytes) : bytes_(std::move(bytes)) {
    if (FT_Init_FreeType(&library_) != 0) return;
    if (FT_New_Memory_Face(library_, bytes_.data(), static_cast<FT_Long>(bytes_.size()), 0,
                           &face_) != 0)
      face_ = nullptr;
  }
  ~ReadFont() {
    if (face_) FT_Done_Face(face_);
    if (library_) FT_Done_FreeType(library_);
  }
  ReadFont(const ReadFont&) = delete;
  ReadFont& operator=(const ReadFont&) = delete;

  FT_Face face() const { return face_; }
  bool has(uint16_t code) const { return FT_Get_Char_Index(face_, unicodeOfShiftJis(code)) != 0; }
  int advance(uint16_t code, int pixels) const {
    return load(code, pixels) ? static_cast<int>(face_->glyph->advance.x >> 6) : -1;
  }
  /// The character in a cell of that many pixels, cut where it sticks out.
  Cell cell(uint16_t code, int pixels) const {
    Cell rows(static_cast<size_t>(pixels), std::string(static_cast<size_t>(pixels), '.'));
    if (!load(code, pixels)) return {};
    const FT_Bitmap& bitmap = face_->glyph->bitmap;
    const int left = face_->glyph->bitmap_left;
    const int top = pixels * face_->ascender / face_->units_per_EM - face_->glyph->bitmap_top;
    for (int y = std::max(0, -top); y < static_cast<int>(bitmap.rows) && top + y < pixels; ++y)
      for (int x = std::max(0, -left); x < static_cast<int>(bitmap.width) && left + x < pixels; ++x)
        if (bitmap.buffer[y * bitmap.pitch + x / 8] & (0x80 >> x % 8))
          rows.at(static_cast<size_t>(top) + static_cast<size_t>(y))
              .at(static_cast<size_t>(left) + static_cast<size_t>(x)) = '#';
    return rows;
  }

 private:
  bool load(uint16_t code, int pixels) const {
    return FT_Set_Pixel_Sizes(face_, 0, static_cast<FT_UInt>(pixels)) == 0 &&
           FT_Load_Char(face_, unicodeOfShiftJis(code), FT_LOAD_TARGET_MONO | FT_LOAD_RENDER) == 0;
  }

  std::vector<uint8_t> bytes_;
  FT_Library library_ = nullptr;
  FT_Face face_ = nullptr;
};

std::vector<uint8_t> encoded(const std::string& text) {
  return encodeTrueType(readFontSource(text, "font"));
}

std::vector<uint8_t> encodedSigns() {
  return encoded(readWhole(SignsFile));
}

size_t inkOf(const Cell& cell) {
  size_t ink = 0;
  for (const std::string& row : cell)
    ink += static_cast<size_t>(std::count(row.begin(), row.end(), '#'));
  return ink;
}

std::vector<uint16_t> codesIn(const ReadFont& font) {
  std::vector<uint16_t> codes;
  for (unsigned code = 0xF040; code <= 0xF9FC; ++code)
    if (unicodeOfShiftJis(static_cast<uint16_t>(code)) && font.has(static_cast<uint16_t>(code)))
      codes.push_back(static_cast<uint16_t>(code));
  return codes;
}

TEST(StoryFont, HasEverySignThatEndsALine) {
  const ReadFont font(encodedSigns());
  ASSERT_NE(font.face(), nullptr);
  for (const uint16_t code : LineEnders) {
    EXPECT_TRUE(font.has(code)) << std::hex << code;
    EXPECT_GT(inkOf(font.cell(code, 18)), 4u) << std::hex << code;
  }
  EXPECT_FALSE(font.has(0xF0BF));
  EXPECT_EQ(FT_Get_Char_Index(font.face(), 'A'), 0u);
}

TEST(StoryFont, MapsItsFirstCodeToTheFirstPrivateCharacter) {
  const ReadFont font(encodedSigns());
  ASSERT_NE(font.face(), nullptr);
  FT_UInt glyph = 0;
  EXPECT_EQ(FT_Get_First_Char(font.face(), &glyph), 0xE000u);
  EXPECT_EQ(glyph, 1u);
}

TEST(StoryFont, GivesEverySignAPictureOfItsOwnInAFullCell) {
  const ReadFont font(encodedSigns());
  ASSERT_NE(font.face(), nullptr);
  std::map<Cell, uint16_t> seen;
  for (const uint16_t code : codesIn(font)) {
    EXPECT_EQ(font.advance(code, 18), 18) << std::hex << code;
    const auto [first, fresh] = seen.emplace(font.cell(code, 18), code);
    EXPECT_TRUE(fresh) << std::hex << code << " looks like " << first->second;
  }
  EXPECT_EQ(static_cast<FT_Long>(seen.size() + 1), font.face()->num_glyphs);
}

TEST(StoryFont, KeepsEverySignWithinItsCell) {
  for (const tool::OutlineGlyph& glyph : readFontSource(readWhole(SignsFile), "signs").glyphs)
    for (const tool::Contour& contour : glyph.contours)
      for (const tool::OutlinePoint& point : contour) {
        EXPECT_GE(point.x, -32) << std::hex << glyph.character;
        EXPECT_LE(point.x, 1056) << std::hex << glyph.character;
        EXPECT_GE(point.y, -128) << std::hex << glyph.character;
        EXPECT_LE(point.y, 928) << std::hex << glyph.character;
      }
}

TEST(StoryFont, DrawsTheHeartOfTheFirstCode) {
  const ReadFont font(encodedSigns());
  ASSERT_NE(font.face(), nullptr);
  EXPECT_EQ(font.cell(0xF040, 12),
            (Cell{"............", ".###...###..", "#####.#####.", "###########.", "###########.",
                  "###########.", ".#########..", "..#######...", "...#####....", "....###.....",
                  "............", "............"}));
}

/// Without the empty rows around it: where a base line lies is the reader's business.
Cell trimmed(Cell cell) {
  const auto empty = [](const std::string& row) { return row.find('#') == std::string::npos; };
  while (!cell.empty() && empty(cell.back()))
    cell.pop_back();
  cell.erase(cell.begin(), std::find_if_not(cell.begin(), cell.end(), empty));
  return cell;
}

/// As the game has it: set by the manager for the run, printed by an area.
TEST(StoryFont, IsWhatAPrintAreaDrawsItsSignsFrom) {
  constexpr int Side = 18;
  const std::vector<uint8_t> bytes = encodedSigns();
  TestPlatform platform;
  platform.writeFile(platform.game() / "dat" / "own.tte", std::string(bytes.begin(), bytes.end()));
  TextRenderer text;
  Services withText = services();
  withText.text = &text;
  const ServicesScope scope(withText);
  QVScenario manager;
  manager.Open("Test", 1, 1, 1);
  QVVSurface surface;
  surface.create(Side, Side);
  QVPrintArea area;
  area.setSurface(&surface);
  area.setRect(0, 0, Side, Side);
  area.setFont(Side, 400, 0, 1, 128, nullptr);
  const auto printed = [&](uint16_t code) {
    const char bytesOfSign[] = {static_cast<char>(code >> 8), static_cast<char>(code & 0xFF), 0};
    area.clear(true, true);
    area.printText(bytesOfSign);
    Cell rows(Side, std::string(Side, '.'));
    for (int y = 0; y < Side; ++y)
      for (int x = 0; x < Side; ++x)
        if (surface.pixel(x, y) != 255) rows[static_cast<size_t>(y)][static_cast<size_t>(x)] = '#';
    return trimmed(rows);
  };
  const ReadFont font(bytes);
  const auto sign = [&](uint16_t code) { return trimmed(font.cell(code, Side)); };
  for (const uint16_t code : LineEnders)
    ASSERT_TRUE(printed(code) != sign(code)) << std::hex << code << " before it is set";
  manager.SetExternalFont("dat\\own.tte");
  for (const uint16_t code : LineEnders)
    EXPECT_EQ(printed(code), sign(code)) << std::hex << code;
  manager.SetExternalFont(nullptr);
  EXPECT_NE(printed(LineEnders[0]), sign(LineEnders[0]));
}

TEST(StoryFont, LooksAsItsSheetShows) {
  const ReadFont font(encodedSigns());
  ASSERT_NE(font.face(), nullptr);
  constexpr int Columns = 11, Side = 20, Drawn = 18;
  const std::vector<uint16_t> codes = codesIn(font);
  const int rows = (static_cast<int>(codes.size()) + Columns - 1) / Columns;
  Picture sheet{Columns * Side, rows * Side, {}};
  sheet.pixels.assign(static_cast<size_t>(sheet.width) * static_cast<size_t>(sheet.height),
                      0xFFFFFF);
  for (size_t at = 0; at < codes.size(); ++at) {
    const Cell cell = font.cell(codes[at], Drawn);
    ASSERT_EQ(cell.size(), static_cast<size_t>(Drawn));
    const size_t left = at % Columns * Side + 1, top = at / Columns * Side + 1;
    for (size_t y = 0; y < cell.size(); ++y)
      for (size_t x = 0; x < cell[y].size(); ++x)
        if (cell[y][x] == '#')
          sheet.pixels[(top + y) * static_cast<size_t>(sheet.width) + left + x] = 0;
  }
  EXPECT_TRUE(matchesGolden(sheet, QV_SOURCE_DIR "/tests/golden/story_font.png"));
}

uint32_t wordAt(const std::vector<uint8_t>& bytes, size_t at) {
  uint32_t word = 0;
  for (size_t byte = 0; byte < 4; ++byte)
    word = word << 8 | (at + byte < bytes.size() ? bytes[at + byte] : 0u);
  return word;
}

uint32_t sumOf(const std::vector<uint8_t>& bytes, size_t from, size_t count) {
  uint32_t sum = 0;
  for (size_t at = 0; at < count; at += 4)
    sum += wordAt(bytes, from + at);
  return sum;
}

TEST(TrueType, HasChecksumsThatHold) {
  const std::vector<uint8_t> file = encodedSigns();
  EXPECT_EQ(file.size() % 4, 0u);
  EXPECT_EQ(sumOf(file, 0, file.size()), 0xB1B0AFBAu);
  const size_t tables = wordAt(file, 4) >> 16;
  ASSERT_EQ(tables, 10u);
  std::string before;
  for (size_t table = 0; table < tables; ++table) {
    const size_t entry = 12 + 16 * table;
    const std::string name(file.begin() + static_cast<ptrdiff_t>(entry),
                           file.begin() + static_cast<ptrdiff_t>(entry) + 4);
    EXPECT_LT(before, name);
    before = name;
    const size_t offset = wordAt(file, entry + 8), length = wordAt(file, entry + 12);
    EXPECT_EQ(offset % 4, 0u) << name;
    ASSERT_LE(offset + length, file.size()) << name;
    // Of head the sum is that with its own field at zero.
    const uint32_t field = name == "head" ? wordAt(file, offset + 8) : 0;
    EXPECT_EQ(sumOf(file, offset, (length + 3) / 4 * 4) - field, wordAt(file, entry + 4)) << name;
  }
}

TEST(TrueType, TellsReadersItsNameAndItsMeasures) {
  const ReadFont font(encoded("font Some Signs\nglyph F040 a\nfill 0,0 8,0 8,8\n"));
  ASSERT_NE(font.face(), nullptr);
  EXPECT_STREQ(font.face()->family_name, "Some Signs");
  EXPECT_STREQ(font.face()->style_name, "Regular");
  EXPECT_EQ(font.face()->units_per_EM, 1024);
  EXPECT_EQ(font.face()->ascender, 896);
  EXPECT_EQ(font.face()->descender, -128);
  EXPECT_TRUE(FT_IS_FIXED_WIDTH(font.face()));
}

TEST(TrueType, IsTheSameFileEachTime) {
  EXPECT_EQ(encodedSigns(), encodedSigns());
}

TEST(TrueType, FindsCharactersInSeparateRowsOfCodes) {
  std::string text;
  const std::set<uint16_t> codes = {0xF040, 0xF041, 0xF07E, 0xF080, 0xF0FC, 0xF140, 0xF9FC};
  for (const uint16_t code : codes) {
    char line[32];
    std::snprintf(line, sizeof(line), "glyph %X s%X\n", code, code);
    text += line + std::string("fill 4,4 28,4 28,28\n");
  }
  const ReadFont font(encoded(text));
  ASSERT_NE(font.face(), nullptr);
  const std::vector<uint16_t> found = codesIn(font);
  EXPECT_EQ(std::set<uint16_t>(found.begin(), found.end()), codes);
}

/// One glyph of a grid of 8, drawn in 8 pixels.
Cell drawn(const std::string& shapes) {
  const ReadFont font(encoded("grid 8\npart box\nfill 1,1 3,1 3,3 1,3\nglyph F040 x\n" + shapes));
  return font.face() ? font.cell(0xF040, 8) : Cell();
}

TEST(FontSource, FillsAndCutsWhicheverWayAnOutlineGoes) {
  const Cell ring = {"........", ".######.", ".######.", ".##..##.",
                     ".##..##.", ".######.", ".######.", "........"};
  for (const char* fill : {"fill 1,1 7,1 7,7 1,7\n", "fill 1,1 1,7 7,7 7,1\n"})
    for (const char* cut : {"cut 3,3 5,3 5,5 3,5\n", "cut 3,3 3,5 5,5 5,3\n"})
      EXPECT_EQ(drawn(std::string(fill) + cut), ring);
}

TEST(FontSource, DrawsPensWithRoundEndsAndCorners) {
  EXPECT_EQ(drawn("line 2 2,2 6,2 6,6\n"), (Cell{"........", ".######.", ".######.", ".....##.",
                                                 ".....##.", ".....##.", ".....##.", "........"}));
  EXPECT_EQ(drawn("line 4 4,4\n"), drawn("disc 4,4 2\n"));
  EXPECT_EQ(drawn("disc 4,4 3.6,1.2\n"), (Cell{"........", "........", "........", ".######.",
                                               ".######.", "........", "........", "........"}));
}

TEST(FontSource, BendsALineTowardsItsMarkedPoints) {
  const Cell bent = drawn("line 1.6 0.5,7 ~0.5,0.5 7,0.5\n");
  const Cell through = drawn("curve 1.6 0.5,7 2.5,2.5 7,0.5\n");
  for (const Cell& cell : {bent, through}) {
    EXPECT_EQ(cell[2][2], '#');
    EXPECT_EQ(cell[0][0], '.') << "the corner is cut";
    EXPECT_EQ(cell[7][7], '.');
  }
}

TEST(FontSource, UsesWhatStandsAboveMovedAndScaled) {
  EXPECT_EQ(drawn("use box\n"), drawn("fill 1,1 3,1 3,3 1,3\n"));
  EXPECT_EQ(drawn("use box 3,4\n"), drawn("fill 4,5 6,5 6,7 4,7\n"));
  EXPECT_EQ(drawn("use box -1,0 200\n"), drawn("fill 1,2 5,2 5,6 1,6\n"));
}

TEST(FontSource, SaysThePlaceAndWhatIsWrong) {
  const std::pair<const char*, const char*> cases[] = {
      {"", "font: there is no glyph in it."},
      {"# only a remark\n", "font: there is no glyph in it."},
      {"glyph F040 a\n", "font: \"a\" is empty."},
      {"\nsquare 1,1\n", "font:2: \"square\" is no word of a font."},
      {"glyph F040\n", "font:1: write \"glyph CODE NAME\"."},
      {"glyph 8140 a\n", "font:1: \"8140\" is no external character; they are F040 to F9FC."},
      {"glyph F07F a\n", "font:1: \"F07F\" is no external character; they are F040 to F9FC."},
      {"glyph F040x a\n", "font:1: \"F040x\" is no external character; they are F040 to F9FC."},
      {"glyph F040 a\nglyph F040 b\n", "font:2: F040 is \"a\" already."},
      {"part a\npart a\n", "font:2: there is a \"a\" already."},
      {"part a\ngrid 16\n", "font:2: the grid stands before the first glyph."},
      {"grid 2\n", "font:1: a grid has from 8 to 1024 lines."},
      {"grid nan\n", "font:1: \"nan\" is no number from -1024 to 1024."},
      {"font \xE3\x81\x82\n", "font:1: a font's name is up to 31 letters of ASCII."},
      {"fill 1,1 2,2 3,3\n", "font:1: a shape belongs behind a \"glyph\" or \"part\"."},
      {"use a\n", "font:1: there is no \"a\" above."},
      {"part a\nuse a\n", "font:2: a glyph cannot use itself."},
      {"part a\npart b\nuse a 1,1 0\n", "font:3: a size is 1 percent and more."},
      {"part a\nfill 1,1 2,2\n", "font:2: write \"fill X,Y X,Y X,Y...\"."},
      {"part a\nfill 1,1 2,2 3\n", "font:2: \"3\" is no place; write X,Y."},
      {"part a\nfill 1,1 2,2 3,\n", "font:2: \"\" is no number from -1024 to 1024."},
      {"part a\nfill 1,1 2,2 3,1e9\n", "font:2: \"1e9\" is no number from -1024 to 1024."},
      {"part a\nline 0 1,1\n", "font:2: a pen is wider than nothing."},
      {"part a\ndisc 1,1 -2\n", "font:2: a disc's radius is more than nothing."},
      {"glyph F040 a\nfill 0,0 1,1 900,1\n", "font: \"a\" reaches far beyond its cell."}};
  for (const auto& [text, complaint] : cases) {
    std::string said;
    try {
      readFontSource(text, "font");
    } catch (const tool::Failure& failure) {
      said = failure.what();
    }
    EXPECT_EQ(said, complaint) << text;
  }
}

TEST(FontSource, StopsAtMorePointsThanASignCanHave) {
  std::string text = "part p0\ndisc 1,1 1\n";
  for (int level = 1; level < 40; ++level) {
    const std::string before = "use p" + std::to_string(level - 1) + "\n";
    text += "part p" + std::to_string(level) + "\n" + before + before;
  }
  EXPECT_THROW(readFontSource(text, "font"), tool::Failure);
}

TEST(QvToolFont, WritesTheFontThatTheGameCarries) {
  TemporaryFolder folder;
  const std::string target = (folder.path() / "signs.ttf").string();
  const ProcessResult result = runProcess({Tool, "font", "encode", SignsFile, target});
  EXPECT_EQ(result.status, 0) << result.errors;
  const std::vector<uint8_t> expected = encodedSigns();
  EXPECT_EQ(readWhole(target), std::string(expected.begin(), expected.end()));
}

TEST(QvToolFont, WritesNothingWhereTheTextIsWrong) {
  TemporaryFolder folder;
  const std::string source = (folder.path() / "a.txt").string();
  const std::string target = (folder.path() / "a.ttf").string();
  writeWhole(source, "glyph F040 a\ncircle 1,1 1\n");
  const ProcessResult result = runProcess({Tool, "font", "encode", source, target});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.errors, "qvtool: " + source + ":2: \"circle\" is no word of a font.\n");
  EXPECT_FALSE(std::filesystem::exists(target));
}

}  // namespace
}  // namespace qv
