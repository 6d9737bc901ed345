#include "tools/story/graph_svg.h"

#include <algorithm>
#include <cstdio>

#include "tools/story/graph_layout.h"

namespace qv::story {

using scenec::Act;
using scenec::Scene;

namespace {

constexpr double TextSize = 12, SmallSize = 11, BoxHeight = 42, BoxPadding = 10, LeastWidth = 96;
constexpr size_t MostLabelColumns = 28, MostWordColumns = 22, MostReturns = 3;
constexpr double ReturnHeight = 15, LegendHeight = 34;
constexpr const char *Paper = "#fdfcfa", *Ink = "#33302c", *Faint = "#a49d94", *Seen = "#c2620a",
                     *SeenFill = "#ffe9cc", *Plain = "#ffffff", *Lost = "#b3261e";
constexpr const char* End = "END";

/// Columns of a character: wide ones two.
size_t columnsOf(unsigned char lead) {
  return lead >= 0xE0 ? 2 : 1;
}
bool continues(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

size_t columns(const std::string& text) {
  size_t sum = 0;
  for (const char byte : text)
    if (!continues(byte)) sum += columnsOf(static_cast<unsigned char>(byte));
  return sum;
}

double widthOf(const std::string& text, double size) {
  return double(columns(text)) * size * 0.56;
}

std::string shortened(const std::string& text, size_t most) {
  if (columns(text) <= most) return text;
  std::string result;
  size_t taken = 0;
  for (size_t at = 0; at < text.size();) {
    size_t end = at + 1;
    while (end < text.size() && continues(text[end]))
      ++end;
    taken += columnsOf(static_cast<unsigned char>(text[at]));
    if (taken + 1 > most) break;
    result += text.substr(at, end - at);
    at = end;
  }
  return result + "…";
}

std::string escaped(const std::string& text) {
  std::string result;
  for (const char byte : text) {
    switch (byte) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      case '"':
        result += "&quot;";
        break;
      default:
        result += byte;
    }
  }
  return result;
}

std::string number(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f", value);
  return text;
}

/// The first words that a reader meets.
std::string firstWords(const Scene* scene) {
  if (!scene) return {};
  if (scene->form == Scene::Form::Chain) return "decides";
  if (scene->form == Scene::Form::Handwritten) return "hand-written";
  std::string words;
  eachAct(*scene, [&](const Act& act) {
    if (words.empty() && act.kind == Act::Kind::Message && !act.lines.empty()) words = act.lines[0];
  });
  return shortened(words, MostWordColumns);
}

class Drawing {
 public:
  Drawing(const StoryGraph& graph, const StoryTrace* trace)
      : graph_(graph), trace_(trace), reachable_(graph.reachable()) {}

  std::string draw() {
    layOut();
    const double height = placed_.height + LegendHeight;
    out_ = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + number(placed_.width) +
           "\" height=\"" + number(height) + "\" viewBox=\"0 0 " + number(placed_.width) + " " +
           number(height) +
           "\" font-family=\"'IPAPGothic','IPAexGothic','Noto Sans CJK JP',sans-serif\">\n"
           "<rect width=\"100%\" height=\"100%\" fill=\"" +
           Paper + "\"/>\n";
    legend();
    out_ += "<g transform=\"translate(0 " + number(LegendHeight) + ")\">\n";
    // What was reached lies over what was not.
    for (const bool seen : {false, true})
      for (size_t edge = 0; edge < ways_.size(); ++edge)
        if (seenWay(edge) == seen) way(edge);
    for (size_t box = 0; box < graph_.nodes.size(); ++box)
      if (boxes_[box].width > 0) node(box);
    for (size_t edge = 0; edge < ways_.size(); ++edge)
      label(edge);
    out_ += "</g>\n</svg>\n";
    return std::move(out_);
  }

 private:
  struct Way {
    size_t node, way;
  };

