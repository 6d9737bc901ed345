// Pages, waits, backgrounds, links, voices and pictures of print areas.

#include "message/print_area.h"

#include "audio/wave.h"
#include "foundation/diagnostic.h"
#include "graphics/animation/animation_area.h"
#include "graphics/animation/animation_sequence.h"
#include "graphics/animation/animation_surface.h"
#include "message/no_line_start.h"
#include "tests/support/wave_bytes.h"
#include "tests/unit/message/area_ground.h"

namespace qv::testing {
namespace {

constexpr uint8_t Ground = 17, Ink = 99;

/// What the next waits do, and what they were given. A wait is a plain function.
struct Waits {
  int count = 0;
  Rectangle rectangle;
  View* view = nullptr;
  int32_t time = 0;
  std::function<void(QVHitret&)> act;
};
Waits* waits = nullptr;

int32_t recordedWait(QVHitret& hitret) {
  ++waits->count;
  waits->rectangle = hitret.rectangle();
  waits->view = hitret.view();
  waits->time = hitret.time();
  if (waits->act) waits->act(hitret);
  return 0;
}

class PrintArea : public AreaTest {
 protected:
  PrintArea() {
    waits = &recorded;
    hitret.setWait(recordedWait);
    surface.fill(Ground);
    screen.surface.fill(Ground);
  }
  void showOnView() {
    area.setView(&screen);
    area.setHitret(hitret);
  }
  uint8_t at(int32_t x, int32_t y) const { return surface.pixel(x, y); }

