#include "scenario/registers.h"

#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <utility>

#include "foundation/diagnostic.h"
#include "foundation/file.h"
#include "platform/dialogs/dialogs.h"
#include "platform/services.h"
#include "platform/text/shift_jis.h"

namespace qv {

namespace {

constexpr const char* NumericName = "QVReg";
constexpr const char* StringName = "QVStrReg";

void reportBadIndex(const char* caption, int32_t index, int32_t count) {
  const std::string text = sjis("指定されたインデックス") + std::to_string(index) +
                           sjis("は\n本レジスタの範囲 0 ～ ") + std::to_string(count - 1) +
                           sjis(
                               "を越えています。\n"
                               "０番インデックスが指定されたと仮定して処理を継続します。");
  services().dialogs->messageBox(text, caption, BoxNotice);
}

void reportNoTable(const char* caption) {
  services().dialogs->messageBox(
      sjis("レジスタ領域は、まだ create されていません\n"
           "代入時の悪影響をさけるため、１つの要素を持った領域を作成して\n"
           "処理を継続します。"),
      caption, BoxNotice);
}

void appendWord(std::string& bytes, int32_t word) {
  bytes.append(reinterpret_cast<const char*>(&word), sizeof word);
}

/// The head of a block: the name with its length, and the count.
std::string blockHead(const char* name, int32_t count) {
  std::string bytes;
  appendWord(bytes, static_cast<int32_t>(std::strlen(name) + 1));
  bytes.append(name, std::strlen(name) + 1);
  appendWord(bytes, count);
  return bytes;
}

/// Puts the file back where it stood unless the block was read to its end: a block that turns out
/// to be cut short or false half-way must not move the reader.
class PositionGuard {
 public:
  explicit PositionGuard(QVFile& file) : file_(file), start_(file.position()) {}
  bool refuse() const {
    file_.seek(start_, SeekFrom::Start);
    return false;
  }

 private:
  QVFile& file_;
  int64_t start_;
};

bool readWord(QVFile& file, int32_t& word) {
  return file.read(&word, sizeof word) == static_cast<int32_t>(sizeof word);
}

/// Reads head and count; false leaves the position alone. `leastBytes` is the least that one entry
/// takes on file, so that a false count is known before anything is allocated.
bool readHead(QVFile& file, const char* name, int64_t leastBytes, int32_t& count) {
  if (!file.isOpen()) return false;
  const PositionGuard guard(file);
  QVFileBlock block;
  block.setName(name);
  if (!block.checkHeader(file)) return false;
  if (!readWord(file, count) || count < 0) return guard.refuse();
  const int64_t bytes = count * leastBytes;
  if (bytes > file.remaining() || bytes > std::numeric_limits<int32_t>::max())
    return guard.refuse();
  return true;
}

/// Walks over `count` string blocks without reading their texts; the position is then behind them.
bool skipStrings(QVFile& file, int32_t count) {
  const int64_t size = file.size();
  int64_t position = file.position();
  for (int32_t i = 0; i < count; ++i) {
    uint32_t length = 0;
    if (size - position < static_cast<int64_t>(sizeof length)) return false;
    if (file.read(&length, sizeof length) != static_cast<int32_t>(sizeof length)) return false;
    position += static_cast<int64_t>(sizeof length) + length;
    if (position > size) return false;
    if (file.seek(position, SeekFrom::Start) != position) return false;
  }
  return true;
}

/// Reads a whole block; only then does it take the place of the register file's table.
/// `readEntries(fresh, count)` fills a fresh register file, false when the file does not hold it.
template <typename Register, typename ReadEntries>
void loadBlock(QVFile& file, const char* name, int64_t leastBytes, Register& target,
               const ReadEntries& readEntries) {
  if (!file.isOpen()) return;
  const PositionGuard guard(file);
  int32_t count = 0;
  if (!readHead(file, name, leastBytes, count)) return;
  Register fresh;
  if (readEntries(fresh, count))
    target.swap(fresh);
  else
    guard.refuse();
}

}  // namespace

// --- QVReg ---

QVReg::~QVReg() {
  release();
}

void QVReg::release() {
  delete[] std::exchange(table_, nullptr);
  count_ = 0;
}

void QVReg::swap(QVReg& other) noexcept {
  std::swap(table_, other.table_);
  std::swap(count_, other.count_);
}

void QVReg::create(int32_t count) {
  if (count <= 0) return;
  release();
  table_ = new (std::nothrow) int32_t[static_cast<size_t>(count)]();
  if (!table_) throw NotEnoughMemoryException("QVReg - create");
  count_ = count;
}

int32_t& QVReg::badItem(int32_t index) {
  constexpr const char* Caption = "QVReg - item()";
  if (table_) {
    reportBadIndex(Caption, index, count_);
  } else {
    create(1);
    reportNoTable(Caption);
  }
  return table_[0];
}

void QVReg::save(QVFile& file) const {
  if (!file.isOpen()) return;
  std::string bytes = blockHead(NumericName, count_);
  bytes.append(reinterpret_cast<const char*>(table_), static_cast<size_t>(count_) * 4);
  file.write(bytes.data(), static_cast<int32_t>(bytes.size()));
}

void QVReg::load(QVFile& file) {
  loadBlock(file, NumericName, sizeof(int32_t), *this, [&file](QVReg& fresh, int32_t count) {
    fresh.create(count);
    const int32_t bytes = count * static_cast<int32_t>(sizeof(int32_t));
    return count == 0 || file.read(fresh.table_, bytes) == bytes;
  });
}

// --- QVStrReg ---

QVStrReg::~QVStrReg() {
  release();
}

void QVStrReg::release() {
  delete[] std::exchange(table_, nullptr);
  count_ = 0;
}

void QVStrReg::swap(QVStrReg& other) noexcept {
  std::swap(table_, other.table_);
  std::swap(count_, other.count_);
}

void QVStrReg::create(int32_t count) {
  if (count <= 0) return;
  release();
  constexpr const char* Operation = "QVStrReg - create";
  try {
    table_ = new (std::nothrow) QVString[static_cast<size_t>(count)];
  } catch (const NotEnoughMemoryException&) {
    // One of the texts found no room for its body.
    throw NotEnoughMemoryException(Operation);
  }
  if (!table_) throw NotEnoughMemoryException(Operation);
  count_ = count;
}

QVString& QVStrReg::badItem(int32_t index) {
  constexpr const char* Caption = "QVStrReg - item()";
  if (table_) {
    reportBadIndex(Caption, index, count_);
  } else {
    create(1);
    reportNoTable(Caption);
  }
  return table_[0];
}

void QVStrReg::save(QVFile& file) const {
  if (!file.isOpen()) return;
  std::string bytes = blockHead(StringName, count_);
  for (int32_t i = 0; i < count_; ++i) {
    const std::string_view text = table_[i].view();
    appendWord(bytes, static_cast<int32_t>(text.size() + 1));
    bytes.append(text);
    bytes.push_back('\0');
  }
  file.write(bytes.data(), static_cast<int32_t>(bytes.size()));
}

void QVStrReg::load(QVFile& file) {
  loadBlock(file, StringName, sizeof(uint32_t), *this, [&file](QVStrReg& fresh, int32_t count) {
    // First a walk over the lengths: texts are allocated only when the file holds them all.
    const int64_t first = file.position();
    if (!skipStrings(file, count)) return false;
    const int64_t end = file.position();
    file.seek(first, SeekFrom::Start);
    fresh.create(count);
    for (int32_t i = 0; i < count; ++i)
      fresh.table_[i].load(file);
    file.seek(end, SeekFrom::Start);
    return true;
  });
}

}  // namespace qv
