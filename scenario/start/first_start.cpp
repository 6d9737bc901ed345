#include "scenario/start/first_start.h"

#include <cstdint>

#include "scenario/commands.h"
#include "scenario/register_numbers.h"

namespace qv {

namespace {

constexpr int32_t On = 1, WriteThrough = 1;
constexpr int32_t FirstWindowColour = 5, FirstDeviceKind = 1;

// In this order, which is the file's history for who looks at it while it is written.
constexpr int32_t Switches[] = {VoiceEnabled,          SpeakerVoiceFirst,     SpeakerVoiceFirst + 1,
                                SpeakerVoiceFirst + 2, SpeakerVoiceFirst + 3, SpeakerVoiceFirst + 4,
                                SpeakerVoiceFirst + 5, SpeakerVoiceFirst + 6, SpeakerVoiceFirst + 7,
                                OtherVoiceEnabled,     EffectsEnabled,        SoundEffectsEnabled};

struct BoxPlace {
  int32_t number, value;
};
// Where the boxes first open: x and y of each pair.
constexpr BoxPlace BoxPlaces[] = {{202, 96},  {200, 96},  {203, 124}, {201, 124}, {204, 122},
                                  {205, 172}, {210, 167}, {208, 167}, {206, 167}, {211, 191},
                                  {209, 191}, {207, 191}, {212, 16},  {213, 16}};

}  // namespace

void setFirstStartDefaults() {
  if (SysReg(FirstRunDone) != 0) return;
  // Until there is a form that asks for it, the first kind of device plays.
  SetSysReg(MidiDeviceKind, FirstDeviceKind, WriteThrough);
  SetSysReg(BgmEnabled, On, WriteThrough);
  SetSysReg(FirstRunDone, On, WriteThrough);
  for (const int32_t number : Switches)
    SetSysReg(number, On, WriteThrough);
  SetSysReg(WindowColour, FirstWindowColour, WriteThrough);
  for (const BoxPlace& place : BoxPlaces)
    SysReg(place.number) = place.value;
}

}  // namespace qv
