#include "foundation/path_name.h"

#include <string>
#include <string_view>

#include "foundation/registry_key.h"
#include "platform/dialogs/dialogs.h"
#include "platform/files/file_system.h"
#include "platform/services.h"
#include "platform/text/shift_jis.h"

namespace qv {

namespace {

constexpr std::string_view DiscPrefix = "%:";
constexpr const char* EngineKey = "Software\\Dorin\\QVLIB";
constexpr const char* DiscValue = "CD-ROM";
constexpr int32_t FirstSpecial = 30583, LastSpecial = 30592;

/// Where a classic machine kept what scenes may ask for. Drive C is the game's own, so these are
/// ordinary folders of it: they need not exist, and what is written there lies in the player's
/// folder like everything else.
struct SpecialFolder {
  int32_t code;
  const char* path;
};
constexpr SpecialFolder SpecialFolders[] = {
    {QVPathName::ProgramFile, "C:\\qvrun.exe"},
    {QVPathName::ProgramFolder, "C:\\"},
    {QVPathName::SystemRoot, "C:\\WINDOWS\\"},
    {QVPathName::SystemFolder, "C:\\WINDOWS\\SYSTEM\\"},
    {0, "C:\\WINDOWS\\Desktop\\"},
    {2, "C:\\WINDOWS\\Start Menu\\Programs\\"},
    {5, "C:\\My Documents\\"},
    {8, "C:\\WINDOWS\\Recent\\"},
    {9, "C:\\WINDOWS\\SendTo\\"},
    {11, "C:\\WINDOWS\\Start Menu\\"},
    {19, "C:\\WINDOWS\\NetHood\\"},
    {20, "C:\\WINDOWS\\Fonts\\"},
    {21, "C:\\WINDOWS\\ShellNew\\"},
    {22, "C:\\WINDOWS\\All Users\\Start Menu\\"},
    {23, "C:\\WINDOWS\\All Users\\Start Menu\\Programs\\"},
    {24, "C:\\WINDOWS\\All Users\\Start Menu\\Programs\\StartUp\\"},
};

/// The report of a system call that failed in a path operation.
void reportFailure(const char* operation, uint32_t error) {
  services().dialogs->messageBox(operation + sjis("でエラーが発生しました\nエラーコードは、") +
                                     std::to_string(error) + sjis("です"),
                                 "QVString class", BoxNotice);
}

/// "D:" as remembered, or found now and remembered; empty without a disc drive.
std::string discDrive() {
  RegistryKey key;
  key.open(CurrentUser, EngineKey, KeyVolatile, "");
  std::string drive(key.queryString(DiscValue).view());
  if (drive.empty()) {
    const FileSystem& files = *services().files;
    const uint32_t drives = files.logicalDrives();
    for (char letter = 'A'; letter <= 'Z' && drive.empty(); ++letter) {
      if ((drives >> (letter - 'A') & 1) == 0) continue;
      const std::string root{letter, ':', '\\'};
      if (files.driveType(root) == DriveCdRom) drive = root.substr(0, 2);
    }
    if (!drive.empty()) key.setString(DiscValue, QVString(drive.c_str()));
  }
  key.close();
  return drive;
}

/// Where the last path element begins: behind the last backslash that is a character.
size_t lastElement(std::string_view path) {
  size_t start = 0;
  for (size_t at = 0; at < path.size(); at += characterBytes(path, at)) {
    if (path[at] == '\\') start = at + 1;
  }
  return start;
}

}  // namespace

QVPathName::QVPathName() {
  path_.create(QVString::PathGrain, nullptr);
}

QVPathName::QVPathName(const char* name) {
  path_.create(QVString::PathGrain, nullptr);
  QVPathName::set(name);
}

void QVPathName::setCurrent() {
  // Without files there is no directory to stand in; nothing else can fail here.
  if (!services().files) {
    reportFailure("QVPathName - create()", FileNotReady);
    return;
  }
  path_.create(QVString::PathGrain, services().files->currentDirectory().c_str());
}

void QVPathName::setRelative(const char* name) {
  // `name` may be this object's own text, which setCurrent lets go.
  const std::string kept = name ? name : "";
  setCurrent();
  path_.append(kept.c_str());
}

void QVPathName::set(const QVString& name) {
  // `name` may be this object's own text.
  const QVString kept = name;  // NOLINT(performance-unnecessary-copy-initialization)
  set(kept.text());
}

void QVPathName::set(const char* name) {
  if (!name) {
    setCurrent();
    return;
  }
  const std::string text = name;
  if (text.starts_with(DiscPrefix)) {
    const std::string path = discDrive() + text.substr(DiscPrefix.size());
    path_.create(QVString::PathGrain, path.c_str());
  } else if (text.starts_with("\\\\") || (text.size() > 1 && text[1] == ':')) {
    path_.create(QVString::PathGrain, text.c_str());
  } else {
    setRelative(text.c_str());
  }
}

void QVPathName::setSpecial(int32_t code) {
  for (const SpecialFolder& folder : SpecialFolders) {
    if (folder.code == code) {
      path_.create(QVString::PathGrain, folder.path);
      return;
    }
  }
  if (code >= FirstSpecial && code <= LastSpecial) setCurrent();
}

bool QVPathName::lacksFinalBackslash() {
  path_.setCursorIndex(0);
  const std::string_view path = path_.view();
  return path.empty() || lastElement(path) != path.size();
}

void QVPathName::changeExtension(const char* extension) {
  const std::string_view path = path_.view();
  size_t point = std::string_view::npos;
  for (size_t at = lastElement(path); at < path.size(); at += characterBytes(path, at)) {
    if (path[at] == '.') point = at;
  }
  if (point == std::string_view::npos) return;
  const std::string changed = std::string(path.substr(0, point)) + (extension ? extension : "");
  path_.create(QVString::PathGrain, changed.c_str());
}

void QVPathName::fileName(QVString& target) const {
  const std::string name(path_.view().substr(lastElement(path_.view())));
  target.create(QVString::PathGrain, name.c_str());
}

}  // namespace qv
