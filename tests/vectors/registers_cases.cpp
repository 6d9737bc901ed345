#include "scenario/random.h"
#include "scenario/registers.h"
#include "scenario/scenario.h"
#include "tests/vectors/case.h"
#include "tests/vectors/files.h"

namespace qv::vectors {
namespace {

constexpr int32_t SystemRegisters = 2048, NumericRegisters = 2500, StringRegisters = 256;

Json entriesOf(QVReg& registers) {
  Json entries = Json::array();
  for (int32_t i = 0; i < registers.count(); ++i)
    entries.push_back(static_cast<uint32_t>(registers.item(i)));
  return entries;
}

Json entriesOf(QVStrReg& registers) {
  Json entries = Json::array();
  for (int32_t i = 0; i < registers.count(); ++i)
    entries.push_back(hexOfBytes(registers.item(i).view()));
  return entries;
}

void setEntry(QVReg& registers, int32_t index, const Json& value) {
  registers.item(index) = static_cast<int32_t>(value.get<int64_t>());
}

void setEntry(QVStrReg& registers, int32_t index, const Json& value) {
  const std::string bytes = bytesOfHex(value.get<std::string>());
  registers.item(index).create(QVString::DefaultGrain, bytes.c_str());
}

template <class Registers>
void fill(Registers& registers, const Json& values) {
  registers.create(static_cast<int32_t>(values.size()));
  for (size_t i = 0; i < values.size(); ++i)
    setEntry(registers, static_cast<int32_t>(i), values[i]);
}

void random(Case& given) {
  RandomGenerator generator(given.uint32("seed"));
  Json draws = Json::array();
  while (draws.size() < given["draws"].size())
    draws.push_back(generator.draw(given.uint32("limit")));
  expectEqual("draws", draws, given["draws"]);
  expectEqual("state", generator.state(), given["state"]);
}

void randomMixed(Case& given) {
  RandomGenerator generator(given.uint32("seed"));
  Json draws = Json::array();
  for (const Json& limit : given["limits"])
    draws.push_back(generator.draw(limit.get<uint32_t>()));
  expectEqual("draws", draws, given["draws"]);
  expectEqual("state", generator.state(), given["state"]);
}

template <class Registers>
void expectItem(Case& given, const char* caption) {
  testing::RecordingDialogs& dialogs = given.platform().dialogs;
  dialogs.shown.clear();
  Registers registers;
  registers.create(given.int32("count"));
  auto* const entry = &registers.item(given.int32("index"));
  expectEqual("boxes", dialogs.shown.size(), given["report"].is_null() ? 0 : 1);
  if (!dialogs.shown.empty()) {
    given.expectBytes("report", dialogs.shown[0].text);
    expectEqual("caption", dialogs.shown[0].caption, caption);
    expectEqual("flags", dialogs.shown[0].flags, BoxNotice);
  }
  expectEqual("count_after", registers.count(), given["count_after"]);
  expectEqual("entry", entry - &registers.item(0), given["entry"]);
}

void item(Case& given) {
  expectItem<QVReg>(given, "QVReg - item()");
  expectItem<QVStrReg>(given, "QVStrReg - item()");
}

void createCount(Case& given) {
  QVReg registers;
  fill(registers, given["old"]);
  registers.create(given.int32("count"));
  expectEqual("expect", entriesOf(registers), given["expect"]);
}

void regBlock(Case& given) {
  QVReg registers;
  if (given.has("seed")) {
    const auto count = static_cast<size_t>(given.integer("count"));
    const std::string bytes = testBytes(given.uint32("seed"), count * 4);
    registers.create(given.int32("count"));
    for (size_t at = 0; at < bytes.size(); ++at) {
      auto& entry = registers.item(static_cast<int32_t>(at / 4));
      entry |= static_cast<int32_t>(uint32_t{static_cast<uint8_t>(bytes[at])} << at % 4 * 8);
    }
  } else {
    fill(registers, given["values"]);
  }
  given.expectBytes("expect",
                    bytesWritten(given.platform(), [&](QVFile& file) { registers.save(file); }));
}

void strRegBlock(Case& given) {
  QVStrReg registers;
  fill(registers, given["values"]);
  given.expectBytes("expect",
                    bytesWritten(given.platform(), [&](QVFile& file) { registers.save(file); }));
}

void systemFile(Case& given) {
  constexpr std::string_view Suffix = ".system.dat";
  const std::string fileName = given.ascii("name");
  const std::string application = fileName.substr(0, fileName.size() - Suffix.size());
  testing::TestPlatform& platform = given.platform();
  QVScenario manager;
  manager.Open(application.c_str(), NumericRegisters, StringRegisters, SystemRegisters);
  for (const auto& [number, value] : given["nonzero"].items())
    manager.SysReg(std::stoi(number)) = static_cast<int32_t>(value.get<int64_t>());
  manager.SetSysReg(0, manager.SysReg(0), 1);
  given.expectBytes("expect", platform.readFile(platform.player() / fileName));

  QVScenario next;
  next.Open(application.c_str(), NumericRegisters, StringRegisters, SystemRegisters);
  for (int32_t number = 0; number < SystemRegisters; ++number)
    expectEqual("read back " + std::to_string(number), next.SysReg(number), manager.SysReg(number));
}

void checkHeader(Case& given) {
  QVFile file;
  openInput(given.platform(), file, given.bytes("input"), given.integer("position"));
  QVFileBlock block;
  block.setName(given.bytes("name").c_str());
  expectEqual("ok", block.checkHeader(file), given["ok"]);
  expectEqual("position_after", file.position(), given["position_after"]);
}

template <class Registers>
void load(Case& given) {
  QVFile file;
  openInput(given.platform(), file, given.bytes("input"), given.integer("position"));
  Registers registers;
  fill(registers, given["old"]);
  registers.load(file);
  expectEqual("expect", entriesOf(registers), given["expect"]);
  expectEqual("position_after", file.position(), given["position_after"]);
}

constexpr Kind Kinds[] = {
    {"check_header", checkHeader}, {"create_count", createCount},   {"item", item},
    {"load_reg", load<QVReg>},     {"load_strreg", load<QVStrReg>}, {"random", random},
    {"random_mixed", randomMixed}, {"reg_block", regBlock},         {"strreg_block", strRegBlock},
    {"system_file", systemFile},
};

}  // namespace

std::span<const Kind> registerKinds() {
  return Kinds;
}

}  // namespace qv::vectors
