#pragma once

/// Where the scenes of a graph stand on a sheet: in layers from top to bottom, so that every way
/// leads down; within a layer ordered so that few ways cross. Ways back up are left out: they are
/// told beside their scene.

#include <cstddef>
#include <utility>
#include <vector>

namespace qv::story {

struct LayoutEdge {
  size_t from = 0, to = 0;
  double labelWidth = 0;  ///< 0: without one
};

struct LayoutNode {
  double width = 0, height = 0;
};

struct PlacedNode {
  double x = 0, y = 0;  ///< the centre
  size_t layer = 0;
};

struct PlacedEdge {
  bool back = false;                              ///< leads up or to itself; it has no points
  std::vector<std::pair<double, double>> points;  ///< from the foot of one to the head of the other
  double labelX = 0, labelY = 0;                  ///< the label's centre
};

struct PlacedGraph {
  std::vector<PlacedNode> nodes;
  std::vector<PlacedEdge> edges;
  double width = 0, height = 0;
};

/// `roots` come first in their layers; every other node without a way to it begins at the top too.
PlacedGraph placeGraph(const std::vector<LayoutNode>& nodes, const std::vector<LayoutEdge>& edges,
                       const std::vector<size_t>& roots);

}  // namespace qv::story
