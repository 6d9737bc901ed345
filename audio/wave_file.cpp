#include "audio/wave_file.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "graphics/little_endian.h"

namespace qv {

namespace {

constexpr size_t HeadBytes = 8, FormTypeBytes = 4, FormatBytes = 16;
constexpr uint16_t PlainPcm = 1;
/// A file of nothing but empty chunks is given up, however long it is.
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

std::optional<Chunk> chunkAt(WaveInput& input, uint64_t at, uint64_t end) {
  std::array<uint8_t, HeadBytes> head{};
  if (at > end || end - at < HeadBytes || !input.readAt(at, head)) return std::nullopt;
  Chunk chunk;
  std::copy_n(head.begin(), chunk.id.size(), chunk.id.begin());
  chunk.begin = at + HeadBytes;
  chunk.size = littleLong(head.data() + chunk.id.size());
  return chunk;
}

std::optional<Chunk> findChunk(WaveInput& input, std::string_view name, uint64_t from,
                               uint64_t end) {
  uint64_t at = from;
  for (int i = 0; i < MostChunks; ++i) {
    const auto chunk = chunkAt(input, at, end);
    if (!chunk || chunk->is(name)) return chunk;
    at = chunk->next();
  }
  return std::nullopt;
}

/// A form of another type before ours is passed over.
std::optional<Chunk> findWaveForm(WaveInput& input) {
  uint64_t at = 0;
  for (int i = 0; i < MostChunks; ++i) {
    const auto chunk = findChunk(input, "RIFF", at, input.size());
    std::array<uint8_t, FormTypeBytes> type{};
    if (!chunk || !input.readAt(chunk->begin, type)) return std::nullopt;
    if (std::string_view(reinterpret_cast<const char*>(type.data()), type.size()) == "WAVE")
      return chunk;
    at = chunk->next();
  }
  return std::nullopt;
}

}  // namespace

std::optional<WaveFile> readWave(WaveInput& input) {
  const auto form = findWaveForm(input);
  if (!form) return std::nullopt;
  const uint64_t end = std::min(form->begin + form->size, input.size());
  const auto format = findChunk(input, "fmt ", form->begin + FormTypeBytes, end);
  if (!format) return std::nullopt;
  std::array<uint8_t, FormatBytes> fields{};
  const size_t known = std::min<size_t>(format->size, fields.size());
  if (!input.readAt(format->begin, std::span(fields).first(known))) return std::nullopt;
  if (littleWord(&fields[0]) != PlainPcm) return std::nullopt;
  const auto samples = findChunk(input, "data", format->next(), end);
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
