#include "tools/qvtool/truetype.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/assert.h"

namespace qv::tool {

namespace {

constexpr uint32_t HeadMagic = 0x5F0F3CF5, ChecksumOfAll = 0xB1B0AFBA;
constexpr size_t ChecksumInHead = 8;
constexpr int WeightRegular = 400, WidthNormal = 5;
constexpr int WindowsPlatform = 3, UnicodeEncoding = 1, English = 0x409;

/// Big-endian numbers, one after another.
class Bytes {
 public:
  Bytes& u8(int value) { return put(static_cast<uint32_t>(value), 1); }
  Bytes& u16(int64_t value) { return put(static_cast<uint32_t>(value), 2); }
  Bytes& u32(int64_t value) { return put(static_cast<uint32_t>(value), 4); }
  Bytes& text(const std::string& bytes) {
    data.insert(data.end(), bytes.begin(), bytes.end());
    return *this;
  }
  Bytes& zeros(size_t count) {
    data.resize(data.size() + count);
    return *this;
  }
  Bytes& padded() { return zeros((4 - data.size() % 4) % 4); }

  std::vector<uint8_t> data;

 private:
  Bytes& put(uint32_t value, int bytes) {
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8)
      data.push_back(static_cast<uint8_t>(value >> shift));
    return *this;
  }
};

struct Box {
  int left = 0, bottom = 0, right = 0, top = 0;
};

Box boxOf(const std::vector<Contour>& contours) {
  Box box;
  bool first = true;
  for (const Contour& contour : contours)
    for (const OutlinePoint& point : contour) {
      if (first) box = {point.x, point.y, point.x, point.y};
      first = false;
      box.left = std::min(box.left, point.x);
      box.right = std::max(box.right, point.x);
      box.bottom = std::min(box.bottom, point.y);
      box.top = std::max(box.top, point.y);
    }
  return box;
}

size_t pointsOf(const std::vector<Contour>& contours) {
  size_t points = 0;
  for (const Contour& contour : contours)
    points += contour.size();
  return points;
}

/// What stands for characters that the font has not: a hollow box.
std::vector<Contour> hollowBox(const OutlineFont& font) {
  const int edge = font.unitsPerEm / 16;
  const int left = edge, right = font.unitsPerEm - edge;
  const int bottom = edge - font.descent, top = font.ascent - edge;
  return {{{left, bottom}, {left, top}, {right, top}, {right, bottom}},
          {{left + edge, bottom + edge},
           {right - edge, bottom + edge},
           {right - edge, top - edge},
           {left + edge, top - edge}}};
}

/// Its number in the file is its place in here: the hollow box, then the font's glyphs.
using Glyphs = std::vector<std::vector<Contour>>;

/// Every coordinate in two bytes: the file is small enough, and any reader understands it.
Bytes glyphData(const std::vector<Contour>& contours) {
  Bytes glyph;
  if (contours.empty()) return glyph;
  const Box box = boxOf(contours);
  glyph.u16(static_cast<int64_t>(contours.size()));
  glyph.u16(box.left).u16(box.bottom).u16(box.right).u16(box.top);
  int64_t last = -1;
  for (const Contour& contour : contours)
    glyph.u16(last += static_cast<int64_t>(contour.size()));
  glyph.u16(0);  // no instructions
  for (const Contour& contour : contours)
    for (const OutlinePoint& point : contour)
      glyph.u8(point.onCurve ? 1 : 0);
  for (const auto axis : {&OutlinePoint::x, &OutlinePoint::y}) {
    int before = 0;
    for (const Contour& contour : contours)
      for (const OutlinePoint& point : contour) {
        glyph.u16(point.*axis - before);
        before = point.*axis;
      }
  }
  return std::move(glyph.padded());
}

Bytes headTable(const OutlineFont& font, const Glyphs& glyphs) {
  Box all;
  for (const auto& contours : glyphs) {
    const Box box = boxOf(contours);
    all = {std::min(all.left, box.left), std::min(all.bottom, box.bottom),
           std::max(all.right, box.right), std::max(all.top, box.top)};
  }
  Bytes head;
  head.u32(0x00010000).u32(0x00010000).u32(0);  // version, revision, checksum for later
  head.u32(HeadMagic).u16(0x000B).u16(font.unitsPerEm);
  head.zeros(16);  // made and changed at no time, so that the same font is the same file
  head.u16(all.left).u16(all.bottom).u16(all.right).u16(all.top);
  head.u16(0).u16(8).u16(2);  // upright, readable from 8 pixels, left to right
  head.u16(1).u16(0);         // long offsets in loca
  return head;
}

Bytes hheaTable(const OutlineFont& font, const Glyphs& glyphs) {
  int left = font.unitsPerEm, right = font.unitsPerEm, extent = 0;
  for (const auto& contours : glyphs) {
    const Box box = boxOf(contours);
    left = std::min(left, box.left);
    right = std::min(right, font.unitsPerEm - box.right);
    extent = std::max(extent, box.right);
  }
  Bytes hhea;
  hhea.u32(0x00010000).u16(font.ascent).u16(-font.descent).u16(0).u16(font.unitsPerEm);
  hhea.u16(left).u16(right).u16(extent);
  hhea.u16(1).u16(0).u16(0).zeros(10);  // an upright caret
  return std::move(hhea.u16(static_cast<int64_t>(glyphs.size())));
}

Bytes hmtxTable(const OutlineFont& font, const Glyphs& glyphs) {
  Bytes hmtx;
  for (const auto& contours : glyphs)
    hmtx.u16(font.unitsPerEm).u16(boxOf(contours).left);
  return hmtx;
}

Bytes maxpTable(const Glyphs& glyphs) {
  size_t points = 0, contours = 0;
  for (const auto& glyph : glyphs) {
    points = std::max(points, pointsOf(glyph));
    contours = std::max(contours, glyph.size());
  }
  Bytes maxp;
  maxp.u32(0x00010000).u16(static_cast<int64_t>(glyphs.size()));
  maxp.u16(static_cast<int64_t>(points)).u16(static_cast<int64_t>(contours));
  maxp.zeros(4).u16(2);  // nothing composed; two zones, as is usual
  return std::move(maxp.zeros(16));
}

/// Format 4: rows of characters that follow each other, and a last one that ends the list.
Bytes cmapTable(const OutlineFont& font) {
  struct Row {
    int first, last, glyph;
  };
  std::vector<Row> rows;
  for (size_t at = 0; at < font.glyphs.size(); ++at) {
    const int character = font.glyphs[at].character;
    if (rows.empty() || rows.back().last + 1 != character)
      rows.push_back({character, character, static_cast<int>(at) + 1});
    rows.back().last = character;
  }
  rows.push_back({0xFFFF, 0xFFFF, 0});
  const auto count = static_cast<int>(rows.size());
  int power = 1, log = 0;
  for (; power * 2 <= count; power *= 2)
    ++log;
  Bytes cmap;
  cmap.u16(0).u16(1).u16(WindowsPlatform).u16(UnicodeEncoding).u32(12);
  cmap.u16(4).u16(16 + 8 * count).u16(0);
  cmap.u16(2 * count).u16(2 * power).u16(log).u16(2 * (count - power));
  for (const Row& row : rows)
    cmap.u16(row.last);
  cmap.u16(0);
  for (const Row& row : rows)
    cmap.u16(row.first);
  for (const Row& row : rows)
    cmap.u16(row.glyph - row.first + (row.first == 0xFFFF ? 0x10000 : 0));
  return std::move(cmap.zeros(2 * static_cast<size_t>(count)));
}

Bytes nameTable(const OutlineFont& font) {
  std::string joined;  // the format forbids blanks in a technical name
  std::copy_if(font.name.begin(), font.name.end(), std::back_inserter(joined),
               [](char c) { return c != ' '; });
  const std::pair<int, std::string> names[] = {
      {1, font.name}, {2, "Regular"}, {3, font.name}, {4, font.name}, {6, joined}};
  Bytes name, texts;
  name.u16(0).u16(std::size(names)).u16(6 + 12 * std::size(names));
  for (const auto& [id, text] : names) {
    name.u16(WindowsPlatform).u16(UnicodeEncoding).u16(English).u16(id);
    name.u16(2 * static_cast<int64_t>(text.size())).u16(static_cast<int64_t>(texts.data.size()));
    for (const char c : text)
      texts.u16(c);
  }
  name.data.insert(name.data.end(), texts.data.begin(), texts.data.end());
  return name;
}

Bytes os2Table(const OutlineFont& font) {
  const int em = font.unitsPerEm;
  Bytes os2;
  os2.u16(1).u16(em).u16(WeightRegular).u16(WidthNormal).u16(0);
  for (int script = 0; script < 2; ++script)  // sizes and places of raised and lowered signs
    os2.u16(em / 2).u16(em / 2).u16(0).u16(em / 4);
  os2.u16(em / 16).u16(em / 4).u16(0).zeros(10);  // strike-out; no class, no panose
  os2.u32(0).u32(1 << 28).u32(0).u32(0);          // bit 60: private use
  os2.text("    ").u16(0x0040);
  os2.u16(font.glyphs.empty() ? 0 : font.glyphs.front().character);
  os2.u16(font.glyphs.empty() ? 0 : font.glyphs.back().character);
  os2.u16(font.ascent).u16(-font.descent).u16(0).u16(font.ascent).u16(font.descent);
  return std::move(os2.u32(1).u32(0));
}

Bytes postTable() {
  Bytes post;
  post.u32(0x00030000).u32(0).u16(-100).u16(50).u32(1);  // no names; all of one width
  return std::move(post.zeros(16));
}

uint32_t checksumOf(const std::vector<uint8_t>& bytes, size_t from, size_t count) {
  uint32_t sum = 0;
  for (size_t at = 0; at < count; ++at)
    sum += static_cast<uint32_t>(bytes[from + at]) << (24 - 8 * (at % 4));
  return sum;
}

using Table = std::pair<const char*, Bytes>;

/// The directory and the tables behind it, by rising name as readers search it.
std::vector<uint8_t> assembled(const std::vector<Table>& tables) {
  const auto count = static_cast<int>(tables.size());
  int power = 1, log = 0;
  for (; power * 2 <= count; power *= 2)
    ++log;
  Bytes file, body;
  file.u32(0x00010000).u16(count).u16(16 * power).u16(log).u16(16 * (count - power));
  const size_t start = file.data.size() + 16 * tables.size();
  size_t head = 0;
  for (const auto& [name, table] : tables) {
    const size_t offset = start + body.data.size();
    if (std::string(name) == "head") head = offset;
    file.text(name).u32(checksumOf(table.data, 0, table.data.size()));
    file.u32(static_cast<int64_t>(offset)).u32(static_cast<int64_t>(table.data.size()));
    body.data.insert(body.data.end(), table.data.begin(), table.data.end());
    body.padded();
  }
  file.data.insert(file.data.end(), body.data.begin(), body.data.end());
  const uint32_t whole = ChecksumOfAll - checksumOf(file.data, 0, file.data.size());
  for (size_t byte = 0; byte < 4; ++byte)
    file.data[head + ChecksumInHead + byte] = static_cast<uint8_t>(whole >> (24 - 8 * byte));
  return std::move(file.data);
}

}  // namespace

