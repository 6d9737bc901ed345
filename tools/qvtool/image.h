#pragma once

/// Pictures on their way in and out of the tool: true colour with transparency, or indexed; PNG
/// files of both kinds.

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

#include "tools/picture_codec/indexed_picture.h"
#include "tools/picture_codec/lzss_encoder.h"

namespace qv::tool {

/// No side of a picture is longer, and no picture has more pixels than the engine takes.
inline constexpr int LongestSide = 32767;

struct Image {
  int width = 0, height = 0;
  std::vector<uint8_t> rgba;  ///< red, green, blue, opacity; top row first
  /// The same picture as indices, where the file was indexed.
  std::optional<codec::IndexedPicture> indexed;
};

/// Throws Failure.
Image readPng(const std::filesystem::path& path);
void writeIndexedPng(const codec::IndexedPicture& picture, const std::filesystem::path& path);
/// `rgb` are 0xRRGGBB.
void writeRgbPng(int width, int height, const std::vector<uint32_t>& rgb,
                 const std::filesystem::path& path);

/// Rendered to exactly this size; a side of 0 follows the other by the drawing's shape, both 0 are
/// the drawing's own size. Throws Failure.
Image renderSvg(const std::filesystem::path& path, int width, int height);

/// A drawing is told by its name, everything else is a PNG. A size other than the picture's own is
/// refused for a PNG: scaling is the artist's work.
Image readPicture(const std::filesystem::path& path, int width, int height);

}  // namespace qv::tool
