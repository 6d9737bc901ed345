// The tree of scenes as a drawing, and what a trace says of it.

#include <algorithm>
#include <cmath>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenes/generator/generator.h"
#include "tools/story/graph_layout.h"
#include "tools/story/graph_svg.h"
#include "tools/story/story_trace.h"

namespace qv::story {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

constexpr const char* Scenes =
    "@scene sc_menu\n@go sc000000\n"
    "@scene sc000000\n六月の朝の雨。\n@choose\n傘に入る → sc000001\n走る & 走る → sc000002\n"
    "@scene sc000001\n@go sc000003\n@scene sc000002\n@go sc000003\n"
    "@chain sc000003\n@if random\n@go sc_menu\n@else\n@go END\n@end\n"
    "@scene sc000009\n@go END\n";

class Graph : public ::testing::Test {
 protected:
  Graph() {
    scenec::Problems problems;
    story = scenec::readStory({{"story.txt", ""}, {"a.scene", Scenes}}, problems);
    EXPECT_TRUE(problems.empty());
    graph = graphOf(story);
  }
  size_t at(const std::string& name) const { return graph.byName.at(name); }
  scenec::Story story;
  StoryGraph graph;
};

TEST_F(Graph, KnowsWhoLeadsToWhomByWhat) {
  const std::vector<StoryWay>& ways = graph.nodes[at("sc000000")].ways;
  ASSERT_EQ(ways.size(), 2u);
  EXPECT_EQ(ways[0].target, at("sc000001"));
  EXPECT_EQ(ways[0].label, "傘に入る");
  EXPECT_EQ(ways[1].choice, 2);
  EXPECT_EQ(graph.nodes[at("sc000003")].ways[0].label, "random");
  EXPECT_EQ(graph.nodes[at("sc000003")].ways[1].label, "else");
}

TEST_F(Graph, ATraceTellsScenesAndTheChoicesBetweenThem) {
  const StoryTrace trace = traceOf(
      "0 scene sc_start\n3 scene sc_menu\n5 scene sc000000\n9 line 雨\n9 choice 2\n"
      "10 scene sc000002\nnot a line\n",
      graph);
  EXPECT_THAT(trace.scenes,
              ::testing::UnorderedElementsAre(at("sc_menu"), at("sc000000"), at("sc000002")));
  EXPECT_THAT(trace.ways, ::testing::UnorderedElementsAre(std::pair(at("sc_menu"), size_t{0}),
                                                          std::pair(at("sc000000"), size_t{1})));
}

TEST_F(Graph, TheDrawingShowsNamesChoicesAndWhatWasReached) {
  const std::string plain = svgOf(graph, nullptr);
  for (const char* text : {">sc000000<", ">六月の朝の雨。<", ">傘に入る<", ">走る &amp; 走る<",
                           ">decides<", "↑ sc_menu", "■ END", ">nothing leads there<"})
    EXPECT_THAT(plain, HasSubstr(text));
  EXPECT_THAT(plain, Not(HasSubstr(">reached<")));
  const StoryTrace trace = traceOf("0 scene sc_menu\n0 scene sc000000\n", graph);
  const std::string reached = svgOf(graph, &trace);
  EXPECT_THAT(reached, HasSubstr(">reached<"));
  const auto count = [](const std::string& text, const std::string& part) {
    int found = 0;
    for (size_t place = 0; (place = text.find(part, place)) != std::string::npos; ++place)
      ++found;
    return found;
  };
  // Two scenes and the legend; one way.
  EXPECT_EQ(count(reached, "fill=\"#ffe9cc\""), 3);
  EXPECT_EQ(count(reached, "stroke-width=\"2.2\""), 1);
}

// --- The layout ---

TEST(GraphLayout, EveryWayLeadsDownAndNoBoxesMeet) {
  std::vector<LayoutNode> nodes(200, {100, 40});
  std::vector<LayoutEdge> edges;
  uint32_t state = 7;
  for (size_t to = 1; to < nodes.size(); ++to) {
    state = state * 1664525 + 1013904223;
    edges.push_back({to - 1 - std::min<size_t>(to - 1, (state >> 16) % 12), to, 30});
    if (to % 3 == 0 || to == 199) edges.push_back({to - 1, to, 0});
  }
  edges.push_back({199, 0, 0});
  const PlacedGraph placed = placeGraph(nodes, edges, {0});
  for (size_t edge = 0; edge < edges.size(); ++edge) {
    if (placed.edges[edge].back) continue;
    EXPECT_LT(placed.nodes[edges[edge].from].layer, placed.nodes[edges[edge].to].layer);
    EXPECT_GE(placed.edges[edge].points.size(), 2u);
  }
  const auto isBack = [](const PlacedEdge& edge) { return edge.back; };
  EXPECT_EQ(std::ranges::count_if(placed.edges, isBack), 1);
  double right = 0;
  for (const PlacedNode& node : placed.nodes)
    right = std::max(right, node.x + 50);
  for (const PlacedEdge& edge : placed.edges)
    for (const auto& [x, y] : edge.points)
      right = std::max(right, x);
  EXPECT_NEAR(placed.width, right + 24, 10);
  for (size_t left = 0; left < nodes.size(); ++left) {
    for (size_t other = 0; other < left; ++other) {
      const PlacedNode &a = placed.nodes[left], &b = placed.nodes[other];
      EXPECT_TRUE(std::abs(a.x - b.x) >= 100 || std::abs(a.y - b.y) >= 40)
          << left << " and " << other;
    }
    EXPECT_GE(placed.nodes[left].x, 50);
    EXPECT_LE(placed.nodes[left].x, placed.width - 50);
  }
}

TEST(GraphLayout, AStraightChainIsALineAndACircleIsBroken) {
  const PlacedGraph placed =
      placeGraph({{80, 40}, {80, 40}, {80, 40}}, {{0, 1, 0}, {1, 2, 0}, {2, 0, 0}, {1, 1, 0}}, {0});
  EXPECT_NEAR(placed.nodes[0].x, placed.nodes[2].x, 1);
  EXPECT_EQ(placed.nodes[2].layer, 2u);
  EXPECT_TRUE(placed.edges[2].back);
  EXPECT_TRUE(placed.edges[3].back);
}

TEST(GraphLayout, NothingIsAnEmptySheet) {
  EXPECT_TRUE(placeGraph({}, {}, {}).nodes.empty());
}

}  // namespace
}  // namespace qv::story
