#include "foundation/heap.h"

#include <atomic>
#include <cstdlib>

#include "foundation/diagnostic.h"

namespace qv {

namespace {

std::atomic<QVHeap::Permit> currentPermit = nullptr;

void* allocate(size_t size, bool zeroed) {
  // No object may be larger than the distance of two pointers can tell.
  if (size > static_cast<size_t>(PTRDIFF_MAX)) return nullptr;
  const QVHeap::Permit permit = currentPermit.load(std::memory_order_relaxed);
  if (permit && !permit(size)) return nullptr;
  // An empty block is a block: its address is not null.
  const size_t bytes = size ? size : 1;
  return zeroed ? std::calloc(1, bytes) : std::malloc(bytes);
}

}  // namespace

void* QVHeap::malloc(size_t size, uint32_t flags) {
  void* block = allocate(size, (flags & ZeroFill) != 0);
  if (!block && (flags & Raise)) throw NotEnoughMemoryException("QVHeap - malloc");
  return block;
}

void QVHeap::free(void* block, uint32_t) {
  std::free(block);
}

void QVHeap::setPermit(Permit permit) {
  currentPermit = permit;
}

}  // namespace qv
