// Scenes speak of the system's window; it is the pendant.

#include "message/commands.h"
#include "message/pendant.h"

namespace qv {

void HideSystemWindow() {
  HidePendant();
}

void ShowSystemWindow() {
  ShowPendant();
}

}  // namespace qv
