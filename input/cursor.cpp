#include "input/cursor.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/path_name.h"
#include "input/cursor_file.h"
#include "platform/files/file_system.h"
#include "platform/services.h"

namespace qv {

namespace {

constexpr const char* ResourceFolder = "C:\\res\\";
constexpr const char* ResourceEnding = ".cur";

constexpr std::array SystemCursors = {
    system_cursor::Arrow,      system_cursor::TextBeam,    system_cursor::Wait,
    system_cursor::Cross,      system_cursor::UpArrow,     system_cursor::Size,
    system_cursor::Icon,       system_cursor::SizeFalling, system_cursor::SizeRising,
    system_cursor::SizeAcross, system_cursor::SizeUpright, system_cursor::SizeAll,
    system_cursor::No,         system_cursor::Starting,
};

/// Empty for a file that cannot be read or is too long: without its cursor a game goes on, and the
/// player is told nothing.
std::vector<uint8_t> bytesOf(std::string_view path) {
  FileSystem& files = *services().files;
  const FileSystem::Opened opened =
      files.open(path, OpenExisting, GenericRead, ShareRead, AttributeNormal);
  if (opened.error != FileOk) return {};
  std::vector<uint8_t> bytes;
  const int64_t size = files.size(opened.handle);
  if (size > 0 && size <= MostCursorFileBytes) {
    bytes.resize(static_cast<size_t>(size));
    const int64_t read = files.read(opened.handle, bytes.data(), bytes.size()).bytes;
    bytes.resize(static_cast<size_t>(std::max<int64_t>(read, 0)));
  }
  files.discard(opened.handle);
  return bytes;
}

/// A name that stays in the folder of resources.
bool isResourceName(std::string_view name) {
  return !name.empty() && name.find_first_of("\\/:*?\"<>|") == std::string_view::npos;
}

}  // namespace

void QVCursor::setSystem(int32_t number) {
  fromFile_ = false;
  look_ = {number, std::nullopt};
}

bool QVCursor::loadFile(const char* path) {
  std::optional<CursorPicture> picture = readCursorFile(bytesOf(QVPathName(path).path().view()));
  if (!picture) return false;
  look_ = {system_cursor::Arrow, std::move(picture)};
  return true;
}

bool QVCursor::loadResource(const char* name) {
  return isResourceName(name) &&
         loadFile((ResourceFolder + std::string(name) + ResourceEnding).c_str());
}

void QVCursor::loadByName(const char* name) {
  setSystem(system_cursor::Arrow);
  if (!name || loadResource(name)) return;
  fromFile_ = loadFile(name);
}

void QVCursor::loadByNumber(int32_t number) {
  setSystem(system_cursor::Arrow);
  if (number == 0) return;
  if (std::ranges::find(SystemCursors, number) != SystemCursors.end())
    setSystem(number);
  else
    loadResource(std::to_string(number).c_str());
}

}  // namespace qv
