// Classic paths: none of them, whatever its bytes, reads or writes anything outside of the roots,
// which are full of links that lead there.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/files/file_system.h"
#include "platform/kernel/kernel.h"

namespace {

namespace fs = std::filesystem;

class Field {
 public:
  Field() {
    std::string pattern = (fs::temp_directory_path() / "qvlib-path.XXXXXX").string();
    base_ = mkdtemp(pattern.data());
    fs::create_directories(base_ / "out");
    std::ofstream(base_ / "out" / "secret") << "secret";
    for (const char* root : {"game", "player", "disc"}) {
      fs::create_directories(base_ / root / "dat" / "deep");
      std::ofstream(base_ / root / "x") << "inside";
      std::ofstream(base_ / root / "dat" / "ソ.dat") << "inside";
      fs::create_directory_symlink(base_ / "out", base_ / root / "a");
      fs::create_directory_symlink("../out", base_ / root / "b");
      fs::create_symlink("../../out/secret", base_ / root / "dat" / "c");
      fs::create_directory_symlink("..", base_ / root / "d");
      fs::create_directory_symlink("dat", base_ / root / "e");
    }
  }
  ~Field() {
    std::error_code ignored;
    fs::remove_all(base_, ignored);
  }

  const fs::path& base() const { return base_; }
  bool untouched() const {
    std::ifstream file(base_ / "out" / "secret");
    const std::string content{std::istreambuf_iterator<char>(file), {}};
    return content == "secret" && entriesOf("out") == 1 && entriesOf("") == 4;
  }

 private:
  std::ptrdiff_t entriesOf(const char* folder) const {
    return std::distance(fs::directory_iterator(base_ / folder), fs::directory_iterator());
  }
  fs::path base_;
};

void require(bool fact) {
  if (!fact) std::abort();
}

bool isInside(const fs::path& path, const fs::path& base) {
  const std::string canonical = fs::canonical(path).string();
  for (const char* root : {"game", "player", "disc"}) {
    const std::string inside = (base / root).string();
    if (canonical == inside || canonical.starts_with(inside + "/")) return true;
  }
  return false;
}

void tryPath(qv::FileSystem& files, std::string_view path, const Field& field) {
  files.attributes(path);
  if (const auto found = files.hostPath(path)) require(isInside(*found, field.base()));
  for (const auto& entry : files.list(path))
    require(entry.name != "secret");
  auto opened = files.open(path, qv::OpenExisting, qv::GenericRead, 1, 128);
  if (opened.error == qv::FileOk) {
    char bytes[16] = {};
    const auto got = files.read(opened.handle, bytes, sizeof bytes);
    require(got.bytes >= 0 && std::string_view(bytes, 6) != "secret");
    files.discard(opened.handle);
  }
  opened = files.open(path, qv::CreateAlways, qv::GenericWrite, 1, 128);
  if (opened.error == qv::FileOk) {
    files.setDurability(opened.handle, qv::Durability::Renamed);
    require(files.write(opened.handle, "inside", 6).bytes == 6);
    require(files.commit(opened.handle) == qv::FileOk);
    require(files.remove(path) == qv::FileOk);
  }
  files.setCurrentDirectory(path);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const Field field;
  static const qv::KernelScope kernel(qv::makeRealKernel());
  qv::FileSystem files({field.base() / "game", field.base() / "player", field.base() / "disc"});
  // Each line is a path, and the directory it may have changed to is the next one's.
  std::string_view rest(reinterpret_cast<const char*>(data), std::min<size_t>(size, 4096));
  for (int lines = 0; lines < 16 && !rest.empty(); ++lines) {
    const size_t end = std::min(rest.find('\n'), rest.size());
    tryPath(files, rest.substr(0, end), field);
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  require(field.untouched());
  return 0;
}
