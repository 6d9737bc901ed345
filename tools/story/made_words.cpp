#include "tools/story/made_words.h"

#include <iterator>

namespace qv::story {

uint64_t MadeNumbers::next() {
  uint64_t word = state_ += 0x9E3779B97F4A7C15u;
  word = (word ^ word >> 30) * 0xBF58476D1CE4E5B9u;
  word = (word ^ word >> 27) * 0x94D049BB133111EBu;
  return word ^ word >> 31;
}

int MadeNumbers::below(int count) {
  return count < 1 ? 0 : static_cast<int>(next() % static_cast<uint64_t>(count));
}

namespace {

constexpr const char* Times[] = {"朝の教室で、",     "昼休みになって、",   "放課後の廊下で、",
                                 "坂の途中で、",     "雨のあがった庭で、", "夕方の屋上で、",
                                 "駅へ向かう道で、", "図書室の窓辺で、",   "夏のはじめの日に、",
                                 "鐘が鳴ったあと、"};
constexpr const char* Things[] = {"風が",         "遠い雷が",   "ふたりの影が", "鳥の声が",
                                  "ノートの頁が", "時計の針が", "誰かの足音が", "青い傘が",
                                  "窓の光が",     "水の音が"};
constexpr const char* Deeds[] = {
    "静かに揺れた。",     "すこし近くなった。",         "ふいに止まった。",
    "いつまでも残った。", "やさしく笑ったようだった。", "向こうへ消えた。",
    "また戻ってきた。",   "名前を呼んだ気がした。"};
constexpr const char* Openings[] = {"ねえ、",       "そうだ、", "ほんとうは、", "あのね、",
                                    "もしかして、", "だから、", "いつか、",     "やっぱり、"};
constexpr const char* Sayings[] = {"今日の空を覚えていてね。",   "わたしも同じことを思ってた。",
                                   "その本、もう読んだの？",     "まだ帰りたくないな。",
                                   "雨の日もきらいじゃないよ。", "約束、忘れていないよね。",
                                   "もうすこしだけ歩こうか。",   "次は負けないからね。"};
constexpr const char* Choices[] = {
    "図書室へ行く",   "屋上で待つ", "そのまま帰る", "手紙を渡す",       "黙って聞いている",
    "笑ってごまかす", "傘を貸す",   "名前を呼ぶ",   "もう一度たずねる", "窓を開ける"};
constexpr const char* Places[] = {"図書室", "屋上",   "中庭", "音楽室", "駅前",
                                  "川べり", "坂の上", "温室", "校門",   "海"};

}  // namespace

std::string madeNarration(MadeNumbers& numbers) {
  const std::string time = numbers.pick(Times), thing = numbers.pick(Things);
  return time + thing + numbers.pick(Deeds);
}

std::string madeSpeech(MadeNumbers& numbers) {
  const std::string opening = numbers.pick(Openings);
  return "「" + opening + numbers.pick(Sayings) + "」";
}

std::string madeChoice(MadeNumbers& numbers) {
  return numbers.pick(Choices);
}

std::string madePlace(MadeNumbers& numbers) {
  return numbers.pick(Places);
}

}  // namespace qv::story
