// Lines, waits, choices and the message window in scenes of a few steps each. What came of the
// waits is kept in registers for the scripts: from 700 on the result of each, from 750 on how long
// it took in milliseconds, 699 how many there were.

#include "foundation/diagnostic.h"
#include "message/message_window.h"
#include "message/pendant.h"
#include "message/resume_flag.h"
#include "message/skip_poll.h"
#include "message/standing_names.h"
#include "message/system_screens.h"
#include "message/text_areas.h"
#include "platform/kernel/kernel.h"
#include "platform/text/shift_jis.h"
#include "scenario/resume.h"
#include "scenario/scenario.h"
#include "scenes/scene_form.h"

using namespace qv;

extern "C" {
SceneFunction END();
SceneFunction sc_names();
}

namespace {

constexpr int32_t ResultCount = 699, FirstResult = 700, FirstMillis = 750;
/// What the scenes' own system screens have been asked.
constexpr int32_t Asked = 690, Saves = 691, Loads = 692, Configurations = 693, Histories = 694;
constexpr int32_t LastNotice = 40;  ///< string: the words of the latest box

constexpr const char *Belune = "【　ベルーネ　】", *Lessa = "【　レッサ　】",
                     *Warden = "【　番人　】";
constexpr const char *LongVoice = "V00\\0000_001", *ShortVoice = "V00\\0000_002";

int32_t keep(int32_t result, uint32_t start) {
  int32_t& count = Reg(ResultCount);
  Reg(FirstResult + count) = result;
  Reg(FirstMillis + count) = static_cast<int32_t>(tickCount() - start);
  ++count;
  return result;
}
int32_t wait(int32_t limit = WaitWithoutLimit, int32_t mode = 0) {
  const uint32_t start = tickCount();
  return keep(WaitClick(limit, mode), start);
}
int32_t choose(int32_t count) {
  const uint32_t start = tickCount();
  return keep(SelectMain(count), start);
}
void say(const char* speaker, const char* voice, const char* text) {
  SpeakLine(sjis(speaker).c_str(), voice);
  PrintMessage(sjis(text).c_str());
}
void tell(const char* text) {
  say("コメント", nullptr, text);
}
void tellAndWait(const char* text) {
  tell(text);
  wait();
}
/// Somewhere, with the frame made and the pendant shown.
void stand(const char* scene, const char* background = "KBA014") {
  SetSceneName(scene);
  BgCommand(background);
  EffectCommand(1, 16, EffectConstant);
  ShowSystemWindow();
}
void standWithBelune(const char* scene, const char* background = "KBA014") {
  SetSceneName(scene);
  BgCommand(background);
  SpriteCommand("KUS012", 3);
  EffectCommand(1, 16, EffectConstant);
  ShowSystemWindow();
}

/// Answers as the scenes want and counts what it is asked.
class ScriptedScreens : public SystemScreens {
 public:
  void quickSave() override { ++Reg(Saves); }
  bool quickLoad() override {
    ++Reg(Loads);
    if (!loads) return false;
    load();
    return true;
  }
  int32_t configuration() override {
    ++Reg(Configurations);
    if (loads && configured == 255) load();
    if (hides) HideMessageWindow();
    if (spoils) Reg(HoverRegister) = 1;
    spoil();
    SysReg(SkipMode) = skips ? 1 : 0;
    return configured;
  }
  void history() override {
    ++Reg(Histories);
    if (shows) ShowMessageWindow();
    spoil();
  }
  bool confirm(const char* text) override {
    notice(text);
    return agrees;
  }
  void notice(const char* text) override {
    ++Reg(Asked);
    spoil();
    theScenario->StrReg(LastNotice).create(QVString::DefaultGrain, text);
  }
  static void load() {
    Reg(ResumePendingRegister) = 1;
    ResumeScene = sc_names;
  }
  bool loads = false, skips = false, shows = false, hides = false, agrees = true;
  bool spoils = false;  ///< leaves the screen's map as it used it
  int32_t configured = -3;

