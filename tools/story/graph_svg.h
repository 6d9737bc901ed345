#pragma once

/// The tree of a story's scenes as a drawing (SVG): boxes with names and first words, ways with
/// their choices and conditions, and in another colour what a trace has reached.

#include <string>

#include "tools/story/story_graph.h"
#include "tools/story/story_trace.h"

namespace qv::story {

/// `trace` null: nothing is told apart.
std::string svgOf(const StoryGraph& graph, const StoryTrace* trace);

}  // namespace qv::story
