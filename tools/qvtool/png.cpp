// PNG files by libpng's own error jumps: what lives across them is declared before.

#include <algorithm>
#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <memory>

#include <png.h>

#include "graphics/dib.h"
#include "tools/failure.h"
#include "tools/qvtool/files.h"
#include "tools/qvtool/image.h"

namespace qv::tool {

namespace {

struct Source {
  std::vector<uint8_t> bytes;
  size_t at = 0;
};

struct Decoded {
  png_uint_32 width = 0, height = 0;
  int depth = 0, colourType = 0;
  bool tooLarge = false;
  png_color palette[256] = {};
  int colours = 0;
  std::vector<uint8_t> pixels;  ///< one byte a pixel when indexed, else four
  std::vector<uint8_t*> rows;
  std::string error;
};

void onError(png_structp png, png_const_charp message) {
  static_cast<Decoded*>(png_get_error_ptr(png))->error = message;
  longjmp(png_jmpbuf(png), 1);
}
void onWarning(png_structp, png_const_charp) {}

void readBytes(png_structp png, png_bytep target, size_t count) {
  Source& source = *static_cast<Source*>(png_get_io_ptr(png));
  if (source.bytes.size() - source.at < count) png_error(png, "the file ends too early");
  std::memcpy(target, source.bytes.data() + source.at, count);
  source.at += count;
}

void keepRows(Decoded& decoded, size_t rowBytes) {
  decoded.pixels.resize(rowBytes * decoded.height);
  decoded.rows.resize(decoded.height);
  for (size_t y = 0; y < decoded.height; ++y)
    decoded.rows[y] = &decoded.pixels[y * rowBytes];
}

bool isTooLarge(const Decoded& decoded) {
  return decoded.width > LongestSide || decoded.height > LongestSide ||
         int64_t{decoded.width} * decoded.height > MostPixels;
}

/// Reads as indices when `indexed`, else as red, green, blue, opacity. False on an error.
bool decode(Source& source, bool indexed, Decoded& decoded) {
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &decoded, onError, onWarning);
  png_infop info = png ? png_create_info_struct(png) : nullptr;
  if (!info || setjmp(png_jmpbuf(png))) {
    png_destroy_read_struct(&png, &info, nullptr);
    return false;
  }
  png_set_read_fn(png, &source, readBytes);
  png_read_info(png, info);
  png_get_IHDR(png, info, &decoded.width, &decoded.height, &decoded.depth, &decoded.colourType,
               nullptr, nullptr, nullptr);
  decoded.tooLarge = isTooLarge(decoded);
  if (decoded.tooLarge) png_error(png, "it is too large");
  if (indexed) {
    png_colorp palette = nullptr;
    if (png_get_PLTE(png, info, &palette, &decoded.colours))
      std::copy_n(palette, decoded.colours, decoded.palette);
    png_set_packing(png);
  } else {
    png_set_expand(png);
    png_set_strip_16(png);
    png_set_gray_to_rgb(png);
    png_set_add_alpha(png, 0xFF, PNG_FILLER_AFTER);
  }
  png_set_interlace_handling(png);
  png_read_update_info(png, info);
  keepRows(decoded, png_get_rowbytes(png, info));
  png_read_image(png, decoded.rows.data());
  png_read_end(png, nullptr);
  png_destroy_read_struct(&png, &info, nullptr);
  return true;
}

codec::IndexedPicture indexedOf(Decoded&& decoded) {
  codec::IndexedPicture picture;
  picture.width = static_cast<int32_t>(decoded.width);
  picture.height = static_cast<int32_t>(decoded.height);
  for (size_t entry = 0; entry < static_cast<size_t>(decoded.colours); ++entry) {
    const png_color& colour = decoded.palette[entry];
    picture.colours[entry] = static_cast<uint32_t>(colour.red) << 16 |
                             static_cast<uint32_t>(colour.green) << 8 | colour.blue;
  }
  picture.pixels = std::move(decoded.pixels);
  picture.marks.fill(codec::IndexedPicture::Free);
  for (const uint8_t pixel : picture.pixels)
    picture.marks[pixel] = codec::IndexedPicture::Used;
  return picture;
}

void appendBytes(png_structp png, png_bytep bytes, size_t count) {
  auto& target = *static_cast<std::vector<uint8_t>*>(png_get_io_ptr(png));
  target.insert(target.end(), bytes, bytes + count);
}

void writePng(Decoded& picture, const std::filesystem::path& path) {
  std::vector<uint8_t> bytes;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &picture, onError, onWarning);
  png_infop info = png ? png_create_info_struct(png) : nullptr;
  if (!info || setjmp(png_jmpbuf(png))) {
    png_destroy_write_struct(&png, &info);
    throw Failure(path.string() + " cannot be made: " + picture.error + ".");
  }
  png_set_write_fn(png, &bytes, appendBytes, nullptr);
  png_set_IHDR(png, info, picture.width, picture.height, 8, picture.colourType, PNG_INTERLACE_NONE,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  if (picture.colours) png_set_PLTE(png, info, picture.palette, picture.colours);
  png_write_info(png, info);
  png_write_image(png, picture.rows.data());
  png_write_end(png, nullptr);
  png_destroy_write_struct(&png, &info);
  writeFile(path, bytes);
}

}  // namespace

