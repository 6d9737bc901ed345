#pragma once

/// QVScenario: the one manager of a game. It owns the register files and the named objects;
/// scenes and commands never hold an object, they name it. Registers belong to the scenario
/// thread; the object list has a lock, which the UI thread never takes.

#include <cstdint>
#include <memory>

#include "foundation/string.h"
#include "platform/kernel/kernel.h"
#include "scenario/object_kinds.h"
#include "scenario/random.h"
#include "scenario/registers.h"
#include "scenario/scenario_host.h"
#include "scenario/scene_function.h"
#include "scenario/song_record.h"

namespace qv {

class QVFile;

class QVScenario {
 public:
  QVScenario();
  virtual ~QVScenario();
  QVScenario(const QVScenario&) = delete;
  QVScenario& operator=(const QVScenario&) = delete;

  virtual void Open(const char* applicationName, int32_t registers, int32_t strings,
                    int32_t systemRegisters);
  virtual void Start(ScenarioHost* host, const char* applicationName, int32_t registers,
                     int32_t strings, int32_t systemRegisters);

  void SetSceneName(const char* name);
  const QVString& sceneName() const { return sceneName_; }

  int32_t& Reg(int32_t number) { return registers_.item(number); }
  QVString& StrReg(int32_t number) { return strings_.item(number); }
  int32_t& SysReg(int32_t number) { return systemRegisters_.item(number); }
  /// Stores; with `writeThrough` the system file is rewritten at once.
  int32_t& SetSysReg(int32_t number, int32_t value, int32_t writeThrough);

  // Named objects. A null name makes every operation do nothing.
  void CreateObject(const char* name, int32_t code, const ObjectArguments& arguments = {});
  void DestroyObject(const char* name);
  LogicalObject* FindObject(const char* name, int32_t code = 0);
  void* FindNative(const char* name, int32_t code = 0);
  WindowObject* FindWindow(const char* name);
  WindowObject* FindView(const char* name);
  void ConnectObjects(const char* nameA, const char* nameB, int32_t number1 = 0,
                      int32_t number2 = 0, int32_t number3 = 0);
  void DisconnectObjects(const char* nameA, const char* nameB);

  /// Registers, scene name and song to an open file, then the system file is rewritten.
  void SaveState(QVFile& file);
  /// The reverse; gives the scene that the file names, or nothing.
  SceneFunction RestoreState(QVFile& file, void (*callback)() = nullptr, int32_t releaseAll = 0,
                             int32_t restartMusic = 0);
  int32_t Release();

  int32_t WaitInput(const char* hitretName, int32_t time);
  uint32_t Random(uint32_t limit);
  void SetExternalFont(const char* fileName, int32_t unused = 0);

  ScenarioHost* host() const { return host_; }

 private:
  // Held by the implementer of this floor.
  ScenarioHost* host_ = nullptr;
  QVString applicationName_;
  QVString sceneName_;
  QVReg registers_;
  QVStrReg strings_;
  SongRecord song_;
  QVString defaultFont_;
  QVString currentFont_;
  RandomGenerator random_;
  Lock lock_;  ///< guards the object list
  QVReg systemRegisters_;
};

/// The manager that scenes and handles use: null until sc_start has set it.
extern QVScenario* theScenario;

}  // namespace qv
