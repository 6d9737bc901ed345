#include "tests/support/golden.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace qv::testing {

namespace {

std::filesystem::path beside(std::filesystem::path golden, const char* kind) {
  return golden.replace_extension(kind);
}

std::string colourText(uint32_t colour) {
  char digits[8];
  std::snprintf(digits, sizeof digits, "%06X", static_cast<unsigned>(colour & 0xFFFFFF));
  return digits;
}

}  // namespace

::testing::AssertionResult matchesGolden(const Picture& drawn,
                                         const std::filesystem::path& golden) {
  const char* rewrite = std::getenv("QV_REWRITE_GOLDENS");
  if (rewrite && std::string(rewrite) == "1") {
    std::string complaint;
    if (!writePng(drawn, golden, &complaint)) return ::testing::AssertionFailure() << complaint;
    return ::testing::AssertionSuccess() << "rewritten";
  }
  const auto actualFile = beside(golden, ".actual.png"),
             differenceFile = beside(golden, ".diff.png");
  const std::optional<Picture> wanted = readPng(golden);
  if (!wanted) {
    writePng(drawn, actualFile);
    return ::testing::AssertionFailure() << golden << " is missing or no picture";
  }
  if (wanted->width != drawn.width || wanted->height != drawn.height) {
    writePng(drawn, actualFile);
    return ::testing::AssertionFailure()
           << "the size is " << drawn.width << " by " << drawn.height << " instead of "
           << wanted->width << " by " << wanted->height;
  }
  size_t count = 0, first = 0;
  Picture difference{drawn.width, drawn.height, std::vector<uint32_t>(drawn.pixels.size(), 0)};
  for (size_t at = 0; at < drawn.pixels.size(); ++at) {
    if (drawn.pixels[at] == wanted->pixels[at]) continue;
    if (count++ == 0) first = at;
    difference.pixels[at] = 0xFF0000;
  }
  if (count == 0) return ::testing::AssertionSuccess();
  writePng(drawn, actualFile);
  writePng(difference, differenceFile);
  const auto width = static_cast<size_t>(drawn.width);
  return ::testing::AssertionFailure()
         << count << " pixels differ from " << golden << ", the first at " << first % width << ", "
         << first / width << ": " << colourText(drawn.pixels[first]) << " instead of "
         << colourText(wanted->pixels[first]) << "; see " << actualFile << " and "
         << differenceFile;
}

}  // namespace qv::testing
