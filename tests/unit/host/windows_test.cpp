#include "host/windows.h"

#include <atomic>
#include <utility>

#include <gtest/gtest.h>

#include "scenario/messages.h"
#include "scenario/type_codes.h"
#include "tests/support/test_platform.h"

namespace qv {
namespace {

class WindowListTest : public ::testing::Test {
 protected:
  WindowListTest()
      : lock("windows", LockRank::WindowList), list(lock, nullptr, compositor, pointer) {}

  HostWindowObject* make(int32_t code, const char* name, const char* parent = "",
                         Rectangle rectangle = {10, 20, 110, 70}, int32_t visible = 1) {
    CreateWindowRequest request;
    request.typeCode = code;
    request.name.create(QVString::DefaultGrain, name);
    request.parentName.create(QVString::DefaultGrain, parent);
    request.rectangle = rectangle;
    request.visible = visible;
    return list.create(request);
  }

  uint32_t at(int x, int y) {
    Frame frame;
    compositor.take(frame, true);
    return frame[static_cast<size_t>(y) * ScreenWidth + static_cast<size_t>(x)];
  }
  static Rectangle place(const HostWindowObject* window) {
    Rectangle rectangle;
    EXPECT_TRUE(window->placeInParent(rectangle));
    return rectangle;
  }

