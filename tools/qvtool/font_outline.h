#pragma once

/// The shapes from which external characters are put together, as closed outlines.

#include <vector>

namespace qv::tool {

/// On the author's grid, y downward.
struct GridPoint {
  double x = 0, y = 0;
  bool onCurve = true;
};
using GridOutline = std::vector<GridPoint>;

GridOutline disc(GridPoint centre, double radiusX, double radiusY);

/// The outlines of a pen of that width drawn along a row of points with round ends and corners.
/// A point off the curve bends the line towards itself, as in an outline.
std::vector<GridOutline> penLine(const std::vector<GridPoint>& row, double width);
/// The same along a smooth curve through all the points.
std::vector<GridOutline> penCurve(const std::vector<GridPoint>& row, double width);

/// Turned so that it is filled (clockwise to the eye), or cuts out.
GridOutline turned(GridOutline outline, bool cuts);

}  // namespace qv::tool
