#include "screens/save_files.h"

#include "foundation/file.h"
#include "foundation/path_name.h"

namespace qv {

namespace {

constexpr int BlankYear = 1997, BlankMonth = 7, BlankDay = 7;

}  // namespace

bool SaveIsUsed(const char* file) {
  if (!file || !QVFile::existsName(file)) return false;
  QVFile save;
  save.open(QVPathName(file), OpenExisting, GenericRead, ShareRead, AttributeNormal);
  if (!save.isOpen()) return false;
  const CalendarTime written = save.getTime(FileTime::Write);
  save.close();
  return written.year != BlankYear || written.month != BlankMonth || written.day != BlankDay;
}

}  // namespace qv
