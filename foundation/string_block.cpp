#include <algorithm>
#include <array>
#include <cstring>
#include <memory>

#include "foundation/file.h"
#include "foundation/heap.h"
#include "foundation/string.h"

// The text's block in files.

namespace qv {

namespace {

struct HeapFree {
  void operator()(char* block) const { QVHeap::free(block); }
};

}  // namespace

void QVString::save(QVFile& file) const {
  if (!file.isOpen()) return;
  const auto bytes = static_cast<uint32_t>(length()) + 1;
  const std::array<uint8_t, 4> head = {
      static_cast<uint8_t>(bytes), static_cast<uint8_t>(bytes >> 8),
      static_cast<uint8_t>(bytes >> 16), static_cast<uint8_t>(bytes >> 24)};
  file.write(head.data(), static_cast<int32_t>(head.size()));
  file.write(text(), static_cast<int32_t>(bytes));
}

void QVString::load(QVFile& file) {
  if (!file.isOpen()) return;
  std::array<uint8_t, 4> head;
  if (file.read(head.data(), static_cast<int32_t>(head.size())) != 4) return;
  const uint32_t told = head[0] | head[1] << 8 | head[2] << 16 | uint32_t{head[3]} << 24;
  const int64_t present = std::clamp<int64_t>(file.remaining(), 0, INT32_MAX - 1);
  const auto bytes = static_cast<int32_t>(std::min<int64_t>(told, present));
  const std::unique_ptr<char, HeapFree> buffer(
      static_cast<char*>(QVHeap::malloc(static_cast<size_t>(bytes) + 1, QVHeap::Raise)));
  const int32_t got = bytes > 0 ? std::max(file.read(buffer.get(), bytes), 0) : 0;
  buffer.get()[got] = 0;
  create(DefaultGrain, buffer.get());
}

}  // namespace qv
