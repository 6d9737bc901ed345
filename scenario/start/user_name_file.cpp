#include "scenario/start/user_name_file.h"

#include <string_view>

#include "foundation/file.h"
#include "foundation/path_name.h"
#include "scenario/register_numbers.h"
#include "scenario/registers.h"
#include "scenario/scenario.h"
#include "screens/save_files.h"

namespace qv {

namespace {

constexpr const char* NameFile = "UserName.dat";
constexpr int32_t NameCount = 2;
constexpr int32_t NameRegisters[NameCount] = {HeroFamilyName, HeroGivenName};

void setName(int32_t index, const char* text) {
  theScenario->StrReg(NameRegisters[index]).create(QVString::DefaultGrain, text);
}

void loadNames() {
  QVStrReg names;
  names.create(NameCount);
  if (SaveIsUsed(NameFile)) {
    QVFile file;
    file.open(QVPathName(NameFile), OpenExisting, GenericRead, ShareRead, AttributeNormal);
    names.load(file);
    file.close();
  }
  // A foreign file may have left the record with another count.
  for (int32_t index = 0; index < NameCount; ++index)
    setName(index, index < names.count() ? names.item(index).text() : "");
}

void saveNames() {
  QVStrReg names;
  names.create(NameCount);
  for (int32_t index = 0; index < NameCount; ++index)
    names.item(index) = theScenario->StrReg(NameRegisters[index]);
  QVFile file;
  file.open(QVPathName(NameFile), CreateAlways, GenericRead | GenericWrite, ShareRead,
            AttributeNormal);
  names.save(file);
  file.close();
}

}  // namespace

void UserNameFile(const char* word) {
  if (!theScenario || !word) return;
  if (std::string_view(word) == "LOAD") loadNames();
  if (std::string_view(word) == "SAVE") saveNames();
}

}  // namespace qv
