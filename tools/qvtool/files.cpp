#include "tools/qvtool/files.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>

#include <unistd.h>

#include "tools/failure.h"

namespace qv::tool {

namespace fs = std::filesystem;

std::vector<uint8_t> readFile(const fs::path& path) {
  if (fs::is_directory(path)) throw Failure(path.string() + " is a folder, not a file.");
  std::ifstream file(path, std::ios::binary);
  if (!file) throw Failure(path.string() + " cannot be opened: " + std::strerror(errno) + ".");
  std::vector<uint8_t> bytes{std::istreambuf_iterator<char>(file), {}};
  if (file.bad()) throw Failure(path.string() + " cannot be read.");
  return bytes;
}

void writeFile(const fs::path& path, std::span<const uint8_t> bytes) {
  const fs::path beside = path.string() + ".part" + std::to_string(getpid());
  {
    std::ofstream file(beside, std::ios::binary);
    if (!file) throw Failure(path.string() + " cannot be written: " + std::strerror(errno) + ".");
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) {
      fs::remove(beside);
      throw Failure(path.string() + " cannot be written to its end; is the disk full?");
    }
  }
  std::error_code error;
  fs::rename(beside, path, error);
  if (error) {
    fs::remove(beside);
    throw Failure(path.string() + " cannot be written: " + error.message() + ".");
  }
}

codec::Progress progressLine(const std::string& what) {
  if (!isatty(STDERR_FILENO)) return {};
  using Clock = std::chrono::steady_clock;
  struct State {
    Clock::time_point next = Clock::now() + std::chrono::milliseconds(300);
    bool shown = false;
  };
  return [what, state = std::make_shared<State>()](double done) {
    if (done >= 1) {
      if (state->shown) std::fputs("\r\x1b[K", stderr);
      return;
    }
    if (Clock::now() < state->next) return;
    state->next = Clock::now() + std::chrono::milliseconds(100);
    state->shown = true;
    std::fprintf(stderr, "\r%s: %3.0f %%", what.c_str(), done * 100);
  };
}

}  // namespace qv::tool
