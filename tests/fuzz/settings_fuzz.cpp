// The settings file: any text is taken or refused with a sentence, and what is taken comes back
// the same after being written.

#include <cstdlib>

#include "platform/settings/settings_store.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  std::string complaint;
  const auto table = qv::SettingsStore::parse(text, complaint);
  if (!table) {
    if (!complaint.starts_with("line ")) std::abort();
    return 0;
  }
  const std::string written = qv::SettingsStore::format(*table);
  if (qv::SettingsStore::parse(written, complaint) != table) std::abort();
  return 0;
}
