/// Any bytes as an MCG file: nothing is read or written outside, the same picture comes from a file
/// and from memory, and the palette's operations keep to the file.

#include "graphics/mcg_reader.h"
#include "tests/fuzz/picture_fuzz.h"

using namespace qv;
using namespace qv::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static FuzzFiles files;
  if (!isTriedSize(data, size, 28, 32)) return 0;
  QVDib dib;
  requireSameFromBoth(files, data, size, dib);

  QVFile& input = files.input(data, size);
  McgReader reader;
  reader.attach(input);
  const PackedPicture picture = reader.decodeFile();
  require(picture.empty() || reader.isValid(), "a picture without its magic");
  require(picture.pixelsAt <= picture.block.size(), "the pixels begin behind the block");
  McgReader::UseTable use;
  reader.readPaletteUse(use);
  uint32_t entries[256];
  const int32_t count = reader.readPalette(entries);
  require(count >= 0 && count <= 256, "a palette beyond its table");
  require(count <= reader.paletteCount(), "more colours than the head tells");
  require(input.position() == 0, "the position moved");
  return 0;
}
