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
  for (const std::string& fault : file.faults)
    if (fault.empty()) std::abort();
  // Too many notes may be told, or none; its bars are always whole.
  for (const Problem& problem : readSong(notationOf(file)).problems)
    if (problem.what.starts_with("Bar ")) std::abort();
  return 0;
}
