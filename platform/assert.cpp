#include "platform/assert.h"

#include <cstdio>
#include <cstdlib>

namespace qv {

void assertionFailed(const char* fact, const char* file, int line) {
  std::fprintf(stderr, "%s:%d: assertion failed: %s\n", file, line, fact);
  std::abort();
}

}  // namespace qv
