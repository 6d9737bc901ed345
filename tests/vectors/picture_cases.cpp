// Pictures: the readers of MCG and SLD files, and bitmaps in files and in memory.

#include <cstring>

#include "graphics/dib.h"
#include "graphics/mcg_reader.h"
#include "graphics/sld_reader.h"
#include "tests/vectors/case.h"
#include "tests/vectors/files.h"

namespace qv::vectors {
namespace {

constexpr size_t InfoBytes = sizeof(BitmapInfoHeader);

std::span<const uint8_t> spanOf(const std::string& bytes) {
  return {reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()};
}

std::string_view viewOf(std::span<const uint8_t> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// The low bytes of the words of a use table.
std::string useBytes(const std::array<uint32_t, 256>& table) {
  std::string bytes;
  for (const uint32_t word : table)
    bytes += static_cast<char>(word);
  return bytes;
}

void mcg(Case& given) {
  const std::string input = given.bytes("input");
  McgReader memory;
  const PackedPicture picture = memory.decodeMemory(spanOf(input));
  expectEqual("result", picture.empty() ? "null" : "block", given["result"]);
  if (picture.empty()) return;

  const std::string_view block = viewOf(picture.block.span());
  const size_t masks = given.bytes("masks").size();
  given.expectBytes("header", block.substr(0, InfoBytes));
  given.expectBytes("masks", block.substr(InfoBytes, masks));
  given.expectBytes("palette",
                    block.substr(InfoBytes + masks, picture.pixelsAt - InfoBytes - masks));
  given.expectBytes("pixels", viewOf(picture.pixels()));
  expectEqual("block_size", block.size(), given["block_size"]);
  if (given.has("block_fnv64")) given.expectBytes("block", block);

  QVFile file;
  openInput(given.platform(), file, input);
  McgReader reader;
  reader.attach(file);
  expectSameBytes("block from a file", viewOf(reader.decodeFile().block.span()), block);
  expectEqual("palette count", reader.paletteCount(), given["entries"]);
  if (given.flag("palette_use_ambiguous")) return;
  McgReader::UseTable use;
  use.fill(77);
  reader.readPaletteUse(use);
  given.expectBytes("palette_use", useBytes(use));
}

/// A resource is a file of the game here.
void rcg(Case& given) {
  testing::TestPlatform& platform = given.platform();
  platform.writeFile(platform.game() / "res" / "1.rcg", given.bytes("input"));
  QVDib dib;
  dib.loadResource(1);
  expectEqual("result", dib.empty() ? "null" : "block", given["result"]);
  if (dib.empty()) return;
  given.expectBytes("block",
                    std::string(viewOf(dib.headerBlock())) + std::string(viewOf(dib.bits())));
}

void sld(Case& given) {
  QVFile file;
  openInput(given.platform(), file, given.bytes("input"));
  SldReader reader;
  reader.attach(file);
  const PackedPicture picture = reader.decode();
  expectEqual("result", picture.empty() ? "null" : "block", given["result"]);
  if (picture.empty()) return;
  const std::string_view block = viewOf(picture.block.span());
  given.expectBytes("header", block.substr(0, InfoBytes));
  expectEqual("palette digest", fnv64(block.substr(InfoBytes, picture.pixelsAt - InfoBytes)),
              std::stoull(given.ascii("palette_fnv64"), nullptr, 16));
  given.expectBytes("pixels_written",
                    viewOf(picture.pixels()).substr(0, given["written"].get<size_t>()));
  expectEqual("block_size", block.size(), given["block_size"]);
}

constexpr Kind McgKinds[] = {
    {"mcg", mcg},
    {"rcg", rcg},
    {"sld", sld},
};

void colourCounts(Case& given) {
  for (const Json& row : given["rows"]) {
    BitmapInfoHeader info;
    info.size = row.at(0);
    info.bitCount = row.at(1);
    info.coloursUsed = row.at(2);
    info.compression = row.at(3);
    expectEqual("counts of " + row.dump(), Json({info.colourCount(), info.colourTableWordCount()}),
                Json({row.at(4), row.at(5)}));
  }
}

void packedSize(Case& given) {
  testing::TestPlatform& platform = given.platform();
  for (const Json& row : given["rows"]) {
    BitmapInfoHeader info;
    info.width = row.at(0);
    info.height = row.at(1);
    info.bitCount = row.at(2);
    info.sizeImage = row.at(3);
    constexpr size_t Spare = 16384;
    std::string block(reinterpret_cast<const char*>(&info), InfoBytes);
    block.resize(block.size() + Spare);
    platform.dialogs.shown.clear();
    QVDib dib;
    dib.loadPacked(spanOf(block));
    expectEqual("bytes and box of " + row.dump(),
                Json({dib.bits().size(), !platform.dialogs.shown.empty()}),
                Json({row.at(4), row.at(5)}));
  }
}

void loadBmp(Case& given) {
  QVFile file;
  openInput(given.platform(), file, given.bytes("input"));
  QVDib dib;
  dib.loadFromFile(file);
  expectEqual("result", dib.empty() ? "not a BMP" : "dib", given["result"]);
  if (dib.empty()) return;
  const std::string_view head = viewOf(dib.headerBlock());
  given.expectBytes("header", head.substr(0, InfoBytes));
  given.expectBytes("table", head.substr(InfoBytes));
  given.expectBytes("bits", viewOf(dib.bits()));
  given.expectBytes("palette_use", useBytes(dib.PaletteUseTable));
}

void packedDib(Case& given) {
  testing::TestPlatform& platform = given.platform();
  const std::string input = given.bytes("input");
  QVDib dib;
  dib.loadPacked(spanOf(input));
  const std::string_view head = viewOf(dib.headerBlock());
  given.expectBytes("header", head.substr(0, InfoBytes));
  given.expectBytes("table", head.substr(std::min(InfoBytes, head.size())));
  expectEqual("bits_size", dib.bits().size(), given["bits_size"]);
  given.expectBytes("bits", viewOf(dib.bits()));
  expectEqual("box", !platform.dialogs.shown.empty(), given["box"]);
}

constexpr Kind BitmapKinds[] = {
    {"colour_counts", colourCounts},
    {"load_bmp", loadBmp},
    {"packed_dib", packedDib},
    {"packed_size", packedSize},
};

}  // namespace

std::span<const Kind> mcgKinds() {
  return McgKinds;
}

std::span<const Kind> bitmapKinds() {
  return BitmapKinds;
}

}  // namespace qv::vectors
