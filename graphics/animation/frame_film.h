#pragma once

/// FrameFilm: numbered pictures of one folder, shown one after the other as fast as they can be
/// loaded, on a thread of its own. One thread drives a film.

#include <atomic>
#include <cstdint>

#include "foundation/event.h"
#include "foundation/string.h"
#include "foundation/thread.h"
#include "graphics/view.h"

namespace qv {

class FrameFilm {
 public:
  static constexpr int32_t MostFrames = 10'000;  ///< numbers have four digits
  /// Called behind each picture, on the film's thread, with the word given to `start`.
  using Routine = void (*)(FrameFilm& film, intptr_t word);

  FrameFilm();
  virtual ~FrameFilm();  ///< stops
  FrameFilm(const FrameFilm&) = delete;
  FrameFilm& operator=(const FrameFilm&) = delete;

  /// Counts the files base + "0000" + extension and on; the first that is missing ends the film.
  /// Stops a film that runs. A null base is a film without pictures.
  void setFiles(const char* base, const char* extension = ".bmp");
  int32_t frameCount() const { return frameCount_; }
  /// No more than that many pictures.
  void limitFrames(int32_t count);
  void setFirstFrame(int32_t frame);
  void setRoutine(Routine routine) { routine_ = routine; }

  /// Shows the film on the view; nothing while it runs, or without a view of 8 bits. With `wait` it
  /// returns when the film has ended. Its routine neither starts nor awaits it.
  void start(View* view, intptr_t word = 0, bool wait = false);
  /// Ends the film behind the picture that is being shown, and waits for that; a film's routine
  /// does not wait for itself.
  void stop();
  bool running() const { return running_; }
  /// Set while no film runs.
  QVEvent& ended() { return ended_; }

 private:
  QVString fileName(int32_t frame) const;
  bool isOwnThread() const;
  bool showFrame(int32_t frame);
  static void runThread(void* film);

  QVString base_, extension_;
  int32_t frameCount_ = 0, firstFrame_ = 0;
  Routine routine_ = nullptr;
  View* view_ = nullptr;
  intptr_t word_ = 0;
  QVThread thread_;
  QVEvent ended_;
  std::atomic<bool> stopFlag_ = false, running_ = false;
  std::atomic<uint32_t> threadId_ = 0;  ///< of the last thread
};

}  // namespace qv
