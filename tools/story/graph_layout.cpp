// The layered drawing of graphs after Sugiyama, Tagawa and Toda (1981): break circles, layer by the
// longest way, put bends into long ways, order by barycentres, then find places.

#include "tools/story/graph_layout.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numeric>

namespace qv::story {

namespace {

constexpr double NodeGap = 22, BendWidth = 14, LayerGap = 40, LabelHeight = 17, Margin = 24;
constexpr int OrderSweeps = 12, PlaceSweeps = 24;

/// A node of the graph, or a bend of a long way.
struct Cell {
  double width = 0, height = 0;
  size_t layer = 0;
  double x = 0;
  double rank = 0;  ///< place within the layer while ordering
  std::vector<size_t> above{}, below{};
};

class Placer {
 public:
  Placer(const std::vector<LayoutNode>& nodes, const std::vector<LayoutEdge>& edges,
         const std::vector<size_t>& roots)
      : edges_(edges), roots_(roots), nodeCount_(nodes.size()) {
    for (const LayoutNode& node : nodes)
      cells_.push_back({.width = node.width, .height = node.height});
    placed_.edges.resize(edges.size());
  }

  PlacedGraph place() {
    breakCircles();
    makeLayers();
    addBends();
    order();
    findPlaces();
    draw();
    return std::move(placed_);
  }

 private:
  void breakCircles();
  void makeLayers();
  void addBends();
  void order();
  void sweep(bool down);
  void findPlaces();
  void pull(std::vector<size_t>& layer, bool down);
  void draw();
  std::vector<double> layerTops(std::vector<double>& heights) const;

