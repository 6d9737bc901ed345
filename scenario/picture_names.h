#pragma once

/// The names of the game's picture among the standing objects: the view that shows it, the surface
/// that it is composed on.

namespace qv {

inline constexpr const char *PictureView = "cg.view", *PictureSurface = "cg.surf";

}  // namespace qv
