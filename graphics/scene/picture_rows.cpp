// The rows of figures and pictures as a running story has them: the engine's and its own.

#include <algorithm>

#include "graphics/scene/picture_tables.h"

namespace qv {

namespace {

// Events whose mouths are the same in every story.
constexpr PictureRow CommonPictures[] = {
    {"KEV001", nullptr, 1, {{1, 1, "KEV001_a", 304, 224, MouthWithoutKey}}},
    {"KEV003B",
     nullptr,
     2,
     {{1, 1, "KEV003Ba", 432, 208, MouthWithoutKey}, {2, 2, "KEV003Bb", 96, 256, MouthWithoutKey}}},
    {"KEV007", nullptr, 1, {{1, 0, nullptr, 0, 0, MouthWithoutKey}}},
    {"KEV925A", nullptr, 1, {{2, 1, "KEV925aa", 160, 128, MouthWithoutKey}}},
};

// Events of which a story may tell more, the strips of their mouths or another picture.
constexpr PictureRow OpenPictures[] = {
    {"KEV205",
     nullptr,
     4,
     {{2, 1, nullptr, 0, 0, MouthWithoutKey},
      {17, 2, nullptr, 0, 0, MouthWithoutKey},
      {18, 3, nullptr, 0, 0, MouthWithoutKey},
      {19, 4, nullptr, 0, 0, MouthWithoutKey}}},
    {"KEV230B", "KEV230", 0, {}},
};

template <class Row>
const Row* findRow(std::span<const Row> rows, std::string_view name) {
  const auto found = std::ranges::find_if(rows, [&](const Row& row) { return name == row.name; });
  return found == rows.end() ? nullptr : &*found;
}

}  // namespace

const PictureRow* findPictureRow(std::string_view name) {
  if (const PictureRow* own = findRow<PictureRow>(CommonPictures, name)) return own;
  if (const PictureRow* told = findRow(storyTables().pictures, name)) return told;
  return findRow<PictureRow>(OpenPictures, name);
}

const SpriteRow* findSpriteRow(std::string_view name) {
  const SpriteRow* own = findRow(commonSprites(), name);
  return own ? own : findRow(storyTables().sprites, name);
}

}  // namespace qv
