#include "scenario/start/first_start.h"

#include <cstdint>

#include "scenario/commands.h"
#include "scenario/register_numbers.h"

namespace qv {

namespace {

constexpr int32_t On = 1, WriteThrough = 1;
constexpr int32_t FirstWindowColour = 5, FirstDeviceKind = 1;

// Each is written through to the system file before the next is set, in this fixed order.
constexpr int32_t Switches[] = {VoiceEnabled,          SpeakerVoiceFirst,     SpeakerVoiceFirst + 1,
                                SpeakerVoiceFirst + 2, SpeakerVoiceFirst + 3, SpeakerVoiceFirst + 4,
                                SpeakerVoiceFirst + 5, SpeakerVoiceFirst + 6, SpeakerVoiceFirst + 7,
                                OtherVoiceEnabled,     EffectsEnabled,        SoundEffectsEnabled};

struct FirstPlace {
  int32_t number, value;
};
// Where the boxes first open and the pendant first stands. They wait in their registers for the
// next setting that is written.
constexpr FirstPlace FirstPlaces[] = {{LoadBoxX, 96},   {SaveBoxX, 96},       {LoadBoxY, 124},
                                      {SaveBoxY, 124},  {QuickLoadBoxX, 122}, {QuickLoadBoxY, 172},
                                      {PopupBoxX, 167}, {NoticeBoxX, 167},    {QuestionBoxX, 167},
                                      {PopupBoxY, 191}, {NoticeBoxY, 191},    {QuestionBoxY, 191},
                                      {CutWindowX, 16}, {CutWindowY, 16}};

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
  for (const FirstPlace& place : FirstPlaces)
    SysReg(place.number) = place.value;
}

}  // namespace qv
