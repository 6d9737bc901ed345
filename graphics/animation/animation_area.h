#pragma once

/// QVAnimationArea: a place on a view where animations run while the scene goes on: a mouth, the
/// blinking prompt. It relates cells to sequences and steps them on a thread of its own.
///
/// Threads. What an area draws, and where, may be changed by one thread, the scenario's, also while
/// the area runs: what is taken away is not used any more when the call returns. `start` and `stop`
/// may come from any thread. The area's thread and its ticks take no lock of a higher floor, so an
/// area may be stopped under any of them.

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include "foundation/event.h"
#include "foundation/string.h"
#include "foundation/thread.h"
#include "graphics/animation/advance_receiver.h"
#include "graphics/animation/animation_sequence.h"
#include "graphics/animation/animation_surface.h"
#include "graphics/rectangle.h"
#include "graphics/view.h"

namespace qv {

/// What an area shows: cells in the order of a sequence, at a place in the area.
struct AnimationRelation {
  QVString name;
  int32_t x = 0, y = 0;
  int32_t number = 1;
  bool visible = true;
  QVAnimationSurface* surface = nullptr;
  AnimationSequence* sequence = nullptr;
};

class QVAnimationArea {
 public:
  static constexpr uint32_t TickMillis = 20;  ///< a tick takes that long at least
  static constexpr const char* DefaultRelation = "def$$QVAnimation";

  QVAnimationArea();
  virtual ~QVAnimationArea();  ///< stops the thread, and leaves its parents
  QVAnimationArea(const QVAnimationArea&) = delete;
  QVAnimationArea& operator=(const QVAnimationArea&) = delete;

  /// Adds a relation; nothing unless surface and sequence are there. An area that was set to a
  /// point grows with its relations. Throws NotEnoughMemoryException.
  virtual void relateContainer(const char* name, QVAnimationSurface* surface,
                               AnimationSequence* sequence, int32_t number, int32_t x, int32_t y,
                               bool visible);
  /// Gives the default relation cells; an empty area gets the size of the first.
  virtual void relate(QVAnimationSurface* surface);
  virtual void relateSequence(AnimationSequence* sequence);
  /// What the area draws into: a view's surface, or none. Its former view is left as it is.
  virtual void setView(View* view);
  /// A surface that no view shows.
  virtual void setTarget(QVVSurface* surface);
  virtual void setRect(const Rectangle& rectangle);
  virtual void setPosition(int32_t x, int32_t y);
  /// Draws the child in each round. False, and nothing, when it is a child already or when the area
  /// itself would be drawn by it.
  virtual bool addChild(QVAnimationArea& child);
  void removeChild(QVAnimationArea& child);
  void setAutoAdvance(const AutoAdvance& advance);
  /// Cells, a sequence or a click map (as what it was made) that will be gone: relations with them
  /// end, and nothing is posted to the map any more.
  void forget(const void* member);

  /// Copies the target's pixels under the area, to which a restore goes back. Nothing without a
  /// target or an extent. Throws NotEnoughMemoryException.
  virtual void backup();
  /// Starts the thread; nothing without a target, without relations, or while it runs. Returns when
  /// it runs. `routine` null: ticks until the animation ends; `argument` null: this area.
  virtual void start(bool takeBackup, QVThread::Function routine = nullptr,
                     void* argument = nullptr);
  /// Waits until the thread has ended. With `restore` all relations then show their first cell over
  /// the backup, also when no thread ran.
  virtual void stop(bool restore);
  bool running() const { return running_; }

  /// One step: draws, and shows it on the view. False when the animation has ended, when it is to
  /// stop, and when there is nothing to draw.
  virtual bool tick();
  /// Waits until TickMillis have passed since the mark, or for the stop. False when it is to stop.
  bool pace(uint32_t markTick);
  /// Draws one round and adds what changed to `drawn`. `frozen`: the first cells, without a step.
  /// False when something has ended.
  virtual bool drawNow(Rectangle& drawn, bool frozen);

  Rectangle rectangle() const;
  std::vector<AnimationRelation> relations() const;

 private:
  struct Scene;
  class Use;

  AnimationRelation& defaultRelation();
  void add(const char* name, const AnimationRelation& relation, const char* failureTitle);
  bool reaches(const QVAnimationArea& other) const;
  void takeTarget(View* view, QVVSurface* target);
  void leaveParent(QVAnimationArea& parent);
  void waitUntilUnused();
  bool isOwnThread() const;
  bool canDraw() const;
  void restore();
  void reportEnd();
  static void runThread(void* area);
  static void playToEnd(void* area);
  static bool drawRelations(const Scene& scene, Rectangle& drawn, bool frozen);
  static void drawCell(const Scene& scene, const AnimationRelation& relation,
                       const AnimationSequence::Frame& frame, Rectangle& drawn);

  Lock control_;  ///< one start or stop at a time; held while the thread is waited for
  QVThread thread_;
  QVThread::Function routine_ = nullptr;
  void* argument_ = nullptr;
  QVEvent started_;
  QVEvent stop_;  ///< set while the thread is to end
  std::atomic<bool> running_ = false;
  std::atomic<uint32_t> threadId_ = 0;  ///< of the last thread

  mutable Lock lock_;  ///< guards all below; held for moments and through a backup's blit, never
                       ///< while cells are drawn
  QVEvent unused_;     ///< set while no thread uses what the area draws
  int uses_ = 0;
  View* view_ = nullptr;
  QVVSurface* target_ = nullptr;
  std::unique_ptr<QVVSurface> backup_;
  Rectangle backupPlace_;  ///< on the target; empty: there is no backup
  Rectangle rectangle_;
  bool grows_ = true;  ///< it was set to a point
  std::vector<AnimationRelation> relations_;
  std::vector<QVAnimationArea*> children_, parents_;
  AutoAdvance advance_;
};

}  // namespace qv
