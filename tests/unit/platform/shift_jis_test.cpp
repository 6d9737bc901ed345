#include "platform/text/shift_jis.h"

#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace qv {
namespace {

/// Every code that a one- or two-byte character can have.
std::vector<uint16_t> allCodes() {
  std::vector<uint16_t> codes;
  for (int byte = 1; byte < 256; ++byte)
    codes.push_back(static_cast<uint16_t>(byte));
  for (int lead = 0x81; lead <= 0xFC; ++lead)
    for (int trail = 0x40; trail <= 0xFC; ++trail)
      if (isLeadByte(static_cast<unsigned char>(lead)) &&
          isTrailByte(static_cast<unsigned char>(trail)))
        codes.push_back(static_cast<uint16_t>(lead << 8 | trail));
  return codes;
}

TEST(ShiftJis, GivesKnownCharactersOfEachRange) {
  const std::pair<uint16_t, char32_t> known[] = {
      {0x0A, 0x0A},     {0x5C, 0x5C},     {0x7E, 0x7E},     {0xA1, 0xFF61},   {0xDF, 0xFF9F},
      {0x8140, 0x3000}, {0x815F, 0xFF3C}, {0x8160, 0xFF5E}, {0x82A0, 0x3042}, {0x8340, 0x30A1},
      {0x889F, 0x4E9C}, {0x955C, 0x8868}, {0xE040, 0x6F3E}, {0xEAA4, 0x7199}, {0x8740, 0x2460},
      {0xED40, 0x7E8A}, {0xFA40, 0x2170}, {0xFC4B, 0x9ED1}, {0xF040, 0xE000}, {0xF9FC, 0xE757},
      {0xF07E, 0xE03E}, {0xF080, 0xE03F}, {0xF140, 0xE0BC}};
  for (const auto& [code, character] : known)
    EXPECT_EQ(unicodeOfShiftJis(code), character) << std::hex << code;
}

TEST(ShiftJis, HasNoCharacterForBytesThatAreNone) {
  for (const uint16_t code : {0x80, 0xA0, 0xFD, 0xFE, 0xFF, 0x81AD, 0x8240, 0x8540, 0xFC4C, 0xA140,
                              0x813F, 0x817F, 0x81FD, 0x1234})
    EXPECT_EQ(unicodeOfShiftJis(code), 0u) << std::hex << code;
}

TEST(ShiftJis, CountsTheCharactersOfTheCodePage) {
  size_t kanjiAndSigns = 0, external = 0, single = 0;
  for (const uint16_t code : allCodes()) {
    const char32_t character = unicodeOfShiftJis(code);
    if (character == 0) continue;
    if (code < 0x100) {
      ++single;
    } else if (character >= 0xE000 && character <= 0xE757) {
      ++external;
    } else {
      ++kanjiAndSigns;
    }
  }
  EXPECT_EQ(single, 127u + 63u);
  EXPECT_EQ(external, 10u * 188u);
  EXPECT_EQ(kanjiAndSigns, 7724u);
}

TEST(ShiftJis, ComesBackToTheSameCharacterFromEveryCode) {
  size_t moved = 0;
  for (const uint16_t code : allCodes()) {
    const char32_t character = unicodeOfShiftJis(code);
    if (character == 0) continue;
    const uint16_t back = shiftJisOfUnicode(character);
    EXPECT_EQ(unicodeOfShiftJis(back), character) << std::hex << code;
    if (back != code) ++moved;
  }
  // 374 characters of rows ED and EE, 9 signs of row 13, 15 signs of the extension at FA.
  EXPECT_EQ(moved, 398u);
}

TEST(ShiftJis, PrefersTheCodesThatTheClassicPlatformChose) {
  const std::pair<char32_t, uint16_t> chosen[] = {
      {0x2252, 0x81E0}, {0x222A, 0x81BE}, {0x2235, 0x81E6},  // the standard before row 13
      {0x2160, 0x8754}, {0x3231, 0x878A}, {0x2116, 0x8782},  // row 13 before the extension
      {0xFFE2, 0x81CA}, {0x2170, 0xFA40}, {0x7E8A, 0xFA5C},  // the extension before its double
      {0x9ED1, 0xFC4B}};
  for (const auto& [character, code] : chosen)
    EXPECT_EQ(shiftJisOfUnicode(character), code) << std::hex << static_cast<uint32_t>(character);
}

TEST(ShiftJis, TakesNeighbouringFormsOfASignOnTheWayIn) {
  const std::pair<char32_t, uint16_t> taken[] = {
      {0x301C, 0x8160}, {0xFF5E, 0x8160}, {0x2212, 0x817C}, {0xFF0D, 0x817C}, {0x2016, 0x8161},
      {0x2225, 0x8161}, {0x2014, 0x815C}, {0x2015, 0x815C}, {0x00A2, 0x8191}, {0xFFE0, 0x8191},
      {0x00A3, 0x8192}, {0x00A5, 0x818F}, {0x00AC, 0x81CA}};
  for (const auto& [character, code] : taken)
    EXPECT_EQ(shiftJisOfUnicode(character), code) << std::hex << static_cast<uint32_t>(character);
}

TEST(ShiftJis, CannotSayWhatTheCodePageLacks) {
  for (const char32_t character :
       {U'\u00E9', U'\uAC00', U'\u00A0', U'\uE758', U'\uF8F0', U'\U0001F600', U'\uFFFD', U'\uFFFF'})
    EXPECT_EQ(shiftJisOfUnicode(character), 0) << std::hex << static_cast<uint32_t>(character);
}

TEST(ShiftJisText, ConvertsBothWays) {
  const std::string_view utf8 = "表示ABC\\~ｱﾝ「あ」\n\uE000";
  const ShiftJisResult result = shiftJisOfUtf8(utf8);
  ASSERT_TRUE(result.ok);
  EXPECT_EQ(result.text,
            "\x95\x5c\x8e\xa6"
            "ABC\\~\xb1\xdd\x81\x75\x82\xa0\x81\x76\n\xf0\x40");
  EXPECT_EQ(utf8OfShiftJis(result.text), utf8);
}

TEST(ShiftJisText, NamesTheFirstCharacterThatCannotBeSaid) {
  const ShiftJisResult result = shiftJisOfUtf8("あ\u00E9い");
  EXPECT_FALSE(result.ok);
  EXPECT_EQ(result.text, "");
  EXPECT_EQ(result.badAt, 3u);
  EXPECT_EQ(result.bad, U'\u00E9');
}

TEST(ShiftJisText, RefusesMalformedUtf8AndZeroBytes) {
  using namespace std::string_view_literals;
  for (const std::string_view bad :
       {"a\x80"sv, "a\xE3\x81"sv, "a\xC0\xAF"sv, "a\xED\xA0\x80"sv, "a\xF4\x90\x80\x80"sv,
        "a\xE3\x28\xA1"sv, "a\xFF"sv, "a\xE0\x80\xAF"sv}) {
    const ShiftJisResult result = shiftJisOfUtf8(bad);
    EXPECT_FALSE(result.ok) << ::testing::PrintToString(bad);
    EXPECT_EQ(result.badAt, 1u);
    EXPECT_EQ(result.bad, U'\uFFFD');
  }
  EXPECT_FALSE(shiftJisOfUtf8("a\0b"sv).ok);
}

TEST(ShiftJisText, ShowsBytesThatAreNoCharacterAsReplacement) {
  EXPECT_EQ(utf8OfShiftJis("a\x81"), "a\uFFFD");       // a lead byte at the end
  EXPECT_EQ(utf8OfShiftJis("\x81\x20z"), "\uFFFD z");  // a lead byte before no trail byte
  EXPECT_EQ(utf8OfShiftJis("\x85\x40z"), "\uFFFDz");   // a place without a character
  EXPECT_EQ(utf8OfShiftJis("\xFD\x80"), "\uFFFD\uFFFD");
}

TEST(ShiftJisText, ConvertsTheTextsOfOurOwnSources) {
  EXPECT_EQ(sjis("表"), "\x95\x5c");
}

TEST(ShiftJisTextDeathTest, AssertsThatOurOwnTextsCanBeSaid) {
  EXPECT_DEATH(sjis("na\u00EFve"), "sayable in Shift-JIS");
}

TEST(ShiftJisWalk, TellsTheBytesOfACharacter) {
  EXPECT_EQ(characterBytes("\x95\x5c", 0), 2u);
  EXPECT_EQ(characterBytes("a", 0), 1u);
  EXPECT_EQ(characterBytes("a", 1), 0u);
  EXPECT_EQ(characterBytes("\x95", 0), 1u);
  EXPECT_EQ(characterBytes("\x95\x0a", 0), 1u);
  EXPECT_EQ(characterBytes("\xb1\xb2", 0), 1u);
}

}  // namespace
}  // namespace qv
