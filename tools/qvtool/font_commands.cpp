// font: a game's external characters, from the text in which an author draws them.

#include <filesystem>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "tools/qvtool/commands.h"
#include "tools/qvtool/files.h"
#include "tools/qvtool/font_source.h"
#include "tools/qvtool/truetype.h"

namespace qv::tool {

void addFontCommands(CLI::App& program) {
  struct Options {
    std::filesystem::path source, target;
  };
  CLI::App* group = program.add_subcommand("font", "A game's external characters");
  group->require_subcommand(1);
  CLI::App* encoded =
      group->add_subcommand("encode", "Write a TrueType font from a text that draws its signs");
  const auto options = std::make_shared<Options>();
  encoded->add_option("SOURCE", options->source, "The text")->required();
  encoded->add_option("TARGET", options->target, "The font file to write")->required();
  encoded->callback([options] {
    const std::vector<uint8_t> text = readFile(options->source);
    const OutlineFont font =
        readFontSource(std::string(text.begin(), text.end()), options->source.string());
    writeFile(options->target, encodeTrueType(font));
  });
}

}  // namespace qv::tool
