// qvtool: the author's and developer's knife. One file per command group.

#include <cstdio>
#include <exception>

#include <CLI/CLI.hpp>

#include "tools/failure.h"
#include "tools/qvtool/commands.h"

namespace {

constexpr int Failed = 1, BadUsage = 2;

}  // namespace

int main(int count, char** arguments) {
  CLI::App program(
      "Turns pictures and music into the game's formats and back, and looks into them.\n"
      "Exit status: 0 when all is well, 1 when a file is not, 2 for bad usage.",
      "qvtool");
  program.set_version_flag("--version", "qvtool " QV_VERSION);
  program.require_subcommand(1);
  qv::tool::addMcgCommands(program);
  qv::tool::addSldCommands(program);
  qv::tool::addBmpCommands(program);
  qv::tool::addPaletteCommands(program);
  qv::tool::addMapCommands(program);
  qv::tool::addSongCommands(program);
  qv::tool::addFontCommands(program);
  qv::tool::addCursorCommands(program);
  qv::tool::addReelCommand(program);
  qv::tool::addStoryCommands(program);
  try {
    program.parse(count, arguments);
  } catch (const CLI::Success& help) {
    return program.exit(help);
  } catch (const CLI::ParseError& error) {
    std::fprintf(stderr, "qvtool: %s\nSee qvtool --help.\n", error.what());
    return BadUsage;
  } catch (const qv::tool::Failure& failure) {
    std::fprintf(stderr, "qvtool: %s\n", failure.what());
    return Failed;
  } catch (const qv::tool::ToldFailure& told) {
    return told.status;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "qvtool: %s\n", error.what());
    return Failed;
  }
  return 0;
}
