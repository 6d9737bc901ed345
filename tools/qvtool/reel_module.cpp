#include "tools/qvtool/reel_module.h"

#include <string>

#include "graphics/pace.h"
#include "graphics/surface.h"
#include "graphics/transition/transition_engine.h"
#include "graphics/view.h"
#include "host/input_codes.h"
#include "host/module_loader.h"
#include "scenario/scenario.h"
#include "scenario/start/start.h"

namespace qv::tool {

namespace {

constexpr int32_t ScreenViewWidth = 640, ScreenViewHeight = 480;
constexpr int32_t PaletteFade = 9, FirstRotation = 60, LastRotation = 63;
constexpr const char* ScreenView = "reel.view";

/// Escape, or the right button.
struct ReelLeft {};

/// Any other input goes on at once.
void still(int32_t tenths) {
  const int32_t input = theScenario->WaitInput(nullptr, tenths);
  if (input == CodeRight || input == codeOfKey(KeyEscape)) throw ReelLeft();
}

void cutTo(View& view, const QVDib& picture, Pace& pace) {
  QVVSurface surface;
  if (picture.empty())
    surface.create(ScreenViewWidth, ScreenViewHeight);
  else
    surface.assignDib(picture);
  if (view.surface8()) view.surface8()->fill(0);
  TransitionEngine(&view, {&surface}, {}, pace, {}).run(1, KeyNone, 0, 0);
  view.flush(nullptr, 0);
}

void play(View& view, int32_t effect, Pace& pace) {
  const ReelWishes& wishes = reelWishes();
  QVVSurface picture, mask1, mask2;
  picture.assignDib(wishes.picture);
  mask1.assignDib(wishes.mask1);
  mask2.assignDib(wishes.mask2);
  const TransitionPictures pictures = {&picture, wishes.mask1.empty() ? nullptr : &mask1,
                                       wishes.mask2.empty() ? nullptr : &mask2};
  TransitionEngine engine(&view, pictures, {.x = wishes.x, .y = wishes.y}, pace,
                          [](uint32_t limit) { return theScenario->Random(limit); });
  const bool turns = effect >= FirstRotation && effect <= LastRotation;
  // The palette fade finds its steps in the key's place.
  engine.run(effect, effect == PaletteFade ? wishes.steps : wishes.key,
             turns ? wishes.degrees : wishes.steps, turns ? wishes.turns : wishes.delayMillis);
}

SceneFunction reelScene() {
  const ReelWishes& wishes = reelWishes();
  theScenario->CreateView(ScreenView, nullptr, 0, 0, ScreenViewWidth, ScreenViewHeight, 0, {},
                          wishes.trueColour ? TypeSecondView : TypeView);
  WindowObject* const window = theScenario->FindWindow(ScreenView);
  if (!window || !window->view()) return {};
  View& view = *window->view();
  Pace pace(&theScenario->host()->abortEvent.handle());
  try {
    for (int32_t round = 0; wishes.rounds == 0 || round < wishes.rounds; ++round) {
      for (const int32_t effect : wishes.effects) {
        theScenario->SetSceneName(("effect " + std::to_string(effect)).c_str());
        cutTo(view, wishes.from, pace);
        still(wishes.stillTenths);
        play(view, effect, pace);
        still(wishes.stillTenths);
      }
    }
  } catch (const ReelLeft&) {
    // The program ends.
  }
  // Without the story's end, which would clear the screen: the last frame is the picture.
  return {};
}

SceneFunction startReel(ScenarioHost* host) {
  return startStory(host, {"qvtool reel", reelScene, nullptr, true});
}

constexpr SceneEntry Scenes[] = {{"reel", reelScene}};
constexpr GameModule Module = {
    ModuleAbi,     "qvtool reel",  startReel, endStory, endAfterException,
    createManager, destroyManager, Scenes,    1};

}  // namespace

ReelWishes& reelWishes() {
  static ReelWishes wishes;
  return wishes;
}

}  // namespace qv::tool

namespace qv {

/// The host looks for no file where a game is linked in.
const GameModule* linkedModule() {
  return &tool::Module;
}

}  // namespace qv
