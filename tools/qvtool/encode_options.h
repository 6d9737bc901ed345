#pragma once

/// The options that all encoding commands share, and what they make of a source picture.

#include <filesystem>
#include <string>
#include <vector>

#include "tools/picture_codec/indexed_picture.h"
#include "tools/qvtool/image.h"

namespace CLI {
class App;
}

namespace qv::tool {

struct EncodeOptions {
  std::filesystem::path source, target;
  std::string size, entries;
  std::vector<std::string> fixed;
  std::vector<std::filesystem::path> companions;  ///< that share the picture's colours
  int key = -1;
  double dither = 1;
  bool noStatics = false, asIs = false;
};

void addEncodeOptions(CLI::App& command, EncodeOptions& options);

/// "640x480". Throws Failure.
void parseSize(const std::string& text, int& width, int& height);
/// Throws Failure.
Image sourceImage(const EncodeOptions& options);
/// The source with its colours chosen; what goes wrong mildly is said on the standard error.
codec::IndexedPicture indexedSource(const EncodeOptions& options);

}  // namespace qv::tool
