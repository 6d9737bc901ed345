#pragma once

/// The shared body of QVString, for the files that implement it.

#include <atomic>
#include <cstdint>
#include <string_view>

#include "foundation/string.h"

namespace qv {

class QVString::Body {
 public:
  static constexpr const char* CreateTitle = "QVString - create()";
  static constexpr const char* AppendTitle = "QVString - append";
  static constexpr const char* TokenTitle = "QVString";

  /// A body with one reference, room for `length` bytes that the caller fills, and the final zero.
  /// Its capacity is above the length and a multiple of the grain, which is raised to LeastGrain.
  /// Throws NotEnoughMemoryException with the given title.
  static Body* makeRoom(int32_t grain, size_t length, const char* failureTitle);
  /// The same, filled with a text.
  static Body* make(int32_t grain, std::string_view text, const char* failureTitle);
  Body* share();
  void drop();

  std::atomic<int32_t> references = 1;
  int32_t length = 0;    ///< bytes without the final zero
  int32_t capacity = 0;  ///< bytes allocated
  int32_t grain = 0;
  char* text = nullptr;

 private:
  Body() = default;
  ~Body() = default;
};

}  // namespace qv
