#pragma once

/// The compressor of the picture formats: the fewest bits that the format can say the bytes with.
/// Pure, any thread.

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "graphics/lzss.h"

namespace qv::codec {

/// Told now and then how much of the work is done, 0 to 1.
using Progress = std::function<void(double)>;

std::vector<uint8_t> compressLzss(LzssPairs pairs, std::span<const uint8_t> bytes,
                                  const Progress& progress = {});

}  // namespace qv::codec
