#include "graphics/animation/animation_area.h"

#include <algorithm>
#include <mutex>
#include <new>
#include <utility>

#include "foundation/diagnostic.h"

namespace qv {

namespace {

/// Places are arguments of scenes. Within this range no sum of two of them, a running offset and
/// the size of a surface leaves 32 bits.
constexpr int32_t FarthestPlace = 1 << 28;

int32_t bounded(int32_t place) {
  return std::clamp(place, -FarthestPlace, FarthestPlace);
}

Rectangle bounded(const Rectangle& rectangle) {
  return Rectangle{bounded(rectangle.left), bounded(rectangle.top), bounded(rectangle.right),
                   bounded(rectangle.bottom)}
      .normalised();
}

Rectangle extentOf(const QVVSurface& surface) {
  return {0, 0, surface.width(), surface.height()};
}

void show(View& view) {
  view.update();
  view.repaintClickMaps();
}

}  // namespace

/// What a round draws, taken at one moment.
struct QVAnimationArea::Scene {
  View* view = nullptr;
  QVVSurface* target = nullptr;
  const QVVSurface* backup = nullptr;
  Rectangle backupPlace, rectangle;
  std::vector<AnimationRelation> relations;
  std::vector<QVAnimationArea*> children;
};

/// Keeps all that an area draws alive: who takes something away waits until no use is left.
class QVAnimationArea::Use {
 public:
  explicit Use(QVAnimationArea& area) : area_(area) {
    const std::lock_guard guard(area_.lock_);
    scene_ = {area_.view_,      area_.target_,    area_.backup_.get(), area_.backupPlace_,
              area_.rectangle_, area_.relations_, area_.children_};
    if (area_.uses_++ == 0) area_.unused_.reset();
  }
  ~Use() {
    const std::lock_guard guard(area_.lock_);
    if (--area_.uses_ == 0) area_.unused_.set();
  }
  Use(const Use&) = delete;
  Use& operator=(const Use&) = delete;
  const Scene& scene() const { return scene_; }

