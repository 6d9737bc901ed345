#include "tools/story/story_maker.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <functional>
#include <map>
#include <utility>

#include "tools/story/made_files.h"
#include "tools/story/made_words.h"

namespace qv::story {

namespace {

// --- The measure of a real story ---

constexpr std::array ChapterSizes{15, 86, 359, 237, 89, 127, 18};
constexpr int SpokenLines = 17228, SecondPieces = 3516, Parts = 794;
constexpr int Chains = 63, ChainsWithoutChapter = 8, ThreeWays = 109, TwoWays = 30, Rings = 7,
              MostRingPlaces = 7;
constexpr int BranchScenes = 20, SplitScenes = 3, LastChoices = 8, FrontierWidth = 10;
constexpr const char* Endings[] = {"sc_bat0000",  "sc_bat0001m", "sc_bat0002m", "sc_bat0003n",
                                   "sc_bat0004n", "sc_bat0005n", "sc_bat0006m"};
constexpr const char* Routes[] = {"m", "n", "a", "b", "ma", "mb", "mc"};
constexpr int FirstFlag = 600, Flags = 55, FirstCounter = 200, Counters = 11;
constexpr std::array SplitFlags{609, 610};  ///< each has a part of one message

/// Transitions from the commonest on, with their weights.
struct Weighted {
  int value, weight;
};
constexpr Weighted Transitions[] = {
    {1, 700}, {9, 420}, {19, 260}, {11, 200}, {15, 160}, {40, 120}, {200, 100}, {31, 80}, {22, 60},
    {20, 50}, {18, 40}, {35, 30},  {201, 12}, {202, 10}, {48, 10},  {12, 8},    {26, 7}};

enum class Exit { Go, Three, Two, Ring, Chain, Branch };

/// A message with the command lines before it.
struct Said {
  std::vector<std::string> before{};
  bool twoPieces = false;
  std::string wait{};  ///< "@click ..." behind it, or nothing
};

struct Planned {
  std::string name;
  Exit exit = Exit::Go;
  int chainKind = 0;
  bool split = false;
  std::vector<std::string> targets{};
  std::vector<Said> said{};
};

class Maker {
 public:
  Maker(const StorySource& sample, const GameFiles& files, int scenes, uint64_t seed)
      : sample_(sample), size_(scenes), numbers_(seed), seed_(seed) {
    stock_ = stockOf(sample, files, made_);
  }

  std::vector<MadeFile> make() {
    nameScenes();
    chooseExits();
    joinScenes();
    layMessages();
    scatterCommands();
    splitScenes();
    writeTexts();
    return std::move(made_);
  }

 private:
  /// The number for this size of what stands `count` times in a story of full size.
  int scaled(int count) const {
    return std::max(1, static_cast<int>(std::lround(double(count) * size_ / FullSize)));
  }

  void nameScenes();
  void chooseExits();
  void joinScenes();
  void layMessages();
  void scatterCommands();
  void scatterPictures();
  void scatterSounds();
  void scatterEffects();
  void scatterState();
  void scatterWaits();
  void splitScenes();
  void writeTexts();

  Planned& anyScene();
  Said& anySaid();
  std::vector<std::string>& anyPlace() { return anySaid().before; }
  void scatter(int count, const std::string& line);
  std::string transition();
  std::string flag() { return std::to_string(FirstFlag + numbers_.below(Flags)); }
  std::string heroine() { return numbers_.pick(sample_.story.heroines); }
  std::string text(const Planned& scene);
  std::string message(bool twoPieces = false);
  std::string exitText(const Planned& scene);
  std::string chainText(const Planned& scene);
  std::string endingTexts() const;
  std::string storyText() const;

