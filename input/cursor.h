#pragma once

/// QVCursor: what gives the pointer its look over a window: a cursor of the system, one of the
/// game's resources (the file C:\res\NAME.cur, a number's name its digits), or a file. Scenario
/// thread.

#include <cstdint>

#include "platform/display/pointer_look.h"

namespace qv {

class QVCursor {
 public:
  // What cannot be had gives the arrow, without a word to the player.

  /// A resource, else a file by its name as given. Null is the arrow.
  void loadByName(const char* name);
  /// 0 is the arrow; the system's numbers are the system's cursors, all others resources.
  void loadByNumber(int32_t number);

  const PointerLook& look() const { return look_; }
  bool fromFile() const { return fromFile_; }  ///< by its name, not a resource

 private:
  bool loadFile(const char* path);
  bool loadResource(const char* name);
  void setSystem(int32_t number);

  bool fromFile_ = false;
  PointerLook look_;
};

}  // namespace qv
