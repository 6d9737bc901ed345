// The show reel: every way in which a picture comes onto the screen, one after the other. Any input
// between two pieces goes back to the title.

#include <array>
#include <string>

#include "graphics/animation/scroll_stage.h"
#include "graphics/pace.h"
#include "graphics/palette.h"
#include "graphics/transition/transition_engine.h"
#include "graphics/view.h"
#include "platform/text/shift_jis.h"
#include "scenario/scenario.h"
#include "scenes/scene_form.h"

using namespace qv;

QV_SCENE(sc_menu);

namespace {

constexpr int32_t Width = 640, Height = 480;
constexpr int32_t SpriteY = 20;
constexpr int32_t BlinkCells = 8, MouthCells = 3;

const std::array Backgrounds{"cg\\KBA014.mcg", "cg\\KBA015.mcg", "cg\\KBA021.mcg", "cg\\KBA030.mcg",
                             "cg\\KBA040.mcg", "cg\\KBA041.mcg", "cg\\KBA049.mcg"};
/// Two skies over one place, with one table of colours for both.
const std::array Gates{"cg\\KBA014.mcg", "cg\\KBA015.mcg"};
const std::array Masks{"dat\\mask01.mcg", "dat\\mask02.mcg", "dat\\mask03.mcg", "dat\\mask04.mcg"};

/// What the player has pressed ends the reel.
class ReelEnds {};

/// Shows what stands for this long.
void look(int32_t tenths) {
  if (theScenario->WaitInput(nullptr, tenths) != WaitInputTimeout) throw ReelEnds();
}

const char* nextBackground() {
  static size_t at = 0;
  return Backgrounds[at++ % Backgrounds.size()];
}

View* screenView() {
  WindowObject* window = theScenario->FindView("cg.view");
  return window ? window->view() : nullptr;
}

void bring(int32_t effect, int32_t lookTenths) {
  constexpr int32_t PaletteFade = 9, FadeSteps = 12;
  // The palette fade begins in the old picture's colours: black is the one that suits all.
  if (effect == PaletteFade) theScenario->FadeView("cg.view", FadeSteps, 0, 0);
  theScenario->DrawTo("cg.view", nextBackground(), effect == PaletteFade ? FadeSteps : 0, 0, 0, 0,
                      0, 0, effect);
  look(lookTenths);
}

/// Effects that mix both pictures on the surface show the old one in the new one's colours.
void dissolve(int32_t effect) {
  static size_t at = 0;
  theScenario->DrawTo("cg.view", Gates[at++ % Gates.size()], 0, 0, 0, 0, 0, 0, effect);
  look(2);
}

void everyEffect() {
  struct Range {
    int32_t first, last;
  };
  for (int32_t effect = 1; effect <= 5; ++effect)
    dissolve(effect);
  for (int32_t effect = 9; effect <= 23; ++effect)
    bring(effect, 2);
  theScenario->DrawTo("cg.view", Gates.back(), 0, 0, 0, 0, 0, 0, 44);
  for (int32_t effect = 26; effect <= 29; ++effect)
    dissolve(effect);
  for (const Range range : {Range{30, 52}, Range{60, 63}})
    for (int32_t effect = range.first; effect <= range.last; ++effect)
      bring(effect, 2);
}

/// The shape wipes take pictures of a mask, which only the engine itself is given.
void shapeWipes() {
  constexpr int32_t FirstWipe = 65, LastWipe = 80, Steps = 10, StepMillis = 15;
  Pace pace(&theScenario->host()->abortEvent.handle());
  for (int32_t effect = FirstWipe; effect <= LastWipe; ++effect) {
    QVVSurface picture, first, second;
    picture.loadFromFile(nextBackground());
    first.loadFromFile(Masks[static_cast<size_t>(effect) % Masks.size()]);
    second.loadFromFile(Masks[static_cast<size_t>(effect + 1) % Masks.size()]);
    TransitionEngine engine(screenView(), {&picture, &first, &second}, {}, pace,
                            [](uint32_t limit) { return theScenario->Random(limit); });
    engine.run(effect, KeyNone, Steps, StepMillis);
    look(1);
  }
}

/// A surface's colours take those that a picture owns.
void takeOwnColours(QVVSurface& target, const char* file) {
  constexpr int32_t FirstFree = 10, LastFree = 245;
  QVDib picture;
  picture.loadByName(file);
  ColourTable table = target.storedColours();
  MergePalette(picture, table, FirstFree, LastFree, false);
  target.setColours(table, 0, 0, static_cast<int32_t>(table.size()));
}

QVVSurface& screen() {
  return *screenView()->surface8();
}

void sprites() {
  struct Entrance {
    const char* file;
    int32_t x, effect;
  };
  bring(9, 2);
  for (const Entrance& entrance :
       {Entrance{"cg\\KDS012.mcg", 20, 3}, Entrance{"cg\\KDS022.mcg", 330, 11}}) {
    const SurfaceHandle sprite("reel.surf", entrance.file, DestroyWithHandle);
    if (!sprite.surface()) continue;
    takeOwnColours(screen(), entrance.file);
    theScenario->DrawTo("cg.view", "reel.surf", entrance.x, SpriteY, 0, 0, 0, 0, entrance.effect,
                        KeyTopLeft);
    look(8);
  }
}

/// A mouth that speaks and a prompt that blinks, each on a thread of its own.
void animations() {
  for (const char* file : {"cg\\Kds012_a.mcg", "dat\\Blink.mcg"})
    takeOwnColours(screen(), file);
  const Rectangle mouthPlace = Rectangle::at(20 + 136, SpriteY + 125, 32, 24);
  const Rectangle blinkPlace = Rectangle::at(Width / 2 - 8, Height - 30, 16, 24);
  theScenario->CreateObject("reel.mouth", TypeAnimationSurface,
                            {"cg\\Kds012_a.mcg", MouthCells, KeyTopLeft});
  theScenario->CreateObject("reel.speech", TypeAnimationSequence,
                            {"A5[.]C5[.]B5[.]A5[.]B5[.]C5[.]B5[.]A5[.]", 0});
  theScenario->CreateObject("reel.mouth.Area", TypeAnimationArea, {&mouthPlace});
  theScenario->CreateObject("reel.blink", TypeAnimationSurface,
                            {"dat\\Blink.mcg", BlinkCells, KeyTopLeft});
  theScenario->CreateObject("reel.blinking", TypeAnimationSequence,
                            {"A..B..C..D..E..F..G..H..", 0});
  theScenario->CreateObject("reel.blink.Area", TypeAnimationArea, {&blinkPlace});
  theScenario->RelateAnimation("reel.mouth.Area", "reel.mouth", "reel.speech", 1, 0, 0, 1);
  theScenario->RelateAnimation("reel.blink.Area", "reel.blink", "reel.blinking", 1, 0, 0, 1);
  theScenario->ConnectObjects("cg.view", "reel.mouth.Area");
  theScenario->ConnectObjects("cg.view", "reel.blink.Area");
  for (const char* area : {"reel.mouth.Area", "reel.blink.Area"})
    theScenario->ShowArea(area, 1);
  look(30);
  for (const char* area : {"reel.mouth.Area", "reel.blink.Area"})
    theScenario->HideArea(area, 1);
}

/// Views over each other, one cut out by a shape, and a frame that the player may drag.
void windows() {
  static const std::string caption = sjis("見本の枠：つかんで動かせます");
  constexpr int32_t MessageTop = 340, MessageHeight = 127;
  bring(1, 2);
  const ViewHandle message("reel.mess", nullptr, Rectangle::at(0, MessageTop, Width, MessageHeight),
                           nullptr, 0, DestroyWithHandle);
  // The frame is open in the middle: the night lies behind it.
  theScenario->DrawTo("reel.mess", "cg\\KBA049.mcg", 0, 0, Width, MessageHeight, 0, MessageTop);
  takeOwnColours(*message.surface(), "dat\\mframe.mcg");
  theScenario->DrawTo("reel.mess", "dat\\mframe.mcg", 0, 0, 0, 0, 0, 0, 1, KeyTopLeft);
  const SurfaceHandle shape("reel.shape", "dat\\mframeR.mcg", DestroyWithHandle);
  theScenario->SetClipShape("reel.mess", "reel.shape", KeyTopLeft);
  look(8);
  const FrameHandle frame("reel.win", nullptr, Rectangle::at(120, 90, 320, 200), caption.c_str(),
                          WindowFramed, DestroyWithHandle);
  theScenario->DrawTo("reel.win", "cg\\KBA049.mcg", 0, 0, 320, 200, 160, 120, 38);
  look(30);
}

void scrolling() {
  QVVSurface sky, clouds;
  sky.loadFromFile("cg\\KBA015.mcg");
  clouds.loadFromFile("cg\\KSC001.mcg");
  theScenario->DrawTo("cg.view", "cg\\KBA015.mcg", 0, 0, 0, 0, 0, 0);
  takeOwnColours(screen(), "cg\\KSC001.mcg");
  ScrollStage stage(screenView());
  constexpr int32_t CloudHeight = 120, Ticks = 120;
  stage.put(0, {.surface = &sky, .place = Rectangle::at(0, 0, Width, CloudHeight)});
  stage.put(1, {.surface = &clouds,
                .place = Rectangle::at(0, 0, Width, CloudHeight),
                .stepX = 3,
                .priority = 1,
                .wrap = ScrollLayer::WrapX,
                .key = KeyTopLeft});
  int32_t left = Ticks;
  stage.setRoutine([&left](ScrollStage&) { return --left > 0; });
  stage.run(25, [](uint32_t millis) { theScenario->host()->SleepUnlessAborted(millis); });
  look(2);
}

void fades() {
  theScenario->DrawTo("cg.view", "cg\\KAI001.mcg", 0, 0, 0, 0, 0, 0, 44);
  look(8);
  theScenario->FadeView("cg.view", 16, 255, 0);
  theScenario->DrawTo("cg.view", "dat\\QVlogo.mcg", 0, 0, 0, 0, 0, 0, 5);
  look(10);
  theScenario->FadeView("cg.view", 16, 0, 0);
}

void destroyAnimations() {
  theScenario->DestroyObjects({"reel.mouth.Area", "reel.blink.Area", "reel.mouth", "reel.blink",
                               "reel.speech", "reel.blinking"});
}

}  // namespace

QV_SCENE(sc_reel) {
  SetSceneName("sc_reel");
  SceneEnter();
  try {
    everyEffect();
    shapeWipes();
    sprites();
    animations();
    windows();
    scrolling();
    fades();
  } catch (const ReelEnds&) {
    // The title is where the input is answered.
  }
  destroyAnimations();
  return sc_menu;
}