Image readPng(const std::filesystem::path& path) {
  Source source{readFile(path), 0};
  if (source.bytes.size() < 8 || png_sig_cmp(source.bytes.data(), 0, 8))
    throw Failure(path.string() + " is no PNG picture.");
  Decoded colours;
  if (!decode(source, false, colours)) {
    if (colours.tooLarge)
      throw Failure(path.string() + " is too large: " + std::to_string(colours.width) + " by " +
                    std::to_string(colours.height) + " pixels.");
    throw Failure(path.string() + " cannot be read: " + colours.error + ".");
  }
  Image image;
  image.width = static_cast<int>(colours.width);
  image.height = static_cast<int>(colours.height);
  image.rgba = std::move(colours.pixels);
  if (colours.colourType == PNG_COLOR_TYPE_PALETTE) {
    source.at = 0;
    Decoded indices;
    if (decode(source, true, indices)) image.indexed = indexedOf(std::move(indices));
  }
  return image;
}

void writeIndexedPng(const codec::IndexedPicture& picture, const std::filesystem::path& path) {
  Decoded png;
  png.width = static_cast<png_uint_32>(picture.width);
  png.height = static_cast<png_uint_32>(picture.height);
  png.colourType = PNG_COLOR_TYPE_PALETTE;
  png.colours = 256;
  for (size_t entry = 0; entry < 256; ++entry) {
    const uint32_t colour = picture.colours[entry];
    png.palette[entry] = {static_cast<png_byte>(colour >> 16), static_cast<png_byte>(colour >> 8),
                          static_cast<png_byte>(colour)};
  }
  keepRows(png, png.width);
  png.pixels.assign(picture.pixels.begin(), picture.pixels.end());
  writePng(png, path);
}

void writeRgbPng(int width, int height, const std::vector<uint32_t>& rgb,
                 const std::filesystem::path& path) {
  Decoded png;
  png.width = static_cast<png_uint_32>(width);
  png.height = static_cast<png_uint_32>(height);
  png.colourType = PNG_COLOR_TYPE_RGB;
  keepRows(png, size_t{3} * png.width);
  for (size_t at = 0; at < rgb.size(); ++at)
    for (size_t channel = 0; channel < 3; ++channel)
      png.pixels[at * 3 + channel] = static_cast<uint8_t>(rgb[at] >> (16 - 8 * channel));
  writePng(png, path);
}

Image readPicture(const std::filesystem::path& path, int width, int height) {
  std::string extension = path.extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
  if (extension == ".svg" || extension == ".svgz") return renderSvg(path, width, height);
  Image image = readPng(path);
  if ((width && width != image.width) || (height && height != image.height))
    throw Failure(path.string() + " is " + std::to_string(image.width) + " by " +
                  std::to_string(image.height) + ", not " + std::to_string(width) + " by " +
                  std::to_string(height) + "; only an SVG drawing can be given a size.");
  return image;
}

}  // namespace qv::tool
