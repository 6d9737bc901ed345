#include "input/hitret.h"

#include "input/prompt.h"
#include "platform/dialogs/dialogs.h"
#include "platform/services.h"
#include "platform/text/shift_jis.h"

namespace qv {

QVHitret::QVHitret() : wait_(defaultHitret) {}

int32_t QVHitret::run(int32_t time) {
  time_ = time;
  return wait_ ? wait_(*this) : 0;
}

int32_t QVHitret::prepare(const Rectangle& rectangle, View* view, int32_t time) {
  rectangle_ = rectangle;
  if (view && view->alive()) view_ = view;
  return run(time);
}

int32_t defaultHitret(QVHitret& hitret) {
  View* const view = hitret.view();
  if (!view || !view->alive() || !hitret.owner()) {
    // There is nowhere to show a prompt, or nobody to wait with: the box itself is the wait.
    services().dialogs->messageBox(sjis("ヒットレット待ち"), "QVHitret - default", BoxNotice);
    return 0;
  }
  const Rectangle& area = hitret.rectangle();
  const Prompt prompt(*view, nearestCoordinate(int64_t{area.right} - Prompt::Side),
                      nearestCoordinate(int64_t{area.bottom} - Prompt::Side));
  return hitret.owner()->hostWait(hitret.time(), 1, 0);
}

}  // namespace qv
