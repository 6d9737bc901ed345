// story: looks at a story as a whole.

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "platform/kernel/kernel.h"
#include "platform/text/text_renderer.h"
#include "tools/failure.h"
#include "tools/qvtool/commands.h"
#include "tools/qvtool/files.h"
#include "tools/story/graph_svg.h"
#include "tools/story/story_checks.h"
#include "tools/story/story_maker.h"
#include "tools/story/story_source.h"

namespace qv::tool {

namespace {

namespace fs = std::filesystem;
using namespace qv::story;

constexpr int StoryFaulty = 1;

struct StoryOptions {
  int scenes = FullSize;
  uint64_t seed = 1;
  fs::path source = "game", game, trace, target, fonts;
};

/// Widths of the machine's fonts.
class RendererWidths : public TextDevice {
 public:
  explicit RendererWidths(TextRenderer& text) : text_(text) {}
  size_t fitBytes(const TextStyle& style, std::string_view run, int32_t width) override {
    return text_.fitBytes(style, run, width);
  }
  int32_t measure(const TextStyle& style, std::string_view run) override {
    return text_.measure(style, run);
  }
  void draw(const TextRun&, ColourRef) override {}

 private:
  TextRenderer& text_;
};

/// Tells what is wrong; the folder stands before the names of the texts.
void tell(const StorySource& source) {
  for (const std::string& line : source.problems.lines((source.folder / "").string()))
    std::fprintf(stderr, "%s\n", line.c_str());
}

StorySource readStory(const fs::path& folder) {
  StorySource source;
  if (!readStorySource(folder, source)) {
    for (const std::string& line : source.problems.lines())
      std::fprintf(stderr, "qvtool: %s\n", line.c_str());
    throw ToldFailure{StoryFaulty};
  }
  return source;
}

void checkFilesOf(const StoryOptions& options, StorySource& source) {
  if (!options.game.empty() && !fs::is_directory(options.game))
    throw Failure("There is no game folder " + options.game.string() + ".");
  const GameFiles files =
      options.game.empty() ? GameFiles::ofSources(source.game) : GameFiles::ofBuilt(options.game);
  if (files.empty() && options.game.empty())
    std::fprintf(stderr,
                 "qvtool: %s holds a story alone; give --game, so that its pictures and sounds are "
                 "looked for.\n",
                 options.source.string().c_str());
  else
    checkFiles(source.story, files, source.problems);
}

void check(const StoryOptions& options) {
  const KernelScope kernel(makeRealKernel());
  StorySource source = readStory(options.source);
  TextRenderer text(options.fonts);
  RendererWidths widths(text);
  checkReach(source.story, source.problems);
  checkFlags(source.story, source.code, source.problems);
  checkSongs(source.story, source.problems);
  checkFilesOf(options, source);
  checkLayout(source.story, widths, source.problems);
  if (!text.hasFont(FontFace::ProportionalMincho))
    std::fprintf(stderr,
                 "qvtool: the font of messages is missing; lines were measured with the "
                 "built-in one.\n");
  tell(source);
  if (!source.problems.empty()) throw ToldFailure{StoryFaulty};
  size_t messages = 0;
  for (const scenec::Scene& scene : source.story.scenes)
    eachAct(scene, [&](const scenec::Act& act) {
      if (act.kind == scenec::Act::Kind::Message) ++messages;
    });
  std::printf("%zu scenes, %zu messages, nothing missing\n", source.story.scenes.size(), messages);
}

void drawGraph(const StoryOptions& options) {
  const StorySource source = readStory(options.source);
  tell(source);
  const StoryGraph graph = graphOf(source.story);
  StoryTrace trace;
  if (!options.trace.empty()) {
    const std::vector<uint8_t> bytes = readFile(options.trace);
    trace = traceOf({reinterpret_cast<const char*>(bytes.data()), bytes.size()}, graph);
    if (trace.scenes.empty())
      throw Failure(options.trace.string() + " names no scene of this story.");
  }
  const std::string svg = svgOf(graph, options.trace.empty() ? nullptr : &trace);
  writeFile(options.target, {reinterpret_cast<const uint8_t*>(svg.data()), svg.size()});
}

void make(const StoryOptions& options) {
  const StorySource sample = readStory(options.source);
  tell(sample);
  if (!sample.problems.empty()) throw ToldFailure{StoryFaulty};
  const GameFiles files =
      options.game.empty() ? GameFiles::ofSources(sample.game) : GameFiles::ofBuilt(options.game);
  for (const MadeFile& file : makeStory(sample, files, options.scenes, options.seed)) {
    const fs::path path = options.target / file.name;
    std::error_code error;
    fs::create_directories(path.parent_path(), error);
    writeFile(path, {reinterpret_cast<const uint8_t*>(file.bytes.data()), file.bytes.size()});
  }
}

}  // namespace

void addStoryCommands(CLI::App& program) {
  CLI::App* group =
      program.add_subcommand("story", "A story as a whole: what is missing, its tree");
  group->require_subcommand(1);
  const auto options = std::make_shared<StoryOptions>();
  const auto addSource = [&](CLI::App* command) {
    command->add_option("SOURCE", options->source,
                        "A game's sources, or a folder with a story.txt (game)");
  };

  CLI::App* checked = group->add_subcommand(
      "check", "Tell what is missing, as FILE:LINE: a sentence; status 1 when something is");
  addSource(checked);
  checked->add_option("--game", options->game,
                      "The built game folder: pictures and sounds are looked for there");
  checked->add_option("--fonts", options->fonts, "Look for the fonts in this folder alone");
  checked->callback([options] { check(*options); });

  CLI::App* drawn = group->add_subcommand("graph", "Draw the tree of scenes as SVG");
  addSource(drawn);
  drawn->add_option("--trace", options->trace,
                    "A trace of qvrun: what it reached has another colour");
  drawn->add_option("-o,--output", options->target, "The SVG file to write")->required();
  drawn->callback([options] { drawGraph(*options); });

  CLI::App* makes = group->add_subcommand(
      "make",
      "Make a story of the size of a real one, for tests: texts in TARGET/story, pictures that the "
      "sample lacks in TARGET/files");
  makes->add_option("SOURCE", options->source,
                    "The sample whose people, pictures and sounds it has");
  makes->add_option("--scenes", options->scenes, "How many scenes (931)")
      ->check(CLI::Range(SmallestSize, 5000));
  makes->add_option("--seed", options->seed, "Another seed is another story (1)");
  makes->add_option("--game", options->game, "The sample's built game folder");
  makes->add_option("-o,--output", options->target, "The folder to write")->required();
  makes->callback([options] { make(*options); });
}

}  // namespace qv::tool
