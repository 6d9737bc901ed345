// The tables of picture names, told in full by ranges and by the rows that stand apart.

#include <map>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "graphics/scene/picture_tables.h"

namespace qv::testing {
namespace {

using Names = std::vector<std::string>;
using Flags = std::vector<int32_t>;

/// "KEV101-106": all numbers between; anything else stands for itself.
Names spread(std::initializer_list<const char*> ranges) {
  Names names;
  for (const std::string range : ranges) {
    const size_t dash = range.find('-');
    if (dash == std::string::npos) {
      names.push_back(range);
      continue;
    }
    const std::string stem = range.substr(0, dash - 3);
    const int last = std::stoi(range.substr(dash + 1));
    for (int number = std::stoi(range.substr(dash - 3, 3)); number <= last; ++number) {
      const std::string digits = std::to_string(number);
      names.push_back(stem + std::string(3 - digits.size(), '0') + digits);
    }
  }
  return names;
}

Names namesOf(std::span<const NamedFlag> rows) {
  Names names;
  for (const NamedFlag& row : rows)
    names.emplace_back(row.name);
  return names;
}

Flags flagsOf(std::span<const NamedFlag> rows) {
  Flags flags;
  for (const NamedFlag& row : rows)
    flags.push_back(row.flag);
  return flags;
}

/// Rising by one from `first`, but for names that share the flag of the one before them.
Flags rising(const Names& names, size_t withoutFlag, int32_t first,
             const std::set<std::string>& sharing) {
  Flags flags(withoutFlag, WithoutFlag);
  int32_t next = first;
  for (size_t at = withoutFlag; at < names.size(); ++at)
    flags.push_back(sharing.count(names[at]) ? next - 1 : next++);
  return flags;
}

int32_t flagOf(std::span<const NamedFlag> rows, const char* name) {
  const NamedFlag* row = findName(rows, name);
  return row ? row->flag : -2;
}

TEST(PictureTables, BackgroundsStandWholeAndInOrder) {
  const Names names = spread({"BLACK", "WHITE", "RED", "BLUE", "KBA001-020", "KBA020S1", "KBA020S2",
                              "KBA021-049", "KBA052-055"});
  ASSERT_EQ(names.size(), 59u);
  EXPECT_EQ(namesOf(backgroundNames()), names);
  Flags flags = rising(names, 4, 0, {"KBA020S1", "KBA020S2"});
  for (size_t last = flags.size() - 4; last < flags.size(); ++last)
    flags[last] += 4;
  // Both forms of one picture share its flag, which the next does not repeat.
  EXPECT_EQ(flagsOf(backgroundNames()), flags);
  EXPECT_EQ(flagOf(backgroundNames(), "KBA021"), 20);
  EXPECT_EQ(flagOf(backgroundNames(), "KBA049"), 48);
  EXPECT_EQ(flagOf(backgroundNames(), "KBA052"), 53);
  EXPECT_EQ(flagOf(backgroundNames(), "KBA055"), 56);
}

TEST(PictureTables, EventsStandWholeAndInOrder) {
  const Names names =
      spread({"BLACK",      "WHITE",   "RED",     "BLUE",    "KEV001",     "KEV101-106",
              "KEV106a",    "KEV002",  "KEV003",  "KEV003B", "KEV003C",    "KEV004",
              "KEV005",     "KEV006",  "KEV006a", "KEV007",  "KEV201-204", "KEV204a",
              "KEV205-211", "KEV211a", "KEV211b", "KEV212",  "KEV212a",    "KEV213",
              "KEV220-228", "KEV228a", "KEV229",  "KEV230",  "KEV230B",    "KEV300-308",
              "KEV310",     "KEV310a", "KEV310b", "KEV311",  "KEV401",     "KEV402",
              "KEV404",     "KEV404a", "KEV405A", "KEV405B", "KEV406",     "KEV407",
              "KEV412",     "KEV413",  "KEV420",  "KEV420a", "KEV421",     "KEV501",
              "KEV503-505", "KEV507",  "KEV601",  "KEV602",  "KEV602a",    "KEV603",
              "KEV605",     "KEV606",  "KEV610",  "KEV620",  "KEV901",     "KEV906-908",
              "KEV908A",    "KEV920",  "KEV920a", "KEV920b", "KEV920c",    "KEV921-925",
              "KEV925A"});
  ASSERT_EQ(names.size(), 105u);
  EXPECT_EQ(namesOf(eventNames()), names);
  EXPECT_EQ(flagsOf(eventNames()), rising(names, 4, 160,
                                          {"KEV003B", "KEV003C", "KEV211b", "KEV230B", "KEV310a",
                                           "KEV405B", "KEV908A", "KEV925A"}));
}

TEST(PictureTables, EventsHaveTheFlagsByWhichTheGalleryKnowsThem) {
  const std::map<const char*, int32_t> registers = {
      {"KEV223", 494},  {"KEV301", 504},  {"KEV002", 468},  {"KEV201", 475},  {"KEV407", 521},
      {"KEV402", 516},  {"KEV003B", 469}, {"KEV101", 461},  {"KEV004", 470},  {"KEV406", 520},
      {"KEV005", 471},  {"KEV006", 472},  {"KEV105", 465},  {"KEV007", 474},  {"KEV225", 496},
      {"KEV205", 480},  {"KEV308", 511},  {"KEV221", 492},  {"KEV305", 508},  {"KEV300", 503},
      {"KEV503", 528},  {"KEV505", 530},  {"KEV204", 478},  {"KEV106a", 467}, {"KEV228", 499},
      {"KEV229", 501},  {"KEV230", 502},  {"KEV310a", 512}, {"KEV401", 515},  {"KEV404a", 518},
      {"KEV405A", 519}, {"KEV311", 514},  {"KEV204a", 479}, {"KEV211", 486},  {"KEV212", 488},
      {"KEV501", 527},  {"KEV307", 510},  {"KEV620", 539},  {"KEV213", 490},  {"KEV420", 524},
      {"KEV507", 531},  {"KEV421", 526},  {"KEV601", 532},  {"KEV603", 535},  {"KEV602", 533},
      {"KEV610", 538},  {"KEV605", 536},  {"KEV606", 537},  {"KEV901", 540},  {"KEV908", 543},
      {"KEV922", 549},  {"KEV925", 552},  {"KEV412", 522},  {"KEV001", 460},  {"KEV920", 544},
      {"KEV920a", 545}, {"KEV920b", 546}, {"KEV920c", 547}, {"KEV921", 548},
  };
  for (const auto& [name, number] : registers)
    EXPECT_EQ(300 + flagOf(eventNames(), name), number) << name;
}

TEST(PictureTables, TitlesStandWholeAndWithoutFlags) {
  const Names names =
      spread({"KTI001-005", "KTI007", "KAI001-005", "KAI007", "CONT", "KEV010-012", "KEV020-022",
              "KEV030-032", "KEV040-042", "KEV050-052", "KEV060-062", "KEV070-072", "KEN001A",
              "KEN001B", "KEN001C", "P55", "KAV60206", "KEV60219"});
  EXPECT_EQ(namesOf(titleNames()), names);
  EXPECT_EQ(flagsOf(titleNames()), Flags(names.size(), WithoutFlag));
}

TEST(PictureTables, FiguresStandWholeAndInOrder) {
  const Names names =
      spread({"KUS011",   "KUS012",  "KUS012a",  "KUS013",   "KUS014",   "KUS015",   "KUS021-025",
              "KUS031",   "KUS032",  "KUS032_",  "KUS032a",  "KUS033",   "KUS041",   "KUS042",
              "KUS051",   "KUS052",  "KUS053",   "KUS053_",  "KUS053a",  "KUS054",   "KUS039",
              "KUS049",   "KUS059",  "KUS060",   "KUS060a",  "KUS061",   "KUS062",   "KUS081",
              "KUS082",   "KUS091",  "KUS100",   "KUS100_",  "KUS100a",  "KUS100b",  "KUS110",
              "KUC011",   "KUC011_", "KUC011a",  "KUC011_p", "KUC012",   "KUC012_p", "KUC013",
              "KUC013_p", "KUC014",  "KUC014_p", "KUC014a",  "KUC015",   "KUC015_",  "KUC015a",
              "KUC015_p", "KUC016",  "KUC016_",  "KUC016_p", "KUC016a",  "KUC016_n", "KUC016an",
              "KUC017",   "KUC017_", "KUC017_p", "KUC017a",  "KUC017_n", "KUC017an", "KUC021",
              "KUC022",   "KUC022a", "KUC023",   "KUC023a",  "KUC024",   "KUC024a",  "KUC025",
              "KUC031",   "KUC032",  "KUC051",   "KUC052",   "KUC041",   "KUC042",   "KUC039",
              "KUC049",   "KUC059",  "KUC061Z",  "KUC061",   "KUC062",   "KUC071",   "KUC071a",
              "KUC072",   "KUC101",  "KUC201",   "KUC120",   "KUC120a"});
  ASSERT_EQ(names.size(), 93u);
  EXPECT_EQ(namesOf(spriteNames()), names);
  EXPECT_EQ(flagsOf(spriteNames()),
            rising(names, 0, 60, {"KUS012a", "KUS032a", "KUS053a", "KUS100a"}));
  const std::map<const char*, int32_t> told = {
      {"KUS011", 60},   {"KUS014", 63},  {"KUS023", 67},   {"KUS041", 74},  {"KUS091", 90},
      {"KUS100a", 92},  {"KUS110", 94},  {"KUC011_p", 98}, {"KUC017", 116}, {"KUC039", 136},
      {"KUC061Z", 139}, {"KUC201", 146}, {"KUC120a", 148}};
  for (const auto& [name, flag] : told)
    EXPECT_EQ(flagOf(spriteNames(), name), flag) << name;
}

TEST(PictureTables, NamesAreExact) {
  for (const char* name : {"KBA01", "kba001", "KBA001 ", "KBA056", "KBA050", ""})
    EXPECT_EQ(findName(backgroundNames(), name), nullptr) << name;
  EXPECT_EQ(findName(eventNames(), "KEV405b"), nullptr);
}

// --- Rows ---

struct FigureTold {
  const char* name;
  int32_t speaker, x, y;
  const char *file, *mouth;
  int32_t mouthX, mouthY, key;
};

TEST(PictureTables, FiguresThatAreTheSameInEveryStoryStandHere) {
  const FigureTold told[] = {
      {"KUS011", 1, -91, 28, "KDS011", "Kds011_a", 80, 80, -2},
      {"KUS014", 1, -103, 33, "KDS014", "Kds014_a", 80, 80, 83},
      {"KUS023", 2, -303, 21, "KDS023", "Kds023_a", 288, 96, -2},
      {"KUS041", 4, -127, 2, "KDS041", "Kds041_a", 112, 112, 83},
      {"KUS100a", 12, -102, 2, "KUS100a", "Kus100aa", 96, 96, 80},
      {"KUC017", 1, -197, 25, "KUC017", "Kuc017_a", 176, 80, 86},
      {"KUC039", 3, -296, 10, "KUC039", "Kuc039_a", 272, 208, 76},
      {"KUC061Z", 6, -125, 33, "KUC061", "Kuc061_a", 176, 80, 83},
      {"KUC120a", 16, -97, 26, "KUC120a", "Kuc120aa", 80, 96, 75},
  };
  for (const FigureTold& figure : told) {
    SCOPED_TRACE(figure.name);
    const SpriteRow* row = findSpriteRow(figure.name);
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(row->speaker, figure.speaker);
    EXPECT_EQ(row->x, figure.x);
    EXPECT_EQ(row->y, figure.y);
    EXPECT_EQ(spriteFile(*row), figure.file);
    EXPECT_STREQ(row->mouth, figure.mouth);
    EXPECT_EQ(row->mouthX, figure.mouthX);
    EXPECT_EQ(row->mouthY, figure.mouthY);
    EXPECT_EQ(row->key, figure.key);
  }
  const SpriteRow* still = findSpriteRow("KUC011_p");
  ASSERT_NE(still, nullptr);
  EXPECT_EQ(still->x, -175);
  EXPECT_EQ(still->y, 0);
  EXPECT_EQ(still->mouth, nullptr);
}

SpriteRow rowOf(const char* name, const char* file) {
  return {name, 1, 0, 0, file, nullptr, 0, 0, MouthWithoutKey};
}

TEST(PictureTables, StandingFiguresUpToFiftyNineAreDrawnAsTheirSisters) {
  const std::pair<const char*, const char*> files[] = {
      {"KUS011", "KDS011"}, {"KUS012a", "KDS012a"}, {"KUS059", "KDS059"}, {"KUS053_", "KDS053_"},
      {"KUS060", "KUS060"}, {"KUS100", "KUS100"},   {"KUC011", "KUC011"}, {"KUS010", "KUS010"}};
  for (const auto& [name, file] : files)
    EXPECT_EQ(spriteFile(rowOf(name, nullptr)), file);
  EXPECT_EQ(spriteFile(rowOf("KUS012", "other")), "other");
}

TEST(PictureTables, EventsKnowWhoIsInThem) {
  const PictureRow* pair = findPictureRow("KEV003B");
  ASSERT_NE(pair, nullptr);
  ASSERT_EQ(pair->mouthCount, 2);
  EXPECT_EQ(pair->mouths[0].speaker, 1);
  EXPECT_EQ(pair->mouths[0].slot, 1);
  EXPECT_STREQ(pair->mouths[0].file, "KEV003Ba");
  EXPECT_EQ(pair->mouths[0].x, 432);
  EXPECT_EQ(pair->mouths[0].y, 208);
  EXPECT_EQ(pair->mouths[0].key, MouthWithoutKey);
  EXPECT_EQ(pair->mouths[1].speaker, 2);
  EXPECT_EQ(pair->mouths[1].slot, 2);
  EXPECT_STREQ(pair->mouths[1].file, "KEV003Bb");
  EXPECT_EQ(pair->mouths[1].x, 96);
  EXPECT_EQ(pair->mouths[1].y, 256);
  const PictureRow* four = findPictureRow("KEV205");
  ASSERT_NE(four, nullptr);
  ASSERT_EQ(four->mouthCount, 4);
  const int32_t speakers[] = {2, 17, 18, 19};
  for (int32_t at = 0; at < 4; ++at) {
    EXPECT_EQ(four->mouths[at].speaker, speakers[at]);
    EXPECT_EQ(four->mouths[at].slot, at + 1);
  }
  EXPECT_STRNE(findPictureRow("KEV230B")->file, "KEV230B");
  EXPECT_EQ(findPictureRow("KEV230B")->mouthCount, 0);
  EXPECT_EQ(findPictureRow("KEV999"), nullptr);
}

TEST(PictureTables, AStoryMayTellMoreOfOpenRowsAndNothingElseOfWholeOnes) {
  const PictureRow pictures[] = {
      {"KEV205", nullptr, 1, {{2, 1, "mine", 1, 2, 3}}},
      {"KEV001", "other", 0, {}},
  };
  StoryTables tables;
  tables.pictures = pictures;
  setStoryTables(&tables);
  EXPECT_STREQ(findPictureRow("KEV205")->mouths[0].file, "mine");
  EXPECT_STREQ(findPictureRow("KEV001")->mouths[0].file, "KEV001_a");
  setStoryTables(nullptr);
}

}  // namespace
}  // namespace qv::testing
