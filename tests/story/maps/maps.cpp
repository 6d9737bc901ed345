// Three buttons that light up under the pointer and are held down by a press, a strip in front of
// them with a map of its own, and a pendant that is dragged by its picture. Registers count what
// came: 600 the last result, 601 how many, 610 and on the presses of each region.

#include "platform/display/key_codes.h"
#include "scenario/scenario.h"
#include "scenes/scene_form.h"

using namespace qv;

extern "C" {
SceneFunction END();
}

namespace {

constexpr int32_t LastResult = 600, ResultCount = 601, FirstPressCount = 610;
constexpr int32_t KeyCode = 2048, HoverCode = 4096, Timeout = -2, Cancel = -1;
constexpr int32_t Buttons = 3, PendantRegion = 5, StripRegion = 4, GroundRegion = 10;
// Of the twenty colours that every palette has.
constexpr int32_t Ground = 4, Plain = 7, Lit = 251, Pressed = 249, StripColour = 2,
                  PendantColour = 253;

Rectangle placeOf(int32_t button) {
  return Rectangle::at(150 * button - 50, 100, 100, 60);
}

void paint(int32_t button, int32_t colour) {
  if (button < 1 || button > Buttons) return;
  const Rectangle place = placeOf(button);
  ViewHandle("map.view").fill(static_cast<uint8_t>(colour), &place);
}

void build() {
  QVScenario& manager = *theScenario;
  manager.CreateView("map.view", nullptr, 0, 0, 640, 480, 0);
  manager.FillObject("map.view", Ground);
  manager.CreateClickMap("all", 640, 480, GroundRegion, 1);
  for (int32_t button = 1; button <= Buttons; ++button) {
    const Rectangle place = placeOf(button);
    manager.AddClickRect("all", place.left, place.top, place.width(), place.height(), button);
    paint(button, Plain);
  }
  manager.ConnectObjects("all", "map.view");

  manager.CreateView("strip.view", "map.view", 0, 380, 640, 100, 0);
  manager.FillObject("strip.view", StripColour);
  manager.CreateClickMap("strip", 640, 100, StripRegion, 1);
  manager.ConnectObjects("strip", "strip.view");
  manager.ConnectObjects("all", "strip");

  const Rectangle pendant{560, 20, 622, 142}, help{40, 40, 240, 140};
  manager.CreateObject("pendant", TypeFrameless, {nullptr, &pendant});
  manager.FillObject("pendant", PendantColour);
  manager.CreateClickMapOver("pendant.click", "pendantClient", PendantRegion, 1);
  manager.ConnectObjects("pendant.click", "pendant");
  manager.ConnectObjects("all", "pendant.click");
  manager.CreateObject("HelpWindow", TypeFrame, {nullptr, &help, "Help", 0, 1});
  manager.FillObject("HelpWindow", 255);
}

}  // namespace

QV_SCENE(sc_menu) {
  SetSceneName("sc_menu");
  build();
  theScenario->SetClickTick("all", 20);
  int32_t lit = 0;
  while (true) {
    const int32_t result = theScenario->ClickTickWait("all", 0, 1);
    if (result == Timeout) continue;
    Reg(LastResult) = result;
    ++Reg(ResultCount);
    if (result == Cancel || result == KeyCode + KeyEscape) return END;
    if (result >= HoverCode) {
      paint(lit, Plain);
      lit = result - HoverCode;
      paint(lit, Lit);
    } else if (result < KeyCode) {
      ++Reg(FirstPressCount + result);
      paint(result, Pressed);
    }
  }
}
