#include "host/expectations.h"

#include <array>
#include <cstdio>

#include "host/sound_names.h"
#include "platform/text/shift_jis.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"

namespace qv {

namespace {

using Expectation = ScriptLine::Expectation;

/// Reads what a line names; false when there is no such thing.
struct Looker {
  const ScriptLine& line;
  GameHost& host;
  const Frame& frame;
};

std::string different(const std::string& what, const std::string& is) {
  return what + " " + is;
}

std::string compareNumber(const Looker& look, QVReg& registers, int32_t number, const char* kind) {
  if (number < 0 || number >= registers.count())
    return std::string("there are only ") + std::to_string(registers.count()) + " " + kind + "s";
  // A register is 32 bits; a script may write it signed or unsigned.
  const int32_t is = registers.item(number);
  if (static_cast<uint32_t>(is) == static_cast<uint32_t>(look.line.value)) return {};
  return different(std::string(kind) + " " + std::to_string(number) + " is", std::to_string(is));
}

std::string compareScene(const Looker& look) {
  const std::string is = utf8OfShiftJis(look.host.manager->sceneName().view());
  return is == look.line.text ? std::string() : different("the scene is", is);
}

std::string compareStep(const Looker& look) {
  return compareNumber(look, look.host.manager->registers(), StepRegister, "register");
}

std::string compareReg(const Looker& look) {
  return compareNumber(look, look.host.manager->registers(), look.line.registerNumber, "register");
}

std::string compareSysReg(const Looker& look) {
  return compareNumber(look, look.host.manager->systemRegisters(), look.line.registerNumber,
                       "system register");
}

std::string compareStrReg(const Looker& look) {
  QVStrReg& strings = look.host.manager->strings();
  const int32_t number = look.line.registerNumber;
  if (number < 0 || number >= strings.count())
    return "there are only " + std::to_string(strings.count()) + " string registers";
  const std::string is = utf8OfShiftJis(strings.item(number).view());
  if (is == look.line.text) return {};
  return different("string register " + std::to_string(number) + " is", quotedText(is));
}

std::string compareWindow(const Looker& look, bool shown) {
  const ShiftJisResult name = shiftJisOfUtf8(look.line.text);
  const HostWindowObject* window = name.ok ? look.host.windows.find(name.text.c_str()) : nullptr;
  if (!window) return "there is no window of that name";
  if (window->shown() == shown) return {};
  return shown ? "it is hidden" : "it is shown";
}

std::string compareShown(const Looker& look) {
  return compareWindow(look, true);
}
std::string compareHidden(const Looker& look) {
  return compareWindow(look, false);
}

std::string comparePixel(const Looker& look) {
  const size_t place =
      static_cast<size_t>(look.line.y) * ScreenWidth + static_cast<size_t>(look.line.x);
  const uint32_t is = look.frame[place] & 0xFFFFFF;
  if (is == static_cast<uint32_t>(look.line.value)) return {};
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%06X", is);
  return different("the pixel is", text.data());
}

std::string compareSound(const Looker& look,
                         bool (*isNamed)(const std::string&, const std::string&),
                         const QVString& path) {
  const std::string is = utf8OfShiftJis(path.view());
  if (look.line.text == "none" ? is.empty() : !is.empty() && isNamed(is, look.line.text)) return {};
  return is.empty() ? "nothing sounds" : different("what sounds is", is);
}

std::string compareWave(const Looker& look) {
  return compareSound(look, waveIsNamed, look.host.manager->wave().currentPath());
}
std::string compareSong(const Looker& look) {
  const QVMidi& song = look.host.manager->midi();
  const bool sounds = song.state() != QVMidi::Stopped && song.state() != QVMidi::Paused;
  return compareSound(look, songIsNamed, sounds ? song.fileName() : QVString());
}

struct Comparison {
  Expectation expectation;
  std::string (*compare)(const Looker&);
};
constexpr std::array Comparisons{
    Comparison{Expectation::Scene, compareScene},   Comparison{Expectation::Step, compareStep},
    Comparison{Expectation::Reg, compareReg},       Comparison{Expectation::SysReg, compareSysReg},
    Comparison{Expectation::StrReg, compareStrReg}, Comparison{Expectation::Shown, compareShown},
    Comparison{Expectation::Hidden, compareHidden}, Comparison{Expectation::Pixel, comparePixel},
    Comparison{Expectation::Wave, compareWave},     Comparison{Expectation::Song, compareSong},
};

}  // namespace

std::string compareExpectation(const ScriptLine& line, GameHost& host, const Frame& frame) {
  if (!host.manager) return "the game has not begun";
  for (const Comparison& comparison : Comparisons)
    if (comparison.expectation == line.expectation) return comparison.compare({line, host, frame});
  return "this cannot be looked at";
}

}  // namespace qv
