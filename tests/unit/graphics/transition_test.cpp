#include <gtest/gtest.h>

#include "graphics/transition/effects.h"
#include "platform/text/shift_jis.h"
#include "tests/support/effect_cases.h"
#include "tests/support/effect_stage.h"
#include "tests/support/test_platform.h"

// What all effects have in common: where they draw, whose colours they take, how they end.

namespace qv {
namespace {

using testing::EffectCase;
using testing::EffectStage;
using testing::everyEffect;
using testing::indicesOf;
using testing::StageView;
using testing::TestPlatform;

constexpr int32_t Width = 64, Height = 48;
constexpr TransitionPlace OddPlace{11, 5, 37, 29, 3, 2};
constexpr Rectangle OddRect{11, 5, 48, 34};

class TransitionTest : public ::testing::Test {
 protected:
  TestPlatform platform{false, makeSimulatedKernel()};
};

/// What the frame would show if the surface were painted whole.
std::vector<uint32_t> paintedWhole(StageView& view) {
  const std::vector<uint32_t> before = view.frame.pixels;
  view.flush(nullptr, 0);
  return std::exchange(view.frame.pixels, before);
}

bool sameWithin(const Rectangle& area, const std::vector<uint32_t>& one,
                const std::vector<uint32_t>& other) {
  for (int32_t y = area.top; y < area.bottom; ++y)
    for (int32_t x = area.left; x < area.right; ++x)
      if (one[static_cast<size_t>(y * Width + x)] != other[static_cast<size_t>(y * Width + x)])
        return false;
  return true;
}

/// Those that leave more of the source than its pixels, or more than the source.
bool goesBesideItsKey(int32_t effect) {
  return effect == 5 || effect == 26 || effect == 27;
}

bool isRotation(int32_t effect) {
  return effect >= 60 && effect <= 63;
}

TEST_F(TransitionTest, EveryOpaqueEffectEndsWithTheSourceInSurfaceAndFrame) {
  for (const EffectCase& given : everyEffect(KeyNone)) {
    SCOPED_TRACE(given.call.effect);
    EffectStage stage(Width, Height);
    stage.run(given.call, {}, given.masks);
    EXPECT_EQ(indicesOf(*stage.view.surface8()), indicesOf(stage.newCard));
    EXPECT_EQ(stage.view.surface8()->storedColours(), stage.newCard.storedColours());
    EXPECT_TRUE(stage.view.frame.pixels == paintedWhole(stage.view));
    EXPECT_FALSE(stage.view.flushes.back().area.empty());
  }
}

TEST_F(TransitionTest, EveryKeyedEffectEndsWithTheSourceOverTheOldPicture) {
  for (const EffectCase& given : everyEffect(0)) {
    if (goesBesideItsKey(given.call.effect)) continue;
    SCOPED_TRACE(given.call.effect);
    EffectStage stage(Width, Height), wanted(Width, Height);
    wanted.newCard.blit(*wanted.view.surface8(), OddPlace.x, OddPlace.y, OddPlace.sx, OddPlace.sy,
                        OddPlace.w, OddPlace.h, 0);
    stage.run(given.call, OddPlace, given.masks);
    EXPECT_EQ(indicesOf(*stage.view.surface8()), indicesOf(*wanted.view.surface8()));
    EXPECT_TRUE(sameWithin(OddRect, stage.view.frame.pixels, paintedWhole(stage.view)));
  }
}

TEST_F(TransitionTest, EveryEffectClosesWithAFlushOfTheWholeRectangle) {
  for (const EffectCase& given : everyEffect(KeyNone)) {
    SCOPED_TRACE(given.call.effect);
    EffectStage stage(Width, Height);
    stage.run(given.call, OddPlace, given.masks);
    ASSERT_FALSE(stage.view.flushes.empty());
    EXPECT_EQ(stage.view.flushes.back().area, OddRect);
  }
}

TEST_F(TransitionTest, EveryEffectLeavesWhatLiesOutsideOfTheRectangle) {
  for (const EffectCase& given : everyEffect(KeyNone)) {
    // The palette fade draws the whole source, wherever its rectangle lies.
    if (given.call.effect == 9) continue;
    SCOPED_TRACE(given.call.effect);
    EffectStage stage(Width, Height);
    stage.run(given.call, OddPlace, given.masks);
    const QVVSurface& surface = *stage.view.surface8();
    int32_t changed = 0;
    for (int32_t y = 0; y < Height; ++y)
      for (int32_t x = 0; x < Width; ++x)
        if (!OddRect.contains(x, y)) changed += surface.pixel(x, y) != stage.oldCard.pixel(x, y);
    EXPECT_EQ(changed, 0);
  }
}

TEST_F(TransitionTest, OpaqueEffectsTakeTheSourcesColoursBeforeTheFirstFlush) {
  for (const EffectCase& given : everyEffect(KeyNone)) {
    SCOPED_TRACE(given.call.effect);
    EffectStage stage(Width, Height);
    bool first = true, takenAtFirst = false;
    stage.view.flushed = [&](const StageView::Flush&) {
      if (first)
        takenAtFirst = stage.view.surface8()->storedColours() == stage.newCard.storedColours();
      first = false;
    };
    stage.run(given.call, {}, given.masks);
    const bool takesLater = given.call.effect == 9 || isRotation(given.call.effect) || given.masks;
    EXPECT_EQ(takenAtFirst, !takesLater);
  }
}

TEST_F(TransitionTest, KeyedEffectsLeaveTheColoursExceptWhereASecondMaskUncoversTheSource) {
  for (const EffectCase& given : everyEffect(0)) {
    SCOPED_TRACE(given.call.effect);
    EffectStage stage(Width, Height);
    stage.run(given.call, {}, given.masks);
    const ColourTable now = stage.view.surface8()->storedColours();
    EXPECT_EQ(now, (given.masks ? stage.newCard : stage.oldCard).storedColours());
  }
}

TEST_F(TransitionTest, AnUnknownNumberIsACut) {
  for (const int32_t effect : {-1, 0, 6, 7, 8, 24, 25, 53, 59, 81, 126, 128, 9999, INT32_MIN}) {
    SCOPED_TRACE(effect);
    EffectStage stage(Width, Height);
    stage.run({effect, KeyNone, 0, 0});
    EXPECT_EQ(stage.ticks(), 0u);
    EXPECT_EQ(stage.view.flushes.size(), 1u);
    EXPECT_EQ(indicesOf(*stage.view.surface8()), indicesOf(stage.newCard));
  }
}

TEST_F(TransitionTest, WithoutAViewOrASourceOrARectangleNothingHappens) {
  EffectStage stage(Width, Height);
  for (const EffectCase& given : everyEffect(KeyNone)) {
    const EffectCall& call = given.call;
    TransitionEngine noView(nullptr, {&stage.newCard, &stage.mask1, &stage.mask2}, {}, stage.pace,
                            stage.random());
    noView.run(call.effect, call.key, call.a, call.b);
    TransitionEngine noSource(&stage.view, {nullptr, &stage.mask1, &stage.mask2}, {}, stage.pace,
                              stage.random());
    noSource.run(call.effect, call.key, call.a, call.b);
    stage.run(call, {0, 0, 0, 0, Width, 0}, given.masks);
    stage.run(call, {0, 0, -5, 10, 0, 0}, given.masks);
    stage.run(call, {Width, 0, 10, 10, 0, 0}, given.masks);
  }
  EXPECT_TRUE(stage.view.flushes.empty());
  EXPECT_EQ(indicesOf(*stage.view.surface8()), indicesOf(stage.oldCard));
  EXPECT_EQ(stage.view.surface8()->storedColours(), stage.oldCard.storedColours());
}

struct PlaceCase {
  TransitionPlace place;
  Rectangle rect;
};

TEST_F(TransitionTest, TheRectangleIsWhatSourceAndViewHaveInCommonAndNeverPassesTheSource) {
  EffectStage stage(Width, Height);
  constexpr int32_t Far = 2'000'000'000;
  const PlaceCase cases[] = {
      {{0, 0, 0, 0, 0, 0}, {0, 0, 64, 48}},
      {{10, 8, 0, 0, 0, 0}, {10, 8, 64, 48}},
      {{0, 0, 0, 0, 60, 40}, {0, 0, 4, 8}},
      {{10, 8, 0, 0, 60, 40}, {10, 8, 14, 16}},
      {{5, 6, 7, 8, 0, 0}, {5, 6, 12, 14}},
      {{5, 6, 100, 200, 0, 0}, {5, 6, 69, 54}},
      {{5, 6, 100, 200, 1, 2}, {5, 6, 68, 52}},
      {{-4, -5, 0, 0, 0, 0}, {-4, -5, 60, 43}},
      {{0, 0, 10, 10, -3, -3}, {0, 0, 10, 10}},
      {{0, 0, Far, Far, 0, 0}, {0, 0, 64, 48}},
      {{0, 0, 0, 0, -Far, -Far}, {0, 0, 64, 48}},
      {{Far, 0, 0, 0, 0, 0}, {}},
      {{Far, 0, Far, 5, 0, 0}, {}},
      {{-Far, 0, 10, 10, 0, 0}, {}},
      {{0, 0, 0, 0, Far, 0}, {}},
  };
  for (const PlaceCase& given : cases) {
    const Rectangle rect = stage.engine(given.place).rect();
    EXPECT_EQ(rect, given.rect) << given.place.x << " " << given.place.w << " " << given.place.sx
                                << ": " << rect.left << " " << rect.top << " " << rect.right << " "
                                << rect.bottom;
  }
}

TEST_F(TransitionTest, ArgumentsOfAnySizeEndInAnEffectNotInATrap) {
  constexpr int32_t Far = INT32_MAX;
  const TransitionPlace places[] = {
      {0, 0, 0, 0, INT32_MIN, INT32_MIN}, {-60, -40, Far, Far, -9, -9}, {63, 47, Far, Far, 63, 47}};
  for (const TransitionPlace& place : places)
    for (EffectCase given : everyEffect(KeyNone)) {
      SCOPED_TRACE(given.call.effect);
      EffectStage stage(Width, Height);
      if (given.masks) given.call.a = given.call.b = Far;
      if (isRotation(given.call.effect)) given.call.a = given.call.b = Far;
      if (given.call.effect == 9) given.call.key = Far;
      stage.abort.set();
      stage.run(given.call, place, given.masks);
      EXPECT_EQ(stage.ticks(), 0u);
    }
}

TEST_F(TransitionTest, AfterTheAbortNothingIsWaitedForAndTheSourceStands) {
  for (const EffectCase& given : everyEffect(KeyNone)) {
    SCOPED_TRACE(given.call.effect);
    EffectStage stage(Width, Height);
    uint32_t setAt = 0;
    stage.view.flushed = [&](const StageView::Flush& flush) {
      if (!stage.abort.isSet() && stage.view.flushes.size() == 3) {
        stage.abort.set();
        setAt = flush.tick;
      }
    };
    stage.run(given.call, {}, given.masks);
    if (stage.view.flushes.size() >= 3) {
      EXPECT_EQ(tickCount(), setAt);
    }
    // Sixteen steps of four bands are the most.
    EXPECT_LT(stage.view.flushes.size(), 64u);
    EXPECT_EQ(indicesOf(*stage.view.surface8()), indicesOf(stage.newCard));
    EXPECT_EQ(stage.view.surface8()->storedColours(), stage.newCard.storedColours());
    EXPECT_TRUE(stage.view.frame.pixels == paintedWhole(stage.view));
  }
}

TEST_F(TransitionTest, HoldsNoLockWhileItWaits) {
  for (const EffectCase& given : everyEffect(KeyNone)) {
    SCOPED_TRACE(given.call.effect);
    EffectStage stage(Width, Height);
    Event over("over", Event::Reset::Manual);
    uint32_t longest = 0;
    Thread painter;
    painter.start("painter", [&] {
      while (over.wait(1) == WaitTimeout) {
        const uint32_t before = tickCount();
        stage.view.surface8()->pixel(0, 0);
        stage.newCard.pixel(0, 0);
        longest = std::max(longest, tickCount() - before);
      }
    });
    stage.run(given.call, {}, given.masks);
    over.set();
    painter.join();
    EXPECT_EQ(longest, 0u);
  }
}

// Views of 32 bits.

TEST_F(TransitionTest, AViewOf32BitsSaysWhatItCannotDoAndCuts) {
  struct Refusal {
    EffectCall call;
    const char* name;
  };
  const Refusal refusals[] = {{{5, KeyNone, 0, 0}, "blendPattern"},
                              {{9, 16, 0, 0}, "DRAW_FADE"},
                              {{60, KeyNone, 5, 0}, "rotate"},
                              {{63, 0, 5, 2}, "rotate"}};
  for (const Refusal& given : refusals) {
    SCOPED_TRACE(given.name);
    platform.dialogs.shown.clear();
    EffectStage stage(Width, Height, true), cut(Width, Height, true);
    stage.run(given.call);
    cut.run({1, given.call.effect == 9 ? KeyNone : given.call.key, 0, 0});
    ASSERT_EQ(platform.dialogs.shown.size(), 1u);
    EXPECT_EQ(platform.dialogs.shown[0].text,
              sjis("24bit surface に対する ") + given.name +
                  sjis(" の実行は、現在未実装です。\n単純に表示して処理を継続します。"));
    EXPECT_EQ(platform.dialogs.shown[0].caption, "QVString class");
    EXPECT_EQ(platform.dialogs.shown[0].flags, 0x12000u);
    EXPECT_EQ(stage.view.frame.pixels, cut.view.frame.pixels);
    EXPECT_EQ(stage.view.flushes.size(), 1u);
    EXPECT_EQ(stage.ticks(), 0u);
  }
}

TEST_F(TransitionTest, OnAViewOf32BitsEveryOtherEffectEndsLikeACut) {
  for (const ColourKey key : {KeyNone, ColourKey{0}})
    for (const EffectCase& given : everyEffect(key)) {
      SCOPED_TRACE(given.call.effect);
      EffectStage stage(Width, Height, true), cut(Width, Height, true);
      stage.run(given.call, OddPlace, given.masks);
      cut.run({1, given.call.effect == 9 ? KeyNone : key, 0, 0}, OddPlace);
      EXPECT_EQ(stage.view.frame.pixels, cut.view.frame.pixels);
    }
}

TEST_F(TransitionTest, OnAViewOf32BitsCurtainsAreACutWithoutABox) {
  for (int32_t effect = 26; effect <= 29; ++effect) {
    EffectStage stage(Width, Height, true);
    stage.run({effect, KeyNone, 0, 0});
    EXPECT_EQ(stage.view.flushes.size(), 1u);
    EXPECT_EQ(stage.ticks(), 0u);
  }
  EXPECT_TRUE(platform.dialogs.shown.empty());
}

// What carries the waits and the random order.

TEST_F(TransitionTest, ADebtIsSleptOffInItsSpanHoweverSmallThePieces) {
  Pace pace;
  for (const int64_t pieces : {1, 7, 300, 20'000}) {
    const uint32_t start = tickCount();
    SpanDebt debt(pace, 300, pieces);
    for (int64_t piece = 0; piece < pieces; ++piece)
      debt.pieceDone();
    EXPECT_EQ(tickCount() - start, 300u) << pieces;
  }
}

TEST_F(TransitionTest, ADebtIsNotPaidTwiceWhenThePiecesThemselvesAreSlow) {
  Pace pace;
  const uint32_t start = tickCount();
  SpanDebt debt(pace, 300, 10);
  for (int piece = 0; piece < 10; ++piece) {
    sleepMillis(50);
    debt.pieceDone();
  }
  EXPECT_EQ(tickCount() - start, 500u);
}

TEST_F(TransitionTest, AWaitSinceAMarkIsShortenedByWhatHasPassed) {
  Pace pace;
  pace.mark();
  const uint32_t start = tickCount();
  sleepMillis(30);
  pace.waitSince(50);
  EXPECT_EQ(tickCount() - start, 50u);
  pace.waitSince(20);
  EXPECT_EQ(tickCount() - start, 50u);
}

TEST(TransitionOnTheMachinesClock, NoEffectIsShorterThanItsSpan) {
  TestPlatform platform;
  struct SpanCase {
    int32_t effect;
    uint32_t millis;
  };
  for (const SpanCase& given : {SpanCase{10, 160}, {27, 140}, {43, 700}, {48, 500}, {61, 646}}) {
    EffectStage stage(640, 480);
    stage.run({given.effect, KeyNone, 5, 0});
    // The machine's ticks are whole milliseconds, of which the first may be half gone.
    EXPECT_GE(stage.ticks() + 1, given.millis) << given.effect;
    RecordProperty("millis" + std::to_string(given.effect), static_cast<int>(stage.ticks()));
  }
}

TEST(RandomOrderTest, HoldsEveryCellOnceAndASentinel) {
  RandomGenerator generator(4711);
  const RandomDraw random = [&](uint32_t limit) { return generator.draw(limit); };
  for (const int32_t count : {0, 1, 2, 17, 300}) {
    std::vector<int32_t> cells = RandomOrder(count, random).cells();
    ASSERT_EQ(cells.size(), static_cast<size_t>(count) + 1);
    EXPECT_EQ(cells.back(), -1);
    cells.pop_back();
    if (count == 300) {
      EXPECT_FALSE(std::is_sorted(cells.begin(), cells.end()));
    }
    std::sort(cells.begin(), cells.end());
    for (int32_t i = 0; i < count; ++i)
      EXPECT_EQ(cells[static_cast<size_t>(i)], i);
  }
}

TEST(RandomOrderTest, SwapsTwoRandomPlacesTwiceForEachCell) {
  std::vector<uint32_t> limits;
  // Always the places 0 and 1: an even number of swaps leaves the order.
  const RandomDraw random = [&](uint32_t limit) {
    limits.push_back(limit);
    return static_cast<uint32_t>(limits.size() % 2);
  };
  EXPECT_EQ(RandomOrder(5, random).cells(), (std::vector<int32_t>{0, 1, 2, 3, 4, -1}));
  EXPECT_EQ(limits, std::vector<uint32_t>(20, 4u));
}

}  // namespace
}  // namespace qv