std::vector<uint8_t> encodeTrueType(const OutlineFont& font) {
  QV_ASSERT(std::is_sorted(
      font.glyphs.begin(), font.glyphs.end(),
      [](const OutlineGlyph& a, const OutlineGlyph& b) { return a.character <= b.character; }));
  Glyphs glyphs = {hollowBox(font)};
  for (const OutlineGlyph& glyph : font.glyphs)
    glyphs.push_back(glyph.contours);
  Bytes glyf, loca;
  for (const auto& contours : glyphs) {
    loca.u32(static_cast<int64_t>(glyf.data.size()));
    const Bytes glyph = glyphData(contours);
    glyf.data.insert(glyf.data.end(), glyph.data.begin(), glyph.data.end());
  }
  loca.u32(static_cast<int64_t>(glyf.data.size()));
  return assembled({{"OS/2", os2Table(font)},
                    {"cmap", cmapTable(font)},
                    {"glyf", std::move(glyf)},
                    {"head", headTable(font, glyphs)},
                    {"hhea", hheaTable(font, glyphs)},
                    {"hmtx", hmtxTable(font, glyphs)},
                    {"loca", std::move(loca)},
                    {"maxp", maxpTable(glyphs)},
                    {"name", nameTable(font)},
                    {"post", postTable()}});
}

}  // namespace qv::tool
