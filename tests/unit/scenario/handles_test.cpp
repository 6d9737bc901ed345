#include "scenario/handles.h"

#include <gtest/gtest.h>

#include "tests/unit/scenario/fake_host.h"

namespace qv::testing {
namespace {

template <int Code>
class Bound : public LogicalObject {
 public:
  static inline ObjectArguments last;
  int typeCode() const override { return Code; }
  void create(QVScenario&, const ObjectArguments& arguments) override { last = arguments; }
};
constexpr ObjectKind BoundKinds[] = {
    {TypePrintArea, "", "", NativeForm::Member, &allocateObject<Bound<TypePrintArea>>},
    {TypeSurface, "", "", NativeForm::Member, &allocateObject<Bound<TypeSurface>>},
};

class Handles : public ::testing::Test {
 protected:
  Handles() {
    manager.Start(&host, "Test", 1, 1, 1);
    theScenario = &manager;
  }
  ~Handles() override { theScenario = nullptr; }

  TestPlatform platform;
  FakeHost host;
  ObjectKindsScope kinds{BoundKinds};
  QVScenario manager;
};

TEST_F(Handles, AreInertWithoutAManager) {
  theScenario = nullptr;
  const Rectangle rectangle{0, 0, 4, 4};
  {
    const AreaHandle area("name.Area", DestroyWithHandle);
    const SurfaceHandle surface("cg.surf"), made("a.surf", 8, 8, DestroyWithHandle);
    const ViewHandle view("cg.view"), madeView("b", nullptr, rectangle, nullptr, 0);
    const FrameHandle frame("HelpWindow"), madeFrame("c", nullptr, rectangle, nullptr, 0);
    EXPECT_FALSE(area.bound() || surface.bound() || made.bound() || view.bound());
    EXPECT_FALSE(madeView.bound() || frame.bound() || madeFrame.bound());
    EXPECT_FALSE(frame.client().bound());
  }
  EXPECT_TRUE(host.created.empty());
}

TEST_F(Handles, OfAreasCreateWhatIsMissingAndKeepIt) {
  LogicalObject* object = nullptr;
  {
    const AreaHandle area("message.Area");
    ASSERT_TRUE(area.bound());
    object = area.object();
    EXPECT_TRUE(area.name().equals("message.Area"));
  }
  EXPECT_EQ(manager.FindObject("message.Area", TypePrintArea), object);
  EXPECT_EQ(AreaHandle("message.Area").object(), object);
}

TEST_F(Handles, WithKeepFlagZeroDestroyAtTheEndOfTheirLife) {
  { const AreaHandle area("a", DestroyWithHandle); }
  EXPECT_EQ(manager.FindObject("a"), nullptr);
  const Rectangle rectangle{0, 0, 4, 4};
  { const ViewHandle view("v", nullptr, rectangle, nullptr, 0, DestroyWithHandle); }
  EXPECT_EQ(host.destroyed, std::vector<std::string>{"v"});
}

TEST_F(Handles, WithKeepFlagZeroDestroyWhileAnAbortUnwinds) {
  const Rectangle rectangle{0, 0, 4, 4};
  try {
    const ViewHandle view("v", nullptr, rectangle, nullptr, 0, DestroyWithHandle);
    host.pauseFlag = 1;
    host.abortEvent.set();
    host.SleepUnlessAborted(1000);
    ADD_FAILURE();
  } catch (const ExitScenarioException&) {
  }
  EXPECT_EQ(host.windowCount(), 0u);
}

TEST_F(Handles, OfAreasDoNotBindToAnotherKind) {
  manager.CreateObject("cg", TypeSurface);
  EXPECT_FALSE(AreaHandle("cg").bound());
  EXPECT_NE(manager.FindObject("cg", TypeSurface), nullptr);
}

TEST_F(Handles, OfSurfacesStayUnboundWithoutASurface) {
  EXPECT_FALSE(SurfaceHandle("cg.surf").bound());
  manager.CreateObject("an.area", TypePrintArea);
  EXPECT_FALSE(SurfaceHandle("an.area").bound());
  manager.CreateObject("cg.surf", TypeSurface);
  EXPECT_EQ(SurfaceHandle("cg.surf").object(), manager.FindObject("cg.surf"));
}

TEST_F(Handles, OfSurfacesCreateFromAFileOrByAnExtent) {
  const SurfaceHandle bySize("a", 640, 480, DestroyWithHandle);
  ASSERT_TRUE(bySize.bound());
  EXPECT_EQ(Bound<TypeSurface>::last.a1.number(), 640);
  EXPECT_EQ(Bound<TypeSurface>::last.a2.number(), 480);
  const SurfaceHandle byFile("b", "dat\\b.mcg");
  ASSERT_TRUE(byFile.bound());
  EXPECT_STREQ(Bound<TypeSurface>::last.a1.text(), "dat\\b.mcg");
  EXPECT_FALSE(Bound<TypeSurface>::last.a2);
}

TEST_F(Handles, OfViewsBindAViewOrAFramesClient) {
  host.addWindow("cg.view", TypeView);
  host.addWindow("HelpWindow", TypeFrame);
  host.addWindow("HelpWindowClient", TypeView);
  host.addWindow("plain", TypePlainWindow);
  EXPECT_EQ(ViewHandle("cg.view").view(), host.FindWindowObject("cg.view"));
  EXPECT_EQ(ViewHandle("HelpWindow").view(), host.FindWindowObject("HelpWindowClient"));
  EXPECT_EQ(ViewHandle("HelpWindowClient").view(), host.FindWindowObject("HelpWindowClient"));
  EXPECT_FALSE(ViewHandle("plain").bound());
  EXPECT_FALSE(ViewHandle("none").bound());
}

TEST_F(Handles, OfWindowsHoldTheWindowAndItsClient) {
  host.addWindow("HelpWindow", TypeFrame);
  host.addWindow("HelpWindowClient", TypeView);
  const FrameHandle frame("HelpWindow");
  EXPECT_EQ(frame.window(), host.FindWindowObject("HelpWindow"));
  EXPECT_EQ(frame.client().view(), host.FindWindowObject("HelpWindowClient"));
  const FrameHandle none("none");
  EXPECT_FALSE(none.bound());
  EXPECT_FALSE(none.client().bound());
}

TEST_F(Handles, ThatCreateWindowsTakeAFlagsWord) {
  const Rectangle rectangle{1, 2, 30, 40};
  const FrameHandle framed("f", nullptr, rectangle, "title", WindowHidden | WindowFramed);
  const FrameHandle frameless("g", "cg.view", rectangle, nullptr, WindowExtraWord);
  const ViewHandle view("v", nullptr, rectangle, nullptr, 0);
  ASSERT_EQ(host.created.size(), 3u);
  EXPECT_EQ(host.created[0].typeCode, TypeFrame);
  EXPECT_EQ(host.created[0].visible, 0);
  EXPECT_EQ(host.created[0].extraWord, 0);
  EXPECT_EQ(host.created[0].caption, "title");
  EXPECT_EQ(host.created[0].rectangle, rectangle);
  EXPECT_EQ(host.created[1].typeCode, TypeFrameless);
  EXPECT_EQ(host.created[1].visible, 1);
  EXPECT_NE(host.created[1].extraWord, 0);
  EXPECT_EQ(host.created[1].parentName, "cg.view");
  EXPECT_EQ(host.created[2].typeCode, TypeView);
  EXPECT_TRUE(framed.bound() && framed.client().bound() && view.bound());
}

}  // namespace
}  // namespace qv::testing
