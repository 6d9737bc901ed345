#pragma once

/// Numbers as picture files store them: low byte first, at any address.

#include <cstdint>

namespace qv {

inline uint16_t littleWord(const uint8_t* bytes) {
  return static_cast<uint16_t>(bytes[0] | bytes[1] << 8);
}

inline uint32_t littleLong(const uint8_t* bytes) {
  return littleWord(bytes) | static_cast<uint32_t>(littleWord(bytes + 2)) << 16;
}

inline void putLittleWord(uint8_t* bytes, uint32_t value) {
  bytes[0] = static_cast<uint8_t>(value);
  bytes[1] = static_cast<uint8_t>(value >> 8);
}

inline void putLittleLong(uint8_t* bytes, uint32_t value) {
  putLittleWord(bytes, value);
  putLittleWord(bytes + 2, value >> 16);
}

}  // namespace qv
