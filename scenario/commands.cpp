#include "scenario/commands.h"

#include "scenario/scenario.h"

namespace qv {

QVReg* sceneRegisters = nullptr;

namespace {

/// What is written while there is no manager is forgotten.
int32_t& spareWord() {
  static int32_t word;
  word = 0;
  return word;
}

}  // namespace

int32_t& registerOfManager(int32_t number) {
  return theScenario ? theScenario->Reg(number) : spareWord();
}

void setTheScenario(QVScenario* manager) {
  theScenario = manager;
  sceneRegisters = manager ? &manager->registers() : nullptr;
}

int32_t& SysReg(int32_t number) {
  return theScenario ? theScenario->SysReg(number) : spareWord();
}

void SetSysReg(int32_t number, int32_t value, int32_t writeThrough) {
  if (theScenario) theScenario->SetSysReg(number, value, writeThrough);
}

void SetSceneName(const char* name) {
  if (theScenario) theScenario->SetSceneName(name);
}

uint32_t Random(uint32_t limit) {
  return theScenario ? theScenario->Random(limit) : 0;
}

}  // namespace qv
