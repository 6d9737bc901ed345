#pragma once

/// The audio tracks of a disc's folder: a cue sheet (the first file of the folder that ends in
/// ".cue") with sound files or a raw image of 2352-byte sectors.

#include <filesystem>
#include <memory>
#include <string>

#include "platform/sound/disc_tracks.h"

namespace qv {

/// Null for a folder without a cue sheet, which is a disc without audio, and for no folder. Null
/// with a sentence (UTF-8) in `whyNot` for a sheet that cannot be read. A file of the sheet that is
/// missing costs its own tracks alone, and is named in `whyNot`.
std::unique_ptr<DiscTracks> openDiscFolder(const std::filesystem::path& folder,
                                           std::string& whyNot);

}  // namespace qv
