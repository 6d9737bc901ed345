/// Any bytes as a surface's tagged record, of either kind: the surface stays or holds what the
/// record says, and what was read comes back from what it writes.

#include <algorithm>

#include "graphics/surface.h"
#include "tests/fuzz/fuzz_files.h"

using namespace qv;
using namespace qv::fuzz;

namespace {

constexpr int32_t OldWidth = 3, OldHeight = 2;
constexpr int64_t MostBytesBesidePixels = 4096;

void paintAll(const auto& surface) {
  uint32_t pixels[8 * 8];
  surface.paint(pixels, 8, 8, -1, 1, {-1, -1, 9, 9});
}

/// The bytes that a record of this surface takes.
template <class Surface>
int64_t saved(FuzzFiles& files, Surface& surface) {
  QVFile& output = files.output();
  surface.saveTagged(output);
  return output.position();
}

template <class Surface>
void readAndWrite(FuzzFiles& files, QVFile& input, size_t size) {
  Surface surface;
  surface.create(OldWidth, OldHeight);
  surface.loadTagged(input);
  require(input.position() <= input.size(), "the position is beyond the file");
  const int64_t pixels = int64_t{surface.width()} * surface.height();
  require(pixels <= static_cast<int64_t>(size) + OldWidth * OldHeight,
          "there are more pixels than the file holds");
  paintAll(surface);

  const int64_t end = saved(files, surface);
  require(end <= 4 * pixels + MostBytesBesidePixels + 4 * surface.height(),
          "the record is larger than its surface");
  QVFile& output = files.output();
  Surface again;
  again.loadTagged(output);
  require(output.position() == end || pixels == 0, "the record is not read to its end");
  require(again.width() == surface.width() && again.height() == surface.height(),
          "the size does not come back");
  for (int32_t y = 0; y < std::min(surface.height(), 16); ++y)
    for (int32_t x = 0; x < std::min(surface.width(), 16); ++x)
      require(again.pixel(x, y) == surface.pixel(x, y), "the pixels do not come back");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static FuzzFiles files;
  readAndWrite<QVVSurface>(files, files.input(data, size), size);
  readAndWrite<QVVSurface24>(files, files.input(data, size), size);
  return 0;
}
