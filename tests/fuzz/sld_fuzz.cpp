/// Any bytes as an SLD file.

#include "graphics/sld_reader.h"
#include "tests/fuzz/picture_fuzz.h"

using namespace qv;
using namespace qv::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static FuzzFiles files;
  if (!isTriedSize(data, size, 4, 8)) return 0;
  QVDib dib;
  requireSameFromBoth(files, data, size, dib);

  QVFile& input = files.input(data, size);
  SldReader reader;
  reader.attach(input);
  const PackedPicture picture = reader.decode();
  require(picture.empty() || reader.isValid(), "a picture without its magic");
  require(input.position() == 0, "the position moved");
  return 0;
}
