#pragma once

/// QVHeap: blocks of bytes from the process heap. Any thread.

#include <cstddef>
#include <cstdint>

namespace qv {

class QVHeap {
 public:
  static constexpr uint32_t Raise = 4;    ///< failure raises NotEnoughMemoryException
  static constexpr uint32_t ZeroFill = 8;
  static void* malloc(size_t size, uint32_t flags = 0);  ///< null on failure without Raise
  static void free(void* block, uint32_t flags = 0);     ///< null is passed over
};

}  // namespace qv
