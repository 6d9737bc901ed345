#pragma once

/// Files of a case: what the engine writes, and what it is given to read.

#include <string>
#include <string_view>

#include "foundation/file.h"
#include "tests/vectors/case.h"

namespace qv::vectors {

/// The bytes that `write` puts into a new file.
template <class Write>
std::string bytesWritten(testing::TestPlatform& platform, Write write) {
  QVFile file;
  file.openName("written.bin", CreateAlways, GenericRead | GenericWrite, ShareRead,
                AttributeNormal);
  write(file);
  file.close();
  return platform.readFile(platform.player() / "written.bin");
}

/// Opens a file that holds the bytes, positioned at `position`.
inline void openInput(testing::TestPlatform& platform, QVFile& file, std::string_view bytes,
                      int64_t position = 0) {
  platform.writeFile(platform.player() / "input.bin", bytes);
  file.openName("input.bin", OpenExisting, GenericRead, ShareRead, AttributeNormal);
  file.seek(position, SeekFrom::Start);
}

}  // namespace qv::vectors
