#include "scenes/generator/known_names.h"

#include <algorithm>
#include <span>
#include <vector>

#include "audio/scene/sound_tables.h"
#include "graphics/scene/picture_tables.h"
#include "platform/text/shift_jis.h"

namespace qv::scenec {

namespace {

using Names = std::vector<std::string>;

bool hasRow(const std::vector<PictureData>& rows, const std::string& name) {
  return std::any_of(rows.begin(), rows.end(),
                     [&](const PictureData& row) { return row.name == name; });
}

/// A picture that the engine lists under that heading, or a story its own.
std::string unknownPicture(const std::string& word, const char* what,
                           std::span<const NamedFlag> names, const Story& story,
                           Problems& problems) {
  if (findName(names, word) || hasRow(story.pictures, word)) return {};
  Names known;
  for (const NamedFlag& row : names)
    known.emplace_back(row.name);
  for (const PictureData& row : story.pictures)
    known.push_back(row.name);
  return std::string("there is no ") + what + " \"" + word + "\"." +
         problems.suggestion(word, known, "") + " If it is the story's own, write @picture " +
         word + " in story.txt.";
}

/// A figure without a row is not shown at all, whether or not the gallery would know it.
std::string unknownFigure(const std::string& word, const Story& story, Problems& problems) {
  Names known;
  for (const char* name : groupShots())
    known.emplace_back(name);
  for (const SpriteRow& row : commonSprites())
    known.emplace_back(row.name);
  for (const PictureData& row : story.sprites)
    known.push_back(row.name);
  if (std::find(known.begin(), known.end(), word) != known.end()) return {};
  return "the figure \"" + word + "\" has no row, so that nobody would appear." +
         problems.suggestion(word, known, "") + " Write @figure " + word +
         " of SPEAKER at X Y in story.txt.";
}

std::string unknownSong(const std::string& word) {
  if (songNumber(word.c_str()) != 0) return {};
  return "there is no song \"" + word + "\"; songs are K01 to K" + std::to_string(SongCount) + ".";
}

std::string unknownEffect(const std::string& word) {
  if (findSoundEffect(sjis(word.c_str()).c_str())) return {};
  return "there is no effect \"" + word + "\"; effects are " + soundEffects().front().key + " to " +
         soundEffects().back().key + ".";
}

}  // namespace

std::string unknownName(ArgumentKind kind, const std::string& word, const Story& story,
                        Problems& problems) {
  switch (kind) {
    case ArgumentKind::Background:
      return unknownPicture(word, "background", backgroundNames(), story, problems);
    case ArgumentKind::Event:
      return unknownPicture(word, "event picture", eventNames(), story, problems);
    case ArgumentKind::Title:
      return unknownPicture(word, "title picture", titleNames(), story, problems);
    case ArgumentKind::Figure:
      return unknownFigure(word, story, problems);
    case ArgumentKind::Song:
      return unknownSong(word);
    case ArgumentKind::Effect:
      return unknownEffect(word);
    default:
      return {};
  }
}

bool isPictureWithRow(const std::string& name) {
  return findName(eventNames(), name) || findName(titleNames(), name) || isGroupShot(name);
}

}  // namespace qv::scenec
