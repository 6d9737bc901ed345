#pragma once

/// QVScenario: the one manager of a game. It owns the register files and the named objects;
/// scenes and commands never hold an object, they name it. Registers belong to the scenario
/// thread; the object list has a lock, which the UI thread never takes.

#include <cstdint>
#include <initializer_list>
#include <list>
#include <memory>

#include "audio/midi.h"
#include "audio/wave.h"
#include "foundation/string.h"
#include "graphics/colour_key.h"
#include "platform/kernel/kernel.h"
#include "scenario/object_kinds.h"
#include "scenario/random.h"
#include "scenario/registers.h"
#include "scenario/scenario_host.h"
#include "scenario/scene_function.h"

namespace qv {

class QVClickMap;
class QVFile;

/// Names of the sound players where a time could stand.
inline constexpr int32_t ChannelMidi = -11, ChannelWave = -10;

/// What a scene can learn about the MIDI device.
struct MidiCaps {
  char name[32] = {};
  uint16_t channelMask = 0;  ///< a bit a channel that it plays
};

class QVScenario {
 public:
  QVScenario();
  /// Puts the external font back and releases everything, so the host must still be there.
  virtual ~QVScenario();
  QVScenario(const QVScenario&) = delete;
  QVScenario& operator=(const QVScenario&) = delete;

  /// Makes the registers and reads the system file, "NAME.system.dat", where there is one.
  virtual void Open(const char* applicationName, int32_t registers, int32_t strings,
                    int32_t systemRegisters);
  virtual void Start(ScenarioHost* host, const char* applicationName, int32_t registers,
                     int32_t strings, int32_t systemRegisters);

  void SetSceneName(const char* name);
  const QVString& sceneName() const { return sceneName_; }

  int32_t& Reg(int32_t number) { return registers_.item(number); }
  QVString& StrReg(int32_t number) { return strings_.item(number); }
  int32_t& SysReg(int32_t number) { return systemRegisters_.item(number); }
  /// Stores; with `writeThrough` the system file is rewritten at once.
  int32_t& SetSysReg(int32_t number, int32_t value, int32_t writeThrough);

  // Named objects. A null name makes every operation do nothing.

  /// A taken name, a code of no kind and a kind that is not built yet change nothing, silently.
  void CreateObject(const char* name, int32_t code, const ObjectArguments& arguments = {});
  /// The same for code 46, but a click map of that name is replaced, and a name of another kind
  /// is reported in a box.
  void CreateClickMap(const char* name, const ObjectArguments& arguments = {});

  // Click maps (clicks.cpp). A name that is none does nothing, except of the waits.

  /// A map of one region; `hoverEnabled`: moves of the pointer are reported.
  void CreateClickMap(const char* name, int32_t width, int32_t height, int32_t fill,
                      int32_t hoverEnabled);
  /// The same in the size of a view's client; it still is to be connected to the view.
  void CreateClickMapOver(const char* name, const char* view, int32_t region, int32_t hoverEnabled);
  /// From a bitmap, a map file, or a picture of the game whose indices are the regions.
  void LoadClickMap(const char* name, const char* file, int32_t hoverEnabled);
  void AddClickRect(const char* name, int32_t x, int32_t y, int32_t width, int32_t height,
                    int32_t region);
  void StampClickMap(const char* name, const char* other, int32_t x, int32_t y, ColourKey key);
  /// The interval of ClickTickWait, which begins now.
  void SetClickTick(const char* name, uint32_t millis);
  /// Lets the next wait tell what lies under the pointer.
  void RequestHover(const char* name, int32_t nudge);
  /// -2 on time-out, -1 the right button, else a region, 2048 + key, 4096 + region entered. Tenths
  /// of a second; 0 and -1 are for ever. A name that is no map, and a map without a view, are told
  /// in a box and give -1. Raises on abort.
  int32_t ClickWait(const char* name, int32_t tenths, int32_t keys);
  /// The same until `millis`, or the map's tick for 0, have passed since its last return.
  int32_t ClickTickWait(const char* name, uint32_t millis, int32_t keys);

  // Cursors (controls.cpp). The file or number is as QVCursor takes it.

  void CreateCursor(const char* name, ObjectArgument fileOrNumber);
  /// What the pointer looks like over a view, or over a frame's client; nothing for a name that is
  /// no window.
  void SetCursor(const char* window, ObjectArgument nameOrNumber);