 private:
  void spoil() const {
    if (!spoils) return;
    theScenario->AddClickRect(WholeScreenMap, 0, 0, 640, 480, AdvanceRegion);
    theScenario->DisconnectObjects(SelectionMap, WholeScreenMap);
  }
};
ScriptedScreens screens;

void useScreens() {
  screens = ScriptedScreens();
  setSystemScreens(&screens);
}

void offer(int32_t count) {
  static constexpr const char *Areas[] = {"select01.Title.Aria", "select02.Title.Aria",
                                          "select03.Title.Aria"},
                              *Texts[] = {"図書室へ", "屋上へ", "まっすぐ帰る"};
  if (count == 2)
    Select2Setup();
  else
    Select3Setup();
  for (int32_t choice = 0; choice < count; ++choice) {
    AreaHandle area(Areas[choice]);
    AreaText(area, sjis(Texts[choice]).c_str(), 0);
  }
}

}  // namespace

QV_SCENE(sc_menu) {
  SetSceneName("sc_menu");
  return END;
}

/// Three seconds, a line that is only shown, and the end.
QV_SCENE(sc_timed) {
  stand("sc_timed");
  tell("三秒。");
  wait(30, 0);
  tell("見せるだけ。");
  wait(1, 1);
  Reg(720) = Reg(WaitKindRegister);
  tellAndWait("終わり。");
  return END;
}

/// The loop alone, on a line that stands; the text behind it waits.
QV_SCENE(sc_modes) {
  stand("sc_modes");
  tell("立つ。");
  wait(1, 1);
  HideMessageWindow();
  PrintMessage(sjis("まだ。").c_str());
  wait(WaitWithoutLimit, 2);
  tellAndWait("次。");
  return END;
}

QV_SCENE(sc_voice) {
  standWithBelune("sc_voice");
  say(Belune, LongVoice, "声。");
  wait();
  say(Belune, LongVoice, "残る声。");
  wait(WaitWithoutLimit, 3);
  tellAndWait("まだ聞こえる。");
  say(Belune, ShortVoice, "短い声。");
  wait();
  tellAndWait("終わり。");
  return END;
}

/// Lines whose voices must not sound, each for another reason.
QV_SCENE(sc_silence) {
  standWithBelune("sc_silence");
  say(Belune, nullptr, "声なし。");
  wait();
  SysReg(51) = 0;
  say(Belune, LongVoice, "ひとりだけ切る。");
  wait();
  SysReg(51) = 1;
  SysReg(VoiceEnabled) = 0;
  say(Belune, LongVoice, "みんな切る。");
  wait();
  SysReg(VoiceEnabled) = 1;
  say(Lessa, LongVoice, "ここにいない。");
  wait();
  // Two of one class: only the first moves. A line of a class without a switch moves none.
  Reg(20) = 1;
  Reg(21) = 1;
  SysReg(51) = 0;
  say(Belune, LongVoice, "ふたり。");
  wait();
  Reg(20) = Reg(21) = 0;
  Reg(40) = 11;
  say(Warden, LongVoice, "番人。");
  wait();
  tellAndWait("地の文。");
  say("だれか", LongVoice, "知らない人。");
  wait();
  return END;
}

QV_SCENE(sc_names) {
  stand("sc_names");
  tell("＊＊＊、");
  PrintMessage(sjis("※※※。").c_str());
  theScenario->StrReg(HeroGivenName).create(QVString::DefaultGrain, sjis("湊").c_str());
  wait();
  say("【　＊＊＊　】", nullptr, "同じ。");
  wait();
  say("【　女性の声　】", nullptr, "同じ。");
  wait();
  say("【　ベルーネ〔アニメなし〕】", nullptr, "違う。");
  wait();
  return END;
}

