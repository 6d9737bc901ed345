// The built program, as an author runs it.

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "graphics/dib.h"
#include "graphics/static_colours.h"
#include "platform/display/png_file.h"
#include "tests/support/picture_bytes.h"
#include "tests/support/process.h"
#include "tests/support/test_platform.h"
#include "tools/picture_codec/picture_files.h"
#include "tools/qvtool/image.h"

namespace qv {
namespace {

using namespace qv::testing;
using codec::IndexedPicture;
namespace fs = std::filesystem;

class QvTool : public ::testing::Test {
 protected:
  std::string at(const std::string& name) const { return (folder_.path() / name).string(); }
  ProcessResult run(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), QV_BIN_DIR "/qvtool");
    return runProcess(arguments);
  }
  void expectWell(const std::vector<std::string>& arguments) const {
    const ProcessResult result = run(arguments);
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.errors, "");
  }
  void expectFailure(const std::vector<std::string>& arguments, const std::string& errors) const {
    const ProcessResult result = run(arguments);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "qvtool: " + errors + "\n");
  }
  QVDib load(const std::string& name) const {
    QVDib dib;
    dib.loadFromMemory(spanOf(readWhole(at(name))));
    return dib;
  }
  std::string writeSvg(const std::string& name, const std::string& content,
                       const std::string& size = "width=\"8\" height=\"4\"") const {
    writeWhole(at(name),
               "<svg xmlns=\"http://www.w3.org/2000/svg\" " + size + ">" + content + "</svg>");
    return at(name);
  }
  TemporaryFolder folder_;
};

/// Static colours at their places, others made up; some pixels of each.
IndexedPicture indexed(int width, int height) {
  IndexedPicture picture;
  picture.width = width;
  picture.height = height;
  constexpr auto Standard = greyRampWithStaticColours();
  for (uint32_t entry = 0; entry < 256; ++entry)
    picture.colours[entry] = isStaticColour(entry) ? Standard[entry] : entry * 0x010305 & 0xFFFFFF;
  for (int pixel = 0; pixel < width * height; ++pixel)
    picture.pixels.push_back(static_cast<uint8_t>(pixel * 7 % 120));
  return picture;
}

const char* const Gradient =
    "<defs><linearGradient id='g'><stop offset='0' stop-color='#102030'/>"
    "<stop offset='1' stop-color='#f0d0a0'/></linearGradient></defs>"
    "<rect width='100%' height='100%' fill='url(#g)'/>";

TEST_F(QvTool, TurnsAnIndexedPngIntoEachFormatAndBack) {
  for (const std::string format : {"mcg", "sld", "bmp"}) {
    for (const int width : {1, 2, 3, 4, 5, 7, 8, 31, 64, 70}) {
      const IndexedPicture picture = indexed(width, 1 + width % 9);
      tool::writeIndexedPng(picture, at("source.png"));
      expectWell({format, "encode", at("source.png"), at("there")});
      expectWell({format, "decode", at("there"), at("back.png")});
      const tool::Image back = tool::readPng(at("back.png"));
      ASSERT_TRUE(back.indexed);
      EXPECT_EQ(back.indexed->width, picture.width);
      EXPECT_EQ(back.indexed->pixels, picture.pixels);
      EXPECT_EQ(back.indexed->colours, picture.colours);
    }
  }
}

TEST_F(QvTool, MarksTheColoursThatAreUsedAndTheStaticOnes) {
  IndexedPicture picture = indexed(4, 2);
  picture.pixels = {10, 10, 42, 42, 10, 10, 42, 250};
  tool::writeIndexedPng(picture, at("source.png"));
  expectWell({"mcg", "encode", at("source.png"), at("a.mcg")});
  const QVDib dib = load("a.mcg");
  for (size_t entry = 0; entry < 256; ++entry)
    EXPECT_EQ(dib.PaletteUseTable[entry],
              isStaticColour(entry) || entry == 10 || entry == 42 ? 0u : 1u)
        << entry;
}

