// The manager's bookkeeping of the external-character font: the game's file stands in the player's
// settings while a game runs, and what stood there before comes back at the end.

#include "foundation/file.h"
#include "foundation/path_name.h"
#include "foundation/registry_key.h"
#include "platform/text/external_font.h"
#include "scenario/scenario.h"

namespace qv {

namespace {

constexpr const char* FontValue = "SystemDefaultEUDCFont";

/// The settings' key, with external characters off while it is open.
class FontKey {
 public:
  FontKey() {
    enableExternalCharacters(false);
    key_.open(CurrentUser, "EUDC\\932", KeyLasting, "");
  }
  ~FontKey() {
    enableExternalCharacters(true);
    key_.close();
  }
  FontKey(const FontKey&) = delete;
  FontKey& operator=(const FontKey&) = delete;
  RegistryKey* operator->() { return &key_; }

 private:
  RegistryKey key_;
};

}  // namespace

void QVScenario::readDefaultFont() {
  if (defaultFont_.length() != 0) return;
  FontKey key;
  defaultFont_ = key->queryString(FontValue);
}

void QVScenario::SetExternalFont(const char* fileName, int32_t) {
  FontKey key;
  if (fileName) {
    const QVPathName path(fileName);
    // A look without a notice: a missing font leaves everything as it was, silently.
    if (!QVFile::existsName(path.text())) return;
    key->setString(FontValue, path.path());
    currentFont_ = path.path();
    return;
  }
  const bool differs =
      defaultFont_.body() != currentFont_.body() && !(defaultFont_ == currentFont_);
  // Without an earlier font the value becomes the empty text; it is not removed, on purpose.
  key->setString(FontValue, differs ? defaultFont_ : QVString());
}

}  // namespace qv
