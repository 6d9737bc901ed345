// The start of a run: what stands by its name when the first scene begins, in which order it was
// built, and what a first start writes.

#include "scenario/start/start.h"

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/file.h"
#include "foundation/path_name.h"
#include "graphics/animation/animation_sequence.h"
#include "input/click_map.h"
#include "message/frame_buttons.h"
#include "platform/text/shift_jis.h"
#include "scenario/commands.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"
#include "scenario/start/first_start.h"
#include "scenario/start/user_name_file.h"
#include "scenario/story_tables.h"
#include "screens/save_files.h"
#include "tests/support/flat_pictures.h"
#include "tests/unit/scenario/fake_host.h"

namespace qv::testing {
namespace {

/// Objects as they were made: each with the number of windows that were there before it.
struct MadeObject {
  LogicalObject* object;
  size_t windowsBefore;
};
std::vector<MadeObject>* madeObjects = nullptr;
FakeHost* madeOn = nullptr;
std::map<int, ObjectKind> realKinds;

template <int Code>
LogicalObject* allocateNoted() {
  LogicalObject* object = realKinds.at(Code).allocate();
  madeObjects->push_back({object, madeOn->created.size()});
  return object;
}

template <int Code>
ObjectKind notedKind() {
  const ObjectKind real = *findObjectKind(Code);
  realKinds.insert_or_assign(Code, real);
  return {Code, real.operation, real.kindName, real.native, &allocateNoted<Code>};
}

SceneFunction firstScene() {
  return {};
}

class Start : public ::testing::Test {
 protected:
  Start() {
    writeFlatGame(platform.game());
    madeObjects = &made;
    madeOn = &host;
  }
  ~Start() override {
    if (manager) {
      endStory();
      destroyManager(manager);
    }
    madeObjects = nullptr;
  }
  void start(bool bare = false) {
    tables.familyName = "family";
    tables.givenName = "given";
    manager = createManager();
    const SceneFunction next = startStory(&host, {"Test", &firstScene, &tables, bare});
    EXPECT_NE(next.address, nullptr);
  }
  std::string text(int32_t number) { return std::string(manager->StrReg(number).view()); }
  /// Names in the order in which they came to be.
  std::vector<std::string> order() const {
    std::vector<std::string> names;
    size_t window = 0;
    for (const MadeObject& one : made) {
      for (; window < one.windowsBefore; ++window)
        names.push_back(host.created[window].name);
      names.emplace_back(one.object->name().view());
    }
    for (; window < host.created.size(); ++window)
      names.push_back(host.created[window].name);
    return names;
  }
  const SeenRequest* windowNamed(const std::string& name) const {
    for (const SeenRequest& request : host.created)
      if (request.name == name) return &request;
    return nullptr;
  }

