#include <random>

#include <gtest/gtest.h>

#include "graphics/dib.h"
#include "graphics/mcg_reader.h"
#include "tools/failure.h"
#include "tools/picture_codec/lzss_encoder.h"
#include "tools/picture_codec/picture_files.h"

namespace qv::codec {
namespace {

IndexedPicture picture(int32_t width, int32_t height, unsigned seed, unsigned colours) {
  std::mt19937 random(seed);
  IndexedPicture made;
  made.width = width;
  made.height = height;
  for (int32_t at = 0; at < width * height; ++at)
    made.pixels.push_back(static_cast<uint8_t>(random() % colours));
  for (size_t entry = 0; entry < 256; ++entry) {
    made.colours[entry] = random() & 0xFFFFFF;
    made.marks[entry] = static_cast<uint8_t>(random() % 2);
  }
  return made;
}

/// Top row first, no padding.
std::vector<uint8_t> pixelsOf(const QVDib& dib) {
  std::vector<uint8_t> pixels;
  const auto stride = static_cast<size_t>(dib.strideBytes());
  for (int32_t y = dib.height(); y-- > 0;) {
    const auto row = dib.bits().subspan(static_cast<size_t>(y) * stride, stride);
    pixels.insert(pixels.end(), row.begin(), row.begin() + dib.width());
  }
  return pixels;
}

void expectSame(const QVDib& dib, const IndexedPicture& expected) {
  ASSERT_EQ(dib.width(), expected.width);
  ASSERT_EQ(dib.height(), expected.height);
  ASSERT_EQ(pixelsOf(dib), expected.pixels);
  ASSERT_EQ(dib.colours().size(), 256u);
  for (size_t entry = 0; entry < 256; ++entry)
    ASSERT_EQ(dib.colours()[entry], expected.colours[entry]) << entry;
}

TEST(PictureFiles, OfEveryWidthComeBackAsTheyWere) {
  for (int32_t width = 1; width <= 70; ++width) {
    for (const unsigned colours : {1u, 2u, 5u, 256u}) {
      const int32_t height = 1 + width * 7 % 40;
      const IndexedPicture made = picture(width, height, static_cast<unsigned>(width), colours);
      QVDib dib;
      dib.loadFromMemory(encodeMcg(made));
      expectSame(dib, made);
      for (size_t entry = 0; entry < 256; ++entry)
        ASSERT_EQ(dib.PaletteUseTable[entry], made.marks[entry]) << entry;
      dib.loadFromMemory(encodeSld(made));
      expectSame(dib, made);
      dib.loadFromMemory(encodeBmp(made));
      expectSame(dib, made);
    }
  }
}

TEST(PictureFiles, OfTrueColourComeBackAsTheyWere) {
  for (int32_t width = 1; width <= 20; ++width) {
    std::vector<uint32_t> rgb;
    for (uint32_t at = 0; at < static_cast<uint32_t>(width) * 3; ++at)
      rgb.push_back(at * 0x030507 & 0xFFFFFF);
    QVDib dib;
    dib.loadFromMemory(encodeMcg24(width, 3, rgb));
    ASSERT_EQ(dib.bitCount(), 24);
    ASSERT_TRUE(dib.colours().empty());
    for (int32_t y = 0; y < 3; ++y) {
      for (int32_t x = 0; x < width; ++x) {
        const uint8_t* const pixel =
            &dib.bits()[static_cast<size_t>((2 - y) * dib.strideBytes() + x * 3)];
        ASSERT_EQ(pixel[0] | pixel[1] << 8 | pixel[2] << 16,
                  rgb[static_cast<size_t>(y * width + x)]);
      }
    }
  }
}

TEST(PictureFiles, WithRowsBeyondTheFormatsCountAreRefused) {
  // The last widths whose rows have fewer than 65536 bytes, and the first beyond them.
  const auto trueColour = [](int32_t width) {
    return encodeMcg24(width, 2, std::vector<uint32_t>(static_cast<size_t>(width) * 2, 0x123456));
  };
  QVDib dib;
  dib.loadFromMemory(trueColour(21844));
  EXPECT_EQ(dib.width(), 21844);
  EXPECT_EQ(dib.bits().size(), 2u * 65532);
  const IndexedPicture widest = picture(65532, 2, 1, 2);
  dib.loadFromMemory(encodeMcg(widest));
  expectSame(dib, widest);
  const auto refusal = [](const auto& attempt) -> std::string {
    try {
      attempt();
      return "nothing was thrown";
    } catch (const tool::Failure& failure) {
      return failure.what();
    }
  };
  EXPECT_EQ(refusal([&] { trueColour(21845); }),
            "a picture 21845 pixels wide does not fit an MCG: a row has 65536 bytes, of which the "
            "format counts 65535 at most.");
  EXPECT_EQ(refusal([&] { encodeMcg(picture(65533, 2, 1, 2)); }),
            "a picture 65533 pixels wide does not fit an MCG: a row has 65536 bytes, of which the "
            "format counts 65535 at most.");
}

/// The fewest bits for these bytes, found by trying every repeat at every place.
size_t fewestBits(const std::vector<uint8_t>& bytes) {
  std::vector<size_t> costs(bytes.size() + 1);
  for (size_t at = bytes.size(); at-- > 0;) {
    costs[at] = 9 + costs[at + 1];
    const auto byteAt = [&](int64_t place) {
      return place < 0 ? uint8_t{0} : bytes[static_cast<size_t>(place)];
    };
    // Sixteen back at least, as the compressor likes it; the zeros before count too.
    for (size_t distance = 16; distance <= std::min<size_t>(4096, at + LzssRingStart); ++distance) {
      size_t length = 0;
      while (length < LzssLongest && at + length < bytes.size() &&
             byteAt(static_cast<int64_t>(at + length) - static_cast<int64_t>(distance)) ==
                 bytes[at + length])
        ++length;
      for (size_t taken = LzssShortest; taken <= length; ++taken)
        costs[at] = std::min(costs[at], 17 + costs[at + taken]);
    }
  }
  return costs[0];
}

TEST(CompressLzss, FindsTheFewestBits) {
  for (unsigned seed = 0; seed < 12; ++seed) {
    const std::vector<uint8_t> bytes = picture(60, 10, seed, 2 + seed % 4).pixels;
    const size_t size = compressLzss(LzssPairs::Mcg, bytes).size();
    // Near repeats may save some more; flags come in whole bytes.
    EXPECT_LE(size, fewestBits(bytes) / 8 + 1) << seed;
  }
}

TEST(CompressLzss, TellsOfItsProgressToTheEnd) {
  double last = -1;
  compressLzss(LzssPairs::Sld, std::vector<uint8_t>(200000, 7), [&](double done) {
    EXPECT_GT(done, last);
    last = done;
  });
  EXPECT_EQ(last, 1);
}

TEST(CompressLzss, MakesOfNothingNothing) {
  EXPECT_TRUE(compressLzss(LzssPairs::Mcg, {}).empty());
}

TEST(WrapRcg, PutsTheLengthBeforeThePicture) {
  const std::vector<uint8_t> wrapped = wrapRcg(std::vector<uint8_t>(300, 9));
  EXPECT_EQ(std::string(wrapped.begin(), wrapped.begin() + 8), std::string("RCG \x2C\1\0\0", 8));
  EXPECT_EQ(wrapped.size(), 308u);
}

}  // namespace
}  // namespace qv::codec
