#include "platform/settings/settings_store.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <mutex>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>

#include "platform/files/descriptor.h"
#include "platform/files/fresh_file.h"
#include "platform/files/system_calls.h"

namespace qv {

namespace {

constexpr char lowered(char byte) {
  return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

bool sameName(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return lowered(x) == lowered(y); });
}

template <class Map>
auto findName(Map& map, std::string_view name) {
  return std::find_if(map.begin(), map.end(),
                      [&](const auto& entry) { return sameName(entry.first, name); });
}

const SettingValue* lookUp(const SettingsStore::Table& table, std::string_view key,
                           std::string_view name) {
  const auto values = findName(table, key);
  if (values == table.end()) return nullptr;
  const auto value = findName(values->second, name);
  return value == values->second.end() ? nullptr : &value->second;
}

void store(SettingsStore::Table& table, std::string_view key, std::string_view name,
           SettingValue value) {
  auto values = findName(table, key);
  if (values == table.end()) values = table.try_emplace(std::string(key)).first;
  const auto old = findName(values->second, name);
  if (old == values->second.end()) {
    values->second.emplace(name, std::move(value));
  } else {
    old->second = std::move(value);
  }
}

void erase(SettingsStore::Table& table, std::string_view key, std::string_view name) {
  const auto values = findName(table, key);
  if (values == table.end()) return;
  const auto value = findName(values->second, name);
  if (value != values->second.end()) values->second.erase(value);
}

/// 0 or errno; EFBIG for what is too large to be settings.
int readWhole(const std::filesystem::path& path, std::string& bytes) {
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  struct stat status {};
  if (!file || fstat(file.get(), &status) != 0) return errno;
  if (!S_ISREG(status.st_mode)) return EISDIR;
  if (status.st_size > static_cast<off_t>(SettingsStore::MaxFileBytes)) return EFBIG;
  bytes.resize(static_cast<size_t>(status.st_size));
  size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t count = fileCalls().readAt(file.get(), bytes.data() + done, bytes.size() - done,
                                             static_cast<off_t>(done));
    if (count < 0) return errno;
    if (count == 0) break;
    done += static_cast<size_t>(count);
  }
  bytes.resize(done);
  return 0;
}

}  // namespace

SettingsStore::SettingsStore(std::filesystem::path file)
    : lock_("settings", LockRank::Leaf), file_(std::move(file)) {
  if (!file_.empty()) load();
}

void SettingsStore::load() {
  std::string bytes, wrong;
  const int error = readWhole(file_, bytes);
  if (error == ENOENT || error == ENOTDIR) return;
  if (error != 0 && error != EFBIG) {
    // What cannot be read must not be replaced either: nothing lasts in this run.
    complaint_ = "The settings file " + file_.string() + " cannot be read (" + strerror(error) +
                 "); changed settings hold for this run only.";
    file_.clear();
    return;
  }
  if (error == EFBIG) {
    wrong = "it is larger than a mebibyte";
  } else if (auto table = parse(bytes, wrong)) {
    lasting_ = std::move(*table);
    return;
  }
  std::filesystem::path broken = file_;
  broken += ".broken";
  std::error_code failed;
  std::filesystem::rename(file_, broken, failed);
  complaint_ = "The settings file " + file_.string() + " is no such file (" + wrong + "); ";
  if (failed) {
    complaint_ += "changed settings hold for this run only.";
    file_.clear();
  } else {
    complaint_ += "it is kept as " + broken.string() + ".";
  }
}

std::optional<SettingValue> SettingsStore::get(std::string_view key, std::string_view name) const {
  const std::lock_guard guard(lock_);
  const SettingValue* value = lookUp(volatile_, key, name);
  if (!value) value = lookUp(lasting_, key, name);
  return value ? std::optional(*value) : std::nullopt;
}

bool SettingsStore::set(std::string_view key, std::string_view name, SettingValue value,
                        bool lasting) {
  const std::lock_guard guard(lock_);
  if (lasting && !file_.empty()) {
    const SettingValue* old = lookUp(lasting_, key, name);
    erase(volatile_, key, name);
    if (old && *old == value) return true;
    Table changed = lasting_;
    store(changed, key, name, value);
    const std::string text = format(changed);
    std::error_code ignored;
    const std::filesystem::path folder = std::filesystem::absolute(file_).parent_path();
    std::filesystem::create_directories(folder, ignored);
    Kernel& kernel = Kernel::current();
    const auto modified =
        kernel.simulated() ? std::optional<int64_t>(kernel.wallClockMillis()) : std::nullopt;
    if (text.size() <= MaxFileBytes &&
        replaceFile(folder.c_str(), file_.filename(), text, true, modified) == 0) {
      lasting_ = std::move(changed);
      return true;
    }
  }
  store(volatile_, key, name, std::move(value));
  return !lasting;
}

}  // namespace qv
