/// Any bytes as a cursor file: none, or a picture no larger than the file can hold.

#include "input/cursor_file.h"
#include "tests/fuzz/fuzz_files.h"

using namespace qv;
using namespace qv::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::optional<CursorPicture> picture = readCursorFile({data, size});
  if (!picture) return 0;
  require(picture->width >= 1 && picture->width <= MostCursorPixels, "a width of no cursor");
  require(picture->height >= 1 && picture->height <= MostCursorPixels, "a height of no cursor");
  require(picture->hotX >= 0 && picture->hotX < picture->width, "the hot pixel lies beside it");
  require(picture->hotY >= 0 && picture->hotY < picture->height, "the hot pixel lies under it");
  const size_t count = static_cast<size_t>(picture->width) * static_cast<size_t>(picture->height);
  require(picture->pixels.size() == count, "pixels are missing");
  require(count <= size * 8, "more pixels than the file holds");
  return 0;
}
