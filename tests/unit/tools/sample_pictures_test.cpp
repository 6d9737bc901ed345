// The sample's pictures as the build made them: cells, keys, regions and colours where the game
// cuts and merges them.

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "graphics/dib.h"
#include "graphics/static_colours.h"
#include "tests/support/process.h"

namespace qv {
namespace {

namespace fs = std::filesystem;

constexpr int32_t Cells = 4;
constexpr int32_t FrameWidth = 640, FrameHeight = 127;

fs::path built() {
  return fs::path(QV_OUTPUT_DIR) / "vorlane";
}

class Picture {
 public:
  explicit Picture(const fs::path& path) {
    if (!fs::exists(path)) {
      ADD_FAILURE() << path << " is missing";
      return;
    }
    const std::string bytes = testing::readWhole(path);
    dib_.loadFromMemory(std::span(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()));
    EXPECT_EQ(dib_.bitCount(), 8) << path;
  }
  explicit Picture(const std::string& name)
      : Picture(built() / (name.find('.') != std::string::npos ? name : name + ".mcg")) {}

  int32_t width() const { return dib_.width(); }
  int32_t height() const { return dib_.height(); }
  /// -1 outside.
  int at(int32_t x, int32_t y) const {
    if (x < 0 || y < 0 || x >= width() || y >= height()) return -1;
    const auto row = static_cast<size_t>(height() - 1 - y);
    return dib_.bits()[row * static_cast<size_t>(dib_.strideBytes()) + static_cast<size_t>(x)];
  }
  int key() const { return at(0, 0); }
  uint32_t colour(size_t entry) const { return dib_.colours()[entry] & 0xFFFFFF; }
  bool owns(size_t entry) const { return dib_.PaletteUseTable[entry] == 0; }

  /// Calls for each pixel that the key does not hide.
  void eachSeen(const std::function<void(int32_t, int32_t, int)>& pixel) const {
    for (int32_t y = 0; y < height(); ++y)
      for (int32_t x = 0; x < width(); ++x)
        if (at(x, y) != key()) pixel(x, y, at(x, y));
  }

 private:
  QVDib dib_;
};

struct FrameButton {
  const char* file;
  int32_t x, y, region;
};
constexpr FrameButton FrameButtons[] = {
    {"dat/MButton1", 586, 12, 4}, {"dat/MButton2", 586, 43, 7}, {"dat/MButton3", 567, 62, 6}};
constexpr FrameButton PlateButtons[] = {{"dat/SButton1", 0, 12, 4}, {"dat/SButton2", 0, 43, 7}};

std::vector<std::string> namesIn(const char* folder, const char* pattern) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(built() / folder)) {
    const std::string name = entry.path().stem().string();
    if (std::regex_match(name, std::regex(pattern))) names.push_back(folder + ("/" + name));
  }
  EXPECT_FALSE(names.empty()) << pattern;
  return names;
}

void expectRegionsUnder(const FrameButton& button, const Picture& map) {
  const Picture strip{std::string(button.file)};
  const int32_t cell = strip.width() / Cells;
  int missed = 0;
  strip.eachSeen([&](int32_t x, int32_t y, int) {
    if (x < cell && map.at(button.x + x, button.y + y) != button.region) ++missed;
  });
  EXPECT_EQ(missed, 0) << button.file;
}

TEST(SamplePictures, TheFramesMapAnswersWhereItsButtonsAreSeenAndGoesOnElsewhere) {
  const Picture map{std::string("dat/mcframe")};
  EXPECT_EQ(map.width(), FrameWidth);
  EXPECT_EQ(map.height(), FrameHeight);
  for (const FrameButton& button : FrameButtons)
    expectRegionsUnder(button, map);
  for (const auto& [x, y] : {std::pair{0, 0}, {300, 60}, {550, 60}, {639, 126}})
    EXPECT_EQ(map.at(x, y), 10) << x << ", " << y;
}

