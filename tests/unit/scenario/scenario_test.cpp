#include "scenario/scenario.h"

#include <gtest/gtest.h>

#include "foundation/file.h"
#include "foundation/path_name.h"
#include "foundation/registry_key.h"
#include "platform/settings/settings_store.h"
#include "platform/text/external_font.h"
#include "platform/text/shift_jis.h"
#include "scenario/register_numbers.h"
#include "tests/unit/scenario/fake_host.h"

namespace qv::testing {
namespace {

template <int Code>
class TestObject : public LogicalObject {
 public:
  static inline int alive = 0;
  static inline int stops = 0;
  static inline ObjectArguments lastArguments;
  static inline std::string lastName;

  TestObject() { ++alive; }
  ~TestObject() override { --alive; }
  int typeCode() const override { return Code; }
  void* native() override { return &member; }
  void* sequence() override { return &proper; }
  void create(QVScenario&, const ObjectArguments& arguments) override {
    lastArguments = arguments;
    lastName = name().text();
    if (failing) throw CannotOpenException("x");
  }
  void stopAnimation(int32_t flag) override { stops += flag; }
  static inline bool failing = false;
  int member = 0, proper = 0;
};

template <int Code>
constexpr ObjectKind testKind(NativeForm native = NativeForm::Member, const char* kindName = "") {
  return {Code, "QVScenario - create:test", kindName, native, &allocateObject<TestObject<Code>>};
}
constexpr ObjectKind TestKinds[] = {
    testKind<TypeSurface>(NativeForm::Member, "サーフェース"),
    testKind<TypeCursor>(NativeForm::Member, "カーソル"),
    testKind<TypeAnimatedControl>(NativeForm::Member, "アニメーションコントロール"),
    testKind<TypePrintArea>(NativeForm::Member, "プリントエリア"),
    testKind<TypeHitret>(),
    testKind<TypeClickMap>(),
    testKind<TypeAnimationSurface>(),
    testKind<TypeAnimationSequence>(NativeForm::Sequence),
    testKind<TypeAnimationArea>(),
    testKind<TypeFrameFilm>(NativeForm::None),
};

std::string word(uint32_t value) {
  return std::string(reinterpret_cast<const char*>(&value), sizeof value);
}
std::string text(std::string_view bytes) {
  return word(static_cast<uint32_t>(bytes.size() + 1)) + std::string(bytes) + '\0';
}

class Manager : public ::testing::Test {
 protected:
  void start() { manager.Start(&host, "Test", 8, 4, 16); }
  std::string systemFile() { return platform.readFile(platform.player() / "Test.system.dat"); }

