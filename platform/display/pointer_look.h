#pragma once

/// What the pointer looks like: one of the system's cursors or a picture. Values; any thread.

#include <cstdint>
#include <optional>
#include <vector>

namespace qv {

/// A picture of a pointer; the hot pixel is the one that points.
struct CursorPicture {
  int width = 0, height = 0, hotX = 0, hotY = 0;
  std::vector<uint32_t> pixels;  ///< 0xAARRGGBB, top row first
  bool operator==(const CursorPicture&) const = default;
};

/// Numbers of the system's cursors, as the classic platform numbers them. Two of them are of old:
/// the icon and the plain size.
namespace system_cursor {
inline constexpr int32_t Arrow = 32512, TextBeam = 32513, Wait = 32514, Cross = 32515,
                         UpArrow = 32516, Size = 32640, Icon = 32641, SizeFalling = 32642,
                         SizeRising = 32643, SizeAcross = 32644, SizeUpright = 32645,
                         SizeAll = 32646, No = 32648, Starting = 32650;
}  // namespace system_cursor

struct PointerLook {
  int32_t system = system_cursor::Arrow;
  std::optional<CursorPicture> picture;  ///< instead of the system's
  bool operator==(const PointerLook&) const = default;
};

}  // namespace qv
