#include "audio/wave.h"

#include <mutex>
#include <string>
#include <string_view>
#include <utility>

#include "foundation/diagnostic.h"
#include "foundation/path_name.h"
#include "graphics/animation/animation_area.h"
#include "platform/dialogs/dialogs.h"
#include "platform/files/file_system.h"
#include "platform/services.h"
#include "platform/text/shift_jis.h"

namespace qv {

namespace {

constexpr const char* PlayTitle = "QVWave - play()";
constexpr const char* StopTitle = "QVWave - stop()";
constexpr const char* WaitTitle = "QVWave - wait()";
constexpr const char* CapsTitle = "QVWave - getDeviceCaps()";
constexpr const char* NoMapper =
    "このコンピューターでは、wave mapperが利用できません。\n"
    "音声や効果音の再生は行われませんので、あらかじめご了承下さい。";
constexpr const char* OldThreadLives =
    "何らかの理由で、再生スレッドが終了していません。\n再生を中止して継続します。";
constexpr const char* CannotRead = "指定された wave ファイルを読み込めません\nファイル名：";
constexpr const char* DeviceTaken =
    "WAVE再生デバイスが開けません。\n"
    "他のアプリケーションが使用中である可能性があります。\n"
    "ゲーム中は、他のアプリケーションでWAVE再生を行わない方が良いでしょう。\n"
    "音声の再生をスキップして処理を継続します。";
constexpr std::string_view DiscPrefix = "%:";
constexpr const char* NoEnd = "スレッドの終了を待てませんでした。";

/// A file of the game as input. A missing one has no bytes: no box of the file floor is wanted
/// here, since a game goes on without a sound.
class GameFileInput : public WaveInput {
 public:
  explicit GameFileInput(const char* path) : files_(*services().files) {
    handle_ = files_.open(path, OpenExisting, GenericRead, ShareRead, AttributeNormal).handle;
    if (handle_ == FileSystem::NoHandle) return;
    const int64_t size = files_.size(handle_);
    size_ = size > 0 ? static_cast<uint64_t>(size) : 0;
  }
  ~GameFileInput() override {
    if (handle_ != FileSystem::NoHandle) files_.discard(handle_);
  }
  GameFileInput(const GameFileInput&) = delete;
  GameFileInput& operator=(const GameFileInput&) = delete;

  uint64_t size() override { return size_; }
  bool readAt(uint64_t at, std::span<uint8_t> bytes) override {
    if (at > size_ || files_.seek(handle_, static_cast<int64_t>(at), SeekFrom::Start) < 0)
      return false;
    return files_.read(handle_, bytes.data(), bytes.size()).bytes ==
           static_cast<int64_t>(bytes.size());
  }

