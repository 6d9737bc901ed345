#pragma once

/// What a run has seen of a story, from the trace that qvrun writes (--trace): scenes entered and
/// choices taken.

#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "tools/story/story_graph.h"

namespace qv::story {

struct StoryTrace {
  std::set<size_t> scenes;                   ///< nodes of the graph
  std::set<std::pair<size_t, size_t>> ways;  ///< node and its way, by their numbers
};

/// Lines are "TICK scene NAME" and "TICK choice N"; others are passed over, as are scenes that the
/// graph does not have.
StoryTrace traceOf(std::string_view text, const StoryGraph& graph);

}  // namespace qv::story
