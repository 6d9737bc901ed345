// What comes back when a scene is entered behind a load: song, looping effect and pendant.

#include <gtest/gtest.h>

#include "audio/scene/commands.h"
#include "message/frame_buttons.h"
#include "message/pendant.h"
#include "message/standing_names.h"
#include "platform/sound/null_midi_output.h"
#include "scenario/start/scene_enter.h"
#include "tests/support/song_bytes.h"
#include "tests/support/wave_bytes.h"
#include "tests/unit/host/story_ground.h"

namespace qv::testing {
namespace {

constexpr uint8_t Face = 17, Art = 33, Key = 40, RedIndex = 249;
constexpr uint32_t Red = 0xFF0000;

class RestoredScene : public ::testing::Test {
 protected:
  RestoredScene() {
    MessageWindowHiddenFlag = 0;
    ground.platform.writeFile(ground.platform.game() / "midi/K03b.mid",
                              song({TrackBytes().event(0, {0x90, 60, 100}).end(1'000'000)}));
    ground.platform.writeFile(ground.platform.game() / "wave/vlse005.wav", silentWave(300));
  }
  void run(const std::function<void(QVScenario&)>& scene) {
    ground.run([&](QVScenario& manager) {
      const Rectangle place = Rectangle::at(0, 0, 62, 122);
      manager.CreateObject(PendantWindow, TypeFrameless, {nullptr, &place, "", 0, 1});
      SysReg(BgmEnabled) = SysReg(SoundEffectsEnabled) = 1;
      SysReg(MidiDeviceKind) = 2;
      Reg(SeLoopRegister) = 9999;
      scene(manager);
    });
  }
  StoryGround ground{makeSimulatedKernel()};
  NullMidiOutput output{10'000};
  Services withMidi = [this] {
    Services all = services();
    all.midi = &output;
    return all;
  }();
  ServicesScope scope{withMidi};
};

TEST_F(RestoredScene, HasItsSongAndItsEndlessEffectAgainAndThePendant) {
  run([](QVScenario& manager) {
    Reg(BgmLastRegister) = 3;
    Reg(SeCurrentRegister) = 1;
    Reg(SeLoopRegister) = 0;
    // As they stand in a save that was made while both were shown and skipped.
    Reg(PendantShownRegister) = 1;
    Reg(WaitKindRegister) = 4;
    SysReg(SkipMode) = 1;
    Reg(ResumePendingRegister) = 1;
    SceneEnter();
    EXPECT_TRUE(manager.IsSoundPlaying(ChannelMidi));
    EXPECT_TRUE(manager.midi().fileName().equals("midi\\K03b.mid"));
    EXPECT_EQ(manager.midi().loop(), 1u);
    EXPECT_EQ(Reg(BgmCurrentRegister), 3);
    EXPECT_TRUE(manager.IsSoundPlaying(ChannelWave));
    sleepMillis(3000);
    EXPECT_TRUE(manager.IsSoundPlaying(ChannelWave)) << "an endless one";
    EXPECT_TRUE(manager.FindWindow(PendantWindow)->shown());
    EXPECT_EQ(Reg(PendantShownRegister), 1);
  });
}

TEST_F(RestoredScene, HasItsPictureAndItsButtonStripUnlessADramaIsOn) {
  run([this](QVScenario& manager) {
    QVVSurface still;
    still.create(ScreenWidth, ScreenHeight);
    still.fill(RedIndex);
    still.saveBmpByName("still");
    const TestPlatform& platform = ground.platform;
    platform.writeFile(platform.game() / "cg/still.mcg",
                       platform.readFile(platform.player() / "still.bmp"));
    manager.CreateObject("cg.surf", TypeSurface, {ScreenWidth, ScreenHeight});
    manager.CreateObject("mess.surf", TypeSurface, {ScreenWidth, 127});
    manager.CreateObject("mfrm.surf", TypeSurface, {ScreenWidth, 127});
    const auto surface = [&](const char* name) {
      return static_cast<QVVSurface*>(manager.FindNative(name, TypeSurface));
    };
    surface("mfrm.surf")->fill(Art);
    const Rectangle corner{0, 0, 1, 1};
    surface("mfrm.surf")->fill(Key, &corner);
    for (const int32_t drama : {0, 1}) {
      manager.FillObject("cg.view", 0);
      surface("mess.surf")->fill(Face);
      manager.StrReg(EventPictureName).create(QVString::DefaultGrain, "still");
      SysReg(DramaMode) = drama;
      Reg(ResumePendingRegister) = 1;
      SceneEnter();
      StoryGround::settle();
      EXPECT_EQ(ground.at(320, 200), Red) << drama;
      EXPECT_EQ(surface("mess.surf")->pixel(620, 20), drama ? Face : Art);
      EXPECT_EQ(surface("mess.surf")->pixel(300, 20), Face) << "beside the strip";
      EXPECT_EQ(Reg(ResumePendingRegister), 0);
    }
  });
}

TEST_F(RestoredScene, HasItsThreeFrameButtonsUpEnabledAndDrawnUnlessADramaIsOn) {
  run([this](QVScenario& manager) {
    // Four pictures of 20 by 10, by their number; the first pixel is the key.
    constexpr int32_t Wide = 20, High = 10;
    constexpr uint8_t Under = 99;
    QVVSurface strip;
    strip.create(4 * Wide, High);
    for (int32_t picture = 0; picture < 4; ++picture) {
      const Rectangle part = Rectangle::at(picture * Wide, 0, Wide, High);
      strip.fill(static_cast<uint8_t>(picture), &part);
    }
    const Rectangle corner{0, 0, 1, 1};
    strip.fill(Key, &corner);
    strip.saveBmpByName("strip");
    const TestPlatform& platform = ground.platform;
    for (const char* name : {"MButton1", "MButton2", "MButton3"})
      platform.writeFile(platform.game() / "dat" / (std::string(name) + ".mcg"),
                         platform.readFile(platform.player() / "strip.bmp"));
    manager.CreateView(NormalView, nullptr, 0, NormalTop, StripWidth, NormalHeight, 0);
    createFrameButtons();
    FrameButtons& buttons = *frameButtons();
    const QVVSurface& face = *manager.FindView(NormalView)->view()->surface8();
    for (const int32_t drama : {0, 1}) {
      // As a save out of skip finds them, and the strip painted over.
      buttons.quickSave.disable();
      buttons.quickLoad.flash(0, 0);
      buttons.skip.flash(0, 0);
      manager.FillObject(NormalView, Under);
      SysReg(DramaMode) = drama;
      Reg(ResumePendingRegister) = 1;
      SceneEnter();
      const uint32_t enabled = SystemButton::Enabled, pressed = SystemButton::Pressed;
      EXPECT_EQ(buttons.quickSave.state(), drama ? 0 : enabled);
      EXPECT_EQ(buttons.quickLoad.state(), drama ? enabled | pressed : enabled);
      EXPECT_EQ(buttons.skip.state(), drama ? enabled | pressed : enabled);
      for (const SystemButton* button : {&buttons.quickSave, &buttons.quickLoad, &buttons.skip})
        EXPECT_EQ(face.pixel(button->x() + 5, button->y() + 5), drama ? Under : 0);
    }
    destroyFrameButtons();
  });
}

TEST_F(RestoredScene, IsSilentWhereItsSaveWas) {
  run([](QVScenario& manager) {
    PlayBgm("K03", nullptr);
    Reg(BgmLastRegister) = 0;
    Reg(SeCurrentRegister) = 1;
    Reg(SeLoopRegister) = 1;
    Reg(ResumePendingRegister) = 1;
    SceneEnter();
    EXPECT_FALSE(manager.IsSoundPlaying(ChannelMidi)) << "what played before the load ends";
    EXPECT_FALSE(manager.IsSoundPlaying(ChannelWave)) << "an effect that sounded once";
  });
}

TEST_F(RestoredScene, EnteredAsUsualLeavesSoundsAndPendantAsTheyAre) {
  run([](QVScenario& manager) {
    Reg(BgmLastRegister) = 3;
    Reg(SeCurrentRegister) = 1;
    Reg(SeLoopRegister) = 0;
    SceneEnter();
    EXPECT_FALSE(manager.IsSoundPlaying(ChannelMidi));
    EXPECT_FALSE(manager.IsSoundPlaying(ChannelWave));
    EXPECT_FALSE(manager.FindWindow(PendantWindow)->shown());
  });
}

}  // namespace
}  // namespace qv::testing
