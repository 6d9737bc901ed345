#pragma once

// RIFF WAVE files as bytes, sound and broken.

#include <cmath>
#include <cstdint>
#include <numbers>
#include <string>
#include <string_view>

#include "platform/sound/wave_output.h"

namespace qv::testing {

inline std::string littleBytes(uint32_t value, int count) {
  std::string bytes;
  for (; count > 0; --count, value >>= 8)
    bytes += static_cast<char>(value & 255);
  return bytes;
}

/// A chunk with its padding byte; `size` is what its head claims.
inline std::string chunk(std::string_view id, std::string_view contents, uint32_t size) {
  std::string bytes = std::string(id) + littleBytes(size, 4) + std::string(contents);
  if (contents.size() % 2 == 1) bytes += '\0';
  return bytes;
}
inline std::string chunk(std::string_view id, std::string_view contents) {
  return chunk(id, contents, static_cast<uint32_t>(contents.size()));
}

inline WaveFormat pcm(uint16_t channels, uint32_t rate, uint16_t bits) {
  const auto block = static_cast<uint16_t>(channels * bits / 8);
  return {channels, rate, bits, block, rate * block};
}

inline std::string formatBytes(const WaveFormat& format, uint16_t tag = 1) {
  return littleBytes(tag, 2) + littleBytes(format.channels, 2) +
         littleBytes(format.samplesPerSecond, 4) + littleBytes(format.bytesPerSecond, 4) +
         littleBytes(format.blockBytes, 2) + littleBytes(format.bitsPerSample, 2);
}

inline std::string riff(std::string_view chunks, std::string_view type = "WAVE") {
  return chunk("RIFF", std::string(type) + std::string(chunks));
}

inline std::string waveFile(const WaveFormat& format, std::string_view samples) {
  return riff(chunk("fmt ", formatBytes(format)) + chunk("data", samples));
}

/// Silence of that length in that format.
inline std::string silentWave(uint32_t millis, const WaveFormat& format = pcm(1, 8000, 8)) {
  const size_t frames = static_cast<size_t>(format.samplesPerSecond) * millis / 1000;
  return waveFile(
      format, std::string(frames * format.blockBytes, format.bitsPerSample == 8 ? '\x80' : '\0'));
}

/// A sine of `frames` frames; all channels alike. `level` 1 is full scale.
inline std::string sineSamples(const WaveFormat& format, double hertz, double level,
                               uint32_t frames) {
  std::string bytes;
  for (uint32_t i = 0; i < frames; ++i) {
    const double value =
        level * std::sin(2 * std::numbers::pi * hertz * i / format.samplesPerSecond);
    for (uint16_t channel = 0; channel < format.channels; ++channel)
      bytes += format.bitsPerSample == 8
                   ? littleBytes(static_cast<uint32_t>(std::lround(value * 127) + 128), 1)
                   : littleBytes(static_cast<uint32_t>(std::lround(value * 32767)), 2);
  }
  return bytes;
}

}  // namespace qv::testing
