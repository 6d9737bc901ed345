/// Any bytes as a click map: a map file, a bitmap or a picture of the game. The map stays or holds
/// what the file says, and what was read comes back from what it writes.

#include <algorithm>

#include "input/click_map.h"
#include "tests/fuzz/fuzz_files.h"
#include "tests/fuzz/picture_fuzz.h"

using namespace qv;
using namespace qv::fuzz;

namespace {

constexpr int32_t OldWidth = 3, OldHeight = 2;
constexpr size_t McgWidthAt = 28, BmpWidthAt = 18;

/// What is written is read again.
void writeAndRead(FuzzFiles& files, QVClickMap& map) {
  QVFile& output = files.output();
  map.write(output);
  const int64_t end = output.position();
  output.seek(0, SeekFrom::Start);
  QVClickMap again;
  again.read(output);
  const bool empty = map.width() == 0 || map.height() == 0;
  require(output.position() == end || empty, "the file is not read to its end");
  if (empty) return;
  require(again.width() == map.width() && again.height() == map.height(),
          "the size does not come back");
  require(again.originX() == map.originX() && again.originY() == map.originY(),
          "the origin does not come back");
  for (int32_t y = 0; y < std::min(map.height(), 16); ++y)
    for (int32_t x = 0; x < std::min(map.width(), 16); ++x)
      require(again.pixel(x, y) == map.pixel(x, y), "the regions do not come back");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static FuzzFiles files;
  // Pictures may rightly announce more than a run has time for.
  for (const size_t at : {McgWidthAt, BmpWidthAt, size_t{4}})
    if (!isTriedSize(data, size, at, at + 4)) return 0;

  QVFile& input = files.input(data, size);
  QVClickMap map;
  map.create(OldWidth, OldHeight, 9, 0, nullptr);
  map.loadFromFile(input, 1, nullptr);
  require(input.position() <= input.size(), "the position is beyond the file");
  for (const int32_t x : {INT32_MIN, -1, 0, 1, 100, INT32_MAX}) {
    const int32_t region = map.regionAt(x, x);
    require(region >= NoRegion && region <= 255, "a region that no pixel can be");
  }
  map.addRect(-1, -1, INT32_MAX, 2, 300);
  map.Stamp(map, 1, 1, KeyTopLeft);
  writeAndRead(files, map);
  return 0;
}
