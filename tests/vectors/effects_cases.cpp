#include <cstdlib>

#include "graphics/transition/effects.h"
#include "graphics/transition/zoom.h"
#include "tests/support/effect_stage.h"
#include "tests/vectors/case.h"

namespace qv::vectors {
namespace {

using testing::EffectStage;
using testing::StageView;

constexpr int32_t WipeSteps = 16;
constexpr int32_t ScreenWidth = 640, ScreenHeight = 480;

Json jsonOf(const Rectangle& rectangle) {
  return {rectangle.left, rectangle.top, rectangle.right, rectangle.bottom};
}

Rectangle rectangleOf(const Json& edges) {
  return {edges[0], edges[1], edges[2], edges[3]};
}

/// Of the sizes x, y, w, h.
Rectangle areaOf(const Json& sizes) {
  return Rectangle::at(sizes[0], sizes[1], sizes[2], sizes[3]);
}

TransitionPlace placeOf(const Rectangle& rect, int32_t sx = 0, int32_t sy = 0) {
  return {rect.left, rect.top, rect.width(), rect.height(), sx, sy};
}

/// What is left within the target; what shows nothing is nothing.
Json visible(const Json& rectangles, const Rectangle& rect) {
  Json seen = Json::array();
  for (const Json& edges : rectangles) {
    const Rectangle area = rectangleOf(edges).intersected(rect);
    if (!area.empty()) seen.push_back(jsonOf(area));
  }
  return seen;
}

/// The steps as worked out, and as an engine flushes them on a view.
void flushWipe(Case& given) {
  given.platform();
  const int32_t effect = given.int32("effect");
  const Rectangle rect = rectangleOf(given["rect"]);
  Json flushes = Json::array();
  for (int32_t step = 1; step <= WipeSteps; ++step) {
    Json worked = Json::array();
    for (const Rectangle& area : wipeStep(effect, rect, step))
      worked.push_back(jsonOf(area));
    const Json& wanted = given["steps"][static_cast<size_t>(step - 1)];
    const std::string name = "step " + std::to_string(step);
    if (given.flag("narrow"))
      expectEqual(name, visible(worked, rect), visible(wanted, rect));
    else
      expectEqual(name, worked, wanted);
    for (const Json& area : visible(wanted, rect))
      flushes.push_back(area);
  }
  flushes.push_back(jsonOf(rect));
  EffectStage stage(ScreenWidth, ScreenHeight);
  stage.abort.set();  // the same flushes, without their waits
  stage.run({effect, KeyNone, 0, 0}, placeOf(rect));
  Json flushed = Json::array();
  for (const StageView::Flush& flush : stage.view.flushes)
    flushed.push_back(jsonOf(flush.area));
  expectEqual("flushed", flushed, flushes);
}

/// Each step's surface is compared with the blit that the case tells.
void slideWipe(Case& given) {
  given.platform();
  const Rectangle rect = rectangleOf(given["rect"]);
  const int32_t sx = given.int32("sx"), sy = given.int32("sy");
  const Json& steps = given["steps"];
  EffectStage stage(ScreenWidth, ScreenHeight), wanted(ScreenWidth, ScreenHeight);
  // The source reaches beyond the offset, or the rectangle would be cut short.
  testing::drawNewCard(stage.newCard, ScreenWidth + sx, ScreenHeight + sy);
  size_t flushes = 0;
  stage.view.flushed = [&](const StageView::Flush& flush) {
    if (flushes < steps.size()) {
      const Json& step = steps[flushes];
      const Rectangle area = rectangleOf(step[0]);
      expectEqual("step " + std::to_string(flushes + 1), jsonOf(flush.area), step[0]);
      stage.newCard.blit(*wanted.view.surface8(), area.left, area.top, step[1][0], step[1][1],
                         area.width(), area.height(), KeyNone);
      if (testing::indicesOf(*stage.view.surface8()) != testing::indicesOf(*wanted.view.surface8()))
        throw Mismatch("step " + std::to_string(flushes + 1) + " drew another part of the source");
    }
    ++flushes;
  };
  stage.abort.set();
  stage.run({given.int32("effect"), KeyNone, 0, 0}, placeOf(rect, sx, sy));
  expectEqual("flushes", flushes, WipeSteps + 1);
  if (given.flag("whole_blit_certain"))
    for (int32_t y = 0; y < rect.height(); ++y)
      for (int32_t x = 0; x < rect.width(); ++x)
        expectEqual("pixel", stage.view.surface8()->pixel(rect.left + x, rect.top + y),
                    stage.newCard.pixel(sx + x, sy + y));
}

Json jsonOf(std::span<const int32_t> levels) {
  return levels.empty() ? Json(nullptr) : Json(std::vector(levels.begin(), levels.end()));
}

void levels(Case& given) {
  const int32_t effect = given.int32("effect");
  expectEqual("levels8", jsonOf(fadeLevels(effect, false)), given["levels8"]);
  expectEqual("levels32", jsonOf(fadeLevels(effect, true)), given["levels32"]);
}

void expectFades(Case& given, EffectStage& stage) {
  Json calls = Json::array();
  for (const auto& [step, steps] : stage.view.recording8()->fades)
    calls.push_back({step, steps});
  expectEqual("calls", calls, given["calls"]);
}

constexpr int32_t SmallSide = 8;

void paletteFadeRounds(Case& given) {
  testing::TestPlatform platform(false, makeSimulatedKernel());
  EffectStage stage(SmallSide, SmallSide);
  stage.run({9, given.int32("steps"), 0, 0});
  expectFades(given, stage);
}

void fadeView(Case& given) {
  testing::TestPlatform platform(false, makeSimulatedKernel());
  EffectStage stage(SmallSide, SmallSide);
  fadeToGrey(stage.view, given.int32("steps"), given.int32("grey"), given.int32("keep") != 0,
             stage.pace);
  expectFades(given, stage);
}

void tileLimits(Case& given) {
  const int32_t width = given["size"][0], height = given["size"][1];
  Json cells = Json::array(), limits = Json::array();
  for (const TileRound& round : tileRounds(38, width, height)) {
    cells.push_back(((width + round.size - 1) / round.size) *
                    ((height + round.size - 1) / round.size));
    limits.push_back(round.limit);
  }
  expectEqual("cells", cells, given["cells"]);
  expectEqual("limits", limits, given["limits"]);
}

void zoom(Case& given) {
  const Zoom call{areaOf(given["start"]), areaOf(given["end"]), given.int32("steps"), {}, nullptr};
  Json rectangles = Json::array();
  for (int32_t step = 1; step <= call.steps; ++step) {
    const Rectangle area = zoomStep(call, step);
    rectangles.push_back({area.left, area.top, area.width(), area.height()});
  }
  expectEqual("rects", rectangles, given["rects"]);
}

void sinTable(Case& given) {
  const Json& values = given["values"];
  expectEqual("count", values.size(), 360);
  for (int32_t degree = 0; degree < 360; ++degree)
    expectEqual("degree " + std::to_string(degree), spinSine(degree),
                values[static_cast<size_t>(degree)]);
}

void spinRowsOf(Case& given) {
  for (const Json& row : given["rows"])
    expectEqual("angle " + row[0].dump(), spinRows(given.int32("height"), row[0]), row[1]);
}

void spinRows480(Case& given) {
  expectEqual("rows", spinRows(ScreenHeight, given.int32("angle")), given["rows"]);
}

constexpr Kind Kinds[] = {
    {"fade_view", fadeView},     {"flush_wipe", flushWipe},
    {"levels", levels},          {"palette_fade_rounds", paletteFadeRounds},
    {"sin_table", sinTable},     {"slide_wipe", slideWipe},
    {"spin_rows", spinRowsOf},   {"spin_rows_480", spinRows480},
    {"tile_limits", tileLimits}, {"zoom", zoom},
};

}  // namespace

std::span<const Kind> effectKinds() {
  return Kinds;
}

}  // namespace qv::vectors
