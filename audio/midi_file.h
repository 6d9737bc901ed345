#pragma once

/// A Standard MIDI File as the sequencer holds it: all its bytes in memory, and where in them the
/// tracks begin. Nothing here ever points outside the bytes. Belongs to one thread at a time.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "foundation/heap.h"

namespace qv {

class QVFile;

class MidiFile {
 public:
  static constexpr size_t ChunkHeadBytes = 8;

  /// No tracks.
  MidiFile() = default;
  /// Reads the whole file. Throws CannotReadException, and NotEnoughMemoryException with the title
  /// "QVMidi - loadMidi". A file of another kind has no tracks and no bytes.
  explicit MidiFile(QVFile& file);

  /// False for a file of another kind.
  bool valid() const { return image_ != nullptr; }
  std::span<const uint8_t> image() const { return {image_.get(), size_}; }
  /// Ticks of a quarter note.
  uint32_t division() const { return division_; }
  /// Where in the image the events of each track begin: of the tracks that the head declares, those
  /// whose chunks are there.
  std::span<const uint32_t> tracks() const { return {trackStarts_.get(), trackCount_}; }

 private:
  struct Free {
    void operator()(void* block) const { QVHeap::free(block); }
  };

  void findTracks();

  std::unique_ptr<uint8_t, Free> image_;
  std::unique_ptr<uint32_t[], Free> trackStarts_;
  size_t size_ = 0, trackCount_ = 0;
  uint32_t division_ = 0;
};

}  // namespace qv
