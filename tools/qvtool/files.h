#pragma once

/// Whole files of the author's machine, and the line that tells of long work.

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "tools/picture_codec/lzss_encoder.h"

namespace qv::tool {

/// Throws Failure with a sentence that names the file.
std::vector<uint8_t> readFile(const std::filesystem::path& path);
/// Beside the name first, then renamed: nobody sees half a file. Throws Failure.
void writeFile(const std::filesystem::path& path, std::span<const uint8_t> bytes);

/// Rewrites one line on the standard error, where that is a terminal; silent for work that takes
/// less than a moment.
codec::Progress progressLine(const std::string& what);

}  // namespace qv::tool
