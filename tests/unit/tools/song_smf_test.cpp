#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/process.h"
#include "tests/support/test_platform.h"
#include "tools/song/listing.h"
#include "tools/song/smf_reader.h"
#include "tools/song/smf_writer.h"
#include "tools/song/song_text.h"

namespace qv::song {
namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<uint8_t>;

Song readWell(const std::string& text) {
  ReadSong read = readSong(text);
  for (const Problem& problem : read.problems)
    ADD_FAILURE() << problem.line << ": " << problem.what;
  return std::move(read.song);
}

Bytes encode(const std::string& text, char variant = 'a') {
  return writeSmf(readWell(text), *variantOf(variant));
}

const char* const Little =
    "tempo 92\npart a flute\n[A]\n"
    "a | 4 c4 2. r |\n";

TEST(SongFile, IsFormatOneByteForByte) {
  const Bytes expected = {
      'M', 'T',  'h',  'd', 0,    0,    0,    6,    0,    1,    0,    2,    0x01, 0xE0,         //
      'M', 'T',  'r',  'k', 0,    0,    0,    26,                                               //
      0,   0xFF, 0x58, 4,   4,    2,    24,   8,    0,    0xFF, 0x59, 2,    0,    0,            //
      0,   0xFF, 0x51, 3,   0x09, 0xF3, 0x8D, 0x8F, 0x00, 0xFF, 0x2F, 0,                        //
      'M', 'T',  'r',  'k', 0,    0,    0,    42,                                               //
      0,   0xFF, 0x03, 1,   'a',  0,    0xB0, 7,    100,  0,    0xC0, 73,                       //
      0,   0xB0, 10,   64,  0,    0xB0, 11,   100,  0,    0xB0, 91,   40,   0,    0xB0, 93, 0,  //
      0,   0x90, 60,   82,  0x83, 0x39, 0x80, 60,   64,   0x8B, 0x47, 0xFF, 0x2F, 0};
  EXPECT_EQ(encode(Little), expected);
}

TEST(SongFile, EveryTempoComesBackWhole) {
  for (int tempo = SlowestTempo; tempo <= FastestTempo; ++tempo) {
    const uint32_t micros = microsecondsOf(tempo);
    EXPECT_LT(micros, 1U << 24);
    EXPECT_EQ(60'000'000U / micros, static_cast<uint32_t>(tempo));
  }
}

TEST(SongFile, AKeyIsLetGoBeforeItIsStruckAnew) {
  const SmfFile file = readSmf(encode("part a organ gate 100\n[A]\na | 2 c c |\n"));
  std::vector<int> kinds;
  for (const SmfEvent& event : file.tracks[1].events)
    if ((event.status & 0xE0) == 0x80) kinds.push_back(event.status);
  EXPECT_EQ(kinds, (std::vector<int>{0x90, 0x80, 0x90, 0x80}));
}

int count(const SmfFile& file, const auto& wanted) {
  int found = 0;
  for (const SmfTrack& track : file.tracks)
    found += static_cast<int>(std::count_if(track.events.begin(), track.events.end(), wanted));
  return found;
}

int mostVoices(const SmfFile& file) {
  std::map<uint64_t, int> changes;  // ends count before beginnings of their tick
  for (const SmfTrack& track : file.tracks)
    for (const SmfEvent& event : track.events) {
      if ((event.status & 0xF0) == 0x90) ++changes[event.tick * 2 + 1];
      if ((event.status & 0xF0) == 0x80) --changes[event.tick * 2];
    }
  int now = 0, most = 0;
  for (const auto& [tick, change] : changes)
    most = std::max(most, now += change);
  return most;
}

std::string manyVoices() {
  std::string text;
  for (int part = 0; part < 7; ++part)
    text += "part p" + std::to_string(part) + " piano gate 100\n";
  text += "part d drums\n[A]\n";
  for (int part = 0; part < 7; ++part)
    text += "p" + std::to_string(part) + " | 1 [c" + std::to_string(part + 1) + " e g b] | " +
            "2 r [c4 e] |\n";
  return text + "d | 4 r [bd hh] r [sd hh] | bd bd bd bd |\n";
}

TEST(SongVariants, LimitVoicesWhereTheMachineHasFew) {
  const std::string text = manyVoices();
  EXPECT_EQ(mostVoices(readSmf(encode(text, 'a'))), 30);
  EXPECT_EQ(mostVoices(readSmf(encode(text, 'c'))), 24);
  EXPECT_EQ(mostVoices(readSmf(encode(text, 'e'))), 16);
}

TEST(SongVariants, TheFirstPartAndTheDrumsKeepAllTheirNotes) {
  Song song = readWell(manyVoices());
  const Song before = song;
  limitVoices(song, 16);
  EXPECT_EQ(song.parts.front().notes, before.parts.front().notes);
  EXPECT_EQ(song.parts.back().notes, before.parts.back().notes);
  EXPECT_LT(song.parts[6].notes.size(), before.parts[6].notes.size());
}

TEST(SongVariants, TheSmallMachineHasFivePartsAndTheDrums) {
  const SmfFile file = readSmf(encode(manyVoices(), 'e'));
  EXPECT_EQ(file.tracks.size(), 7U);
}

TEST(SongVariants, EachHasItsOwnSetUp) {
  const std::string text = "part a strings\npart d drums\n[A]\na | 1 c |\nd | 1 bd |\n";
  const auto controller = [&](char variant, int number) {
    std::set<int> values;
    for (const SmfTrack& track : readSmf(encode(text, variant)).tracks)
      for (const SmfEvent& event : track.events)
        if ((event.status & 0xF0) == 0xB0 && event.data[0] == number) values.insert(event.data[1]);
    return values;
  };
  using Values = std::set<int>;
  EXPECT_EQ(controller('a', 0), Values{});
  EXPECT_EQ(controller('b', 0), Values{1});
  EXPECT_EQ(controller('d', 0), (Values{120, 121}));
  EXPECT_EQ(controller('a', 91), Values{40});
  EXPECT_EQ(controller('c', 91), Values{});
  EXPECT_EQ(controller('e', 93), Values{});
  const auto exclusive = [](const SmfEvent& event) { return event.status == 0xF0; };
  EXPECT_EQ(count(readSmf(encode(text, 'a')), exclusive), 0);
  EXPECT_EQ(count(readSmf(encode(text, 'd')), exclusive), 2);
  EXPECT_EQ(variantOf('f'), nullptr);
}

// ---- Reading

Bytes withTrack(const Bytes& track, int tracks = 1) {
  std::string head("MThd\0\0\0\6\0\1\0\1\0\x60MTrk\0\0\0\0", 22);
  head[11] = static_cast<char>(tracks);
  head[21] = static_cast<char>(track.size());
  Bytes bytes(head.begin(), head.end());
  for (const uint8_t byte : track)
    bytes.push_back(byte);
  return bytes;
}

TEST(SongReading, TellsEachFaultAndKeepsWhatStandsBefore) {
  const struct {
    Bytes bytes;
    size_t events;
    const char* fault;
  } cases[] = {
      {withTrack({0, 0x3C, 0x40}), 0, "Track 1 begins with running status."},
      {withTrack({0, 0x90, 60, 64, 0, 0x90, 60}), 1, "Track 1 ends within an event."},
      {withTrack({0, 0x90, 60, 64, 0x81}), 1, "Track 1 ends within a delta time."},
      {withTrack({0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x90}), 0, "Track 1 ends within a delta time."},
      {withTrack({0, 0x90, 60, 64}), 1, "Track 1 has no End of Track."},
      {withTrack({0, 0x90, 60, 200, 0, 0xFF, 0x2F, 0}), 0, "Track 1 has a data byte above 127."},
      {withTrack({0, 0xF3, 1}), 0, "Track 1 has a status byte that no file may have."},
      {withTrack({0, 0xF0, 0x7F, 1, 2}), 0, "Track 1 ends within an event."},
      {withTrack({0, 0xFF, 0x2F, 0}, 9), 1, "The file announces 9 tracks and has 1."},
  };
  for (const auto& one : cases) {
    const SmfFile file = readSmf(one.bytes);
    ASSERT_FALSE(file.faults.empty()) << one.fault;
    EXPECT_EQ(file.faults[0], one.fault);
    EXPECT_EQ(file.tracks[0].events.size(), one.events) << one.fault;
  }
  EXPECT_EQ(readSmf(Bytes(40, 'x')).faults.size(), 1U);
  EXPECT_EQ(readSmf(Bytes()).tracks.size(), 0U);
}

TEST(SongReading, WritesRunningStatusOut) {
  const SmfFile file =
      readSmf(withTrack({0, 0x90, 60, 64, 48, 62, 64, 0, 60, 0, 48, 62, 0, 0, 0xFF, 0x2F, 0}));
  ASSERT_TRUE(file.faults.empty());
  EXPECT_EQ(file.tracks[0].events[3].status, 0x90);
  EXPECT_EQ(file.tracks[0].events[3].tick, 96U);
}

TEST(SongListing, ShowsBarBeatAndWords) {
  const std::string list = listSmf(readSmf(encode(Little)));
  EXPECT_NE(list.find("   1:1+000  tempo 92 (652173 us)\n"), std::string::npos) << list;
  EXPECT_NE(list.find("   1:1+000  channel 1  program 74 flute\n"), std::string::npos);
  EXPECT_NE(list.find("   1:1+441  channel 1  off c4\n"), std::string::npos);
  EXPECT_NE(list.find("   2:1+000  end of track\n"), std::string::npos);
}

std::set<std::vector<int>> strokesOf(const Song& song) {
  std::set<std::vector<int>> strokes;
  for (const Part& part : song.parts)
    for (const Note& note : part.notes)
      strokes.insert({part.channel, static_cast<int>(note.tick), note.key});
  return strokes;
}

TEST(SongNotation, WhatWasWrittenReadsAsTheSameStrokes) {
  for (const std::string head : {"", "key Ab major\n", "key F# minor\nmetre 3/4\n"}) {
    const std::string text =
        head + "part a flute\npart d drums\n[A] tempo 90\na | 4 c4 8t e= f= g 4 [a= c e] |\n" +
        "d | 8 bd hh sd. hh bd [hh sd] |\n[B] tempo 110\na | 16 c d e f 4 r ~ |\na | 2. c5! |\n";
    const std::string metre = head.find("metre") == std::string::npos ? "metre 3/4\n" : "";
    const Song song = readWell(metre + text);
    const std::string notation = notationOf(readSmf(writeSmf(song, *variantOf('a'))));
    const Song again = readWell(notation);
    EXPECT_EQ(strokesOf(again), strokesOf(song)) << notation;
    EXPECT_EQ(again.tempi, song.tempi);
    EXPECT_EQ(again.length, song.length);
  }
}

// ---- The sample's songs

class SampleSong : public ::testing::TestWithParam<std::string> {
 protected:
  Song song() const {
    return readWell(testing::readWhole(fs::path(QV_SOURCE_DIR) / "game/midi" / GetParam()));
  }
};

std::vector<std::string> sampleSongs() {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(fs::path(QV_SOURCE_DIR) / "game/midi"))
    if (entry.path().extension() == ".song") names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

TEST_P(SampleSong, LastsAMinuteOrSo) {
  EXPECT_GE(secondsOf(song()), 45);
  EXPECT_LE(secondsOf(song()), 90);
}

TEST_P(SampleSong, LoopsWithEveryNoteEndedInEachArrangement) {
  for (const char variant : {'a', 'b', 'c', 'd', 'e'}) {
    const Bytes bytes = writeSmf(song(), *variantOf(variant));
    EXPECT_EQ(bytes, writeSmf(song(), *variantOf(variant)));
    const SmfFile file = readSmf(bytes);
    EXPECT_TRUE(file.faults.empty());
    std::set<int> channels, volumes;
    std::set<uint64_t> ends;
    for (const SmfTrack& track : file.tracks) {
      ends.insert(track.events.back().tick);
      std::map<int, int> open;
      std::set<int> own;
      for (const SmfEvent& event : track.events) {
        if (event.status >= 0xF0) continue;
        own.insert(event.status & 0x0F);
        const int kind = event.status & 0xF0;
        if (kind == 0xB0 && event.data[0] == 7) volumes.insert(event.data[1]);
        if (kind == 0x90) {
          EXPECT_EQ(open[event.data[0]]++, 0);
          EXPECT_GT(event.data[1], 0);
        }
        if (kind == 0x80) {
          EXPECT_EQ(--open[event.data[0]], 0);
          EXPECT_LT(event.tick, track.events.back().tick);
        }
      }
      for (const auto& [key, sounding] : open)
        EXPECT_EQ(sounding, 0) << "key " << key;
      for (const int channel : own)
        EXPECT_TRUE(channels.insert(channel).second) << "two tracks on channel " << channel;
    }
    EXPECT_EQ(ends.size(), 1U);
    EXPECT_EQ(volumes.size(), 1U);
    if (variant == 'c') {
      EXPECT_LE(mostVoices(file), 24);
    }
    if (variant == 'e') {
      EXPECT_LE(mostVoices(file), 16);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Songs, SampleSong, ::testing::ValuesIn(sampleSongs()),
                         [](const auto& given) { return given.param.substr(0, 3); });

// ---- The program

TEST(QvToolSong, EncodesListsAndTellsMistakes) {
  const testing::TemporaryFolder folder;
  const auto at = [&](const char* name) { return (folder.path() / name).string(); };
  const auto run = [](std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {QV_BIN_DIR "/qvtool", "song"});
    return testing::runProcess(arguments);
  };
  testing::writeWhole(at("a.song"), Little);
  EXPECT_EQ(run({"encode", at("a.song"), at("a.mid"), "--variant", "e"}).status, 0);
  const std::string bytes = testing::readWhole(at("a.mid"));
  EXPECT_EQ(Bytes(bytes.begin(), bytes.end()), encode(Little, 'e'));
  EXPECT_NE(run({"list", at("a.mid")}).output.find("end of track"), std::string::npos);
  EXPECT_NE(run({"decode", at("a.mid")}).output.find("| 4 c4 "), std::string::npos);

  testing::writeWhole(at("b.song"), "part a flute\n[A]\na | c |\n");
  const testing::ProcessResult wrong = run({"encode", at("b.song"), at("b.mid")});
  EXPECT_EQ(wrong.status, 1);
  EXPECT_EQ(wrong.errors, "qvtool: " + at("b.song") +
                              ":3: Bar 1 of a is too short: 480 ticks of 1920 (a quarter has "
                              "480).\n");
  EXPECT_FALSE(fs::exists(at("b.mid")));
  EXPECT_EQ(run({"encode", at("a.song"), at("c.mid"), "--variant", "f"}).errors,
            "qvtool: The variant is a, b, c, d or e, not \"f\".\n");
  EXPECT_EQ(run({"list", at("a.song")}).status, 1);
}

}  // namespace
}  // namespace qv::song
