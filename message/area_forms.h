#pragma once

/// The standing print areas as data: place, pen, font and colours of each. The start-up makes them;
/// whoever measures a text as the game will show it shapes an area of its own alike.

#include <cstdint>
#include <string>

#include "message/print_area.h"

namespace qv {

struct FontForm {
  int32_t height, weight, style, pitch;
  const char* face;  ///< UTF-8
};

struct AreaForm {
  const char* name;
  int32_t left, top, width, height;
  int32_t penX, penY, indent, lineHeight;
  uint32_t flags;
  const FontForm& font;
  ColourRef text;
  bool whiteOutlineStays = false;                 ///< the outline's colour is left as it is
  const std::string& (*noLineStart)() = nullptr;  ///< null: any character may begin a line
};

extern const AreaForm NameAreaForm, MessageAreaForm, HelpAreaForm;
/// Of the choices, from the first.
extern const AreaForm TitleAreaForms[3];
/// The small labels beside the frame.
extern const FontForm GothicLabelFont, MinchoLabelFont;

/// Gives the area all that the form says.
void shapeArea(QVPrintArea& area, const AreaForm& form);

}  // namespace qv
