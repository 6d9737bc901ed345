// Each scene gets into one kind of trouble that a host must get out of.

#include <atomic>

#include "audio/cd_audio.h"
#include "audio/scene/commands.h"
#include "foundation/file.h"
#include "platform/display/key_codes.h"
#include "scenario/scenario.h"
#include "scenes/scene_form.h"

using namespace qv;

extern "C" {
SceneFunction sc000001();
SceneFunction sc000002();
SceneFunction sc000003();
SceneFunction sc000004();
SceneFunction sc000005();
SceneFunction sc000006();
SceneFunction sc000007();
SceneFunction END();
}

namespace {
constexpr int32_t KeyCode = 2048;
constexpr Rectangle Somewhere{10, 10, 110, 60};
}  // namespace

QV_SCENE(sc_menu) {
  SetSceneName("sc_menu");
  SceneEnter();
  const SceneFunction scenes[] = {sc000001, sc000002, sc000003, sc000004,
                                  sc000005, sc000006, sc000007};
  while (true) {
    const int32_t digit = theScenario->WaitInput(nullptr, InputForever) - KeyCode - Key0;
    if (digit >= 1 && digit <= 7) return scenes[digit - 1];
    if (digit == 0) return END;
  }
}

// A register that does not exist: a box, and the write goes to entry 0.
QV_SCENE(sc000001) {
  SetSceneName("sc000001");
  SceneEnter();
  Reg(99999) = 5;
  WaitClick(9999, 0);
  return END;
}

// A window asked for when the player may have minimised the game in the half second before.
QV_SCENE(sc000002) {
  SetSceneName("sc000002");
  SceneEnter();
  WaitSound(5);
  const ViewHandle view("late.view", nullptr, Somewhere, nullptr, 0);
  Reg(600) = view.bound() ? 1 : 2;
  WaitClick(9999, 0);
  return END;
}

// A handle that destroys its window when the scene is left by the abort.
QV_SCENE(sc000003) {
  SetSceneName("sc000003");
  SceneEnter();
  const FrameHandle kept("kept.win", nullptr, Somewhere, nullptr, WindowFramed);
  const ViewHandle mine("mine.view", nullptr, Somewhere, nullptr, 0, DestroyWithHandle);
  const FrameHandle ours("ours.win", nullptr, Somewhere, nullptr, WindowHidden, DestroyWithHandle);
  WaitClick(9999, 0);
  return END;
}

// A scene that never comes back.
QV_SCENE(sc000004) {
  SetSceneName("sc000004");
  SceneEnter();
  static std::atomic<uint32_t> turns = 0;
  while (true)
    ++turns;
}

// A file that is not there: a box with retry and cancel, then an exception that ends the run.
QV_SCENE(sc000005) {
  SetSceneName("sc000005");
  SceneEnter();
  QVFile file;
  file.openName("dat\\missing.mcg", OpenExisting, GenericRead, ShareRead, AttributeNormal);
  return END;
}

// A wait for a sound of ten seconds.
QV_SCENE(sc000006) {
  SetSceneName("sc000006");
  SceneEnter();
  WaitSound(100);
  return END;
}

// What a machine may lack: the disc with two voices and a track, a sound font for a song.
QV_SCENE(sc000007) {
  SetSceneName("sc000007");
  SceneEnter();
  SetSysReg(BgmEnabled, 1, 0);
  SetSysReg(MidiDeviceKind, 1, 0);
  CdAudio disc;
  Reg(600) = disc.load() ? 1 : 2;
  Reg(601) = disc.play(2, 1) ? 1 : 2;
  PlayWave("%:\\VOICE\\V00\\0000_001.wav", 1, 1, nullptr);
  PlayWave("%:\\VOICE\\V00\\0000_002.wav", 1, 1, nullptr);
  PlayBgm("K01", nullptr);
  WaitClick(9999, 0);
  return END;
}