TEST(SamplePictures, ThePlatesMapIsStampedWhereItsButtonsAreAndNowhereElse) {
  const Picture map{std::string("dat/mcsel")};
  EXPECT_EQ(map.width(), 51);
  EXPECT_EQ(map.height(), 122);
  for (const FrameButton& button : PlateButtons)
    expectRegionsUnder(button, map);
  map.eachSeen([](int32_t, int32_t, int region) { EXPECT_TRUE(region == 4 || region == 7); });
}

TEST(SamplePictures, TheFourCellsOfAButtonCoverEachOther) {
  for (const std::string name : {"dat/MButton1", "dat/MButton2", "dat/MButton3", "dat/SButton1",
                                 "dat/SButton2", "dat/yes", "dat/no", "dat/ok"}) {
    const Picture strip{name};
    ASSERT_EQ(strip.width() % Cells, 0) << name;
    const int32_t cell = strip.width() / Cells;
    int odd = 0;
    for (int32_t y = 0; y < strip.height(); ++y)
      for (int32_t x = 0; x < cell; ++x)
        for (int32_t other = 1; other < Cells; ++other)
          if ((strip.at(x, y) == strip.key()) != (strip.at(x + other * cell, y) == strip.key()))
            ++odd;
    EXPECT_LE(odd, 1) << name;  // the corner, which is the key
  }
}

TEST(SamplePictures, TheFrameShowsItsButtonsAsTheyAreWhenNobodyPresses) {
  const Picture frame{std::string("dat/mframe")}, corner{std::string("dat/MDButton")};
  EXPECT_EQ(frame.width(), FrameWidth);
  EXPECT_EQ(frame.height(), FrameHeight);
  for (const FrameButton& button : FrameButtons) {
    const Picture strip{std::string(button.file)};
    int holes = 0;
    strip.eachSeen([&](int32_t x, int32_t y, int) {
      if (x < strip.width() / Cells && frame.at(button.x + x, button.y + y) == frame.key()) ++holes;
    });
    EXPECT_EQ(holes, 0) << button.file;
  }
  // In the corner for skipping, the quick buttons cover those of the frame.
  EXPECT_EQ(corner.width(), 104);
  EXPECT_EQ(corner.height(), 74);
  for (const FrameButton& button : {FrameButtons[0], FrameButtons[1]}) {
    const Picture strip{std::string(button.file)};
    int holes = 0;
    strip.eachSeen([&](int32_t x, int32_t y, int) {
      if (x < strip.width() / Cells && corner.at(x, button.y + y) == corner.key()) ++holes;
    });
    EXPECT_EQ(holes, 0) << button.file;
  }
}

TEST(SamplePictures, PlatesAndTheirButtonsHaveTheColoursThatNoTintChanges) {
  for (const std::string name :
       {"dat/select01", "dat/select02", "dat/select03", "dat/SButton1", "dat/SButton2"}) {
    int tinted = 0;
    Picture(name).eachSeen([&](int32_t, int32_t, int index) {
      if (!isStaticColour(static_cast<size_t>(index))) ++tinted;
    });
    EXPECT_EQ(tinted, 0) << name;
  }
  struct Plate {
    const char *art, *shape;
    int32_t height;
  };
  for (const Plate& plate :
       {Plate{"dat/select01", "dat/select1R", 122}, Plate{"dat/select02", "dat/select2R", 111},
        Plate{"dat/select03", "dat/select3R", 111}}) {
    const Picture art{std::string(plate.art)}, shape{std::string(plate.shape)};
    EXPECT_EQ(shape.width(), 565);
    EXPECT_EQ(shape.height(), plate.height);
    int cut = 0;
    art.eachSeen([&](int32_t x, int32_t y, int) {
      if (shape.at(x, y) == shape.key()) ++cut;
    });
    EXPECT_EQ(cut, 0) << plate.art;
  }
}

