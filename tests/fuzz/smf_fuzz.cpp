#include <cstdint>
#include <cstdlib>
#include <string>

#include "tools/song/listing.h"
#include "tools/song/smf_reader.h"
#include "tools/song/song_text.h"

/// Whatever the bytes: the listing is bounded by them, and notation that was written of them can be
/// read.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace qv::song;
  const SmfFile file = readSmf({data, size});
  const std::string list = listSmf(file);
  // An event takes two bytes at least, and shows its own at most in three letters each.
  if (list.size() > 400 + size * 100) std::abort();
  const std::string notation = notationOf(file);
  bool notes = false;
  for (const std::string& fault : file.faults)
    if (fault.empty()) std::abort();
  notes = notation.find("\npart ") != std::string::npos;
  const ReadSong read = readSong(notation);
  if (notes && !read.problems.empty()) {
    for (const Problem& problem : read.problems)
      if (problem.what.find("too short") != std::string::npos ||
          problem.what.find("too long:") != std::string::npos)
        std::abort();
  }
  return 0;
}
