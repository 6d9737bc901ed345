// A register read against a plain array's.

#include <cstdint>
#include <cstdlib>
#include <numeric>
#include <vector>

#include "bench/ratio.h"
#include "scenario/registers.h"

namespace {

using qv::bench::keep;

constexpr int Registers = 2500;

[[gnu::noinline]] int32_t& refuse(int32_t index) {
  std::fprintf(stderr, "index %d\n", index);
  std::abort();
}

struct PlainTable {
  std::vector<int32_t> entries = std::vector<int32_t>(Registers);
  int32_t& at(int32_t index) {
    if (index >= 0 && index < static_cast<int32_t>(entries.size())) return entries[size_t(index)];
    return refuse(index);
  }
};

struct RegisterTable {
  qv::QVReg file;
  RegisterTable() { file.create(Registers); }
  int32_t& at(int32_t index) { return file.item(index); }
};

template <typename Table>
void readAll(Table& table, const std::vector<int32_t>& order) {
  int32_t sum = 0;
  for (const int32_t index : order)
    sum += table.at(index);
  // A variable of its own: `keep` takes an address, and a sum whose address is known outside would
  // have to stand in memory across every call that a bad index might make.
  const int32_t total = sum;
  keep(total);
}

}  // namespace

int main() {
  qv::bench::Table table;
  PlainTable plain;
  RegisterTable registers;

  std::vector<int32_t> order(4'000'000);
  uint32_t state = 1;
  for (int32_t& index : order) {
    state = state * 1664525 + 1013904223;
    index = static_cast<int32_t>((state >> 8) % Registers);
  }
  table.atMost(
      "register read / bounds-checked array read", 1.5,
      qv::bench::measure([&] { readAll(registers, order); }, [&] { readAll(plain, order); }));

  return table.status();
}
