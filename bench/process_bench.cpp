// The fixed chain of scenes as a player starts it, from exec to exit, and the most memory it took.

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "bench/ground.h"
#include "bench/ratio.h"

namespace {

/// Runs it once and gives the largest memory in MB; a status other than 0 ends the bench.
double run(const std::vector<std::string>& command) {
  std::vector<char*> arguments;
  for (const std::string& word : command)
    arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  pid_t child = 0;
  if (posix_spawn(&child, arguments[0], nullptr, nullptr, arguments.data(), environ) != 0)
    std::abort();
  int status = 0;
  rusage usage{};
  if (wait4(child, &status, 0, &usage) != child || status != 0) {
    std::fprintf(stderr, "qvrun ended with status %d\n", status);
    std::abort();
  }
  return static_cast<double>(usage.ru_maxrss) / 1024;
}

}  // namespace

int main() {
  qv::bench::Table table;
  const qv::bench::BenchFolder root;
  // The chain has timed waits: in simulated time they cost nothing, and the program's work is left.
  const std::string folder = QV_OUTPUT_DIR "/chain";
  const std::vector<std::string> command = {QV_BIN_DIR "/qvrun",
                                            "--headless",
                                            "--simulate",
                                            "1",
                                            "--play",
                                            QV_SOURCE_DIR "/tests/story/chain/chain.play",
                                            "--user",
                                            root.folder("player"),
                                            folder};
  double memory = 0;
  std::vector<double> millis;
  for (int round = 0; round < 11; ++round)
    millis.push_back(1000 * qv::bench::secondsOf([&] { memory = std::max(memory, run(command)); }));
  std::nth_element(millis.begin(), millis.begin() + 5, millis.end());
  table.atMost("the fixed chain headless, exec to exit, milliseconds", millis[5], 100);
  table.atMost("the same, largest memory, MB", memory, 40);
  return table.status();
}