  Waits recorded;
  QVHitret hitret;
  FakeView screen{640, 480};
};

// --- Settings ---

TEST_F(PrintArea, BeginsWithItsDefaults) {
  const QVPrintArea fresh;
  EXPECT_EQ(fresh.rectangle(), Rectangle());
  EXPECT_EQ(fresh.position(), PenPosition());
  EXPECT_EQ(fresh.flags(), 0u);
  EXPECT_EQ(fresh.indentLeft(), 0);
  EXPECT_EQ(fresh.font().height(), 16);
  EXPECT_EQ(utf8OfShiftJis(fresh.font().face()), "ＭＳ ゴシック");
}

TEST_F(PrintArea, GivesTheOldValuesOfWhatIsSet) {
  EXPECT_EQ(area.setLineHeight(14), 20);
  EXPECT_EQ(area.setLineHeight(0), 14);
  EXPECT_EQ(area.setLineHeight(-3), 14);
  EXPECT_EQ(area.setIndent(5, 0), 0);
  EXPECT_EQ(area.setIndent(6, 0), 5);
  EXPECT_EQ(area.setIndent(7, 1), 0);
  EXPECT_EQ(area.setIndent(8, 2), 7);
  EXPECT_EQ(area.setView(&screen), nullptr);
  EXPECT_EQ(area.setView(nullptr), &screen);
}

TEST_F(PrintArea, ReplacesFlagsOrAddsToThem) {
  area.setFlags(QVPrintArea::FlagOutline);
  area.setFlags(QVPrintArea::FlagCentre, false);
  EXPECT_EQ(area.flags(), QVPrintArea::FlagOutline | QVPrintArea::FlagCentre);
  area.setFlags(QVPrintArea::FlagOneLine);
  EXPECT_EQ(area.flags(), QVPrintArea::FlagOneLine);
}

TEST_F(PrintArea, ReportsAPenOutsideAndPutsItIntoTheCorner) {
  area.setRect(10, 20, 100, 60);
  for (const auto& [x, y] : {std::pair{9, 20}, {10, 19}, {110, 20}, {10, 80}}) {
    boxes().clear();
    area.setPosition(x, y);
    expectPen(10, 20);
    ASSERT_EQ(boxes().size(), 1u);
    EXPECT_EQ(utf8OfShiftJis(boxes()[0].text), OutsideText);
    EXPECT_EQ(boxes()[0].caption, "QVPrintArea manager");
    EXPECT_EQ(boxes()[0].flags, 0x12030u);
  }
  boxes().clear();
  area.setPosition(109, 79);
  expectPen(109, 79);
  EXPECT_TRUE(boxes().empty());
}

TEST_F(PrintArea, HomesIntoTheCornerAndWithAnOutlineAPixelFurtherIn) {
  area.setRect(10, 20, 100, 60);
  area.setIndent(4, 0);
  area.home();
  expectPen(14, 20);
  area.setFlags(QVPrintArea::FlagOutline);
  area.home();
  expectPen(15, 21);
  EXPECT_TRUE(boxes().empty());
}

TEST_F(PrintArea, ReportsAnIndentThatIsTooWideAndGoesOnWithoutIt) {
  area.setIndent(200, 0);
  area.home();
  expectPen(0, 0);
  EXPECT_EQ(area.indentLeft(), 0);
  ASSERT_EQ(boxes().size(), 1u);
  EXPECT_EQ(utf8OfShiftJis(boxes()[0].text), IndentText);
  EXPECT_EQ(boxes()[0].caption, "QVPrintArea manager");
  area.setIndent(300, 0);
  area.setPosition(50, 60);
  print("あ\nい");
  EXPECT_EQ(boxes().size(), 2u);  // the first run finds no room and makes a line
  EXPECT_EQ(area.indentLeft(), 0);
  EXPECT_EQ(drawn(), (Runs{"0,0 あ", "0,20 い"}));
}

TEST_F(PrintArea, WithoutARectangleReportsEachHome) {
  QVPrintArea bare;
  bare.home();
  bare.home();
  EXPECT_EQ(boxes().size(), 2u);
}

TEST_F(PrintArea, WithoutATargetDoesNothing) {
  area.setSurface(nullptr);
  area.setPosition(7, 8);
  print("あ\n");
  area.clear(true, true);
  area.saveBackground();
  area.printSurface(surface, {}, KeyNone, false, false);
  EXPECT_TRUE(drawn().empty());
  expectPen(7, 8);
}

// --- Pages ---

TEST_F(PrintArea, OnASurfaceClearsAFullPageAndGoesOnWithoutAWait) {
  area.setHitret(hitret);
  area.setRect(0, 0, 100, 40);
  print("あ\nい\nう");
  EXPECT_EQ(drawn(), (Runs{"0,0 あ", "0,20 い", "0,0 う"}));
  EXPECT_EQ(recorded.count, 0);
  EXPECT_EQ(at(50, 30), 255);
  EXPECT_EQ(at(50, 41), Ground);
}

TEST_F(PrintArea, OnAViewWaitsAtAFullPageBeforeItClears) {
  showOnView();
  area.setRect(8, 4, 100, 40);
  area.setPosition(8, 4);
  std::vector<uint8_t> pixels;
  recorded.act = [&](QVHitret&) {
    pixels.push_back(screen.surface.pixel(50, 30));
    EXPECT_EQ(device.drawn.size(), 2u);
  };
  print("あ\nい\nう");
  EXPECT_EQ(recorded.count, 1);
  EXPECT_EQ(pixels, std::vector<uint8_t>{Ground});
  EXPECT_EQ(screen.surface.pixel(50, 30), 255);
  EXPECT_EQ(recorded.rectangle, (Rectangle{8, 4, 108, 44}));
  EXPECT_EQ(recorded.view, &screen);
  EXPECT_EQ(recorded.time, -1);
  EXPECT_EQ(drawn().back(), "8,4 う");
}

TEST_F(PrintArea, TakesTheWaitThatAPrintIsGivenBeforeItsOwn) {
  area.setView(&screen);
  area.setRect(0, 0, 100, 20);
  area.printText("a\nb", &hitret);
  EXPECT_EQ(recorded.count, 1);
  EXPECT_TRUE(boxes().empty());
}

TEST_F(PrintArea, WithAnOutlineBeginsALaterPageAtTheVeryTop) {
  area.setFlags(QVPrintArea::FlagOutline);
  area.setRect(0, 0, 100, 20);
  area.home();
  expectPen(1, 1);
  print("あ\nい");
  expectPen(1 + 18, 0);
}

TEST_F(PrintArea, FlushesEvenAnEmptyText) {
  showOnView();
  print("");
  EXPECT_EQ(screen.invalidations, 1);
  screen.update();
  EXPECT_EQ(screen.updated, (Rectangle{0, 0, 200, 100}));
}

TEST_F(PrintArea, WaitsBehindTheTextWhereItIsAskedToAndClears) {
  showOnView();
  area.printText("a", nullptr, nullptr, nullptr, true);
  EXPECT_EQ(recorded.count, 1);
  expectPen(0, 0);
  EXPECT_EQ(screen.surface.pixel(150, 90), 255);
  area.setSurface(&surface);
  area.printText("a", nullptr, nullptr, nullptr, true);  // an area without a view never waits
  EXPECT_EQ(recorded.count, 1);
  EXPECT_EQ(at(150, 90), Ground);
}

TEST_F(PrintArea, KeepsOthersOutForAsLongAsThePlayerThinks) {
  showOnView();
  std::string order;
  Thread other;
  recorded.act = [&](QVHitret&) {
    other.start("other", [&] {
      area.setLineHeight(7);
      order += "other ";
    });
    sleepMillis(5000);
    order += "player ";
  };
  area.printText("a", nullptr, nullptr, nullptr, true);
  other.join();
  EXPECT_EQ(order, "player other ");
}

TEST_F(PrintArea, LetsTheExitPassAndIsFreeAfterIt) {
  showOnView();
  area.setRect(0, 0, 100, 20);
  recorded.act = [](QVHitret&) { throw ExitScenarioException(); };
  EXPECT_THROW(area.printText("a\nb"), ExitScenarioException);
  EXPECT_THROW(area.printText("a", nullptr, nullptr, nullptr, true), ExitScenarioException);
  Thread other;
  int32_t height = 0;
  other.start("other", [&] { height = area.setLineHeight(9); });
  EXPECT_TRUE(other.join(1000));
  EXPECT_EQ(height, 20);
}

TEST_F(PrintArea, TakesAFontAndAColourThatAWaitSetsForTheNextPrint) {
  showOnView();
  area.setRect(0, 0, 100, 20);
  area.setColour(0x10, 0);
  recorded.act = [&](QVHitret&) {
    area.setFont(30, -1, -1, -1, -1, nullptr);
    area.setColour(0x20, 0);
  };
  area.printText("a\nb");
  area.printText("c");
  ASSERT_EQ(device.drawn.size(), 3u);
  EXPECT_EQ(device.styles[1].heightPixels, 16);
  EXPECT_EQ(device.drawn[1].colour, 0x10u);
  EXPECT_EQ(device.styles[2].heightPixels, 30);
  EXPECT_EQ(device.drawn[2].colour, 0x20u);
}

TEST_F(PrintArea, PrintsATextThatIsChangedWhileItWaits) {
  showOnView();
  area.setRect(0, 0, 100, 20);
  std::string text = "a\nbcd";
  recorded.act = [&](QVHitret&) { text = std::string(5, 'X'); };
  area.printText(text.c_str());
  EXPECT_EQ(drawn().back(), "0,0 bcd");
}

// --- Backgrounds and links ---

TEST_F(PrintArea, ClearsWithWhiteAtFirst) {
  area.setRect(10, 10, 20, 20);
  area.clear(true, true);
  EXPECT_EQ(at(10, 10), 255);
  EXPECT_EQ(at(29, 29), 255);
  EXPECT_EQ(at(30, 29), Ground);
  EXPECT_EQ(at(9, 10), Ground);
  expectPen(10, 10);
}

TEST_F(PrintArea, ClearsWithWhatLayThereWhenItWasSaved) {
  area.setRect(600, 470, 80, 80);  // reaches beyond the surface
  const Rectangle mark = Rectangle::at(605, 472, 3, 3);
  surface.fill(Ink, &mark);
  area.saveBackground();
  surface.fill(1);
  area.clear(false, false);
  EXPECT_EQ(at(605, 472), Ink);
  EXPECT_EQ(at(604, 472), Ground);
  EXPECT_EQ(at(639, 479), Ground);
  EXPECT_EQ(at(599, 475), 1);
}

TEST_F(PrintArea, OutsideItsTargetSavesNothing) {
  area.setRect(700, 0, 20, 20);
  area.saveBackground();
  area.setRect(0, 0, 20, 20);
  area.clear(false, false);
  EXPECT_EQ(at(5, 5), 255);
}

TEST_F(PrintArea, FlushesAClearOnlyWhenTold) {
  showOnView();
  area.clear(false, false);
  EXPECT_EQ(screen.invalidations, 0);
  area.clear(false, true);
  EXPECT_EQ(screen.invalidations, 1);
}

TEST_F(PrintArea, ClearsItsLinkAndHomesItByItsFlag) {
  QVPrintArea name;
  name.setSurface(&surface);
  name.setRect(300, 0, 20, 20);
  name.setPosition(310, 10);
  area.setLink(&name);
  area.clear(false, false);
  EXPECT_EQ(at(305, 5), Ground);
  area.clear(true, false);
  EXPECT_EQ(at(305, 5), 255);
  EXPECT_EQ(name.position(), (PenPosition{300, 0}));
}

TEST_F(PrintArea, ClearsACircleOfLinksOnce) {
  QVPrintArea second;
  second.setSurface(&surface);
  second.setRect(300, 0, 20, 20);
  area.setLink(&second);
  second.setLink(&area);
  area.clear(true, true);
  EXPECT_EQ(at(305, 5), 255);
  area.setLink(&area);
  area.clear(true, true);
}

TEST_F(PrintArea, ForgetsWhatIsGone) {
  QVPrintArea second;
  area.setLink(&second);
  area.forget(&second);
  area.clear(true, false);  // does not reach for it
  area.forget(&surface);
  print("あ");
  EXPECT_TRUE(drawn().empty());
}

// --- Voices ---

class SpeakingArea : public PrintArea {
 protected:
  SpeakingArea() {
    platform.writeFile(platform.game() / "voice.wav", silentWave(2000));
    writeLetters(platform);
    cells.load(3, "abc.bmp", false, KeyTopLeft);
    sequence.setText("B5[C5.]", false);
    mouth.setTarget(&surface);
    mouth.setRect({500, 400, 502, 402});
    mouth.relate(&cells);
    mouth.relateSequence(&sequence);
    showOnView();
    area.setWave(&wave);
  }
  size_t playing() { return platform.wave().sent().size(); }