TEST_F(QvTool, KeepsPixelsOffTheStaticColoursWhenToldTo) {
  // Black and white beside a gradient: static colours would fit exactly.
  const std::string drawing =
      writeSvg("a.svg", std::string(Gradient) +
                            "<rect width='2' height='4'/>"
                            "<rect x='6' width='2' height='4' fill='white'/>");
  const auto staticPixels = [&](const std::string& name) {
    const QVDib dib = load(name);
    return std::count_if(dib.bits().begin(), dib.bits().end(),
                         [](uint8_t pixel) { return isStaticColour(pixel); });
  };
  expectWell({"mcg", "encode", drawing, at("with.mcg"), "--entries", "40-60"});
  EXPECT_GT(staticPixels("with.mcg"), 0);
  expectWell({"mcg", "encode", drawing, at("without.mcg"), "--entries", "40-60", "--no-statics"});
  EXPECT_EQ(load("without.mcg").width(), 8);
  EXPECT_EQ(staticPixels("without.mcg"), 0);
  const std::string clear = writeSvg("clear.svg", "");
  expectWell({"mcg", "encode", clear, at("clear.mcg"), "--entries", "40-60", "--no-statics",
              "--key-transparent", "40"});
  const QVDib transparent = load("clear.mcg");
  for (const uint8_t pixel : transparent.bits())
    EXPECT_EQ(pixel, 40);
}

TEST_F(QvTool, RefusesAnotherColourAtAStaticEntryUnlessItIsToldTo) {
  IndexedPicture picture = indexed(4, 2);
  picture.colours[3] = 0x123456;
  picture.pixels[0] = 3;
  tool::writeIndexedPng(picture, at("source.png"));
  expectFailure({"mcg", "encode", at("source.png"), at("a.mcg")},
                at("source.png") +
                    ": Its pixels use entry 3, which is a static colour, for another one; give "
                    "--entries to choose its colours anew.");
  EXPECT_FALSE(fs::exists(at("a.mcg")));
  expectWell({"mcg", "encode", "--as-is", at("source.png"), at("a.mcg")});
  EXPECT_EQ(load("a.mcg").colours()[3], 0x123456u);
}

TEST_F(QvTool, ChoosesColoursIntoTheEntriesAloneAndKeepsTheStaticOnes) {
  writeSvg("drawing.svg", Gradient);
  expectWell(
      {"mcg", "encode", "--size", "200x100", "--entries", "20-39", at("drawing.svg"), at("a.mcg")});
  const QVDib dib = load("a.mcg");
  EXPECT_EQ(dib.width(), 200);
  EXPECT_EQ(dib.height(), 100);
  constexpr auto Standard = greyRampWithStaticColours();
  std::vector<size_t> pixels(256);
  for (const uint8_t pixel : dib.bits())
    ++pixels[pixel];
  size_t chosen = 0;
  for (size_t entry = 0; entry < 256; ++entry) {
    const bool ours = entry >= 20 && entry <= 39;
    if (isStaticColour(entry)) {
      EXPECT_EQ(dib.colours()[entry], Standard[entry]) << entry;
    }
    if (!ours && !isStaticColour(entry)) {
      EXPECT_EQ(dib.PaletteUseTable[entry], 1u) << entry;
      EXPECT_EQ(pixels[entry], 0u) << entry;
    }
    if (pixels[entry]) {
      EXPECT_EQ(dib.PaletteUseTable[entry], 0u) << entry;
    }
    chosen += ours && pixels[entry];
  }
  // A gradient takes nearly all that it is given, and looks like itself.
  EXPECT_GE(chosen, 15u);
  const uint8_t left = dib.bits()[4], right = dib.bits()[195];
  EXPECT_LT(dib.colours()[left] & 0xFF, 0x50u);
  EXPECT_GT(dib.colours()[right] & 0xFF, 0x80u);
}

