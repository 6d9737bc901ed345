#pragma once

/// QVVector: an array of elements that are built and destroyed all at once; in the engine the
/// frames of an animation. Belongs to one thread at a time.
///
/// Element: default-constructible; movable too where `increase` is used.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <utility>

#include "foundation/diagnostic.h"
#include "foundation/heap.h"

namespace qv {

template <class Element>
class QVVector {
 public:
  /// Elements that `init` builds; nothing is allocated before. Less than zero counts as zero.
  explicit QVVector(int32_t capacity) : capacity_(capacity > 0 ? capacity : 0) {}
  virtual ~QVVector() { release(); }
  QVVector(const QVVector&) = delete;
  QVVector& operator=(const QVVector&) = delete;

  virtual int32_t size() const { return count_; }
  /// Builds the capacity's elements. Where they exist already it destroys them and stops, so a
  /// second call empties the vector, on purpose. Throws NotEnoughMemoryException; a failure leaves
  /// the vector empty.
  virtual void init() {
    if (array_) {
      destroy();
      return;
    }
    array_ = build(capacity_, "QVVector - init");
    count_ = capacity_;
  }
  virtual void destroy() { release(); }

  /// Makes index `index` exist, by a new allocation some steps of `step` elements larger; the old
  /// elements move over. Throws NotEnoughMemoryException; a failure leaves the vector as it was.
  void increase(int32_t index, int32_t step) {
    if (index < count_) return;
    if (step < 1) step = 1;
    const int64_t steps = (int64_t{index} - count_) / step + 1;
    const int64_t wanted = count_ + steps * step;
    if (wanted > INT32_MAX) throw NotEnoughMemoryException("QVVector - increase");
    Element* larger = build(wanted, "QVVector - increase");
    for (int32_t at = 0; at < count_; ++at)
      larger[at] = std::move(array_[at]);
    release();
    array_ = larger;
    count_ = capacity_ = static_cast<int32_t>(wanted);
  }

  int32_t capacity() const { return capacity_; }
  Element& operator[](int32_t index) { return array_[index]; }
  const Element& operator[](int32_t index) const { return array_[index]; }

 private:
  static Element* build(int64_t count, const char* failureTitle) {
    static_assert(alignof(Element) <= alignof(std::max_align_t));
    const auto elements = static_cast<size_t>(count);
    void* block = elements <= PTRDIFF_MAX / sizeof(Element)
                      ? QVHeap::malloc(elements * sizeof(Element))
                      : nullptr;
    if (!block) throw NotEnoughMemoryException(failureTitle);
    try {
      // Destroys what it has built when an element cannot be.
      std::uninitialized_value_construct_n(static_cast<Element*>(block), elements);
    } catch (const std::bad_alloc&) {
      QVHeap::free(block);
      throw NotEnoughMemoryException(failureTitle);
    } catch (...) {
      QVHeap::free(block);
      throw;
    }
    return static_cast<Element*>(block);
  }
  void release() {
    while (count_ > 0)
      array_[--count_].~Element();
    QVHeap::free(array_);
    array_ = nullptr;
  }

  Element* array_ = nullptr;
  int32_t count_ = 0;
  int32_t capacity_;
};

}  // namespace qv
