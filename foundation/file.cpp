#include "foundation/file.h"

#include <span>
#include <string>

#include "foundation/diagnostic.h"
#include "foundation/path_name.h"
#include "platform/dialogs/dialogs.h"
#include "platform/services.h"
#include "platform/text/shift_jis.h"

namespace qv {

namespace {

/// What follows the file's name in a box, as UTF-8.
struct ErrorText {
  uint32_t error;
  const char* text;
};
constexpr ErrorText OpenTexts[] = {
    {FileNotFound, "が\n見付かりません"},
    {FilePathNotFound, "で\n指定されたパスが見付かりません"},
    {FileAccessDenied, "\nアクセスが拒否されました"},
    {FileNotReady, "\nドライブの準備ができていません"},
    {FileGeneralFailure, "\nメディアはフォーマットされていないか、準備ができていません"},
    {FileSharing, "は\n他のアプリケーションによって開かれています"},
    {FileBadNetworkPath, "ネットワークドライブにアクセスできません"},
    {FileBadNetworkName, "ネットワークドライブにアクセスできません"},
    {FileNoNetworkAccess, "\nネットワークドライブにアクセス権がありません"},
};
constexpr ErrorText ReadTexts[] = {
    {FileAccessDenied, "への\nアクセスは拒否されました。"},
    {FileNotReady, "\nドライブの準備ができていません"},
    {FileGeneralFailure, "\nメディアはフォーマットされていないか、準備ができていません"},
    {FileSharing, "は\n他のアプリケーションから利用されています"},
    {FileLocked, "は\n他のプロセスがファイルをロックしています"},
};
constexpr ErrorText WriteTexts[] = {
    {FileAccessDenied, "は\n読み込み専用で開かれています"},
    {FileNotReady, "\nドライブの準備ができていません"},
    {FileGeneralFailure, "\nメディアはフォーマットされていないか、準備ができていません"},
    {FileSharing, "は\n他のアプリケーションから利用されています"},
    {FileLocked, "は\n他のプロセスがファイルをロックしています"},
};

std::string textFor(std::span<const ErrorText> table, uint32_t error, const std::string& other) {
  for (const ErrorText& row : table) {
    if (row.error == error) return sjis(row.text);
  }
  return sjis(other);
}

std::string openText(uint32_t error) {
  return textFor(OpenTexts, error, "\n未知のエラーです code:" + std::to_string(error));
}

std::string readText(uint32_t error, int handle) {
  return textFor(ReadTexts, error,
                 "読み込みできません\nError code : " + std::to_string(error) +
                     "\nFile handle : " + std::to_string(handle));
}

std::string writeText(uint32_t error) {
  return textFor(WriteTexts, error, "書き込みできません\nError code : " + std::to_string(error));
}

/// True when the player wants another try.
bool offersRetry(const QVString& name, const std::string& text, const char* caption) {
  return services().dialogs->messageBox(name.text() + text, caption, BoxRetryCancel) ==
         BoxAnswer::Retry;
}

}  // namespace

QVFile::~QVFile() {
  // Unwinding from a failed save must not put half of it in the old one's place.
  if (isOpen() && services().files) services().files->discard(handle_);
}

void QVFile::forget() {
  handle_ = FileSystem::NoHandle;
  name_.clear();
}

void QVFile::openPath(const char* path, uint32_t disposition, uint32_t access, uint32_t share,
                      uint32_t attributes) {
  for (;;) {
    const auto opened = services().files->open(path, disposition, access, share, attributes);
    handle_ = opened.handle;
    if (isOpen()) return;
    if (!offersRetry(name_, openText(opened.error), "QVFile - open")) break;
  }
  const QVString name = name_;
  forget();
  throw CannotOpenException(name.text());
}

void QVFile::open(const QVPathName& path, uint32_t disposition, uint32_t access, uint32_t share,
                  uint32_t attributes) {
  close();
  name_ = QVString(path.text());
  openPath(path.text(), disposition, access, share, attributes);
}

void QVFile::openName(const char* name, uint32_t disposition, uint32_t access, uint32_t share,
                      uint32_t attributes) {
  const QVString kept(name);  // it may be our own name, which close empties
  close();
  name_ = kept;
  const QVPathName path(name ? kept.text() : nullptr);
  openPath(path.text(), disposition, access, share, attributes);
}

void QVFile::close() {
  if (!isOpen()) return;
  FileSystem& files = *services().files;
  for (;;) {
    const uint32_t error = files.commit(handle_);
    if (error == FileOk) break;
    if (offersRetry(name_, writeText(error), "QVFile - write")) continue;
    files.discard(handle_);
    const QVString name = name_;
    forget();
    throw CannotWriteException(name.text());
  }
  forget();
}

void QVFile::setDurability(Durability durability) {
  if (isOpen()) services().files->setDurability(handle_, durability);
}

int32_t QVFile::read(void* buffer, int32_t size) {
  if (size <= 0) return 0;
  for (;;) {
    const auto done = services().files->read(handle_, buffer, static_cast<size_t>(size));
    if (done.bytes >= 0) return static_cast<int32_t>(done.bytes);
    if (!offersRetry(name_, readText(done.error, handle_), "QVFile - read")) break;
  }
  throw CannotReadException(name_.text());
}

int32_t QVFile::write(const void* buffer, int32_t size) {
  if (size <= 0) return 0;
  for (;;) {
    const auto done = services().files->write(handle_, buffer, static_cast<size_t>(size));
    if (done.bytes >= 0) return static_cast<int32_t>(done.bytes);
    if (!offersRetry(name_, writeText(done.error), "QVFile - write")) break;
  }
  throw CannotWriteException(name_.text());
}

int64_t QVFile::seek(int64_t offset, SeekFrom from) {
  return isOpen() ? services().files->seek(handle_, offset, from) : -1;
}

int64_t QVFile::position() {
  return seek(0, SeekFrom::Current);
}

int64_t QVFile::size() {
  return isOpen() ? services().files->size(handle_) : -1;
}

const CalendarTime& QVFile::getTime(FileTime which) {
  const auto millis = isOpen() ? services().files->time(handle_, which) : std::nullopt;
  time_ = millis.value_or(0);
  calendar_ = millis ? Kernel::current().localTime(*millis) : CalendarTime{};
  return calendar_;
}

int QVFile::exists(const QVPathName& path) {
  if (services().files->attributes(path.path().view())) return 1;
  services().dialogs->messageBox(path.text() + sjis("は\n存在しません。読み込み処理を中止します。"),
                                 "System Manager - inquire reading", BoxNotice);
  return 0;
}

int QVFile::existsName(const char* name) {
  const QVPathName path(name);
  return services().files->attributes(path.path().view()) ? 1 : 0;
}

}  // namespace qv
