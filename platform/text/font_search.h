#pragma once

/// Where the machine keeps the fonts of the four faces. Any thread.

#include <filesystem>
#include <optional>

#include "platform/text/text_style.h"

namespace qv {

/// The name of the file that a face's font has, wherever it lies.
const char* fontFileName(FontFace face);

/// The file of a face's font: in the folders where distributions put it, else found by a search of
/// the machine's font folder that gives up after some thousand entries. With `onlyFolder` not
/// empty nothing but that folder and what is below it is looked at.
std::optional<std::filesystem::path> findFont(FontFace face,
                                              const std::filesystem::path& onlyFolder);

}  // namespace qv
