// random_play SEED [INPUTS]: writes the play script of that seed.

#include <cstdio>
#include <cstdlib>

#include "tests/story/random_play.h"

int main(int count, char** arguments) {
  if (count < 2) {
    std::fprintf(stderr, "Usage: random_play SEED [INPUTS]\n");
    return 2;
  }
  const int inputs = count > 2 ? std::atoi(arguments[2]) : 150;
  std::fputs(qv::testing::randomPlay(std::strtoull(arguments[1], nullptr, 10), inputs).c_str(),
             stdout);
  return 0;
}
