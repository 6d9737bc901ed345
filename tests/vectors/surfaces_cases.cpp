// Worked cases of surfaces: clipping, blits, what is written to files, what arrives from bitmaps.

#include <algorithm>
#include <cstring>

#include "graphics/surface.h"
#include "tests/vectors/case.h"
#include "tests/vectors/files.h"
#include "tests/vectors/surfaces.h"

namespace qv::vectors {
namespace {

struct Place {
  int32_t x, y;
};

Place placeOf(Case& given, const char* x, const char* y) {
  return {given.int32(x), given.int32(y)};
}

/// "x, y of target, of source, width and height", as most blits take them.
struct Arguments {
  Place target, source, size;
  explicit Arguments(Case& given)
      : target(placeOf(given, "dx", "dy")),
        source(placeOf(given, "sx", "sy")),
        size(placeOf(given, "w", "h")) {}
};

/// Null in the case is null here.
struct OptionalRectangle {
  Rectangle rectangle;
  const Rectangle* pointer = nullptr;
  explicit OptionalRectangle(const Json& field) {
    if (field.is_null()) return;
    rectangle = {field[0], field[1], field[2], field[3]};
    pointer = &rectangle;
  }
};

void clipAxisCase(Case& given) {
  for (const Json& row : given["rows"]) {
    BlitAxis axis = {row[2], row[3], row[4]};
    Json after = {row[0], row[1], row[2], row[3], row[4]};
    if (clipAxis(axis, row[0].get<int64_t>(), row[1].get<int64_t>()))
      after.insert(after.end(), {axis.target, axis.source, axis.count});
    expectEqual("row", after, row);
  }
}

void blit(Case& given) {
  given.platform();
  QVVSurface source, target;
  put(source, given, "src");
  put(target, given, "dst");
  const Arguments a(given);
  const std::string before = pixelsOf(target);
  source.blit(target, a.target.x, a.target.y, a.source.x, a.source.y, a.size.x, a.size.y,
              given.int32("key"));
  given.expectBytes("expect", pixelsOf(target));
  if (!given.flag("drawn")) expectSameBytes("nothing drawn", pixelsOf(target), before);
}

void blitScaled(Case& given) {
  given.platform();
  QVVSurface source, target;
  put(source, given, "src");
  put(target, given, "dst");
  const Arguments a(given);
  source.blitScaled(target, a.target.x, a.target.y, a.source.x, a.source.y, a.size.x, a.size.y,
                    given.int32("fx"), given.int32("fy"));
  given.expectBytes("expect", pixelsOf(target));
}

void mirror(Case& given) {
  given.platform();
  QVVSurface surface;
  put(surface, given, "surf");
  const Place corner = placeOf(given, "x", "y"), size = placeOf(given, "w", "h");
  surface.mirror(given.int32("axis"), corner.x, corner.y, size.x, size.y);
  given.expectBytes("expect", pixelsOf(surface));
}

void fill(Case& given) {
  given.platform();
  QVVSurface surface;
  put(surface, given, "surf");
  const OptionalRectangle rectangle(given["rect"]);
  surface.fill(static_cast<uint8_t>(given.integer("index")), rectangle.pointer);
  given.expectBytes("expect", pixelsOf(surface));
}

void tileOnto(Case& given) {
  given.platform();
  QVVSurface tile, target;
  put(tile, given, "tile");
  put(target, given, "dst");
  const OptionalRectangle rectangle(given["rect"]);
  tile.tileOnto(target, rectangle.pointer, false);
  given.expectBytes("expect", pixelsOf(target));
}

using Write = void (QVVSurface::*)(QVFile&);
template <Write write>
void writeCase(Case& given) {
  testing::TestPlatform& platform = given.platform();
  QVVSurface surface;
  put(surface, given, "surf");
  surface.setColoursRange(tableOf(given.bytes("palette")), 0, 256);
  given.expectBytes("expect",
                    bytesWritten(platform, [&](QVFile& file) { (surface.*write)(file); }));
}

/// A surface of 32 bits takes its pixels from a bitmap; files made right after `create` differ from
/// those made after `assignDib` in one field, so the pixels are drawn onto a new surface.
void put(QVVSurface24& surface, Case& given) {
  const int32_t width = given.int32("surf_w"), height = given.int32("surf_h");
  const std::string pixels = given.bytes("surf");
  QVVSurface24 picture;
  picture.assignDib(
      bitmapOf(width, height, 32, {}, flipped(pixels, static_cast<size_t>(width) * 4)));
  surface.create(width, height);
  picture.blit(surface, 0, 0, 0, 0, width, height);
}

using Write24 = void (QVVSurface24::*)(QVFile&);
template <Write24 write>
void writeCase24(Case& given) {
  testing::TestPlatform& platform = given.platform();
  QVVSurface24 surface;
  put(surface, given);
  given.expectBytes("expect",
                    bytesWritten(platform, [&](QVFile& file) { (surface.*write)(file); }));
}

void defaultTable(Case& given) {
  given.platform();
  QVVSurface surface;
  given.expectBytes("expect", bytesOf(surface.storedColours()));
  given.expectBytes("expect", bytesOf(surface.shownColours()));
}

void assignTable(Case& given) {
  given.platform();
  QVVSurface surface;
  surface.assignDib(
      bitmapOf(4, 1, 8, given.bytes("table"), std::string(4, '\0'), given.uint32("clrused")));
  given.expectBytes("expect", bytesOf(surface.storedColours()));
  given.expectBytes("expect", bytesOf(surface.shownColours()));
}

void assign32(Case& given) {
  given.platform();
  const int32_t width = given.int32("width"), height = given.int32("height");
  QVVSurface24 surface;
  surface.assignDib(bitmapOf(width, height, static_cast<uint16_t>(given.integer("bitcount")),
                             given.bytes("table"), given.bytes("bits")));
  expectEqual("width", surface.width(), width);
  expectEqual("height", surface.height(), height);
  given.expectBytes("expect", pixelsOf(surface));
}

constexpr Kind Kinds[] = {
    {"assign32", assign32},
    {"assign_table", assignTable},
    {"blit", blit},
    {"blit_scaled", blitScaled},
    {"clip_axis", clipAxisCase},
    {"default_table", defaultTable},
    {"fill", fill},
    {"mirror", mirror},
    {"save_tagged32", writeCase24<&QVVSurface24::saveTagged>},
    {"save_tagged8", writeCase<&QVVSurface::saveTagged>},
    {"tile_onto", tileOnto},
    {"write_bmp32", writeCase24<&QVVSurface24::writeBmp>},
    {"write_bmp8", writeCase<&QVVSurface::writeBmp>},
};

// Of the topic of pixel loops: those whose levels and keys are the surface's business.

template <class Blend>
void blendCase(Case& given, Blend blend) {
  given.platform();
  const int32_t width = given.int32("w"), height = given.int32("h");
  QVVSurface source, target;
  putPixels(source, width, height, given.bytes("src"));
  putPixels(target, width, height, given.bytes("dst"));
  blend(source, target, width, height);
  given.expectBytes("expect", pixelsOf(target));
}

void blitBlended(Case& given) {
  blendCase(given, [&](QVVSurface& source, QVVSurface& target, int32_t width, int32_t height) {
    source.blitBlended(target, 0, 0, 0, 0, width, height, given.int32("arg"));
  });
}

void blitBlendedKey(Case& given) {
  blendCase(given, [&](QVVSurface& source, QVVSurface& target, int32_t width, int32_t height) {
    source.blitBlendedKey(target, 0, 0, 0, 0, width, height, given.int32("arg"),
                          given.int32("key"));
  });
}

/// A level draws what the level drew that it is clamped to.
void levelClamp(Case& given) {
  given.platform();
  QVVSurface source;
  source.create(5, 3);
  source.fill(200);
  for (const Json& row : given["rows"])
    for (const bool keyed : {false, true}) {
      const auto drawn = [&](const Json& level) {
        QVVSurface24 target;
        target.create(5, 3);
        target.fill(0x345678);
        if (keyed)
          source.blitTo32BlendKey(target, 0, 0, 0, 0, 5, 3, level.get<int32_t>(), 7);
        else
          source.blitTo32Blend(target, 0, 0, 0, 0, 5, 3, level.get<int32_t>());
        return pixelsOf(target);
      };
      expectSameBytes("level " + row[0].dump(), drawn(row[0]), drawn(row[1]));
    }
}

constexpr Kind LevelKinds[] = {
    {"blitBlended", blitBlended},
    {"blitBlendedKey", blitBlendedKey},
    {"level_clamp_32", levelClamp},
};

}  // namespace

std::span<const Kind> surfaceKinds() {
  return Kinds;
}

std::span<const Kind> blendLevelKinds() {
  return LevelKinds;
}

}  // namespace qv::vectors
