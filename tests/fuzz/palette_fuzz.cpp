/// Any bytes as a palette's file: the palette stays or has the entries of the file, no more than it
/// holds, and every operation stays inside them.

#include <algorithm>
#include <cstring>

#include "graphics/palette.h"
#include "tests/fuzz/fuzz_files.h"

using namespace qv;
using namespace qv::fuzz;

namespace {

constexpr int32_t OldCount = 3;

/// A number out of the input's end, so that arguments vary with it.
int32_t numberAt(const uint8_t* data, size_t size, size_t place) {
  int32_t number = 0;
  if (size >= 4 * (place + 1)) std::memcpy(&number, data + size - 4 * (place + 1), 4);
  return number;
}

void operate(scobjPalette& palette, const uint8_t* data, size_t size) {
  const int32_t a = numberAt(data, size, 0), b = numberAt(data, size, 1),
                c = numberAt(data, size, 2);
  const int32_t count = palette.count();
  palette.set(a, b, c, a);
  palette.tint(a, b, c, b, c);
  palette.bright(a, b, c);
  palette.raise(a, b, c, true, false, true);
  palette.fill(b, a, a, b, c);
  palette.copyRange(a, palette, b, c);
  const ColourTable table = palette.table();
  require(palette.count() == count, "an operation changed the count");
  for (int32_t i = 0; i < 256; ++i)
    require(table[static_cast<size_t>(i)] ==
                (i < count ? palette.entries()[static_cast<size_t>(i)] : 0),
            "the table is not the entries");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static FuzzFiles files;
  files.input(data, size);
  scobjPalette palette;
  palette.create(OldCount);
  palette.fill(0, OldCount - 1, 1, 2, 3);
  palette.readFile("input.bin");

  const bool kept = palette.count() == OldCount && palette.entries()[0] == 0x010203 &&
                    palette.entries()[2] == 0x010203;
  require(kept || 4 * static_cast<size_t>(palette.count()) < size,
          "there are more entries than the file holds");
  if (size >= 4 && std::memcmp(data, "PF\n ", 4) == 0 && size >= 144 + 1024) {
    require(palette.count() == 256, "this form has 256 entries");
    require(std::memcmp(palette.entries().data(), data + 144, 1024) == 0,
            "the entries are not those of the file");
  }
  operate(palette, data, size);
  return 0;
}
