// A scene that does what the lines of "dat\stage.txt" say: a command and its words, one a line.
// Underscores in texts stand for blanks, and "\n" for a line end. Behind the last line it waits.

#include <sstream>
#include <string>
#include <vector>

#include "foundation/file.h"
#include "graphics/scene/picture_drawing.h"
#include "message/pendant.h"
#include "platform/text/shift_jis.h"
#include "scenario/picture_names.h"
#include "scenario/scenario.h"
#include "scenario/start/user_name_file.h"
#include "scenes/scene_form.h"
#include "screens/boxes.h"

using namespace qv;

extern "C" {
SceneFunction END();
}

namespace {

/// Where what a command gave is looked at.
constexpr int32_t ResultRegister = 600, ProgressRegister = 601;

class Words {
 public:
  explicit Words(const std::string& line) : stream_(line) {}
  std::string word() {
    std::string text;
    stream_ >> text;
    return text;
  }
  int32_t number() {
    int32_t value = 0;
    stream_ >> value;
    return value;
  }
  /// The next word as the engine's text.
  std::string text() {
    std::string given = word();
    for (size_t at = 0; at < given.size(); ++at) {
      if (given[at] == '_') given[at] = ' ';
      if (given.compare(at, 2, "\\n") == 0) given.replace(at, 2, "\n");
    }
    return sjis(given);
  }

 private:
  std::istringstream stream_;
};

using Deed = void (*)(Words& words);
struct Row {
  const char* name;
  Deed deed;
};

int32_t& result() {
  return Reg(ResultRegister);
}

/// Index at X, Y of the composed picture, and its stored colour N as 0xRRGGBB, into a register.
void lookAtPixel(Words& words) {
  const QVVSurface* picture = surfaceNamed(PictureSurface);
  const int32_t x = words.number(), y = words.number();
  Reg(words.number()) = picture ? picture->pixel(x, y) : -1;
}
void lookAtEntry(Words& words) {
  constexpr uint32_t Colour = 0xFFFFFF;
  const QVVSurface* picture = surfaceNamed(PictureSurface);
  const auto index = static_cast<size_t>(words.number());
  Reg(words.number()) =
      picture ? static_cast<int32_t>(picture->storedColours()[index] & Colour) : -1;
}

constexpr Row Pictures[] = {
    {"bg", [](Words& words) { BgCommand(words.word().c_str()); }},
    {"event", [](Words& words) { EventCommand(words.word().c_str()); }},
    {"title", [](Words& words) { TitleCommand(words.word().c_str()); }},
    {"sprite",
     [](Words& words) {
       const std::string name = words.word();
       SpriteCommand(name.c_str(), words.number());
     }},
    {"clear", [](Words& words) { ClearSprite(words.number()); }},
    {"effect",
     [](Words& words) {
       const int32_t type = words.number(), steps = words.number();
       EffectCommand(type, steps, words.number());
     }},
    {"black", [](Words& words) { FadeToBlack(words.number()); }},
    {"white", [](Words& words) { FadeToWhite(words.number()); }},
    {"sound", [](Words& words) { PlaySe(words.word().c_str(), words.number()); }},
    {"mouth", [](Words& words) { theScenario->ShowArea(words.word().c_str(), 0); }},
    {"pixel", [](Words& words) { lookAtPixel(words); }},
    {"entry", [](Words& words) { lookAtEntry(words); }},
};

constexpr Row State[] = {
    {"reg",
     [](Words& words) {
       const int32_t number = words.number();
       Reg(number) = words.number();
     }},
    {"sysreg",
     [](Words& words) {
       const int32_t number = words.number();
       SetSysReg(number, words.number(), 1);
     }},
    {"strreg",
     [](Words& words) {
       const int32_t number = words.number();
       theScenario->StrReg(number).create(QVString::DefaultGrain, words.text().c_str());
     }},
    {"change",
     [](Words& words) {
       const std::string name = words.text();
       ChangeParameter(name.c_str(), words.number());
     }},
    {"names", [](Words& words) { UserNameFile(words.word().c_str()); }},
    {"show",
     [](Words& words) {
       const std::string window = words.word();
       theScenario->ShowWindow(window.c_str(), words.number());
     }},
};

constexpr Row Screens[] = {
    {"confirm", [](Words& words) { result() = ConfirmDialog(words.text().c_str()); }},
    {"notice", [](Words& words) { NoticeDialog(words.text().c_str()); }},
    {"popup", [](Words& words) { PopupNotice(words.text().c_str()); }},
    {"ask", [](Words&) { AskSaveBeforeLeaving(); }},
    {"offer", [](Words&) { SaveOffer(); }},
    {"autosave", [](Words& words) { AutoSave(words.word().c_str()); }},
    {"calendar",
     [](Words& words) {
       const int32_t month = words.number();
       ShowCalendar(month, words.number());
     }},
    {"pendant", [](Words& words) { words.number() ? ShowPendant() : HidePendant(); }},
    {"gem", [](Words&) { UpdatePendant(); }},
    {"line",
     [](Words& words) {
       const std::string speaker = words.text();
       SpeakLine(speaker.c_str(), nullptr);
       PrintMessage(words.text().c_str());
       result() = WaitClick(WaitWithoutLimit, 0);
     }},
    {"key", [](Words&) { result() = theScenario->WaitInput(nullptr, -1); }},
    {"pause", [](Words& words) { theScenario->WaitSound(words.number()); }},
};

bool doLine(const std::string& line) {
  Words words(line);
  const std::string name = words.word();
  for (const std::span<const Row> rows : {std::span<const Row>(Pictures), {State}, {Screens}}) {
    for (const Row& row : rows) {
      if (name != row.name) continue;
      row.deed(words);
      return true;
    }
  }
  return name.empty();
}

std::vector<std::string> linesOfStage() {
  QVFile file;
  file.openName("dat\\stage.txt", OpenExisting, GenericRead, ShareRead, AttributeNormal);
  std::string text(static_cast<size_t>(file.size()), '\0');
  file.read(text.data(), static_cast<int32_t>(text.size()));
  file.close();
  std::istringstream stream(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);)
    lines.push_back(line);
  return lines;
}

}  // namespace

QV_SCENE(sc_menu) {
  SetSceneName("sc_menu");
  constexpr int32_t Unknown = -1;
  for (const std::string& line : linesOfStage()) {
    if (!doLine(line)) {
      Reg(ProgressRegister) = Unknown;
      break;
    }
    ++Reg(ProgressRegister);
  }
  theScenario->WaitInput(nullptr, -1);
  return END;
}
