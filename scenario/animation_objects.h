#pragma once

/// The named objects of animation: cells, sequences, areas and films. Scenario thread; areas and
/// films have threads of their own, which know no manager.

#include "graphics/animation/animation_area.h"
#include "graphics/animation/animation_sequence.h"
#include "graphics/animation/animation_surface.h"
#include "graphics/animation/frame_film.h"
#include "scenario/object_kinds.h"
#include "scenario/relations.h"
#include "scenario/type_codes.h"

namespace qv {

class NamedAnimationSurface : public LogicalObject {
 public:
  int typeCode() const override { return TypeAnimationSurface; }
  void* native() override { return &surface_; }
  /// a1 a strip's file, a2 the number of cells, a3 their key.
  void create(QVScenario& manager, const ObjectArguments& arguments) override;

 private:
  QVAnimationSurface surface_;
};

class NamedAnimationSequence : public LogicalObject {
 public:
  int typeCode() const override { return TypeAnimationSequence; }
  void* sequence() override { return &sequence_; }
  /// a1 the text, a2 nonzero for one that stops at its end.
  void create(QVScenario& manager, const ObjectArguments& arguments) override;

 private:
  AnimationSequence sequence_;
};

class NamedAnimationArea : public LogicalObject {
 public:
  int typeCode() const override { return TypeAnimationArea; }
  void* native() override { return &area_; }
  /// a1 the rectangle on the view.
  void create(QVScenario& manager, const ObjectArguments& arguments) override;
  void stopAnimation(int32_t flag) override { area_.stop(flag != 0); }
  void forget(const void* member) override { area_.forget(member); }

 private:
  QVAnimationArea area_;
};

class NamedFrameFilm : public LogicalObject {
 public:
  int typeCode() const override { return TypeFrameFilm; }
  /// a1 the name of the pictures up to their number, a2 how many there are at most; 0: all.
  void create(QVScenario& manager, const ObjectArguments& arguments) override;
  FrameFilm& film() { return film_; }

 private:
  FrameFilm film_;
};

// The functions of their rows in the table of relations.
void connectViewToArea(QVScenario& manager, RelatedObject& view, RelatedObject& area,
                       const Relation::Numbers& numbers);
void disconnectViewFromArea(QVScenario& manager, RelatedObject& view, RelatedObject& area);
void connectAreaToSurface(QVScenario& manager, RelatedObject& area, RelatedObject& surface,
                          const Relation::Numbers& numbers);
void connectAreaToSequence(QVScenario& manager, RelatedObject& area, RelatedObject& sequence,
                           const Relation::Numbers& numbers);
void connectAreaToArea(QVScenario& manager, RelatedObject& area, RelatedObject& child,
                       const Relation::Numbers& numbers);

}  // namespace qv
