#include "platform/text/stroke_drawing.h"

#include <algorithm>
#include <cstdlib>
#include <utility>
#include <vector>

namespace qv {

namespace {

constexpr int Side = 16;
constexpr int CurveSteps = 32;  // more than a part of a curve has pixels

struct Point {
  int x = 0, y = 0;
  bool operator==(const Point&) const = default;
};

int digit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

/// To the nearest pixel, halves to the right and down.
int rounded(int sixteenths) {
  return (sixteenths + 8 + (Side << 8)) / 16 - (Side << 4);
}

/// The points of one stroke, in sixteenths of a pixel.
std::vector<Point> pointsOf(std::string_view stroke, const StrokePlacing& placing) {
  std::vector<Point> points;
  for (size_t at = 0; at + 1 < stroke.size(); ++at) {
    const int x = digit(stroke[at]), y = digit(stroke[at + 1]);
    if (x < 0 || y < 0) continue;
    points.push_back({x * placing.scaleX + placing.moveX, y * placing.scaleY + placing.moveY});
    ++at;
  }
  return points;
}

using Path = std::vector<Point>;  // pixels; those of a curve in the pen's order

void goTo(Path& path, Point pixel) {
  if (path.empty() || path.back() != pixel) path.push_back(pixel);
}

/// The line is the same in both directions.
void addLine(Path& path, Point from, Point to) {
  if (std::pair(to.x, to.y) < std::pair(from.x, from.y)) std::swap(from, to);
  const int dx = to.x - from.x, dy = to.y - from.y;
  const int steps = std::max(std::abs(dx), std::abs(dy));
  path.push_back(from);
  for (int step = 1; step <= steps; ++step)
    path.push_back(
        {from.x + rounded(dx * step * 16 / steps), from.y + rounded(dy * step * 16 / steps)});
}

/// One coordinate of the curve from b to c (Catmull and Rom's), whose neighbours are a and d.
int between(int a, int b, int c, int d, int step) {
  const int64_t t = step, n = CurveSteps;
  const int64_t sum = 2 * b * n * n * n + (c - a) * t * n * n +
                      (2 * a - 5 * b + 4 * c - d) * t * t * n + (3 * b - a - 3 * c + d) * t * t * t;
  return static_cast<int>(sum / (2 * n * n * n));
}

void curveThrough(Path& path, const std::vector<Point>& points) {
  for (size_t at = 0; at + 1 < points.size(); ++at) {
    const Point b = points[at], c = points[at + 1];
    const Point a = at > 0 ? points[at - 1] : b;
    const Point d = at + 2 < points.size() ? points[at + 2] : c;
    for (int step = 0; step <= CurveSteps; ++step)
      goTo(path, {rounded(between(a.x, b.x, c.x, d.x, step)),
                  rounded(between(a.y, b.y, c.y, d.y, step))});
  }
}

bool touch(Point a, Point b) {
  return std::abs(a.x - b.x) <= 1 && std::abs(a.y - b.y) <= 1;
}

/// A curve that turns a pixel's corner looks thick there: the pixel in the corner is left out.
Path withoutCorners(const Path& path) {
  Path thin;
  for (size_t at = 0; at < path.size(); ++at) {
    const bool inner = !thin.empty() && at + 1 < path.size();
    if (inner && touch(thin.back(), path[at + 1])) continue;
    thin.push_back(path[at]);
  }
  return thin;
}

void drawStroke(StrokePicture& picture, std::string_view stroke, const StrokePlacing& placing) {
  const size_t start = stroke.find_first_not_of(' ');
  if (start == std::string_view::npos) return;
  const std::vector<Point> points = pointsOf(stroke, placing);
  Path path;
  if (stroke[start] == '~' && points.size() > 1) {
    curveThrough(path, points);
    path = withoutCorners(path);
  } else {
    for (size_t at = 0; at < points.size(); ++at) {
      const Point& from = points[at > 0 ? at - 1 : 0];
      addLine(path, {rounded(from.x), rounded(from.y)},
              {rounded(points[at].x), rounded(points[at].y)});
    }
  }
  for (const Point& pixel : path)
    if (pixel.x >= 0 && pixel.x < Side && pixel.y >= 0 && pixel.y < Side)
      picture[static_cast<size_t>(pixel.y)] |= static_cast<uint16_t>(0x8000 >> pixel.x);
}

}  // namespace

void drawStrokes(StrokePicture& picture, std::string_view strokes, const StrokePlacing& placing) {
  while (!strokes.empty()) {
    const size_t end = std::min(strokes.find('/'), strokes.size());
    drawStroke(picture, strokes.substr(0, end), placing);
    strokes.remove_prefix(std::min(end + 1, strokes.size()));
  }
}

StrokePicture spread(const StrokePicture& picture) {
  StrokePicture wide{};
  for (int y = 0; y < Side; ++y)
    for (int from = std::max(0, y - 1); from <= std::min(Side - 1, y + 1); ++from) {
      const uint16_t row = picture[static_cast<size_t>(from)];
      wide[static_cast<size_t>(y)] |= static_cast<uint16_t>(row | row << 1 | row >> 1);
    }
  return wide;
}

}  // namespace qv