  QVWave wave;
  QVAnimationSurface cells;
  AnimationSequence sequence;
  QVAnimationArea mouth;
};

TEST_F(SpeakingArea, StartsTheVoiceWithTheMouthAndStopsBothBehindTheWait) {
  recorded.act = [&](QVHitret&) {
    sleepMillis(100);
    EXPECT_TRUE(wave.isPlaying());
    EXPECT_TRUE(mouth.running());
  };
  area.printText("a", nullptr, "voice.wav", &mouth, true);
  EXPECT_EQ(playing(), 1u);
  EXPECT_FALSE(wave.isPlaying());
  EXPECT_FALSE(mouth.running());
}

TEST_F(SpeakingArea, LeavesTheVoiceSoundingWithoutAWait) {
  area.printText("a", nullptr, "voice.wav", nullptr, false);
  EXPECT_TRUE(wave.isPlaying());
  wave.stop();
}

TEST_F(SpeakingArea, MovesTheMouthByItselfWithoutAVoice) {
  recorded.act = [&](QVHitret&) {
    sleepMillis(100);
    EXPECT_TRUE(mouth.running());
  };
  area.printText("a", nullptr, nullptr, &mouth, true);
  EXPECT_EQ(recorded.count, 1);
  EXPECT_EQ(playing(), 0u);
  EXPECT_FALSE(mouth.running());
}

TEST_F(SpeakingArea, MovesTheMouthByItselfWithoutADevice) {
  platform.wave().setAvailable(false);
  QVWave none;
  area.setWave(&none);
  recorded.act = [&](QVHitret&) { EXPECT_TRUE(mouth.running()); };
  area.printText("a", nullptr, "voice.wav", &mouth, true);
  EXPECT_FALSE(mouth.running());
  area.setWave(nullptr);
  area.printText("a", nullptr, "voice.wav", &mouth, true);
  EXPECT_EQ(recorded.count, 2);
}

TEST_F(SpeakingArea, StopsVoiceOrMouthWhenAWaitIsLeftByTheExit) {
  recorded.act = [](QVHitret&) { throw ExitScenarioException(); };
  EXPECT_THROW(area.printText("a", nullptr, "voice.wav", &mouth, true), ExitScenarioException);
  EXPECT_FALSE(wave.isPlaying());
  EXPECT_THROW(area.printText("a", nullptr, nullptr, &mouth, true), ExitScenarioException);
  EXPECT_FALSE(mouth.running());
}

// --- Pictures ---

class PicturesInAnArea : public PrintArea {
 protected:
  PicturesInAnArea() {
    picture.create(30, 10);
    picture.fill(5);
    const Rectangle corner = Rectangle::at(0, 0, 2, 2);
    picture.fill(6, &corner);
  }
  QVVSurface picture;
};

TEST_F(PicturesInAnArea, ShareThePenWithTheText) {
  area.setPosition(20, 20);
  area.printSurface(picture, {}, KeyNone, false, false);
  expectPen(50, 20);
  EXPECT_EQ(at(20, 20), 6);
  EXPECT_EQ(at(49, 29), 5);
  EXPECT_EQ(at(50, 29), Ground);
  print("あ");
  EXPECT_EQ(drawn(), (Runs{"50,20 あ"}));
}

TEST_F(PicturesInAnArea, TakeAPartAndAKey) {
  area.printSurface(picture, {1, 1, 5, 4}, KeyTopLeft, false, false);
  EXPECT_EQ(at(0, 0), Ground);
  EXPECT_EQ(at(1, 1), 5);
  EXPECT_EQ(at(3, 2), 5);
  EXPECT_EQ(at(3, 3), Ground);
  expectPen(4, 0);
  area.printSurfaceKeyless(picture, {1, 1, 5, 4}, false, false);
  EXPECT_EQ(at(4, 0), 6);
}

TEST_F(PicturesInAnArea, AreCutAtTheAreaAndMakeALineThere) {
  area.setLineHeight(1);
  area.setPosition(190, 95);
  area.printSurface(picture, {}, KeyNone, true, false);
  EXPECT_EQ(at(199, 99), 5);
  EXPECT_EQ(at(200, 95), Ground);
  EXPECT_EQ(at(190, 100), Ground);
  expectPen(0, 96);
}

TEST_F(PicturesInAnArea, OnAViewAreMarkedAndMayBeWaitedFor) {
  showOnView();
  area.setPosition(10, 10);
  area.printSurface(picture, {}, KeyNone, false, false);
  screen.update();
  EXPECT_EQ(screen.updated, (Rectangle{10, 10, 40, 20}));
  area.printSurface(picture, {}, KeyNone, false, true);
  EXPECT_EQ(recorded.count, 1);
  EXPECT_EQ(recorded.time, -1);
  expectPen(0, 0);
}

TEST_F(PicturesInAnArea, ComeFromFilesAndOfMissingOnesComesNothing) {
  platform.writeFile(platform.game() / "p.bmp", bitmapOf({"ABC", "DEF"}));
  area.printImageFile("p.bmp", KeyNone, false, false);
  EXPECT_EQ(at(2, 1), 6);
  expectPen(3, 0);
  area.printImageKeyless("none.bmp", false, false);
  platform.writeFile(platform.game() / "bad.bmp", "BM");
  area.printImageKeyless("bad.bmp", false, false);
  area.printImageKeyless(nullptr, false, false);
  expectPen(3, 0);
  EXPECT_TRUE(boxes().empty());
}

}  // namespace
}  // namespace qv::testing
