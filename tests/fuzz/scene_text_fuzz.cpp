#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "scenes/generator/checker.h"
#include "scenes/generator/generator.h"

/// Whatever the bytes: problems are told, or C++ is written. A line --- parts story.txt from the
/// scenes.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace qv::scenec;
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const size_t cut = std::min(bytes.find("\n---\n"), bytes.size());
  const std::string story = bytes.substr(0, cut);
  const std::string scenes = cut < bytes.size() ? bytes.substr(cut + 5) : bytes;
  Problems problems;
  const Story read = readStory({{"story.txt", story}, {"a.scene", scenes}}, problems);
  missingScenes(read);
  if (problems.empty() && writeStory(read, {"story.txt", "a.scene"}, "", 2).size() != 3)
    std::abort();
  problems.lines();
  return 0;
}
