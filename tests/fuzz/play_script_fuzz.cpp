#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "host/play_script.h"

/// Whatever the bytes, a script is read or refused; what was read says itself back the same way.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const qv::ParsedScript script = qv::parsePlayScript(text);
  for (const qv::ScriptLine& line : script.lines) {
    const qv::ParsedScript again = qv::parsePlayScript(line.source);
    if (again.lines.size() != 1 || again.lines[0].verb != line.verb ||
        again.lines[0].text != line.text || again.lines[0].value != line.value)
      std::abort();
  }
  return 0;
}
