#include "tools/qvtool/entry_list.h"

#include <algorithm>

namespace qv::tool {

std::string entryList(const std::array<uint32_t, 256>& use, size_t count) {
  std::string list;
  count = std::min(count, use.size());
  for (size_t first = 0; first < count; ++first) {
    if (use[first]) continue;
    size_t last = first;
    while (last + 1 < count && !use[last + 1])
      ++last;
    if (!list.empty()) list += ", ";
    list += std::to_string(first);
    if (last > first) list += "-" + std::to_string(last);
    first = last;
  }
  return list.empty() ? "none" : list;
}

}  // namespace qv::tool
