#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "tools/failure.h"
#include "tools/qvtool/font_source.h"
#include "tools/qvtool/truetype.h"

/// Whatever the bytes: a sentence tells what is wrong, or a font is written whose head says that
/// it is one.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace qv::tool;
  try {
    const OutlineFont font =
        readFontSource(std::string_view(reinterpret_cast<const char*>(data), size), "font");
    const auto file = encodeTrueType(font);
    if (font.glyphs.empty() || file.size() % 4 != 0 || file[1] != 1) std::abort();
  } catch (const Failure&) {
  }
  return 0;
}
