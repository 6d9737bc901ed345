#include "tests/support/process.h"

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <thread>

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/test_platform.h"

namespace qv::testing {

namespace {

using Clock = std::chrono::steady_clock;

[[noreturn]] void becomeProgram(const std::vector<std::string>& command,
                                const std::vector<std::string>& environment,
                                const std::filesystem::path& output,
                                const std::filesystem::path& errors) {
  const auto redirect = [](const char* file, int descriptor, int flags) {
    const int opened = open(file, flags, 0600);
    dup2(opened, descriptor);
    close(opened);
  };
  redirect("/dev/null", 0, O_RDONLY);
  redirect(output.c_str(), 1, O_WRONLY | O_CREAT | O_TRUNC);
  redirect(errors.c_str(), 2, O_WRONLY | O_CREAT | O_TRUNC);
  for (const std::string& entry : environment) {
    const size_t equals = entry.find('=');
    const std::string name = entry.substr(0, equals), value = entry.substr(equals + 1);
    if (value.empty())
      unsetenv(name.c_str());
    else
      setenv(name.c_str(), value.c_str(), 1);
  }
  std::vector<char*> arguments;
  for (const std::string& argument : command)
    arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  execvp(arguments[0], arguments.data());
  _exit(127);
}

int awaitEnd(pid_t child, Clock::time_point deadline) {
  int status = 0;
  while (waitpid(child, &status, WNOHANG) == 0) {
    if (Clock::now() >= deadline) kill(child, SIGKILL);
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace

ProcessResult runProcess(const std::vector<std::string>& command,
                         const std::vector<std::string>& environment, int limitSeconds) {
  const TemporaryFolder folder;
  const auto output = folder.path() / "output", errors = folder.path() / "errors";
  ProcessResult result;
  const auto start = Clock::now();
  const pid_t child = fork();
  if (child == 0) becomeProgram(command, environment, output, errors);
  result.status = awaitEnd(child, start + std::chrono::seconds(limitSeconds));
  result.seconds = std::chrono::duration<double>(Clock::now() - start).count();
  result.output = readWhole(output);
  result.errors = readWhole(errors);
  return result;
}

std::string readWhole(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void writeWhole(const std::filesystem::path& file, const std::string& bytes) {
  std::filesystem::create_directories(file.parent_path());
  std::ofstream(file, std::ios::binary) << bytes;
}

}  // namespace qv::testing
