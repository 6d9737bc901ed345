#pragma once

/// The standing areas of a line, name and message. A missing area is null and nothing is printed.
/// Scenario thread.

#include <cstdint>

#include "message/print_area.h"

namespace qv {

QVPrintArea* areaNamed(const char* name);

/// Both areas of the line, for what is always done to both.
struct LineAreas {
  static constexpr const char *NameArea = "name.Area", *MessageArea = "message.Area";

  /// Without those that have no place, which a scene's handles made where nothing stands.
  LineAreas();

  QVPrintArea* name;
  QVPrintArea* message;

  /// Where they stand in the strip, by presentation.
  void place(bool drama) const;
  void saveBackground() const;
  void clear() const;
  /// Nothing on the screen yet: the strip is shown by who waits.
  void print(const char* speaker, const char* text) const;
  /// The pens at the beginning of a line, with its indent.
  void home() const;
};

}  // namespace qv