TEST_F(QvTool, GivesThePixelsOfAPlainPictureTheirExactColours) {
  writeSvg("drawing.svg",
           "<rect width='4' height='4' fill='#ff0000'/>"
           "<rect x='4' width='4' height='4' fill='#123456'/>");
  expectWell({"mcg", "encode", "--entries", "10-12", at("drawing.svg"), at("a.mcg")});
  const QVDib dib = load("a.mcg");
  EXPECT_EQ(dib.bits()[0], 249) << "red is a static colour";
  EXPECT_EQ(dib.colours()[dib.bits()[7]], 0x123456u);
  EXPECT_GE(dib.bits()[7], 10);
  EXPECT_LE(dib.bits()[7], 12);
}

TEST_F(QvTool, PutsFixedColoursAtTheirEntries) {
  writeSvg("drawing.svg", Gradient);
  expectWell({"mcg", "encode", "--entries", "10-40", "--fix", "30=#00ff80", "--fix", "12=#FF8000",
              at("drawing.svg"), at("a.mcg")});
  const QVDib dib = load("a.mcg");
  EXPECT_EQ(dib.colours()[30], 0x00FF80u);
  EXPECT_EQ(dib.colours()[12], 0xFF8000u);
  EXPECT_EQ(dib.PaletteUseTable[30], 0u);
}

TEST_F(QvTool, GivesTransparentPixelsTheKeyAndNoOtherOnes) {
  // The top left is transparent, the right half black, which is the key's own colour.
  writeSvg("drawing.svg", "<rect x='4' width='4' height='4' fill='#000000'/>");
  expectWell({"mcg", "encode", "--entries", "10-20", "--key-transparent", "0", at("drawing.svg"),
              at("a.mcg")});
  const QVDib dib = load("a.mcg");
  for (size_t y = 0; y < 4; ++y) {
    for (size_t x = 0; x < 8; ++x) {
      const uint8_t pixel = dib.bits()[y * 8 + x];
      EXPECT_EQ(pixel == 0, x < 4) << x << ", " << y;
      EXPECT_EQ(dib.colours()[pixel], 0u);
    }
  }
}

TEST_F(QvTool, MakesTheTopLeftPixelTransparentAndSaysSo) {
  writeSvg("drawing.svg", "<rect width='4' height='4' fill='#123456'/>");
  const ProcessResult result = run({"mcg", "encode", "--entries", "10-20", "--key-transparent",
                                    "15", at("drawing.svg"), at("a.mcg")});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.errors, "qvtool: " + at("drawing.svg") +
                               ": The top left pixel was not transparent; it is now.\n");
  const QVDib dib = load("a.mcg");
  EXPECT_EQ(dib.bits()[3 * 8], 15);
  EXPECT_NE(dib.bits()[3 * 8 + 1], 15);
  EXPECT_EQ(dib.bits()[3 * 8 + 7], 15);
}

TEST_F(QvTool, RendersADrawingInItsOwnSizeOrByOneSide) {
  writeSvg("drawing.svg", Gradient, "viewBox=\"0 0 60 20\"");
  expectWell({"mcg", "encode", at("drawing.svg"), at("a.mcg")});
  EXPECT_EQ(load("a.mcg").width(), 60);
  expectWell({"mcg", "encode", "--size", "0x40", at("drawing.svg"), at("a.mcg")});
  EXPECT_EQ(load("a.mcg").width(), 120);
  EXPECT_EQ(load("a.mcg").height(), 40);
}

TEST_F(QvTool, WritesTrueColourAndResources) {
  writeSvg("drawing.svg", "<rect width='8' height='4' fill='#123456'/>");
  expectWell({"mcg", "encode", "--true-colour", at("drawing.svg"), at("a.mcg")});
  EXPECT_EQ(run({"mcg", "info", at("a.mcg")}).output.substr(at("a.mcg").size()),
            ": MCG, 8 by 4, 24 bits, " + std::to_string(fs::file_size(at("a.mcg"))) +
                " bytes for 96 of pixels\n");
  expectWell({"mcg", "decode", at("a.mcg"), at("back.png")});
  const tool::Image back = tool::readPng(at("back.png"));
  EXPECT_EQ(std::vector<int>(back.rgba.begin(), back.rgba.begin() + 4),
            (std::vector<int>{0x12, 0x34, 0x56, 255}));
  expectWell({"mcg", "encode", "--rcg", at("drawing.svg"), at("a.rcg")});
  EXPECT_EQ(readWhole(at("a.rcg")).substr(0, 4), "RCG ");
  expectWell({"mcg", "decode", at("a.rcg"), at("again.png")});
}

