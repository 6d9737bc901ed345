#include "graphics/animation/scroll_stage.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace qv {

ScrollStage::ScrollStage(View* view, QVVSurface* target)
    : view_(view),
      target_(target),
      lock_("scroll stage", LockRank::Object),
      stop_("scroll stage stop") {}

ScrollStage::ScrollStage(View* view) : ScrollStage(view, view ? view->surface8() : nullptr) {}

ScrollStage::~ScrollStage() {
  stop();
}

ScrollLayer* ScrollStage::put(int32_t index, const ScrollLayer::Setting& setting) {
  if (index < 0 || index >= LayerCount) return nullptr;
  auto layer = std::make_unique<ScrollLayer>(setting);
  const std::lock_guard guard(lock_);
  slots_[index] = {std::move(layer), ++insertions_};
  return slots_[index].layer.get();
}

ScrollLayer* ScrollStage::layer(int32_t index) const {
  const std::lock_guard guard(lock_);
  return index < 0 || index >= LayerCount ? nullptr : slots_[index].layer.get();
}

void ScrollStage::remove(int32_t index) {
  if (index < 0 || index >= LayerCount) return;
  const std::lock_guard guard(lock_);
  slots_[index] = {};
}

// --- The palette ---

void ScrollStage::startFade(int32_t ticks, int32_t first, int32_t last, const ColourTable& table) {
  if (!target_) return;
  first = std::max(first, 0);
  last = std::min(last, static_cast<int32_t>(table.size()) - 1);
  Fade fade;
  fade.table = target_->storedColours();
  for (int32_t index = first; index <= last; ++index)
    fade.table[index] = table[index];
  fade.steps = std::max(ticks, 0);
  fade.active = true;
  const std::lock_guard guard(lock_);
  fade_ = fade;
}

bool ScrollStage::fading() const {
  const std::lock_guard guard(lock_);
  return fade_.active;
}

bool ScrollStage::fadeOneStep() {
  const std::lock_guard guard(lock_);
  if (!fade_.active) return false;
  ++fade_.step;
  // The step behind the last one stores the colours.
  fade_.active = fade_.step <= fade_.steps;
  target_->fadePalette(fade_.table, fade_.step, fade_.steps);
  return true;
}

// --- A tick ---

Rectangle ScrollStage::drawLayers() {
  const std::lock_guard guard(lock_);
  std::vector<std::pair<int32_t, const Slot*>> used;
  for (const Slot& slot : slots_)
    if (slot.layer) used.emplace_back(slot.layer->setting().priority, &slot);
  std::ranges::sort(used, [](const auto& left, const auto& right) {
    if (left.first != right.first) return left.first < right.first;
    return left.second->inserted < right.second->inserted;
  });
  Rectangle drawn;
  for (const auto& [priority, slot] : used)
    drawn = drawn.united(slot->layer->draw(*target_));
  return drawn;
}

bool ScrollStage::tick() {
  if (!target_) return false;
  const Rectangle drawn = drawLayers();
  const bool faded = fadeOneStep();
  const bool going = !routine_ || routine_(*this);
  // Colours change everywhere.
  if (view_ && (faded || !drawn.empty())) view_->flush(faded ? nullptr : &drawn, 0);
  return going;
}

bool ScrollStage::atRest() const {
  const std::lock_guard guard(lock_);
  return !fade_.active && std::ranges::none_of(slots_, [](const Slot& slot) {
    return slot.layer && (slot.layer->state() == ScrollLayer::Moving ||
                          slot.layer->state() == ScrollLayer::Fresh);
  });
}

// --- Running ---

namespace {

/// What is left of a tick that began at the mark.
uint32_t restOf(uint32_t tickMillis, uint32_t mark) {
  const uint32_t gone = tickCount() - mark;
  return gone < tickMillis ? tickMillis - gone : 0;
}

}  // namespace

bool ScrollStage::isOwnThread() const {
  return threadId_ != 0 && threadId_ == Thread::currentId();
}

void ScrollStage::start(uint32_t tickMillis) {
  if (running_) return;
  thread_.join();
  stop_.reset();
  // A tick of no time would keep a processor busy for nothing.
  tickMillis_ = std::max<uint32_t>(tickMillis, 1);
  running_ = true;
  thread_.start("scroll stage", &runThread, this);
}

void ScrollStage::runThread(void* stage) {
  auto& self = *static_cast<ScrollStage*>(stage);
  self.threadId_ = Thread::currentId();
  for (;;) {
    const uint32_t mark = tickCount();
    if (!self.tick()) break;
    if (self.stop_.wait(restOf(self.tickMillis_, mark)) != WaitTimeout) break;
  }
  self.running_ = false;
}

void ScrollStage::run(uint32_t tickMillis, const std::function<void(uint32_t millis)>& sleep) {
  if (running_) return;
  stop_.reset();
  for (;;) {
    const uint32_t mark = tickCount();
    if (!tick() || stop_.handle().isSet()) return;
    if (!routine_ && atRest()) return;
    sleep(restOf(std::max<uint32_t>(tickMillis, 1), mark));
  }
}

void ScrollStage::stop() {
  stop_.set();
  if (!isOwnThread()) thread_.join();
}

}  // namespace qv
