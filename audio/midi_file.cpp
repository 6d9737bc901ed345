#include "audio/midi_file.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "foundation/diagnostic.h"
#include "foundation/file.h"

namespace qv {

namespace {

constexpr const char* Operation = "QVMidi - loadMidi";
constexpr char Magic[4] = {'M', 'T', 'h', 'd'};
// Places in the file's head. The format word at 8 is not looked at: all tracks play together.
constexpr size_t HeaderLengthAt = 4, TrackCountAt = 10, DivisionAt = 12, HeadBytes = 14;

uint32_t word16(const uint8_t* bytes) {
  return uint32_t{bytes[0]} << 8 | bytes[1];
}

uint32_t word32(const uint8_t* bytes) {
  return word16(bytes) << 16 | word16(bytes + 2);
}

void* allocate(size_t bytes) {
  void* block = QVHeap::malloc(bytes);
  if (!block) throw NotEnoughMemoryException(Operation);
  return block;
}

}  // namespace

MidiFile::MidiFile(QVFile& file) {
  const int64_t size = std::max<int64_t>(file.size(), 0);
  // Places in the image have 32 bits, and so has the length of one read.
  if (size > std::numeric_limits<int32_t>::max()) throw NotEnoughMemoryException(Operation);
  image_.reset(static_cast<uint8_t*>(allocate(static_cast<size_t>(std::max<int64_t>(size, 1)))));
  const int32_t read = file.read(image_.get(), static_cast<int32_t>(size));
  size_ = static_cast<size_t>(std::max(read, 0));
  if (size_ < HeadBytes || std::memcmp(image_.get(), Magic, sizeof Magic) != 0) {
    image_.reset();
    size_ = 0;
    return;
  }
  findTracks();
}

void MidiFile::findTracks() {
  const uint8_t* bytes = image_.get();
  division_ = word16(bytes + DivisionAt);
  const uint64_t first = ChunkHeadBytes + uint64_t{word32(bytes + HeaderLengthAt)};
  const uint32_t declared = word16(bytes + TrackCountAt);

  // The head may declare more tracks than there are: only chunks whose heads lie inside count. What
  // kind of chunk it is was never looked at.
  const auto forEachTrack = [&](auto&& visit) {
    uint64_t chunk = first;
    for (uint32_t track = 0; track < declared && chunk + ChunkHeadBytes <= size_; ++track) {
      visit(track, static_cast<uint32_t>(chunk + ChunkHeadBytes));
      chunk += ChunkHeadBytes + uint64_t{word32(bytes + chunk + 4)};
    }
  };
  forEachTrack([&](uint32_t, uint32_t) { ++trackCount_; });
  if (trackCount_ == 0) return;
  trackStarts_.reset(static_cast<uint32_t*>(allocate(trackCount_ * sizeof(uint32_t))));
  forEachTrack([&](uint32_t track, uint32_t start) { trackStarts_[track] = start; });
}

}  // namespace qv