TEST_F(QvTool, TellsWhatAPictureHolds) {
  IndexedPicture picture = indexed(5, 2);
  picture.marks.fill(1);
  for (const size_t entry : {0, 1, 2, 7, 255})
    picture.marks[entry] = 0;
  const std::vector<uint8_t> bytes = codec::encodeMcg(picture);
  writeWhole(at("a.mcg"), std::string(bytes.begin(), bytes.end()));
  EXPECT_EQ(run({"mcg", "info", at("a.mcg")}).output,
            at("a.mcg") + ": MCG, 5 by 2, 8 bits, " + std::to_string(bytes.size()) +
                " bytes for 16 of pixels, 256 entries, own: 0-2, 7, 255\n");
}

TEST_F(QvTool, ShowsAPaletteWithItsMarks) {
  IndexedPicture picture = indexed(4, 1);
  picture.pixels = {10, 10, 10, 11};
  tool::writeIndexedPng(picture, at("source.png"));
  expectWell({"mcg", "encode", at("source.png"), at("a.mcg")});
  const ProcessResult result = run({"palette", "show", at("a.mcg"), "--png", at("swatches.png")});
  EXPECT_EQ(result.status, 0);
  EXPECT_NE(result.output.find("   10  #0A1E32  own         3\n"), std::string::npos)
      << result.output;
  EXPECT_NE(result.output.find("   12  #0C243C  free        0\n"), std::string::npos);
  EXPECT_NE(result.output.find("own: 0-11, 246-255\n"), std::string::npos);
  const tool::Image swatches = tool::readPng(at("swatches.png"));
  const size_t middle = (12 * static_cast<size_t>(swatches.width) + 10 * 24 + 12) * 4;
  EXPECT_EQ(std::vector<int>(&swatches.rgba[middle], &swatches.rgba[middle + 3]),
            (std::vector<int>{0x0A, 0x1E, 0x32}));
}

TEST_F(QvTool, FindsClashesBetweenPicturesOfOneScreen) {
  writeSvg("a.svg", Gradient);
  writeSvg("b.svg", "<rect width='8' height='4' fill='#345678'/>");
  expectWell(
      {"mcg", "encode", "--entries", "10-60", "--size", "200x100", at("a.svg"), at("a.mcg")});
  expectWell({"mcg", "encode", "--entries", "100-120", at("b.svg"), at("b.mcg")});
  const ProcessResult apart = run({"palette", "check", at("a.mcg"), at("b.mcg")});
  EXPECT_EQ(apart.status, 0) << apart.output;
  EXPECT_NE(apart.output.find("no clash\n"), std::string::npos);
  expectWell({"mcg", "encode", "--entries", "10-10", at("b.svg"), at("b.mcg")});
  const ProcessResult clash = run({"palette", "check", at("a.mcg"), at("b.mcg")});
  EXPECT_EQ(clash.status, 1);
  EXPECT_NE(clash.output.find(at("a.mcg") + " and " + at("b.mcg") + " clash in 1 entries: 10\n"),
            std::string::npos)
      << clash.output;
  EXPECT_EQ(clash.errors, "qvtool: These pictures cannot share a screen as they are.\n");
}

TEST_F(QvTool, FindsPixelsOfFreeEntriesAndWrongStaticColours) {
  IndexedPicture picture = indexed(2, 1);
  picture.pixels = {33, 34};
  picture.marks[33] = 1;
  picture.colours[2] = 0xABCDEF;
  const std::vector<uint8_t> bytes = codec::encodeMcg(picture);
  writeWhole(at("a.mcg"), std::string(bytes.begin(), bytes.end()));
  const ProcessResult result = run({"palette", "check", at("a.mcg")});
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.output.find(": pixels use entry 33, which is marked free\n"), std::string::npos);
  EXPECT_NE(result.output.find(": entry 2 is #ABCDEF, but the static colour there is #008000\n"),
            std::string::npos);
}

