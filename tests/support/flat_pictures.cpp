#include "tests/support/flat_pictures.h"

#include <array>
#include <functional>

#include "graphics/palette.h"
#include "tests/support/picture_bytes.h"
#include "tests/support/process.h"

namespace qv::testing {

namespace {

namespace fs = std::filesystem;

/// A colour table with the marks of those that the picture does not use.
struct Colours {
  Colours() {
    for (int index = 0; index < 256; ++index)
      entries[static_cast<size_t>(index)] = flatColour(index);
    free.fill(true);
  }
  std::string bytes() const {
    std::string table;
    for (size_t index = 0; index < entries.size(); ++index)
      table += little(entries[index] | (free[index] ? 1U << 24 : 0U), 4);
    return table;
  }
  std::array<uint32_t, 256> entries{};
  std::array<bool, 256> free{};
};

/// Draws by place; only the colours that come to be used are marked as the picture's own.
void writePicture(const fs::path& file, int width, int height,
                  const std::function<int(int x, int y)>& indexAt, Colours colours = {}) {
  const auto stride = static_cast<size_t>(width + 3) / 4 * 4;
  std::string pixels;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const int index = indexAt(x, y);
      pixels += static_cast<char>(index);
      colours.free[static_cast<size_t>(index)] = false;
    }
    pixels.resize(stride * static_cast<size_t>(y + 1));
  }
  writeWhole(file, mcgFile({.width = static_cast<uint32_t>(width),
                            .height = static_cast<uint32_t>(height),
                            .pixelBytes = static_cast<uint32_t>(pixels.size()),
                            .entries = 256},
                           colours.bytes() + literals(pixels)));
}

bool inCorner(int x, int y) {
  return x < 4 && y < 4;
}
bool onRim(int x, int y, int width, int height, int rim) {
  return x < rim || y < rim || x >= width - rim || y >= height - rim;
}

/// Cells side by side, one index each, within a rim of the key.
void writeCells(const fs::path& file, int cells, int width, int height, int firstIndex, int rim) {
  writePicture(file, cells * width, height, [=](int x, int y) {
    return onRim(x % width, y, width, height, rim) ? flat::FrameKey : firstIndex + x / width;
  });
}

void writePlain(const fs::path& file, int width, int height, int index) {
  writePicture(file, width, height, [=](int, int) { return index; });
}

/// A plate that leaves its corners out.
void writePlate(const fs::path& file, int width, int height, int face, int rim, int cut = 8) {
  writePicture(file, width, height, [=](int x, int y) {
    const bool corner = (x < cut || x >= width - cut) && (y < cut || y >= height - cut);
    if (corner) return flat::FrameKey;
    return onRim(x, y, width, height, 6) ? rim : face;
  });
}

/// Fields of eighty by eighty, by which places can be told.
void writeGround(const fs::path& file, int firstIndex) {
  writePicture(file, 640, 480, [=](int x, int y) { return firstIndex + (x / 80 + y / 80) % 8; });
}

void writeFigure(const fs::path& file, int width, int height, int number) {
  writePicture(file, width, height, [=](int x, int y) {
    if (inCorner(x, y)) return flat::FrameKey;
    return onRim(x, y, width, height, 8) ? flat::Figure + 5 + number : flat::Figure + number;
  });
}

void writeFrame(const fs::path& dat) {
  constexpr int Width = 640, Height = 127;
  // The art has a rim alone: the tinted picture shows through it.
  writePlate(dat / "mframe.mcg", Width, Height, flat::FrameKey, flat::Frame + 1);
  writePlate(dat / "mframeR.mcg", Width, Height, flat::Frame, flat::Frame + 1);
  writePicture(dat / "MDButton.mcg", 104, 74,
               [](int x, int y) { return inCorner(x, y) ? flat::FrameKey : flat::Frame + 2; });
  writeCells(dat / "Blink.mcg", 8, 16, 24, flat::Gem, 2);
  writeCells(dat / "MButton1.mcg", 4, 46, 28, flat::Button, 1);
  writeCells(dat / "MButton2.mcg", 4, 46, 28, flat::Button, 1);
  writeCells(dat / "MButton3.mcg", 4, 62, 50, flat::Button, 1);
  writePicture(dat / "mcframe.mcg", Width, Height, [](int x, int y) {
    if (x < 560) return 10;
    return y < 40 ? 4 : y < 62 ? 7 : 6;
  });
}

