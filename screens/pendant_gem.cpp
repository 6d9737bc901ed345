// The pendant's gem shows which heroine leads, and by how much.

#include "graphics/scene/picture_drawing.h"
#include "message/pendant.h"
#include "scenario/commands.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"
#include "screens/affection.h"
#include "screens/commands.h"

namespace qv {

namespace {

constexpr const char *Pendant = "sysCut.surf", *LitPendant = "sysCut1.surf",
                     *Gems = "sysCutPn.surf", *LitGems = "sysCutP2.surf";
constexpr int32_t CellSize = 32, GemX = 16, GemY = 8, GlintTenths = 5;

// Where nobody leads: a smaller cell at its own place.
struct NeutralCell {
  int32_t sourceX, width, height, x, y;
};
constexpr NeutralCell Neutral{190, 19, 26, 22, 9};

void setGem(const char* pendant, const char* gems, Leader leader, int64_t difference) {
  QVVSurface* target = surfaceNamed(pendant);
  const QVVSurface* source = surfaceNamed(gems);
  if (!target || !source) return;
  if (leader == Leader::Neither)
    source->blit(*target, Neutral.x, Neutral.y, Neutral.sourceX, 0, Neutral.width, Neutral.height,
                 KeyNone);
  else
    source->blit(*target, GemX, GemY, gemCellX(leader, difference), 0, CellSize, CellSize, KeyNone);
}

void show(const char* picture) {
  theScenario->DrawTo(PendantWindow, picture, 0, 0, 0, 0, 0, 0);
}

}  // namespace

void UpdatePendant() {
  if (!theScenario) return;
  const int64_t first = Reg(AffectionFirstRegister), second = Reg(AffectionFirstRegister + 1);
  // A tie is nobody's, before any question of who leads.
  const Leader leader = first == second  ? Leader::Neither
                        : first > second ? Leader::First
                                         : Leader::Second;
  const int64_t difference = first > second ? first - second : second - first;
  setGem(Pendant, Gems, leader, difference);
  setGem(LitPendant, LitGems, leader, difference);
  show(LitPendant);
  theScenario->WaitSound(GlintTenths);
  show(Pendant);
}

}  // namespace qv