  const StorySource& sample_;
  int size_;
  MadeNumbers numbers_;
  uint64_t seed_;
  MadeStock stock_;
  std::vector<MadeFile> made_;
  std::vector<Planned> scenes_;
  std::vector<size_t> talking_;  ///< scenes with messages
};

// --- The tree ---

void Maker::nameScenes() {
  int done = 0, total = 0;
  for (size_t chapter = 0; chapter < ChapterSizes.size(); ++chapter) {
    total += ChapterSizes[chapter];
    const int count = size_ * total / FullSize - done;
    done += count;
    int number = 0, part = 0;
    std::string stem;
    for (int at = 0; at < count; ++at) {
      // Most scenes are parts of one.
      const bool continues = at > 0 && numbers_.below(FullSize) < Parts;
      if (!continues) {
        char digits[16];
        std::snprintf(digits, sizeof digits, "sc%02zu%04d", chapter, number++);
        stem = digits;
        if (at > 0 && numbers_.oneOf(3)) stem += numbers_.pick(Routes);
        part = 0;
      }
      char suffix[16] = "";
      if (continues) std::snprintf(suffix, sizeof suffix, "_%02d", ++part);
      scenes_.push_back({.name = stem + suffix});
    }
  }
}

/// The first scene only leads on, and the last ones open enough ways for all endings.
void Maker::chooseExits() {
  const int last = static_cast<int>(scenes_.size());
  const int threes = std::max(0, scaled(ThreeWays) - LastChoices);
  for (int at = last - LastChoices; at < last; ++at)
    scenes_[static_cast<size_t>(at)].exit = Exit::Three;
  const auto choose = [&](int count, Exit exit) {
    while (count > 0) {
      Planned& scene = scenes_[static_cast<size_t>(numbers_.between(1, last - LastChoices - 1))];
      if (scene.exit != Exit::Go) continue;
      scene.exit = exit;
      if (exit == Exit::Chain)
        scene.chainKind = --count % Chains;
      else
        --count;
    }
  };
  choose(scaled(Chains), Exit::Chain);
  choose(threes, Exit::Three);
  choose(scaled(TwoWays), Exit::Two);
  choose(scaled(Rings), Exit::Ring);
  choose(scaled(BranchScenes), Exit::Branch);
}

/// Every scene takes the oldest way that leads nowhere yet, or several, so that ways meet again.
void Maker::joinScenes() {
  struct Open {
    size_t scene, slot;
  };
  std::vector<Open> open;
  size_t taken = 0;
  const auto lead = [&](const std::string& target) {
    const Open& way = open[taken++];
    scenes_[way.scene].targets[way.slot] = target;
  };
  for (size_t at = 0; at < scenes_.size(); ++at) {
    Planned& scene = scenes_[at];
    if (at > 0) lead(scene.name);
    while (open.size() - taken > FrontierWidth && at + LastChoices < scenes_.size())
      lead(scene.name);
    static const std::map<Exit, int> Ways{
        {Exit::Go, 1}, {Exit::Three, 3}, {Exit::Two, 2}, {Exit::Chain, 2}, {Exit::Branch, 2}};
    const int ways =
        scene.exit == Exit::Ring ? numbers_.between(4, MostRingPlaces) : Ways.at(scene.exit);
    scene.targets.resize(static_cast<size_t>(ways));
    for (size_t slot = 0; slot < scene.targets.size(); ++slot)
      open.push_back({at, slot});
  }
  for (size_t ending = 0; taken < open.size(); ++ending)
    lead(Endings[ending % std::size(Endings)]);
}

// --- What stands in the scenes ---

void Maker::layMessages() {
  for (size_t at = 0; at < scenes_.size(); ++at)
    if (scenes_[at].exit != Exit::Chain) talking_.push_back(at);
  // Each scene has two messages at least, some have very many. The parts of scenes that are told
  // by a flag have one each.
  for (const size_t at : talking_)
    scenes_[at].said.resize(2);
  int rest = scaled(SpokenLines) - 2 * static_cast<int>(talking_.size()) -
             static_cast<int>(SplitFlags.size()) * scaled(SplitScenes);
  while (rest > 0) {
    const int more = std::min(rest, numbers_.between(1, numbers_.oneOf(6) ? 40 : 16));
    Planned& scene = anyScene();
    scene.said.resize(scene.said.size() + static_cast<size_t>(more));
    rest -= more;
  }
  for (int left = scaled(SecondPieces); left > 0;) {
    Said& said = anySaid();
    if (std::exchange(said.twoPieces, true)) continue;
    --left;
  }
}

Planned& Maker::anyScene() {
  return scenes_[numbers_.pick(talking_)];
}

Said& Maker::anySaid() {
  Planned& scene = anyScene();
  return scene.said[static_cast<size_t>(numbers_.below(static_cast<int>(scene.said.size())))];
}

void Maker::scatter(int count, const std::string& line) {
  for (int left = scaled(count); left > 0; --left)
    anyPlace().push_back(line);
}

std::string Maker::transition() {
  int total = 0;
  for (const Weighted& entry : Transitions)
    total += entry.weight;
  int at = numbers_.below(total);
  for (const Weighted& entry : Transitions)
    if ((at -= entry.weight) < 0) return std::to_string(entry.value);
  return "1";
}

/// What a picture is made of stands before the transition that shows it.
void Maker::scatterPictures() {
  std::vector<std::vector<std::string>> pictures(static_cast<size_t>(scaled(2267)));
  const auto add = [&](int count, const std::function<std::string()>& line) {
    for (int left = scaled(count); left > 0; --left)
      pictures[static_cast<size_t>(numbers_.below(static_cast<int>(pictures.size())))].push_back(
          line());
  };
  const auto slot = [&] { return " " + std::to_string(numbers_.between(1, 5)); };
  add(1172, [&] { return "@bg " + numbers_.pick(stock_.backgrounds); });
  add(277, [&] { return "@event " + numbers_.pick(stock_.events); });
  add(37, [&] { return "@title " + numbers_.pick(stock_.titles); });
  if (!stock_.figures.empty())
    add(938, [&] { return "@sprite " + numbers_.pick(stock_.figures) + slot(); });
  add(131, [&] { return "@sprite-kzc " + numbers_.pick(stock_.closeFigures) + slot(); });
  add(26, [&] { return "@sprite-kyc " + numbers_.pick(stock_.closeFigures) + slot(); });
  add(8, [&] { return "@sprite-kxs " + numbers_.pick(stock_.outdoorFigures) + slot(); });
  add(293, [&] { return numbers_.oneOf(3) ? std::string("@clear all") : "@clear" + slot(); });
  for (std::vector<std::string>& picture : pictures) {
    // Backgrounds and events take everything else away: they come first.
    std::stable_partition(picture.begin(), picture.end(), [](const std::string& line) {
      return line.rfind("@bg", 0) == 0 || line.rfind("@event", 0) == 0 ||
             line.rfind("@title", 0) == 0;
    });
    picture.push_back("@effect " + transition());
    std::vector<std::string>& place = anyPlace();
    place.insert(place.end(), picture.begin(), picture.end());
  }
}

void Maker::scatterSounds() {
  for (int left = scaled(752); left > 0; --left) {
    const bool ends = numbers_.oneOf(4) || stock_.songs.empty();
    std::string line = ends ? (numbers_.oneOf(3) ? "@bgm stop" : "@bgm fadeout")
                            : "@bgm " + numbers_.pick(stock_.songs);
    if (!ends && numbers_.oneOf(5)) line += " fadein";
    anyPlace().push_back(line);
  }
  for (int left = stock_.effects.empty() ? 0 : scaled(439); left > 0; --left)
    anyPlace().push_back("@se " + numbers_.pick(stock_.effects) +
                         (numbers_.below(504) < 158 ? " loop" : ""));
  for (int left = scaled(384); left > 0; --left)
    anyPlace().push_back("@wait-se " + std::to_string(numbers_.between(5, 40)));
  scatter(117, "@stop-se");
  // A song plays for ever unless it fades.
  for (const char* line : {"@wait 10", "@wait sound", "@bgm fadeout\n  @wait song"})
    scatter(2, line);
  for (int left = stock_.voices.empty() ? 0 : scaled(4); left > 0; --left)
    anyPlace().push_back("@wave %:\\VOICE\\" + numbers_.pick(stock_.voices) + ".wav");
}

void Maker::scatterEffects() {
  struct Line {
    int count;
    const char* line;
  };
  static constexpr Line Lines[] = {
      {622, "@fade"},
      {6, "@fade 32"},
      {2, "@fade 64"},
      {16, "@fade-fast 8"},
      {28, "@quake 0 10 4"},
      {28, "@quake 8 8 2 1"},
      {17, "@flash-red 3"},
      {8, "@special 32800"},
      {8, "@flashback"},
      {8, "@flashback-end"},
      {5, "@chapter-cards 1 0"},
      {5, "@chapter-cards 2 1"},
      {8, "@chapter-catch 1 0"},
      {3, "@picture-run"},
      {7, "@hide-message"},
      {3, "@hide-system"},
      {2, "@show-system"},
  };
  for (const Line& line : Lines)
    scatter(line.count, line.line);
  if (stock_.previewSong) scatter(8, "@chapter-preview 2 0");
  if (!stock_.drawings.empty()) scatter(3, "@draw " + stock_.drawings[0] + " 16 9");
  std::vector<std::string>& film = anyPlace();
  for (const char* line : {"@setting 150 1", "@film-start", "@film", "@film-start demo",
                           "@film-cue 500 2000", "@film-wait 1000"})
    film.emplace_back(line);
}

void Maker::scatterState() {
  // What is asked somewhere is set somewhere: every flag and counter once at least.
  for (int number = 0; number < Flags; ++number)
    anyPlace().push_back("@flag " + std::to_string(FirstFlag + number));
  for (int number = 0; number < Counters; ++number)
    anyPlace().push_back("@count " + std::to_string(FirstCounter + number));
  for (int left = scaled(80); left > 0; --left)
    anyPlace().push_back("@flag " + flag());
  if (!sample_.story.heroines.empty())
    for (int left = scaled(118); left > 0; --left)
      anyPlace().push_back("@affection " + heroine() + " " +
                           std::to_string(numbers_.between(-5, 10)));
  for (int left = scaled(37); left > 0; --left)
    anyPlace().push_back("@calendar " + std::to_string(numbers_.between(6, 9)) + " " +
                         std::to_string(numbers_.between(1, 30)));
  scatter(39, "@save-point");
  scatter(8, "@save-offer");
  const auto ask = [&](int count, const std::string& what) {
    for (int left = scaled(count); left > 0; --left)
      anyPlace().push_back("@if " + what + "\n  @flag " + flag() + "\n  @end");
  };
  for (const char* what : {"skip", "voices", "music"})
    ask(7, what);
  ask(5, "setting 150");
  // Beside the plates' own texts.
  for (int left = scaled(387); left > 0; --left)
    anyPlace().push_back("@text select01.Mess.Aria " + madeChoice(numbers_));
}

void Maker::scatterWaits() {
  struct Wait {
    int count;
    const char* line;
  };
  static constexpr Wait Kinds[] = {{34, "@click 1 1"},      {6, "@click 10"},   {5, "@click 1"},
                                   {5, "@click forever 2"}, {3, "@click 30 3"}, {1, "@click 2.7s"},
                                   {1, "@click 3.0s"},      {1, "@click 3.5s"}};
  for (const Wait& kind : Kinds) {
    for (int left = scaled(kind.count); left > 0;) {
      Said& said = anySaid();
      if (!said.wait.empty()) continue;
      said.wait = kind.line;
      --left;
    }
  }
  scatter(27, "@step\n  @click forever 2");
}

/// A scene in parts ends each of them alike, so that its choices would stand in it several times,
/// and must not set the flags by which it is parted.
void Maker::splitScenes() {
  const auto setsFlags = [](const Said& said) {
    return std::ranges::any_of(said.before, [](const std::string& line) {
      return std::ranges::any_of(SplitFlags, [&](int number) {
        return line.find("@flag " + std::to_string(number)) != std::string::npos;
      });
    });
  };
  for (int left = scaled(SplitScenes); left > 0;) {
    Planned& scene = anyScene();
    const bool ends = scene.exit == Exit::Go || scene.exit == Exit::Branch;
    if (scene.split || !ends || std::ranges::any_of(scene.said, setsFlags)) continue;
    scene.split = true;
    --left;
  }
}

void Maker::scatterCommands() {
  scatterPictures();
  scatterSounds();
  scatterEffects();
  scatterState();
  scatterWaits();
}

// --- Texts ---

std::string Maker::message(bool twoPieces) {
  std::string text;
  const bool speaks = !sample_.story.speakerData.empty() && numbers_.below(100) < 60;
  if (speaks) {
    text = numbers_.pick(sample_.story.speakerData).name;
    if (!stock_.voices.empty() && numbers_.below(100) < 85)
      text += " " + numbers_.pick(stock_.voices);
    text += ": " + madeSpeech(numbers_);
  } else {
    text = madeNarration(numbers_);
  }
  text += "\n";
  if (twoPieces) text += (speaks ? madeSpeech : madeNarration)(numbers_) + "\n";
  return text;
}

std::string Maker::chainText(const Planned& scene) {
  std::string condition = flag();
  const std::vector<std::string>& heroines = sample_.story.heroines;
  if (scene.chainKind < 6 && heroines.size() > 1)
    condition = "favourite " + heroines[0] + " " + heroines[1] + " is " + heroines[1];
  else if (scene.chainKind < 9 && !heroines.empty())
    condition = "affection " + heroine() + " above " + std::to_string(numbers_.between(0, 9));
  else if (scene.chainKind < 12)
    condition = "random";
  const bool withoutChapter = scene.chainKind >= scaled(Chains) - scaled(ChainsWithoutChapter);
  return "@chain " + scene.name + (withoutChapter ? " without-chapter" : "") + "\n  @if " +
         condition + "\n    @go " + scene.targets[0] + "\n  @else\n    @go " + scene.targets[1] +
         "\n  @end\n";
}

std::string Maker::exitText(const Planned& scene) {
  std::string text;
  switch (scene.exit) {
    case Exit::Go:
      return "  @go " + scene.targets[0] + "\n";
    case Exit::Branch:
      return "  @if " + flag() + " → " + scene.targets[0] + "\n  @go " + scene.targets[1] + "\n";
    case Exit::Ring:
      text = "  @places 放課後\n";
      for (const std::string& target : scene.targets)
        text += madePlace(numbers_) + " → " + target + "\n";
      return text;
    default:
      text = "  @choose\n";
      for (const std::string& target : scene.targets)
        text += madeChoice(numbers_) + " → " + target + "\n";
      return text;
  }
}

std::string Maker::text(const Planned& scene) {
  if (scene.exit == Exit::Chain) return chainText(scene);
  std::string steps;
  for (const Said& said : scene.said) {
    for (const std::string& line : said.before)
      steps += "  " + line + "\n";
    steps += message(said.twoPieces);
    if (!said.wait.empty()) steps += "  " + said.wait + "\n";
    steps += "\n";
  }
  std::string text = "@scene " + scene.name + "\n";
  if (!scene.split) return text + steps + exitText(scene);
  // All lists end alike.
  const std::string exit = exitText(scene);
  for (const int number : SplitFlags)
    text += "  @when " + std::to_string(number) + "\n" + message() + "\n" + exit;
  return text + "  @otherwise\n" + steps + exit;
}

std::string Maker::endingTexts() const {
  std::string text =
      "@scene sc_menu\n  @hide-message\n  @bg BLACK\n  @effect 1\n題。\n  @go sc_menu31\n\n"
      "@scene sc_menu31\n  @bgm fadeout\n  @fade\n  @go " +
      scenes_[0].name + "\n\n";
  for (const char* ending : Endings)
    text += std::string("@scene ") + ending + "\n  @bg BLACK\n  @effect 9\n夏が終わる。\n" +
            "  @go sc_bat9999\n\n";
  const std::string drawing =
      stock_.drawings.empty() ? std::string() : "  @draw " + stock_.drawings[0] + " 16 9\n";
  return text + "@scene sc_bat9999\n  @hide-system\n" + drawing +
         "  @click forever 2\n  @step\n  @bgm fadeout\n  @fade\n  @bg BLACK\n  @effect 1\n"
         "  @set 251 1\n  @go sc_menu\n";
}

/// The sample's rows of people and pictures, and those of the figures that were made.
std::string Maker::storyText() const {
  std::string text = "# Made from seed " + std::to_string(seed_) + ".\n";
  for (const std::string& row : sample_.rows)
    text += row + "\n";
  return text + stock_.rows;
}

void Maker::writeTexts() {
  made_.push_back({"story/story.txt", storyText()});
  std::map<std::string, std::string> texts;
  for (const Planned& scene : scenes_) {
    // A text for each chapter and ten scene numbers.
    const std::string file = scene.name.substr(2, 2) + "/" + scene.name.substr(0, 7) + "x";
    texts[file] += text(scene) + "\n";
  }
  for (const auto& [name, text] : texts)
    made_.push_back({"story/" + name + ".scene", text});
  made_.push_back({"story/endings.scene", endingTexts()});
}

}  // namespace

std::vector<MadeFile> makeStory(const StorySource& sample, const GameFiles& files, int scenes,
                                uint64_t seed) {
  return Maker(sample, files, std::max(scenes, SmallestSize), seed).make();
}

}  // namespace qv::story
