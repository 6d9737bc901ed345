// The colours of a selection's plates, against the formula written out again.

#include "message/selection_plates.h"

#include "tests/unit/message/colour_formula.h"
#include "tests/unit/message/wait_ground.h"

namespace qv::testing {
namespace {

constexpr int32_t Entries = 256, FirstRaised = 10, LastRaised = 246;

Colour ofPicture(int32_t entry) {
  return {entry, 255 - entry, entry * 7 % 256};
}
Colour ofFrame(int32_t entry) {
  return {255 - entry, entry * 3 % 256, entry};
}

/// Plate 1 to 3 lit, 0 dim.
Colour expected(int32_t plate, bool black, int32_t entry) {
  // The system's colours at both ends, which text and art keep.
  if (entry <= 9 || entry >= 246) return ofFrame(entry);
  static constexpr Colour Casts[] = {
      {150, 150, 150}, {220, 100, 100}, {100, 220, 100}, {100, 100, 220}};
  static constexpr Colour Raises[] = {{100, 100, 100}, {100, 0, 0}, {0, 100, 0}, {0, 0, 100}};
  if (!black) return tinted(ofPicture(entry), Casts[plate]);
  const bool raises = entry >= FirstRaised && entry <= LastRaised;
  return raises ? raised(ofPicture(entry), Raises[plate]) : ofPicture(entry);
}

class PlateColoursTest : public WaitTest {
 protected:
  PlateColoursTest() {
    fill(host.view.surfaceView.surface, ofPicture);
    fill(createSurface("mfrm.surf", 8, 8), ofFrame);
  }
  static void fill(QVVSurface& surface, Colour (*colour)(int32_t)) {
    ColourTable table{};
    for (int32_t entry = 0; entry < Entries; ++entry) {
      const Colour word = colour(entry);
      table[static_cast<size_t>(entry)] =
          static_cast<uint32_t>(word.red << 16 | word.green << 8 | word.blue);
    }
    surface.setColours(table, 0, 0, Entries);
  }
  void name(const char* background, const char* event) {
    manager.StrReg(BackgroundName).create(QVString::DefaultGrain, background);
    manager.StrReg(EventPictureName).create(QVString::DefaultGrain, event);
  }
  static void expectColours(bool black) {
    const PlateColours colours;
    for (int32_t plate = 0; plate <= MostChoices; ++plate)
      for (int32_t entry = 0; entry < Entries; ++entry)
        ASSERT_EQ(at(plate == 0 ? colours.dim() : colours.bright(plate), entry),
                  expected(plate, black, entry))
            << "plate " << plate << ", entry " << entry;
  }
};

TEST_F(PlateColoursTest, FollowTheirFormula) {
  name("KBA014", "");
  expectColours(false);
}

TEST_F(PlateColoursTest, AreRaisedUnderTheBlackNameOfThePictureOrTheEvent) {
  name("BLACK", "");
  expectColours(true);
  name("KBA014", "BLACK");
  expectColours(true);
}

TEST_F(PlateColoursTest, AreTintedUnderTheNamesThatAreDarkForTheFrameAlone) {
  for (const char* dark : {"KBA020S1", "KBA020S2"}) {
    name(dark, "");
    expectColours(false);
    name("KBA014", dark);
    expectColours(false);
  }
}

}  // namespace
}  // namespace qv::testing
