#include "foundation/diagnostic.h"

#include <atomic>
#include <cstring>
#include <new>
#include <string_view>

#include "foundation/heap.h"
#include "platform/dialogs/dialogs.h"
#include "platform/services.h"

namespace qv {

namespace {

// In bytes, because these are needed when there is no memory to convert them in.
// "シナリオが強制終了されました"
constexpr char ScenarioEnded[] =
    "\x83\x56\x83\x69\x83\x8a\x83\x49\x82\xaa\x8b\xad\x90\xa7\x8f\x49\x97\xb9\x82\xb3\x82\xea"
    "\x82\xdc\x82\xb5\x82\xbd";
// "メモリが足りません！"
constexpr char NotEnoughMemory[] =
    "\x83\x81\x83\x82\x83\x8a\x82\xaa\x91\xab\x82\xe8\x82\xdc\x82\xb9\x82\xf1\x81\x49";

/// Stands in front of each text: how many objects share it.
using Owners = std::atomic<int>;

Owners* ownersOf(char* text) {
  return reinterpret_cast<Owners*>(text - sizeof(Owners));
}

char* copyText(const char* text) {
  if (!text) return nullptr;
  const size_t bytes = std::strlen(text) + 1;
  void* block = QVHeap::malloc(sizeof(Owners) + bytes);
  if (!block) return nullptr;
  new (block) Owners(1);
  char* copy = static_cast<char*>(block) + sizeof(Owners);
  std::memcpy(copy, text, bytes);
  return copy;
}

char* shareText(char* text) {
  if (text) ownersOf(text)->fetch_add(1, std::memory_order_relaxed);
  return text;
}

void dropText(char* text) {
  if (text && ownersOf(text)->fetch_sub(1, std::memory_order_acq_rel) == 1)
    QVHeap::free(ownersOf(text));
}

void replaceText(char*& place, const char* text) {
  char* old = place;
  place = copyText(text);  // before the old one goes: `text` may lie inside it
  dropText(old);
}

std::string_view boxText(const char* text) {
  return text ? std::string_view(text) : std::string_view();
}

}  // namespace

Diagnostic::Diagnostic(const char* title, const char* message) noexcept
    : title_(copyText(title)), message_(copyText(message)) {}

Diagnostic::Diagnostic(const Diagnostic& other) noexcept
    : title_(shareText(other.title_)), message_(shareText(other.message_)) {}

Diagnostic::~Diagnostic() {
  dropText(title_);
  dropText(message_);
}

void Diagnostic::show(const void*) const {
  // Boxes belong to the game screen as a whole, whatever window asks for them.
  Dialogs* dialogs = services().dialogs;
  if (dialogs) dialogs->messageBox(boxText(message()), boxText(title()), BoxNotice);
}

void Diagnostic::showDefault() const {
  show(nullptr);
}

const char* Diagnostic::title() const {
  return title_;
}

void Diagnostic::setTitle(const char* title) {
  if (title) replaceText(title_, title);
}

const char* Diagnostic::message() const {
  return message_;
}

void Diagnostic::setMessage(const char* message) {
  if (message) replaceText(message_, message);
}

void Diagnostic::appendMessage(const char* more) {
  if (!more || !*more) return;
  const size_t oldBytes = message_ ? std::strlen(message_) : 0, moreBytes = std::strlen(more);
  auto* joined = static_cast<char*>(QVHeap::malloc(oldBytes + moreBytes + 1));
  if (!joined) return;
  if (oldBytes) std::memcpy(joined, message_, oldBytes);
  std::memcpy(joined + oldBytes, more, moreBytes + 1);
  setMessage(joined);
  QVHeap::free(joined);
}

ExitScenarioException::ExitScenarioException() noexcept
    : Diagnostic("ExitTavixScenario", ScenarioEnded) {}

AbortDemoException::AbortDemoException() noexcept : Diagnostic("tavix manager", "abort demo") {}

NotEnoughMemoryException::NotEnoughMemoryException(const char* operation) noexcept
    : Diagnostic(operation, NotEnoughMemory) {}

CannotOpenException::CannotOpenException(const char* fileName) noexcept
    : Diagnostic("cannot open", fileName) {}

CannotReadException::CannotReadException(const char* fileName) noexcept
    : Diagnostic("cannot read", fileName) {}

CannotWriteException::CannotWriteException(const char* fileName) noexcept
    : Diagnostic("cannot write", fileName) {}

}  // namespace qv
