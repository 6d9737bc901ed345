// The pages of the test card with songs, effects and the disc: buttons, and a text that tells what
// sounds.

#include <string>

#include "audio/cd_audio.h"
#include "game/story/testcard.h"
#include "platform/kernel/kernel.h"
#include "platform/text/shift_jis.h"

using namespace qv;

QV_SCENE(sc_testcard);

namespace {

constexpr const char* PagePicture = "cg\\KTC002.mcg";
constexpr const char* ButtonHint = "マウス、または矢印と Return。右クリックか Esc で戻る";
constexpr int32_t LeftColumn = 56, ColumnStep = 178, TopRow = 98, RowStep = 52;
constexpr int32_t HomeX = 56, HomeY = 374;
constexpr Rectangle StatePlace{64, 222, 584, 350};
constexpr int32_t LookTenths = 5;  ///< how often the text looks at what sounds

constexpr int32_t columnX(int32_t column) {
  return LeftColumn + column * ColumnStep;
}
constexpr int32_t rowY(int32_t row) {
  return TopRow + row * RowStep;
}

struct Label {
  int32_t region;
  const char* text;
};

/// Three to a row.
template <size_t Count>
void addAll(card::Board& board, const Label (&labels)[Count], int32_t firstOff = INT32_MAX) {
  int32_t at = 0;
  for (const Label& label : labels) {
    board.add(label.region, columnX(at % 3), rowY(at / 3), label.text, label.region < firstOff);
    ++at;
  }
  board.addHome(HomeX, HomeY, "戻る");
}

// --- Songs ---

constexpr int32_t SongPlay = 1, SongFadeIn = 2, SongFadeOut = 3, SongAgain = 4, SongOnce = 5,
                  SongStop = 6;
constexpr Label SongLabels[] = {
    {SongPlay, "流す"},        {SongFadeIn, "だんだん強く"}, {SongFadeOut, "だんだん弱く"},
    {SongAgain, "はじめから"}, {SongOnce, "一度だけ"},       {SongStop, "止める"}};

void noteStart() {
  Reg(card::SongStartRegister) = static_cast<int32_t>(tickCount());
  ++Reg(card::SongCountRegister);
}

/// The song that plays, from its first bar, as often as before.
void playAgain() {
  const QVMidi& midi = theScenario->midi();
  if (midi.state() == QVMidi::Stopped) return;
  const QVString file = midi.fileName();
  const auto loop = static_cast<int32_t>(midi.loop());
  theScenario->StopSound(ChannelMidi);
  theScenario->PlayMidi(file.text(), loop);
  noteStart();
}

void doWithSong(int32_t button) {
  switch (button) {
    case SongPlay:
      PlayBgm(nullptr, nullptr);
      PlayBgm("K07", nullptr);
      noteStart();
      break;
    case SongFadeIn:
      PlayBgm(nullptr, nullptr);
      PlayBgm("K15", "FADEIN");
      noteStart();
      break;
    case SongFadeOut:
      PlayBgm("FADEOUT", nullptr);
      break;
    case SongAgain:
      playAgain();
      break;
    case SongOnce:
      PlayBgm(nullptr, nullptr);
      theScenario->PlayMidi("midi\\K04a.mid", 0);
      noteStart();
      break;
    default:
      PlayBgm(nullptr, nullptr);
  }
}

const char* nameOf(QVMidi::State state) {
  switch (state) {
    case QVMidi::Playing:
      return "演奏中";
    case QVMidi::FadingIn:
      return "だんだん強く";
    case QVMidi::FadingOut:
      return "だんだん弱く";
    case QVMidi::Paused:
      return "ひと休み";
    default:
      return "止まっている";
  }
}

std::string songState() {
  if (theScenario->MidiDeviceCaps(nullptr) == 0)
    return "この機械には、曲を奏でるものがありません。";
  const QVMidi& midi = theScenario->midi();
  const QVMidi::State state = midi.state();
  if (state == QVMidi::Stopped) return std::string("曲　　—\n状態　") + nameOf(state);
  const uint32_t begun = static_cast<uint32_t>(Reg(card::SongStartRegister));
  const uint32_t seconds = (tickCount() - begun) / 1000;
  return "曲　　" + utf8OfShiftJis(midi.fileName().view()) + "\n状態　" + nameOf(state) +
         (midi.loop() ? "、くり返し" : "、一度だけ") + "\n時間　" + std::to_string(seconds) + "秒";
}

void songPage() {
  card::Board board;
  card::StateText text(StatePlace);
  addAll(board, SongLabels);
  board.open();
  for (;;) {
    text.show(songState());
    const int32_t pressed = board.wait(LookTenths);
    if (pressed == card::Board::Home || pressed == card::Board::Cancelled) return;
    if (pressed != card::Board::NothingPressed) doWithSong(pressed);
  }
}

}  // namespace

