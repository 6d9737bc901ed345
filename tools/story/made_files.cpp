#include "tools/story/made_files.h"

#include <algorithm>
#include <optional>
#include <set>

#include "audio/scene/sound_tables.h"
#include "graphics/static_colours.h"
#include "tools/picture_codec/picture_files.h"
#include "tools/story/shown_files.h"
#include "tools/story/story_maker.h"

namespace qv::story {

namespace {

constexpr size_t MadeEvents = 12;
constexpr int ScreenWidth = 640, ScreenHeight = 480, FigureWidth = 240, FigureHeight = 400,
              MouthWidth = 48, MouthHeight = 24, MouthCells = 3;
constexpr int FirstOwn = 10, LastOwn = 245, FigureFirst = 128, FigureKey = 135;
// Names of the families that hardly any sample has. Their plain forms stand in the engine's table.
constexpr const char *CloseFigure = "KUC016", *CloseMouth = "Kuc016_a", *OutdoorFigure = "KUS012";

codec::IndexedPicture emptyPicture(int width, int height) {
  codec::IndexedPicture picture;
  picture.width = width;
  picture.height = height;
  picture.pixels.assign(static_cast<size_t>(width) * static_cast<size_t>(height), 0);
  constexpr auto Standard = greyRampWithStaticColours();
  for (size_t entry = 0; entry < picture.colours.size(); ++entry) {
    picture.colours[entry] = Standard[entry] & 0xFFFFFF;
    picture.marks[entry] = codec::IndexedPicture::Free;
  }
  return picture;
}

void put(std::vector<MadeFile>& made, const std::string& name,
         const codec::IndexedPicture& picture) {
  const std::vector<uint8_t> bytes = codec::encodeMcg(picture);
  made.push_back({"files/cg/" + name + ".mcg", std::string(bytes.begin(), bytes.end())});
}

/// A sky of two colours with bands that no other number has.
codec::IndexedPicture landscape(int number) {
  codec::IndexedPicture picture = emptyPicture(ScreenWidth, ScreenHeight);
  constexpr int Colours = LastOwn - FirstOwn + 1;
  for (int shade = 0; shade < Colours; ++shade) {
    const auto entry = static_cast<size_t>(FirstOwn) + static_cast<size_t>(shade);
    const auto red = static_cast<uint32_t>(60 + shade * (number * 37 % 7 + 1) / 14 % 180),
               green = static_cast<uint32_t>(90 + shade / 3),
               blue = static_cast<uint32_t>(200 - shade / 2);
    picture.colours[entry] = red << 16 | green << 8 | blue;
    picture.marks[entry] = codec::IndexedPicture::Used;
  }
  auto pixel = picture.pixels.begin();
  for (int y = 0; y < ScreenHeight; ++y)
    for (int x = 0; x < ScreenWidth; ++x)
      *pixel++ = static_cast<uint8_t>(
          FirstOwn + (y * Colours / ScreenHeight + (x / (8 + number) ^ y / 24) % 9) % Colours);
  return picture;
}

/// An oval in one colour on the key, which the corner has.
codec::IndexedPicture oval(int width, int height, uint32_t colour, int cells = 1) {
  codec::IndexedPicture picture = emptyPicture(width * cells, height);
  picture.colours[FigureKey] = 0x00FF00;
  picture.colours[FigureFirst] = colour;
  picture.marks[FigureFirst] = codec::IndexedPicture::Used;
  auto pixel = picture.pixels.begin();
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width * cells; ++x) {
      const int64_t dx = (x % width) * 2 - width, dy = (y * 2 - height) * (1 + x / width);
      const int64_t across = width, down = height;
      const bool inside =
          dx * dx * down * down + dy * dy * across * across < across * across * down * down;
      *pixel++ = static_cast<uint8_t>(inside ? FigureFirst : FigureKey);
    }
  return picture;
}

bool hasPicture(const GameFiles& files, const std::string& name) {
  return files.has("cg/" + name + ".mcg");
}

class StockTaker {
 public:
  StockTaker(const StorySource& sample, const GameFiles& files, std::vector<MadeFile>& made)
      : sample_(sample), files_(files), made_(made) {}

  MadeStock take() {
    const RowsInPlace rows(sample_.story);
    for (const NamedFlag& row : backgroundNames())
      if (hasPicture(files_, row.name)) stock_.backgrounds.emplace_back(row.name);
    stock_.backgrounds.emplace_back("BLACK");
    makeEffectPictures();
    takeStills();
    for (const scenec::PictureData& row : sample_.story.sprites) {
      const std::optional<ShownFiles> shown = filesOfFigure(row.name);
      if (row.name.starts_with("KUS") && shown && isThere(*shown))
        stock_.figures.push_back(row.name);
    }
    makeVariants();
    takeSounds();
    return std::move(stock_);
  }

