#pragma once

/// Pictures in the engine's formats, read with the engine's own readers.

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "graphics/dib.h"
#include "tools/picture_codec/indexed_picture.h"

namespace qv::tool {

struct EnginePicture {
  std::filesystem::path path;
  std::string format;  ///< "MCG", "SLD", "BMP", "RCG"
  std::vector<uint8_t> bytes;
  QVDib dib;
};

/// Throws Failure for what is none of the formats or damaged.
EnginePicture readEnginePicture(const std::filesystem::path& path);
/// The same, and a picture of another format is refused.
EnginePicture readEnginePicture(const std::filesystem::path& path, const std::string& format);

/// Throws Failure when the picture has not 8 bits.
codec::IndexedPicture indexedOf(const EnginePicture& picture);
/// 0xRRGGBB, top row first. Throws Failure for depths other than 8, 24 and 32 bits.
std::vector<uint32_t> rgbOf(const EnginePicture& picture);
/// A PNG with the picture's own indices where it has 8 bits.
void writeAsPng(const EnginePicture& picture, const std::filesystem::path& path);

}  // namespace qv::tool