TEST_F(QvTool, TurnsMapsIntoPicturesWithAColourARegionAndBack) {
  IndexedPicture map = indexed(16, 16);
  for (size_t region = 0; region < 256; ++region)
    map.pixels[region] = static_cast<uint8_t>(region);
  const std::vector<uint8_t> bytes = codec::encodeBmp(map);
  writeWhole(at("a.bmp"), std::string(bytes.begin(), bytes.end()));
  expectWell({"map", "decode", at("a.bmp"), at("map.png")});
  const tool::Image shown = tool::readPng(at("map.png"));
  std::vector<std::array<uint8_t, 3>> colours;
  for (size_t pixel = 0; pixel < 256; ++pixel)
    colours.push_back(
        {shown.rgba[pixel * 4], shown.rgba[pixel * 4 + 1], shown.rgba[pixel * 4 + 2]});
  std::sort(colours.begin(), colours.end());
  EXPECT_EQ(std::adjacent_find(colours.begin(), colours.end()), colours.end());
  expectWell({"map", "encode", at("map.png"), at("b.bmp")});
  EXPECT_EQ(textOf(load("b.bmp").bits()), textOf(load("a.bmp").bits()));
}

TEST_F(QvTool, TakesAnAuthorsOwnRegionColoursAndRefusesUnknownOnes) {
  tool::writeRgbPng(2, 1, {0x000000, 0xFF7700}, at("map.png"));
  expectFailure({"map", "encode", at("map.png"), at("a.bmp")},
                at("map.png") +
                    ": the colour #FF7700 at 1, 0 is no region's; `qvtool map colours` lists "
                    "them, --region adds one.");
  expectWell({"map", "encode", "--region", "#FF7700=7", at("map.png"), at("a.bmp")});
  EXPECT_EQ(load("a.bmp").bits()[1], 7);
}

TEST_F(QvTool, SaysInASentenceWhatIsWrong) {
  writeWhole(at("text"), "no picture");
  tool::writeRgbPng(4, 2, std::vector<uint32_t>(8), at("a.png"));
  writeWhole(at("cut.png"), readWhole(at("a.png")).substr(0, 40));
  writeWhole(at("cut.mcg"), "MCG ");
  const std::string out = at("out");
  expectFailure({"mcg", "encode", at("none.png"), out},
                at("none.png") + " cannot be opened: No such file or directory.");
  expectFailure({"mcg", "encode", at("text"), out}, at("text") + " is no PNG picture.");
  expectFailure({"mcg", "encode", at("cut.png"), out},
                at("cut.png") + " cannot be read: the file ends too early.");
  expectFailure({"mcg", "encode", "--size", "9x9", at("a.png"), out},
                at("a.png") + " is 4 by 2, not 9 by 9; only an SVG drawing can be given a size.");
  expectFailure({"mcg", "encode", "--size", "9by9", at("a.png"), out},
                "\"9by9\" is no size; write 640x480.");
  expectFailure({"mcg", "encode", "--entries", "5-20", at("a.png"), out},
                "The entries 5-20 reach into the static colours; 10 to 245 are free.");
  expectFailure({"mcg", "encode", "--entries", "30-20", at("a.png"), out},
                "\"30-20\" is no range of entries; write 10-127.");
  expectFailure({"mcg", "encode", "--fix", "nine", at("a.png"), out},
                "\"nine\" is no fixed colour; write 42=#FF8000.");
  expectFailure({"mcg", "encode", "--entries", "10-20", "--fix", "30=#FF8000", at("a.png"), out},
                "The fixed entry 30 is not in the range 10-20.");
  expectFailure(
      {"mcg", "encode", "--entries", "10-20", "--key-transparent", "30", at("a.png"), out},
      "The key 30 is neither one of the picture's entries nor a static colour.");
  expectFailure({"mcg", "decode", at("text"), out},
                at("text") + " is no picture of the game (MCG, SLD, RCG or BMP).");
  expectFailure({"mcg", "decode", at("cut.mcg"), out},
                at("cut.mcg") + " is damaged: its head tells of no picture that can be.");
  expectWell({"sld", "encode", at("a.png"), at("a.sld")});
  expectFailure({"mcg", "info", at("a.sld")}, at("a.sld") + " is no MCG picture but a SLD.");
  EXPECT_FALSE(fs::exists(out));
}

