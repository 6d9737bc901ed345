#include "host/volumes.h"

#include <algorithm>

#include "platform/settings/settings_store.h"

namespace qv {

namespace {

constexpr const char* Key = "Player\\Volumes";
constexpr std::array<const char*, VolumeCount> Names{"Whole", "Music", "Wave", "Disc"};
constexpr uint32_t NumberType = 4;
constexpr size_t NumberBytes = 4;
constexpr int32_t Loudest = 100;

std::optional<int32_t> kept(const SettingsStore& settings, const char* name) {
  const auto value = settings.get(Key, name);
  if (!value || value->type != NumberType || value->data.size() != NumberBytes) return std::nullopt;
  uint32_t number = 0;
  for (size_t i = NumberBytes; i-- > 0;)
    number = number << 8 | value->data[i];
  return static_cast<int32_t>(std::min<uint32_t>(number, Loudest));
}

void keep(SettingsStore& settings, const char* name, int32_t percent) {
  SettingValue value{.type = NumberType, .data = {}};
  for (size_t i = 0; i < NumberBytes; ++i)
    value.data.push_back(static_cast<uint8_t>(percent >> 8 * i));
  settings.set(Key, name, std::move(value), true);
}

}  // namespace

void takeVolumes(SettingsStore& settings, const WantedVolumes& wanted, HostVolumes& volumes) {
  const std::array<std::atomic<int32_t>*, VolumeCount> targets{&volumes.whole, &volumes.music,
                                                               &volumes.wave, &volumes.disc};
  for (size_t i = 0; i < VolumeCount; ++i) {
    if (wanted[i]) keep(settings, Names[i], std::clamp(*wanted[i], 0, Loudest));
    *targets[i] = kept(settings, Names[i]).value_or(Loudest);
  }
}

}  // namespace qv
