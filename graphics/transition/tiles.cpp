/// Effects 38 to 47: the drawn picture is uncovered by tiles in random order, of one size or of
/// four that grow, with or without a sweep of lines before. The right mouse button ends them.

#include <algorithm>

#include "graphics/transition/effects.h"
#include "graphics/transition/line_sweep.h"
#include "graphics/view.h"

namespace qv {

namespace {

constexpr uint32_t PauseMillis = 50;  ///< between the sweep and the tiles

// Slow blits gave these effects their length; the spans stand for them.
struct TileEffect {
  int32_t effect;
  int32_t size;          ///< 0: growing
  uint32_t sweepMillis;  ///< 0: no sweep before
  uint32_t tilesMillis;
};

constexpr TileEffect TileEffects[] = {
    {38, 0, 0, 600}, {39, 0, 300, 450},  {40, 32, 0, 400},   {41, 16, 0, 500},  {42, 8, 0, 600},
    {43, 4, 0, 700}, {44, 32, 300, 300}, {45, 16, 300, 350}, {46, 8, 300, 400}, {47, 4, 300, 450},
};

const TileEffect& tileEffect(int32_t effect) {
  return TileEffects[effect - TileEffects[0].effect];
}

/// Cells of a target; those of the last column and row are what is left.
struct Grid {
  Grid(const Rectangle& target, int32_t cellSize)
      : rect(target),
        size(cellSize),
        columns((target.width() + cellSize - 1) / cellSize),
        rows((target.height() + cellSize - 1) / cellSize) {}
  int32_t count() const { return columns * rows; }
  Rectangle cell(int32_t number) const {
    return Rectangle::at(rect.left + number % columns * size, rect.top + number / columns * size,
                         size, size)
        .intersected(rect);
  }

  Rectangle rect;
  int32_t size, columns, rows;
};

int64_t flushesOf(const TileRound& round, const Rectangle& rect) {
  const int64_t cells = Grid(rect, round.size).count();
  return round.limit == 0 ? cells : std::min(cells, round.limit);
}

/// The right button, as who began to look at a moment sees it: down, or pressed since then.
class RightButton {
 public:
  explicit RightButton(const View& view) : view_(view), before_(view.rightButtonPresses()) {}
  bool pressed() const { return view_.rightButtonDown() || view_.rightButtonPresses() != before_; }

 private:
  const View& view_;
  uint32_t before_;
};

/// Uncovers one round of tiles. True when the dissolve is over: all cells were shown, or the right
/// button was pressed, which is looked at once a row of cells.
bool revealTiles(const TransitionEngine& engine, const TileRound& round, SpanDebt& debt,
                 const RightButton& button) {
  const Grid grid(engine.rect(), round.size);
  const RandomOrder order(grid.count(), engine.random());
  int64_t shown = 0;
  for (const int32_t cell : order.cells()) {
    if (cell == RandomOrder::End || engine.pace().aborted()) break;
    engine.show(grid.cell(cell));
    debt.pieceDone();
    ++shown;
    if (round.limit != 0 && shown == round.limit) return false;
    if (shown % grid.columns == 0 && button.pressed()) return true;
  }
  return round.limit == 0;
}

void gridSweep(const TransitionEngine& engine, uint32_t spanMillis) {
  const Rectangle& rect = engine.rect();
  const LineSweep columns{Axis::Columns, false}, rows{Axis::Rows, false};
  SpanDebt debt(engine.pace(), spanMillis, linesOf(columns, rect) + linesOf(rows, rect));
  sweepLines(engine, columns, debt, 0);
  sweepLines(engine, rows, debt, 0);
  engine.pace().sleep(PauseMillis);
}

}  // namespace

std::vector<TileRound> tileRounds(int32_t effect, int32_t width, int32_t height) {
  const int32_t size = tileEffect(effect).size;
  if (size != 0) return {{size, 0}};
  constexpr int32_t PixelsPerTile = 512;
  const int64_t n = int64_t{width} * height / PixelsPerTile;
  std::vector<TileRound> rounds;
  for (const TileRound& round : {TileRound{4, n}, {8, n}, {16, n / 2}, {32, 0}}) {
    rounds.push_back(round);
    // Without a limit a round shows everything: on a small target an early one ends the dissolve.
    if (round.limit == 0) break;
  }
  return rounds;
}

void tileDissolve(const TransitionEngine& engine, const EffectCall& call) {
  // From here on: a sweep before the tiles takes longer than a click.
  const RightButton button(engine.view());
  engine.drawSource(call.key);
  const TileEffect& effect = tileEffect(call.effect);
  if (effect.sweepMillis != 0) gridSweep(engine, effect.sweepMillis);
  const Rectangle& rect = engine.rect();
  const std::vector<TileRound> rounds = tileRounds(call.effect, rect.width(), rect.height());
  int64_t flushes = 0;
  for (const TileRound& round : rounds)
    flushes += flushesOf(round, rect);
  SpanDebt debt(engine.pace(), effect.tilesMillis, flushes);
  for (const TileRound& round : rounds)
    if (revealTiles(engine, round, debt, button)) break;
}

}  // namespace qv
