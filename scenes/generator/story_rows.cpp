#include "scenes/generator/story_rows.h"

#include <algorithm>
#include <optional>

#include "scenario/story_tables.h"
#include "scenes/generator/known_names.h"
#include "scenes/generator/text.h"

namespace qv::scenec {

namespace {

constexpr int MostClass = 254, ScreenEdge = 2000, MostSlot = 5, MostKey = 255,
              KeyNone = MouthWithoutKey, MostMouths = 5;
constexpr std::string_view TagOpens = "【", TagCloses = "】";
constexpr std::string_view TrueNameOpens = "《", TrueNameCloses = "》";
constexpr const char* Frame = "【　";
constexpr const char* FrameEnd = "　】";

/// The words of a row, taken one after the other. The first thing wrong is told, and nothing more.
class RowReader {
 public:
  RowReader(std::string_view rest, const char* form, Place place, Problems& problems)
      : rest_(trim(rest)), form_(form), place_(place), problems_(problems) {}

  bool good() const { return good_; }
  bool atEnd() const { return rest_.empty() || !good_; }

  std::string word() {
    if (rest_.empty()) fail();
    return firstWord(rest_, rest_);
  }
  /// A text in its 【 】, spaces and all.
  std::string tag() {
    const size_t end = rest_.find(TagCloses);
    if (!startsWith(rest_, TagOpens) || end == std::string_view::npos) {
      fail();
      return {};
    }
    std::string found(rest_.substr(0, end + TagCloses.size()));
    rest_ = trim(rest_.substr(end + TagCloses.size()));
    return found;
  }
  bool tagFollows() const { return startsWith(rest_, TagOpens); }
  bool accept(std::string_view expected) {
    std::string_view behind;
    if (narrow(firstWord(rest_, behind)) != expected) return false;
    rest_ = behind;
    return true;
  }
  void expect(std::string_view expected) {
    if (!accept(expected)) fail();
  }
  int number(int low, int high) {
    const std::string found = word();
    const std::optional<long> value = scenec::number(found);
    if (value && *value >= low && *value <= high) return static_cast<int>(*value);
    if (good_)
      problems_.add(place_, "\"" + found + "\" is no number from " + std::to_string(low) + " to " +
                                std::to_string(high) + ".");
    good_ = false;
    return low;
  }
  void fail() {
    if (good_) problems_.add(place_, std::string("write ") + form_ + ".");
    good_ = false;
  }

