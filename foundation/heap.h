#pragma once

/// QVHeap: blocks of bytes from the process heap. Any thread.

#include <cstddef>
#include <cstdint>

namespace qv {

class QVHeap {
 public:
  static constexpr uint32_t Raise = 4;  ///< failure raises NotEnoughMemoryException
  static constexpr uint32_t ZeroFill = 8;
  static void* malloc(size_t size, uint32_t flags = 0);  ///< null on failure without Raise
  static void free(void* block, uint32_t flags = 0);     ///< null is passed over

  /// Asked before every block whether there is memory for it; tests install one that says no at
  /// a chosen moment. Null: there always is. Strings, texts of exceptions and vectors take their
  /// memory here, so that their failures can be tried.
  using Permit = bool (*)(size_t size);
  static void setPermit(Permit permit);
};

}  // namespace qv
