#pragma once

/// QVScenario: the one manager of a game. It owns the register files and the named objects;
/// scenes and commands never hold an object, they name it. Registers belong to the scenario
/// thread; the object list has a lock, which the UI thread never takes.

#include <cstdint>
#include <initializer_list>
#include <list>
#include <memory>

#include "foundation/string.h"
#include "graphics/colour_key.h"
#include "platform/kernel/kernel.h"
#include "scenario/object_kinds.h"
#include "scenario/random.h"
#include "scenario/registers.h"
#include "scenario/scenario_host.h"
#include "scenario/scene_function.h"
#include "scenario/song_record.h"

namespace qv {

class QVFile;

/// Names of the sound players where a time could stand.
inline constexpr int32_t ChannelMidi = -11, ChannelWave = -10;

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
  /// `flush` a view's surface is drawn and the screen is not.
  void DrawTo(const char* target, ObjectArgument source, int32_t x, int32_t y, int32_t w, int32_t h,
              int32_t sx, int32_t sy, int32_t effect = 1, ColourKey key = KeyNone,
              int32_t extra = 0, int32_t flush = 1);
  /// Fades the whole view to a grey and fills it with the index of that number; with `keep` its
  /// colours come back, unseen until it is next flushed.
  void FadeView(const char* name, int32_t steps, int32_t grey, int32_t keep);
  /// x may be a position code, of frames alone: in the middle of what the window lies in or of the
  /// screen, or at the pointer and kept on the screen. The size always stays.
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

  /// Without a hitret name the host's input wait, `time` in tenths of a second.
  int32_t WaitInput(const char* hitretName, int32_t time);
  /// Tenths of a second, or the name of a player whose end is waited for. Raises on abort.
  void WaitSound(int32_t tenths);
  uint32_t Random(uint32_t limit);
  /// Makes a file the font of external characters; null puts the player's own back.
  void SetExternalFont(const char* fileName, int32_t unused = 0);

  ScenarioHost* host() const { return host_; }
  SongRecord& song() { return song_; }
  // The register files themselves, for who looks at them from outside while a scene waits.
  QVReg& registers() { return registers_; }
  QVStrReg& strings() { return strings_; }
  QVReg& systemRegisters() { return systemRegisters_; }
  const SongRecord& song() const { return song_; }

 private:
  using ObjectList = std::list<std::unique_ptr<LogicalObject>>;

  ObjectList::iterator findPlace(const char* name);
  void addObject(const ObjectKind& kind, const char* name, const ObjectArguments& arguments);
  void stopAnimations();
  void destroyWindows(int32_t code);
  QVString systemFileName() const;
  void readDefaultFont();
  void readSystemFile();
  void writeSystemFile();

  // The order is part of the design: members go in the reverse of it.
  ScenarioHost* host_ = nullptr;
  QVString applicationName_;
  QVString sceneName_;
  QVReg registers_;
  QVStrReg strings_;
  SongRecord song_;
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
