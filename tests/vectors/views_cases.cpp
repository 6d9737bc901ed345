#include "graphics/position.h"
#include "graphics/region.h"
#include "graphics/surface.h"
#include "tests/vectors/case.h"

namespace qv::vectors {
namespace {

std::string littleEndian(std::span<const Rectangle> rectangles) {
  std::string bytes;
  for (const Rectangle& rectangle : rectangles)
    for (const int32_t number : {rectangle.left, rectangle.top, rectangle.right, rectangle.bottom})
      for (const int shift : {0, 8, 16, 24})
        bytes += static_cast<char>(static_cast<uint32_t>(number) >> shift & 0xFF);
  return bytes;
}

Json numbers(const Rectangle& rectangle) {
  return {rectangle.left, rectangle.top, rectangle.right, rectangle.bottom};
}

void clipShape(Case& given) {
  given.platform();
  const int32_t width = given.int32("w"), height = given.int32("h");
  std::string rows;
  if (given.has("rows")) {
    rows = given.bytes("rows");
  } else {
    // The checker: too long to be written down.
    for (int32_t y = 0; y < height; ++y)
      for (int32_t x = 0; x < width; ++x)
        rows += static_cast<char>((x + y) % 2);
  }
  QVVSurface surface;
  surface.create(width, height);
  {
    const QVVSurface::Access access(surface);
    for (int32_t y = 0; y < height; ++y)
      for (int32_t x = 0; x < width; ++x)
        access.row(y)[x] = static_cast<uint8_t>(rows.at(static_cast<size_t>(y * width + x)));
  }
  const ClipShape shape = scanClipShape(surface, given.int32("key"));
  expectEqual("count", shape.rectangles.size(), given["count"]);
  if (given["bounds"].is_null()) return;
  expectEqual("bounds", numbers(shape.bounds), given["bounds"]);
  if (given.has("rects")) {
    Json all = Json::array();
    for (const Rectangle& rectangle : shape.rectangles)
      all.push_back(numbers(rectangle));
    expectEqual("rects", all, given["rects"]);
  } else {
    expectEqual("first", numbers(shape.rectangles.front()), given["first"]);
    expectEqual("last", numbers(shape.rectangles.back()), given["last"]);
    char digest[17];
    std::snprintf(digest, sizeof digest, "%016llx",
                  static_cast<unsigned long long>(fnv64(littleEndian(shape.rectangles))));
    expectEqual("rects_fnv64", digest, given["rects_fnv64"]);
  }
}

void clipLimit(Case& given) {
  // A head of 32 bytes and each rectangle's four words; the call counts the head as two rectangles.
  constexpr size_t RectangleBytes = 16, HeadBytes = 32;
  expectEqual("max_rects", ClipShape::MostRectangles, given["max_rects"]);
  expectEqual("block", HeadBytes + ClipShape::MostRectangles * RectangleBytes, given["block"]);
  expectEqual("call_size", (ClipShape::MostRectangles + 2) * RectangleBytes, given["call_size"]);
}

void moveClamped(Case& given) {
  const ClampedMove move =
      clampedMove(given["screen"].at(0), given["screen"].at(1), given.int32("x"), given.int32("y"),
                  given.int32("w"), given.int32("h"), given.int32("keep") != 0);
  expectEqual("expect", Json({move.position.x, move.position.y}), given["expect"]);
  expectEqual("result", move.result, given["result"]);
}

void positionCodes(Case& given) {
  const auto codeOf = [](const std::string& hex) {
    return static_cast<int32_t>(std::stol(hex, nullptr, 16));
  };
  for (const auto& [code, place] : given["x"].items())
    expectEqual("x " + code,
                drawPositionX(codeOf(code), given["view"].at(0), given["picture"].at(0)), place);
  for (const auto& [code, place] : given["y"].items())
    expectEqual("y " + code,
                drawPositionY(codeOf(code), given["view"].at(1), given["picture"].at(1)), place);
}

constexpr Kind Kinds[] = {{"clip_limit", clipLimit},
                          {"clip_shape", clipShape},
                          {"move_clamped", moveClamped},
                          {"position_codes", positionCodes}};

}  // namespace

std::span<const Kind> viewKinds() {
  return Kinds;
}

}  // namespace qv::vectors
