#pragma once

/// What most tests stand on: a kernel, a game folder and a player's folder that vanish with the
/// test, boxes that are recorded and answered from a list, and sound devices that only keep time.

#include <deque>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "platform/dialogs/dialogs.h"
#include "platform/files/file_system.h"
#include "platform/kernel/kernel.h"
#include "platform/services.h"
#include "platform/settings/settings_store.h"
#include "platform/sound/null_wave_output.h"

namespace qv::testing {

/// A folder that is removed with the object.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

struct ShownBox {
  std::string text, caption;  ///< Shift-JIS
  uint32_t flags = 0;
};

/// Boxes are kept in `shown`; the next of `answers` is given, or OK, or cancel for retry boxes.
/// File dialogs are kept in `asked`; the next of `chosenPaths` is given, or the dialog cancelled.
class RecordingDialogs : public Dialogs {
 public:
  BoxAnswer messageBox(std::string_view text, std::string_view caption, uint32_t flags) override;
  bool fileDialog(FileDialogRequest& request) override;
  std::vector<ShownBox> shown;
  std::deque<BoxAnswer> answers;
  std::vector<FileDialogRequest> asked;
  std::deque<std::string> chosenPaths;
};

class TestPlatform {
 public:
  /// `disc` makes a disc folder, drive D. `kernel` null: the real form.
  explicit TestPlatform(bool disc = false, std::unique_ptr<Kernel> kernel = nullptr);
  ~TestPlatform();

  std::filesystem::path game() const { return folder_.path() / "game"; }
  std::filesystem::path player() const { return folder_.path() / "player"; }
  std::filesystem::path disc() const { return folder_.path() / "disc"; }
  void writeFile(const std::filesystem::path& path, std::string_view bytes) const;
  std::string readFile(const std::filesystem::path& path) const;

  /// The wave device, which keeps all that it is sent.
  NullWaveOutput& wave() { return *wave_; }

  RecordingDialogs dialogs;

 private:
  TemporaryFolder folder_;
  KernelScope kernel_;
  std::unique_ptr<FileSystem> files_;
  std::unique_ptr<SettingsStore> settings_;
  std::unique_ptr<NullWaveOutput> wave_;
  std::unique_ptr<ServicesScope> services_;
};

}  // namespace qv::testing