  bool isEnd(size_t node) const { return graph_.nodes[node].name == End; }
  const StoryWay& wayOf(const Way& way) const { return graph_.nodes[way.node].ways[way.way]; }
  bool seenNode(size_t node) const { return trace_ && trace_->scenes.count(node) != 0; }
  bool seenWay(size_t edge) const {
    return trace_ && trace_->ways.count({ways_[edge].node, ways_[edge].way}) != 0;
  }

  /// Ways to the end are told at their scene, as the ways back are: they would cross everything.
  void layOut() {
    std::vector<LayoutEdge> edges;
    returns_.resize(graph_.nodes.size());
    std::vector<size_t> roots{graph_.root};
    for (size_t from = 0; from < graph_.nodes.size(); ++from) {
      for (size_t way = 0; way < graph_.nodes[from].ways.size(); ++way) {
        const StoryWay& to = graph_.nodes[from].ways[way];
        if (isEnd(to.target)) {
          returns_[from].push_back(way);
          continue;
        }
        const std::string text = shortened(to.label, MostLabelColumns);
        edges.push_back({from, to.target, text.empty() ? 0 : widthOf(text, SmallSize)});
        ways_.push_back({from, way});
      }
    }
    std::vector<double> wanted(graph_.nodes.size());
    for (const LayoutEdge& edge : edges)
      wanted[edge.to] = std::max(wanted[edge.to], edge.labelWidth);
    for (size_t index = 0; index < graph_.nodes.size(); ++index) {
      const StoryNode& node = graph_.nodes[index];
      // The end itself has no box.
      if (isEnd(index)) {
        boxes_.push_back({});
        continue;
      }
      const double text =
          std::max(widthOf(node.name, TextSize * 1.1), widthOf(firstWords(node.scene), SmallSize)) +
          2 * BoxPadding;
      boxes_.push_back({std::max({text, wanted[index] + BoxPadding, LeastWidth}), BoxHeight});
    }
    placed_ = placeGraph(boxes_, edges, roots);
    for (size_t edge = 0; edge < edges.size(); ++edge)
      if (placed_.edges[edge].back) returns_[ways_[edge].node].push_back(ways_[edge].way);
  }

  void text(double x, double y, double size, const char* colour, const std::string& words,
            const char* more = "") {
    out_ += "<text x=\"" + number(x) + "\" y=\"" + number(y) + "\" font-size=\"" + number(size) +
            "\" fill=\"" + colour + "\"" + more + ">" + escaped(words) + "</text>\n";
  }

  void legend() {
    double x = 24;
    const auto entry = [&](const char* fill, const char* border, const char* words,
                           const char* dashes) {
      out_ += "<rect x=\"" + number(x) + "\" y=\"14\" width=\"20\" height=\"14\" rx=\"4\" fill=\"" +
              std::string(fill) + "\" stroke=\"" + border + "\"" + dashes + "/>\n";
      text(x + 26, 25, SmallSize, Ink, words);
      x += 44 + widthOf(words, SmallSize);
    };
    if (trace_) entry(SeenFill, Seen, "reached", "");
    entry(Plain, Faint, trace_ ? "not reached" : "scene", "");
    entry(Plain, Faint, "decides only", " stroke-dasharray=\"5 3\"");
    if (std::find(reachable_.begin(), reachable_.end(), false) != reachable_.end())
      entry(Plain, Lost, "nothing leads there", " stroke-dasharray=\"2 2\"");
  }

  void way(size_t edge) {
    const PlacedEdge& placed = placed_.edges[edge];
    if (placed.back || placed.points.size() < 2) return;
    std::string path = "M" + number(placed.points[0].first) + " " + number(placed.points[0].second);
    for (size_t at = 1; at < placed.points.size(); ++at) {
      const auto [x1, y1] = placed.points[at - 1];
      const auto [x2, y2] = placed.points[at];
      const double middle = (y1 + y2) / 2;
      path += " C" + number(x1) + " " + number(middle) + " " + number(x2) + " " + number(middle) +
              " " + number(x2) + " " + number(y2);
    }
    const bool seen = seenWay(edge);
    out_ += "<path d=\"" + path + "\" fill=\"none\" stroke=\"" + (seen ? Seen : Faint) +
            "\" stroke-width=\"" + (seen ? "2.2" : "1.2") + "\"/>\n";
  }

