#include "scenario/scenario.h"
#include "tests/vectors/case.h"
#include "tests/vectors/files.h"

namespace qv::vectors {
namespace {

constexpr int32_t NumericRegisters = 2500, StringRegisters = 256, SystemRegisters = 2048;

void put(QVString& target, const std::string& bytes) {
  target.create(QVString::DefaultGrain, bytes.c_str());
}

void gameFile(Case& given) {
  testing::TestPlatform& platform = given.platform();
  QVScenario manager;
  manager.Open("Vorlane", NumericRegisters, StringRegisters, SystemRegisters);
  for (const auto& [number, value] : given["numeric"].items())
    manager.Reg(std::stoi(number)) = static_cast<int32_t>(value.get<int64_t>());
  for (const auto& [number, text] : given["strings"].items())
    put(manager.StrReg(std::stoi(number)), bytesOfHex(text.get<std::string>()));
  manager.SetSceneName(given.bytes("scene").c_str());
  manager.midi().set(static_cast<QVMidi::State>(given.int32("midi_state")),
                     given.uint32("midi_loop"), given.bytes("midi_path").c_str());
  const std::string file =
      bytesWritten(platform, [&](QVFile& target) { manager.SaveState(target); });
  expectEqual("size", file.size(), given["size"]);
  given.expectBytes("expect", file);
}

void midiRecord(Case& given) {
  testing::TestPlatform& platform = given.platform();
  QVMidi song;
  song.set(static_cast<QVMidi::State>(given.int32("state")), given.uint32("loop"),
           given.bytes("path").c_str());
  given.expectBytes("expect", bytesWritten(platform, [&](QVFile& file) { song.save(file); }));
}

void userNameFile(Case& given) {
  QVStrReg names;
  names.create(2);
  put(names.item(0), given.bytes("family"));
  put(names.item(1), given.bytes("given"));
  given.expectBytes("expect",
                    bytesWritten(given.platform(), [&](QVFile& file) { names.save(file); }));
}

constexpr Kind Kinds[] = {
    {"game_file", gameFile},
    {"midi_record", midiRecord},
    {"user_name_file", userNameFile},
};

}  // namespace

std::span<const Kind> saveKinds() {
  return Kinds;
}

}  // namespace qv::vectors