  const std::vector<LayoutEdge>& edges_;
  const std::vector<size_t>& roots_;
  size_t nodeCount_;
  std::vector<Cell> cells_;
  std::vector<std::vector<size_t>> layers_;
  std::vector<std::vector<size_t>> chains_;  ///< of each edge: its cells from end to end
  std::vector<size_t> visited_;              ///< nodes in the order of the first visit
  PlacedGraph placed_;
};

void Placer::breakCircles() {
  std::vector<std::vector<size_t>> out(nodeCount_);
  std::vector<bool> hasIn(nodeCount_);
  for (size_t edge = 0; edge < edges_.size(); ++edge) {
    out[edges_[edge].from].push_back(edge);
    if (edges_[edge].from != edges_[edge].to) hasIn[edges_[edge].to] = true;
  }
  enum class State : uint8_t { New, Open, Done };
  std::vector<State> states(nodeCount_, State::New);
  struct Frame {
    size_t node, next;
  };
  const auto visit = [&](size_t root) {
    if (states[root] != State::New) return;
    std::vector<Frame> stack{{root, 0}};
    states[root] = State::Open;
    visited_.push_back(root);
    while (!stack.empty()) {
      Frame& frame = stack.back();
      if (frame.next == out[frame.node].size()) {
        states[frame.node] = State::Done;
        stack.pop_back();
        continue;
      }
      const size_t edge = out[frame.node][frame.next++];
      const size_t target = edges_[edge].to;
      if (states[target] == State::Open) {
        placed_.edges[edge].back = true;
      } else if (states[target] == State::New) {
        states[target] = State::Open;
        visited_.push_back(target);
        stack.push_back({target, 0});
      }
    }
  };
  for (const size_t root : roots_)
    visit(root);
  for (const bool rooted : {false, true})
    for (size_t node = 0; node < nodeCount_; ++node)
      if (hasIn[node] == rooted) visit(node);
}

void Placer::makeLayers() {
  std::vector<size_t> waiting(nodeCount_);
  std::vector<std::vector<size_t>> out(nodeCount_);
  for (size_t edge = 0; edge < edges_.size(); ++edge) {
    if (placed_.edges[edge].back) continue;
    out[edges_[edge].from].push_back(edges_[edge].to);
    ++waiting[edges_[edge].to];
  }
  std::vector<size_t> open;
  for (const size_t node : visited_)
    if (waiting[node] == 0) open.push_back(node);
  for (size_t at = 0; at < open.size(); ++at) {
    for (const size_t target : out[open[at]]) {
      cells_[target].layer = std::max(cells_[target].layer, cells_[open[at]].layer + 1);
      if (--waiting[target] == 0) open.push_back(target);
    }
  }
}

void Placer::addBends() {
  for (const size_t node : visited_) {
    layers_.resize(std::max(layers_.size(), cells_[node].layer + 1));
    layers_[cells_[node].layer].push_back(node);
  }
  chains_.resize(edges_.size());
  for (size_t edge = 0; edge < edges_.size(); ++edge) {
    if (placed_.edges[edge].back) continue;
    std::vector<size_t>& chain = chains_[edge];
    chain.push_back(edges_[edge].from);
    for (size_t layer = cells_[edges_[edge].from].layer + 1; layer < cells_[edges_[edge].to].layer;
         ++layer) {
      cells_.push_back({.width = BendWidth, .layer = layer});
      layers_[layer].push_back(cells_.size() - 1);
      chain.push_back(cells_.size() - 1);
    }
    chain.push_back(edges_[edge].to);
    for (size_t step = 0; step + 1 < chain.size(); ++step) {
      cells_[chain[step]].below.push_back(chain[step + 1]);
      cells_[chain[step + 1]].above.push_back(chain[step]);
    }
  }
}

void Placer::sweep(bool down) {
  for (size_t step = 1; step < layers_.size(); ++step) {
    std::vector<size_t>& layer = layers_[down ? step : layers_.size() - 1 - step];
    std::vector<std::pair<double, size_t>> keyed;
    for (const size_t cell : layer) {
      const std::vector<size_t>& others = down ? cells_[cell].above : cells_[cell].below;
      double sum = 0;
      for (const size_t other : others)
        sum += cells_[other].rank;
      keyed.emplace_back(others.empty() ? cells_[cell].rank : sum / double(others.size()), cell);
    }
    std::stable_sort(keyed.begin(), keyed.end(),
                     [](const auto& left, const auto& right) { return left.first < right.first; });
    for (size_t place = 0; place < keyed.size(); ++place) {
      layer[place] = keyed[place].second;
      cells_[layer[place]].rank = double(place);
    }
  }
}

void Placer::order() {
  for (std::vector<size_t>& layer : layers_)
    for (size_t place = 0; place < layer.size(); ++place)
      cells_[layer[place]].rank = double(place);
  for (int round = 0; round < OrderSweeps; ++round)
    sweep(round % 2 == 0);
}

/// Moves each cell towards those it is joined with, as far as its neighbours let it: first from the
/// left, then from the right, and the mean of both.
void Placer::pull(std::vector<size_t>& layer, bool down) {
  std::vector<double> wanted(layer.size()), fromLeft(layer.size()), fromRight(layer.size());
  for (size_t place = 0; place < layer.size(); ++place) {
    const Cell& cell = cells_[layer[place]];
    const std::vector<size_t>& others = down ? cell.above : cell.below;
    double sum = 0;
    for (const size_t other : others)
      sum += cells_[other].x;
    wanted[place] = others.empty() ? cell.x : sum / double(others.size());
  }
  const auto apart = [&](size_t place) {
    return (cells_[layer[place]].width + cells_[layer[place + 1]].width) / 2 + NodeGap;
  };
  for (size_t place = 0; place < layer.size(); ++place)
    fromLeft[place] = place == 0 ? wanted[place]
                                 : std::max(wanted[place], fromLeft[place - 1] + apart(place - 1));
  for (size_t place = layer.size(); place-- > 0;)
    fromRight[place] = place + 1 == layer.size()
                           ? wanted[place]
                           : std::min(wanted[place], fromRight[place + 1] - apart(place));
  for (size_t place = 0; place < layer.size(); ++place)
    cells_[layer[place]].x = (fromLeft[place] + fromRight[place]) / 2;
}

void Placer::findPlaces() {
  for (const std::vector<size_t>& layer : layers_) {
    double x = 0;
    for (const size_t cell : layer) {
      cells_[cell].x = x + cells_[cell].width / 2;
      x += cells_[cell].width + NodeGap;
    }
  }
  for (int round = 0; round < PlaceSweeps; ++round) {
    const bool down = round % 2 == 0;
    for (size_t step = 0; step < layers_.size(); ++step)
      pull(layers_[down ? step : layers_.size() - 1 - step], down);
  }
  // A node without width is not drawn.
  double least = std::numeric_limits<double>::max(), most = -least;
  for (const Cell& cell : cells_) {
    if (cell.width <= 0) continue;
    least = std::min(least, cell.x - cell.width / 2);
    most = std::max(most, cell.x + cell.width / 2);
  }
  if (least > most) least = most = 0;
  for (Cell& cell : cells_)
    cell.x += Margin - least;
  placed_.width = most - least + 2 * Margin;
}

/// The gap above a layer holds the labels of the ways into it, one above the other.
std::vector<double> Placer::layerTops(std::vector<double>& heights) const {
  std::vector<size_t> labels(nodeCount_), most(layers_.size());
  for (size_t edge = 0; edge < edges_.size(); ++edge)
    if (!placed_.edges[edge].back && edges_[edge].labelWidth > 0) {
      const size_t to = edges_[edge].to;
      most[cells_[to].layer] = std::max(most[cells_[to].layer], ++labels[to]);
    }
  std::vector<double> tops(layers_.size());
  double y = Margin;
  for (size_t layer = 0; layer < layers_.size(); ++layer) {
    if (layer > 0) y += LayerGap + LabelHeight * double(most[layer]);
    tops[layer] = y;
    for (const size_t cell : layers_[layer])
      heights[layer] = std::max(heights[layer], cells_[cell].height);
    y += heights[layer];
  }
  return tops;
}

void Placer::draw() {
  std::vector<double> heights(layers_.size());
  const std::vector<double> tops = layerTops(heights);
  for (size_t node = 0; node < nodeCount_; ++node) {
    const Cell& cell = cells_[node];
    placed_.nodes.push_back({cell.x, tops[cell.layer] + cell.height / 2, cell.layer});
  }
  placed_.height = layers_.empty() ? 2 * Margin : tops.back() + heights.back() + Margin;
  std::vector<size_t> labels(nodeCount_);
  for (size_t edge = 0; edge < edges_.size(); ++edge) {
    PlacedEdge& placed = placed_.edges[edge];
    const std::vector<size_t>& chain = chains_[edge];
    if (placed.back) continue;
    for (size_t step = 0; step < chain.size(); ++step) {
      const Cell& cell = cells_[chain[step]];
      const double top = tops[cell.layer];
      if (step == 0) {
        placed.points.emplace_back(cell.x, top + cell.height);
      } else if (step + 1 == chain.size()) {
        placed.points.emplace_back(cell.x, top);
      } else {
        placed.points.emplace_back(cell.x, top);
        placed.points.emplace_back(cell.x, top + heights[cell.layer]);
      }
    }
    if (edges_[edge].labelWidth > 0) {
      const size_t to = edges_[edge].to;
      placed.labelX = cells_[to].x;
      placed.labelY = tops[cells_[to].layer] - LabelHeight * (double(labels[to]++) + 0.9);
    }
  }
}

}  // namespace

PlacedGraph placeGraph(const std::vector<LayoutNode>& nodes, const std::vector<LayoutEdge>& edges,
                       const std::vector<size_t>& roots) {
  return Placer(nodes, edges, roots).place();
}

}  // namespace qv::story