  void label(size_t edge) {
    const PlacedEdge& placed = placed_.edges[edge];
    const std::string words = shortened(wayOf(ways_[edge]).label, MostLabelColumns);
    if (placed.back || words.empty()) return;
    const double width = widthOf(words, SmallSize) + 8;
    out_ += "<rect x=\"" + number(placed.labelX - width / 2) + "\" y=\"" +
            number(placed.labelY - 8) + "\" width=\"" + number(width) +
            "\" height=\"15\" rx=\"3\" fill=\"" + Paper + "\" fill-opacity=\"0.92\"/>\n";
    text(placed.labelX, placed.labelY + 4, SmallSize, seenWay(edge) ? Seen : Ink, words,
         " text-anchor=\"middle\"");
  }

  void node(size_t index) {
    const StoryNode& node = graph_.nodes[index];
    const PlacedNode& place = placed_.nodes[index];
    const double width = boxes_[index].width;
    const bool seen = seenNode(index), lost = !reachable_[index];
    const bool chain = node.scene && node.scene->form == Scene::Form::Chain;
    std::string border = std::string(" stroke=\"") + (lost ? Lost : seen ? Seen : Faint) + "\"";
    if (lost) border += " stroke-dasharray=\"2 2\"";
    if (chain && !lost) border += " stroke-dasharray=\"5 3\"";
    out_ += "<rect x=\"" + number(place.x - width / 2) + "\" y=\"" +
            number(place.y - BoxHeight / 2) + "\" width=\"" + number(width) + "\" height=\"" +
            number(BoxHeight) + "\" rx=\"" + (chain ? "20" : "6") + "\" fill=\"" +
            (seen ? SeenFill : Plain) + "\"" + border + " stroke-width=\"1.4\"/>\n";
    const std::string words = firstWords(node.scene);
    text(place.x, words.empty() ? place.y + 4 : place.y - 3, TextSize, Ink, node.name,
         " text-anchor=\"middle\" font-weight=\"bold\"");
    if (!words.empty())
      text(place.x, place.y + 13, SmallSize, "#6b645c", words, " text-anchor=\"middle\"");
    tellReturns(index);
  }

  /// "↑ sc_menu" below the box.
  void tellReturns(size_t index) {
    const std::vector<size_t>& ways = returns_[index];
    double y = placed_.nodes[index].y + BoxHeight / 2 + 12;
    for (size_t at = 0; at < std::min(ways.size(), MostReturns); ++at, y += ReturnHeight) {
      const StoryWay& way = graph_.nodes[index].ways[ways[at]];
      const std::string label = shortened(way.label, MostLabelColumns / 2);
      const bool seen = trace_ && trace_->ways.count({index, ways[at]}) != 0;
      text(placed_.nodes[index].x + 6, y, SmallSize, seen ? Seen : "#7d756b",
           (isEnd(way.target) ? "■ " : "↑ ") + graph_.nodes[way.target].name +
               (label.empty() ? "" : "  " + label));
    }
  }

  const StoryGraph& graph_;
  const StoryTrace* trace_;
  std::vector<bool> reachable_;
  std::vector<LayoutNode> boxes_;
  std::vector<Way> ways_;                     ///< those that are drawn or lead back
  std::vector<std::vector<size_t>> returns_;  ///< of each node: ways told in words
  PlacedGraph placed_;
  std::string out_;
};

}  // namespace

std::string svgOf(const StoryGraph& graph, const StoryTrace* trace) {
  return Drawing(graph, trace).draw();
}

}  // namespace qv::story
