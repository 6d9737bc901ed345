#pragma once

/// RegistryKey: the classic registry's calls on the settings store. Failures are silent: a closed
/// key gives empty texts. Belongs to one thread at a time.

#include <cstdint>

#include "foundation/string.h"

namespace qv {

inline constexpr uint32_t CurrentUser = 0x80000001;  ///< the hive
inline constexpr uint32_t KeyLasting = 0, KeyVolatile = 1;
inline constexpr uint32_t ValueText = 1, ValueBinary = 3, ValueNumber = 4;

class RegistryKey {
 public:
  RegistryKey() = default;
  virtual ~RegistryKey();
  RegistryKey(const RegistryKey&) = delete;
  RegistryKey& operator=(const RegistryKey&) = delete;

  void open(uint32_t hive, const char* path, uint32_t options, const char* className);
  void close();
  bool isOpen() const { return open_; }
  void setValue(const char* name, uint32_t type, const void* data, uint32_t size);
  void setString(const char* name, const QVString& value);
  /// The value's bytes from QVHeap, or null; the caller frees them.
  void* query(const char* name, uint32_t type);
  QVString queryString(const char* name);  ///< empty when anything fails

 private:
  bool open_ = false;
  bool lasting_ = true;
  QVString key_;
  QVString last_;
};

}  // namespace qv
