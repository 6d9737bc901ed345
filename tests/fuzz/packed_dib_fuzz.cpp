/// Any bytes as a packed bitmap in memory, with the pixels behind the header or from elsewhere.

#include "tests/fuzz/picture_fuzz.h"

using namespace qv;
using namespace qv::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static FuzzFiles files;
  const std::span<const uint8_t> block(data, size);
  QVDib dib;
  dib.loadPacked(block);
  requireSound(dib);
  require(dib.bits().size() <= size, "more pixels than the block holds");
  const size_t half = size / 2;
  dib.loadPacked(block.first(half), block.subspan(half));
  requireSound(dib);
  require(dib.bits().size() <= size - half, "more pixels than were given");
  return 0;
}