/// For the presentation that runs by itself.
QV_SCENE(sc_drama) {
  standWithBelune("sc_drama");
  SysReg(51) = 0;
  tell("はじめ。");
  wait();
  say(Belune, ShortVoice, "一秒の声。");
  wait();
  say(Belune, nullptr, "あいうえおかきくけこ");
  wait();
  tellAndWait("あいうえお");
  theScenario->StrReg(MessageLast).clear();
  wait();
  tell("二十。");
  wait(20, 0);
  say(Belune, ShortVoice, "隠れる声。");
  wait();
  tellAndWait("終わりまで、ずっと長い長い長い長い長い長い長い長い長い長い長い長い長い長い長い。");
  return END;
}

QV_SCENE(sc_skip) {
  standWithBelune("sc_skip");
  for (int line = 0; line < 40; ++line) {
    say(Belune, LongVoice, "飛ばす。");
    wait();
  }
  return END;
}

/// Skip is on, and nothing waits for half a second before the line.
QV_SCENE(sc_fade) {
  stand("sc_fade");
  SysReg(SkipMode) = 1;
  theScenario->host()->SleepUnlessAborted(500);
  tellAndWait("一行目。");
  tellAndWait("二行目。");
  return END;
}

/// What the system's screens answer, line by line.
QV_SCENE(sc_screens) {
  stand("sc_screens");
  useScreens();
  tellAndWait("まず、何も。");
  screens.configured = -10;
  tellAndWait("題字へ。");
  screens.configured = 255;
  tellAndWait("終わりへ。");
  screens.configured = -3;
  screens.skips = true;
  tellAndWait("飛ばし始める。");
  SysReg(SkipMode) = 0;
  screens.loads = true;
  tellAndWait("読み込む。");
  Reg(ResumePendingRegister) = 0;
  Reg(SavedStateRegister) = 1;
  DataLoadedFlag = 1;
  tellAndWait("読み込んだあと。");
  Reg(721) = DataLoadedFlag;
  offer(2);
  screens.loads = false;
  screens.skips = false;
  screens.configured = -10;
  choose(2);
  offer(2);
  screens.configured = 255;
  choose(2);
  offer(3);
  screens.configured = -3;
  screens.loads = true;
  choose(3);
  offer(2);
  choose(2);
  tellAndWait("終わり。");
  return END;
}

QV_SCENE(sc_two) {
  stand("sc_two");
  for (int round = 0; round < 6; ++round) {
    offer(2);
    choose(2);
    tellAndWait("選んだ。");
  }
  return END;
}

QV_SCENE(sc_three) {
  stand("sc_three");
  useScreens();
  for (int round = 0; round < 6; ++round) {
    offer(3);
    choose(round == 5 ? 7 : 3);
    tellAndWait("選んだ。");
  }
  return END;
}

/// The frame in its eight colours, over a light picture, a dark one and black.
QV_SCENE(sc_colours) {
  SetSceneName("sc_colours");
  for (const char* background : {"KBA014", "KBA015", "BLACK"})
    for (int32_t colour = 0; colour < 8; ++colour) {
      SysReg(WindowColour) = colour;
      standWithBelune("sc_colours", background);
      say(Belune, nullptr, "「枠の色。あいうえお」");
      wait();
    }
  return END;
}

/// The same through the frame's own rebuilding, on a line that stands.
QV_SCENE(sc_again) {
  standWithBelune("sc_again");
  say(Belune, nullptr, "「もう一度。一行目がとても長くて、二行目まで続いていくことば」");
  wait(1, 1);
  for (int32_t colour = 5; colour < 13; ++colour) {
    wait(WaitWithoutLimit, 2);
    SysReg(WindowColour) = (colour + 1) % 8;
    RebuildMessageWindow();
  }
  wait(WaitWithoutLimit, 2);
  return END;
}

