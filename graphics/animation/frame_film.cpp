#include "graphics/animation/frame_film.h"

#include <algorithm>

#include "foundation/diagnostic.h"
#include "foundation/file.h"
#include "graphics/surface.h"

namespace qv {

FrameFilm::FrameFilm() : ended_("film ended", true) {}

FrameFilm::~FrameFilm() {
  stop();
}

QVString FrameFilm::fileName(int32_t frame) const {
  // Zeros before the number make four digits.
  constexpr int32_t FirstOfFive = 10'000;
  QVString number;
  number.appendInt(FirstOfFive + frame);
  QVString name = base_;
  name.append(number.text() + 1);
  name.append(extension_);
  return name;
}

void FrameFilm::setFiles(const char* base, const char* extension) {
  stop();
  base_.create(QVString::PathGrain, base);
  extension_.create(QVString::TokenGrain, extension);
  frameCount_ = 0;
  if (!base) return;
  while (frameCount_ < MostFrames && QVFile::existsName(fileName(frameCount_).text()))
    ++frameCount_;
}

void FrameFilm::limitFrames(int32_t count) {
  frameCount_ = std::clamp(count, 0, frameCount_);
}

void FrameFilm::setFirstFrame(int32_t frame) {
  if (!running_) firstFrame_ = std::max(frame, 0);
}

bool FrameFilm::isOwnThread() const {
  return threadId_ != 0 && threadId_ == Thread::currentId();
}

void FrameFilm::start(View* view, intptr_t word, bool wait) {
  if (isOwnThread()) return;
  if (!running_ && view && view->surface8()) {
    thread_.join();
    view_ = view;
    word_ = word;
    stopFlag_ = false;
    running_ = true;
    ended_.reset();
    thread_.start("film", &runThread, this);
  }
  if (wait) thread_.join();
}

void FrameFilm::stop() {
  stopFlag_ = true;
  // Nobody waits for himself: the film ends behind the routine that says so.
  if (!isOwnThread()) thread_.join();
}

void FrameFilm::runThread(void* film) {
  auto& self = *static_cast<FrameFilm*>(film);
  self.threadId_ = Thread::currentId();
  for (int32_t frame = self.firstFrame_; frame < self.frameCount_ && !self.stopFlag_; ++frame)
    if (!self.showFrame(frame)) break;
  self.running_ = false;
  self.ended_.set();
}

bool FrameFilm::showFrame(int32_t frame) {
  QVVSurface picture;
  try {
    picture.loadFromFile(fileName(frame).text());
  } catch (const Diagnostic&) {
    // Nobody stands behind this thread: a picture that is gone since the count ends the film, as a
    // hole does.
    return false;
  }
  picture.blit(*view_->surface8(), 0, 0, 0, 0, picture.width(), picture.height(), KeyNone);
  view_->invalidate(nullptr, 0);
  view_->update();
  view_->repaintClickMaps();
  if (routine_) routine_(*this, word_);
  return true;
}

}  // namespace qv
