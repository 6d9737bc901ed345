#pragma once

/// A stage for effects without a window: a view whose frame is a picture, painted as a window
/// paints (what is flushed shows the surface through its shown colours, the rest stays), and test
/// cards to bring onto it. Everything that is flushed is kept with its tick.

#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "graphics/pace.h"
#include "graphics/surface.h"
#include "graphics/transition/transition_engine.h"
#include "graphics/view.h"
#include "platform/display/png_file.h"
#include "scenario/random.h"

namespace qv::testing {

/// Keeps the steps that its palette was faded by.
class RecordingSurface : public QVVSurface {
 public:
  void fadePalette(const ColourTable& target, int32_t step, int32_t steps) override {
    fades.emplace_back(step, steps);
    QVVSurface::fadePalette(target, step, steps);
  }
  std::vector<std::pair<int32_t, int32_t>> fades;
};

class StageView : public View {
 public:
  struct Flush {
    uint32_t tick = 0;
    Rectangle area;  ///< as given; the whole client for null
    bool whole = false;
  };

  StageView(int32_t width, int32_t height, bool target32 = false);

  int typeCode() const override { return surface32_ ? 13 : 5; }
  void resize(int32_t, int32_t, int32_t) override {}
  void update() override;
  void invalidate(const Rectangle* area, int32_t erase) override;
  QVVSurface* surface8() override { return surface8_.get(); }
  QVVSurface24* surface32() override { return surface32_.get(); }
  Rectangle clientRectangle() const override { return {0, 0, frame.width, frame.height}; }
  void hold() override { ++holds_; }
  void release(bool redraw) override;
  bool rightButtonDown() const override {
    ++rightButtonLooks;
    return rightButton;
  }
  uint32_t rightButtonPresses() const override { return rightPresses; }

  RecordingSurface* recording8() { return surface8_.get(); }

  Picture frame;  ///< what the window shows
  std::vector<Flush> flushes;
  std::function<void(const Flush&)> flushed;  ///< called when the pixels stand in the frame
  bool rightButton = false;
  uint32_t rightPresses = 0;
  mutable int rightButtonLooks = 0;

 private:
  void paint(const Rectangle& area);

  std::unique_ptr<RecordingSurface> surface8_;
  std::unique_ptr<QVVSurface24> surface32_;
  std::vector<Flush> invalid_;
  int holds_ = 0;
};

/// The pixels of a surface row by row from the top, without padding.
std::vector<uint8_t> indicesOf(const QVVSurface& surface);

/// A checkered card in warm colours that covers everything.
void drawOldCard(QVVSurface& surface, int32_t width, int32_t height);
/// Rings in cold colours round the middle; outside of them stands index 0.
void drawNewCard(QVVSurface& surface, int32_t width, int32_t height);
/// A slope of index `colour` that thins out towards one side; the rest is index 0.
void drawMask(QVVSurface& surface, int32_t width, int32_t height, uint8_t colour);

/// A view that shows the old card, and all that an engine needs. Stands on a current kernel.
class EffectStage {
 public:
  EffectStage(int32_t width, int32_t height, bool target32 = false);

  TransitionEngine engine(const TransitionPlace& place = {}, bool withMasks = false);
  /// Makes an engine and runs it; ticks from then on count from `startTick`.
  void run(const EffectCall& call, const TransitionPlace& place = {}, bool withMasks = false);
  uint32_t ticks() const { return tickCount() - startTick; }
  RandomDraw random();

  StageView view;
  QVVSurface oldCard, newCard, mask1, mask2;
  Event abort{"abort", Event::Reset::Manual};
  Pace pace{&abort};
  uint32_t startTick = 0;

 private:
  RandomGenerator generator_;
};

}  // namespace qv::testing
