#pragma once

/// A game folder of pictures that code draws: plain fields in the sizes and indices that the
/// standing objects and the commands of pictures ask for. So a test of what is done with pictures
/// looks the same whatever the sample's artists do.

#include <filesystem>
#include <string>

namespace qv::testing {

/// Indices of the flat pictures, each in a range of its own so that their colours can be merged.
namespace flat {
inline constexpr int Ground = 20;     ///< eight of a background
inline constexpr int Event = 40;      ///< eight of an event's picture
inline constexpr int Figure = 60;     ///< five, one a figure, then five for their rims
inline constexpr int Mouth = 80;      ///< three, one a cell
inline constexpr int Frame = 200;     ///< the message frame: face and rim
inline constexpr int FrameKey = 210;  ///< what is not drawn of a picture
inline constexpr int Button = 220;    ///< four, one a state
inline constexpr int Gem = 100;       ///< twenty-one, one a cell
}  // namespace flat

/// The colour of an index, 0xRRGGBB, that all flat pictures give it.
uint32_t flatColour(int index);

/// Writes "dat" and "cg" with all that the start and the staging story ask for.
void writeFlatGame(const std::filesystem::path& folder);

/// A picture file of one colour, with a corner of the key colour where `keyed`.
void writeFlatPicture(const std::filesystem::path& file, int width, int height, int index,
                      bool keyed = false);

}  // namespace qv::testing
