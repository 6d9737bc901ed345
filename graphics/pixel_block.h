#pragma once

/// The block of memory behind a surface's pixels or a palette's entries. It comes from QVHeap, so
/// that its failures can be tried, and a block of the same size is used again. Belongs to its
/// owner.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

#include "foundation/heap.h"

namespace qv {

template <class Element>
class PixelBlock {
 public:
  PixelBlock() = default;
  PixelBlock(const PixelBlock& other) { *this = other; }
  PixelBlock& operator=(const PixelBlock& other) {
    if (this == &other) return *this;
    replace(other.count_, false);
    if (count_) std::memcpy(elements_.get(), other.elements_.get(), count_ * sizeof(Element));
    return *this;
  }

  /// Makes the block `count` elements long; all zero, or undefined without `zeroed`. Throws
  /// NotEnoughMemoryException, and then the old elements stand.
  void replace(size_t count, bool zeroed = true) {
    if (count == count_) {
      if (zeroed && count) std::memset(elements_.get(), 0, count * sizeof(Element));
      return;
    }
    const uint32_t flags = QVHeap::Raise | (zeroed ? QVHeap::ZeroFill : 0);
    elements_.reset(static_cast<Element*>(QVHeap::malloc(count * sizeof(Element), flags)));
    count_ = count;
  }

  Element* data() const { return elements_.get(); }  ///< null before the first `replace`
  size_t size() const { return count_; }

 private:
  struct Free {
    void operator()(Element* elements) const { QVHeap::free(elements); }
  };
  std::unique_ptr<Element, Free> elements_;
  size_t count_ = 0;
};

}  // namespace qv