QV_SCENE(sc_testcardmusic) {
  SetSceneName("sc_testcardmusic");
  SceneEnter();
  for (;; nextStep()) {
    switch (Reg(StepRegister)) {
      case 1:
        card::openPage(PagePicture, "音楽：かくれた鍵、はんぶんの傘", ButtonHint);
        songPage();
        break;
      case 2:
        PlayBgm(nullptr, nullptr);
        return sc_testcard;
      default:
        passOver(2);
    }
  }
}

// --- Effects and the disc ---

namespace {

constexpr int32_t EffectOnce = 1, EffectLoop = 2, EffectStop = 3, DiscPlay = 4, DiscLoop = 5,
                  DiscStop = 6;
constexpr Label SoundLabels[] = {{EffectOnce, "鐘を一度"},     {EffectLoop, "雨を降らせる"},
                                 {EffectStop, "音を止める"},   {DiscPlay, "円盤の曲"},
                                 {DiscLoop, "円盤を繰り返す"}, {DiscStop, "円盤を止める"}};
constexpr int32_t FirstAudioTrack = 2;

void doWithSound(int32_t button, CdAudio& disc) {
  switch (button) {
    case EffectOnce:
      PlaySe("SE02", 1);
      break;
    case EffectLoop:
      PlaySe("SE03", 0);
      break;
    case EffectStop:
      StopSe();
      break;
    case DiscPlay:
      disc.play(FirstAudioTrack, 0);
      break;
    case DiscLoop:
      disc.play(FirstAudioTrack, 1);
      break;
    default:
      disc.stop();
  }
}

std::string soundState(const CdAudio& disc) {
  std::string text = "音　　";
  if (theScenario->IsSoundPlaying(ChannelWave))
    text += utf8OfShiftJis(theScenario->wave().currentPath().view()) +
            (Reg(SeLoopRegister) == 0 ? "、くり返し" : "、一度だけ");
  else
    text += "—";
  text += "\n円盤　";
  if (disc.trackCount() < 0)
    text += "入っていません。";
  else if (disc.isPlaying())
    text += std::to_string(FirstAudioTrack) + "番の曲を演奏中";
  else
    text += "—（" + std::to_string(disc.trackCount()) + "番まで）";
  return text;
}

void soundPage() {
  CdAudio disc;
  const bool hasDisc = disc.load() && disc.trackCount() >= FirstAudioTrack;
  card::Board board;
  card::StateText text(StatePlace);
  addAll(board, SoundLabels, hasDisc ? INT32_MAX : DiscPlay);
  board.open();
  for (;;) {
    text.show(soundState(disc));
    const int32_t pressed = board.wait(LookTenths);
    if (pressed == card::Board::Home || pressed == card::Board::Cancelled) return;
    if (pressed != card::Board::NothingPressed) doWithSound(pressed, disc);
  }
}

}  // namespace

QV_SCENE(sc_testcardsound) {
  SetSceneName("sc_testcardsound");
  SceneEnter();
  for (;; nextStep()) {
    switch (Reg(StepRegister)) {
      case 1:
        card::openPage(PagePicture, "音と円盤", ButtonHint);
        soundPage();
        break;
      case 2:
        StopSe();
        return sc_testcard;
      default:
        passOver(2);
    }
  }
}