 private:
  FileSystem& files_;
  FileSystem::Handle handle_ = FileSystem::NoHandle;
  uint64_t size_ = 0;
};

/// Whether a file of the data disc is named where there is no disc: the name has no drive then.
bool isOfMissingDisc(std::string_view name) {
  if (!name.starts_with(DiscPrefix)) return false;
  const QVPathName resolved(std::string(name).c_str());
  const std::string_view path = resolved.text();
  return path.size() < 2 || path[1] != ':';
}

}  // namespace

QVWave::QVWave()
    : started_("wave started", true),
      done_("wave done", true),
      idle_("wave idle", true),
      lock_("wave", LockRank::Wave),
      mouthLock_("wave mouth", LockRank::Wave) {
  getDeviceCaps();
}

QVWave::~QVWave() {
  stop();
}

void QVWave::getDeviceCaps() {
  output_ = services().wave;
  available_ = output_ && output_->available();
  if (!available_) services().dialogs->messageBox(sjis(NoMapper), CapsTitle, BoxNotice);
}

void QVWave::report(const char* text, const char* title) const {
  if (showErrors_) services().dialogs->messageBox(sjis(text), title, BoxNotice);
}

// --- The caller's side ---

void QVWave::play(const char* path, uint32_t loops, bool stopFirst, QVAnimationArea* mouth) {
  if (!available_ || !path) return;
  if (playing_) {
    if (stopFirst)
      stop();
    else
      wait();
  }
  if (!startThread(path, loops, mouth)) {
    report(OldThreadLives, PlayTitle);
    return;
  }
  started_.wait();
  tellFailure();
}

/// On the thread that asked for the sound, which stands still until the box is answered.
void QVWave::tellFailure() {
  std::string text;
  {
    const std::lock_guard guard(lock_);
    text.swap(failure_);
  }
  if (!text.empty() && showErrors_) services().dialogs->messageBox(text, PlayTitle, BoxNotice);
}

void QVWave::setFailure(std::string text) {
  const std::lock_guard guard(lock_);
  failure_ = std::move(text);
}

/// False while an earlier playback lives.
bool QVWave::startThread(const char* path, uint32_t loops, QVAnimationArea* mouth) {
  const std::lock_guard guard(lock_);
  if (playing_) return false;
  thread_.join();  // what is left of it is its very last step
  path_.create(QVString::DefaultGrain, path);
  loops_ = loops;
  {
    const std::lock_guard mouthGuard(mouthLock_);
    mouth_ = mouth;
  }
  stopRequested_ = false;
  done_.reset();
  started_.reset();
  idle_.reset();
  playing_ = true;
  thread_.start("wave", playThread, this);
  return true;
}

void QVWave::stop() {
  if (!available_ || !playing_) return;
  stopRequested_ = true;
  done_.set();
  if (idle_.wait(JoinMillis) == WaitTimeout) report(NoEnd, StopTitle);
}

void QVWave::wait(int32_t timeoutMillis) {
  if (!available_) return;
  done_.wait(timeoutMillis < 0 ? WaitForever : static_cast<uint32_t>(timeoutMillis));
  if (idle_.wait(JoinMillis) == WaitTimeout && showWaitTimeout_) report(NoEnd, WaitTitle);
}

QVString QVWave::currentPath() const {
  const std::lock_guard guard(lock_);
  return playing_ ? path_ : QVString();
}

void QVWave::setOnFinished(void (*onFinished)(uint32_t), uint32_t argument) {
  onFinished_ = onFinished;
  onFinishedArgument_ = argument;
}

void QVWave::forget(const QVAnimationArea* mouth) {
  const std::lock_guard guard(mouthLock_);
  if (!mouth || mouth_ == mouth) mouth_ = nullptr;
}

// --- The playback's side ---

void QVWave::playThread(void* wave) {
  auto& self = *static_cast<QVWave*>(wave);
  self.startPlayback();
  self.started_.set();
  if (self.open_) {
    self.done_.wait(WaitForever, WaitKind::Service);
    self.finishPlayback();
  }
  if (self.loaded_) self.dropSamples();
  self.done_.set();
  if (self.onFinished_) self.onFinished_(self.onFinishedArgument_);
  self.playing_ = false;
  self.idle_.set();
}

void QVWave::startPlayback() {
  QVString path;
  {
    const std::lock_guard guard(lock_);
    path = path_;
  }
  if (!loadWave(path.text())) {
    // Without a disc every line would bring its box: the first one speaks for all.
    if (!isOfMissingDisc(path.view()) || !std::exchange(missingDiscTold_, true))
      setFailure(sjis(CannotRead) + path.text());
    return;
  }
  if (!openDevice()) return;
  trace("wave", utf8OfShiftJis(path.view()));
  const std::lock_guard guard(mouthLock_);
  if (mouth_) mouth_->start(false);
}

bool QVWave::loadWave(const char* path) {
  try {
    GameFileInput input(QVPathName(path).text());
    std::optional<WaveFile> file = readWave(input);
    if (!file) return false;
    file_ = std::move(*file);
    return loaded_ = true;
  } catch (const NotEnoughMemoryException&) {
    return false;
  }
}

bool QVWave::openDevice() {
  if (!output_->open(file_.format, done_.handle())) {
    setFailure(sjis(DeviceTaken));
    return false;
  }
  // The opening signals as the end does. It is swallowed before the samples are written, so that
  // the end of the shortest sound is not swallowed with it, and neither is a stop.
  done_.reset();
  if (stopRequested_) done_.set();
  open_ = output_->write(file_.samples.span(), loops_ == 0 ? PlayForever : loops_);
  if (!open_) output_->close();
  return open_;
}

void QVWave::finishPlayback() {
  output_->reset();
  output_->close();
  open_ = false;
  const std::lock_guard guard(mouthLock_);
  if (mouth_) mouth_->stop(true);
}

void QVWave::dropSamples() {
  file_ = {};
  loaded_ = false;
  const std::lock_guard guard(mouthLock_);
  mouth_ = nullptr;
}

}  // namespace qv
