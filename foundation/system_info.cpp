#include "foundation/system_info.h"

namespace qv {

int HasMmx() {
#if defined(__x86_64__) || defined(__i386__)
  static const int answer = __builtin_cpu_supports("mmx") ? 1 : 0;
  return answer;
#else
  return 1;
#endif
}

}  // namespace qv
