#include "scenario/file_block.h"

#include <bit>
#include <cstring>
#include <string>

#include "foundation/file.h"

namespace qv {

// Blocks are written as they stand in memory.
static_assert(std::endian::native == std::endian::little);

bool QVFileBlock::checkHeader(QVFile& file) const {
  if (!file.isOpen()) return false;
  const int64_t start = file.position();
  const auto fail = [&] {
    file.seek(start, SeekFrom::Start);
    return false;
  };

  uint32_t stored = 0;
  if (file.read(&stored, sizeof stored) != sizeof stored) return fail();
  // The length on file counts the final zero; a stored 0 stands for an empty name too.
  const uint32_t length = stored ? stored - 1 : 0;
  const std::string_view expected = name_.view();
  if (length != expected.size()) return fail();
  if (static_cast<int64_t>(stored) > file.remaining()) return fail();

  std::string text(stored, '\0');
  if (file.read(text.data(), static_cast<int32_t>(stored)) != static_cast<int32_t>(stored))
    return fail();
  if (stored == 0) return true;
  const bool matches = text.back() == '\0' && std::string_view(text).substr(0, length) == expected;
  return matches || fail();
}

void QVFileBlock::writeName(QVFile& file) const {
  name_.save(file);
}

void QVFileBlock::readName(QVFile& file) {
  name_.load(file);
}

}  // namespace qv
