#pragma once

/// The manager's part of the scenes' vocabulary, as plain functions that do nothing and give a
/// spare word while there is no manager. Light enough for a thousand scenes to include. Scenario
/// thread.

#include <cstdint>

#include "scenario/registers.h"

namespace qv {

class QVScenario;

/// Numeric registers of the manager that theScenario names, so that a scene's reads and writes are
/// as quick as an array's; null where sc_start has not set it. Kept by setTheScenario alone.
extern QVReg* sceneRegisters;
/// The road without sceneRegisters.
int32_t& registerOfManager(int32_t number);
/// Makes the manager the one of scenes and handles; null takes it away.
void setTheScenario(QVScenario* manager);

inline int32_t& Reg(int32_t number) {
  if (sceneRegisters) [[likely]]
    return sceneRegisters->item(number);
  return registerOfManager(number);
}
int32_t& SysReg(int32_t number);
/// With `writeThrough` the system file is rewritten at once.
void SetSysReg(int32_t number, int32_t value, int32_t writeThrough);
void SetSceneName(const char* name);
/// 0 to `limit`.
uint32_t Random(uint32_t limit);

}  // namespace qv
