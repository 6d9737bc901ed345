#pragma once

/// What a bench of the engine stands on: a kernel, and game and player's folders that vanish. A box
/// in a bench is a mistake and ends it.

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include <unistd.h>

#include "platform/dialogs/dialogs.h"
#include "platform/files/file_system.h"
#include "platform/kernel/kernel.h"
#include "platform/services.h"
#include "platform/settings/settings_store.h"
#include "platform/sound/null_wave_output.h"

namespace qv::bench {

class NoDialogs : public Dialogs {
 public:
  BoxAnswer messageBox(std::string_view, std::string_view caption, uint32_t) override {
    std::fprintf(stderr, "a box: %.*s\n", static_cast<int>(caption.size()), caption.data());
    std::abort();
  }
  bool fileDialog(FileDialogRequest&) override { std::abort(); }
};

/// In the current folder, so that it lies on a real disk and not in memory.
class BenchFolder {
 public:
  BenchFolder() : path_("bench-" + std::to_string(getpid())) {
    path_ = std::filesystem::absolute(path_);
    std::filesystem::create_directories(path_);
  }
  ~BenchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  BenchFolder(const BenchFolder&) = delete;
  BenchFolder& operator=(const BenchFolder&) = delete;
  std::filesystem::path folder(const char* name) const {
    std::filesystem::create_directories(path_ / name);
    return path_ / name;
  }

 private:
  std::filesystem::path path_;
};

struct Ground {
  BenchFolder root;
  KernelScope kernel{makeRealKernel()};
  NoDialogs dialogs;
  FileSystem files{FileRoots{root.folder("game"), root.folder("player"), {}}};
  SettingsStore settings{root.folder("player") / "settings"};
  NullWaveOutput wave;
  ServicesScope services{
      Services{.files = &files, .settings = &settings, .dialogs = &dialogs, .wave = &wave}};
};

}  // namespace qv::bench
