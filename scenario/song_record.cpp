#include "scenario/song_record.h"

#include "foundation/file.h"

namespace qv {

void SongRecord::play(const char* path, int32_t mode, uint32_t, uint32_t loop) {
  path_.create(QVString::DefaultGrain, path);
  loop_ = loop;
  state_ = mode == FadingIn ? FadingIn : Playing;
}

void SongRecord::stop(int32_t mode, uint32_t) {
  if (state_ == Stopped) return;
  state_ = mode == FadingOut ? FadingOut : Stopped;
}

void SongRecord::set(State state, uint32_t loop, const char* path) {
  state_ = state;
  loop_ = loop;
  path_.create(QVString::DefaultGrain, path);
}

void SongRecord::save(QVFile& file) const {
  if (!file.isOpen()) return;
  const uint32_t head[2] = {state_ != Stopped && state_ != FadingOut, loop_};
  file.write(head, sizeof head);
  path_.save(file);
}

void SongRecord::load(QVFile& file, bool restart) {
  if (!file.isOpen()) return;
  stop(Stopped, 2000);
  struct {
    uint32_t playing, loop, pathBytes;
  } head{};
  if (file.read(&head, sizeof head) != static_cast<int32_t>(sizeof head)) return;
  if (static_cast<int64_t>(head.pathBytes) > file.remaining()) return;
  file.seek(-static_cast<int64_t>(sizeof head.pathBytes), SeekFrom::Current);
  path_.load(file);
  loop_ = head.loop;
  if (head.playing && restart) {
    const QVString path = path_;
    play(path.text(), 0, 2000, loop_);
  }
}

}  // namespace qv
