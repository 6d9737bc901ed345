// Pictures for stories with lines: flat shapes of the sizes that the standing objects have, written
// below the folder that is the argument. They are drawn once, when the tests are built, since the
// compressor takes its time under a sanitizer.

#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>

#include "graphics/surface.h"
#include "tests/support/process.h"
#include "tools/picture_codec/picture_files.h"

namespace qv::testing {
namespace {

/// Draws with palette entries; an entry that it gives a colour is the picture's own.
class Canvas {
 public:
  Canvas(int32_t width, int32_t height, uint8_t ground) {
    picture_.width = width;
    picture_.height = height;
    picture_.pixels.assign(static_cast<size_t>(width) * static_cast<size_t>(height), ground);
    picture_.marks.fill(codec::IndexedPicture::Free);
    // The system's colours are in every table, and no picture's own.
    for (size_t entry = 0; entry < picture_.colours.size(); ++entry)
      picture_.colours[entry] = defaultColours()[entry] & 0xFFFFFF;
  }
  Canvas& colour(uint8_t entry, uint32_t rgb) {
    picture_.colours[entry] = rgb;
    picture_.marks[entry] = codec::IndexedPicture::Used;
    return *this;
  }
  Canvas& box(int32_t x, int32_t y, int32_t width, int32_t height, uint8_t entry) {
    for (int32_t row = y; row < y + height; ++row)
      for (int32_t column = x; column < x + width; ++column)
        set(column, row, entry);
    return *this;
  }
  Canvas& rim(int32_t inset, int32_t thick, uint8_t entry) {
    const int32_t w = picture_.width - 2 * inset, h = picture_.height - 2 * inset;
    box(inset, inset, w, thick, entry).box(inset, inset + h - thick, w, thick, entry);
    return box(inset, inset, thick, h, entry).box(inset + w - thick, inset, thick, h, entry);
  }
  void set(int32_t x, int32_t y, uint8_t entry) {
    if (x < 0 || y < 0 || x >= picture_.width || y >= picture_.height) return;
    picture_.pixels[static_cast<size_t>(y) * static_cast<size_t>(picture_.width) +
                    static_cast<size_t>(x)] = entry;
  }
  void write(const std::filesystem::path& file) const {
    std::filesystem::create_directories(file.parent_path());
    const std::vector<uint8_t> bytes = codec::encodeMcg(picture_);
    writeWhole(file, std::string(bytes.begin(), bytes.end()));
  }

