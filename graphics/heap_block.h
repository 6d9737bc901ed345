#pragma once

/// HeapBlock: bytes from QVHeap with one owner. Unlike a vector it does not clear what is about to
/// be overwritten, and its failure is the engine's own. One thread at a time.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <utility>

#include "foundation/diagnostic.h"
#include "foundation/heap.h"

namespace qv {

class HeapBlock {
 public:
  enum class Content { Zeroed, Undefined };

  HeapBlock() = default;
  /// Throws NotEnoughMemoryException with `operation` as its title.
  HeapBlock(size_t size, Content content, const char* operation) : size_(size) {
    if (!size) return;
    bytes_ = static_cast<uint8_t*>(
        QVHeap::malloc(size, content == Content::Zeroed ? QVHeap::ZeroFill : 0));
    if (!bytes_) throw NotEnoughMemoryException(operation);
  }
  HeapBlock(const HeapBlock& other)
      : HeapBlock(other.size_, Content::Undefined, "QVHeap - malloc") {
    if (size_) std::memcpy(bytes_, other.bytes_, size_);
  }
  HeapBlock(HeapBlock&& other) noexcept
      : bytes_(std::exchange(other.bytes_, nullptr)), size_(std::exchange(other.size_, 0)) {}
  HeapBlock& operator=(HeapBlock other) noexcept {
    std::swap(bytes_, other.bytes_);
    std::swap(size_, other.size_);
    return *this;
  }
  ~HeapBlock() { QVHeap::free(bytes_); }

  bool empty() const { return size_ == 0; }
  size_t size() const { return size_; }
  uint8_t* data() { return bytes_; }
  const uint8_t* data() const { return bytes_; }
  std::span<uint8_t> span() { return {bytes_, size_}; }
  std::span<const uint8_t> span() const { return {bytes_, size_}; }
  /// Forgets the end; the memory stays until the block goes.
  void shorten(size_t size) { size_ = std::min(size_, size); }

 private:
  uint8_t* bytes_ = nullptr;
  size_t size_ = 0;
};

}  // namespace qv
