// story.txt: what holds for all scenes of a story.

#include <algorithm>

#include "scenario/register_numbers.h"
#include "scenes/generator/lines.h"
#include "scenes/generator/parser.h"
#include "scenes/generator/story_rows.h"
#include "scenes/generator/text.h"

namespace qv::scenec {

namespace {

class StoryReader {
 public:
  StoryReader(int file, Story& story, Problems& problems)
      : file_(file), story_(story), problems_(problems) {}

  void readLine(const Line& line) {
    place_ = {file_, line.number};
    if (line.kind == Line::Kind::Blank) return;
    if (line.kind == Line::Kind::Text) {
      problem("story.txt holds commands alone; begin the line with @, or with # for a comment.");
      return;
    }
    struct Entry {
      const char* name;
      void (StoryReader::*read)(std::string_view rest);
    };
    static constexpr Entry Entries[] = {
        {"game", &StoryReader::game},        {"first", &StoryReader::first},
        {"speaker", &StoryReader::speaker},  {"register", &StoryReader::nameRegister},
        {"heroine", &StoryReader::heroine},  {"hero", &StoryReader::hero},
        {"figure", &StoryReader::spriteRow}, {"picture", &StoryReader::pictureRow},
        {"bare", &StoryReader::bare},
    };
    std::vector<std::string> known;
    for (const Entry& entry : Entries) {
      if (line.command == entry.name) {
        const std::string wrong = unsayable(line.rest);
        if (wrong.empty())
          (this->*entry.read)(line.rest);
        else
          problem(wrong);
        return;
      }
      known.emplace_back(entry.name);
    }
    problem(
        "story.txt knows no \"@" + line.command + "\"." +
        problems_.suggestion(line.command, known,
                             " Its commands are @game, @first, @hero, @speaker, @figure, @picture, "
                             "@register, @heroine and @bare."));
  }

 private:
  void problem(std::string what) { problems_.add(place_, std::move(what)); }

  bool oneWord(std::string_view text, const char* form, std::string& word) {
    std::string_view rest;
    word = firstWord(text, rest);
    if (!word.empty() && rest.empty()) return true;
    problem(std::string("write ") + form + ".");
    return false;
  }

  // The name is the stem of a file.
  void game(std::string_view rest) {
    std::string name;
    if (!oneWord(rest, "@game NAME, one word", name)) return;
    const bool plain = std::all_of(name.begin(), name.end(), [](char byte) {
      return (byte >= '0' && byte <= '9') || (byte >= 'a' && byte <= 'z') ||
             (byte >= 'A' && byte <= 'Z') || byte == '_' || byte == '-';
    });
    if (plain)
      story_.application = name;
    else
      problem("\"" + name +
              "\" cannot name the game's files; use letters A to Z, digits, - and _.");
  }

  void first(std::string_view rest) {
    std::string name;
    if (!oneWord(rest, "@first SCENE", name)) return;
    story_.firstPlace = place_;
    if (isSceneName(name))
      story_.firstScene = name;
    else
      problem("\"" + name + "\" is no name of a scene.");
  }

  void bare(std::string_view rest) {
    if (rest.empty())
      story_.bare = true;
    else
      problem("write @bare alone.");
  }

  void speaker(std::string_view rest) { readSpeaker(rest, place_, story_, problems_); }
  void hero(std::string_view rest) { readHero(rest, place_, story_, problems_); }
  void spriteRow(std::string_view rest) { readSpriteRow(rest, place_, story_, problems_); }
  void pictureRow(std::string_view rest) { readPictureRow(rest, place_, story_, problems_); }

  void nameRegister(std::string_view rest) {
    const std::vector<std::string> list = words(rest);
    const std::optional<long> value = list.size() == 2 ? number(list[1]) : std::nullopt;
    if (!value) {
      problem("write @register NAME NUMBER.");
      return;
    }
    static const char* const Taken[] = {"and",   "or",        "not",   "skip",     "voices",
                                        "music", "random",    "above", "is",       "setting",
                                        "(",     "affection", ")",     "favourite"};
    const std::string name = narrow(list[0]);
    if (number(name) ||
        std::any_of(std::begin(Taken), std::end(Taken),
                    [&](const char* word) { return name == word; }) ||
        name.find_first_of("()<>=!") != std::string::npos)
      problem("\"" + name + "\" means something else in conditions; choose another name.");
    else if (*value < 0 || *value >= RegisterCount)
      problem("there is no register " + std::to_string(*value) + "; registers go from 0 to " +
              std::to_string(RegisterCount - 1) + ".");
    else if (!story_.registers.emplace(name, static_cast<int>(*value)).second)
      problem("the register name \"" + name + "\" is there already; remove one of the two.");
  }

  void heroine(std::string_view rest) {
    std::string name;
    if (!oneWord(rest, "@heroine NAME", name)) return;
    if (story_.heroines.size() == static_cast<size_t>(AffectionCount))
      problem("affection knows " + std::to_string(AffectionCount) + " names at most; remove one.");
    else
      story_.heroines.push_back(name);
  }

  int file_;
  Story& story_;
  Problems& problems_;
  Place place_;
};

}  // namespace

void parseStoryFile(std::string_view bytes, int file, Story& story, Problems& problems) {
  StoryReader reader(file, story, problems);
  for (const Line& line : splitLines(bytes))
    reader.readLine(line);
}

}  // namespace qv::scenec
