#include "graphics/palette.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "foundation/diagnostic.h"
#include "foundation/file.h"
#include "foundation/heap.h"
#include "foundation/string.h"
#include "graphics/colour_math.h"
#include "graphics/dib.h"
#include "graphics/static_colours.h"

namespace qv {

namespace {

constexpr auto TableSize = static_cast<int32_t>(std::tuple_size_v<ColourTable>);
constexpr auto EntryBytes = static_cast<int32_t>(sizeof(uint32_t));
constexpr int32_t LastRaised = TableSize - 1;

/// No table of a game is larger; a slip in a scene must not ask for gigabytes.
constexpr int32_t MostEntries = 1 << 20;

// Files: "PF", line feed, blank, then a head that says nothing to us, then 256 entries; or a tag,
// a count and that many entries.
constexpr uint32_t PfMagic = 0x200A4650;
constexpr int64_t PfHeadBytes = 140;
constexpr const char* Tag = "scobjPalette";

bool readWord(QVFile& file, uint32_t& word) {
  return file.read(&word, EntryBytes) == EntryBytes;
}

}  // namespace

void scobjPalette::create(int32_t count) {
  if (count <= 0) return;
  makeEntries(count);
  if (count != TableSize) return;
  const ColourTable& colours = defaultColours();
  for (size_t entry = 0; entry < colours.size(); ++entry)
    if (isStaticColour(entry)) entries_.data()[entry] = colours[entry];
}

void scobjPalette::makeEntries(int32_t count) {
  constexpr const char* Operation = "scobjPalette - create";
  if (count > MostEntries) throw NotEnoughMemoryException(Operation);
  try {
    entries_.replace(static_cast<size_t>(count));
  } catch (const NotEnoughMemoryException&) {
    throw NotEnoughMemoryException(Operation);
  }
}

void scobjPalette::loadFromPicture(const char* fileName) {
  QVVSurface picture;
  picture.loadFromFile(fileName);
  takeFromSurface(picture);
}

void scobjPalette::takeFromSurface(const QVVSurface& surface) {
  const ColourTable colours = surface.storedColours();
  makeEntries(TableSize);
  std::ranges::copy(colours, entries_.data());
}

void scobjPalette::readFile(const char* name) {
  QVFile file;
  file.openName(name, OpenExisting, GenericRead, ShareRead, AttributeNormal);
  uint32_t word = 0;
  if (!readWord(file, word)) return;
  if (word == PfMagic) {
    file.seek(PfHeadBytes, SeekFrom::Current);
    readEntries(file, TableSize);
    return;
  }
  file.seek(0, SeekFrom::Start);
  QVString tag;
  tag.load(file);
  if (tag.equals(Tag) && readWord(file, word) && word <= static_cast<uint32_t>(MostEntries))
    readEntries(file, static_cast<int32_t>(word));
}

void scobjPalette::readEntries(QVFile& file, int32_t count) {
  // What the file does not hold whole is refused, so that nothing is lost to a damaged one.
  const int64_t bytes = int64_t{count} * EntryBytes;
  if (count < 1 || bytes > file.remaining()) return;
  create(count);
  file.read(entries_.data(), static_cast<int32_t>(bytes));
}

void scobjPalette::set(int32_t index, int32_t red, int32_t green, int32_t blue) {
  if (index < 0 || index >= count()) return;
  entries_.data()[index] = colourOf(red, green, blue);
}

void scobjPalette::copyRange(int32_t targetFirst, const scobjPalette& source, int32_t sourceFirst,
                             int32_t count) {
  const bool inside = count > 0 && targetFirst >= 0 && sourceFirst >= 0 &&
                      int64_t{targetFirst} + count <= this->count() &&
                      int64_t{sourceFirst} + count <= source.count();
  if (!inside) return;
  std::memmove(entries_.data() + targetFirst, source.entries_.data() + sourceFirst,
               static_cast<size_t>(count) * sizeof(uint32_t));
}

void scobjPalette::tint(int32_t red, int32_t green, int32_t blue, int32_t first, int32_t count) {
  for (uint32_t& entry : range(first, count)) {
    const int64_t grey = luminanceOf(entry);
    entry = withChannels(entry, tintChannel(grey, red), tintChannel(grey, green),
                         tintChannel(grey, blue));
  }
}

void scobjPalette::bright(int32_t percent, int32_t first, int32_t count) {
  constexpr int32_t Unchanged = 100, White = 200;
  const int32_t p = std::clamp(percent, 0, White);
  const auto changed = [p](int channel) {
    if (p <= Unchanged) return p * channel / Unchanged;
    return channel + (255 - channel) * (p - Unchanged) / Unchanged;
  };
  for (uint32_t& entry : range(first, count))
    entry =
        withChannels(entry, changed(redOf(entry)), changed(greenOf(entry)), changed(blueOf(entry)));
}

void scobjPalette::raise(int32_t first, int32_t last, int32_t amount, bool red, bool green,
                         bool blue) {
  const auto raised = [amount](int channel, bool wanted) -> int64_t {
    return wanted ? std::clamp<int64_t>(int64_t{channel} + amount, 0, 255) : channel;
  };
  for (uint32_t& entry : firstToLast(first, std::min(last, LastRaised)))
    entry = withChannels(entry, raised(redOf(entry), red), raised(greenOf(entry), green),
                         raised(blueOf(entry), blue));
}

void scobjPalette::fill(int32_t first, int32_t last, int32_t red, int32_t green, int32_t blue) {
  std::ranges::fill(firstToLast(first, last), colourOf(red, green, blue));
}

ColourTable scobjPalette::table() const {
  ColourTable table{};
  std::ranges::copy(entries().first(std::min(entries().size(), table.size())), table.begin());
  return table;
}

std::span<uint32_t> scobjPalette::range(int32_t first, int32_t count) {
  const TableRange run = tableRange(first, count, this->count());
  return {entries_.data() + run.first, static_cast<size_t>(run.end - run.first)};
}

std::span<uint32_t> scobjPalette::firstToLast(int32_t first, int32_t last) {
  const int32_t begin = std::max(first, 0), end = std::min(last, count() - 1);
  if (begin > end) return {};
  return {entries_.data() + begin, static_cast<size_t>(end - begin + 1)};
}

namespace {

bool hasWholeTable(const QVDib& picture) {
  return !picture.empty() && picture.colourCount() == TableSize &&
         picture.colours().size() >= static_cast<size_t>(TableSize);
}

}  // namespace

int MergePalette(const QVDib& picture, ColourTable& table, int32_t first, int32_t last,
                 bool force) {
  if (!hasWholeTable(picture)) return 0;
  for (int32_t i = std::max(first, 0); i <= std::min(last, TableSize - 1); ++i) {
    const auto place = static_cast<size_t>(i);
    if (force || picture.PaletteUseTable[place] == 0) table[place] = picture.colours()[place];
  }
  return 1;
}

int MergePalette(const QVDib& pictureA, const QVDib& pictureB, ColourTable& table) {
  if (!hasWholeTable(pictureA) || !hasWholeTable(pictureB)) return 0;
  MergePalette(pictureA, table, 0, TableSize - 1, true);
  return MergePalette(pictureB, table, 0, TableSize - 1, false);
}

int MergePalette(const char* pictureA, const char* pictureB, ColourTable& table) {
  QVDib a, b;
  a.loadByName(pictureA);
  b.loadByName(pictureB);
  return MergePalette(a, b, table);
}

}  // namespace qv
