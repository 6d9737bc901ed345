#include "host/silent_sound.h"

#include "platform/sound/disc_player.h"

namespace qv {

SilentSound::SilentSound(std::unique_ptr<DiscPlayer> disc) : disc_(std::move(disc)) {}
SilentSound::~SilentSound() = default;

}  // namespace qv