  void DestroyObject(const char* name);
  /// One after the other; a null among the names ends the list.
  void DestroyObjects(std::initializer_list<const char*> names);
  LogicalObject* FindObject(const char* name, int32_t code = 0);
  void* FindNative(const char* name, int32_t code = 0);
  WindowObject* FindWindow(const char* name);
  /// The view of that name, or a frame's client view; null for any other window.
  WindowObject* FindView(const char* name);
  // Views and windows (views.cpp). A name that is none does nothing.

  /// The rectangle may be given from any corner. `flags`: WindowHidden, WindowExtraWord. `extra` is
  /// the caption, as in CreateObject; `code` TypeSecondView makes the 32-bit form.
  void CreateView(const char* name, const char* parent, int32_t x, int32_t y, int32_t w, int32_t h,
                  int32_t flags, ObjectArgument extra = {}, int32_t code = TypeView);
  /// Draws a surface, a view, a picture file, or a plain colour (source 0 or -1: index 0 or 255)
  /// onto a surface, or by a numbered effect onto a view. A width or height of 0 is the source's;
  /// x and y onto a view may be position codes. Effect 9 takes x as its number of steps. Without
  /// `flush` a view's surface is drawn and the screen is not. Onto a print area the source is a
  /// text, which is printed with the pen at x, y.
  void DrawTo(const char* target, ObjectArgument source, int32_t x, int32_t y, int32_t w, int32_t h,
              int32_t sx, int32_t sy, int32_t effect = 1, ColourKey key = KeyNone,
              int32_t extra = 0, int32_t flush = 1);
  /// Fades the whole view to a grey and fills it with the index of that number; with `keep` its
  /// colours come back, unseen until it is next flushed.
  void FadeView(const char* name, int32_t steps, int32_t grey, int32_t keep);
  /// A click map gets its origin so. x may be a position code, of frames alone: in the middle of
  /// what the window lies in or of the screen, or at the pointer and kept on the screen. The size
  /// always stays.
  void MoveWindow(const char* name, int32_t x, int32_t y, int32_t keepSize = 1);
  /// Stretches a surface over an 8-bit view from one rectangle to another (zoom_view.cpp), each
  /// frame on what `clear` says: -1 nothing, below 256 an index, else the name of a surface or of a
  /// picture file. Onto a named surface it is stretched once, to the second rectangle.
  void ZoomView(const char* view, const char* surface, int32_t x0, int32_t y0, int32_t w0,
                int32_t h0, int32_t x1, int32_t y1, int32_t w1, int32_t h1, int32_t steps,
                ObjectArgument clear);
  void ShowWindow(const char* name, int32_t visible);
  void HoldView(const char* name);
  void ReleaseView(const char* name, int32_t redraw);
  /// Fills a named surface, or a view, which is then shown. A view of 32 bits has no colours of its
  /// own: the index is one of a new surface's.
  void FillObject(const char* name, int32_t index);
  /// Gives a surface or a view the colours of a surface, a view or a picture file. A view of 32
  /// bits neither has colours to give nor takes any.
  void CopyPalette(const char* target, const char* source);
  /// The window's outline from a named surface, which stays as it is.
  void SetClipShape(const char* window, const char* surface, ColourKey key);

  void ConnectObjects(const char* nameA, const char* nameB, int32_t number1 = 0,
                      int32_t number2 = 0, int32_t number3 = 0);
  void DisconnectObjects(const char* nameA, const char* nameB);

  // Animation. A name of nothing, or of another kind, makes them do nothing.

  void RelateAnimation(const char* areaName, const char* surfaceName, const char* sequenceName,
                       int32_t number, int32_t x, int32_t y, int32_t visible);
  /// Starts an area, with `flag` over a backup of what it covers; or an animation control.
  void ShowArea(const char* name, int32_t flag);
  /// Stops an area, with `flag` back to its first cells; a film; or an animation control.
  void HideArea(const char* name, int32_t flag);
  /// Plays a film on a view, from the picture of that number unless it is 0; with `wait` it returns
  /// when the film has ended, or at the abort. An area is started.
  void PlayDrawAnimation(const char* name, const char* viewName, int32_t wait, int32_t firstFrame,
                         intptr_t word);
  /// What an area does when it has run to its end: posts `code` to a click map, or without a map's
  /// name presses Space. Not `wanted`: nothing, as at first.
  void SetAutoAdvance(const char* areaName, int32_t wanted, const char* mapName = nullptr,
                      int32_t code = 0);

