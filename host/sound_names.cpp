#include "host/sound_names.h"

#include "audio/scene/sound_tables.h"
#include "platform/text/shift_jis.h"

namespace qv {

namespace {

/// Small ASCII letters and backslashes.
std::string plain(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    if (c == '/') c = '\\';
  }
  return text;
}

bool isPathOrItsEnd(const std::string& path, const std::string& name) {
  const std::string whole = plain(path), wanted = plain(name);
  const std::string file = whole.substr(whole.find_last_of('\\') + 1);
  return wanted == whole || wanted == file || wanted == file.substr(0, file.find_last_of('.'));
}

}  // namespace

bool waveIsNamed(const std::string& path, const std::string& name) {
  if (isPathOrItsEnd(path, name)) return true;
  const ShiftJisResult text = shiftJisOfUtf8(name);
  const SoundEffect* effect = text.ok ? findSoundEffect(text.text.c_str()) : nullptr;
  return effect && plain(path) == fileOf(*effect);
}

bool songIsNamed(const std::string& path, const std::string& name) {
  if (isPathOrItsEnd(path, name)) return true;
  const int32_t number = songNumber(name.c_str());
  for (int32_t kind = FirstDeviceKind; number != 0 && kind <= LastDeviceKind; ++kind)
    if (plain(path) == plain(songFile(number, kind))) return true;
  return false;
}

}  // namespace qv