/// A line of more than a page.
QV_SCENE(sc_pages) {
  standWithBelune("sc_pages");
  say(Belune, nullptr,
      "一行目がとても長くて、二行目まで続いていくことば。それでもまだ終わらない。");
  PrintMessage(sjis("三行目がとても長くて、四行目まで続いていくことば。それでもまだ終わらないので、"
                    "五行目まで行ってしまい、ページが変わる。")
                   .c_str());
  wait(1, 1);
  wait(WaitWithoutLimit, 2);
  RebuildMessageWindow();
  wait(WaitWithoutLimit, 2);
  return END;
}

/// Another colour while the presentation is drama.
QV_SCENE(sc_rebuilt) {
  standWithBelune("sc_rebuilt");
  say(Belune, nullptr, "「枠の色。あいうえお」");
  wait();
  say(Belune, nullptr, "「枠の色。あいうえお」");
  wait(1, 1);
  SysReg(WindowColour) = 2;
  RebuildMessageWindow();
  wait(9998, 2);
  return END;
}

/// A screen that shows the window which the player has hidden.
QV_SCENE(sc_shown) {
  stand("sc_shown");
  useScreens();
  screens.shows = true;
  tellAndWait("隠す。");
  tellAndWait("終わり。");
  return END;
}

/// Both presentations and what hides them.
QV_SCENE(sc_presentations) {
  standWithBelune("sc_presentations");
  for (int32_t number = 51; number <= 59; ++number)
    SysReg(number) = 0;
  SysReg(EffectsEnabled) = SysReg(SoundEffectsEnabled) = SysReg(VoiceEnabled) = 0;
  say(Belune, nullptr, "「話す」");
  wait(9998, 0);
  tell("地の文。");
  wait(9998, 0);
  say(Belune, nullptr, "「また話す」");
  wait(9998, 0);
  HideMessageWindow();
  tell("出てくる。");
  wait(9998, 0);
  return END;
}

QV_SCENE(sc_hearts) {
  stand("sc_hearts");
  const std::string belune = sjis("ベルーネ"), lessa = sjis("レッサ");
  ChangeParameter(belune.c_str(), 999);
  Reg(722) = Reg(100);
  ChangeParameter(belune.c_str(), 1);
  Reg(723) = Reg(100);
  ChangeParameter(belune.c_str(), 500);
  Reg(724) = Reg(100);
  ChangeParameter(lessa.c_str(), -999);
  Reg(725) = Reg(101);
  ChangeParameter(lessa.c_str(), -1);
  Reg(726) = Reg(101);
  tellAndWait("どちらも。");
  return END;
}

/// Everything in turn, for ever: whoever plays here stops by closing the window.
QV_SCENE(sc_endless) {
  for (int round = 0;; ++round) {
    // There is no end of registers for results.
    Reg(ResultCount) = 0;
    standWithBelune("sc_endless");
    say(Belune, LongVoice, "声のある行。");
    wait();
    tell("半秒。");
    wait(5, 0);
    offer(2);
    choose(2);
    SysReg(51) = round % 2;
    say(Belune, ShortVoice, "口だけ動くかもしれない。");
    wait(30, 3);
    FadeToBlack(16);
    stand("sc_endless", "KBA015");
    tell("見せるだけ。");
    wait(1, 1);
    EffectCommand(9, 16, EffectConstant);
    offer(3);
    choose(3);
    HideMessageWindow();
    say("【　＊＊＊　】", nullptr, "もう一度。");
    wait();
    RebuildMessageWindow();
    wait(10, 2);
  }
}

/// Loads that a selection's wait meets, told as what they are or as the end of the game.
QV_SCENE(sc_load) {
  stand("sc_load");
  useScreens();
  screens.loads = true;
  screens.configured = 255;
  offer(2);
  return afterSelection(choose(2), END, END);
}

/// Skip is on while a picture is brought, and the player stops it meanwhile.
QV_SCENE(sc_poll) {
  SetSceneName("sc_poll");
  SysReg(SkipMode) = 1;
  standWithBelune("sc_poll");
  tellAndWait("一行目。");
  tellAndWait("二行目。");
  return END;
}