TEST_F(QvTool, LeavesNoHalfFilesBehind) {
  tool::writeRgbPng(4, 2, std::vector<uint32_t>(8), at("a.png"));
  const ProcessResult result = run({"mcg", "encode", at("a.png"), at("no/such/folder/a.mcg")});
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.errors.find("cannot be written: No such file or directory."), std::string::npos);
}

TEST_F(QvTool, HelpsWithEveryCommandAndRefusesBadUsage) {
  for (const std::vector<std::string>& command : {std::vector<std::string>{},
                                                  {"mcg"},
                                                  {"mcg", "encode"},
                                                  {"mcg", "decode"},
                                                  {"mcg", "info"},
                                                  {"sld"},
                                                  {"sld", "encode"},
                                                  {"bmp", "info"},
                                                  {"palette"},
                                                  {"palette", "show"},
                                                  {"palette", "check"},
                                                  {"map"},
                                                  {"map", "encode"},
                                                  {"map", "decode"},
                                                  {"map", "colours"}}) {
    std::vector<std::string> arguments = command;
    arguments.push_back("--help");
    const ProcessResult help = run(arguments);
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.output.find("Usage:"), std::string::npos);
    EXPECT_EQ(help.errors, "");
  }
  for (const std::vector<std::string>& usage : std::vector<std::vector<std::string>>{
           {}, {"paint"}, {"mcg"}, {"mcg", "encode"}, {"mcg", "encode", "--colour", "a", "b"}}) {
    const ProcessResult result = run(usage);
    EXPECT_EQ(result.status, 2);
    EXPECT_NE(result.errors.find("See qvtool --help.\n"), std::string::npos) << result.errors;
    EXPECT_EQ(result.output, "");
  }
}

