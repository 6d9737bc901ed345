// The runner in a real window, on an X server of the bench's own: from its start to the first
// picture on the screen, against a bare program that shows one frame the same way, and what it
// takes of a processor while it waits for its player.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "bench/ground.h"
#include "bench/ratio.h"
#include "tools/picture_codec/picture_files.h"
#include "tools/qvtool/files.h"

namespace {

constexpr int RootWidth = 1280, RootHeight = 960;
constexpr uint8_t Entry = 40;
constexpr uint32_t Colour = 0xE0C040;

[[noreturn]] void giveUp(const char* why) {
  std::fprintf(stderr, "window_bench: %s\n", why);
  std::exit(1);
}

/// A program that is ended with the object.
class Program {
 public:
  explicit Program(const std::vector<std::string>& command) {
    std::vector<char*> arguments;
    for (const std::string& word : command)
      arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    if (posix_spawnp(&process_, arguments[0], nullptr, nullptr, arguments.data(), environ) != 0)
      giveUp((command[0] + " cannot be started").c_str());
  }
  ~Program() {
    kill(process_, SIGTERM);
    waitpid(process_, nullptr, 0);
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  /// Seconds of a processor that it has used.
  double processorSeconds() const {
    std::ifstream stat("/proc/" + std::to_string(process_) + "/stat");
    std::string text((std::istreambuf_iterator<char>(stat)), {});
    unsigned long user = 0, system = 0;
    const size_t name = text.rfind(')');
    if (name == std::string::npos ||
        std::sscanf(text.c_str() + name + 2, "%*c %*d %*d %*d %*d %*d %*u %*u %*u %*u %*u %lu %lu",
                    &user, &system) != 2)
      giveUp("the program has ended");
    return static_cast<double>(user + system) / static_cast<double>(sysconf(_SC_CLK_TCK));
  }

 private:
  pid_t process_ = 0;
};

/// An X server on the first number that is free, as the display of the programs that follow.
class XServer {
 public:
  XServer() {
    int ends[2];
    if (pipe(ends) != 0) giveUp("no pipe");
    const std::string size = std::to_string(RootWidth) + "x" + std::to_string(RootHeight) + "x24";
    server_ = std::make_unique<Program>(
        std::vector<std::string>{"Xvfb", "-displayfd", std::to_string(ends[1]), "-noreset",
                                 "-nolisten", "tcp", "-screen", "0", size});
    close(ends[1]);
    pollfd ready = {ends[0], POLLIN, 0};
    char digits[16] = {};
    if (poll(&ready, 1, 20'000) != 1 || read(ends[0], digits, 15) <= 0)
      giveUp("Xvfb did not start");
    close(ends[0]);
    const std::string name = ":" + std::to_string(std::atoi(digits));
    setenv("DISPLAY", name.c_str(), 1);
    unsetenv("WAYLAND_DISPLAY");
    unsetenv("SDL_VIDEODRIVER");
    display_ = XOpenDisplay(nullptr);
    if (!display_) giveUp("the X server does not answer");
  }
  ~XServer() { XCloseDisplay(display_); }
  XServer(const XServer&) = delete;
  XServer& operator=(const XServer&) = delete;

  /// Looks at the middle of the screen until it has the picture's colour, or has it no more.
  void await(bool picture) const {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while ((middle() == Colour) != picture)
      if (std::chrono::steady_clock::now() > end) giveUp("the picture did not come to the screen");
  }

 private:
  uint32_t middle() const {
    XImage* const image = XGetImage(display_, DefaultRootWindow(display_), RootWidth / 2,
                                    RootHeight / 2 + 100, 1, 1, AllPlanes, ZPixmap);
    if (!image) giveUp("the screen cannot be seen");
    const auto colour = static_cast<uint32_t>(XGetPixel(image, 0, 0)) & 0xFFFFFF;
    XDestroyImage(image);
    return colour;
  }
  std::unique_ptr<Program> server_;
  Display* display_ = nullptr;
};

/// From exec to the picture on the screen.
double secondsToPicture(const XServer& screen, const std::vector<std::string>& command) {
  std::unique_ptr<Program> program;
  const double seconds = qv::bench::secondsOf([&] {
    program = std::make_unique<Program>(command);
    screen.await(true);
  });
  program.reset();
  screen.await(false);
  return seconds;
}

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

}  // namespace

int main() {
  qv::bench::Table table;
  const qv::bench::BenchFolder root;
  const std::filesystem::path player = root.folder("player");
  qv::codec::IndexedPicture picture;
  picture.width = 640, picture.height = 480;
  picture.colours[Entry] = Colour;
  picture.pixels.assign(640 * 480, Entry);
  std::filesystem::create_directories(player / "cg");
  qv::tool::writeFile(player / "cg/first.mcg", qv::codec::encodeMcg(picture));
  const XServer screen;
  std::vector<std::string> ours = {QV_BIN_DIR "/qvrun", "--user", player.string(),
                                   QV_OUTPUT_DIR "/first_picture"};
  const std::vector<std::string> bare = {QV_BIN_DIR "/bare_window", "E0C040"};

  constexpr int Rounds = 41;
  std::vector<double> oursSeconds, bareSeconds;
  for (int round = 0; round < Rounds; ++round) {
    oursSeconds.push_back(secondsToPicture(screen, ours));
    bareSeconds.push_back(secondsToPicture(screen, bare));
  }
  const qv::bench::Pair pair{median(oursSeconds), median(bareSeconds)};
  table.note("from start to the first picture on the screen, ms", pair.ours * 1000);
  table.note("a bare program's frame, ms", pair.theirs * 1000);
  table.atMost("first picture / a bare program's frame", 1.3, pair);

  constexpr int IdleSeconds = 20;
  ours.insert(ours.end(), {"--scene", "sc_windows"});
  const Program idle(ours);
  screen.await(true);
  sleep(2);
  const double before = idle.processorSeconds();
  sleep(IdleSeconds);
  table.atMost("an idle game with five windows on the screen, percent",
               (idle.processorSeconds() - before) / IdleSeconds * 100, 1);
  return table.status();
}
