#include "audio/scene/sound_tables.h"

#include <array>

#include "platform/text/shift_jis.h"

namespace qv {

namespace {

/// The 61st effect has the code of the 60th, rows without digits ask for a file without them, and
/// several rows share a file: all of it is wanted.
constexpr std::array Effects{
    SoundEffect{"SE01", "走る足音", "005", 1},
    SoundEffect{"SE02", "チャイム", "014", 2},
    SoundEffect{"SE03", nullptr, "010", 3},
    SoundEffect{"SE04", nullptr, "021", 4},
    SoundEffect{"SE05", nullptr, "009", 5},
    SoundEffect{"SE06", nullptr, "008", 6},
    SoundEffect{"SE07", nullptr, "016", 7},
    SoundEffect{"SE08", nullptr, "006", 8},
    SoundEffect{"SE09", nullptr, "023", 9},
    SoundEffect{"SE10", nullptr, "025", 10},
    SoundEffect{"SE11", "電話のコール音", "031", 11},
    SoundEffect{"SE12", nullptr, "007", 12},
    SoundEffect{"SE13", nullptr, "022", 13},
    SoundEffect{"SE14", nullptr, "033", 14},
    SoundEffect{"SE15", nullptr, "030", 15},
    SoundEffect{"SE16", "心臓の鼓動", "027", 16},
    SoundEffect{"SE17", nullptr, "", 17},
    SoundEffect{"SE18", nullptr, "028", 18},
    SoundEffect{"SE19", nullptr, "011", 19},
    SoundEffect{"SE20", "教室のドアが開く音", "024", 20},
    SoundEffect{"SE21", nullptr, "033", 21},
    SoundEffect{"SE22", nullptr, "037", 22},
    SoundEffect{"SE23", nullptr, "", 23},
    SoundEffect{"SE24", nullptr, "018", 24},
    SoundEffect{"SE25", nullptr, "005", 25},
    SoundEffect{"SE26", nullptr, "012", 26},
    SoundEffect{"SE27", nullptr, "007", 27},
    SoundEffect{"SE28", nullptr, "001", 28},
    SoundEffect{"SE29", nullptr, "030", 29},
    SoundEffect{"SE30", nullptr, "050", 30},
    SoundEffect{"SE31", nullptr, "030", 31},
    SoundEffect{"SE32", nullptr, "033", 32},
    SoundEffect{"SE33", nullptr, "003", 33},
    SoundEffect{"SE34", nullptr, "", 34},
    SoundEffect{"SE35", nullptr, "052", 35},
    SoundEffect{"SE36", nullptr, "035", 36},
    SoundEffect{"SE37", nullptr, "032", 37},
    SoundEffect{"SE38", nullptr, "033", 38},
    SoundEffect{"SE39", nullptr, "002", 39},
    SoundEffect{"SE40", "教室のドアが開く音", "024", 40},
    SoundEffect{"SE41", nullptr, "", 41},
    SoundEffect{"SE42", nullptr, "004", 42},
    SoundEffect{"SE43", nullptr, "013", 43},
    SoundEffect{"SE44", nullptr, "026", 44},
    SoundEffect{"SE45", nullptr, "051", 45},
    SoundEffect{"SE46", nullptr, "019", 46},
    SoundEffect{"SE47", nullptr, "017", 47},
    SoundEffect{"SE48", nullptr, "015", 48},
    SoundEffect{"SE49", nullptr, "034", 49},
    SoundEffect{"SE50", nullptr, "029", 50},
    SoundEffect{"SE51", nullptr, "036", 51},
    SoundEffect{"SE52", nullptr, "044", 52},
    SoundEffect{"SE53", "雷鳴の音", "041", 53},
    SoundEffect{"SE54", nullptr, "042", 54},
    SoundEffect{"SE55", nullptr, "054", 55},
    SoundEffect{"SE56", nullptr, "053", 56},
    SoundEffect{"SE57", nullptr, "043", 57},
    SoundEffect{"SE58", nullptr, "039", 58},
    SoundEffect{"SE59", nullptr, "040", 59},
    SoundEffect{"SE60", nullptr, "055", 60},
    SoundEffect{"SE61", "ガルムファイヤー", "056", 60},
};

std::string twoDigits(int32_t number) {
  return {static_cast<char>('0' + number / 10), static_cast<char>('0' + number % 10)};
}

}  // namespace

int32_t songNumber(const char* name) {
  if (!name) return 0;
  for (int32_t number = 1; number <= SongCount; ++number)
    if ("K" + twoDigits(number) == name) return number;
  return 0;
}

std::string songFile(int32_t number, int32_t deviceKind) {
  if (number < 1 || number > SongCount) return {};
  if (deviceKind < FirstDeviceKind || deviceKind > LastDeviceKind) return {};
  const char variant = static_cast<char>('a' + deviceKind - FirstDeviceKind);
  return "midi\\K" + twoDigits(number) + variant + ".mid";
}

std::span<const SoundEffect> soundEffects() {
  return Effects;
}

const SoundEffect* findSoundEffect(const char* name) {
  if (!name) return nullptr;
  for (const SoundEffect& effect : Effects)
    if (std::string_view(effect.key) == name || (effect.label && sjis(effect.label) == name))
      return &effect;
  return nullptr;
}

std::string fileOf(const SoundEffect& effect) {
  return std::string("wave\\vlse") + effect.digits + ".wav";
}

std::string effectKey(int32_t code) {
  return "SE" + twoDigits(code);
}

}  // namespace qv