 private:
  std::string_view rest_;
  const char* form_;
  Place place_;
  Problems& problems_;
  bool good_ = true;
};

bool isFileName(const std::string& name) {
  return !name.empty() && std::all_of(name.begin(), name.end(), [](char byte) {
    return (byte >= '0' && byte <= '9') || (byte >= 'a' && byte <= 'z') ||
           (byte >= 'A' && byte <= 'Z') || byte == '_';
  });
}

std::string fileOf(RowReader& row) {
  std::string name = row.word();
  if (row.good() && !isFileName(name)) row.fail();
  return name;
}

void readPlaceAndKey(RowReader& row, MouthData& mouth) {
  mouth.file = fileOf(row);
  mouth.x = row.number(-ScreenEdge, ScreenEdge);
  mouth.y = row.number(-ScreenEdge, ScreenEdge);
  mouth.key = row.accept("key") ? row.number(0, MostKey) : KeyNone;
}

void add(std::vector<PictureData>& rows, PictureData row, Problems& problems) {
  const bool taken = std::any_of(rows.begin(), rows.end(),
                                 [&](const PictureData& other) { return other.name == row.name; });
  if (taken)
    problems.add(row.place,
                 "the row \"" + row.name + "\" is there already; remove one of the two.");
  else
    rows.push_back(std::move(row));
}

/// The part that says who it truly is, is never shown.
std::string withoutTrueName(const std::string& tag) {
  const size_t opens = tag.find(TrueNameOpens), closes = tag.find(TrueNameCloses);
  if (opens == std::string::npos || closes == std::string::npos || closes < opens) return tag;
  return tag.substr(0, opens) + tag.substr(closes + TrueNameCloses.size());
}

/// The class by which a figure's speaker is known; 0 for none.
int classOf(const std::string& speaker, const Story& story) {
  const auto found = std::find_if(story.speakerData.begin(), story.speakerData.end(),
                                  [&](const SpeakerData& data) { return data.name == speaker; });
  return found == story.speakerData.end() ? SpeakerWithoutClass : found->speakerClass;
}

bool knowsSpeaker(const std::string& speaker, const Story& story, Place place, Problems& problems) {
  const bool known = std::any_of(story.speakerData.begin(), story.speakerData.end(),
                                 [&](const SpeakerData& data) { return data.name == speaker; });
  if (!known)
    problems.add(place, "there is no speaker \"" + speaker + "\" above; write its @speaker first.");
  return known;
}

/// A figure is known by its speaker's class; one without would stand as nobody in every free slot.
void checkClass(const PictureData& figure, const Story& story, Problems& problems) {
  if (classOf(figure.speaker, story) == SpeakerWithoutClass)
    problems.add(figure.place, "the speaker \"" + figure.speaker +
                                   "\" has no class, by which figures are known; give @speaker " +
                                   figure.speaker + " a class of its own.");
}

std::string quotedOrNull(const std::string& text) {
  return text.empty() ? "nullptr" : literal(text);
}

std::string speakerRow(const std::string& tag, const std::string& shown, const std::string& printed,
                       int speakerClass) {
  return "    {" + literal(tag) + ", " + literal(shown) + ", " + quotedOrNull(printed) + ", " +
         std::to_string(speakerClass) + ", false},\n";
}

/// One speaker's rows: by the plain name, in drama, without a moving mouth, beside the hero.
std::string speakerRows(const SpeakerData& speaker) {
  const std::string shown = speaker.shown.empty() ? withoutTrueName(speaker.tag) : speaker.shown;
  std::string rows = speakerRow(speaker.tag, shown, speaker.printed, speaker.speakerClass);
  if (!speaker.plain) return rows;
  const std::string& name = speaker.name;
  rows += speakerRow("【Dt" + name + FrameEnd, shown, {}, speaker.speakerClass);
  rows += speakerRow(Frame + name + "〔アニメなし〕】", shown, {}, 0);
  rows += speakerRow(Frame + ("＊＊＊　＆　" + name) + FrameEnd,
                     Frame + ("＊＊＊　＆　" + name) + FrameEnd, {}, speaker.speakerClass);
  return rows;
}

std::string mouthCode(const MouthData& mouth, const Story& story) {
  return "{" + std::to_string(classOf(mouth.speaker, story)) + ", " + std::to_string(mouth.slot) +
         ", " + quotedOrNull(mouth.file) + ", " + std::to_string(mouth.x) + ", " +
         std::to_string(mouth.y) + ", " + std::to_string(mouth.key) + "}";
}

std::string spriteRow(const PictureData& row, const Story& story) {
  const MouthData mouth = row.mouths.empty() ? MouthData{} : row.mouths.front();
  return "    {" + literal(row.name) + ", " + std::to_string(classOf(row.speaker, story)) + ", " +
         std::to_string(row.x) + ", " + std::to_string(row.y) + ", " + quotedOrNull(row.file) +
         ", " + quotedOrNull(mouth.file) + ", " + std::to_string(mouth.x) + ", " +
         std::to_string(mouth.y) + ", " + std::to_string(mouth.key) + "},\n";
}

std::string pictureRow(const PictureData& row, const Story& story) {
  std::string text = "    {" + literal(row.name) + ", " + quotedOrNull(row.file) + ", " +
                     std::to_string(row.mouths.size()) + ", {";
  for (size_t index = 0; index < row.mouths.size(); ++index)
    text += (index ? ", " : "") + mouthCode(row.mouths[index], story);
  return text + "}},\n";
}

/// An array of that type, or nothing where it would be empty, and the member that points to it.
std::string tableCode(const char* type, const char* name, const std::string& rows) {
  return rows.empty()
             ? std::string()
             : std::string("constexpr qv::") + type + " " + name + "[] = {\n" + rows + "};\n\n";
}

}  // namespace

void readSpeaker(std::string_view rest, Place place, Story& story, Problems& problems) {
  RowReader row(rest, "@speaker NAME, or @speaker NAME 【　TAG　】 class N", place, problems);
  SpeakerData data;
  data.place = place;
  data.name = row.word();
  if (!row.good()) return;
  if (story.speakers.count(data.name) != 0)
    problems.add(place,
                 "the speaker \"" + data.name + "\" is there already; remove one of the two.");
  if (data.name.find(':') != std::string::npos || data.name.find("：") != std::string::npos)
    problems.add(place, "a speaker's name cannot hold a colon.");
  const std::string plainTag = Frame + data.name + FrameEnd;
  data.tag = row.tagFollows() ? row.tag() : plainTag;
  data.plain = data.tag == plainTag;
  while (!row.atEnd()) {
    if (row.accept("class"))
      data.speakerClass = row.number(0, MostClass - 1);
    else if (row.accept("shows"))
      data.shown = row.tag();
    else if (row.accept("prints"))
      data.printed = row.tag();
    else
      row.fail();
  }
  story.speakers[data.name] = data.tag;
  if (row.good()) story.speakerData.push_back(std::move(data));
}

void readHero(std::string_view rest, Place place, Story& story, Problems& problems) {
  RowReader row(rest, "@hero FAMILYNAME GIVENNAME", place, problems);
  const std::string family = row.word(), given = row.word();
  if (row.good() && !row.atEnd()) row.fail();
  if (!row.good()) return;
  story.familyName = family;
  story.givenName = given;
}

void readSpriteRow(std::string_view rest, Place place, Story& story, Problems& problems) {
  RowReader row(rest, "@figure PICTURE of SPEAKER at X Y [file FILE] [mouth FILE X Y [key N]]",
                place, problems);
  PictureData data{.name = row.word(), .place = place};
  row.expect("of");
  data.speaker = row.word();
  row.expect("at");
  data.x = row.number(-ScreenEdge, ScreenEdge);
  data.y = row.number(-ScreenEdge, ScreenEdge);
  if (row.accept("file")) data.file = fileOf(row);
  if (row.accept("mouth")) {
    MouthData mouth{.speaker = data.speaker};
    readPlaceAndKey(row, mouth);
    data.mouths.push_back(std::move(mouth));
  }
  if (row.good() && !row.atEnd()) row.fail();
  if (!row.good() || !knowsSpeaker(data.speaker, story, place, problems)) return;
  checkClass(data, story, problems);
  add(story.sprites, std::move(data), problems);
}

void readPictureRow(std::string_view rest, Place place, Story& story, Problems& problems) {
  RowReader row(rest,
                "@picture PICTURE [file FILE], and mouth SPEAKER SLOT FILE X Y [key N] or stands "
                "SPEAKER SLOT for each that is in it",
                place, problems);
  PictureData data{.name = row.word(), .place = place};
  if (row.accept("file")) data.file = fileOf(row);
  while (!row.atEnd()) {
    const bool moves = row.accept("mouth");
    if (!moves) row.expect("stands");
    MouthData mouth{.speaker = row.word()};
    mouth.slot = row.number(0, MostSlot);
    if (moves) readPlaceAndKey(row, mouth);
    if (!row.good() || !knowsSpeaker(mouth.speaker, story, place, problems)) return;
    data.mouths.push_back(std::move(mouth));
  }
  const bool tells = !data.mouths.empty() || !data.file.empty();
  if (row.good() && tells && !isPictureWithRow(data.name))
    problems.add(place, "\"" + data.name +
                            "\" is no event or title that the engine knows, so that nobody would "
                            "look at its row; write @picture " +
                            data.name + " alone.");
  else if (data.mouths.size() > MostMouths)
    problems.add(place, "a picture has five mouths at most; remove one.");
  else if (row.good())
    add(story.pictures, std::move(data), problems);
}

std::string tablesCode(const Story& story) {
  std::string speakers, sprites, pictures;
  for (const SpeakerData& speaker : story.speakerData)
    speakers += speakerRows(speaker);
  // On a first start the hero has a name of his own, by which the scenes may call him.
  if (!story.familyName.empty()) {
    const std::string tag = Frame + story.familyName + "　" + story.givenName + FrameEnd;
    speakers += "    {" + literal(tag) + ", " + literal(tag) + ", nullptr, 0, true},\n";
  }
  for (const PictureData& row : story.sprites)
    sprites += spriteRow(row, story);
  for (const PictureData& row : story.pictures)
    pictures += pictureRow(row, story);
  std::string text = tableCode("SpeakerRow", "Speakers", speakers) +
                     tableCode("SpriteRow", "Sprites", sprites) +
                     tableCode("PictureRow", "Pictures", pictures);
  text += "constexpr qv::StoryTables StoryData{\n";
  if (!speakers.empty()) text += "    .speakers = Speakers,\n";
  if (!sprites.empty()) text += "    .sprites = Sprites,\n";
  if (!pictures.empty()) text += "    .pictures = Pictures,\n";
  if (!story.heroines.empty()) {
    text += "    .parameterNames = {";
    for (size_t index = 0; index < story.heroines.size(); ++index)
      text += (index ? ", " : "") + literal(story.heroines[index]);
    text += "},\n";
  }
  text += "    .familyName = " + literal(story.familyName) +
          ",\n    .givenName = " + literal(story.givenName) + ",\n};\n\n";
  return text;
}

}  // namespace qv::scenec
