#pragma once

/// What the classic platform kept in its registry: values by key path and name. Lasting keys are
/// one text file a person can read, in the player's folder; keys opened as volatile live only as
/// long as the process. A file that cannot be read as such is kept beside as "NAME.broken" and the
/// store starts empty. Any thread.

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/kernel/kernel.h"

namespace qv {

struct SettingValue {
  uint32_t type = 1;  ///< 1 text (Shift-JIS with its zero), 3 binary, 4 number
  std::vector<uint8_t> data;
  bool operator==(const SettingValue&) const = default;
};

class SettingsStore {
 public:
  /// `file` empty: nothing lasts.
  explicit SettingsStore(std::filesystem::path file);

  /// Key paths and names are compared without regard to the case of ASCII letters. A value set in
  /// this run only goes before a lasting one.
  std::optional<SettingValue> get(std::string_view key, std::string_view name) const;
  /// Writes the file at once for a lasting key: whole or not at all. False when that failed; the
  /// value then holds for this run only.
  bool set(std::string_view key, std::string_view name, SettingValue value, bool lasting);
  /// What was wrong with the file, in a sentence; empty when nothing was.
  const std::string& complaint() const { return complaint_; }

  using Table = std::map<std::string, std::map<std::string, SettingValue>>;
  static constexpr size_t MaxFileBytes = 1024 * 1024;
  /// The file's form. `parse` gives nothing and a sentence with the line for a text that is none.
  static std::optional<Table> parse(std::string_view text, std::string& complaint);
  static std::string format(const Table& table);

 private:
  void load();

  mutable Lock lock_;  ///< guards the tables
  std::filesystem::path file_;
  Table lasting_, volatile_;
  std::string complaint_;
};

}  // namespace qv