TEST_F(QvTool, GivesPicturesOfASetTheSameColoursWhicheverIsEncoded) {
  // Two drawings that alone would come to quite other colours.
  writeSvg("warm.svg",
           "<rect width='70%' height='100%' fill='#c04020'/><rect width='30%' height='50%' "
           "fill='#f0c060'/>",
           "width=\"40\" height=\"20\"");
  writeSvg("cold.svg", Gradient, "width=\"60\" height=\"30\"");
  writeSvg("third.svg", "<circle cx='10' cy='10' r='8' fill='#3060d0'/>",
           "width=\"20\" height=\"20\"");
  const std::vector<std::string> names{"warm", "cold", "third"};
  std::vector<QVDib> pictures;
  for (const std::string& name : names) {
    std::vector<std::string> arguments{"mcg",    "encode",     at(name + ".svg"),
                                       at(name), "--entries",  "20-35",
                                       "--fix",  "21=#102030", "--no-statics"};
    // Named in another order by each.
    for (auto other = names.rbegin(); other != names.rend(); ++other)
      if (*other != name) {
        arguments.push_back("--palette-of");
        arguments.push_back(at(*other + ".svg"));
      }
    arguments.insert(arguments.end(), {"--key-transparent", "20"});
    EXPECT_EQ(run(arguments).status, 0);
    pictures.push_back(load(name));
  }
  for (const QVDib& picture : pictures) {
    ASSERT_EQ(picture.colours().size(), 256u);
    EXPECT_EQ(picture.colours()[21] & 0xFFFFFF, 0x102030u);
    for (size_t entry = 0; entry < 256; ++entry) {
      EXPECT_EQ(picture.colours()[entry], pictures[0].colours()[entry]) << entry;
      EXPECT_EQ(picture.PaletteUseTable[entry], pictures[0].PaletteUseTable[entry]) << entry;
    }
  }
  // What each picture is made of stands in the common table.
  const auto nearest = [&](uint32_t wanted) {
    int best = 1000;
    for (size_t entry = 20; entry < 36; ++entry) {
      const uint32_t colour = pictures[0].colours()[entry];
      int distance = 0;
      for (const int shift : {0, 8, 16})
        distance += std::abs(static_cast<int>(colour >> shift & 255) -
                             static_cast<int>(wanted >> shift & 255));
      best = std::min(best, distance);
    }
    return best;
  };
  for (const uint32_t colour : {0xC04020u, 0xF0C060u, 0x3060D0u})
    EXPECT_LT(nearest(colour), 12) << colour;
  // By itself a picture comes to other colours.
  EXPECT_EQ(run({"mcg", "encode", at("warm.svg"), at("alone"), "--entries", "20-35", "--fix",
                 "21=#102030", "--no-statics", "--key-transparent", "20"})
                .status,
            0);
  EXPECT_FALSE(std::ranges::equal(load("alone").colours(), pictures[0].colours()));
  const ProcessResult missing =
      run({"mcg", "encode", at("warm.svg"), at("x"), "--palette-of", at("none.svg")});
  EXPECT_EQ(missing.status, 1);
  EXPECT_NE(missing.errors.find("none.svg"), std::string::npos) << missing.errors;
}

/// Two cards of one colour each, in entries of their own, and what `reel` made of them.
class QvToolReel : public QvTool {
 protected:
  static constexpr uint32_t Old = 0x203060, New = 0xE0C040;
  static constexpr uint8_t OldEntry = 20, NewEntry = 30;
  void SetUp() override {
    card("old.mcg", OldEntry, Old);
    card("new.mcg", NewEntry, New);
    card("mask.mcg", NewEntry, New);
  }
  void card(const std::string& name, uint8_t entry, uint32_t colour) const {
    IndexedPicture picture;
    picture.width = ScreenWidth;
    picture.height = ScreenHeight;
    picture.colours[entry] = colour;
    picture.pixels.assign(static_cast<size_t>(ScreenWidth) * ScreenHeight, entry);
    const std::vector<uint8_t> bytes = codec::encodeMcg(picture);
    writeWhole(at(name), {bytes.begin(), bytes.end()});
  }
  std::vector<std::string> reel(const std::string& effect) const {
    fs::remove_all(at("shots"));
    return {"reel", at("new.mcg"), "--from",    at("old.mcg"), "--effect",
            effect, "--shots",     at("shots"), "--still",     "0.1"};
  }
  /// How many pixels of each frame show the new card, frame by frame.
  std::vector<size_t> newPixels() const {
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(at("shots")))
      files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    std::vector<size_t> counts;
    for (const fs::path& file : files) {
      const std::vector<uint32_t> pixels = readPng(file).value_or(Picture{}).pixels;
      counts.push_back(static_cast<size_t>(std::count(pixels.begin(), pixels.end(), New)));
    }
    return counts;
  }
};
constexpr size_t ScreenPixels = static_cast<size_t>(ScreenWidth) * ScreenHeight;

TEST_F(QvToolReel, ShotsShowTheMiddleStepsOfDissolvesLinesAndWipes) {
  for (const char* effect : {"11", "38", "40", "44", "48", "50"}) {
    expectWell(reel(effect));
    const std::vector<size_t> counts = newPixels();
    ASSERT_GE(counts.size(), 10u) << effect;
    EXPECT_EQ(counts.front(), 0u) << effect;
    EXPECT_EQ(counts.back(), ScreenPixels) << effect;
    EXPECT_TRUE(std::is_sorted(counts.begin(), counts.end())) << effect;
    const auto middle = std::count_if(counts.begin(), counts.end(), [](size_t count) {
      return count > ScreenPixels / 10 && count < ScreenPixels / 10 * 9;
    });
    EXPECT_GE(middle, 5) << effect;
  }
}

