#include "platform/text/external_font.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <string>

#include "platform/files/file_system.h"
#include "platform/services.h"
#include "platform/settings/settings_store.h"

namespace qv {

namespace {

constexpr const char* FontKey = "HKEY_CURRENT_USER\\EUDC\\932";
constexpr const char* FontValue = "SystemDefaultEUDCFont";
constexpr uint32_t TextValue = 1;
constexpr int64_t MostBytes = 16 << 20;

std::atomic<bool> enabled = true;
std::atomic<uint32_t> generation = 1;

/// The first bytes of a TrueType file. Fonts of other kinds bring readers of many formats with
/// them, which a file from somewhere else should not reach.
bool isTrueType(const std::vector<uint8_t>& bytes) {
  constexpr std::array<uint8_t, 4> Numbered = {0, 1, 0, 0}, Named = {'t', 'r', 'u', 'e'};
  return bytes.size() > Numbered.size() &&
         (std::equal(Numbered.begin(), Numbered.end(), bytes.begin()) ||
          std::equal(Named.begin(), Named.end(), bytes.begin()));
}

std::string fontPath() {
  const SettingsStore* settings = services().settings;
  const auto value = settings ? settings->get(FontKey, FontValue) : std::nullopt;
  if (!value || value->type != TextValue) return {};
  std::string path(value->data.begin(), value->data.end());
  return path.substr(0, path.find('\0'));
}

}  // namespace

void enableExternalCharacters(bool on) {
  enabled.store(on);
  generation.fetch_add(1);
}

bool externalCharactersEnabled() {
  return enabled.load();
}

uint32_t externalFontGeneration() {
  return generation.load(std::memory_order_relaxed);
}

std::vector<uint8_t> readExternalFont() {
  FileSystem* const files = services().files;
  const std::string path = enabled.load() ? fontPath() : std::string();
  if (!files || path.empty()) return {};
  const auto file = files->open(path, OpenExisting, GenericRead, ShareRead, AttributeNormal);
  if (file.handle == FileSystem::NoHandle) return {};
  std::vector<uint8_t> bytes;
  const int64_t size = files->size(file.handle);
  if (size > 0 && size <= MostBytes) {
    bytes.resize(static_cast<size_t>(size));
    const auto read = files->read(file.handle, bytes.data(), bytes.size());
    bytes.resize(static_cast<size_t>(std::max<int64_t>(0, read.bytes)));
  }
  files->commit(file.handle);
  if (!isTrueType(bytes)) bytes.clear();
  return bytes;
}

}  // namespace qv
