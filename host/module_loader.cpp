#include "host/module_loader.h"

#include <dlfcn.h>

namespace qv {

LoadedModule::~LoadedModule() {
  unload();
}

bool LoadedModule::load(const std::filesystem::path& gameFolder, std::string& whyNot) {
  table_ = linkedModule();
  if (!table_) {
    const std::filesystem::path file = gameFolder / ModuleFileName;
    if (!std::filesystem::exists(file)) {
      whyNot =
          "There is no game in " + gameFolder.string() + ": " + ModuleFileName + " is missing.";
      return false;
    }
    library_ = dlopen(std::filesystem::absolute(file).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library_) {
      whyNot = "The game module " + file.string() + " cannot be loaded: " + dlerror() + ".";
      return false;
    }
    table_ = static_cast<const GameModule*>(dlsym(library_, ModuleSymbol));
  }
  // Nothing but the number is read before it is known to be ours.
  if (!table_ || table_->abi != ModuleAbi) {
    whyNot = table_ ? "The game module was built for another version of this program (number " +
                          std::to_string(table_->abi) + ", here " + std::to_string(ModuleAbi) +
                          "): build the game again."
                    : "The file " + std::string(ModuleFileName) + " is no game module.";
    unload();
    return false;
  }
  return true;
}

void LoadedModule::unload() {
  table_ = nullptr;
  if (library_) dlclose(library_);
  library_ = nullptr;
}

}  // namespace qv
