/// Any bytes as the file of the hero's names: both registers hold what stands in it or nothing, and
/// what is saved of them comes back.

#include <memory>

#include "foundation/path_name.h"
#include "scenario/commands.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"
#include "scenario/start/user_name_file.h"
#include "tests/fuzz/fuzz_files.h"

using namespace qv;
using namespace qv::fuzz;

namespace {

constexpr const char* NameFile = "UserName.dat";

void writeNames(const uint8_t* data, size_t size) {
  QVFile file;
  file.open(QVPathName(NameFile), CreateAlways, GenericRead | GenericWrite, ShareRead,
            AttributeNormal);
  file.setDurability(Durability::Renamed);
  file.write(data, static_cast<int32_t>(size));
  file.close();
}

std::string name(int32_t number) {
  return std::string(theScenario->StrReg(number).view());
}

/// What the start of a game does, as far as the names need it.
struct Ground {
  Ground() {
    manager.Open("Fuzz", RegisterCount, StringRegisterCount, SystemRegisterCount);
    setTheScenario(&manager);
  }
  FuzzFiles files;
  QVScenario manager;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static Ground ground;
  writeNames(data, size);
  for (const int32_t number : {HeroFamilyName, HeroGivenName})
    theScenario->StrReg(number).create(QVString::DefaultGrain, "stale");
  UserNameFile("LOAD");
  const std::string family = name(HeroFamilyName), given = name(HeroGivenName);
  require(family != "stale" || size > family.size(), "the family name stayed");
  require(family.size() + given.size() <= size, "there is more than the file holds");
  UserNameFile("SAVE");
  UserNameFile("LOAD");
  require(name(HeroFamilyName) == family && name(HeroGivenName) == given,
          "the names do not come back");
  return 0;
}
