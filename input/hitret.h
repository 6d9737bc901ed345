#pragma once

/// QVHitret: a pluggable step that waits until the player goes on; print areas run it at the end of
/// a page. Scenario thread.

#include <cstdint>

#include "graphics/rectangle.h"
#include "graphics/view.h"
#include "input/input_host.h"

namespace qv {

class QVHitret {
 public:
  using Wait = int32_t (*)(QVHitret& hitret);

  QVHitret();
  virtual ~QVHitret() = default;
  virtual void setOwner(InputHost* host) { owner_ = host; }
  virtual void setView(View* target) { view_ = target; }
  virtual void setWait(Wait function) { wait_ = function; }

  int32_t run(int32_t time);
  /// Takes the rectangle, and the view when its window lives; then runs.
  int32_t prepare(const Rectangle& rectangle, View* view, int32_t time);

  Wait wait() const { return wait_; }
  InputHost* owner() const { return owner_; }
  View* view() const { return view_; }
  const Rectangle& rectangle() const { return rectangle_; }
  int32_t time() const { return time_; }  ///< tenths of a second, -1 without limit

 private:
  Wait wait_;
  Rectangle rectangle_;
  View* view_ = nullptr;
  InputHost* owner_ = nullptr;
  int32_t time_ = -1;
};

/// The standard wait: shows a small prompt in the rectangle's lower right corner until input comes.
int32_t defaultHitret(QVHitret& hitret);

}  // namespace qv
