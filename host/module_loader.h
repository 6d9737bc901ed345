#pragma once

/// Loads a game folder's module and gives its table. The handle frees the library; every object
/// and thread of the module must be gone before. UI thread.

#include <filesystem>
#include <string>

#include "scenario/scene_function.h"

namespace qv {

inline constexpr const char* ModuleFileName = "game.so";

class LoadedModule {
 public:
  LoadedModule() = default;
  ~LoadedModule();
  LoadedModule(const LoadedModule&) = delete;
  LoadedModule& operator=(const LoadedModule&) = delete;

  /// False, with a sentence for the player, when the folder holds no module of this host's number.
  /// A static build takes the table that is linked in and looks at no file.
  bool load(const std::filesystem::path& gameFolder, std::string& whyNot);
  void unload();
  const GameModule* table() const { return table_; }

 private:
  void* library_ = nullptr;
  const GameModule* table_ = nullptr;
};

/// The table linked into a static build, or null. Defined by the build's form.
const GameModule* linkedModule();

}  // namespace qv
