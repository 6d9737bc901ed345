#include "message/speakers.h"

#include <algorithm>
#include <array>

#include "platform/text/shift_jis.h"
#include "scenario/register_numbers.h"
#include "scenario/story_tables.h"

namespace qv {

namespace {

constexpr const char* GivenNameMark = "＊＊＊";
constexpr const char* FamilyNameMark = "※※※";

/// Rows that every story has.
enum class CommonForm { Unspoken, Hero };
struct CommonRow {
  const char* tag;  ///< UTF-8
  CommonForm form;
};
constexpr std::array CommonRows{
    CommonRow{"コメント", CommonForm::Unspoken},
    CommonRow{"【　心の声　】", CommonForm::Unspoken},
    CommonRow{"【　擬音　】", CommonForm::Unspoken},
    CommonRow{"【　＊＊＊　】", CommonForm::Hero},
    CommonRow{"【　＊＊＊　《主人公》】", CommonForm::Hero},
};

struct SwitchRow {
  int32_t first, last;
  int32_t number;
};
// Four and five are crossed, and class 11 has no switch and stays silent: both are wanted.
constexpr int32_t Voices = SpeakerVoiceFirst;
constexpr SwitchRow Switches[] = {
    {0, 0, OtherVoiceEnabled},
    {1, 1, Voices},
    {2, 2, Voices + 1},
    {3, 3, Voices + 2},
    {4, 4, Voices + 4},
    {5, 5, Voices + 3},
    {6, 6, Voices + 6},
    {7, 7, Voices + 7},
    {8, 8, Voices + 5},
    {9, 10, OtherVoiceEnabled},
    {12, 20, OtherVoiceEnabled},
    {30, 43, OtherVoiceEnabled},
    {200, 201, OtherVoiceEnabled},
};

/// By whole characters: the second byte of one may look like the first of another.
std::string replaceAll(std::string_view text, const std::string& from, std::string_view to) {
  std::string result;
  for (size_t at = 0; at < text.size();) {
    if (text.substr(at, from.size()) == from) {
      result += to;
      at += from.size();
      continue;
    }
    const size_t step = characterBytes(text, at);
    result += text.substr(at, step);
    at += step;
  }
  return result;
}

}  // namespace

Speaker speakerOf(std::string_view tag, std::string_view givenName) {
  for (const CommonRow& row : CommonRows) {
    if (tag != sjis(row.tag)) continue;
    if (row.form == CommonForm::Unspoken) return {.shown = sjis("　"), .printed = {}, .ends = true};
    const std::string name = sjis("【　") + std::string(givenName) + sjis("　】");
    return {.shown = name, .printed = name};
  }
  for (const SpeakerRow& row : storyTables().speakers) {
    if (tag != row.tag) continue;
    const std::string mark = sjis(GivenNameMark);
    std::string shown = replaceAll(row.shown, mark, givenName);
    std::string printed = row.printed ? replaceAll(row.printed, mark, givenName) : shown;
    return {.shown = std::move(shown),
            .printed = std::move(printed),
            .speakerClass = row.speakerClass,
            .ends = row.ends};
  }
  const std::string nobody = sjis("【　？？　】");
  return {.shown = nobody, .printed = nobody, .speakerClass = UnknownSpeaker};
}

int32_t voiceSwitchOf(int32_t speakerClass) {
  const auto* found = std::ranges::find_if(Switches, [&](const SwitchRow& row) {
    return speakerClass >= row.first && speakerClass <= row.last;
  });
  return found == std::end(Switches) ? 0 : found->number;
}

std::string withHeroNames(std::string text, std::string_view familyName,
                          std::string_view givenName) {
  text = replaceAll(text, sjis(GivenNameMark), givenName);
  return replaceAll(text, sjis(FamilyNameMark), familyName);
}

}  // namespace qv
