#include "platform/display/png_file.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>

#include <fcntl.h>
#include <png.h>
#include <sys/stat.h>
#include <unistd.h>

namespace qv {

namespace {

constexpr png_uint_32 LargestSide = 4096;

bool failed(std::string* complaint, const std::filesystem::path& path, const std::string& why) {
  if (complaint)
    *complaint = "The picture " + path.string() + " could not be written: " + why + ".";
  return false;
}

std::vector<uint8_t> rgbBytes(const std::vector<uint32_t>& pixels) {
  std::vector<uint8_t> bytes;
  bytes.reserve(pixels.size() * 3);
  for (const uint32_t pixel : pixels)
    for (const int shift : {16, 8, 0})
      bytes.push_back(static_cast<uint8_t>(pixel >> shift));
  return bytes;
}

bool writeAll(int file, const std::vector<uint8_t>& bytes) {
  for (size_t done = 0; done < bytes.size();) {
    const ssize_t written = write(file, bytes.data() + done, bytes.size() - done);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    done += static_cast<size_t>(written);
  }
  return true;
}

/// Writes beside the name and renames, so that nobody ever sees half a file.
bool replaceFile(const std::filesystem::path& path, const std::vector<uint8_t>& bytes,
                 std::string* complaint) {
  std::string beside = path.string() + ".XXXXXX";
  const int file = mkostemp(beside.data(), O_CLOEXEC);
  if (file < 0) return failed(complaint, path, std::strerror(errno));
  bool ok = writeAll(file, bytes) && fchmod(file, 0644) == 0;
  int error = errno;
  if (close(file) != 0 && ok) {
    ok = false;
    error = errno;
  }
  if (ok && rename(beside.c_str(), path.c_str()) == 0) return true;
  if (ok) error = errno;
  unlink(beside.c_str());
  return failed(complaint, path, std::strerror(error));
}

}  // namespace

bool writePng(const Picture& picture, const std::filesystem::path& path, std::string* complaint) {
  if (picture.width <= 0 || picture.height <= 0 ||
      picture.pixels.size() !=
          static_cast<size_t>(picture.width) * static_cast<size_t>(picture.height))
    return failed(complaint, path, "its size and its pixels do not agree");
  const std::vector<uint8_t> rgb = rgbBytes(picture.pixels);
  png_image image = {};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(picture.width);
  image.height = static_cast<png_uint_32>(picture.height);
  image.format = PNG_FORMAT_RGB;
  image.flags = PNG_IMAGE_FLAG_FAST;
  png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
  std::vector<uint8_t> bytes(size);
  if (!png_image_write_to_memory(&image, bytes.data(), &size, 0, rgb.data(), 0, nullptr))
    return failed(complaint, path, image.message);
  bytes.resize(size);
  return replaceFile(path, bytes, complaint);
}

bool writePng(const Frame& frame, const std::filesystem::path& path, std::string* complaint) {
  return writePng(Picture{ScreenWidth, ScreenHeight, frame}, path, complaint);
}

std::optional<Picture> readPng(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
  png_image image = {};
  image.version = PNG_IMAGE_VERSION;
  if (bytes.empty() || !png_image_begin_read_from_memory(&image, bytes.data(), bytes.size()))
    return std::nullopt;
  // A deflated byte holds at most 1032 bytes, and a byte of a row at most eight pixels.
  const uint64_t pixels = uint64_t{image.width} * image.height;
  if (image.width > LargestSide || image.height > LargestSide ||
      pixels > uint64_t{bytes.size()} * 1032 * 8) {
    png_image_free(&image);
    return std::nullopt;
  }
  image.format = PNG_FORMAT_RGB;
  std::vector<uint8_t> rgb(PNG_IMAGE_SIZE(image));
  const png_color black = {};
  if (!png_image_finish_read(&image, &black, rgb.data(), 0, nullptr)) return std::nullopt;
  Picture picture{static_cast<int>(image.width), static_cast<int>(image.height), {}};
  picture.pixels.reserve(static_cast<size_t>(pixels));
  for (size_t at = 0; at + 2 < rgb.size(); at += 3)
    picture.pixels.push_back(uint32_t{rgb[at]} << 16 | uint32_t{rgb[at + 1]} << 8 | rgb[at + 2]);
  return picture;
}

}  // namespace qv
