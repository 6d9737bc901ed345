#pragma once

/// Sweeps of lines: every second row or column of a target is flushed, one pixel wide, on the way
/// there or, on the odd lines, on the way back. One thread.

#include <cstdint>

#include "graphics/transition/transition_engine.h"

namespace qv {

enum class Axis { Rows, Columns };

struct LineSweep {
  Axis axis;
  bool returning;  ///< from the last odd line towards the first
};

/// The row or column of that number, one pixel wide.
Rectangle lineOf(Axis axis, const Rectangle& rect, int32_t number);
int32_t extentOf(Axis axis, const Rectangle& rect);
/// How many lines a sweep has.
int32_t linesOf(const LineSweep& sweep, const Rectangle& rect);
/// Flushes the lines; each sixth one is followed by at least `leastMillis`.
void sweepLines(const TransitionEngine& engine, const LineSweep& sweep, SpanDebt& debt,
                uint32_t leastMillis);

}  // namespace qv
