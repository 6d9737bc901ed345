// Questions about saving that scenes ask.

#include "platform/text/shift_jis.h"
#include "scenario/commands.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"
#include "screens/boxes.h"
#include "screens/commands.h"
#include "screens/unbuilt_screens.h"

namespace qv {

void AskSaveBeforeLeaving() {
  // What equals the last save or load cannot be lost.
  if (!theScenario || Reg(SavedStateRegister) != 0) return;
  if (ConfirmDialog(sjis("内容が更新されてますが\nセーブしますか？").c_str()) == 1)
    SaveScreen(SaveScreenSaves);
}

void SaveOffer() {
  if (!theScenario) return;
  if (ConfirmDialog(sjis("ここまでの内容をセーブしますか？").c_str()) == 1)
    SaveScreen(SaveScreenSaves);
}

}  // namespace qv
