#include "tools/song/song_text.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace qv::song {
namespace {

Song readWell(const std::string& text) {
  ReadSong read = readSong(text);
  for (const Problem& problem : read.problems)
    ADD_FAILURE() << problem.line << ": " << problem.what;
  return std::move(read.song);
}

/// One part, one section.
std::vector<Note> notesOf(const std::string& bars, const std::string& head = {},
                          const std::string& part = "part a flute gate 100\n") {
  const Song song = readWell(head + part + "[A]\na " + bars + "\n[Z]\na 1 r |\n");
  return song.parts.empty() ? std::vector<Note>() : song.parts[0].notes;
}

std::vector<int> keysOf(const std::vector<Note>& notes) {
  std::vector<int> keys;
  for (const Note& note : notes)
    keys.push_back(note.key);
  return keys;
}

std::vector<uint32_t> lengthsOf(const std::vector<Note>& notes) {
  std::vector<uint32_t> lengths;
  for (const Note& note : notes)
    lengths.push_back(note.length);
  return lengths;
}

std::vector<int> velocitiesOf(const std::vector<Note>& notes) {
  std::vector<int> velocities;
  for (const Note& note : notes)
    velocities.push_back(note.velocity);
  return velocities;
}

using Ints = std::vector<int>;
using Lengths = std::vector<uint32_t>;

TEST(SongText, ANoteKeepsItsOctaveUntilAnotherIsGiven) {
  EXPECT_EQ(keysOf(notesOf("| c d5 c b4 |")), (Ints{60, 74, 72, 71}));
}

TEST(SongText, ASignHoldsForItsNoteAndTheKeyForTheRest) {
  EXPECT_EQ(keysOf(notesOf("| f4 f= f f# | b bb b= f## |", "key D major\n")),
            (Ints{66, 65, 66, 66, 71, 70, 71, 67}));
  EXPECT_EQ(keysOf(notesOf("| b4 e a d |", "key Eb major\n")), (Ints{70, 63, 68, 62}));
  EXPECT_EQ(keysOf(notesOf("| f4 c g d |", "key C# minor\n")), (Ints{66, 61, 68, 63}));
}

TEST(SongText, AChordClimbsFromItsFirstNote) {
  EXPECT_EQ(keysOf(notesOf("| 1 [g3 c e] | [b3 g b] |")), (Ints{55, 60, 64, 59, 67, 71}));
}

TEST(SongText, LengthsAreValuesDotsAndTriplets) {
  EXPECT_EQ(lengthsOf(notesOf("| 4. c 8 c 8t c c c 16 c c c 32 c c |")),
            (Lengths{720, 240, 160, 160, 160, 120, 120, 120, 60, 60}));
  EXPECT_EQ(lengthsOf(notesOf("| 2.. c 8 c |")), (Lengths{1680, 240}));
}

TEST(SongText, ATieHoldsTheNoteOverTheBarLine) {
  const std::vector<Note> notes = notesOf("| 2. r 4 [c e] | ~ 2. ~ | 1 c |");
  ASSERT_EQ(notes.size(), 3U);
  EXPECT_EQ(lengthsOf(notes), (Lengths{2400, 2400, 1920}));
  EXPECT_EQ(notes[2].tick, 3840U);
}

TEST(SongText, RepeatsAndSimilesCopyBars) {
  EXPECT_EQ(keysOf(notesOf("|: 1 c | d :|3 e | % |")), (Ints{60, 62, 60, 62, 60, 62, 64, 64}));
  EXPECT_EQ(notesOf("|: 1 c :|").back().tick, 1920U);
}

TEST(SongText, DynamicsAreSetAndGrowEvenly) {
  EXPECT_EQ(velocitiesOf(notesOf("| c (p) c v90 c c! |")), (Ints{82, 54, 90, 106}));
}

TEST(SongText, AHairpinLeadsFromOneMarkToTheNext) {
  EXPECT_EQ(velocitiesOf(notesOf("| v40 < c d e f | g r r v90 c |")),
            (Ints{40, 50, 60, 70, 80, 90}));
}

TEST(SongText, ShortNotesSoundLessThanHalf) {
  EXPECT_EQ(lengthsOf(notesOf("| 2 c. c |")), (Lengths{432, 960}));
  EXPECT_EQ(lengthsOf(notesOf("| 1 c |", "", "part a flute gate 50\n")), (Lengths{960}));
}

TEST(SongText, DrumsHaveNames) {
  const Song song = readWell("part d drums\n[A]\nd | bd sd [hh oh] r |\n");
  EXPECT_EQ(song.parts[0].channel, DrumChannel);
  EXPECT_EQ(keysOf(song.parts[0].notes), (Ints{36, 38, 42, 46}));
}

TEST(SongText, ChannelsPassOverTheDrums) {
  std::string text;
  for (int part = 0; part < 15; ++part)
    text += "part p" + std::to_string(part) + " piano\n";
  const Song song = readWell(text + "part d drums\n[A]\np0 | 1 c |\n");
  EXPECT_EQ(song.parts[8].channel, 8);
  EXPECT_EQ(song.parts[9].channel, 10);
  EXPECT_EQ(song.parts[14].channel, 15);
}

TEST(SongText, AFormPlaysSectionsInItsOrderAndTheirTempi) {
  const Song song = readWell(
      "tempo 96\nform A B A\npart a flute\npart b flute\n"
      "[A]\na | 1 c |\nb | 1 e |\n[B] like A tempo 60\na | 1 d |\n");
  EXPECT_EQ(keysOf(song.parts[0].notes), (Ints{60, 62, 60}));
  EXPECT_EQ(keysOf(song.parts[1].notes), (Ints{64, 64, 64}));
  EXPECT_EQ(song.tempi, (std::vector<TempoChange>{{0, 96}, {1920, 60}, {3840, 96}}));
  EXPECT_NEAR(secondsOf(song), 2.5 + 4 + 2.5, 1e-9);
}

TEST(SongText, EveryNoteEndsBeforeTheSongDoes) {
  const Song song = readWell(
      "part a organ gate 100\npart b drums\n[A]\na | 1 c |\nb | 4 r r r 32 r r r r r r r bd |\n");
  for (const Part& part : song.parts)
    for (const Note& note : part.notes)
      EXPECT_LE(note.tick + note.length, song.length - 30);
}

struct Wrong {
  const char* text;
  int line;
  const char* what;
};

TEST(SongText, TellsWhatIsWrongAndInWhichLine) {
  const std::string head = "part a flute\npart d drums\n[A]\n";
  const Wrong wrongs[] = {
      {"a | c d e |", 4, "Bar 1 of a is too short: 1440 ticks of 1920 (a quarter has 480)."},
      {"a | c d e f g |", 4, "Bar 1 of a is too long: 2400 ticks of 1920 (a quarter has 480)."},
      {"a | 1 c |\n\na | 4 h g g g |", 6, "\"h\" is no note; write c, f#4, bb3, r for a rest."},
      {"a | 3 c |", 4, "\"3\" is no length; write 1 2 4 8 16 32, dotted as 4. or a triplet as 8t."},
      {"a | 1 [c e |", 4, "The chord has no \"]\" in this bar."},
      {"a | 1 [c4 c4] |", 4, "\"c4\" stands in the chord twice."},
      {"a |: 1 c |", 4, "A repeat of a has no \":|\"."},
      {"a | 1 c :|", 4, "\":|\" without a \"|:\" before it."},
      {"a | % |", 4, "\"%\" repeats the bar before it; it stands alone in its bar."},
      {"a | 1 < c |", 4, "A hairpin of a does not lead to a dynamic mark."},
      {"a | v200 1 c |", 4, "\"v200\": a velocity is v1 to v127."},
      {"a | 1 c10 |", 4, "\"c10\" is no note; write c, f#4, bb3, r for a rest."},
      {"a | 1 g#9 |", 4, "\"g#9\" is beyond the keys of an instrument."},
      {"d | 1 zz |", 4, "\"zz\" is no drum; docs/song-notation.md lists them."},
      {"x | 1 c |", 4, "\"x\" is no part; declare it above by \"part x ...\"."},
      {"a | 1 c | c |\nd | 1 bd |", 3, "In section A the part d has 1 bars of 2."},
      {"a | 1 c |\n[B] like Q", 5, "No section Q stands above."},
      {"a | 1 c |\n[A]", 5, "The section A stands there twice."},
  };
  for (const Wrong& wrong : wrongs) {
    const ReadSong read = readSong(head + wrong.text + "\n");
    ASSERT_FALSE(read.problems.empty()) << wrong.text;
    EXPECT_EQ(read.problems[0].line, wrong.line) << wrong.text;
    EXPECT_EQ(read.problems[0].what, wrong.what);
  }
}

TEST(SongText, TellsWhatIsWrongInTheHead) {
  const Wrong wrongs[] = {
      {"tempo 96.5", 1, "A tempo is a whole number from 20 to 300, not \"96.5\"."},
      {"\nmetre 4/3", 2, "The unit of a beat is 2, 4, 8 or 16."},
      {"key H major", 1, "A key is written as \"key Bb major\" or \"key F# minor\"."},
      {"part a zither", 1, "\"zither\" is no instrument; docs/song-notation.md lists them."},
      {"part a 129", 1, "A program is a whole number from 1 to 128, not \"129\"."},
      {"part a flute\npart a oboe", 2, "The part a stands there twice."},
      {"part a flute channel 2\npart b oboe channel 2", 2,
       "The parts a and b both have channel 2."},
      {"part a flute channel 10", 1, "Channel 10 is the drums', and no other is."},
      {"part a flute pan 200", 1, "pan is a whole number from 0 to 127, not \"200\"."},
      {"form A Q\npart a flute\n[A]\na | 1 c |", 1,
       "The form names the section Q, which is not there."},
      {"loudness 4", 1,
       "\"loudness\" is not known here; before the first section stand title, composer, tempo, "
       "metre, key, volume, part and form."},
  };
  for (const Wrong& wrong : wrongs) {
    const ReadSong read = readSong(wrong.text);
    const bool told =
        std::any_of(read.problems.begin(), read.problems.end(), [&](const Problem& problem) {
          return problem.line == wrong.line && problem.what == wrong.what;
        });
    EXPECT_TRUE(told) << wrong.text << "\n"
                      << (read.problems.empty() ? "no problem" : read.problems[0].what);
  }
}

TEST(SongText, ASlipOfThePenFillsNoMemory) {
  std::string text = "metre 16/2\npart a flute\n[A]\na |: 32";
  for (int note = 0; note < 256; ++note)
    text += " c";
  text += " |";
  for (int bar = 0; bar < 80; ++bar)
    text += " % |";
  text += " % :|16\n";
  for (int section = 0; section < 60; ++section)
    text += "[S" + std::to_string(section) + "] like A\n";
  const ReadSong read = readSong(text);
  ASSERT_FALSE(read.problems.empty());
  EXPECT_NE(read.problems.back().what.find("too long"), std::string::npos);
}

}  // namespace
}  // namespace qv::song
