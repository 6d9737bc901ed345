#include "audio/midi.h"

#include <mutex>
#include <utility>

#include "foundation/diagnostic.h"
#include "foundation/file.h"
#include "platform/services.h"
#include "platform/sound/midi_output.h"
#include "platform/text/shift_jis.h"

namespace qv {

namespace {
// A stop at once has no use for its time; every caller passes this.
constexpr uint32_t StopMillis = 2000;
}  // namespace

QVMidi::QVMidi()
    : control_("song", LockRank::Animation),
      lock_("step of a song", LockRank::Object),
      output_(services().midi) {
  available_ = output_ && output_->available();
}

QVMidi::~QVMidi() {
  stop(AtOnce, StopMillis);
}

// --- Playing ---

void QVMidi::loadMidi(const char* path) {
  stop(AtOnce, StopMillis);
  {
    const std::lock_guard guard(lock_);
    file_ = MidiFile();
    sequencer_.load(file_);
  }
  // No lock is held while a file is read: it may ask the player to retry.
  QVFile file;
  file.openName(path, OpenExisting, GenericRead, ShareRead, AttributeNormal);
  MidiFile read(file);
  file.close();

  const std::lock_guard control(control_);
  stop(AtOnce, StopMillis);
  const std::lock_guard guard(lock_);
  file_ = std::move(read);
  // Another thread may have loaded a song meanwhile, whose bytes have just gone.
  sequencer_.load(file_);
  if (!file_.valid()) return;
  fileName_.create(QVString::DefaultGrain, path);
}

void QVMidi::play(const char* path, int32_t mode, uint32_t fadeMillis, uint32_t loop) {
  if (!available_ || !path) return;
  loadMidi(path);
  const std::lock_guard control(control_);
  stop(AtOnce, StopMillis);
  {
    const std::lock_guard guard(lock_);
    opened_ = output_->open();
    if (!opened_) return;
    sequencer_.start(*output_, mode == FadeIn, fadeMillis, loop);
  }
  if (services().trace) trace("song", utf8OfShiftJis(path));
  timer_.start("song", PeriodMillis, [this] { step(PeriodMillis); });
}

void QVMidi::stop(int32_t mode, uint32_t millis) {
  if (!available_) return;
  if (mode == FadeOut) {
    const std::lock_guard guard(lock_);
    if (state() != Stopped) sequencer_.fadeOut(millis);
    return;
  }
  if (insideStep()) {
    closeOutput();
    return;
  }
  const std::lock_guard control(control_);
  // The timer's thread is gone before anything is silenced, so that nothing sounds behind that.
  timer_.stop();
  const std::lock_guard guard(lock_);
  if (state() != Stopped) closeOutput();
}

/// Under the lock. Whoever sees the state Stopped finds the device free, as soon as it has the
/// lock.
void QVMidi::closeOutput() {
  if (opened_ && state() != Stopped) sequencer_.stop();
  sequencer_.setState(Stopped);
  if (std::exchange(opened_, false)) output_->close();
}

void QVMidi::step(uint32_t elapsedMillis) {
  const std::lock_guard guard(lock_);
  if (!opened_) return;
  stepThread_ = Thread::currentId();
  sequencer_.step(elapsedMillis);
  // A fade that is over has stopped the song by itself; so may the output have from a message.
  if (state() == Stopped) {
    timer_.stop();
    closeOutput();
  }
  stepThread_ = 0;
}

bool QVMidi::insideStep() const {
  const uint32_t inside = stepThread_.load();
  return inside != 0 && inside == Thread::currentId();
}

void QVMidi::waitEnd(Event& abort) {
  while (available_ && state() != Stopped)
    if (abort.wait(WaitPollMillis) != WaitTimeout) throw ExitScenarioException();
}

QVString QVMidi::fileName() const {
  const std::lock_guard guard(lock_);
  return fileName_;
}

uint32_t QVMidi::loop() const {
  const std::lock_guard guard(lock_);
  return sequencer_.loop();
}

// --- The record ---

void QVMidi::set(State state, uint32_t loop, const char* path) {
  stop(AtOnce, StopMillis);
  const std::lock_guard guard(lock_);
  sequencer_.setState(state);
  sequencer_.setLoop(loop);
  fileName_.create(QVString::DefaultGrain, path);
}

void QVMidi::save(QVFile& file) const {
  if (!file.isOpen()) return;
  const State now = state();
  const uint32_t head[2] = {now != Stopped && now != FadingOut, loop()};
  file.write(head, sizeof head);
  fileName().save(file);
}

void QVMidi::load(QVFile& file, bool restart) {
  if (!file.isOpen()) return;
  stop(AtOnce, StopMillis);
  struct {
    uint32_t playing, loop, pathBytes;
  } head{};
  if (file.read(&head, sizeof head) != static_cast<int32_t>(sizeof head)) return;
  if (static_cast<int64_t>(head.pathBytes) > file.remaining()) return;
  file.seek(-static_cast<int64_t>(sizeof head.pathBytes), SeekFrom::Current);
  QVString path;
  path.load(file);
  {
    const std::lock_guard guard(lock_);
    sequencer_.setLoop(head.loop);
    fileName_ = path;
  }
  if (head.playing && restart) play(path.text(), AtOnce, StopMillis, head.loop);
}

}  // namespace qv
