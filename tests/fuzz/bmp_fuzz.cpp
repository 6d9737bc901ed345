/// Any bytes as a bitmap file: never more pixels than the file holds.

#include "tests/fuzz/picture_fuzz.h"

using namespace qv;
using namespace qv::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static FuzzFiles files;
  if (size < 2 || data[0] != 'B' || data[1] != 'M') return 0;
  QVDib dib;
  requireSameFromBoth(files, data, size, dib);
  require(dib.bits().size() <= size, "more pixels than the file holds");
  return 0;
}
