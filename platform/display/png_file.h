#pragma once

/// Pictures as PNG files: the shots of a play script, and the golden pictures of tests. Any thread.

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/display/display.h"

namespace qv {

/// Words 0x00RRGGBB, top row first, no padding.
struct Picture {
  int width = 0, height = 0;
  std::vector<uint32_t> pixels;
};

/// Writes the whole file or leaves what was there. False on failure; `complaint` then says why in
/// a sentence.
bool writePng(const Picture& picture, const std::filesystem::path& path,
              std::string* complaint = nullptr);
/// The same for the game screen.
bool writePng(const Frame& frame, const std::filesystem::path& path,
              std::string* complaint = nullptr);

/// Nothing for a file that is no PNG or larger than 4096 by 4096. Transparency shows black.
std::optional<Picture> readPng(const std::filesystem::path& path);

}  // namespace qv
