// The running line in its registers, and the store of the lines that were read.

#include <gtest/gtest.h>

#include "message/commands.h"
#include "message/history.h"
#include "message/lines.h"
#include "message/pending_text.h"
#include "platform/text/shift_jis.h"
#include "scenario/commands.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"
#include "tests/support/test_platform.h"

namespace qv::testing {
namespace {

class LineText : public ::testing::Test {
 protected:
  LineText() {
    manager.Start(nullptr, "Test", RegisterCount, StringRegisterCount, SystemRegisterCount);
    setTheScenario(&manager);
    set(HeroFamilyName, "三枝");
    set(HeroGivenName, "湊");
    set(SpeakerName, "【　レッサ　】");
  }
  ~LineText() override { setTheScenario(nullptr); }
  void set(int32_t number, const char* text) {
    manager.StrReg(number).create(QVString::DefaultGrain, sjis(text).c_str());
  }
  std::string at(int32_t number) { return utf8OfShiftJis(manager.StrReg(number).view()); }
  void add(const std::string& text) { AddHistory(sjis(text).c_str()); }

  TestPlatform platform{false, makeSimulatedKernel()};
  QVScenario manager;
};

TEST_F(LineText, IsCollectedFromAllItsPieces) {
  PrintMessage(sjis("一、").c_str());
  PrintMessage(nullptr);
  PrintMessage("");
  PrintMessage(sjis("＊＊＊。").c_str());
  EXPECT_EQ(at(MessagePending), "一、＊＊＊。");
  EXPECT_EQ(at(MessageAccumulator), "一、＊＊＊。");
  EXPECT_EQ(at(MessageLast), "");
}

TEST_F(LineText, HasNoLimit) {
  const std::string piece(1000, 'x');
  for (int i = 0; i < 100; ++i)
    PrintMessage(piece.c_str());
  printPending();
  EXPECT_EQ(manager.StrReg(MessageLast).length(), 100'000);
}

TEST_F(LineText, IsTakenWithTheNamesOfThatMoment) {
  PrintMessage(sjis("＊＊＊と※※※").c_str());
  set(HeroGivenName, "陽一");
  printPending();
  EXPECT_EQ(at(MessageLast), "陽一と三枝");
  EXPECT_EQ(at(MessagePending), "");
  EXPECT_EQ(at(MessageAccumulator), "＊＊＊と※※※");
  EXPECT_EQ(at(HistoryNames), "【　レッサ　】");
  EXPECT_EQ(at(HistoryMessages), "陽一と三枝");
}

TEST_F(LineText, ThatWaitsForNothingLeavesAllAsItIs) {
  set(MessageLast, "前の行");
  printPending();
  EXPECT_EQ(at(MessageLast), "前の行");
  EXPECT_EQ(at(HistoryNames), "");
}

TEST_F(LineText, ThatRepeatsTheLastIsNotKeptTwice) {
  for (const char* text : {"同じ", "同じ", "違う", "同じ"}) {
    PrintMessage(sjis(text).c_str());
    printPending();
  }
  EXPECT_EQ(at(HistoryMessages), "同じ");
  EXPECT_EQ(at(HistoryMessages + 1), "違う");
  EXPECT_EQ(at(HistoryMessages + 2), "同じ");
  EXPECT_EQ(at(HistoryMessages + 3), "");
}

TEST_F(LineText, SeventyOneLinesLeaveTheSecondToTheLast) {
  for (int line = 1; line <= 71; ++line)
    add(std::to_string(line));
  EXPECT_EQ(at(HistoryMessages), "2");
  EXPECT_EQ(at(HistoryMessages + 69), "71");
  EXPECT_EQ(at(HistoryMessages + 70), "") << "a scratch place";
  EXPECT_EQ(at(HistoryNames + 70), "");
  EXPECT_EQ(at(HistoryNames + 69), "【　レッサ　】");
}

TEST_F(LineText, SeventyLinesAreAllKept) {
  for (int line = 1; line <= 70; ++line)
    add(std::to_string(line));
  EXPECT_EQ(at(HistoryMessages), "1");
  EXPECT_EQ(at(HistoryMessages + 69), "70");
}

TEST_F(LineText, ALineUnderNoNameAtAllEndsTheStoreThere) {
  add("一");
  set(SpeakerName, "");
  add("二");
  set(SpeakerName, "【　レッサ　】");
  add("三");
  EXPECT_EQ(at(HistoryMessages), "一");
  EXPECT_EQ(at(HistoryMessages + 1), "三") << "in the place of the one that counts as none";
}

TEST_F(LineText, CommandsWithoutAManagerDoNothing) {
  setTheScenario(nullptr);
  SpeakLine("x", "y");
  PrintMessage("z");
  printPending();
  stopSilentMouth();
  stopLineVoice();
  AddHistory("z");
  EXPECT_EQ(WaitClick(30, 0), 0);
  EXPECT_EQ(SelectMain(2), 0);
  EXPECT_FALSE(takePending().has_value());
}

TEST_F(LineText, WaitsWithoutAHostAreOverAtOnce) {
  EXPECT_EQ(WaitClick(WaitWithoutLimit, 0), 0);
  EXPECT_EQ(SelectMain(3), 0);
  EXPECT_EQ(manager.Reg(WaitKindRegister), 0);
}

}  // namespace
}  // namespace qv::testing