 private:
  bool isThere(const ShownFiles& shown) const {
    return hasPicture(files_, shown.picture) &&
           std::ranges::all_of(shown.mouths,
                               [&](const std::string& mouth) { return hasPicture(files_, mouth); });
  }

  /// Events with mouths are not made: theirs would have to be made too.
  static bool hasRow(const std::string& name) { return findPictureRow(name) != nullptr; }

  /// What the effects of the story leave on the screen.
  void makeEffectPictures() {
    for (const char* name : {"KEV102", "KEV103", "KEV60219"})
      if (!hasPicture(files_, name)) {
        put(made_, name, landscape(static_cast<int>(made_.size())));
        ownPictures_.insert(name);
      }
    if (!hasPicture(files_, "BLACK")) put(made_, "BLACK", emptyPicture(ScreenWidth, ScreenHeight));
  }

  void takeStills() {
    for (const NamedFlag& row : titleNames())
      if (isThere(filesOfStill(row.name, titleNames()))) stock_.titles.emplace_back(row.name);
    for (const NamedFlag& row : eventNames())
      if (isThere(filesOfStill(row.name, eventNames()))) stock_.events.emplace_back(row.name);
    int number = 0;
    for (const NamedFlag& row : eventNames()) {
      if (stock_.events.size() >= MadeEvents) break;
      if (row.flag == WithoutFlag || hasPicture(files_, row.name) || hasRow(row.name)) continue;
      if (ownPictures_.count(row.name) == 0) put(made_, row.name, landscape(number++));
      stock_.events.emplace_back(row.name);
    }
    if (stock_.titles.empty()) {
      put(made_, "KTI001", landscape(number));
      stock_.titles.emplace_back("KTI001");
    }
  }

  void makeVariants() {
    std::string speaker = "ベルーネ";
    if (!sample_.story.speakerData.empty()) speaker = sample_.story.speakerData[0].name;
    if (!findSpriteRow(CloseFigure))
      stock_.rows += std::string("@figure ") + CloseFigure + " of " + speaker +
                     " at -120 0 mouth " + CloseMouth + " 96 120 key " + std::to_string(FigureKey) +
                     "\n";
    for (const char* family : {"KZC", "KYC"}) {
      put(made_, family + std::string("016"), oval(FigureWidth, FigureHeight, 0xC08090));
      put(made_, family + std::string("016_a"),
          oval(MouthWidth, MouthHeight, 0x803040, MouthCells));
    }
    stock_.closeFigures.emplace_back(CloseFigure);
    // The outdoor form of a figure takes its mouth's name from the plain one's.
    if (!findSpriteRow(OutdoorFigure))
      stock_.rows += std::string("@figure ") + OutdoorFigure + " of " + speaker + " at -120 0\n";
    put(made_, "KXS012", oval(FigureWidth, FigureHeight, 0x8090C0));
    put(made_, "KXS012_a", oval(MouthWidth, MouthHeight, 0x304080, MouthCells));
    stock_.outdoorFigures.emplace_back(OutdoorFigure);
  }

  void takeSounds() {
    for (int32_t number = 1; number <= SongCount; ++number) {
      bool whole = true;
      for (int32_t kind = FirstDeviceKind; kind <= LastDeviceKind; ++kind)
        whole = whole && files_.has(nameInGame(songFile(number, kind)));
      if (whole)
        stock_.songs.push_back("K" + std::string(number < 10 ? "0" : "") + std::to_string(number));
    }
    stock_.previewSong = std::ranges::find(stock_.songs, "K15") != stock_.songs.end();
    for (const SoundEffect& effect : soundEffects())
      if (files_.has(nameInGame(fileOf(effect)))) stock_.effects.emplace_back(effect.key);
    if (files_.has("dat/QVlogo.mcg")) stock_.drawings.emplace_back("dat\\QVlogo.mcg");
    const std::string folder = "disc/voice/v";
    for (const std::string& name : files_.names()) {
      // "disc/voice/v00/0000_001.wav"; the system's own voices are no one's lines.
      if (name.rfind(folder, 0) != 0 || name.size() < folder.size() + 8 ||
          name[folder.size()] < '0' || name[folder.size()] > '9')
        continue;
      const std::string id = name.substr(folder.size(), name.rfind('.') - folder.size());
      std::string spoken = "V" + id;
      std::replace(spoken.begin(), spoken.end(), '/', '\\');
      stock_.voices.push_back(spoken);
    }
  }

  const StorySource& sample_;
  const GameFiles& files_;
  std::vector<MadeFile>& made_;
  std::set<std::string> ownPictures_;  ///< made already
  MadeStock stock_;
};

}  // namespace

MadeStock stockOf(const StorySource& sample, const GameFiles& files, std::vector<MadeFile>& made) {
  return StockTaker(sample, files, made).take();
}

}  // namespace qv::story
