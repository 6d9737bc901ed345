/// Any bytes as register blocks, numbers then strings as they stand in a save: a block is taken
/// whole or leaves table and position alone, and what is taken goes round.

#include <string_view>

#include "scenario/registers.h"
#include "tests/fuzz/fuzz_files.h"

using namespace qv;
using namespace qv::fuzz;

namespace {

constexpr int32_t OldCount = 3;

bool isOld(QVReg& registers) {
  return registers.count() == OldCount && registers.item(0) == 9 && registers.item(2) == 9;
}

void makeOld(QVReg& registers) {
  registers.create(OldCount);
  registers.item(0) = registers.item(2) = 9;
}

bool isOld(QVStrReg& registers) {
  return registers.count() == OldCount && registers.item(0).equals("old") &&
         registers.item(2).equals("old");
}

void makeOld(QVStrReg& registers) {
  registers.create(OldCount);
  registers.item(0).create(QVString::DefaultGrain, "old");
  registers.item(2).create(QVString::DefaultGrain, "old");
}

template <class Registers>
bool equal(Registers& left, Registers& right) {
  if (left.count() != right.count()) return false;
  for (int32_t index = 0; index < left.count(); ++index)
    if (!(left.item(index) == right.item(index))) return false;
  return true;
}

/// Loads a block where the file stands; true when one was taken.
template <class Registers>
bool loadBlock(FuzzFiles& files, QVFile& input, int64_t leastEntryBytes) {
  const int64_t start = input.position();
  Registers registers;
  makeOld(registers);
  registers.load(input);
  if (input.position() == start) {
    require(isOld(registers), "a refused block changed the table");
    return false;
  }
  require(input.position() <= input.size(), "the position is beyond the file");
  require(registers.count() * leastEntryBytes <= input.position() - start,
          "there are more entries than the block has bytes for");

  QVFile& output = files.output();
  registers.save(output);
  const int64_t end = output.position();
  output.seek(0, SeekFrom::Start);
  Registers again;
  again.load(output);
  require(output.position() == end, "the block is not read to its end");
  require(equal(registers, again), "the registers do not come back");
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static FuzzFiles files;
  QVFile& input = files.input(data, size);
  if (loadBlock<QVReg>(files, input, 4)) {
    // Numbers have one form on file.
    const std::string written = files.outputBytes(input.position());
    require(written == std::string_view(reinterpret_cast<const char*>(data),
                                        static_cast<size_t>(input.position())),
            "the numbers are not those in the file");
  }
  loadBlock<QVStrReg>(files, input, 4);
  return 0;
}
