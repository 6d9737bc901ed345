#pragma once

/// Surfaces, tables and bitmaps from the bytes of cases, and back. Pictures of cases lie top row
/// first without padding.

#include <cstring>
#include <string>
#include <string_view>

#include "graphics/surface.h"
#include "tests/vectors/case.h"

namespace qv::vectors {

/// The other way up.
inline std::string flipped(std::string_view rows, size_t rowBytes) {
  std::string turned;
  for (size_t end = rows.size(); rowBytes && end >= rowBytes; end -= rowBytes)
    turned.append(rows.substr(end - rowBytes, rowBytes));
  return turned;
}

inline void putPixels(QVVSurface& surface, int32_t width, int32_t height,
                      const std::string& pixels) {
  expectEqual("bytes of the picture", pixels.size(),
              static_cast<size_t>(width) * static_cast<size_t>(height));
  surface.create(width, height);
  const QVVSurface::Access access(surface);
  for (int32_t y = 0; y < height; ++y)
    std::memcpy(access.row(y), pixels.data() + static_cast<ptrdiff_t>(y) * width,
                static_cast<size_t>(width));
}

/// The picture NAME of NAME_w by NAME_h pixels. One case brings a target twice as wide as it tells;
/// its bytes decide.
inline void put(QVVSurface& surface, Case& given, const std::string& name) {
  const int32_t width = given.int32((name + "_w").c_str()),
                height = given.int32((name + "_h").c_str());
  const std::string pixels = given.bytes(name.c_str());
  const bool doubled = static_cast<int64_t>(pixels.size()) == int64_t{2} * width * height;
  putPixels(surface, doubled ? 2 * width : width, height, pixels);
}

inline std::string pixelsOf(QVVSurface& surface) {
  const int32_t width = surface.width(), height = surface.height();
  std::string pixels;
  const QVVSurface::Access access(surface);
  for (int32_t y = 0; y < height; ++y)
    pixels.append(reinterpret_cast<const char*>(access.row(y)), static_cast<size_t>(width));
  return pixels;
}

inline std::string pixelsOf(const QVVSurface24& surface) {
  std::string pixels;
  for (int32_t y = 0; y < surface.height(); ++y)
    for (int32_t x = 0; x < surface.width(); ++x) {
      const uint32_t pixel = surface.pixel(x, y);
      pixels.append(reinterpret_cast<const char*>(&pixel), sizeof pixel);
    }
  return pixels;
}

inline ColourTable tableOf(std::string_view bytes) {
  expectEqual("bytes of a table", bytes.size(), sizeof(ColourTable));
  ColourTable table;
  std::memcpy(table.data(), bytes.data(), sizeof table);
  return table;
}

template <class Entries>
std::string bytesOf(const Entries& entries) {
  return {reinterpret_cast<const char*>(entries.data()), entries.size() * sizeof(entries[0])};
}

/// A packed bitmap of these bytes: `table` behind the header, `bits` behind the table.
inline QVDib bitmapOf(int32_t width, int32_t height, uint16_t bitCount, const std::string& table,
                      const std::string& bits, uint32_t coloursUsed = 0) {
  BitmapInfoHeader header;
  header.width = width;
  header.height = height;
  header.bitCount = bitCount;
  header.coloursUsed = coloursUsed;
  header.sizeImage = static_cast<uint32_t>(bits.size());
  const std::string block =
      std::string(reinterpret_cast<const char*>(&header), sizeof header) + table + bits;
  QVDib dib;
  dib.loadPacked({reinterpret_cast<const uint8_t*>(block.data()), block.size()});
  return dib;
}

}  // namespace qv::vectors
