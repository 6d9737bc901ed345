#include "audio/wave_file.h"

#include <gtest/gtest.h>

#include "foundation/diagnostic.h"
#include "tests/support/failing_heap.h"
#include "tests/support/wave_bytes.h"

namespace qv::testing {
namespace {

class Bytes : public WaveInput {
 public:
  explicit Bytes(std::string bytes) : bytes_(std::move(bytes)) {}
  uint64_t size() override { return bytes_.size(); }
  bool readAt(uint64_t at, std::span<uint8_t> target) override {
    ++reads;
    if (at > bytes_.size() || target.size() > bytes_.size() - at) return false;
    std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(at), target.size(), target.begin());
    return true;
  }
  int reads = 0;

 private:
  std::string bytes_;
};

/// The samples of a good file; nothing for a refused one.
std::optional<std::string> samplesOf(const std::string& bytes) {
  Bytes input(bytes);
  const auto file = readWave(input);
  if (!file) return std::nullopt;
  return std::string(file->samples.span().begin(), file->samples.span().end());
}

const std::string Format = chunk("fmt ", formatBytes(pcm(2, 22050, 16)));
const std::string Samples = chunk("data", "12345678");

TEST(WaveFileTest, GivesFormatAndSamples) {
  Bytes input(riff(Format + Samples));
  const auto file = readWave(input);
  ASSERT_TRUE(file);
  EXPECT_EQ(file->format.channels, 2);
  EXPECT_EQ(file->format.samplesPerSecond, 22050u);
  EXPECT_EQ(file->format.bitsPerSample, 16);
  EXPECT_EQ(file->format.blockBytes, 4);
  EXPECT_EQ(file->format.bytesPerSecond, 88200u);
  EXPECT_EQ(std::string(file->samples.span().begin(), file->samples.span().end()), "12345678");
}

TEST(WaveFileTest, ReadsSixteenBytesOfALongerFormat) {
  const std::string extended =
      chunk("fmt ", formatBytes(pcm(1, 8000, 8)) + std::string("\2\0\x99\x99", 4));
  EXPECT_EQ(samplesOf(riff(extended + Samples)), "12345678");
}

TEST(WaveFileTest, ReadsWhatAShorterFormatHasAndTakesTheRestAsZero) {
  Bytes input(riff(chunk("fmt ", formatBytes(pcm(1, 8000, 8)).substr(0, 14)) + Samples));
  const auto file = readWave(input);
  ASSERT_TRUE(file);
  EXPECT_EQ(file->format.blockBytes, 1);
  EXPECT_EQ(file->format.bitsPerSample, 0);
}

TEST(WaveFileTest, RefusesWhatIsNotPlainPcm) {
  for (const uint16_t tag : {0, 2, 3, 17, 85, 0xFFFE})
    EXPECT_FALSE(samplesOf(riff(chunk("fmt ", formatBytes(pcm(1, 8000, 8), tag)) + Samples)))
        << tag;
}

TEST(WaveFileTest, PassesOverOtherChunksAndTheirPadding) {
  for (const size_t length : {0u, 1u, 2u, 7u, 8u, 33u}) {
    const std::string other = chunk("LIST", std::string(length, 'x'));
    EXPECT_EQ(samplesOf(riff(other + Format + other + Samples + other)), "12345678") << length;
  }
}

TEST(WaveFileTest, FindsItsFormBehindAnother) {
  EXPECT_EQ(samplesOf(riff("", "AVI ") + chunk("junk", "123") + riff(Format + Samples)),
            "12345678");
}

TEST(WaveFileTest, LooksForTheSamplesBehindTheFormatOnly) {
  EXPECT_FALSE(samplesOf(riff(Samples + Format)));
}

TEST(WaveFileTest, LooksForChunksInsideTheFormOnly) {
  const std::string form = riff(Format);
  EXPECT_FALSE(samplesOf(form + Samples));
}

TEST(WaveFileTest, TakesAnEmptyChunkOfSamples) {
  EXPECT_EQ(samplesOf(riff(Format + chunk("data", ""))), "");
}

TEST(WaveFileTest, RefusesWrongTags) {
  std::string bytes = riff(Format + Samples);
  EXPECT_TRUE(samplesOf(bytes));
  for (const size_t place : {0u, 8u, 12u, 36u}) {
    std::string other = bytes;
    other[place] ^= 0x20;
    EXPECT_FALSE(samplesOf(other)) << place;
  }
}

TEST(WaveFileTest, RefusesAFileThatIsCutShortWhereverThatIs) {
  const std::string whole = riff(Format + Samples);
  for (size_t length = 0; length < whole.size(); ++length)
    EXPECT_FALSE(samplesOf(whole.substr(0, length))) << length;
}

TEST(WaveFileTest, RefusesSizesBeyondTheFileBeforeItTakesMemory) {
  for (const uint32_t size : {9u, 100u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
    FailingHeap none(0);
    EXPECT_FALSE(samplesOf(riff(Format + chunk("data", "12345678", size)))) << size;
  }
}

TEST(WaveFileTest, ReadsSamplesThatReachBeyondTheFormButNotBeyondTheFile) {
  std::string bytes = riff(Format + Samples);
  bytes.replace(4, 4, littleBytes(36, 4));
  EXPECT_EQ(samplesOf(bytes), "12345678");
}

TEST(WaveFileTest, GivesUpOnAnEndlessRowOfEmptyChunks) {
  std::string many;
  for (int i = 0; i < 20000; ++i)
    many += chunk("junk", "");
  Bytes input(riff(many + Format + Samples));
  EXPECT_FALSE(readWave(input));
  EXPECT_LT(input.reads, 10000);
}

TEST(WaveFileTest, CountsTheChunksOfAllItsFormsTogether) {
  // Forms of another type, each behind many chunks that are no form.
  std::string many;
  for (int form = 0; form < 40; ++form) {
    for (int i = 0; i < 1000; ++i)
      many += chunk("junk", "");
    many += riff("", "AVI ");
  }
  Bytes input(many + riff(Format + Samples));
  EXPECT_FALSE(readWave(input));
  EXPECT_LT(input.reads, 10000);
}

TEST(WaveFileTest, RaisesWhenMemoryFails) {
  Bytes input(riff(Format + Samples));
  FailingHeap none(0);
  EXPECT_THROW(readWave(input), NotEnoughMemoryException);
}

}  // namespace
}  // namespace qv::testing
