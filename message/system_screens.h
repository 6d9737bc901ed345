#pragma once

/// What the waits of messages and selections call in turn: saves, configuration, history, and the
/// small boxes. The screens stand on a higher floor and set themselves here. Scenario thread; all
/// of them raise on abort.

#include <cstdint>
#include <string>

namespace qv {

class SystemScreens {
 public:
  virtual ~SystemScreens() = default;
  virtual void quickSave() = 0;
  /// True when a game was loaded: ResumePendingRegister is set.
  virtual bool quickLoad() = 0;
  /// Its result becomes the wait's: -3 nothing, -10 the title, -13 a load, 255 the end.
  virtual int32_t configuration() = 0;
  virtual void history() = 0;

  virtual bool confirm(const char* text) = 0;  ///< Shift-JIS, with line feeds
  virtual void notice(const char* text) = 0;
};

/// What a player reads who asks for skip in drama mode.
std::string noSkipInDrama();

/// Null where there are none: such keys do nothing then.
SystemScreens* systemScreens();
void setSystemScreens(SystemScreens* screens);

}  // namespace qv