  TestPlatform platform{false, makeSimulatedKernel()};
  std::vector<MadeObject> made;
  FakeHost host;
  const ObjectKind kinds[6] = {
      notedKind<TypeSurface>(),           notedKind<TypePrintArea>(),
      notedKind<TypeClickMap>(),          notedKind<TypeAnimationSurface>(),
      notedKind<TypeAnimationSequence>(), notedKind<TypeAnimationArea>()};
  ObjectKindsScope scope{kinds};
  StoryTables tables;
  QVScenario* manager = nullptr;
};

// --- The standing objects ---

TEST_F(Start, BuildsTheStandingObjectsInTheirOrder) {
  start();
  const std::vector<std::string> expected = {
      "cg.view", "cg.surf",
      // The frame.
      "mess.view", "mess.Drama", "mess.surf", "mfrmR.surf", "mfrm.surf", "dfrm.surf",
      "messTemp.surf", "Blink.Area", "Blink.Surf", "Blink.Sequ", "name.Area", "message.Area",
      "clmall", "clmmess", "clmdrama",
      // Selections.
      "sel01.surf", "sel02.surf", "sel03.surf", "sel01R.surf", "sel02R.surf", "sel03R.surf",
      "select01.view", "select21.view", "select01.Title.Aria", "clmsel01", "clmsel01a",
      "select02.view", "select22.view", "select02.Title.Aria", "clmsel02", "select03.view",
      "select03.Title.Aria", "clmsel03",
      // Labels.
      "comm01.view", "com01.Title.Aria", "comm02.view", "com02.Title.Aria", "comm03.view",
      "com03.Title.Aria",
      // The pendant.
      "sysCut.surf", "sysCut1.surf", "sysCutPn.surf", "sysCutP2.surf", "system.cut.win",
      "systemButton.click",
      // Behind the names and the defaults.
      "HelpWindow", "HelpAria", "CG_SEQU01_MOUTH", "CG_SEQU02_MOUTH", "CG_SEQU03_MOUTH",
      "CG_SEQU04_MOUTH", "CG_SEQU05_MOUTH"};
  EXPECT_EQ(order(), expected);
}

TEST_F(Start, ViewsStandWhereTheyBelong) {
  start();
  struct Told {
    const char *name, *parent;
    int32_t x, y, width, height, hidden, code;
  };
  const Told told[] = {
      {"cg.view", "", 0, 0, 640, 480, 0, TypeView},
      {"mess.view", "", 0, 352, 640, 127, 1, TypeView},
      {"mess.Drama", "", 0, 372, 640, 107, 1, TypeView},
      {"select01.view", "cg.view", 40, 55, 565, 122, 1, TypeView},
      {"select21.view", "cg.view", 40, 111, 565, 122, 1, TypeView},
      {"select02.view", "cg.view", 40, 177, 565, 111, 1, TypeView},
      {"select22.view", "cg.view", 40, 233, 565, 111, 1, TypeView},
      {"select03.view", "cg.view", 40, 288, 565, 111, 1, TypeView},
      {"comm01.view", "", 542, 382, 96, 12, 1, TypeView},
      {"comm02.view", "", 542, 414, 96, 12, 1, TypeView},
      {"comm03.view", "", 544, 454, 92, 12, 1, TypeView},
      {"system.cut.win", "", 0, 0, 62, 122, 1, TypeFrameless},
      {"HelpWindow", "", 4, 4, 320, 376, 1, TypeFrame},
  };
  EXPECT_EQ(host.created.size(), std::size(told));
  for (const Told& view : told) {
    SCOPED_TRACE(view.name);
    const SeenRequest* request = windowNamed(view.name);
    ASSERT_NE(request, nullptr);
    EXPECT_EQ(request->typeCode, view.code);
    EXPECT_EQ(request->parentName, view.parent);
    EXPECT_EQ(request->rectangle.left, view.x);
    EXPECT_EQ(request->rectangle.top, view.y);
    EXPECT_EQ(request->rectangle.width(), view.width);
    EXPECT_EQ(request->rectangle.height(), view.height);
    EXPECT_EQ(request->visible, view.hidden ? 0 : 1);
  }
  EXPECT_EQ(windowNamed("HelpWindow")->caption, "Vorlane Help");
}

TEST_F(Start, MapsKnowTheirRegions) {
  start();
  struct Told {
    const char* name;
    int32_t width, height, x, y, region;
  };
  const Told told[] = {
      {"clmall", 640, 480, 0, 0, 10},       {"clmall", 640, 480, 639, 479, 10},
      {"clmmess", 640, 127, 10, 10, 10},    {"clmmess", 640, 127, 600, 20, 4},
      {"clmmess", 640, 127, 600, 50, 7},    {"clmmess", 640, 127, 600, 80, 6},
      {"clmdrama", 640, 107, 639, 106, 10}, {"clmsel01", 565, 122, 10, 10, 1},
      {"clmsel01", 565, 122, 530, 20, 4},   {"clmsel01", 565, 122, 530, 60, 7},
      {"clmsel01", 565, 122, 515, 1, 1},    {"clmsel02", 565, 111, 564, 110, 2},
      {"clmsel03", 565, 111, 0, 0, 3},
  };
  for (const Told& map : told) {
    SCOPED_TRACE(map.name);
    auto* found = static_cast<QVClickMap*>(manager->FindNative(map.name, TypeClickMap));
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->width(), map.width);
    EXPECT_EQ(found->height(), map.height);
    EXPECT_EQ(found->pixel(map.x, map.y), map.region) << map.x << ", " << map.y;
    EXPECT_NE(found->hoverEnabled(), 0);
  }
  const auto parentOf = [&](const char* name) {
    return static_cast<QVClickMap*>(manager->FindNative(name, TypeClickMap))->parent();
  };
  for (const char* below : {"clmmess", "clmdrama", "systemButton.click"})
    EXPECT_EQ(parentOf(below), manager->FindNative("clmall", TypeClickMap)) << below;
  for (const char* below : {"clmsel02", "clmsel03"})
    EXPECT_EQ(parentOf(below), manager->FindNative("clmsel01", TypeClickMap)) << below;
}

TEST_F(Start, SurfacesHaveTheirSizes) {
  start();
  const std::pair<const char*, std::pair<int, int>> sizes[] = {
      {"cg.surf", {640, 480}},     {"mess.surf", {640, 127}},   {"messTemp.surf", {640, 127}},
      {"mfrm.surf", {640, 127}},   {"mfrmR.surf", {640, 127}},  {"dfrm.surf", {104, 74}},
      {"sel01.surf", {565, 122}},  {"sel03R.surf", {565, 111}}, {"sysCut.surf", {62, 122}},
      {"sysCutPn.surf", {672, 32}}};
  for (const auto& [name, size] : sizes) {
    const auto* surface = static_cast<QVVSurface*>(manager->FindNative(name, TypeSurface));
    ASSERT_NE(surface, nullptr) << name;
    EXPECT_EQ(surface->width(), size.first) << name;
    EXPECT_EQ(surface->height(), size.second) << name;
  }
}

TEST_F(Start, MouthsMoveByTheirSequences) {
  start();
  constexpr const char* Motion =
      "A5[.]C5[.]B5[.]A5[.]B5[.]C5[.]B5[.]A5[.]C5[.]B5[.]C5[.]A5[.]C5[.]A5[.]B5[.]C5[.]B5[.]A5[.]"
      "B5[.]A5[.]B5[.]A5[.]C5[.]A5[.]C5[.]B5[.]C5[.]A5[.]B5[.]A5[.]C5[.]A5[.]C5[.]B5[.]C5[.]B5[.]";
  for (const char* name : {"CG_SEQU01_MOUTH", "CG_SEQU02_MOUTH", "CG_SEQU03_MOUTH",
                           "CG_SEQU04_MOUTH", "CG_SEQU05_MOUTH"}) {
    SCOPED_TRACE(name);
    auto* mouth = static_cast<AnimationSequence*>(manager->FindNative(name, TypeAnimationSequence));
    ASSERT_NE(mouth, nullptr);
    AnimationSequence told;
    told.setText(Motion, false);
    // Twice from its beginning to its end: it goes round.
    constexpr int Ticks = 36 * 6 * 2;
    for (int tick = 0; tick < Ticks; ++tick)
      ASSERT_EQ(mouth->step(false), told.step(false)) << tick;
  }
}

TEST_F(Start, LeavesTheRegistersOfABeginning) {
  start();
  EXPECT_EQ(manager->registers().count(), 2500);
  EXPECT_EQ(manager->strings().count(), 256);
  EXPECT_EQ(manager->systemRegisters().count(), 2048);
  EXPECT_EQ(Reg(MessageHiddenRegister), 1);
  EXPECT_EQ(Reg(ResumePendingRegister), 0);
  EXPECT_EQ(Reg(BgmCurrentRegister), 0);
  EXPECT_EQ(Reg(BgmLastRegister), 0);
  EXPECT_EQ(text(HeroFamilyName), "family");
  EXPECT_EQ(text(HeroGivenName), "given");
  for (int32_t line = 0; line < HistoryLength; ++line)
    EXPECT_EQ(text(HistoryNames + line) + text(HistoryMessages + line), "");
  EXPECT_EQ(manager->sceneName().view(), "sc_start");
  EXPECT_NE(frameButtons(), nullptr);
}

TEST_F(Start, ABareStoryNeedsNoFile) {
  std::filesystem::remove_all(platform.game() / "dat");
  start(true);
  EXPECT_EQ(order(), (std::vector<std::string>{"cg.view", "cg.surf", "clmall"}));
  EXPECT_TRUE(platform.dialogs.shown.empty());
}

// --- The first start ---

/// Tells what changed in the system file each time it was written.
class SystemFileWatch : public TraceSink {
 public:
  explicit SystemFileWatch(const TestPlatform& platform) : platform_(platform), all_(services()) {
    all_.trace = this;
    scope_.emplace(all_);
  }
  void line(std::string_view what, std::string_view) override {
    constexpr size_t Head = 14;
    if (what != "file") return;
    const std::string bytes = platform_.readFile(platform_.player() / "Test.system.dat");
    std::vector<std::pair<int, int>> changed;
    for (size_t at = Head; at + 4 <= bytes.size(); at += 4) {
      const auto value = static_cast<unsigned char>(bytes[at]);
      const auto before = static_cast<unsigned char>(at < last_.size() ? last_[at] : 0);
      if (value != before) changed.push_back({static_cast<int>((at - Head) / 4), value});
    }
    last_ = bytes;
    writes.push_back(changed);
  }
  std::vector<std::vector<std::pair<int, int>>> writes;