void writeChoices(const fs::path& dat) {
  struct Plate {
    const char *file, *outline;
    int height, cut;  ///< by their corners the outlines can be told apart
  };
  for (const Plate& plate : {Plate{"select01.mcg", "select1R.mcg", 122, 8},
                             {"select02.mcg", "select2R.mcg", 111, 24},
                             {"select03.mcg", "select3R.mcg", 111, 40}})
    for (const char* name : {plate.file, plate.outline})
      writePlate(dat / name, 565, plate.height, flat::Frame + 3, flat::Frame + 4, plate.cut);
  writePicture(dat / "mcsel.mcg", 51, 74, [](int x, int y) {
    if (inCorner(x, y)) return 0;
    return y < 40 ? 4 : 7;
  });
  for (const char* name : {"SButton1.mcg", "SButton2.mcg"})
    writeCells(dat / name, 4, 46, 28, flat::Button, 1);
}

void writePendant(const fs::path& dat) {
  writePlate(dat / "SysCut.mcg", 62, 122, flat::Frame, flat::Frame + 1);
  writePlate(dat / "SysCut2.mcg", 62, 122, flat::Frame + 3, flat::Frame + 4);
  // Twenty-one cells by how the heroines stand; the lit ones are told apart by a line below.
  for (const bool lit : {false, true})
    writePicture(dat / (lit ? "stone2.mcg" : "stone1.mcg"), 21 * 32, 32, [=](int x, int y) {
      return lit && y >= 28 ? flat::Frame + 2 : flat::Gem + x / 32;
    });
}

void writeBoxes(const fs::path& dat) {
  writePlate(dat / "YesNo.mcg", 306, 98, flat::Frame + 3, flat::Frame + 4);
  for (const char* name : {"yes.mcg", "no.mcg", "ok.mcg"})
    writeCells(dat / name, 4, 63, 22, flat::Button, 2);
}

/// The system's colours: what stands at 10, 14, 22 and 23 becomes black, red, blue and white.
void writeSystemColours(const fs::path& file) {
  Colours colours;
  colours.entries[0] = 0x203040;
  colours.entries[10] = 0x000000;
  colours.entries[14] = 0xE01020;
  colours.entries[22] = 0x1020E0;
  colours.entries[23] = 0xFFFFFF;
  writePicture(
      file, 16, 16, [](int x, int y) { return y * 16 + x; }, colours);
}

void writeFigures(const fs::path& cg) {
  struct FigureFile {
    const char *picture, *mouth;
    int width, height;
  };
  int number = 0;
  for (const FigureFile& figure : {FigureFile{"KDS011", "Kds011_a", 200, 400},
                                   {"KDS023", "Kds023_a", 300, 360},
                                   {"KDS041", "Kds041_a", 220, 320},
                                   {"KUC039", "Kuc039_a", 340, 420},
                                   {"KUC017", "Kuc017_a", 260, 280}}) {
    writeFigure(cg / (std::string(figure.picture) + ".mcg"), figure.width, figure.height, number++);
    writeCells(cg / (std::string(figure.mouth) + ".mcg"), 3, 48, 24, flat::Mouth, 0);
  }
  writeFigure(cg / "KUC011_p.mcg", 320, 480, 0);
  writeFigure(cg / "KUS091.mcg", 400, 300, 1);
}

}  // namespace

uint32_t flatColour(int index) {
  // The twenty that every palette has, and between them hues that lie far apart for neighbours.
  scobjPalette standing;
  standing.create(256);
  if (index < 10 || index >= 246) return standing.table()[static_cast<size_t>(index)] & 0xFFFFFF;
  if (index == flat::FrameKey) return 0xFF00FF;
  const auto channel = [index](int factor) {
    return static_cast<uint32_t>(index * factor % 200 + 40);
  };
  return channel(37) << 16 | channel(71) << 8 | channel(113);
}

void writeFlatPicture(const fs::path& file, int width, int height, int index, bool keyed) {
  writePicture(file, width, height,
               [=](int x, int y) { return keyed && inCorner(x, y) ? flat::FrameKey : index; });
}

void writeFlatGame(const fs::path& folder) {
  const fs::path dat = folder / "dat", cg = folder / "cg";
  writeFrame(dat);
  writeChoices(dat);
  writePendant(dat);
  writeBoxes(dat);
  writeSystemColours(dat / "L0pal.dat");
  writePlain(dat / "QVlogo.mcg", 640, 480, flat::Ground + 1);
  writeGround(cg / "KBA001.mcg", flat::Ground);
  writeGround(cg / "KBA002.mcg", flat::Ground + 4);
  writeGround(cg / "KEV001.mcg", flat::Event);
  for (const char* name : {"KEV001_a.mcg", "KEV003Ba.mcg", "KEV003Bb.mcg"})
    writeCells(cg / name, 3, 48, 24, flat::Mouth, 0);
  writeGround(cg / "KEV003B.mcg", flat::Event + 4);
  writeFigures(cg);
}

}  // namespace qv::testing
