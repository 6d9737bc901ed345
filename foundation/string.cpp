#include "foundation/string.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <limits>
#include <new>

#include "foundation/diagnostic.h"
#include "foundation/heap.h"
#include "foundation/string_body.h"

namespace qv {

namespace {

constexpr size_t MostBytes = std::numeric_limits<int32_t>::max();

std::string_view viewOf(const char* text) {
  return text ? std::string_view(text) : "";
}

/// What a number leaves to append: spaces, then digits.
struct Number {
  Number(uint32_t magnitude, bool negative, int32_t radix, int32_t width);
  char buffer[33];  ///< the longest: a sign and 32 binary digits
  size_t spaces = 0;
  std::string_view digits;
};

Number::Number(uint32_t magnitude, bool negative, int32_t radix, int32_t width) {
  const auto base = static_cast<uint32_t>(radix >= 2 && radix <= 36 ? radix : 10);
  char* first = std::end(buffer);
  do {
    *--first = "0123456789abcdefghijklmnopqrstuvwxyz"[magnitude % base];
    magnitude /= base;
  } while (magnitude);
  if (negative) *--first = '-';
  digits = {first, static_cast<size_t>(std::end(buffer) - first)};
  if (width <= 0) return;
  const auto wanted = static_cast<size_t>(width);
  if (wanted < digits.size()) digits.remove_prefix(digits.size() - wanted);
  spaces = wanted - digits.size();
}

}  // namespace

QVString::Body* QVString::Body::makeRoom(int32_t grain, size_t length, const char* failureTitle) {
  grain = std::max(grain, LeastGrain);
  const auto step = static_cast<size_t>(grain);
  const size_t capacity = ((length + 1) / step + 1) * step;
  if (length > MostBytes || capacity > MostBytes) throw NotEnoughMemoryException(failureTitle);
  void* place = QVHeap::malloc(sizeof(Body));
  auto* bytes = static_cast<char*>(QVHeap::malloc(capacity));
  if (!place || !bytes) {
    QVHeap::free(place);
    QVHeap::free(bytes);
    throw NotEnoughMemoryException(failureTitle);
  }
  Body* body = new (place) Body;
  body->length = static_cast<int32_t>(length);
  body->capacity = static_cast<int32_t>(capacity);
  body->grain = grain;
  body->text = bytes;
  bytes[length] = 0;
  return body;
}

QVString::Body* QVString::Body::make(int32_t grain, std::string_view text,
                                     const char* failureTitle) {
  Body* body = makeRoom(grain, text.size(), failureTitle);
  std::copy(text.begin(), text.end(), body->text);
  return body;
}

QVString::Body* QVString::Body::share() {
  references.fetch_add(1, std::memory_order_relaxed);
  return this;
}

void QVString::Body::drop() {
  if (references.fetch_sub(1, std::memory_order_acq_rel) > 1) return;
  QVHeap::free(text);
  this->~Body();
  QVHeap::free(this);
}

QVString::QVString() : QVString(nullptr) {}

QVString::QVString(const char* text, int32_t grain)
    : rep_(Body::make(grain, viewOf(text), Body::CreateTitle)), cursor_(rep_->text) {}

QVString::QVString(const QVString& other) : rep_(other.rep_->share()), cursor_(other.cursor_) {}

QVString& QVString::operator=(const QVString& other) {
  if (this == &other) return *this;
  if (rep_ != other.rep_) {
    Body* old = rep_;
    rep_ = other.rep_->share();
    old->drop();
  }
  cursor_ = other.cursor_;
  return *this;
}

QVString::~QVString() {
  rep_->drop();
}

void QVString::take(Body* body) {
  Body* old = rep_;
  rep_ = body;
  cursor_ = body->text;
  old->drop();
}

const char* QVString::create(int32_t grain, const char* text) {
  return createView(grain, viewOf(text), Body::CreateTitle);
}

const char* QVString::createView(int32_t grain, std::string_view text, const char* failureTitle) {
  // The new body is made first: the text may lie in the old one, and a failure leaves it.
  take(Body::make(grain, text, failureTitle));
  return rep_->text;
}

void QVString::append(const char* text) {
  if (text) appendPadded(0, text);
}

void QVString::append(const QVString& text) {
  appendPadded(0, text.view());
}

void QVString::appendCount(const char* text, int32_t count) {
  if (text && count > 0) appendPadded(0, {text, strnlen(text, static_cast<size_t>(count))});
}

void QVString::appendPadded(size_t spaces, std::string_view text) {
  const size_t oldLength = view().size(), more = spaces + text.size();
  const bool inPlace = static_cast<size_t>(capacity()) > oldLength + more &&
                       rep_->references.load(std::memory_order_acquire) < 2;
  Body* body = rep_;
  if (!inPlace) {
    body = Body::makeRoom(grain(), oldLength + more, Body::AppendTitle);
    std::memcpy(body->text, rep_->text, oldLength);
  }
  char* end = body->text + oldLength;
  std::memset(end, ' ', spaces);
  std::memmove(end + spaces, text.data(), text.size());
  end[more] = 0;
  body->length = static_cast<int32_t>(oldLength + more);
  if (inPlace) return;
  const int32_t at = cursorIndex();
  take(body);
  cursor_ = rep_->text + at;
}

void QVString::appendInt(int32_t value, int32_t radix, int32_t width) {
  const auto bits = static_cast<uint32_t>(value);
  const Number number(value < 0 ? 0u - bits : bits, value < 0, radix, width);
  appendPadded(number.spaces, number.digits);
}

void QVString::appendUInt(uint32_t value, int32_t radix, int32_t width) {
  const Number number(value, false, radix, width);
  appendPadded(number.spaces, number.digits);
}

void QVString::clear() {
  if (rep_->references.load(std::memory_order_acquire) > 1) {
    take(Body::make(rep_->grain, {}, Body::CreateTitle));
    return;
  }
  rep_->length = 0;
  rep_->text[0] = 0;
  cursor_ = rep_->text;
}

const char* QVString::text() const {
  return rep_->text;
}
int32_t QVString::length() const {
  return rep_->length;
}
int32_t QVString::capacity() const {
  return rep_->capacity;
}
int32_t QVString::grain() const {
  return rep_->grain;
}
int32_t QVString::references() const {
  return rep_->references;
}

QVString operator+(const QVString& left, const QVString& right) {
  QVString sum(left.text());
  sum.append(right);
  return sum;
}

bool QVString::equals(const char* other) const {
  return other && view() == other;
}

}  // namespace qv