 private:
  const TestPlatform& platform_;
  Services all_;
  std::optional<ServicesScope> scope_;
  std::string last_;
};

TEST_F(Start, AFirstStartWritesItsSwitchesOneByOneInTheirOrder) {
  SystemFileWatch watch(platform);
  start();
  std::vector<std::vector<std::pair<int, int>>> expected;
  for (const int number : {252, 42, 250, 49, 51, 52, 53, 54, 55, 56, 57, 58, 59, 31, 43})
    expected.push_back({{number, 1}});
  expected.push_back({{64, 5}});
  EXPECT_EQ(watch.writes, expected);
  // The places of the boxes go to the file with the next setting.
  SetSysReg(900, 1, 1);
  const std::vector<std::pair<int, int>> places = {{200, 96},  {201, 124}, {202, 96},  {203, 124},
                                                   {204, 122}, {205, 172}, {206, 167}, {207, 191},
                                                   {208, 167}, {209, 191}, {210, 167}, {211, 191},
                                                   {212, 16},  {213, 16},  {900, 1}};
  EXPECT_EQ(watch.writes.back(), places);
}

TEST_F(Start, ASecondStartSetsNothing) {
  start();
  SetSysReg(VoiceEnabled, 0, 1);
  SetSysReg(WindowColour, 3, 1);
  SysReg(CutWindowX) = 77;
  SystemFileWatch watch(platform);
  setFirstStartDefaults();
  EXPECT_TRUE(watch.writes.empty());
  EXPECT_EQ(SysReg(VoiceEnabled), 0);
  EXPECT_EQ(SysReg(WindowColour), 3);
  EXPECT_EQ(SysReg(CutWindowX), 77);
}

// --- The file of names ---

class NameFile : public Start {
 protected:
  NameFile() { start(true); }
  std::filesystem::path file() const { return platform.player() / "UserName.dat"; }
  static std::string word(uint32_t value) {
    return std::string(reinterpret_cast<const char*>(&value), sizeof value);
  }
  static std::string field(const std::string& name) {
    return word(static_cast<uint32_t>(name.size() + 1)) + name + '\0';
  }
  static std::string record(uint32_t count, const std::vector<std::string>& names) {
    std::string bytes = field("QVStrReg") + word(count);
    for (const std::string& name : names)
      bytes += field(name);
    return bytes;
  }
  /// The names after a file of these bytes was read over others.
  std::pair<std::string, std::string> read(const std::string& bytes) {
    platform.writeFile(file(), bytes);
    return readAgain();
  }
  std::pair<std::string, std::string> readAgain() {
    for (const int32_t number : {HeroFamilyName, HeroGivenName})
      manager->StrReg(number).create(QVString::DefaultGrain, "stale");
    UserNameFile("LOAD");
    return {text(HeroFamilyName), text(HeroGivenName)};
  }
  using Pair = std::pair<std::string, std::string>;
};

TEST_F(NameFile, HoldsTwoNamesAndNothingElse) {
  manager->StrReg(HeroFamilyName).create(QVString::DefaultGrain, sjis("佐伯").c_str());
  manager->StrReg(HeroGivenName).create(QVString::DefaultGrain, "");
  UserNameFile("SAVE");
  EXPECT_EQ(platform.readFile(file()), record(2, {sjis("佐伯"), ""}));
  EXPECT_EQ(readAgain(), Pair(sjis("佐伯"), ""));
}

TEST_F(NameFile, OfMissingAndDamagedFilesBothNamesAreEmpty) {
  EXPECT_EQ(readAgain(), Pair("", ""));
  const std::string good = record(2, {"one", "two"});
  for (size_t length = 0; length < good.size(); ++length)
    EXPECT_EQ(read(good.substr(0, length)), Pair("", "")) << length << " bytes";
  EXPECT_EQ(read("garbage that is no record at all"), Pair("", ""));
  EXPECT_EQ(read(field("QVReg") + word(2) + word(1) + word(2)), Pair("", ""));
  EXPECT_EQ(read(field("QVStrReg") + word(0x7FFFFFFF)), Pair("", ""));
  EXPECT_EQ(read(field("QVStrReg") + word(0xFFFFFFFF) + field("a")), Pair("", ""));
  EXPECT_EQ(read(field("QVStrReg") + word(2) + word(0xFFFFFFFF) + "abc"), Pair("", ""));
  EXPECT_TRUE(platform.dialogs.shown.empty());
}

TEST_F(NameFile, OfLongerAndShorterRecordsTheFirstTwoCount) {
  EXPECT_EQ(read(record(2, {"one", "two"})), Pair("one", "two"));
  EXPECT_EQ(read(record(2, {"one", "two"}) + "more behind it"), Pair("one", "two"));
  EXPECT_EQ(read(record(5, {"one", "two", "3", "4", "5"})), Pair("one", "two"));
  EXPECT_EQ(read(record(1, {"one"})), Pair("one", ""));
  EXPECT_TRUE(platform.dialogs.shown.empty());
}

TEST_F(NameFile, OtherWordsDoNothing) {
  EXPECT_EQ(read(record(2, {"one", "two"})), Pair("one", "two"));
  manager->StrReg(HeroFamilyName).create(QVString::DefaultGrain, "mine");
  for (const char* other : {"load", "save", "", "LOADS"})
    UserNameFile(other);
  UserNameFile(nullptr);
  EXPECT_EQ(text(HeroFamilyName), "mine");
  EXPECT_EQ(platform.readFile(file()), record(2, {"one", "two"}));
}

TEST_F(NameFile, AFileOfTheSeventhOfJulyNinetySevenIsBlank) {
  platform.writeFile(file(), record(2, {"one", "two"}));
  // Noon of that day in every zone of time that the kernel may tell.
  constexpr int64_t Noon = 868276800;
  const auto moment =
      std::chrono::file_clock::from_sys(std::chrono::sys_seconds(std::chrono::seconds(Noon)));
  std::filesystem::last_write_time(file(), moment);
  EXPECT_FALSE(SaveIsUsed("UserName.dat"));
  EXPECT_EQ(readAgain(), Pair("", ""));
  std::filesystem::last_write_time(file(), moment + std::chrono::hours(48));
  EXPECT_TRUE(SaveIsUsed("UserName.dat"));
  EXPECT_EQ(readAgain(), Pair("one", "two"));
  EXPECT_FALSE(SaveIsUsed("nothing.dat"));
  EXPECT_FALSE(SaveIsUsed(nullptr));
}

}  // namespace
}  // namespace qv::testing
