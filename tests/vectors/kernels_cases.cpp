// Worked cases of the pixel loops. Pictures of the cases lie top row first; the loops want them
// bottom row first.

#include <algorithm>
#include <array>
#include <cstring>

#include "graphics/kernels/kernels.h"
#include "tests/vectors/case.h"

namespace qv::vectors {
namespace {

/// The other way up.
std::string flipped(const std::string& rows, size_t rowBytes) {
  std::string turned;
  for (size_t end = rows.size(); end >= rowBytes && rowBytes; end -= rowBytes)
    turned.append(rows, end - rowBytes, rowBytes);
  return turned;
}

using Palette = std::array<uint32_t, 256>;

Palette paletteOf(const std::string& bytes) {
  Palette palette{};
  std::memcpy(palette.data(), bytes.data(), std::min(bytes.size(), sizeof palette));
  return palette;
}

/// The target of the case after a loop ran over the whole of it.
template <class Loop>
std::string afterLoop(Case& given, size_t sourceBytes, size_t targetBytes, Loop loop) {
  const auto width = static_cast<size_t>(given.integer("w")),
             height = static_cast<size_t>(given.integer("h"));
  std::string source, target;
  if (given.has("seed")) {
    const auto coloured = [&](uint32_t seed) {
      std::string bytes = testBytes(seed, width * height);
      for (char& byte : bytes)
        byte = static_cast<char>(static_cast<uint8_t>(byte) % given.integer("colours"));
      return bytes;
    };
    source = coloured(given.uint32("seed"));
    target = coloured(given.uint32("seed") + 5000);
  } else {
    source = given.bytes("src");
    target = given.bytes("dst");
  }
  expectEqual("source bytes", source.size(), width * height * sourceBytes);
  expectEqual("target bytes", target.size(), width * height * targetBytes);

  source = flipped(source, width * sourceBytes);
  const std::string turned = flipped(target, width * targetBytes);
  std::vector<uint32_t> words((turned.size() + 3) / 4);  // where pixels of 32 bits may lie
  std::memcpy(words.data(), turned.data(), turned.size());
  auto* targetCorner = reinterpret_cast<uint8_t*>(words.data());
  const auto* sourceCorner = reinterpret_cast<const uint8_t*>(source.data());
  loop(KernelRows{
      targetCorner + width * targetBytes * (height - 1), static_cast<int>(width * targetBytes),
      sourceCorner + width * sourceBytes * (height - 1), static_cast<int>(width * sourceBytes),
      static_cast<int>(width), static_cast<int>(height)});
  return flipped({reinterpret_cast<const char*>(words.data()), turned.size()}, width * targetBytes);
}

/// -1 is the source's top left pixel, which the callers of the loops look up.
uint8_t keyOf(Case& given, const KernelRows& rows) {
  const int32_t key = given.int32("key");
  return key < 0 ? *rows.source : static_cast<uint8_t>(key);
}

/// Both forms give the same between surfaces of 8 bits.
template <class Loop>
void expectInBothForms(Case& given, size_t pixelBytes, Loop loop) {
  for (const KernelForm form : {KernelForm::Plain, KernelForm::Vector})
    given.expectBytes("expect", afterLoop(given, pixelBytes, pixelBytes,
                                          [&](const KernelRows& rows) { loop(form, rows); }));
}

void copyRowsCase(Case& given) {
  expectInBothForms(given, 1, copyRows);
}
void copyRowsKeyCase(Case& given) {
  expectInBothForms(given, 1, [&](KernelForm form, const KernelRows& rows) {
    copyRowsKey(form, rows, keyOf(given, rows));
  });
}
void combRowsCase(Case& given) {
  expectInBothForms(given, 1, [&](KernelForm form, const KernelRows& rows) {
    combRows(form, rows, given.int32("arg"));
  });
}
void combRowsKeyCase(Case& given) {
  expectInBothForms(given, 1, [&](KernelForm form, const KernelRows& rows) {
    combRowsKey(form, rows, given.int32("arg"), keyOf(given, rows));
  });
}
void ditherRowsCase(Case& given) {
  expectInBothForms(given, 1, [&](KernelForm form, const KernelRows& rows) {
    ditherRows(form, rows, given.int32("arg"));
  });
}
void ditherRowsKeyCase(Case& given) {
  expectInBothForms(given, 1, [&](KernelForm form, const KernelRows& rows) {
    ditherRowsKey(form, rows, given.int32("arg"), keyOf(given, rows));
  });
}
void copyRows32Case(Case& given) {
  expectInBothForms(given, 4, copyRows32);
}

template <class Loop>
void expectThroughPalette(Case& given, std::initializer_list<KernelForm> forms, Loop loop) {
  const Palette palette = paletteOf(given.bytes("palette"));
  for (const KernelForm form : forms)
    given.expectBytes("expect", afterLoop(given, 1, 4, [&](const KernelRows& rows) {
                        loop(form, rows, palette.data());
                      }));
}

KernelForm formOf(Case& given) {
  return given.flag("mmx") ? KernelForm::Vector : KernelForm::Plain;
}

void expandRowsCase(Case& given) {
  expectThroughPalette(given, {KernelForm::Plain, KernelForm::Vector}, expandRows);
}
void expandRowsKeyCase(Case& given) {
  expectThroughPalette(given, {KernelForm::Plain, KernelForm::Vector},
                       [&](KernelForm form, const KernelRows& rows, const uint32_t* palette) {
                         expandRowsKey(form, rows, palette, keyOf(given, rows));
                       });
}
void blendRowsCase(Case& given) {
  expectThroughPalette(given, {formOf(given)},
                       [&](KernelForm form, const KernelRows& rows, const uint32_t* palette) {
                         blendRows(form, rows, palette, given.int32("level"));
                       });
}
void blendRowsKeyCase(Case& given) {
  expectThroughPalette(given, {formOf(given)},
                       [&](KernelForm form, const KernelRows& rows, const uint32_t* palette) {
                         blendRowsKey(form, rows, palette, given.int32("level"),
                                      keyOf(given, rows));
                       });
}

/// One channel over a table of values, at each of the three places that colours have.
void blendChannel(Case& given) {
  const KernelForm form = given.ascii("form") == "plain" ? KernelForm::Plain : KernelForm::Vector;
  const auto values = given["values"].get<std::vector<uint32_t>>();
  for (const Json& row : given["rows"]) {
    const int level = row[0];
    for (uint32_t shift = 0; shift < 24; shift += 8)
      for (size_t t = 0; t < values.size(); ++t)
        for (size_t s = 0; s < values.size(); ++s) {
          uint32_t word = values[t] << shift;
          const uint8_t index = 77;
          Palette palette{};
          palette[index] = values[s] << shift;
          blendRows(form, {reinterpret_cast<uint8_t*>(&word), 4, &index, 1, 1, 1}, palette.data(),
                    level);
          expectEqual("level " + std::to_string(level) + " of " + std::to_string(values[t]) +
                          " and " + std::to_string(values[s]),
                      word >> shift, row[1][t][s]);
        }
  }
}

constexpr Kind Kinds[] = {
    {"blendRows", blendRowsCase},     {"blendRowsKey", blendRowsKeyCase},
    {"blend_channel", blendChannel},  {"combRows", combRowsCase},
    {"combRowsKey", combRowsKeyCase}, {"copyRows", copyRowsCase},
    {"copyRows32", copyRows32Case},   {"copyRowsKey", copyRowsKeyCase},
    {"ditherRows", ditherRowsCase},   {"ditherRowsKey", ditherRowsKeyCase},
    {"expandRows", expandRowsCase},   {"expandRowsKey", expandRowsKeyCase},
};

}  // namespace

std::span<const Kind> kernelKinds() {
  return Kinds;
}

}  // namespace qv::vectors
