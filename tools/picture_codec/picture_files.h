#pragma once

/// Writers of the picture files that the engine reads. Pure, any thread.

#include <cstdint>
#include <span>
#include <vector>

#include "tools/picture_codec/indexed_picture.h"
#include "tools/picture_codec/lzss_encoder.h"

namespace qv::codec {

/// 8 bits, 256 colours with their marks. Both writers of MCG throw tool::Failure for rows of 65536
/// bytes and more.
std::vector<uint8_t> encodeMcg(const IndexedPicture& picture, const Progress& progress = {});
/// 24 bits, no palette. `pixels` are 0xRRGGBB, top row first.
std::vector<uint8_t> encodeMcg24(int32_t width, int32_t height, std::span<const uint32_t> pixels,
                                 const Progress& progress = {});
/// 8 bits, 256 colours; the format has no place for marks.
std::vector<uint8_t> encodeSld(const IndexedPicture& picture, const Progress& progress = {});
/// An MCG file as a resource of the game.
std::vector<uint8_t> wrapRcg(std::span<const uint8_t> mcg);
/// An 8-bit bitmap file.
std::vector<uint8_t> encodeBmp(const IndexedPicture& picture);

}  // namespace qv::codec
