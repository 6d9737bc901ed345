#pragma once

/// The reader of RIFF WAVE files: finds the format and the samples and takes the samples whole. The
/// sizes in a file are held against what the file has before any memory is taken. Pure but for its
/// input; any thread, each reader for itself.

#include <cstdint>
#include <optional>
#include <span>

#include "graphics/heap_block.h"
#include "platform/sound/wave_output.h"

namespace qv {

/// What a wave is read from.
class WaveInput {
 public:
  virtual ~WaveInput() = default;
  virtual uint64_t size() = 0;
  /// True when all of `bytes` could be filled from the place `at`.
  virtual bool readAt(uint64_t at, std::span<uint8_t> bytes) = 0;
};

struct WaveFile {
  WaveFormat format;  ///< as the file says it, believable or not
  HeapBlock samples;
};

/// Nothing for what is no RIFF form of type WAVE, not plain PCM, or ends before its samples do.
/// The samples are looked for behind the format. Throws NotEnoughMemoryException.
std::optional<WaveFile> readWave(WaveInput& input);

}  // namespace qv