/// Plates over black, where the picture's own colours would give nothing.
QV_SCENE(sc_black) {
  stand("sc_black", "BLACK");
  offer(3);
  choose(3);
  return END;
}

/// Voices that lines leave behind, and skip.
QV_SCENE(sc_left) {
  standWithBelune("sc_left");
  say(Belune, LongVoice, "残る声。");
  wait(WaitWithoutLimit, 3);
  tell("まだ残る。");
  wait(WaitWithoutLimit, 3);
  Reg(720) = theScenario->IsSoundPlaying(ChannelWave);
  tellAndWait("ここまで。");
  Reg(721) = theScenario->IsSoundPlaying(ChannelWave);
  Reg(722) = Reg(VoiceRunningRegister);
  SysReg(SkipMode) = 0;
  tellAndWait("静か。");
  return END;
}

/// Another screen has moved the pens since the last line.
QV_SCENE(sc_pens) {
  standWithBelune("sc_pens");
  constexpr const char* Text = "「一行目がとても長くて、二行目まで続いていくことば。ここまで」";
  say(Belune, nullptr, Text);
  wait();
  for (const char* name : {LineAreas::NameArea, LineAreas::MessageArea}) {
    QVPrintArea& area = *areaNamed(name);
    const Rectangle place = area.rectangle();
    area.setPosition(place.left + 90, place.top + 7);
    area.setIndent(50, 0);
  }
  say(Belune, nullptr, Text);
  wait();
  return END;
}

/// A load out of a line.
QV_SCENE(sc_load_line) {
  stand("sc_load_line");
  useScreens();
  screens.loads = true;
  tell("読み込む。");
  if (const Leaving leaving = afterClick(wait())) return leaving.next;
  tellAndWait("残った。");
  return END;
}

/// Lines behind a load and behind none, under a pointer that rests.
QV_SCENE(sc_resumed) {
  stand("sc_resumed");
  tellAndWait("指す。");
  Reg(SavedStateRegister) = 1;
  DataLoadedFlag = 1;
  tellAndWait("読み込んだあと。");
  Reg(721) = DataLoadedFlag;
  tellAndWait("そのあと。");
  return END;
}

/// Skip that the configuration switches on; it hides the window as scenes do.
QV_SCENE(sc_hidden_skip) {
  stand("sc_hidden_skip");
  useScreens();
  screens.skips = true;
  screens.hides = true;
  for (int line = 0; line < 40; ++line)
    tellAndWait("飛ばす。");
  return END;
}

/// Many lines behind a choice.
QV_SCENE(sc_choice_skip) {
  stand("sc_choice_skip");
  useScreens();
  offer(3);
  choose(3);
  for (int line = 0; line < 40; ++line)
    tellAndWait("飛ばす。");
  return END;
}

/// Screens that use the screen's map for themselves.
QV_SCENE(sc_spoilt) {
  stand("sc_spoilt");
  useScreens();
  screens.spoils = true;
  offer(2);
  choose(2);
  tellAndWait("選んだ。");
  return END;
}

/// The map is gone while a picture is brought and messages are skipped.
QV_SCENE(sc_lost_poll) {
  stand("sc_lost_poll");
  SysReg(SkipMode) = 1;
  theScenario->DestroyObject(WholeScreenMap);
  const uint32_t start = tickCount();
  SkipPoll();
  SkipPoll();
  Reg(720) = Reg(PendingCodeRegister);
  Reg(721) = static_cast<int32_t>(tickCount() - start);
  tellAndWait("飛ばない。");
  theScenario->WaitInput(nullptr, -1);
  return END;
}

/// A scene's mistake: the map that its waits sleep on is gone.
QV_SCENE(sc_lost) {
  stand("sc_lost");
  theScenario->DestroyObject(WholeScreenMap);
  tellAndWait("地図がない。");
  return END;
}
