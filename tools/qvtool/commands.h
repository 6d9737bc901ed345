#pragma once

/// The command groups of qvtool. Each adds its subcommands; their callbacks throw Failure with a
/// sentence for the user.

namespace CLI {
class App;
}

namespace qv::tool {

void addMcgCommands(CLI::App& program);
void addSldCommands(CLI::App& program);
void addBmpCommands(CLI::App& program);
void addPaletteCommands(CLI::App& program);
void addMapCommands(CLI::App& program);
void addSongCommands(CLI::App& program);
void addFontCommands(CLI::App& program);
void addCursorCommands(CLI::App& program);
void addReelCommand(CLI::App& program);
void addStoryCommands(CLI::App& program);

}  // namespace qv::tool