TEST(SamplePictures, FadesBeginInBlackWithEveryPlace) {
  for (const std::string& name : namesIn("cg", "K(BA|EV|AI)\\d+")) {
    const Picture place{name};
    EXPECT_TRUE(place.owns(10)) << name;
    EXPECT_EQ(place.colour(10), 0x000000u) << name;
  }
}

void expectNoClash(const std::string& nameA, const std::string& nameB) {
  const Picture a{nameA}, b{nameB};
  for (size_t entry = FirstFreeColour; entry <= LastFreeColour; ++entry)
    EXPECT_FALSE(a.owns(entry) && b.owns(entry) && a.colour(entry) != b.colour(entry))
        << nameA << " and " << nameB << " at " << entry;
}

TEST(SamplePictures, NothingThatSharesAScreenTakesAnotherPicturesColours) {
  const std::vector<std::string> places = namesIn("cg", "KBA\\d+"),
                                 figures = namesIn("cg", "(KDS|Kds).*"),
                                 events = namesIn("cg", "KEV\\d+"),
                                 frame = namesIn("dat", "mframe|Blink|M[D]?Button\\d?");
  for (const std::string& part : frame) {
    for (const std::vector<std::string>* group : {&places, &figures, &events, &frame})
      for (const std::string& other : *group)
        expectNoClash(part, other);
  }
  for (const std::string& figure : figures) {
    for (const std::vector<std::string>* group : {&places, &figures})
      for (const std::string& other : *group)
        expectNoClash(figure, other);
  }
}

TEST(SamplePictures, TheSystemsPaletteHasTheColoursOfPlainPictures) {
  const Picture palette{std::string("dat/L0pal.dat")};
  struct Entry {
    size_t entry;
    uint32_t colour;
  };
  for (const Entry& each :
       {Entry{0, 0x000000}, {10, 0x000000}, {14, 0xFF0000}, {22, 0x0000FF}, {23, 0xFFFFFF}})
    EXPECT_EQ(palette.colour(each.entry), each.colour) << each.entry;
}

TEST(SamplePictures, ThePendantAndItsStonesHaveTheSizesThatTheyAreCutIn) {
  for (const std::string name : {"dat/SysCut", "dat/SysCut2"}) {
    EXPECT_EQ(Picture(name).width(), 62) << name;
    EXPECT_EQ(Picture(name).height(), 122) << name;
  }
  for (const std::string name : {"dat/stone1", "dat/stone2"}) {
    EXPECT_EQ(Picture(name).width(), 21 * 32) << name;
    EXPECT_EQ(Picture(name).height(), 32) << name;
  }
  expectNoClash("dat/SysCut", "dat/stone1");
  expectNoClash("dat/SysCut2", "dat/stone2");
}

TEST(SamplePictures, AClosedMouthLiesOnItsFaceAsIfItWereNotThere) {
  std::ifstream story(fs::path(QV_SOURCE_DIR) / "game/story/story.txt");
  const std::regex figure(R"(@figure \S+ of \S+ at \S+ \S+ file (\S+) mouth (\S+) (\d+) (\d+) .*)");
  int figures = 0;
  for (std::string line; std::getline(story, line);) {
    std::smatch found;
    if (!std::regex_match(line, found, figure)) continue;
    ++figures;
    const Picture sprite("cg/" + found[1].str()), strip("cg/" + found[2].str());
    ASSERT_EQ(strip.width(), 96) << found[2];
    ASSERT_EQ(strip.height(), 24) << found[2];
    const int32_t x0 = std::stoi(found[3]), y0 = std::stoi(found[4]);
    int seen = 0, alike = 0;
    strip.eachSeen([&](int32_t x, int32_t y, int index) {
      if (x >= strip.width() / 3) return;
      ++seen;
      alike += sprite.at(x0 + x, y0 + y) == index ? 1 : 0;
    });
    EXPECT_GT(seen, 200) << found[2];
    EXPECT_GT(alike * 10, seen * 8) << line;
  }
  EXPECT_GE(figures, 6);
}

}  // namespace
}  // namespace qv