 private:
  QVAnimationArea& area_;
  Scene scene_;
};

QVAnimationArea::QVAnimationArea()
    : control_("animation", LockRank::Animation),
      started_("animation started"),
      stop_("animation stop"),
      lock_("animation area", LockRank::Object),
      unused_("animation unused", true) {}

QVAnimationArea::~QVAnimationArea() {
  QVAnimationArea::stop(false);
  for (QVAnimationArea* parent : std::vector(parents_))
    parent->removeChild(*this);
  for (QVAnimationArea* child : std::vector(children_))
    removeChild(*child);
}

// --- What it draws ---

void QVAnimationArea::add(const char* name, const AnimationRelation& relation,
                          const char* failureTitle) {
  try {
    relations_.push_back(relation);
  } catch (const std::bad_alloc&) {
    throw NotEnoughMemoryException(failureTitle);
  }
  relations_.back().name.create(QVString::DefaultGrain, name);
}

void QVAnimationArea::relateContainer(const char* name, QVAnimationSurface* surface,
                                      AnimationSequence* sequence, int32_t number, int32_t x,
                                      int32_t y, bool visible) {
  if (!surface || !sequence) return;
  const auto [width, height] = surface->cellSize(0);
  const std::lock_guard guard(lock_);
  AnimationRelation relation;
  relation.x = bounded(x);
  relation.y = bounded(y);
  relation.number = number;
  relation.visible = visible;
  relation.surface = surface;
  relation.sequence = sequence;
  add(name, relation, "QVAnimationArea - relateContainer");
  // To the right and down alone: the corner is what the relations' places count from.
  if (!grows_) return;
  rectangle_.right = std::max(rectangle_.right, rectangle_.left + relation.x + width);
  rectangle_.bottom = std::max(rectangle_.bottom, rectangle_.top + relation.y + height);
}

AnimationRelation& QVAnimationArea::defaultRelation() {
  const auto found = std::ranges::find_if(relations_, [](const AnimationRelation& relation) {
    return relation.name.equals(DefaultRelation);
  });
  if (found != relations_.end()) return *found;
  add(DefaultRelation, {}, "QVAnimationArea - relate");
  return relations_.back();
}

void QVAnimationArea::relate(QVAnimationSurface* surface) {
  if (!surface) return;
  const auto [width, height] = surface->cellSize(0);
  {
    const std::lock_guard guard(lock_);
    defaultRelation().surface = surface;
    if (rectangle_.empty())
      rectangle_ = Rectangle::at(rectangle_.left, rectangle_.top, width, height);
  }
  waitUntilUnused();
}

void QVAnimationArea::relateSequence(AnimationSequence* sequence) {
  if (!sequence) return;
  {
    const std::lock_guard guard(lock_);
    defaultRelation().sequence = sequence;
  }
  waitUntilUnused();
}

void QVAnimationArea::forget(const void* member) {
  {
    const std::lock_guard guard(lock_);
    std::erase_if(relations_, [&](const AnimationRelation& relation) {
      return relation.surface == member || relation.sequence == member;
    });
    // The receiver is a part of the map that goes.
    if (advance_.clickMap && dynamic_cast<const void*>(advance_.clickMap) == member) advance_ = {};
  }
  waitUntilUnused();
}

void QVAnimationArea::takeTarget(View* view, QVVSurface* target) {
  {
    const std::lock_guard guard(lock_);
    // The pixels of one target are no background for another.
    if (target != target_) backupPlace_ = {};
    view_ = view;
    target_ = target;
  }
  waitUntilUnused();
}

void QVAnimationArea::setView(View* view) {
  takeTarget(view, view ? view->surface8() : nullptr);
}

void QVAnimationArea::setTarget(QVVSurface* surface) {
  takeTarget(nullptr, surface);
}

void QVAnimationArea::setRect(const Rectangle& rectangle) {
  const std::lock_guard guard(lock_);
  rectangle_ = bounded(rectangle);
  grows_ = rectangle_.empty();
}

void QVAnimationArea::setPosition(int32_t x, int32_t y) {
  setRect({x, y, x, y});
}

void QVAnimationArea::setAutoAdvance(const AutoAdvance& advance) {
  {
    const std::lock_guard guard(lock_);
    advance_ = advance;
  }
  waitUntilUnused();
}

Rectangle QVAnimationArea::rectangle() const {
  const std::lock_guard guard(lock_);
  return rectangle_;
}

std::vector<AnimationRelation> QVAnimationArea::relations() const {
  const std::lock_guard guard(lock_);
  return relations_;
}

// --- Children ---

bool QVAnimationArea::reaches(const QVAnimationArea& other) const {
  return this == &other || std::ranges::any_of(children_, [&](const QVAnimationArea* child) {
           return child->reaches(other);
         });
}

bool QVAnimationArea::addChild(QVAnimationArea& child) {
  if (child.reaches(*this) || std::ranges::find(children_, &child) != children_.end()) return false;
  {
    const std::lock_guard guard(lock_);
    children_.push_back(&child);
  }
  child.parents_.push_back(this);
  return true;
}

void QVAnimationArea::removeChild(QVAnimationArea& child) {
  {
    const std::lock_guard guard(lock_);
    std::erase(children_, &child);
  }
  std::erase(child.parents_, this);
  waitUntilUnused();
}

void QVAnimationArea::waitUntilUnused() {
  {
    const std::lock_guard guard(lock_);
    if (uses_ == 0) return;
  }
  // One moment without a use is enough, also when the next one follows at once: that one sees what
  // has changed.
  unused_.wait();
}

// --- The thread ---

bool QVAnimationArea::isOwnThread() const {
  return threadId_ != 0 && threadId_ == Thread::currentId();
}

bool QVAnimationArea::canDraw() const {
  const std::lock_guard guard(lock_);
  return target_ && !relations_.empty();
}

void QVAnimationArea::backup() {
  const std::lock_guard guard(lock_);
  if (!target_) return;
  // What lies outside the target has no pixels to keep.
  const Rectangle place = rectangle_.intersected(extentOf(*target_));
  if (place.empty()) return;
  try {
    if (!backup_) backup_ = std::make_unique<QVVSurface>();
    backup_->create(place.width(), place.height());
  } catch (const std::bad_alloc&) {
    throw NotEnoughMemoryException("QVAnimationArea - backup");
  }
  backup_->copyPaletteFrom(*target_);
  target_->blit(*backup_, 0, 0, place.left, place.top, place.width(), place.height(), KeyNone);
  backupPlace_ = place;
}

void QVAnimationArea::start(bool takeBackup, QVThread::Function routine, void* argument) {
  if (isOwnThread()) return;
  const std::lock_guard guard(control_);
  if (running_ || !canDraw()) return;
  // An animation that has just ended may still be telling so.
  thread_.join();
  if (takeBackup) backup();
  started_.reset();
  stop_.reset();
  routine_ = routine ? routine : &playToEnd;
  argument_ = routine && argument ? argument : this;
  running_ = true;
  thread_.start("animation", &runThread, this);
  started_.wait();
}

void QVAnimationArea::stop(bool restoring) {
  if (isOwnThread()) {
    // Nobody waits for himself: the thread ends behind the present tick.
    stop_.set();
    return;
  }
  const std::lock_guard guard(control_);
  stop_.set();
  thread_.join();
  stop_.reset();
  if (restoring) restore();
}

void QVAnimationArea::restore() {
  const Use use(*this);
  Rectangle drawn;
  drawNow(drawn, true);
  if (use.scene().view) show(*use.scene().view);
}

void QVAnimationArea::runThread(void* area) {
  auto& self = *static_cast<QVAnimationArea*>(area);
  self.threadId_ = Thread::currentId();
  self.started_.set();
  self.routine_(self.argument_);
  self.running_ = false;
}

void QVAnimationArea::playToEnd(void* area) {
  auto& self = *static_cast<QVAnimationArea*>(area);
  for (bool going = true; going;) {
    const uint32_t mark = tickCount();
    going = self.tick();
    // The last cell, too, stands for its tick.
    if (!self.pace(mark)) break;
  }
  // From here on it can be started again, by whoever hears of the end.
  self.running_ = false;
  self.reportEnd();
}

void QVAnimationArea::reportEnd() {
  const Use use(*this);
  AutoAdvance advance;
  {
    const std::lock_guard guard(lock_);
    if (stop_.handle().isSet()) return;
    advance = advance_;
  }
  if (!advance.wanted) return;
  if (advance.clickMap)
    advance.clickMap->advance(advance.inputCode);
  else if (advance.viewParent)
    advance.viewParent->advance(AutoAdvance::SpaceKey);
}

bool QVAnimationArea::pace(uint32_t markTick) {
  const uint32_t gone = tickCount() - markTick;
  return stop_.wait(gone < TickMillis ? TickMillis - gone : 0) == WaitTimeout;
}

// --- A tick ---

bool QVAnimationArea::tick() {
  if (stop_.handle().isSet()) return false;
  const Use use(*this);
  const Scene& scene = use.scene();
  if (!scene.target || scene.relations.empty()) return false;
  Rectangle drawn;
  const bool going = drawNow(drawn, false);
  // A surface that no view shows has nobody to tell.
  if (!drawn.empty() && scene.view) show(*scene.view);
  return going;
}

bool QVAnimationArea::drawNow(Rectangle& drawn, bool frozen) {
  const Use use(*this);
  const Scene& scene = use.scene();
  bool going = drawRelations(scene, drawn, frozen);
  for (QVAnimationArea* child : scene.children)
    if (!child->drawNow(drawn, frozen)) going = false;
  if (scene.view && !drawn.empty()) scene.view->invalidate(&drawn, 0);
  return going;
}

bool QVAnimationArea::drawRelations(const Scene& scene, Rectangle& drawn, bool frozen) {
  constexpr int32_t NoChange = AnimationSequence::NoChange, Ended = AnimationSequence::Ended;
  bool going = true, redraw = frozen;
  for (const AnimationRelation& relation : scene.relations) {
    if (!relation.surface || !relation.sequence) continue;
    const int32_t next = relation.sequence->next();
    if (next == Ended) going = false;
    if (relation.visible && next != NoChange) {
      redraw = true;
      break;
    }
  }

  if (redraw && scene.target && !scene.backupPlace.empty()) {
    const Rectangle& place = scene.backupPlace;
    scene.backup->blit(*scene.target, place.left, place.top, 0, 0, place.width(), place.height(),
                       KeyNone);
    drawn = drawn.united(place);
  }

  for (const AnimationRelation& relation : scene.relations) {
    if (!relation.surface || !relation.sequence) continue;
    AnimationSequence::Frame frame;
    if (frozen) {
      frame = relation.sequence->shown();
      frame.cell = 0;
    } else {
      // What lies over something that changes is drawn again.
      frame = relation.sequence->step(redraw);
      if (frame.cell == Ended) {
        going = false;
        frame = relation.sequence->step(true);
      }
    }
    if (frame.cell >= 0 && relation.visible) drawCell(scene, relation, frame, drawn);
  }
  return going;
}

void QVAnimationArea::drawCell(const Scene& scene, const AnimationRelation& relation,
                               const AnimationSequence::Frame& frame, Rectangle& drawn) {
  if (!scene.target) return;
  const auto [width, height] = relation.surface->cellSize(frame.cell);
  const int32_t x = scene.rectangle.left + relation.x + frame.x,
                y = scene.rectangle.top + relation.y + frame.y;
  const Rectangle part = Rectangle::at(x, y, width, height)
                             .intersected(scene.rectangle)
                             .intersected(extentOf(*scene.target));
  if (part.empty()) return;
  relation.surface->drawCellPart(*scene.target, part.left, part.top, part.left - x, part.top - y,
                                 part.width(), part.height(), frame.cell);
  drawn = drawn.united(part);
}

}  // namespace qv
