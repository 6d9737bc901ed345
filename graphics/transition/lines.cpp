/// Effects 48 to 52: the drawn picture is uncovered line by line, in random order or by sweeps
/// there and back.

#include "graphics/transition/effects.h"
#include "graphics/transition/line_sweep.h"

namespace qv {

namespace {

constexpr int32_t LinesBetweenSleeps = 6;
constexpr uint32_t SleepMillis = 1;

constexpr LineSweep Down{Axis::Rows, false}, Up{Axis::Rows, true};
constexpr LineSweep Right{Axis::Columns, false}, Left{Axis::Columns, true};

constexpr LineSweep Sweeps50[] = {Down, Up};
constexpr LineSweep Sweeps51[] = {Right, Left};
constexpr LineSweep Sweeps52[] = {Right, Down, Left};

// Slow blits gave these effects their length; the spans stand for them.
struct SweepEffect {
  std::span<const LineSweep> sweeps;
  uint32_t spanMillis;
};
constexpr SweepEffect SweepEffects[] = {{Sweeps50, 600}, {Sweeps51, 600}, {Sweeps52, 800}};
constexpr uint32_t RandomLinesMillis = 500;

constexpr int32_t FirstSweepEffect = 50, RandomRowsEffect = 48;

}  // namespace

int32_t extentOf(Axis axis, const Rectangle& rect) {
  return axis == Axis::Rows ? rect.height() : rect.width();
}

Rectangle lineOf(Axis axis, const Rectangle& rect, int32_t number) {
  if (axis == Axis::Rows) return Rectangle::at(rect.left, rect.top + number, rect.width(), 1);
  return Rectangle::at(rect.left + number, rect.top, 1, rect.height());
}

int32_t linesOf(const LineSweep& sweep, const Rectangle& rect) {
  const int32_t extent = extentOf(sweep.axis, rect);
  return sweep.returning ? extent / 2 : (extent + 1) / 2;
}

void sweepLines(const TransitionEngine& engine, const LineSweep& sweep, SpanDebt& debt,
                uint32_t leastMillis) {
  const int32_t extent = extentOf(sweep.axis, engine.rect());
  const int32_t lines = linesOf(sweep, engine.rect());
  const int32_t start = sweep.returning ? extent - extent % 2 - 1 : 0;
  const int32_t step = sweep.returning ? -2 : 2;
  for (int32_t i = 0; i < lines && !engine.pace().aborted(); ++i) {
    engine.show(lineOf(sweep.axis, engine.rect(), start + i * step));
    debt.pieceDone((i + 1) % LinesBetweenSleeps == 0 ? leastMillis : 0);
  }
}

void randomLines(const TransitionEngine& engine, const EffectCall& call) {
  engine.drawSource(call.key);
  const Axis axis = call.effect == RandomRowsEffect ? Axis::Rows : Axis::Columns;
  const RandomOrder order(extentOf(axis, engine.rect()), engine.random());
  SpanDebt debt(engine.pace(), RandomLinesMillis, extentOf(axis, engine.rect()));
  for (const int32_t line : order.cells()) {
    if (line == RandomOrder::End || engine.pace().aborted()) break;
    engine.show(lineOf(axis, engine.rect(), line));
    debt.pieceDone();
  }
}

void interlacedSweeps(const TransitionEngine& engine, const EffectCall& call) {
  engine.drawSource(call.key);
  const SweepEffect& effect = SweepEffects[call.effect - FirstSweepEffect];
  int64_t lines = 0;
  for (const LineSweep& sweep : effect.sweeps)
    lines += linesOf(sweep, engine.rect());
  SpanDebt debt(engine.pace(), effect.spanMillis, lines);
  for (const LineSweep& sweep : effect.sweeps)
    sweepLines(engine, sweep, debt, SleepMillis);
}

}  // namespace qv
