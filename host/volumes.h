#pragma once

/// The player's volumes as settings: kept in the player's folder, and changed for good by options.

#include <array>
#include <cstdint>
#include <optional>

#include "platform/sound/mixer.h"

namespace qv {

class SettingsStore;

/// In the order whole, music, wave, disc.
inline constexpr size_t VolumeCount = 4;
using WantedVolumes = std::array<std::optional<int32_t>, VolumeCount>;

/// Sets what is wanted, else what was kept, else 100; and keeps what is wanted.
void takeVolumes(SettingsStore& settings, const WantedVolumes& wanted, HostVolumes& volumes);

}  // namespace qv
