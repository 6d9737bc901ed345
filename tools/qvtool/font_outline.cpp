#include "tools/qvtool/font_outline.h"

#include <algorithm>
#include <cmath>

namespace qv::tool {

namespace {

constexpr int CurveSteps = 6;      // straight parts that a bend is drawn with
constexpr double SharpTurn = 0.7;  // cosine; beyond it the line is drawn in two parts
constexpr double Pi = 3.14159265358979323846;

GridPoint operator+(GridPoint a, GridPoint b) {
  return {a.x + b.x, a.y + b.y};
}
GridPoint operator-(GridPoint a, GridPoint b) {
  return {a.x - b.x, a.y - b.y};
}
GridPoint operator*(GridPoint a, double factor) {
  return {a.x * factor, a.y * factor};
}
double dot(GridPoint a, GridPoint b) {
  return a.x * b.x + a.y * b.y;
}
GridPoint middle(GridPoint a, GridPoint b) {
  return (a + b) * 0.5;
}

/// Of length one; of two points in one place it is to the right.
GridPoint direction(GridPoint from, GridPoint to) {
  const GridPoint way = to - from;
  const double length = std::hypot(way.x, way.y);
  return length > 0 ? way * (1 / length) : GridPoint{1, 0};
}
GridPoint leftOf(GridPoint way) {
  return {way.y, -way.x};
}

using Row = std::vector<GridPoint>;

void append(Row& row, GridPoint point) {
  if (row.empty() || std::hypot(point.x - row.back().x, point.y - row.back().y) > 1e-9)
    row.push_back({point.x, point.y});
}

/// The row with its bends as short straight parts. Its ends count as on the curve.
Row straightened(const Row& row) {
  Row straight;
  for (size_t at = 0; at < row.size(); ++at) {
    if (row[at].onCurve || at == 0 || at + 1 == row.size()) {
      append(straight, row[at]);
      continue;
    }
    const GridPoint start = straight.back(), bend = row[at], next = row[at + 1];
    const bool toNext = next.onCurve || at + 2 == row.size();
    const GridPoint end = toNext ? next : middle(bend, next);
    for (int step = 1; step <= CurveSteps; ++step) {
      const double t = static_cast<double>(step) / CurveSteps;
      append(straight, start * ((1 - t) * (1 - t)) + bend * (2 * t * (1 - t)) + end * (t * t));
    }
  }
  return straight;
}

/// Catmull and Rom's curve.
Row smooth(const Row& row) {
  Row straight;
  for (size_t at = 0; at + 1 < row.size(); ++at) {
    const GridPoint b = row[at], c = row[at + 1];
    const GridPoint a = at > 0 ? row[at - 1] : b, d = at + 2 < row.size() ? row[at + 2] : c;
    for (int step = 0; step <= CurveSteps; ++step) {
      const double t = static_cast<double>(step) / CurveSteps;
      append(straight, (b * 2 + (c - a) * t + (a * 2 - b * 5 + c * 4 - d) * (t * t) +
                        (b * 3 - a - c * 3 + d) * (t * t * t)) *
                           0.5);
    }
  }
  return straight;
}

/// One side of the line from its first point to its last, at half the pen's width.
void addSide(GridOutline& outline, const Row& row, double half) {
  for (size_t at = 0; at < row.size(); ++at) {
    const GridPoint before = direction(row[at > 0 ? at - 1 : 0], row[at > 0 ? at : 1]);
    const GridPoint after = at + 1 < row.size() ? direction(row[at], row[at + 1]) : before;
    const GridPoint across = leftOf(before) + leftOf(after);
    outline.push_back(row[at] + across * (2 * half / dot(across, across)));
  }
}

/// The half circle around the end of a line that comes along `way`, its first and last point
/// left out.
void addCap(GridOutline& outline, GridPoint end, GridPoint way, double half) {
  const GridPoint left = leftOf(way);
  constexpr int Parts = 6;
  for (int part = 1; part < Parts; ++part) {
    const double angle = Pi * part / Parts;
    outline.push_back(end + (left * std::cos(angle) + way * std::sin(angle)) * half);
  }
}

/// The outline of a part without sharp turns.
GridOutline outlineOf(const Row& row, double width) {
  GridOutline outline;
  const double half = width / 2;
  addSide(outline, row, half);
  addCap(outline, row.back(), direction(row[row.size() - 2], row.back()), half);
  const Row back(row.rbegin(), row.rend());
  addSide(outline, back, half);
  addCap(outline, back.back(), direction(back[back.size() - 2], back.back()), half);
  return outline;
}

std::vector<GridOutline> drawn(const Row& row, double width) {
  std::vector<GridOutline> outlines;
  if (row.size() == 1) return {disc(row[0], width / 2, width / 2)};
  Row part;
  for (size_t at = 0; at < row.size(); ++at) {
    part.push_back(row[at]);
    const bool last = at + 1 == row.size();
    const bool sharp =
        !last && at > 0 &&
        dot(direction(row[at - 1], row[at]), direction(row[at], row[at + 1])) < SharpTurn;
    if (part.size() > 1 && (last || sharp)) {
      outlines.push_back(outlineOf(part, width));
      part = {row[at]};
    }
  }
  return outlines;
}

}  // namespace

GridOutline disc(GridPoint centre, double radiusX, double radiusY) {
  // Eight bends, whose points off the curve stand on the corners of the octagon around it.
  GridOutline outline;
  const double reach = 1 / std::cos(Pi / 8);
  for (int corner = 0; corner < 8; ++corner) {
    const double angle = Pi / 4 * corner;
    outline.push_back({centre.x + radiusX * reach * std::cos(angle),
                       centre.y + radiusY * reach * std::sin(angle), false});
  }
  return outline;
}

std::vector<GridOutline> penLine(const std::vector<GridPoint>& row, double width) {
  return row.empty() ? std::vector<GridOutline>() : drawn(straightened(row), width);
}

std::vector<GridOutline> penCurve(const std::vector<GridPoint>& row, double width) {
  return row.size() < 2 ? penLine(row, width) : drawn(smooth(row), width);
}

GridOutline turned(GridOutline outline, bool cuts) {
  double area = 0;  // positive where it turns clockwise to the eye, since y goes down
  for (size_t at = 0; at < outline.size(); ++at) {
    const GridPoint a = outline[at], b = outline[(at + 1) % outline.size()];
    area += a.x * b.y - b.x * a.y;
  }
  if ((area < 0) != cuts) std::reverse(outline.begin(), outline.end());
  return outline;
}

}  // namespace qv::tool
