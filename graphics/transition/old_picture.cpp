#include "graphics/transition/old_picture.h"

namespace qv {

OldPicture::OldPicture(const TransitionEngine& engine) : engine_(engine) {
  const Rectangle& rect = engine.rect();
  const int32_t w = rect.width(), h = rect.height();
  if (engine.surface8()) {
    copy8_ = std::make_unique<QVVSurface>();
    copy8_->create(w, h);
    engine.surface8()->blit(*copy8_, 0, 0, rect.left, rect.top, w, h, KeyNone);
  } else {
    copy32_ = std::make_unique<QVVSurface24>();
    copy32_->create(w, h);
    engine.surface32()->blit(*copy32_, 0, 0, rect.left, rect.top, w, h);
  }
}

void OldPicture::restore() const {
  restore(engine_.rect());
}

void OldPicture::restore(const Rectangle& part) const {
  drawPart(part, part.left - engine_.rect().left, part.top - engine_.rect().top);
}

void OldPicture::drawPart(const Rectangle& target, int32_t fromX, int32_t fromY) const {
  if (copy8_)
    copy8_->blit(*engine_.surface8(), target.left, target.top, fromX, fromY, target.width(),
                 target.height(), KeyNone);
  else
    copy32_->blit(*engine_.surface32(), target.left, target.top, fromX, fromY, target.width(),
                  target.height());
}

}  // namespace qv
