#pragma once

/// A scene: a function without arguments that returns the next scene, or nothing to end the run;
/// and the table by which a host knows a module.

#include <cstddef>
#include <cstdint>

namespace qv {

class QVScenario;
class ScenarioHost;

/// The address of a scene. C linkage keeps scene names findable by their exact text.
struct SceneFunction {
  using Address = SceneFunction (*)();
  Address address = nullptr;

  constexpr SceneFunction() = default;
  constexpr SceneFunction(Address scene) : address(scene) {}  // NOLINT: scenes are returned by name
  constexpr explicit operator bool() const { return address != nullptr; }
  constexpr bool operator==(const SceneFunction&) const = default;
  SceneFunction operator()() const { return address(); }
};

struct SceneEntry {
  const char* name;
  SceneFunction::Address scene;
};

/// The number of the meeting between host and module; raised when any type below changes.
inline constexpr uint32_t ModuleAbi = 2;

/// What a module is, under the one exported name QV_MODULE_SYMBOL. The table alone answers
/// look-ups of scenes; sc_start, END and EXCEPTION_ENTRY are not in it.
struct GameModule {
  uint32_t abi;
  const char* applicationName;  ///< Shift-JIS; the stem of the system file
  SceneFunction (*start)(ScenarioHost* host);
  SceneFunction (*end)();
  SceneFunction (*exceptionEntry)();
  QVScenario* (*createManager)();
  void (*destroyManager)(QVScenario*);
  const SceneEntry* scenes;  ///< sorted by name, by byte order
  size_t sceneCount;
};
inline constexpr const char* ModuleSymbol = "qvGameModule";

/// The scene of that exact name in the module's table, or nothing.
SceneFunction findScene(const GameModule& module, const char* name);

}  // namespace qv