  TestPlatform platform;
  FakeHost host;
  ObjectKindsScope kinds{TestKinds};
  QVScenario manager;
};
class ManagerObjects : public Manager {
 protected:
  ManagerObjects() { start(); }
};
class ManagerOpen : public Manager {};
class ManagerSystemFile : public Manager {};
class ManagerSaves : public Manager {};
class ManagerFont : public Manager {
 protected:
  std::string fontSetting() {
    RegistryKey key;
    key.open(CurrentUser, "EUDC\\932", KeyLasting, "");
    return key.queryString("SystemDefaultEUDCFont").text();
  }
  void setFontSetting(const char* value) {
    RegistryKey key;
    key.open(CurrentUser, "EUDC\\932", KeyLasting, "");
    key.setString("SystemDefaultEUDCFont", QVString(value));
  }
};

// --- Open, scene names, random ---

TEST_F(ManagerOpen, MakesTheRegistersAndTellsTheHost) {
  EXPECT_EQ(manager.host(), nullptr);
  start();
  EXPECT_EQ(manager.host(), &host);
  EXPECT_EQ(host.manager, &manager);
  manager.Reg(7) = 3;
  manager.StrReg(3).append("x");
  manager.SysReg(15) = 1;
  EXPECT_TRUE(platform.dialogs.shown.empty());
  manager.Reg(8);
  manager.StrReg(4);
  manager.SysReg(16);
  EXPECT_EQ(platform.dialogs.shown.size(), 3u);
}

TEST_F(ManagerOpen, WithoutAHostLeavesObjectsAlone) {
  manager.Open("Test", 8, 4, 16);
  manager.CreateObject("a", TypeSurface);
  EXPECT_EQ(manager.FindObject("a"), nullptr);
  manager.DestroyObject("a");
  EXPECT_EQ(manager.WaitInput(nullptr, 0), 0);
  manager.WaitSound(1);
  manager.SetSceneName("sc000000");
  EXPECT_TRUE(manager.sceneName().equals("sc000000"));
  QVFile closed;
  EXPECT_FALSE(manager.RestoreState(closed));
}

TEST_F(ManagerOpen, SceneNameIsStoredTracedAndTold) {
  struct Lines : TraceSink {
    void line(std::string_view what, std::string_view detail) override {
      all.push_back(std::string(what) + " " + std::string(detail));
    }
    std::vector<std::string> all;
  } lines;
  Services traced = services();
  traced.trace = &lines;
  const ServicesScope scope(traced);
  start();
  FakeNative notify;
  host.notifyWindow = &notify;
  manager.SetSceneName("sc\x90\x46");
  manager.SetSceneName(nullptr);
  EXPECT_TRUE(manager.sceneName().equals("sc\x90\x46"));
  EXPECT_EQ(lines.all, std::vector<std::string>{"scene sc色"});
  EXPECT_EQ(notify.sent.size(), 1u);
}

TEST_F(ManagerOpen, RandomWithLimitOneGivesBothResults) {
  bool seen[2] = {};
  for (int i = 0; i < 200; ++i)
    seen[manager.Random(1)] = true;
  EXPECT_TRUE(seen[0] && seen[1]);
}

TEST(ManagerSeed, OfTheSimulationDecidesTheDraws) {
  const auto draws = [](uint64_t seed) {
    TestPlatform platform(false, makeSimulatedKernel({.seed = seed}));
    QVScenario manager;
    std::vector<uint32_t> all;
    for (int i = 0; i < 8; ++i)
      all.push_back(manager.Random(0xFFFFFFFF));
    return all;
  };
  EXPECT_EQ(draws(3), draws(3));
  EXPECT_NE(draws(3), draws(4));
}

// --- The system file ---

TEST_F(ManagerSystemFile, IsAbsentAtTheFirstRunWithoutAWord) {
  start();
  EXPECT_EQ(manager.SysReg(5), 0);
  EXPECT_TRUE(platform.dialogs.shown.empty());
  EXPECT_FALSE(std::filesystem::exists(platform.player() / "Test.system.dat"));
}

TEST_F(ManagerSystemFile, IsWrittenAtOnceWithWriteThroughAlone) {
  start();
  manager.SysReg(1) = 11;
  int32_t& entry = manager.SetSysReg(2, 22, 0);
  EXPECT_EQ(&entry, &manager.SysReg(2));
  EXPECT_FALSE(std::filesystem::exists(platform.player() / "Test.system.dat"));
  EXPECT_EQ(manager.SetSysReg(3, 33, 1), 33);
  std::string expected = text("QVReg") + word(16);
  for (const uint32_t value : {0u, 11u, 22u, 33u})
    expected += word(value);
  expected += std::string(12 * 4, '\0');
  EXPECT_EQ(systemFile(), expected);
}

TEST_F(ManagerSystemFile, OfTheGamesSizeHas8206Bytes) {
  manager.Start(&host, "Test", RegisterCount, StringRegisterCount, SystemRegisterCount);
  manager.SetSysReg(SkipMode, 1, 1);
  EXPECT_EQ(systemFile().size(), 8206u);
}

TEST_F(ManagerSystemFile, IsReadBackAtTheNextStart) {
  start();
  manager.SetSysReg(9, -5, 1);
  QVScenario next;
  next.Open("Test", 8, 4, 16);
  EXPECT_EQ(next.SysReg(9), -5);
}

TEST_F(ManagerSystemFile, WithAnotherCountReplacesTheTable) {
  platform.writeFile(platform.player() / "Test.system.dat",
                     text("QVReg") + word(2) + word(7) + word(8));
  start();
  EXPECT_EQ(manager.SysReg(1), 8);
  manager.SysReg(2) = 1;
  EXPECT_EQ(platform.dialogs.shown.size(), 1u);
  manager.SetSysReg(0, 5, 1);
  EXPECT_EQ(systemFile(), text("QVReg") + word(2) + word(5) + word(8));
}

TEST_F(ManagerSystemFile, ThatIsForeignLeavesTheFreshTable) {
  platform.writeFile(platform.player() / "Test.system.dat", "no registers at all");
  start();
  EXPECT_EQ(manager.SysReg(15), 0);
  EXPECT_TRUE(platform.dialogs.shown.empty());
}

TEST_F(ManagerSystemFile, WhoseNameIsAFolderOffersToRetryAndThenGivesUp) {
  std::filesystem::create_directories(platform.player() / "Test.system.dat");
  EXPECT_THROW(start(), CannotOpenException);
  ASSERT_EQ(platform.dialogs.shown.size(), 1u);
  EXPECT_EQ(platform.dialogs.shown[0].flags, BoxRetryCancel);
}

TEST_F(ManagerSystemFile, StoreOnABadNumberReportsOnceAndWritesEntryZero) {
  start();
  EXPECT_EQ(manager.SetSysReg(99, 4, 1), 4);
  EXPECT_EQ(manager.SysReg(0), 4);
  EXPECT_EQ(platform.dialogs.shown.size(), 1u);
}

// --- Saves ---

SceneFunction sceneOne() {
  return {};
}
SceneFunction sceneTwo() {
  return {};
}
constexpr SceneEntry Scenes[] = {{"END", sceneTwo}, {"sc000000", sceneOne}, {"sc_menu", sceneTwo}};
constexpr GameModule Module = {.abi = ModuleAbi,
                               .applicationName = "Test",
                               .start = nullptr,
                               .end = nullptr,
                               .exceptionEntry = nullptr,
                               .createManager = nullptr,
                               .destroyManager = nullptr,
                               .scenes = Scenes,
                               .sceneCount = std::size(Scenes)};

void saveTo(QVScenario& manager, const char* name) {
  QVFile file;
  file.open(QVPathName(name), CreateAlways, GenericRead | GenericWrite, ShareRead, AttributeNormal);
  manager.SaveState(file);
  file.close();
}
SceneFunction restoreFrom(QVScenario& manager, const char* name, void (*callback)() = nullptr,
                          int32_t releaseAll = 0, int32_t restartMusic = 0) {
  QVFile file;
  file.open(QVPathName(name), OpenExisting, GenericRead, ShareRead, AttributeNormal);
  const SceneFunction scene = manager.RestoreState(file, callback, releaseAll, restartMusic);
  file.close();
  return scene;
}

TEST_F(ManagerSaves, AreRegistersStringsSceneNameAndSong) {
  manager.Start(&host, "Test", 2, 2, 1);
  manager.Reg(1) = 7;
  manager.StrReg(0).append("ab");
  manager.SetSceneName("sc000000");
  saveTo(manager, "save0.dat");
  EXPECT_EQ(platform.readFile(platform.player() / "save0.dat"),
            text("QVReg") + word(2) + word(0) + word(7) + text("QVStrReg") + word(2) + text("ab") +
                text("") + text("sc000000") + word(0) + word(0) + text(""));
  EXPECT_EQ(systemFile(), text("QVReg") + word(1) + word(0));
}

TEST_F(ManagerSaves, ComeBackWithTheirScene) {
  host.module = &Module;
  start();
  manager.Reg(7) = 4;
  manager.StrReg(1).append("name");
  manager.SetSceneName("sc000000");
  saveTo(manager, "save0.dat");
  manager.Reg(7) = 9;
  manager.StrReg(1).clear();
  manager.SetSceneName("sc_menu");
  const SceneFunction scene = restoreFrom(manager, "save0.dat");
  EXPECT_EQ(scene, SceneFunction(sceneOne));
  EXPECT_EQ(manager.Reg(7), 4);
  EXPECT_TRUE(manager.StrReg(1).equals("name"));
  EXPECT_TRUE(manager.sceneName().equals("sc000000"));
}

TEST_F(ManagerSaves, OfAnUnknownSceneGiveNone) {
  host.module = &Module;
  start();
  manager.SetSceneName("sc999999");
  saveTo(manager, "save0.dat");
  EXPECT_FALSE(restoreFrom(manager, "save0.dat"));
  EXPECT_EQ(host.lookedUp, "sc999999");
}

TEST_F(ManagerSaves, ThatNameAnEntryPointGiveNoScene) {
  host.module = &Module;
  start();
  manager.SetSceneName("END");
  saveTo(manager, "save0.dat");
  EXPECT_FALSE(restoreFrom(manager, "save0.dat"));
}

TEST_F(ManagerSaves, WithAClosedFileOnlyLookTheSceneUp) {
  host.module = &Module;
  start();
  manager.Reg(1) = 5;
  manager.SetSceneName("sc000000");
  QVFile closed;
  manager.SaveState(closed);
  EXPECT_EQ(manager.RestoreState(closed), SceneFunction(sceneOne));
  EXPECT_EQ(manager.Reg(1), 5);
}

int callbacks = 0;

TEST_F(ManagerSaves, StopAnimationsAndKeepObjectsUnlessToldOtherwise) {
  start();
  saveTo(manager, "save0.dat");
  host.addWindow("frame1", TypeFrame);
  host.addWindow("frame2", TypeFrame);
  host.addWindow("view", TypeView);
  host.addWindow("other", TypeReleasedWindow);
  manager.CreateObject("area", TypeAnimationArea);
  manager.CreateObject("surf", TypeSurface);
  TestObject<TypeAnimationArea>::stops = 0;
  TestObject<TypeSurface>::stops = 0;
  callbacks = 0;

  restoreFrom(manager, "save0.dat", [] { ++callbacks; });
  EXPECT_EQ(TestObject<TypeAnimationArea>::stops, 1);
  EXPECT_EQ(TestObject<TypeSurface>::stops, 0);
  EXPECT_NE(manager.FindObject("surf"), nullptr);
  EXPECT_EQ(host.windowCount(), 4u);
  EXPECT_EQ(callbacks, 1);

  restoreFrom(manager, "save0.dat", nullptr, 1);
  EXPECT_EQ(manager.FindObject("surf"), nullptr);
  EXPECT_EQ(host.destroyed, (std::vector<std::string>{"frame1", "frame2", "view"}));
}

TEST_F(ManagerSaves, CutShortAnywhereNeverHurt) {
  manager.Start(&host, "Test", 2, 2, 1);
  manager.SetSceneName("sc000000");
  manager.StrReg(1).append("xyz");
  saveTo(manager, "save0.dat");
  const std::string whole = platform.readFile(platform.player() / "save0.dat");
  for (size_t length = 0; length < whole.size(); ++length) {
    platform.writeFile(platform.player() / "save0.dat", whole.substr(0, length));
    restoreFrom(manager, "save0.dat", nullptr, 0, 1);
    manager.Reg(1) = 3;
    EXPECT_TRUE(manager.StrReg(1).equals("xyz"));
    EXPECT_EQ(manager.midi().state(), QVMidi::Stopped) << length;
  }
  EXPECT_TRUE(platform.dialogs.shown.empty());
}

TEST_F(ManagerSaves, WithAnyOneBitFlippedNeverHurt) {
  host.module = &Module;
  manager.Start(&host, "Test", 2, 2, 1);
  manager.SetSceneName("sc000000");
  saveTo(manager, "save0.dat");
  const std::string whole = platform.readFile(platform.player() / "save0.dat");
  for (size_t bit = 0; bit < whole.size() * 8; ++bit) {
    std::string bytes = whole;
    bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ (1 << bit % 8));
    platform.writeFile(platform.player() / "save0.dat", bytes);
    const SceneFunction scene = restoreFrom(manager, "save0.dat");
    EXPECT_TRUE(!scene || scene == SceneFunction(sceneOne)) << bit;
    EXPECT_LE(manager.sceneName().length(), static_cast<int32_t>(whole.size()));
  }
  EXPECT_TRUE(platform.dialogs.shown.empty());
}

// --- Release ---

TEST_F(ManagerObjects, ReleaseDestroysFramesThenKind14ThenViewsAndAllObjects) {
  host.addWindow("v", TypeView);
  host.addWindow("w", TypeReleasedWindow);
  host.addWindow("f1", TypeFrame);
  host.addWindow("f2", TypeFrame);
  host.addWindow("plain", TypePlainWindow);
  manager.CreateObject("area", TypeAnimationArea);
  TestObject<TypeAnimationArea>::stops = 0;
  EXPECT_EQ(manager.Release(), 0);
  EXPECT_EQ(host.destroyed, (std::vector<std::string>{"f1", "f2", "w", "v"}));
  EXPECT_EQ(host.windowCount(), 1u);
  EXPECT_EQ(TestObject<TypeAnimationArea>::stops, 1);
  EXPECT_EQ(TestObject<TypeAnimationArea>::alive, 0);
}

TEST_F(ManagerObjects, ReleaseFinishesAfterTheAbort) {
  host.addWindow("v", TypeView);
  host.abortEvent.set();
  host.pauseFlag = 1;
  EXPECT_EQ(manager.Release(), 0);
  EXPECT_EQ(host.windowCount(), 0u);
}

TEST_F(ManagerObjects, ReleaseEndsWhenTheUiThreadHasEnded) {
  host.addWindow("v", TypeView);
  host.endUi();
  EXPECT_EQ(manager.Release(), 0);
  EXPECT_EQ(host.windowCount(), 1u);
}

TEST(ManagerEnd, ReleasesWhatIsLeft) {
  TestPlatform platform;
  FakeHost host;
  const ObjectKindsScope kinds{TestKinds};
  {
    QVScenario manager;
    manager.Start(&host, "Test", 1, 1, 1);
    manager.CreateObject("s", TypeSurface);
    manager.CreateObject("v", TypeView);
  }
  EXPECT_EQ(TestObject<TypeSurface>::alive, 0);
  EXPECT_EQ(host.destroyed, std::vector<std::string>{"v"});
}

// --- CreateObject ---

TEST_F(ManagerObjects, CreateWithATakenNameLeavesTheOldObjectSilently) {
  manager.CreateObject("a", TypeSurface, {1, 2});
  LogicalObject* old = manager.FindObject("a");
  ASSERT_NE(old, nullptr);
  manager.CreateObject("a", TypeSurface, {3, 4});
  manager.CreateObject("a", TypeCursor);
  manager.CreateObject("a", TypeView);
  EXPECT_EQ(manager.FindObject("a"), old);
  EXPECT_EQ(TestObject<TypeSurface>::lastArguments.a1.number(), 1);
  EXPECT_TRUE(host.created.empty());
  host.addWindow("w", TypeView);
  manager.CreateObject("w", TypeSurface);
  EXPECT_EQ(manager.FindObject("w"), nullptr);
  EXPECT_TRUE(platform.dialogs.shown.empty());
}

TEST_F(ManagerObjects, CreateWithACodeOfNoKindDoesNothing) {
  for (const int code : {-1, 0, 4, 7, 15, 36, 38, 40, 51, 1000})
    manager.CreateObject("a", code);
  EXPECT_EQ(manager.FindObject("a"), nullptr);
  EXPECT_EQ(host.windowCount(), 0u);
}

TEST_F(ManagerObjects, CreateOfAKindThatIsNotBuiltYetDoesNothing) {
  constexpr ObjectKind Missing[] = {
      {TypeSurface, "QVScenario - create:surface", "", NativeForm::Member, nullptr}};
  const ObjectKindsScope scope(Missing);
  manager.CreateObject("a", TypeSurface);
  EXPECT_EQ(manager.FindObject("a"), nullptr);
}

TEST_F(ManagerObjects, CreateGivesNameAndArgumentsToTheObject) {
  manager.CreateObject("cg.surf", TypeSurface, {"dat\\a.mcg", 0, -2, nullptr});
  EXPECT_EQ(TestObject<TypeSurface>::lastName, "cg.surf");
  const ObjectArguments& arguments = TestObject<TypeSurface>::lastArguments;
  EXPECT_STREQ(arguments.a1.text(), "dat\\a.mcg");
  EXPECT_FALSE(arguments.a2);
  EXPECT_EQ(arguments.a3.number(), -2);
  EXPECT_EQ(arguments.a4.text(), nullptr);
  EXPECT_EQ(arguments.a8.word(), 0);
}

TEST_F(ManagerObjects, CreateThatFailsLeavesNothingBehind) {
  TestObject<TypeSurface>::failing = true;
  EXPECT_THROW(manager.CreateObject("a", TypeSurface), CannotOpenException);
  TestObject<TypeSurface>::failing = false;
  EXPECT_EQ(manager.FindObject("a"), nullptr);
  EXPECT_EQ(TestObject<TypeSurface>::alive, 0);
}

TEST_F(ManagerObjects, CreateWithoutMemoryNamesTheOperation) {
  for (int code = TypeSurface; code <= TypeFrameFilm; ++code) {
    ObjectKind row;
    {
      const ObjectKindsScope productionTable({});
      ASSERT_NE(findObjectKind(code), nullptr);
      row = *findObjectKind(code);
    }
    row.allocate = +[]() -> LogicalObject* { return nullptr; };
    const ObjectKindsScope scope({&row, 1});
    constexpr const char* Titles[] = {
        "surface",  "cursor",           "animatedControl",   "printArea",     "hitret",
        "clickmap", "animationSurface", "animationSequence", "animationArea", "drawAnimation"};
    try {
      manager.CreateObject("a", code);
      ADD_FAILURE() << code;
    } catch (const NotEnoughMemoryException& failure) {
      EXPECT_EQ(failure.title(), std::string("QVScenario - create:") + Titles[code - TypeSurface]);
      EXPECT_EQ(failure.message(), sjis("メモリが足りません！"));
    }
  }
}

TEST_F(ManagerObjects, CreateOfAViewAsksTheHost) {
  const Rectangle rectangle{1, 2, 3, 4};
  manager.CreateObject("a.view", TypeView, {"cg.view", &rectangle, "caption", 77, 0});
  manager.CreateObject("b.view", TypeSecondView, {nullptr, &rectangle, 'x', 0, 1});
  ASSERT_EQ(host.created.size(), 2u);
  const SeenRequest& a = host.created[0];
  EXPECT_EQ(a.typeCode, TypeView);
  EXPECT_EQ(a.parentName, "cg.view");
  EXPECT_EQ(a.rectangle, rectangle);
  EXPECT_EQ(a.caption, "caption");
  EXPECT_EQ(a.captionCharacter, 0);
  EXPECT_EQ(a.extraWord, 77);
  EXPECT_EQ(a.visible, 1);
  EXPECT_EQ(a.frameFlag, 0);
  EXPECT_EQ(a.name, "a.view");
  const SeenRequest& b = host.created[1];
  EXPECT_EQ(b.parentName, "");
  EXPECT_EQ(b.caption, "");
  EXPECT_EQ(b.captionCharacter, 'x');
  EXPECT_EQ(b.visible, 0);
}

TEST_F(ManagerObjects, CreateOfFramesCarriesTheFrameFlag) {
  const Rectangle rectangle{0, 0, 9, 9};
  manager.CreateObject("f", TypeFrame, {nullptr, &rectangle, "t"});
  manager.CreateObject("g", TypeFrameless, {nullptr, &rectangle, "t"});
  ASSERT_EQ(host.created.size(), 2u);
  EXPECT_EQ(host.created[0].frameFlag, 1);
  EXPECT_EQ(host.created[1].frameFlag, 1);
}

TEST_F(ManagerObjects, CreateOfAPlainWindowTakesTheParentAlone) {
  const Rectangle rectangle{1, 2, 3, 4};
  manager.CreateObject("p", TypePlainWindow, {"par", &rectangle, "c", 5, 1});
  manager.CreateObject("k", TypeAnimationControl, {"par", &rectangle, "c", 5, 1});
  ASSERT_EQ(host.created.size(), 2u);
  EXPECT_EQ(host.created[0].parentName, "par");
  EXPECT_EQ(host.created[0].rectangle, Rectangle{});
  EXPECT_EQ(host.created[0].caption, "");
  EXPECT_EQ(host.created[0].extraWord, 0);
  EXPECT_EQ(host.created[0].visible, 1);
  EXPECT_EQ(host.created[1].rectangle, rectangle);
  EXPECT_EQ(host.created[1].extraWord, 5);
  EXPECT_EQ(host.created[1].visible, 1);
}

TEST_F(ManagerObjects, NullNamesDoNothing) {
  manager.CreateObject(nullptr, TypeSurface);
  manager.CreateClickMap(nullptr);
  manager.DestroyObject(nullptr);
  manager.ConnectObjects(nullptr, nullptr);
  manager.DisconnectObjects("a", nullptr);
  EXPECT_EQ(manager.FindObject(nullptr), nullptr);
  EXPECT_EQ(manager.FindNative(nullptr), nullptr);
  EXPECT_EQ(manager.FindWindow(nullptr), nullptr);
  EXPECT_EQ(manager.FindView(nullptr), nullptr);
}

// --- Click maps ---

TEST_F(ManagerObjects, ClickMapOverAnotherClickMapReplacesIt) {
  manager.CreateClickMap("clm", {1});
  LogicalObject* first = manager.FindObject("clm", TypeClickMap);
  ASSERT_NE(first, nullptr);
  static_cast<TestObject<TypeClickMap>*>(first)->member = 5;
  manager.CreateClickMap("clm", {2});
  auto* second = static_cast<TestObject<TypeClickMap>*>(manager.FindObject("clm", TypeClickMap));
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(second->member, 0);
  EXPECT_EQ(TestObject<TypeClickMap>::alive, 1);
  EXPECT_EQ(TestObject<TypeClickMap>::lastArguments.a1.number(), 2);
  EXPECT_TRUE(platform.dialogs.shown.empty());
}

TEST_F(ManagerObjects, ClickMapOverAnotherKindIsReportedAndKeepsTheObject) {
  manager.SetSceneName("sc000000");
  const std::pair<int, const char*> cases[] = {{TypeSurface, "サーフェース"},
                                               {TypeCursor, "カーソル"},
                                               {TypeAnimatedControl, "アニメーションコントロール"},
                                               {TypePrintArea, "プリントエリア"},
                                               {TypeHitret, ""}};
  for (const auto& [code, kindName] : cases) {
    const std::string name = "name" + std::to_string(code);
    manager.CreateObject(name.c_str(), code);
    platform.dialogs.shown.clear();
    manager.CreateClickMap(name.c_str(), {1});
    EXPECT_NE(manager.FindObject(name.c_str(), code), nullptr);
    ASSERT_EQ(platform.dialogs.shown.size(), 1u);
    const ShownBox& box = platform.dialogs.shown[0];
    EXPECT_EQ(box.text, name + sjis("は、") + sjis(kindName) +
                            sjis("オブジェクトとして\nすでに登録されています。\n"
                                 "何もせずに処理を継続します。"));
    EXPECT_EQ(box.caption, "sc000000");
    EXPECT_EQ(box.flags, BoxNotice);
  }
}

TEST_F(ManagerObjects, KindNamesOfTheRealTableAreThoseOfTheBox) {
  const ObjectKindsScope productionTable({});
  EXPECT_STREQ(findObjectKind(TypeSurface)->kindName, "サーフェース");
  EXPECT_STREQ(findObjectKind(TypeCursor)->kindName, "カーソル");
  EXPECT_STREQ(findObjectKind(TypeAnimatedControl)->kindName, "アニメーションコントロール");
  EXPECT_STREQ(findObjectKind(TypePrintArea)->kindName, "プリントエリア");
}

// --- Finding and destroying ---

TEST_F(ManagerObjects, FindWithAnotherCodeGivesNull) {
  manager.CreateObject("a", TypeSurface);
  EXPECT_NE(manager.FindObject("a"), nullptr);
  EXPECT_NE(manager.FindObject("a", TypeSurface), nullptr);
  EXPECT_EQ(manager.FindObject("a", TypeCursor), nullptr);
  EXPECT_EQ(manager.FindObject("A"), nullptr);
  EXPECT_EQ(manager.FindObject("b"), nullptr);
}

TEST_F(ManagerObjects, NativeIsTheMemberTheSequenceProperOrNothingByKind) {
  for (const ObjectKind& kind : TestKinds)
    manager.CreateObject(std::to_string(kind.typeCode).c_str(), kind.typeCode);
  EXPECT_EQ(manager.FindNative("41"),
            &static_cast<TestObject<TypeSurface>*>(manager.FindObject("41"))->member);
  EXPECT_EQ(manager.FindNative("49", TypeAnimationArea),
            &static_cast<TestObject<TypeAnimationArea>*>(manager.FindObject("49"))->member);
  EXPECT_EQ(manager.FindNative("48"),
            &static_cast<TestObject<TypeAnimationSequence>*>(manager.FindObject("48"))->proper);
  EXPECT_EQ(manager.FindNative("50"), nullptr);
  EXPECT_EQ(manager.FindNative("41", TypeCursor), nullptr);
  const ObjectKindsScope productionTable({});
  for (const ObjectKind& kind : TestKinds)
    EXPECT_EQ(findObjectKind(kind.typeCode)->native, kind.native) << kind.typeCode;
}

TEST_F(ManagerObjects, DestroyOfAnUnknownNameDoesNothing) {
  manager.CreateObject("a", TypeSurface);
  manager.DestroyObject("b");
  EXPECT_NE(manager.FindObject("a"), nullptr);
  EXPECT_TRUE(host.destroyed.empty());
}

TEST_F(ManagerObjects, DestroyTakesAnObjectOrAWindow) {
  manager.CreateObject("a", TypeSurface);
  host.addWindow("w", TypeView);
  manager.DestroyObject("a");
  EXPECT_EQ(TestObject<TypeSurface>::alive, 0);
  EXPECT_TRUE(host.destroyed.empty());
  manager.DestroyObject("w");
  EXPECT_EQ(host.destroyed, std::vector<std::string>{"w"});
}

TEST_F(ManagerObjects, DestroyOfSeveralStopsAtANull) {
  for (const char* name : {"a", "b", "c", "d"})
    manager.CreateObject(name, TypeSurface);
  manager.DestroyObjects({"a", "x", "c", nullptr, "d"});
  EXPECT_EQ(manager.FindObject("a"), nullptr);
  EXPECT_NE(manager.FindObject("b"), nullptr);
  EXPECT_EQ(manager.FindObject("c"), nullptr);
  EXPECT_NE(manager.FindObject("d"), nullptr);
}

TEST_F(ManagerObjects, FindViewOfAFrameGivesItsClient) {
  host.addWindow("v", TypeView);
  host.addWindow("X", TypeFrame);
  host.addWindow("XClient", TypeView);
  host.addWindow("Y", TypeFrameless);
  host.addWindow("YClient", TypeView);
  host.addWindow("bare", TypeFrame);
  host.addWindow("plain", TypePlainWindow);
  EXPECT_EQ(manager.FindView("v"), host.FindWindowObject("v"));
  EXPECT_EQ(manager.FindView("X"), host.FindWindowObject("XClient"));
  EXPECT_EQ(manager.FindView("Y"), host.FindWindowObject("YClient"));
  EXPECT_EQ(manager.FindView("bare"), nullptr);
  EXPECT_EQ(manager.FindView("plain"), nullptr);
  EXPECT_EQ(manager.FindView("none"), nullptr);
}

// --- Waits ---

TEST_F(ManagerObjects, WaitInputCountsTenthsAndAMissingHitretAnswersZero) {
  host.onInputWait = [&] { host.deliverInput(2080); };
  EXPECT_EQ(manager.WaitInput(nullptr, -1), 2080);
  EXPECT_EQ(manager.WaitInput("no.hitret", -1), 0);
  host.onInputWait = nullptr;
  const uint32_t start = tickCount();
  EXPECT_EQ(manager.WaitInput(nullptr, 1), 258);
  EXPECT_GE(tickCount() - start, 100u);
}

TEST_F(ManagerObjects, WaitSoundReturnsAtOnceForSilentPlayersAndCountsTenths) {
  uint32_t start = tickCount();
  manager.WaitSound(ChannelMidi);
  manager.WaitSound(ChannelWave);
  manager.WaitSound(0);
  EXPECT_LT(tickCount() - start, 90u);
  start = tickCount();
  manager.WaitSound(1);
  EXPECT_GE(tickCount() - start, 100u);
  host.abortEvent.set();
  EXPECT_THROW(manager.WaitSound(600), ExitScenarioException);
}

// --- The external font ---

TEST_F(ManagerFont, IsSetForTheRunAndPutBackAtItsEnd) {
  setFontSetting("C:\\old.tte");
  platform.writeFile(platform.game() / "dat" / "font.tte", "font");
  start();
  manager.SetExternalFont("dat\\font.tte");
  EXPECT_EQ(fontSetting(), "C:\\dat\\font.tte");
  EXPECT_TRUE(externalCharactersEnabled());
  manager.SetExternalFont(nullptr);
  EXPECT_EQ(fontSetting(), "C:\\old.tte");
  EXPECT_TRUE(externalCharactersEnabled());
}

TEST_F(ManagerFont, IsPutBackByTheManagersEnd) {
  setFontSetting("C:\\old.tte");
  platform.writeFile(platform.game() / "font.tte", "font");
  {
    QVScenario other;
    other.Start(&host, "Test", 1, 1, 1);
    other.SetExternalFont("font.tte");
    EXPECT_EQ(fontSetting(), "C:\\font.tte");
  }
  EXPECT_EQ(fontSetting(), "C:\\old.tte");
}

TEST_F(ManagerFont, BecomesTheEmptyTextWhereThePlayerHadNone) {
  platform.writeFile(platform.game() / "font.tte", "font");
  start();
  manager.SetExternalFont("font.tte");
  manager.SetExternalFont(nullptr);
  EXPECT_EQ(fontSetting(), "");
  // The value is there and empty, not gone.
  EXPECT_TRUE(services()
                  .settings->get("HKEY_CURRENT_USER\\EUDC\\932", "SystemDefaultEUDCFont")
                  .has_value());
}

TEST_F(ManagerFont, ThatIsMissingLeavesTheSettingSilently) {
  setFontSetting("C:\\old.tte");
  start();
  manager.SetExternalFont("dat\\none.tte");
  EXPECT_EQ(fontSetting(), "C:\\old.tte");
  EXPECT_TRUE(platform.dialogs.shown.empty());
  EXPECT_TRUE(externalCharactersEnabled());
}

}  // namespace
}  // namespace qv::testing
