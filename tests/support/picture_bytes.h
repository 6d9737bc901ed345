#pragma once

/// Picture files put together by hand in tests: heads field by field, streams of literals alone.

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qv::testing {

inline std::string little(uint32_t value, size_t bytes) {
  std::string text;
  for (size_t at = 0; at < bytes; ++at)
    text += static_cast<char>(value >> at * 8);
  return text;
}

inline std::string bytesOf(std::initializer_list<int> values) {
  std::string text;
  for (const int value : values)
    text += static_cast<char>(value);
  return text;
}

/// A stream that says the bytes one by one.
inline std::string literals(std::string_view bytes) {
  std::string stream;
  for (size_t at = 0; at < bytes.size(); ++at) {
    if (at % 8 == 0) stream += '\xFF';
    stream += bytes[at];
  }
  return stream;
}

struct McgFields {
  uint32_t width = 0, height = 0;
  uint32_t bitCount = 8;
  uint32_t pixelBytes = 0;
  uint32_t entries = 0;
  uint32_t compression = 0;
};

/// Masks, palette and stream follow as they are given; unread fields are filled.
inline std::string mcgFile(const McgFields& fields, std::string_view behind) {
  return "MCG " + std::string(24, '\x5A') + little(fields.width, 4) + little(fields.height, 4) +
         little(fields.bitCount, 2) + "\x5A\x5A" + little(fields.pixelBytes, 4) +
         little(fields.entries, 4) + std::string(4, '\x5A') + little(fields.compression, 4) +
         std::string(8, '\x5A') + std::string(behind);
}

inline std::string sldFile(uint32_t width, uint32_t height, std::string_view palette,
                           std::string_view stream) {
  std::string whole(palette);
  whole.resize(1024);
  return std::string("SLD\0", 4) + little(width, 4) + little(height, 4) + std::string(4, '\x5A') +
         whole + std::string(stream);
}

/// 40 bytes; `told` is the field of used colours.
inline std::string infoHeader(uint32_t width, uint32_t height, uint32_t bitCount, uint32_t told = 0,
                              uint32_t sizeImage = 0, uint32_t compression = 0) {
  return little(40, 4) + little(width, 4) + little(height, 4) + little(1, 2) + little(bitCount, 2) +
         little(compression, 4) + little(sizeImage, 4) + std::string(8, '\0') + little(told, 4) +
         std::string(4, '\0');
}

/// With the file's size and the place of the pixels as they are.
inline std::string bmpFile(std::string_view headerAndTable, std::string_view pixels) {
  const auto pixelsAt = static_cast<uint32_t>(14 + headerAndTable.size());
  return "BM" + little(static_cast<uint32_t>(pixelsAt + pixels.size()), 4) + std::string(4, '\0') +
         little(pixelsAt, 4) + std::string(headerAndTable) + std::string(pixels);
}

inline std::span<const uint8_t> spanOf(std::string_view bytes) {
  return {reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()};
}

inline std::string textOf(std::span<const uint8_t> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace qv::testing
