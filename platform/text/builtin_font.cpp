#include "platform/text/builtin_font.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "platform/text/shift_jis.h"
#include "platform/text/stroke_drawing.h"

namespace qv {

namespace {

struct Drawing {
  char16_t character;
  std::string_view strokes;
};

constexpr auto Drawings = [] {
  auto drawings = std::to_array<Drawing>({
#include "platform/text/builtin_strokes.inc"
  });
  std::sort(drawings.begin(), drawings.end(),
            [](const Drawing& a, const Drawing& b) { return a.character < b.character; });
  return drawings;
}();

static_assert(std::all_of(Drawings.begin(), Drawings.end(),
                          [](const Drawing& drawing) { return areStrokes(drawing.strokes); }),
              "a drawing is not written as strokes are");
static_assert(std::adjacent_find(Drawings.begin(), Drawings.end(),
                                 [](const Drawing& a, const Drawing& b) {
                                   return a.character == b.character;
                                 }) == Drawings.end(),
              "a character has two drawings");

const Drawing* drawingOf(char16_t character) {
  const auto* const found = std::lower_bound(
      Drawings.begin(), Drawings.end(), character,
      [](const Drawing& drawing, char16_t wanted) { return drawing.character < wanted; });
  return found != Drawings.end() && found->character == character ? &*found : nullptr;
}

// Pairs of a character and the one that it is made from.
constexpr std::u16string_view Voiced =
    u"がかぎきぐくげけごこざさじしずすぜせぞそだたぢちづつでてどとばはびひぶふべへぼほゞゝ"
    u"ガカギキグクゲケゴコザサジシズスゼセゾソダタヂチヅツデテドトバハビヒブフベヘボホヴウヾヽ";
constexpr std::u16string_view HalfVoiced = u"ぱはぴひぷふぺへぽほパハピヒプフペヘポホ";
constexpr std::u16string_view Small =
    u"ぁあぃいぅうぇえぉおっつゃやゅゆょよゎわ"
    u"ァアィイゥウェエォオッツャヤュユョヨヮワヵカヶケ";
/// What the single bytes A1 to DF are, in their order.
constexpr std::u16string_view HalfWidth =
    u"。「」、・ヲァィゥェォャュョッーアイウエオカキクケコサシスセソ"
    u"タチツテトナニヌネノハヒフヘホマミムメモヤユヨラリルレロワン゛゜";
constexpr unsigned FirstHalfWidth = 0xA1;
constexpr char16_t FirstHalfWidthCharacter = u'｡';

constexpr std::string_view VoicedMark = "B1 C3 / D0 E2";
constexpr std::string_view HalfVoicedMark = "C0 D0 E1 E2 D3 C3 B2 B1 C0";

/// A kana beside its mark is a little narrower and lower.
constexpr StrokePlacing BesideMark = {14, -2, 15, 14};
constexpr StrokePlacing SmallKana = {11, 36, 11, 72};
/// A letter of the seven columns on the full width: ten pixels.
constexpr StrokePlacing WideLetter = {24, 48, 16, 0};

char16_t baseIn(std::u16string_view pairs, char16_t character) {
  for (size_t at = 0; at + 1 < pairs.size(); at += 2)
    if (pairs[at] == character) return pairs[at + 1];
  return 0;
}

/// A placing after another one.
StrokePlacing within(const StrokePlacing& first, const StrokePlacing& then) {
  return {first.scaleX * then.scaleX / 16, first.moveX * then.scaleX / 16 + then.moveX,
          first.scaleY * then.scaleY / 16, first.moveY * then.scaleY / 16 + then.moveY};
}

/// The character by its own drawing or, if it has none, made from another one's.
std::optional<StrokePicture> drawn(char16_t character, const StrokePlacing& placing) {
  StrokePicture picture{};
  if (const Drawing* drawing = drawingOf(character)) {
    drawStrokes(picture, drawing->strokes, placing);
    return picture;
  }
  if (const char16_t base = baseIn(Small, character))
    return drawn(base, within(SmallKana, placing));
  if (character > 0xFF00 && character < 0xFF5F)
    return drawn(static_cast<char16_t>(character - 0xFF00 + 0x20), within(WideLetter, placing));
  const char16_t voiced = baseIn(Voiced, character);
  const char16_t base = voiced ? voiced : baseIn(HalfVoiced, character);
  if (!base) return std::nullopt;
  StrokePicture mark{};
  drawStrokes(mark, voiced ? VoicedMark : HalfVoicedMark, placing);
  const StrokePicture around = spread(mark);
  picture = *drawn(base, within(BesideMark, placing));
  for (size_t y = 0; y < picture.size(); ++y)
    picture[y] = static_cast<uint16_t>((picture[y] & ~around[y]) | mark[y]);
  return picture;
}

/// Half-width katakana: seven columns of the eight.
constexpr StrokePlacing NarrowKana = {7, 0, 16, 0};

std::optional<StrokePicture> halfWidth(size_t at) {
  const auto own = static_cast<char16_t>(FirstHalfWidthCharacter + at);
  if (drawingOf(own)) return drawn(own, {});
  return drawn(HalfWidth[at], NarrowKana);
}

}  // namespace

std::optional<BuiltinGlyph> builtinGlyph(uint16_t code) {
  if (code >= FirstHalfWidth && code < FirstHalfWidth + HalfWidth.size()) {
    if (const auto picture = halfWidth(code - FirstHalfWidth)) return BuiltinGlyph{8, *picture};
  } else if (code >= 0x20 && code < 0x7F) {
    if (const auto picture = drawn(code, {})) return BuiltinGlyph{8, *picture};
  } else if (code > 0xFF) {
    const char32_t character = unicodeOfShiftJis(code);
    // The tables speak of ASCII too, which is no double-byte character.
    if (character < 0x80 || character > 0xFFFF) return std::nullopt;
    if (const auto picture = drawn(static_cast<char16_t>(character), {}))
      return BuiltinGlyph{16, *picture};
  }
  return std::nullopt;
}

}  // namespace qv
