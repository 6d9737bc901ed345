#pragma once

/// The wave channel of the machine: one open format, one buffer at a time, which is played a number
/// of times. The caller's threads call it; the form behind it (an output with a mixer, or a device
/// that only keeps time) signals the end from wherever it is.

#include <cstdint>
#include <span>

#include "platform/kernel/kernel.h"

namespace qv {

/// Whole PCM: what a RIFF file's "fmt " chunk says.
struct WaveFormat {
  uint16_t channels = 1;  ///< 1 or 2
  uint32_t samplesPerSecond = 22050;
  uint16_t bitsPerSample = 16;  ///< 8 (unsigned) or 16 (signed, little-endian)
  uint16_t blockBytes = 2;      ///< of one sample of all channels
  uint32_t bytesPerSecond = 44100;
};

inline constexpr uint32_t PlayForever = 0xFFFFFFFFu;
/// Beyond these no device of the classic platform went either.
inline constexpr uint32_t LeastSamplesPerSecond = 1000, MostSamplesPerSecond = 192000;

/// Whether the numbers fit each other and mean something that can be heard.
inline constexpr bool isPlayable(const WaveFormat& format) {
  return (format.channels == 1 || format.channels == 2) &&
         (format.bitsPerSample == 8 || format.bitsPerSample == 16) &&
         format.blockBytes == format.channels * format.bitsPerSample / 8 &&
         format.samplesPerSecond >= LeastSamplesPerSecond &&
         format.samplesPerSecond <= MostSamplesPerSecond;
}

class WaveOutput {
 public:
  virtual ~WaveOutput() = default;
  /// Whether there is a device at all; does not change.
  virtual bool available() const = 0;
  /// False when the device is taken or the format cannot be played. `done` stays the caller's: it
  /// is set by the opening itself before `open` returns, and once when a written buffer has been
  /// played to its end.
  virtual bool open(const WaveFormat& format, Event& done) = 0;
  /// Plays the bytes `times` times, PlayForever without end. The bytes stay the caller's, who keeps
  /// them until `reset` or `close` has returned. Bytes behind the last whole block are not played;
  /// no whole block at all has ended at once, however often it is played.
  virtual bool write(std::span<const uint8_t> bytes, uint32_t times) = 0;
  /// Silence at once; when it returns, the bytes are not read any more.
  virtual void reset() = 0;
  virtual void close() = 0;  ///< resets; nothing when it is not open
};

}  // namespace qv
