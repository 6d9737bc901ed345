#include "audio/wave_file.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "graphics/little_endian.h"

namespace qv {

namespace {

constexpr size_t HeadBytes = 8, FormTypeBytes = 4, FormatBytes = 16;
constexpr uint16_t PlainPcm = 1;
/// So many heads are looked at in a file, in its forms and inside them together: one of nothing but
/// small chunks is given up, however long it is.
constexpr int MostChunks = 4096;

struct Chunk {
  std::array<uint8_t, 4> id{};
  uint64_t begin = 0;  ///< of the contents
  uint32_t size = 0;   ///< as the head says
  bool is(std::string_view name) const {
    return std::equal(id.begin(), id.end(), name.begin(), name.end());
  }
  /// Chunks of odd size are followed by a byte that belongs to nobody.
  uint64_t next() const { return begin + size + (size & 1); }
};

/// The heads of a file's chunks, so far as they are looked at.
class ChunkHeads {
 public:
  explicit ChunkHeads(WaveInput& input) : input_(input) {}

  /// The first chunk of that name from a place on, before `end`.
  std::optional<Chunk> find(std::string_view name, uint64_t from, uint64_t end) {
    for (uint64_t place = from; left_ > 0;) {
      const auto chunk = at(place, end);
      if (!chunk || chunk->is(name)) return chunk;
      place = chunk->next();
    }
    return std::nullopt;
  }

 private:
  std::optional<Chunk> at(uint64_t place, uint64_t end) {
    std::array<uint8_t, HeadBytes> head{};
    --left_;
    if (place > end || end - place < HeadBytes || !input_.readAt(place, head)) return std::nullopt;
    Chunk chunk;
    std::copy_n(head.begin(), chunk.id.size(), chunk.id.begin());
    chunk.begin = place + HeadBytes;
    chunk.size = littleLong(head.data() + chunk.id.size());
    return chunk;
  }

  WaveInput& input_;
  int left_ = MostChunks;
};

/// A form of another type before ours is passed over.
std::optional<Chunk> findWaveForm(ChunkHeads& heads, WaveInput& input) {
  uint64_t at = 0;
  while (const auto chunk = heads.find("RIFF", at, input.size())) {
    std::array<uint8_t, FormTypeBytes> type{};
    if (!input.readAt(chunk->begin, type)) return std::nullopt;
    if (std::string_view(reinterpret_cast<const char*>(type.data()), type.size()) == "WAVE")
      return chunk;
    at = chunk->next();
  }
  return std::nullopt;
}

}  // namespace

std::optional<WaveFile> readWave(WaveInput& input) {
  ChunkHeads heads(input);
  const auto form = findWaveForm(heads, input);
  if (!form) return std::nullopt;
  const uint64_t end = std::min(form->begin + form->size, input.size());
  const auto format = heads.find("fmt ", form->begin + FormTypeBytes, end);
  if (!format) return std::nullopt;
  std::array<uint8_t, FormatBytes> fields{};
  const size_t known = std::min<size_t>(format->size, fields.size());
  if (!input.readAt(format->begin, std::span(fields).first(known))) return std::nullopt;
  if (littleWord(&fields[0]) != PlainPcm) return std::nullopt;
  const auto samples = heads.find("data", format->next(), end);
  if (!samples || samples->size > input.size() - samples->begin) return std::nullopt;

  WaveFile file;
  file.format = {.channels = littleWord(&fields[2]),
                 .samplesPerSecond = littleLong(&fields[4]),
                 .bitsPerSample = littleWord(&fields[14]),
                 .blockBytes = littleWord(&fields[12]),
                 .bytesPerSecond = littleLong(&fields[8])};
  file.samples = HeapBlock(samples->size, HeapBlock::Content::Undefined, "QVWave - loadWave()");
  if (!input.readAt(samples->begin, file.samples.span())) return std::nullopt;
  return file;
}

}  // namespace qv
