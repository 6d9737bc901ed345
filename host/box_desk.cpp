#include "host/box_desk.h"

#include <algorithm>
#include <cstdio>
#include <mutex>

#include "platform/services.h"
#include "platform/text/shift_jis.h"

namespace qv {

FloatingBox& BoxDesk::Open::floating() const {
  return box ? static_cast<FloatingBox&>(*box) : *fileBox;
}

BoxDesk::BoxDesk(TextRenderer& text) : text_(text), lock_("boxes", LockRank::Object) {}

BoxAnswer BoxDesk::messageBox(std::string_view text, std::string_view caption, uint32_t flags) {
  const auto open = std::make_shared<Open>();
  open->box = std::make_unique<Box>(BoxView{std::string(text), std::string(caption), flags}, text_);
  open->description = utf8OfShiftJis(caption) + ": " + utf8OfShiftJis(text);
  open->answer = open->box->abortAnswer();
  ask(open);
  return open->answer;
}

bool BoxDesk::fileDialog(FileDialogRequest& request) {
  const auto open = std::make_shared<Open>();
  open->fileBox = std::make_unique<FileBox>(request, text_);
  open->description = utf8OfShiftJis(request.title);
  ask(open);
  if (open->answer != BoxAnswer::Ok) return false;
  request.path = open->fileBox->path();
  return true;
}

bool BoxDesk::cannotWait(const Open& open) {
  if (unattended_) std::fprintf(stderr, "qvrun: %s\n", open.description.c_str());
  return aborted_ || unattended_ || open.threadId == uiThreadId_;
}

void BoxDesk::ask(const std::shared_ptr<Open>& open) {
  trace("box", open->description);
  open->threadId = Thread::currentId();
  {
    const std::lock_guard guard(lock_);
    if (cannotWait(*open)) return;
    open_.push_back(open);
    changed_ = true;
  }
  if (wakeHook_) wakeHook_();
  open->answered.wait(WaitForever, WaitKind::Input);
}

bool BoxDesk::up() const {
  const std::lock_guard guard(lock_);
  return !open_.empty();
}

bool BoxDesk::holds(uint32_t threadId) const {
  const std::lock_guard guard(lock_);
  return std::any_of(open_.begin(), open_.end(),
                     [threadId](const auto& open) { return open->threadId == threadId; });
}

bool BoxDesk::holdsOther(uint32_t threadId) const {
  const std::lock_guard guard(lock_);
  return std::any_of(open_.begin(), open_.end(),
                     [threadId](const auto& open) { return open->threadId != threadId; });
}

std::string BoxDesk::describe() const {
  const std::lock_guard guard(lock_);
  return open_.empty() ? std::string() : open_.back()->description;
}

void BoxDesk::closeTop(BoxAnswer answer) {
  const std::shared_ptr<Open> open = open_.back();
  open_.pop_back();
  changed_ = true;
  open->answer = answer;
  open->answered.set();
}

bool BoxDesk::handle(const DisplayEvent& event, std::optional<BoxAnswer>* answered) {
  const std::lock_guard guard(lock_);
  if (open_.empty()) return false;
  const std::shared_ptr<Open> top = open_.back();
  top->floating().take(event);
  if (!top->floating().done()) return true;
  const BoxAnswer answer = top->box                   ? *top->box->answer()
                           : top->fileBox->accepted() ? BoxAnswer::Ok
                                                      : BoxAnswer::Cancel;
  closeTop(answer);
  if (answered) *answered = answer;
  return true;
}

bool BoxDesk::answer(BoxAnswer answer) {
  const std::lock_guard guard(lock_);
  if (open_.empty()) return false;
  const Open& top = *open_.back();
  if (top.box) {
    if (!top.box->offers(answer)) return false;
  } else if (answer == BoxAnswer::Ok) {
    if (!top.fileBox->acceptSelected()) return false;
  } else if (answer == BoxAnswer::Cancel) {
    top.fileBox->cancel();
  } else {
    return false;
  }
  closeTop(answer);
  return true;
}

void BoxDesk::abort() {
  const std::lock_guard guard(lock_);
  aborted_ = true;
  while (!open_.empty())
    closeTop(open_.back()->box ? open_.back()->box->abortAnswer() : BoxAnswer::Cancel);
}

void BoxDesk::draw(Frame& frame) const {
  const std::lock_guard guard(lock_);
  for (const auto& open : open_)
    open->floating().draw(frame);
}

bool BoxDesk::takeChanged() {
  const std::lock_guard guard(lock_);
  bool changed = changed_;
  changed_ = false;
  for (const auto& open : open_)
    changed = open->floating().takeChanged() || changed;
  return changed;
}

}  // namespace qv
