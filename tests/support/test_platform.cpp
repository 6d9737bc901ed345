#include "tests/support/test_platform.h"

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace qv::testing {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
  std::string pattern = (fs::temp_directory_path() / "qvlib.XXXXXX").string();
  path_ = mkdtemp(pattern.data());
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

BoxAnswer RecordingDialogs::messageBox(std::string_view text, std::string_view caption,
                                       uint32_t flags) {
  shown.push_back({std::string(text), std::string(caption), flags});
  if (!answers.empty()) {
    const BoxAnswer answer = answers.front();
    answers.pop_front();
    return answer;
  }
  return (flags & BoxButtonMask) == 0 ? BoxAnswer::Ok : BoxAnswer::Cancel;
}

bool RecordingDialogs::fileDialog(FileDialogRequest& request) {
  asked.push_back(request);
  if (chosenPaths.empty()) return false;
  request.path = chosenPaths.front();
  chosenPaths.pop_front();
  return true;
}

TestPlatform::TestPlatform(bool disc, std::unique_ptr<Kernel> kernel)
    : kernel_(kernel ? std::move(kernel) : makeRealKernel()) {
  fs::create_directories(game());
  fs::create_directories(player());
  if (disc) fs::create_directories(this->disc());
  files_ =
      std::make_unique<FileSystem>(FileRoots{game(), player(), disc ? this->disc() : fs::path{}});
  settings_ = std::make_unique<SettingsStore>(player() / "settings.toml");
  wave_ = std::make_unique<NullWaveOutput>(NullWaveOutput::Keep::Everything);
  services_ = std::make_unique<ServicesScope>(Services{.files = files_.get(),
                                                       .settings = settings_.get(),
                                                       .dialogs = &dialogs,
                                                       .wave = wave_.get()});
}

TestPlatform::~TestPlatform() = default;

void TestPlatform::writeFile(const fs::path& path, std::string_view bytes) const {
  fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << bytes;
}

std::string TestPlatform::readFile(const fs::path& path) const {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace qv::testing