TEST_F(QvToolReel, ShotsShowThatASpinTurnsTheOldPictureAwayAndTheNewOneIn) {
  expectWell(reel("60"));
  const std::vector<size_t> counts = newPixels();
  EXPECT_GE(counts.size(), 30u) << "18 frames each way";
  EXPECT_EQ(counts.back(), ScreenPixels);
}

TEST_F(QvToolReel, ShotsOfOneSeedAreTheSameAndOfAnotherAreNot) {
  const auto framesOf = [this](const char* seed) {
    std::vector<std::string> arguments = reel("41");
    arguments.insert(arguments.end(), {"--seed", seed});
    expectWell(arguments);
    std::vector<std::string> frames;
    for (const auto& entry : fs::directory_iterator(at("shots")))
      frames.push_back(entry.path().filename().string() + readWhole(entry.path()));
    std::sort(frames.begin(), frames.end());
    return frames;
  };
  const std::vector<std::string> first = framesOf("3");
  EXPECT_EQ(framesOf("3"), first);
  EXPECT_NE(framesOf("4"), first);
}

TEST_F(QvToolReel, PlaysSeveralEffectsKeysPlacesMasksAndBothDepths) {
  std::vector<std::string> arguments = reel("65");
  arguments.insert(arguments.end(), {"--mask", at("mask.mcg"), "--mask2", at("mask.mcg"), "--steps",
                                     "4", "--delay", "20"});
  expectWell(arguments);
  EXPECT_EQ(newPixels().back(), ScreenPixels);
  arguments = reel("1-3,10");
  arguments.insert(arguments.end(), {"--bits", "32", "--at", "600,400", "--rounds", "2"});
  expectWell(arguments);
  EXPECT_EQ(newPixels().back(), 40u * 80u);
  arguments = reel("1");
  arguments.insert(arguments.end(), {"--key", "top-left"});
  expectWell(arguments);
  EXPECT_EQ(newPixels().back(), 0u) << "all of the card is its key";
}

TEST_F(QvToolReel, SaysWhatIsWrongWithItsWishes) {
  const auto failure = [this](const std::vector<std::string>& more, const std::string& effect,
                              const std::string& sentence) {
    std::vector<std::string> arguments = reel(effect);
    arguments.insert(arguments.end(), more.begin(), more.end());
    expectFailure(arguments, sentence);
    EXPECT_FALSE(fs::exists(at("shots")));
  };
  failure({}, "70", "Effect 70 is a shape wipe; give it a --mask.");
  failure({}, "9-x", "\"9-x\" is no effect; write 40, or 38-47 for all of them (1 to 127).");
  failure({}, "128", "\"128\" is no effect; write 40, or 38-47 for all of them (1 to 127).");
  failure({"--bits", "32"}, "60", "Effect 60 needs a palette, so a view of 8 bits.");
  failure({"--key", "256"}, "2", "\"256\" is no key; write an index from 0 to 255, or top-left.");
  failure({"--at", "3"}, "2", "\"3\" is no place; write 40,120.");
  failure({"--mask", at("none")}, "65",
          at("none") + " cannot be opened: No such file or directory.");
  std::vector<std::string> arguments = reel("2");
  arguments.insert(arguments.end(), {"--scale", "9"});
  EXPECT_EQ(run(arguments).status, 2);
}

TEST_F(QvToolReel, WithoutADisplaySaysSoInOneSentence) {
  const ProcessResult result =
      runProcess({QV_BIN_DIR "/qvtool", "reel", at("new.mcg"), "--effect", "2"},
                 {"DISPLAY=", "WAYLAND_DISPLAY=", "SDL_VIDEODRIVER="});
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.errors,
            "qvtool: There is no display: neither DISPLAY nor WAYLAND_DISPLAY is set.\n");
}

}  // namespace
}  // namespace qv
