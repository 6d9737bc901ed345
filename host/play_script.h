#pragma once

/// The play-script language: one line, one thing that a player does or that must hold. This is the
/// reader; script_player.h acts. Pure; any thread. See docs/play-scripts.md.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/dialogs/dialogs.h"

namespace qv {

struct ScriptLine {
  enum class Verb {
    Ready,
    Move,
    Click,
    Press,
    Release,
    Right,
    Drag,
    Wheel,
    Key,
    Type,
    Read,
    Minimise,
    Restore,
    Close,
    Sleep,
    Answer,
    Shot,
    Expect,
    Quit,
  };
  enum class Expectation {
    None,
    Scene,
    Step,
    Reg,
    SysReg,
    StrReg,
    Shown,
    Hidden,
    Pixel,
    Wave,
    Song
  };

  Verb verb = Verb::Ready;
  bool now = false;          ///< delivered whatever the game is doing
  uint32_t waitOrdinal = 0;  ///< the wait that must take it, from 1; 0: the next one
  int number = 0;            ///< line number in the file, from 1
  std::string source;        ///< the line as written

  int x = 0, y = 0;          ///< of the places; wheel: y 1 up, -1 down
  int toX = 0, toY = 0;      ///< drag
  bool hasPosition = false;  ///< right
  int key = 0;               ///< virtual key code
  uint32_t millis = 0;       ///< sleep
  BoxAnswer answer = BoxAnswer::Ok;
  Expectation expectation = Expectation::None;
  int32_t registerNumber = 0;
  int64_t value = 0;  ///< expected number, or 0xRRGGBB
  std::string text;   ///< UTF-8: typed text, file, scene, object, expected text, sound
                      ///< read: the scene to come to; empty: the next choice
};

struct ParsedScript {
  std::vector<ScriptLine> lines;
  std::string complaint;  ///< "line 3: ..." for the first bad line; empty when all are good
};

/// Reads a whole script; at most a million lines of 4,096 bytes each.
ParsedScript parsePlayScript(std::string_view utf8);

/// The virtual key code of a key's name in scripts ("F1", "Return", "Num3"), or nothing.
std::optional<int> keyOfName(std::string_view name);
/// The reverse, for recording; empty for keys that scripts cannot say.
std::string nameOfKey(int key);

/// A text as scripts write it, quoted.
std::string quotedText(std::string_view utf8);

}  // namespace qv
