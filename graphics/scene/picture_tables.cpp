#include "graphics/scene/picture_tables.h"

#include <algorithm>
#include <array>

namespace qv {

namespace {

constexpr NamedFlag Backgrounds[] = {
    {"BLACK", WithoutFlag}, {"WHITE", WithoutFlag}, {"RED", WithoutFlag}, {"BLUE", WithoutFlag},
    {"KBA001", 0},          {"KBA002", 1},          {"KBA003", 2},        {"KBA004", 3},
    {"KBA005", 4},          {"KBA006", 5},          {"KBA007", 6},        {"KBA008", 7},
    {"KBA009", 8},          {"KBA010", 9},          {"KBA011", 10},       {"KBA012", 11},
    {"KBA013", 12},         {"KBA014", 13},         {"KBA015", 14},       {"KBA016", 15},
    {"KBA017", 16},         {"KBA018", 17},         {"KBA019", 18},       {"KBA020", 19},
    {"KBA020S1", 19},       {"KBA020S2", 19},       {"KBA021", 20},       {"KBA022", 21},
    {"KBA023", 22},         {"KBA024", 23},         {"KBA025", 24},       {"KBA026", 25},
    {"KBA027", 26},         {"KBA028", 27},         {"KBA029", 28},       {"KBA030", 29},
    {"KBA031", 30},         {"KBA032", 31},         {"KBA033", 32},       {"KBA034", 33},
    {"KBA035", 34},         {"KBA036", 35},         {"KBA037", 36},       {"KBA038", 37},
    {"KBA039", 38},         {"KBA040", 39},         {"KBA041", 40},       {"KBA042", 41},
    {"KBA043", 42},         {"KBA044", 43},         {"KBA045", 44},       {"KBA046", 45},
    {"KBA047", 46},         {"KBA048", 47},         {"KBA049", 48},       {"KBA052", 53},
    {"KBA053", 54},         {"KBA054", 55},         {"KBA055", 56},
};

// A flag that stands twice belongs to two forms of one picture, which the gallery counts as one.
constexpr NamedFlag Events[] = {
    {"BLACK", WithoutFlag}, {"WHITE", WithoutFlag}, {"RED", WithoutFlag}, {"BLUE", WithoutFlag},
    {"KEV001", 160},        {"KEV101", 161},        {"KEV102", 162},      {"KEV103", 163},
    {"KEV104", 164},        {"KEV105", 165},        {"KEV106", 166},      {"KEV106a", 167},
    {"KEV002", 168},        {"KEV003", 169},        {"KEV003B", 169},     {"KEV003C", 169},
    {"KEV004", 170},        {"KEV005", 171},        {"KEV006", 172},      {"KEV006a", 173},
    {"KEV007", 174},        {"KEV201", 175},        {"KEV202", 176},      {"KEV203", 177},
    {"KEV204", 178},        {"KEV204a", 179},       {"KEV205", 180},      {"KEV206", 181},
    {"KEV207", 182},        {"KEV208", 183},        {"KEV209", 184},      {"KEV210", 185},
    {"KEV211", 186},        {"KEV211a", 187},       {"KEV211b", 187},     {"KEV212", 188},
    {"KEV212a", 189},       {"KEV213", 190},        {"KEV220", 191},      {"KEV221", 192},
    {"KEV222", 193},        {"KEV223", 194},        {"KEV224", 195},      {"KEV225", 196},
    {"KEV226", 197},        {"KEV227", 198},        {"KEV228", 199},      {"KEV228a", 200},
    {"KEV229", 201},        {"KEV230", 202},        {"KEV230B", 202},     {"KEV300", 203},
    {"KEV301", 204},        {"KEV302", 205},        {"KEV303", 206},      {"KEV304", 207},
    {"KEV305", 208},        {"KEV306", 209},        {"KEV307", 210},      {"KEV308", 211},
    {"KEV310", 212},        {"KEV310a", 212},       {"KEV310b", 213},     {"KEV311", 214},
    {"KEV401", 215},        {"KEV402", 216},        {"KEV404", 217},      {"KEV404a", 218},
    {"KEV405A", 219},       {"KEV405B", 219},       {"KEV406", 220},      {"KEV407", 221},
    {"KEV412", 222},        {"KEV413", 223},        {"KEV420", 224},      {"KEV420a", 225},
    {"KEV421", 226},        {"KEV501", 227},        {"KEV503", 228},      {"KEV504", 229},
    {"KEV505", 230},        {"KEV507", 231},        {"KEV601", 232},      {"KEV602", 233},
    {"KEV602a", 234},       {"KEV603", 235},        {"KEV605", 236},      {"KEV606", 237},
    {"KEV610", 238},        {"KEV620", 239},        {"KEV901", 240},      {"KEV906", 241},
    {"KEV907", 242},        {"KEV908", 243},        {"KEV908A", 243},     {"KEV920", 244},
    {"KEV920a", 245},       {"KEV920b", 246},       {"KEV920c", 247},     {"KEV921", 248},
    {"KEV922", 249},        {"KEV923", 250},        {"KEV924", 251},      {"KEV925", 252},
    {"KEV925A", 252},
};

constexpr NamedFlag Titles[] = {
    {"KTI001", WithoutFlag},   {"KTI002", WithoutFlag},  {"KTI003", WithoutFlag},
    {"KTI004", WithoutFlag},   {"KTI005", WithoutFlag},  {"KTI007", WithoutFlag},
    {"KAI001", WithoutFlag},   {"KAI002", WithoutFlag},  {"KAI003", WithoutFlag},
    {"KAI004", WithoutFlag},   {"KAI005", WithoutFlag},  {"KAI007", WithoutFlag},
    {"CONT", WithoutFlag},     {"KEV010", WithoutFlag},  {"KEV011", WithoutFlag},
    {"KEV012", WithoutFlag},   {"KEV020", WithoutFlag},  {"KEV021", WithoutFlag},
    {"KEV022", WithoutFlag},   {"KEV030", WithoutFlag},  {"KEV031", WithoutFlag},
    {"KEV032", WithoutFlag},   {"KEV040", WithoutFlag},  {"KEV041", WithoutFlag},
    {"KEV042", WithoutFlag},   {"KEV050", WithoutFlag},  {"KEV051", WithoutFlag},
    {"KEV052", WithoutFlag},   {"KEV060", WithoutFlag},  {"KEV061", WithoutFlag},
    {"KEV062", WithoutFlag},   {"KEV070", WithoutFlag},  {"KEV071", WithoutFlag},
    {"KEV072", WithoutFlag},   {"KEN001A", WithoutFlag}, {"KEN001B", WithoutFlag},
    {"KEN001C", WithoutFlag},  {"P55", WithoutFlag},     {"KAV60206", WithoutFlag},
    {"KEV60219", WithoutFlag},
};

constexpr NamedFlag Sprites[] = {
    {"KUS011", 60},    {"KUS012", 61},    {"KUS012a", 61},   {"KUS013", 62},    {"KUS014", 63},
    {"KUS015", 64},    {"KUS021", 65},    {"KUS022", 66},    {"KUS023", 67},    {"KUS024", 68},
    {"KUS025", 69},    {"KUS031", 70},    {"KUS032", 71},    {"KUS032_", 72},   {"KUS032a", 72},
    {"KUS033", 73},    {"KUS041", 74},    {"KUS042", 75},    {"KUS051", 76},    {"KUS052", 77},
    {"KUS053", 78},    {"KUS053_", 79},   {"KUS053a", 79},   {"KUS054", 80},    {"KUS039", 81},
    {"KUS049", 82},    {"KUS059", 83},    {"KUS060", 84},    {"KUS060a", 85},   {"KUS061", 86},
    {"KUS062", 87},    {"KUS081", 88},    {"KUS082", 89},    {"KUS091", 90},    {"KUS100", 91},
    {"KUS100_", 92},   {"KUS100a", 92},   {"KUS100b", 93},   {"KUS110", 94},    {"KUC011", 95},
    {"KUC011_", 96},   {"KUC011a", 97},   {"KUC011_p", 98},  {"KUC012", 99},    {"KUC012_p", 100},
    {"KUC013", 101},   {"KUC013_p", 102}, {"KUC014", 103},   {"KUC014_p", 104}, {"KUC014a", 105},
    {"KUC015", 106},   {"KUC015_", 107},  {"KUC015a", 108},  {"KUC015_p", 109}, {"KUC016", 110},
    {"KUC016_", 111},  {"KUC016_p", 112}, {"KUC016a", 113},  {"KUC016_n", 114}, {"KUC016an", 115},
    {"KUC017", 116},   {"KUC017_", 117},  {"KUC017_p", 118}, {"KUC017a", 119},  {"KUC017_n", 120},
    {"KUC017an", 121}, {"KUC021", 122},   {"KUC022", 123},   {"KUC022a", 124},  {"KUC023", 125},
    {"KUC023a", 126},  {"KUC024", 127},   {"KUC024a", 128},  {"KUC025", 129},   {"KUC031", 130},
    {"KUC032", 131},   {"KUC051", 132},   {"KUC052", 133},   {"KUC041", 134},   {"KUC042", 135},
    {"KUC039", 136},   {"KUC049", 137},   {"KUC059", 138},   {"KUC061Z", 139},  {"KUC061", 140},
    {"KUC062", 141},   {"KUC071", 142},   {"KUC071a", 143},  {"KUC072", 144},   {"KUC101", 145},
    {"KUC201", 146},   {"KUC120", 147},   {"KUC120a", 148},
};

// Figures that stand alike in every story.
constexpr SpriteRow CommonSprites[] = {
    {"KUS011", 1, -91, 28, "KDS011", "Kds011_a", 80, 80, MouthWithoutKey},
    {"KUS014", 1, -103, 33, "KDS014", "Kds014_a", 80, 80, 83},
    {"KUS023", 2, -303, 21, "KDS023", "Kds023_a", 288, 96, MouthWithoutKey},
    {"KUS041", 4, -127, 2, "KDS041", "Kds041_a", 112, 112, 83},
    {"KUS100a", 12, -102, 2, nullptr, "Kus100aa", 96, 96, 80},
    {"KUC011_p", 1, -175, 0, nullptr, nullptr, 0, 0, MouthWithoutKey},
    {"KUC017", 1, -197, 25, nullptr, "Kuc017_a", 176, 80, 86},
    {"KUC039", 3, -296, 10, nullptr, "Kuc039_a", 272, 208, 76},
    {"KUC061Z", 6, -125, 33, "KUC061", "Kuc061_a", 176, 80, 83},
    {"KUC120a", 16, -97, 26, nullptr, "Kuc120aa", 80, 96, 75},
};

constexpr std::array GroupShots{"KUS091", "KUC201"};

// The standing figures of these numbers are drawn as their sisters, "KDS" in place of "KUS".
constexpr std::string_view FirstSister = "KUS011", LastSister = "KUS059";
constexpr size_t FamilyLetters = 3, NumberEnd = 6;

}  // namespace

std::span<const NamedFlag> backgroundNames() {
  return Backgrounds;
}
std::span<const NamedFlag> eventNames() {
  return Events;
}
std::span<const NamedFlag> titleNames() {
  return Titles;
}
std::span<const NamedFlag> spriteNames() {
  return Sprites;
}

const NamedFlag* findName(std::span<const NamedFlag> names, std::string_view name) {
  const auto found =
      std::ranges::find_if(names, [&](const NamedFlag& row) { return name == row.name; });
  return found == names.end() ? nullptr : &*found;
}

std::span<const SpriteRow> commonSprites() {
  return CommonSprites;
}

std::string spriteFile(const SpriteRow& row) {
  if (row.file) return row.file;
  std::string name = row.name;
  if (name.starts_with("KUS") && name >= FirstSister && name.compare(0, NumberEnd, LastSister) <= 0)
    name.replace(0, FamilyLetters, "KDS");
  return name;
}

std::span<const char* const> groupShots() {
  return GroupShots;
}

bool isGroupShot(std::string_view name) {
  return std::ranges::find(GroupShots, name) != GroupShots.end();
}

}  // namespace qv