  testing::TestPlatform platform;
  Compositor compositor;
  PointerState pointer;
  Lock lock;
  WindowList list;
};

TEST_F(WindowListTest, MakesEveryKindOfWindowAndNothingElse) {
  for (const int32_t code : {5, 6, 8, 12, 13, 14, 37}) {
    const std::string name = "window" + std::to_string(code);
    const HostWindowObject* window = make(code, name.c_str());
    ASSERT_NE(window, nullptr) << code;
    EXPECT_EQ(window->typeCode(), code);
    EXPECT_EQ(list.find(name.c_str()), window);
  }
  for (const int32_t code : {0, 4, 7, 9, 41, 46, 50, 51, -1})
    EXPECT_EQ(make(code, "other"), nullptr) << code;
}

TEST_F(WindowListTest, AFrameBringsItsClientViewOfItsOwnSize) {
  const HostWindowObject* frame = make(TypeFrame, "HelpWindow");
  HostWindowObject* client = list.find("HelpWindowClient");
  ASSERT_NE(client, nullptr);
  EXPECT_EQ(client->typeCode(), TypeView);
  EXPECT_EQ(client->parent, frame);
  EXPECT_EQ(place(client), (Rectangle{0, 0, 100, 50}));
  EXPECT_EQ(client->clientRectangle(), (Rectangle{0, 0, 100, 50}));
  EXPECT_EQ(client->surface8()->width(), 100);
  EXPECT_EQ(client->surface8()->height(), 50);
  make(TypeFrameless, "system.cut.win");
  EXPECT_NE(list.find("system.cut.winClient"), nullptr);
  make(TypeView, "cg.view");
  EXPECT_EQ(list.find("cg.viewClient"), nullptr);
}

TEST_F(WindowListTest, ATakenNameMakesNothingAndLeavesTheWindow) {
  const HostWindowObject* first = make(TypeView, "cg.view");
  EXPECT_EQ(make(TypeFrame, "cg.view"), nullptr);
  EXPECT_EQ(list.find("cg.view"), first);
}

TEST_F(WindowListTest, NamesAreComparedWithExactCase) {
  make(TypeView, "cg.view");
  EXPECT_EQ(list.find("CG.view"), nullptr);
  EXPECT_EQ(list.find(nullptr), nullptr);
}

TEST_F(WindowListTest, AParentThatDoesNotExistMakesNothing) {
  EXPECT_EQ(make(TypeView, "child", "nowhere"), nullptr);
  EXPECT_TRUE(list.empty());
}

TEST_F(WindowListTest, HiddenIsHiddenButSomeKindsAreAlwaysShown) {
  EXPECT_FALSE(make(TypeView, "mess.view", "", {}, 0)->shown());
  EXPECT_TRUE(make(TypePlainWindow, "plain", "", {}, 0)->shown());
  EXPECT_TRUE(make(TypeAnimationControl, "control", "", {}, 0)->shown());
}

TEST_F(WindowListTest, APlainHostWindowHasAnEmptyRectangle) {
  EXPECT_EQ(place(make(TypePlainWindow, "plain")), Rectangle{});
}

TEST_F(WindowListTest, DestroyingAWindowTakesWhatLiesInIt) {
  make(TypeView, "cg.view");
  make(TypeView, "select01.view", "cg.view");
  make(TypeView, "inner", "select01.view");
  make(TypeView, "mess.view");
  list.destroy("cg.view");
  EXPECT_EQ(list.find("cg.view"), nullptr);
  EXPECT_EQ(list.find("select01.view"), nullptr);
  EXPECT_EQ(list.find("inner"), nullptr);
  EXPECT_NE(list.find("mess.view"), nullptr);
  list.destroy("nobody");
  list.destroy(nullptr);
}

TEST_F(WindowListTest, TheFirstOfACodeIsTheOldest) {
  make(TypeView, "a");
  const HostWindowObject* first = make(TypeFrame, "b");
  make(TypeFrame, "c");
  EXPECT_EQ(list.findByCode(TypeFrame), first);
  EXPECT_EQ(list.findByCode(TypeReleasedWindow), nullptr);
}

// --- What they show ---

constexpr uint8_t RedIndex = 249, GreenIndex = 250, BlueIndex = 252;
constexpr uint32_t Red = 0xFF0000, Green = 0x00FF00, Blue = 0x0000FF;

TEST_F(WindowListTest, AViewShowsItsSurfaceOnlyWhereItWasFlushed) {
  HostWindowObject* view = make(TypeView, "cg.view");
  EXPECT_EQ(at(10, 20), 0u);
  view->surface8()->fill(RedIndex);
  EXPECT_EQ(at(10, 20), 0u);
  view->flushArea(0, 0, 10, 10, 0);
  EXPECT_EQ(at(10, 20), Red);
  EXPECT_EQ(at(20, 20), 0u);
  view->flush(nullptr, 0);
  EXPECT_EQ(at(109, 69), Red);
  view->surface8()->fill(GreenIndex);
  // A rectangle may be given from any corner.
  view->flushArea(100, 50, -10, -10, 0);
  EXPECT_EQ(at(109, 69), Green);
  EXPECT_EQ(at(99, 69), Red);
}

TEST_F(WindowListTest, AViewShowsTheColoursThatAreShownNotThoseThatAreStored) {
  HostWindowObject* view = make(TypeView, "cg.view");
  view->surface8()->fill(RedIndex);
  ColourTable blue;
  blue.fill(Blue);
  view->surface8()->fadePalette(blue, 1, 1);
  EXPECT_EQ(at(10, 20), 0u);
  view->flush(nullptr, 0);
  EXPECT_EQ(at(10, 20), Blue);
  EXPECT_EQ(view->surface8()->storedColours()[RedIndex], Red);
}

TEST_F(WindowListTest, AViewOfTheSecondKindHas32Bits) {
  HostWindowObject* view = make(TypeSecondView, "view24");
  ASSERT_NE(view->surface32(), nullptr);
  EXPECT_EQ(view->surface8(), nullptr);
  view->surface32()->fill(0x123456);
  view->flush(nullptr, 0);
  EXPECT_EQ(at(10, 20), 0x123456u);
}

TEST_F(WindowListTest, AHoldMakesPixelsAndColoursAppearInOneStep) {
  HostWindowObject* view = make(TypeView, "cg.view");
  view->hold();
  view->surface8()->fill(RedIndex);
  view->flush(nullptr, 0);
  ColourTable green;
  green.fill(Green);
  view->surface8()->setColours(green, 0, 0, 256);
  view->update();
  EXPECT_EQ(at(50, 50), 0u);
  view->release(true);
  EXPECT_EQ(at(50, 50), Green);
}

TEST_F(WindowListTest, AFramesPlaceIsItsCornerAndItsSizeIsItsClients) {
  HostWindowObject* frame = make(TypeFrame, "HelpWindow", "", {4, 4, 324, 380});
  HostWindowObject* client = list.find("HelpWindowClient");
  Rectangle rectangle;
  ASSERT_TRUE(frame->clientRect(rectangle));
  EXPECT_EQ(rectangle, (Rectangle{0, 0, 320, 376}));
  ASSERT_TRUE(frame->windowRect(rectangle));
  EXPECT_EQ(rectangle, Rectangle::at(4, 4, 326, 406));
  ASSERT_TRUE(client->windowRect(rectangle));
  EXPECT_EQ(rectangle, Rectangle::at(7, 31, 320, 376));
  client->surface8()->fill(RedIndex);
  client->flush(nullptr, 0);
  EXPECT_EQ(at(7, 31), Red);
  EXPECT_NE(at(6, 31), Red);
  EXPECT_NE(at(7, 30), Red);
  frame->show(false);
  EXPECT_EQ(at(100, 100), Compositor::GroundColour);
  EXPECT_TRUE(client->shown());
}

TEST_F(WindowListTest, AFrameWithoutABorderIsAllClient) {
  HostWindowObject* frame = make(TypeFrameless, "system.cut.win", "", {0, 0, 62, 122});
  Rectangle rectangle;
  ASSERT_TRUE(frame->windowRect(rectangle));
  EXPECT_EQ(rectangle, (Rectangle{0, 0, 62, 122}));
  HostWindowObject* client = list.find("system.cut.winClient");
  client->surface8()->fill(RedIndex);
  client->flush(nullptr, 0);
  EXPECT_EQ(at(0, 0), Red);
  EXPECT_EQ(at(61, 121), Red);
  // The outline of the frame is that of what stands in it.
  QVVSurface outline;
  outline.create(62, 122);
  const Rectangle hole = {10, 10, 20, 20};
  outline.fill(1);
  outline.fill(0, &hole);
  frame->SetClipShape(outline, 0);
  EXPECT_EQ(at(10, 10), Compositor::GroundColour);
  EXPECT_EQ(at(9, 10), Red);
}

TEST_F(WindowListTest, AnOutlineOfNothingButItsKeyLeavesTheWindowAlone) {
  HostWindowObject* view = make(TypeView, "mess.view");
  QVVSurface outline;
  outline.create(100, 50);
  view->SetClipShape(outline, KeyTopLeft);
  EXPECT_EQ(at(10, 20), 0u);
  EXPECT_EQ(at(109, 69), 0u);
}

TEST_F(WindowListTest, ResizingKeepsTheCornerThePictureAndTheColours) {
  HostWindowObject* view = make(TypeView, "cg.view");
  ColourTable colours = defaultColours();
  colours[7] = 0x445566;
  view->surface8()->setColours(colours, 0, 0, 256);
  view->surface8()->fill(7);
  view->resize(200, 30, 1);
  EXPECT_EQ(place(view), Rectangle::at(10, 20, 200, 30));
  EXPECT_EQ(view->surface8()->width(), 200);
  EXPECT_EQ(view->surface8()->height(), 30);
  EXPECT_EQ(at(109, 49), 0x445566u);
  EXPECT_EQ(at(110, 49), 0u);
  EXPECT_EQ(at(109, 50), Compositor::GroundColour);
  HostWindowObject* frame = make(TypeFrame, "frame");
  frame->resize(30, 40, 1);
  EXPECT_EQ(list.find("frameClient")->clientRectangle(), (Rectangle{0, 0, 30, 40}));
  EXPECT_EQ(place(frame), Rectangle::at(10, 20, 36, 70));
}

TEST_F(WindowListTest, MoveClampedKeepsOnTheScreenWhatFitsThere) {
  HostWindowObject* frame = make(TypeFrameless, "system.cut.win", "", {0, 0, 62, 122});
  EXPECT_EQ(frame->MoveClamped(-5, 9999, 0, 0, 1, 1), 1);
  EXPECT_EQ(place(frame), Rectangle::at(0, 358, 62, 122));
  EXPECT_EQ(frame->MoveClamped(-5, 9999, 0, 0, 1, 0), 1);
  EXPECT_EQ(place(frame), Rectangle::at(-5, 9999, 62, 122));
  EXPECT_EQ(frame->MoveClamped(-5, 3, 100, 481, 1, 1), 0);
  EXPECT_EQ(place(frame), Rectangle::at(-5, 3, 100, 481));
  EXPECT_EQ(list.find("system.cut.winClient")->clientRectangle(), (Rectangle{0, 0, 100, 481}));
}

TEST_F(WindowListTest, WildNumbersMoveAWindowFarAwayAndMakeNoneTooLarge) {
  HostWindowObject* view = make(TypeView, "cg.view");
  for (const int32_t wild : {INT32_MIN, INT32_MAX}) {
    view->MoveClamped(wild, wild, 0, 0, 1, 0);
    view->MoveClamped(wild, wild, wild == INT32_MIN ? wild : 0, 0, 1, 1);
    view->flushArea(wild, wild, wild, wild, 0);
  }
  EXPECT_EQ(make(TypeView, "wide", "", {INT32_MIN, 0, INT32_MAX, 10}), nullptr);
  EXPECT_EQ(make(TypeFrame, "large", "", {0, 0, 32767, 489}), nullptr);
  EXPECT_EQ(list.find("large"), nullptr);
  EXPECT_EQ(list.find("largeClient"), nullptr);
  EXPECT_NE(make(TypeView, "nothing", "", {5, 5, 5, 5}), nullptr);
}

TEST_F(WindowListTest, AWindowThatIsGoneTakesEveryCall) {
  HostWindowObject* view = make(TypeView, "cg.view");
  QVVSurface* const surface = view->surface8();
  list.destroy("cg.view");
  surface->fill(RedIndex);
  view->flush(nullptr, 0);
  view->hold();
  view->release(true);
  view->show(true);
  view->resize(10, 10, 1);
  EXPECT_EQ(view->MoveClamped(0, 0, 0, 0, 1, 1), 0);
  Rectangle rectangle = {1, 2, 3, 4};
  EXPECT_FALSE(view->windowRect(rectangle));
  EXPECT_FALSE(view->clientRect(rectangle));
  EXPECT_EQ(rectangle, (Rectangle{1, 2, 3, 4}));
  EXPECT_EQ(view->surface8(), surface);
  EXPECT_LE(surface->width() * surface->height(), 256);
  EXPECT_EQ(at(50, 50), Compositor::GroundColour);
}

TEST_F(WindowListTest, ANameThatComesBackIsTheSameObjectAsNew) {
  HostWindowObject* view = make(TypeView, "cg.view");
  view->surface8()->fill(RedIndex);
  view->hold();
  list.destroy("cg.view");
  for (int round = 0; round < 3; ++round) {
    EXPECT_EQ(make(TypeView, "cg.view"), view);
    EXPECT_EQ(view->surface8()->pixel(50, 25), 0);
    view->surface8()->fill(BlueIndex);
    view->flush(nullptr, 0);
    EXPECT_EQ(at(50, 50), Blue);
    list.destroy("cg.view");
  }
  EXPECT_NE(make(TypeSecondView, "cg.view"), view);
}

TEST_F(WindowListTest, AnAnimationControlKnowsWhetherItWasStarted) {
  HostWindowObject* control = make(TypeAnimationControl, "control");
  EXPECT_FALSE(control->animating());
  EXPECT_EQ(control->window->send(MessageAnimationStart, 0, 0), 1u);
  EXPECT_TRUE(control->animating());
  EXPECT_EQ(control->window->send(MessageAnimationStop, 0, 0), 1u);
  EXPECT_FALSE(control->animating());
  EXPECT_EQ(control->window->send(MessageClose, 0, 0), 0u);
  HostWindowObject* view = make(TypeView, "cg.view");
  EXPECT_EQ(view->window->send(MessageAnimationStart, 0, 0), 0u);
  EXPECT_FALSE(view->animating());
}

TEST_F(WindowListTest, TheRightButtonIsDownWhileItIsHeldAndEveryPressIsCounted) {
  HostWindowObject* view = make(TypeView, "cg.view");
  const uint32_t before = view->rightButtonPresses();
  EXPECT_FALSE(view->rightButtonDown());
  pointer.rightButton(true);
  EXPECT_TRUE(view->rightButtonDown());
  EXPECT_EQ(view->rightButtonPresses(), before + 1);
  pointer.rightButton(false);
  EXPECT_FALSE(view->rightButtonDown());
  EXPECT_EQ(view->rightButtonPresses(), before + 1);
  pointer.rightButton(true);
  pointer.rightButton(false);
  EXPECT_EQ(view->rightButtonPresses(), before + 2);
}

TEST_F(WindowListTest, ThePointersPlaceMayLieLeftOfTheScreen) {
  int32_t x = 0, y = 0;
  for (const auto& [atX, atY] : {std::pair{0, 0}, {639, 479}, {-3, 7}, {5, -8}, {-1, -1}}) {
    pointer.moveTo(atX, atY);
    pointer.place(x, y);
    EXPECT_EQ(std::pair(x, y), std::pair(atX, atY));
  }
}

TEST_F(WindowListTest, WindowsMayGoWhileOtherThreadsDrawIntoThem) {
  HostWindowObject* view = make(TypeView, "cg.view");
  HostWindowObject* child = make(TypeView, "child", "cg.view", {5, 5, 25, 25});
  std::atomic<bool> ending = false;
  const auto draw = [&ending](HostWindowObject* window) {
    for (uint8_t index = 0; !ending; ++index) {
      window->surface8()->fill(index);
      window->flush(nullptr, 0);
      sleepMillis(0);
    }
  };
  Thread first, second;
  first.start("first", [&] { draw(view); });
  second.start("second", [&] { draw(child); });
  for (int round = 0; round < 30; ++round) {
    list.destroy("cg.view");
    sleepMillis(0);
    EXPECT_EQ(make(TypeView, "cg.view"), view);
    EXPECT_EQ(make(TypeView, "child", "cg.view", {5, 5, 25, 25}), child);
    view->show(round % 2 == 0);
    child->resize(20 + round, 20, 1);
  }
  ending = true;
  first.join();
  second.join();
}

}  // namespace
}  // namespace qv
