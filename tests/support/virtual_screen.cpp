#include "tests/support/virtual_screen.h"

#include <chrono>
#include <cstdlib>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qv::testing {

namespace {

void pause(int millis) {
  std::this_thread::sleep_for(std::chrono::milliseconds(millis));
}

/// In a child: no output, and an end with the parent's.
void becomeQuiet() {
  prctl(PR_SET_PDEATHSIG, SIGTERM);  // a test that is killed leaves nothing behind
  const int nowhere = ::open("/dev/null", O_RDWR);
  for (const int descriptor : {0, 1, 2})
    dup2(nowhere, descriptor);
}

void endProcess(pid_t process) {
  if (process <= 0) return;
  kill(process, SIGTERM);
  waitpid(process, nullptr, 0);
}

std::vector<std::string> managerCommand(const std::filesystem::path& started) {
  return {"openbox", "--sm-disable", "--startup", "touch " + started.string()};
}

}  // namespace

bool installed(const char* program) {
  return std::system(("command -v " + std::string(program) + " >/dev/null 2>&1").c_str()) == 0;
}

BackgroundProgram::BackgroundProgram(const std::vector<std::string>& command) {
  std::vector<char*> arguments;
  for (const std::string& argument : command)
    arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  process_ = fork();
  if (process_ != 0) return;
  becomeQuiet();
  execvp(arguments[0], arguments.data());
  _exit(127);
}

BackgroundProgram::~BackgroundProgram() {
  endProcess(process_);
}

int BackgroundProgram::awaitEnd(int limitMillis) {
  for (int waited = 0; waited <= limitMillis; waited += 5, pause(5)) {
    int status = 0;
    if (process_ <= 0 || waitpid(process_, &status, WNOHANG) != process_) continue;
    process_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }
  return -1;
}

VirtualScreen::VirtualScreen() {
  int ends[2];
  if (pipe(ends) != 0) return;
  server_ = fork();
  if (server_ == 0) {
    becomeQuiet();
    const std::string number = std::to_string(ends[1]);
    const std::string size = std::to_string(RootWidth) + "x" + std::to_string(RootHeight) + "x24";
    execlp("Xvfb", "Xvfb", "-displayfd", number.c_str(), "-noreset", "-nolisten", "tcp", "-wr",
           "-screen", "0", size.c_str(), static_cast<char*>(nullptr));
    _exit(127);
  }
  close(ends[1]);
  pollfd ready = {ends[0], POLLIN, 0};
  char digits[16] = {};
  if (server_ > 0 && poll(&ready, 1, 20'000) == 1 && read(ends[0], digits, 15) > 0)
    name_ = ":" + std::to_string(std::atoi(digits));
  close(ends[0]);
}

VirtualScreen::~VirtualScreen() {
  endProcess(server_);
}

void VirtualScreen::use() const {
  setenv("DISPLAY", name_.c_str(), 1);
  unsetenv("WAYLAND_DISPLAY");
  unsetenv("SDL_VIDEODRIVER");
}

WindowManager::WindowManager() : program_(managerCommand(folder_.path() / "started")) {
  for (int i = 0; i < 1000 && !started_; ++i, pause(10))
    started_ = std::filesystem::exists(folder_.path() / "started");
}

}  // namespace qv::testing
