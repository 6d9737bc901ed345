#include "platform/sound/cue_sheet.h"

#include <gtest/gtest.h>

namespace qv {
namespace {

const char* const Whole =
    "\xEF\xBB\xBFREM GENRE Game\r\n"
    "PERFORMER \"Somebody\"\r\n"
    "FILE \"data track.bin\" BINARY\r\n"
    "  TRACK 01 MODE1/2352\r\n"
    "    INDEX 01 00:00:00\r\n"
    "  TRACK 02 AUDIO\r\n"
    "    FLAGS DCP\r\n"
    "    INDEX 00 01:00:00\r\n"
    "    INDEX 01 01:02:03\r\n"
    "FILE song.flac WAVE\r\n"
    "\tTRACK 03 AUDIO\r\n"
    "\tINDEX 01 00:00:00";

TEST(CueSheetTest, TellsFilesTracksAndPlaces) {
  const CueSheet sheet = parseCueSheet(Whole);
  EXPECT_EQ(sheet.complaint, "");
  ASSERT_EQ(sheet.files.size(), 2u);
  EXPECT_EQ(sheet.files[0].name, "data track.bin");
  EXPECT_TRUE(sheet.files[0].binary);
  EXPECT_EQ(sheet.files[1].name, "song.flac");
  EXPECT_FALSE(sheet.files[1].binary);
  ASSERT_EQ(sheet.tracks.size(), 3u);
  EXPECT_FALSE(sheet.tracks[0].audio);
  EXPECT_EQ(sheet.tracks[1].number, 2);
  EXPECT_TRUE(sheet.tracks[1].audio);
  EXPECT_EQ(sheet.tracks[1].startFrame, 62u * 75 + 3);
  EXPECT_EQ(sheet.tracks[2].file, 1u);
}

TEST(CueSheetTest, ATrackEndsWhereTheNextOfItsFileBegins) {
  const CueSheet sheet = parseCueSheet(Whole);
  EXPECT_EQ(sheet.endFrame(0, 100'000), 62u * 75 + 3);
  EXPECT_EQ(sheet.endFrame(0, 1000), 1000u);
  EXPECT_EQ(sheet.endFrame(1, 100'000), 100'000u);
  EXPECT_EQ(sheet.endFrame(2, 500), 500u);
}

TEST(CueSheetTest, AnEmptyOneHasNoTracks) {
  EXPECT_TRUE(parseCueSheet("").tracks.empty());
  EXPECT_EQ(parseCueSheet("REM nothing\n\n").complaint, "");
}

TEST(CueSheetTest, RefusesBadLinesByTheirNumber) {
  const std::string file = "FILE a BINARY\n", track = "TRACK 02 AUDIO\n";
  const std::pair<std::string, const char*> cases[] = {
      {"FILE", "line 1: a FILE needs a name"},
      {"FILE \"\" WAVE", "line 1: a FILE needs a name"},
      {"TRACK 01 AUDIO", "line 1: a TRACK needs a FILE before it"},
      {"INDEX 01 00:00:00", "line 1: an INDEX needs a TRACK before it"},
      {file + "TRACK 0 AUDIO", "line 2: a TRACK has a number from 1 to 99"},
      {file + "TRACK 100 AUDIO", "line 2: a TRACK has a number from 1 to 99"},
      {file + "TRACK x AUDIO", "line 2: a TRACK has a number from 1 to 99"},
      {file + track, "line 2: the track has no INDEX 01"},
      {file + track + "INDEX 00 00:00:00\nTRACK 03 AUDIO", "line 4: the track has no INDEX 01"},
      {file + track + "FILE b WAVE", "line 3: the track has no INDEX 01"},
      {file + track + "INDEX 01 00:00:00\nTRACK 02 AUDIO", "line 4: the numbers of tracks rise"},
      {file + track + "INDEX 01 00:00:00\nINDEX 01 00:00:00", "line 4: the track has two INDEX 01"},
      {file + track + "INDEX 01 00:02:00\nTRACK 03 AUDIO\nINDEX 01 00:01:00",
       "line 5: a track begins before the one before it"}};
  for (const auto& [text, complaint] : cases) {
    const CueSheet sheet = parseCueSheet(text);
    EXPECT_EQ(sheet.complaint, complaint) << text;
    EXPECT_TRUE(sheet.tracks.empty() && sheet.files.empty());
  }
  for (const char* time : {"", "1", "1:2", "00:60:00", "00:00:75", "1000:00:00", "-1:00:00",
                           "0:0:0x", "4294967297:00:00", "::"})
    EXPECT_EQ(parseCueSheet(file + track + "INDEX 01 " + time).complaint,
              "line 3: an INDEX is a number and a time as mm:ss:ff")
        << time;
}

TEST(CueSheetTest, RefusesASheetThatIsTooLarge) {
  EXPECT_EQ(parseCueSheet(std::string(MostCueBytes + 1, '\n')).complaint,
            "line 1: the cue sheet is too large");
}

}  // namespace
}  // namespace qv
