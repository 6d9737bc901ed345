#pragma once

/// Which files the picture commands of scenes ask for, told by the engine's own tables with a
/// story's rows where the engine looks for them. One thread.

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "graphics/scene/picture_tables.h"
#include "scenario/story_tables.h"
#include "scenes/generator/story.h"

namespace qv::story {

/// The story's rows of figures and pictures are the engine's as long as this lives. The story
/// outlives it.
class RowsInPlace {
 public:
  explicit RowsInPlace(const scenec::Story& story);
  ~RowsInPlace();
  RowsInPlace(const RowsInPlace&) = delete;
  RowsInPlace& operator=(const RowsInPlace&) = delete;

 private:
  std::vector<SpriteRow> sprites_;
  std::vector<PictureRow> pictures_;
  StoryTables tables_;
  const StoryTables& before_;
};

/// Names without folder and ending.
struct ShownFiles {
  std::string picture;
  std::vector<std::string> mouths{};
};

/// Of an event or a title by its name; `names` is the command's table.
ShownFiles filesOfStill(const std::string& name, std::span<const NamedFlag> names);
/// Of a figure; nothing when no row knows it, so that nobody would appear.
std::optional<ShownFiles> filesOfFigure(const std::string& name);
/// Of the family's form of a figure that the family takes.
std::optional<ShownFiles> filesOfVariant(const std::string& name, const SpriteFamily& family);

}  // namespace qv::story
