// A click map in files: "QVClickMap" as a text with its length, the origin, then the surface's own
// record.

#include <array>
#include <cstring>

#include "foundation/file.h"
#include "foundation/path_name.h"
#include "graphics/dib.h"
#include "input/click_map.h"
#include "platform/dialogs/dialogs.h"
#include "platform/services.h"
#include "platform/text/shift_jis.h"

namespace qv {

namespace {

constexpr char Signature[] = "QVClickMap";
constexpr uint32_t SignatureBytes = sizeof(Signature);
constexpr const char* SaveCaption = "QVClickMap - save";

}  // namespace

bool QVClickMap::readSignature(QVFile& file) {
  if (!file.isOpen()) return false;
  const int64_t start = file.position();
  uint32_t length = 0;
  std::array<char, SignatureBytes> text{};
  const bool ours = file.read(&length, sizeof length) == sizeof length &&
                    length == SignatureBytes &&
                    file.read(text.data(), SignatureBytes) == int32_t{SignatureBytes} &&
                    std::memcmp(text.data(), Signature, SignatureBytes) == 0;
  if (!ours) file.seek(start, SeekFrom::Start);
  return ours;
}

void QVClickMap::write(QVFile& file) {
  if (!file.isOpen()) return;
  QVString(Signature).save(file);
  const std::array<int32_t, 2> origin{originX_, originY_};
  file.write(origin.data(), sizeof origin);
  QVVSurface::saveTagged(file);
}

void QVClickMap::read(QVFile& file) {
  if (!readSignature(file)) return;
  std::array<int32_t, 2> origin{};
  if (file.read(origin.data(), sizeof origin) != sizeof origin) return;
  if (!takeTagged(file)) return;
  setOrigin(origin[0], origin[1]);
}

void QVClickMap::loadFromFile(QVFile& file, int32_t hoverEnabled, InputHost* host) {
  const int64_t start = file.isOpen() ? file.position() : 0;
  QVDib picture;
  picture.loadFromFile(file);
  if (!picture.empty()) return loadDib(picture, hoverEnabled, host);
  hoverEnabled_ = hoverEnabled;
  host_ = host;
  if (!file.isOpen()) return;
  file.seek(start, SeekFrom::Start);
  read(file);
}

void QVClickMap::saveAs(const char* path) {
  if (!path) return;
  const QVPathName name(path);
  if (QVFile::existsName(path)) {
    const std::string question =
        path + sjis("は\nすでに存在しています。上書きしてもよろしいですか？");
    if (services().dialogs->messageBox(question, SaveCaption, BoxYesNo) != BoxAnswer::Yes) return;
  }
  QVFile file;
  file.open(name, CreateAlways, GenericRead | GenericWrite, ShareRead, AttributeNormal);
  write(file);
  file.close();
}

void QVClickMap::loadFrom(const char* path) {
  if (!path) return;
  QVFile file;
  file.openName(path, OpenExisting, GenericRead, ShareRead, AttributeNormal);
  loadFromFile(file, hoverEnabled_, host_);
  file.close();
}

}  // namespace qv