 private:
  codec::IndexedPicture picture_;
};

// Entries: 10 to 127 pictures, 128 to 169 figures, 212 to 244 the frame, 245 its key.
constexpr uint8_t ArtKey = 245, Gold = 212, Panel = 213, SkipInk = 214, PromptInk = 215,
                  ButtonUp = 216, ButtonDown = 217, ButtonOff = 218, PendantDark = 219,
                  PendantLit = 220, SpriteKey = 169;
constexpr int32_t StripWidth = 640, StripHeight = 127;

Canvas framed(int32_t width, int32_t height) {
  Canvas canvas(width, height, ArtKey);
  canvas.colour(ArtKey, 0xFF00FF).colour(Gold, 0xC8A040).colour(Panel, 0x604820);
  canvas.colour(SkipInk, 0xE04030).colour(PromptInk, 0xF0F0A0).colour(ButtonUp, 0x4060C0);
  canvas.colour(ButtonDown, 0x80C0F0).colour(ButtonOff, 0x707070).colour(PendantDark, 0x305030);
  return canvas.colour(PendantLit, 0x60F060);
}

/// Four pictures side by side: up, down, and both without use. Statics for plates, whose palette
/// is another's.
Canvas buttonStrip(int32_t width, int32_t height, bool plates) {
  constexpr uint8_t Static[] = {4, 7, 8, 248};
  constexpr uint8_t Own[] = {ButtonUp, ButtonDown, ButtonOff, Panel};
  Canvas canvas = framed(width * 4, height);
  for (int32_t state = 0; state < 4; ++state)
    canvas.box(state * width + 2, 2, width - 4, height - 4, plates ? Static[state] : Own[state]);
  return canvas;
}

void writeFrame(const std::filesystem::path& dat) {
  Canvas frame = framed(StripWidth, StripHeight);
  frame.rim(6, 4, Gold).box(586, 6, 44, 68, Panel);
  // The buttons as their strips have them: the frame is drawn over them with each line.
  frame.box(588, 14, 40, 24, ButtonUp).box(588, 45, 40, 14, ButtonUp).box(569, 64, 56, 8, ButtonUp);
  frame.write(dat / "mframe.mcg");
  framed(StripWidth, StripHeight).box(4, 4, 632, 119, Gold).write(dat / "mframeR.mcg");
  framed(104, 74)
      .box(0, 6, 44, 68, SkipInk)
      .box(8, 20, 28, 8, PromptInk)
      .write(dat / "MDButton.mcg");
  Canvas prompt = framed(8 * 16, 24);
  for (int32_t cell = 0; cell < 8; ++cell)
    prompt.box(cell * 16 + 4, 2 + cell, 8, 20 - 2 * cell, PromptInk);
  prompt.write(dat / "Blink.mcg");
  buttonStrip(44, 28, false).write(dat / "MButton1.mcg");
  buttonStrip(44, 18, false).write(dat / "MButton2.mcg");
  buttonStrip(60, 12, false).write(dat / "MButton3.mcg");
  Canvas regions(StripWidth, StripHeight, 10);
  regions.box(586, 12, 44, 28, 4).box(586, 43, 44, 18, 7).box(567, 62, 60, 12, 6);
  regions.write(dat / "mcframe.mcg");
}

void writePlates(const std::filesystem::path& dat) {
  struct Plate {
    const char *art, *outline;
    int32_t height;
  };
  for (const Plate& plate : {Plate{"select01.mcg", "select1R.mcg", 122},
                             {"select02.mcg", "select2R.mcg", 111},
                             {"select03.mcg", "select3R.mcg", 111}}) {
    framed(565, plate.height).rim(6, 3, 7).rim(9, 2, 248).write(dat / plate.art);
    framed(565, plate.height).box(5, 5, 555, plate.height - 10, 7).write(dat / plate.outline);
  }
  buttonStrip(36, 26, true).write(dat / "SButton1.mcg");
  buttonStrip(36, 26, true).write(dat / "SButton2.mcg");
  Canvas(51, 122, 0).box(0, 12, 36, 26, 4).box(0, 43, 36, 26, 7).write(dat / "mcsel.mcg");
}

void writePendant(const std::filesystem::path& dat) {
  framed(62, 122).box(4, 4, 54, 114, PendantDark).write(dat / "SysCut.mcg");
  framed(62, 122).box(4, 4, 54, 114, PendantLit).write(dat / "SysCut2.mcg");
  framed(21 * 32, 32).write(dat / "stone1.mcg");
  framed(21 * 32, 32).write(dat / "stone2.mcg");
}

/// The small boxes, and the system's colours by entry.
void writeBoxes(const std::filesystem::path& dat) {
  framed(306, 98).box(0, 0, 306, 98, Panel).rim(0, 3, Gold).write(dat / "YesNo.mcg");
  for (const char* name : {"yes.mcg", "no.mcg", "ok.mcg"})
    buttonStrip(63, 23, false).write(dat / name);
  constexpr uint32_t Colours[] = {0x000000, 0x800000, 0x008000, 0x808000, 0xFF0000,
                                  0x800080, 0x008080, 0xC0C0C0, 0x00FF00, 0xFFFF00,
                                  0x808080, 0x00FFFF, 0x0000FF, 0xFFFFFF};
  Canvas system(16, 16, 10);
  uint8_t entry = 10;
  for (const uint32_t rgb : Colours)
    system.colour(entry++, rgb);
  system.write(dat / "L0pal.dat");
}

/// A picture of soft steps between two greys of a tone.
Canvas scenery(uint32_t from, uint32_t to) {
  constexpr int32_t Steps = 64, First = 11;
  Canvas canvas(640, 480, First);
  canvas.colour(10, 0);
  for (int32_t step = 0; step < Steps; ++step) {
    uint32_t rgb = 0;
    for (int shift = 0; shift <= 16; shift += 8) {
      const auto low = static_cast<int32_t>(from >> shift & 255),
                 high = static_cast<int32_t>(to >> shift & 255);
      rgb |= static_cast<uint32_t>(low + (high - low) * step / (Steps - 1)) << shift;
    }
    canvas.colour(static_cast<uint8_t>(First + step), rgb);
  }
  for (int32_t y = 0; y < 480; ++y)
    for (int32_t x = 0; x < 640; ++x)
      canvas.set(x, y, static_cast<uint8_t>(First + (x / 20 + y / 10) * (Steps - 1) / 78));
  return canvas;
}

Canvas figure(int32_t width, int32_t height, uint8_t base, uint32_t dress) {
  Canvas canvas(width, height, SpriteKey);
  canvas.colour(SpriteKey, 0x00FFFF).colour(base, dress);
  canvas.colour(static_cast<uint8_t>(base + 1), 0xF8D8C0);
  canvas.colour(static_cast<uint8_t>(base + 2), 0xC02020);
  return canvas;
}

/// Two figures with mouths of three cells: shut, half open, open.
void writeFigures(const std::filesystem::path& cg) {
  struct Form {
    const char *body, *mouth;
    uint8_t base;
    uint32_t dress;
  };
  for (const Form& form : {Form{"KDS012.mcg", "Kds012_a.mcg", 128, 0x2040A0},
                           {"KDS022.mcg", "Kds022_a.mcg", 140, 0x208040}}) {
    const auto skin = static_cast<uint8_t>(form.base + 1),
               lip = static_cast<uint8_t>(form.base + 2);
    figure(120, 300, form.base, form.dress)
        .box(10, 90, 100, 210, form.base)
        .box(30, 10, 60, 80, skin)
        .write(cg / form.body);
    Canvas mouth = figure(3 * 32, 16, form.base, form.dress);
    mouth.box(0, 0, 96, 16, skin);
    for (int32_t cell = 0; cell < 3; ++cell)
      mouth.box(cell * 32 + 4, 7 - 2 * cell, 24, 2 + 4 * cell, lip);
    mouth.write(cg / form.mouth);
  }
}

}  // namespace
}  // namespace qv::testing

int main(int count, char** arguments) {
  using namespace qv::testing;
  if (count != 2) return 2;
  const std::filesystem::path dat = std::filesystem::path(arguments[1]) / "dat",
                              cg = std::filesystem::path(arguments[1]) / "cg";
  try {
    writeFrame(dat);
    writePlates(dat);
    writePendant(dat);
    writeBoxes(dat);
    scenery(0xC8E0F8, 0xF8E8B0).write(cg / "KBA014.mcg");
    scenery(0x101828, 0x402838).write(cg / "KBA015.mcg");
    writeFigures(cg);
  } catch (const std::exception& problem) {
    std::fprintf(stderr, "%s\n", problem.what());
    return 1;
  }
  return 0;
}
