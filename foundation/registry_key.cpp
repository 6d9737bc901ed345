#include "foundation/registry_key.h"

#include <cstring>
#include <string>
#include <utility>

#include "foundation/heap.h"
#include "platform/services.h"
#include "platform/settings/settings_store.h"

namespace qv {

namespace {

struct Hive {
  uint32_t number;
  const char* name;
};
constexpr Hive Hives[] = {
    {0x80000000, "HKEY_CLASSES_ROOT"},
    {CurrentUser, "HKEY_CURRENT_USER"},
    {0x80000002, "HKEY_LOCAL_MACHINE"},
    {0x80000003, "HKEY_USERS"},
};

std::string_view nameOf(const char* name) {
  return name ? name : "";
}

}  // namespace

RegistryKey::~RegistryKey() {
  close();
}

void RegistryKey::open(uint32_t hive, const char* path, uint32_t options, const char*) {
  close();
  for (const Hive& known : Hives) {
    if (known.number != hive) continue;
    key_.create(QVString::PathGrain, known.name);
    if (path && *path) {
      key_.append("\\");
      key_.append(path);
    }
    lasting_ = (options & KeyVolatile) == 0;
    open_ = services().settings != nullptr;
  }
}

void RegistryKey::close() {
  if (!open_) return;
  open_ = false;
  key_.clear();
}

void RegistryKey::setValue(const char* name, uint32_t type, const void* data, uint32_t size) {
  if (!open_ || (!data && size > 0)) return;
  SettingValue value;
  value.type = type;
  const auto* bytes = static_cast<const uint8_t*>(data);
  value.data.assign(bytes, bytes + size);
  services().settings->set(key_.view(), nameOf(name), std::move(value), lasting_);
}

void RegistryKey::setString(const char* name, const QVString& value) {
  setValue(name, ValueText, value.text(), static_cast<uint32_t>(value.length()) + 1);
}

void* RegistryKey::query(const char* name, uint32_t type) {
  if (!open_) return nullptr;
  const auto value = services().settings->get(key_.view(), nameOf(name));
  if (!value || value->type != type) return nullptr;
  // One zero more than the value has: a text that somebody stored without its end still has one.
  void* block = QVHeap::malloc(value->data.size() + 1, QVHeap::ZeroFill);
  if (block && !value->data.empty()) memcpy(block, value->data.data(), value->data.size());
  return block;
}

QVString RegistryKey::queryString(const char* name) {
  void* block = query(name, ValueText);
  last_.create(QVString::DefaultGrain, static_cast<const char*>(block));
  QVHeap::free(block);
  return last_;
}

}  // namespace qv
