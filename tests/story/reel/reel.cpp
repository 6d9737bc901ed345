// Each piece begins when a key is pressed, so that a play script knows its moments to the
// millisecond, and ends in the next wait.

#include "graphics/animation/scroll_stage.h"
#include "graphics/pace.h"
#include "graphics/transition/transition_engine.h"
#include "graphics/view.h"
#include "scenario/scenario.h"
#include "scenes/scene_form.h"
#include "tests/story/reel/cards.h"

using namespace qv;
using namespace qv::reel;

extern "C" SceneFunction END();

namespace {

constexpr const char* Screen = "card.view";
constexpr const char* Old = "old.card";
constexpr const char* New = "new.card";

/// What the script has to see of a piece is over, or a new one may begin.
void awaitKey() {
  theScenario->WaitInput(nullptr, InputForever);
}

void standOld() {
  theScenario->DrawTo(Screen, Old, 0, 0, 0, 0, 0, 0);
}

/// The new card over the old one by an effect; effect 9 takes its steps from the place of x.
void bring(int32_t effect, ColourKey key = KeyNone) {
  constexpr int32_t FadeSteps = 8;
  standOld();
  awaitKey();
  theScenario->DrawTo(Screen, New, effect == 9 ? FadeSteps : 0, 0, 0, 0, 0, 0, effect, key);
  awaitKey();
}

View* viewOf(const char* name) {
  WindowObject* window = theScenario->FindWindow(name);
  return window ? window->view() : nullptr;
}

void shapeWipe(int32_t effect) {
  constexpr int32_t Steps = 4, StepMillis = 20;
  standOld();
  awaitKey();
  const SurfaceHandle card(New), mask("mask.card");
  Pace pace(&theScenario->host()->abortEvent.handle());
  TransitionEngine engine(viewOf(Screen), {card.surface(), mask.surface(), mask.surface()}, {},
                          pace, [](uint32_t limit) { return theScenario->Random(limit); });
  engine.run(effect, KeyNone, Steps, StepMillis);
  awaitKey();
}

void zoom() {
  standOld();
  awaitKey();
  theScenario->ZoomView(Screen, New, 100, 80, 16, 12, 0, 0, CardWidth, CardHeight, 12, -1);
  awaitKey();
}

void trueColours() {
  theScenario->CreateView("true.view", nullptr, 0, 0, CardWidth, CardHeight, 0, {}, TypeSecondView);
  theScenario->DrawTo("true.view", Old, 0, 0, 0, 0, 0, 0);
  awaitKey();
  theScenario->DrawTo("true.view", New, 0, 0, 0, 0, 0, 0, 4);
  theScenario->DrawTo("true.view", "disc.card", 20, 30, 0, 0, 0, 0, 2, KeyTopLeft);
  awaitKey();
  theScenario->DestroyObject("true.view");
}

void fadeToGrey() {
  standOld();
  awaitKey();
  theScenario->FadeView(Screen, 8, 255, 0);
  awaitKey();
}

/// A view in the shape of a disc on the old card, one that is stacked over both and hidden again.
void shapedAndStacked() {
  standOld();
  awaitKey();
  const ViewHandle disc("disc.view", nullptr, Rectangle::at(60, 20, CardWidth / 2, CardHeight / 2),
                        nullptr, 0, DestroyWithHandle);
  theScenario->DrawTo("disc.view", "disc.card", 0, 0, 0, 0, 0, 0);
  theScenario->SetClipShape("disc.view", "disc.card", 0);
  awaitKey();
  const ViewHandle over("over.view", nullptr, Rectangle::at(100, 50, 90, 60), nullptr, 0,
                        DestroyWithHandle);
  theScenario->DrawTo("over.view", New, 0, 0, 0, 0, 40, 30);
  // What is drawn below shows only where nothing stands over it.
  theScenario->DrawTo(Screen, New, 0, 0, 0, 0, 0, 0, 11);
  awaitKey();
  over.hide();
  awaitKey();
}

void framed() {
  standOld();
  awaitKey();
  const FrameHandle frame("reel.win", nullptr, Rectangle::at(30, 20, 100, 70), nullptr,
                          WindowFramed, DestroyWithHandle);
  theScenario->DrawTo("reel.win", New, 0, 0, 0, 0, 20, 10);
  awaitKey();
}

/// A mouth and a prompt, each on a thread of its own, while the picture below changes beside them.
void animations() {
  const Rectangle mouthPlace = Rectangle::at(20, 80, MouthWidth, MouthHeight);
  const Rectangle promptPlace = Rectangle::at(130, 96, PromptSide, PromptSide);
  theScenario->DrawTo(Screen, New, 0, 0, 0, 0, 0, 0);
  theScenario->CreateObject("mouth", TypeAnimationSurface, {"mouth.bmp", MouthCells, KeyNone});
  theScenario->CreateObject("speech", TypeAnimationSequence, {"A5[.]B5[.]C5[.]", 0});
  theScenario->CreateObject("mouth.area", TypeAnimationArea, {&mouthPlace});
  theScenario->CreateObject("prompt", TypeAnimationSurface,
                            {"prompt.bmp", PromptCells, KeyTopLeft});
  theScenario->CreateObject("blinking", TypeAnimationSequence, {"A..B..C..D..E..F..G..H..", 0});
  theScenario->CreateObject("prompt.area", TypeAnimationArea, {&promptPlace});
  theScenario->RelateAnimation("mouth.area", "mouth", "speech", 1, 0, 0, 1);
  theScenario->RelateAnimation("prompt.area", "prompt", "blinking", 1, 0, 0, 1);
  theScenario->ConnectObjects(Screen, "mouth.area");
  theScenario->ConnectObjects(Screen, "prompt.area");
  awaitKey();
  theScenario->ShowArea("mouth.area", 1);
  theScenario->ShowArea("prompt.area", 1);
  awaitKey();
  theScenario->HideArea("mouth.area", 1);
  theScenario->HideArea("prompt.area", 1);
  awaitKey();
  theScenario->DestroyObjects(
      {"mouth.area", "prompt.area", "mouth", "prompt", "speech", "blinking"});
}

void scrolling() {
  constexpr int32_t Ticks = 24, TickMillis = 25;
  theScenario->DrawTo(Screen, New, 0, 0, 0, 0, 0, 0);
  awaitKey();
  const SurfaceHandle sky("sky.card"), clouds("cloud.card");
  ScrollStage stage(viewOf(Screen));
  const Rectangle place = Rectangle::at(0, 0, CardWidth, CardHeight / 2);
  stage.put(0, {.surface = sky.surface(), .place = place});
  stage.put(1, {.surface = clouds.surface(),
                .place = place,
                .stepX = 5,
                .priority = 1,
                .wrap = ScrollLayer::WrapX,
                .key = 0});
  int32_t left = Ticks;
  stage.setRoutine([&left](ScrollStage&) { return --left > 0; });
  stage.run(TickMillis, [](uint32_t millis) { theScenario->host()->SleepUnlessAborted(millis); });
  awaitKey();
}

}  // namespace

QV_SCENE(sc_menu) {
  SetSceneName("sc_menu");
  SceneEnter();
  theScenario->ShowWindow("cg.view", 0);
  drawCards();
  theScenario->CreateView(Screen, nullptr, 0, 0, CardWidth, CardHeight, 0);
  for (const int32_t effect : {1, 3, 5, 9, 12, 20, 27, 28, 34, 38, 40, 45, 48, 51, 60})
    bring(effect);
  for (const int32_t effect : {2, 16, 31, 62})
    bring(effect, 0);
  shapeWipe(65);
  shapeWipe(78);
  zoom();
  trueColours();
  fadeToGrey();
  shapedAndStacked();
  framed();
  animations();
  scrolling();
  return END;
}
