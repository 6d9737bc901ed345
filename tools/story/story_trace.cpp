#include "tools/story/story_trace.h"

#include <optional>
#include <sstream>

namespace qv::story {

namespace {

constexpr size_t Nowhere = static_cast<size_t>(-1);

class TraceReader {
 public:
  explicit TraceReader(const StoryGraph& graph) : graph_(graph) {}

  void read(const std::string& line) {
    std::istringstream words(line);
    std::string tick, what, detail;
    if (!(words >> tick >> what >> detail)) return;
    if (what == "choice")
      choice_ = detail.size() == 1 ? detail[0] - '0' : 0;
    else if (what == "scene")
      enter(detail);
  }
  StoryTrace take() { return std::move(trace_); }

 private:
  void enter(const std::string& name) {
    const auto found = graph_.byName.find(name);
    const size_t scene = found == graph_.byName.end() ? Nowhere : found->second;
    if (scene != Nowhere) trace_.scenes.insert(scene);
    if (scene != Nowhere && last_ != Nowhere) mark(scene);
    last_ = scene;
    choice_ = 0;
  }

  /// Of several ways to one scene a choice tells which.
  void mark(size_t scene) {
    const std::vector<StoryWay>& ways = graph_.nodes[last_].ways;
    for (size_t way = 0; way < ways.size(); ++way) {
      if (ways[way].target != scene) continue;
      const bool chosen = ways[way].kind == StoryWay::Kind::Choice;
      if (!chosen || choice_ == 0 || ways[way].choice == choice_) trace_.ways.insert({last_, way});
    }
  }

  const StoryGraph& graph_;
  StoryTrace trace_;
  size_t last_ = Nowhere;
  int choice_ = 0;
};

}  // namespace

StoryTrace traceOf(std::string_view text, const StoryGraph& graph) {
  TraceReader reader(graph);
  std::istringstream stream{std::string(text)};
  for (std::string line; std::getline(stream, line);)
    reader.read(line);
  return reader.take();
}

}  // namespace qv::story
