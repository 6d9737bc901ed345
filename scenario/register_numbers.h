#pragma once

/// Numbers of registers: fixed contract numbers, one home each. They stand in saves and in every
/// scene, so a number never changes its meaning.

#include <cstdint>

namespace qv {

/// Sizes that sc_start asks for.
inline constexpr int32_t RegisterCount = 2500, StringRegisterCount = 256,
                         SystemRegisterCount = 2048;

// --- Numeric registers: the running game, part of every save ---

inline constexpr int32_t RestoreRedrawRegister = 5;  ///< set while a restored game redraws itself
inline constexpr int32_t ResumePendingRegister = 6;  ///< nonzero: a save was just loaded
inline constexpr int32_t StepRegister = 7;           ///< the step that runs next, from 1
inline constexpr int32_t MessageHiddenRegister = 8;  ///< 1: the message window is hidden
inline constexpr int32_t MouthRunningRegister = 9;   ///< slot whose mouth moves, or 254

// Picture slot 0 is the narrow one; slots 1 to 5 are alike, ten registers apart.
inline constexpr int32_t Slot0SpeakerRegister = 10, Slot0MouthRunningRegister = 11,
                         Slot0ClearedRegister = 12, Slot0MouthXRegister = 14,
                         Slot0MouthYRegister = 15, Slot0MouthKeyRegister = 16;
inline constexpr int32_t PictureSlotBaseRegister = 20, PictureSlotStride = 10, PictureSlotCount = 5;

inline constexpr int32_t BgmLastRegister = 48, BgmCurrentRegister = 251;  ///< 0: no song
inline constexpr int32_t SpeakerOnScreenRegister = 68, VoiceRunningRegister = 69;
inline constexpr int32_t HoverRegister = 70, PendingCodeRegister = 72;
inline constexpr int32_t RestoreClearedRegister = 71;  ///< cleared at restore, with 93
inline constexpr int32_t SeCurrentRegister = 73, SeLoopRegister = 74;
inline constexpr int32_t StaffScrollFirstRegister = 80, StaffScrollLastRegister = 83;
inline constexpr int32_t WaitKindRegister = 90, PendantSuppressRegister = 91,
                         PendantShownRegister = 93;
inline constexpr int32_t SaveActionRegister =
    92;  ///< 1 screen, 3 and 4 quick save and load, 5 auto
inline constexpr int32_t AffectionFirstRegister = 100, AffectionCount = 8;
inline constexpr int32_t SaveBookkeepingRegister = 109, SelectionBookkeepingRegister = 140,
                         SelectionResultRegister = 149, AutoSaveBookkeepingRegister = 253;
inline constexpr int32_t CutWindowStateRegister = 141, CutWindowSecondStateRegister = 142;
inline constexpr int32_t RouteFlagFirstRegister = 145, RouteFlagLastRegister = 148;
inline constexpr int32_t ChapterCounterFirstRegister = 200, ChapterCounterCount = 11;
inline constexpr int32_t SavedStateRegister = 254;  ///< 1 from a save or load to the next click
inline constexpr int32_t StoryFlag509Register = 509, StoryFlag510Register = 510;
inline constexpr int32_t StoryFlagFirstRegister = 600, StoryFlagLastRegister = 670,
                         CalendarFlagFirstRegister = 655;  ///< from here the calendar reads too
inline constexpr int32_t ChapterRegister = 2000, CalendarMonthRegister = 2001,
                         CalendarDayRegister = 2002;

// --- String registers: part of every save ---

inline constexpr int32_t BackgroundName = 10, EventPictureName = 11;  ///< then slots 1 to 5
inline constexpr int32_t FirstMouthFile = 21;                         ///< of slot 0; slots 1 to 5
inline constexpr int32_t HeroFamilyName = 1, HeroGivenName = 2, SpeakerName = 30,
                         MessageAccumulator = 31, MessagePending = 32, MessageLast = 33;
inline constexpr int32_t HistoryNames = 100, HistoryMessages = 171, HistoryLength = 71;

// --- System registers: what outlives a game, in the system file ---

inline constexpr int32_t EffectsEnabled = 31;   ///< 0: fades shrink to four steps
inline constexpr int32_t SkipMode = 36;         ///< message skip is on; cleared at restore
inline constexpr int32_t QuickPanelShown = 41;  ///< cleared at restore
inline constexpr int32_t BgmEnabled = 42, SoundEffectsEnabled = 43;
inline constexpr int32_t DramaMode = 47;  ///< drama presentation of messages
inline constexpr int32_t VoiceEnabled = 49;
inline constexpr int32_t SpeakerVoiceFirst = 51, SpeakerVoiceLast = 58;  ///< one per speaker class
inline constexpr int32_t OtherVoiceEnabled = 59;
inline constexpr int32_t NextQuickRegister = 61;  ///< the quick slot to write next, 0 to 2
inline constexpr int32_t WindowColour = 64;       ///< tint of the message frame, 0 to 7
inline constexpr int32_t SlotInfo = 70, SlotInfoStride = 3;  ///< chapter, month, day of each slot
inline constexpr int32_t QuickSlotInfo = 100, AutoSlotInfo = 109;
inline constexpr int32_t DemonstrationActive = 150, EndingBookkeeping = 151;
// Where boxes and the pendant were left, as pairs x, y.
inline constexpr int32_t SaveBoxX = 200, SaveBoxY = 201, LoadBoxX = 202, LoadBoxY = 203,
                         QuickLoadBoxX = 204, QuickLoadBoxY = 205, QuestionBoxX = 206,
                         QuestionBoxY = 207, NoticeBoxX = 208, NoticeBoxY = 209, PopupBoxX = 210,
                         PopupBoxY = 211;
inline constexpr int32_t CutWindowX = 212, CutWindowY = 213;
inline constexpr int32_t FirstRunDone = 250;  ///< 0 on the very first start alone
inline constexpr int32_t MidiDeviceKind = 252;
inline constexpr int32_t LastSlotRegister = 299;  ///< the hand slot written last
inline constexpr int32_t PictureSeenBase = 300;   ///< a seen picture n is register 300 + n
inline constexpr int32_t GallerySeenFirst = 460, GallerySeenLast = 552;
inline constexpr int32_t GalleryPage = 600;  ///< 0 to 8

}  // namespace qv