  // Songs (songs.cpp).

  /// Plays a song at once; `loop` nonzero plays it for ever.
  void PlayMidi(const char* path, int32_t loop);
  /// 1 when there is a MIDI device. With `caps` it is described there, and 0 leaves that alone.
  int32_t MidiDeviceCaps(MidiCaps* caps);

  // Sounds (sounds.cpp). A channel is ChannelWave or ChannelMidi; any other does nothing.

  /// Starts a wave: `loops` 0 for ever, else how often. Without `stopFirst` it waits for the end of
  /// what sounds, or for the abort, and then starts nothing. `areaName` names an animation area
  /// that moves with it; null, or the name of anything else, none.
  void PlayWave(const char* path, uint32_t loops, int32_t stopFirst, const char* areaName);
  void StopSound(int32_t channel);
  /// Tenths of a second, or the channel whose end is waited for. Raises on abort.
  void WaitSound(int32_t tenths);
  /// A song that fades does not count.
  bool IsSoundPlaying(int32_t channel);
  /// Songs alone can fade; one that fades in loops.
  void FadeInSound(int32_t channel, const char* path, uint32_t millis);
  void FadeOutSound(int32_t channel, uint32_t millis);

  /// Registers, scene name and song to an open file, then the system file is rewritten.
  void SaveState(QVFile& file);
  /// The reverse; gives the scene that the file names, or nothing. `callback` is called with the
  /// manager's lock held; `releaseAll` destroys all windows and objects first.
  SceneFunction RestoreState(QVFile& file, void (*callback)() = nullptr, int32_t releaseAll = 0,
                             int32_t restartMusic = 0);
  /// Ends a run: stops sound and animation, destroys all windows and objects. Gives 0. Never
  /// raises, since it runs behind an abort too.
  int32_t Release();
  /// Nothing is ever put on the second list; the run's end empties it.
  void EmptySecondList();

  /// Without a hitret name the host's input wait, `time` in tenths of a second. With one the
  /// hitret's own wait, whose keys are numbered as the window system does; 0 for a name of none.
  int32_t WaitInput(const char* hitretName, int32_t time);
  uint32_t Random(uint32_t limit);
  /// Makes a file the font of external characters; null puts the player's own back.
  void SetExternalFont(const char* fileName, int32_t unused = 0);

  ScenarioHost* host() const { return host_; }
  QVWave& wave() { return wave_; }
  QVMidi& midi() { return midi_; }
  // The register files themselves, for who looks at them from outside while a scene waits.
  QVReg& registers() { return registers_; }
  QVStrReg& strings() { return strings_; }
  QVReg& systemRegisters() { return systemRegisters_; }
  const QVMidi& midi() const { return midi_; }

 private:
  using ObjectList = std::list<std::unique_ptr<LogicalObject>>;

  // The song's halves of the operations that name a channel.
  void stopSong();
  bool songPlaying() const;
  void fadeInSong(const char* path, uint32_t millis);
  void fadeOutSong(uint32_t millis);
  void waitSong();  ///< raises on abort

  ObjectList::iterator findPlace(const char* name);
  void addObject(const ObjectKind& kind, const char* name, const ObjectArguments& arguments);
  void stopAnimations();
  void destroyWindows(int32_t code);
  QVString systemFileName() const;
  void readDefaultFont();
  void readSystemFile();
  void writeSystemFile();
  QVClickMap* mapToWaitOn(const char* name);

  // The order is part of the design: members go in the reverse of it.
  ScenarioHost* host_ = nullptr;
  QVString applicationName_;
  QVString sceneName_;
  QVReg registers_;
  QVStrReg strings_;
  QVWave wave_;
  QVMidi midi_;
  QVString defaultFont_;
  QVString currentFont_;
  RandomGenerator random_;
  Lock lock_;  ///< guards the object list
  ObjectList objects_;
  ObjectList secondObjects_;
  QVReg systemRegisters_;
};

/// The manager that scenes and handles use: null until sc_start has set it.
extern QVScenario* theScenario;

}  // namespace qv
