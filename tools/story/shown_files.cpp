#include "tools/story/shown_files.h"

#include <algorithm>

namespace qv::story {

namespace {

// The second mouth of the pair that one picture holds.
constexpr const char *PairPicture = "KUS110", *PairMouth = "Kus110_b";
/// Who speaks with a mouth does not matter to its file.
constexpr int32_t AnySpeaker = 0;

const char* orNull(const std::string& text) {
  return text.empty() ? nullptr : text.c_str();
}

SpriteRow spriteRowOf(const scenec::PictureData& data) {
  SpriteRow row{data.name.c_str(), AnySpeaker, data.x, data.y,         orNull(data.file),
                nullptr,           0,          0,      MouthWithoutKey};
  if (!data.mouths.empty()) row.mouth = orNull(data.mouths.front().file);
  return row;
}

PictureRow pictureRowOf(const scenec::PictureData& data) {
  PictureRow row{data.name.c_str(), orNull(data.file), 0, {}};
  for (const scenec::MouthData& mouth : data.mouths)
    if (row.mouthCount < PictureRow::MostMouths)
      row.mouths[row.mouthCount++] = {AnySpeaker, mouth.slot, orNull(mouth.file),
                                      mouth.x,    mouth.y,    mouth.key};
  return row;
}

void addMouths(ShownFiles& files, const PictureRow& row) {
  for (int32_t index = 0; index < row.mouthCount; ++index)
    if (row.mouths[index].file) files.mouths.emplace_back(row.mouths[index].file);
}

}  // namespace

RowsInPlace::RowsInPlace(const scenec::Story& story) : before_(storyTables()) {
  std::ranges::transform(story.sprites, std::back_inserter(sprites_), spriteRowOf);
  std::ranges::transform(story.pictures, std::back_inserter(pictures_), pictureRowOf);
  tables_ = {.sprites = sprites_, .pictures = pictures_};
  setStoryTables(&tables_);
}

RowsInPlace::~RowsInPlace() {
  setStoryTables(&before_);
}

ShownFiles filesOfStill(const std::string& name, std::span<const NamedFlag> names) {
  ShownFiles files{name};
  // A row counts only for names of the command's table.
  const PictureRow* row = findName(names, name) ? findPictureRow(name) : nullptr;
  if (!row) return files;
  if (row->file) files.picture = row->file;
  addMouths(files, *row);
  return files;
}

std::optional<ShownFiles> filesOfFigure(const std::string& name) {
  if (isGroupShot(name)) {
    ShownFiles files{name};
    if (const PictureRow* row = findPictureRow(name)) addMouths(files, *row);
    return files;
  }
  const SpriteRow* row = findSpriteRow(name);
  if (!row) return std::nullopt;
  ShownFiles files{spriteFile(*row)};
  if (row->mouth) files.mouths.emplace_back(row->mouth);
  if (name == PairPicture) files.mouths.emplace_back(PairMouth);
  return files;
}

std::optional<ShownFiles> filesOfVariant(const std::string& name, const SpriteFamily& family) {
  const SpriteRow* row = findSpriteRow(name);
  if (!row) return std::nullopt;
  const std::string prefix = family.prefix;
  const auto ofFamily = [&](std::string file) {
    return file.replace(0, std::min(prefix.size(), file.size()), prefix);
  };
  ShownFiles files{ofFamily(name)};
  if (row->mouth) files.mouths.push_back(ofFamily(row->mouth));
  return files;
}

}  // namespace qv::story
