#pragma once

/// Reads the text in which an author draws a game's external characters. docs/qvtool.md tells the
/// form.

#include <string>
#include <string_view>

#include "tools/qvtool/truetype.h"

namespace qv::tool {

/// The font that a text describes. Throws Failure with a sentence that says the place ("NAME:12:
/// …").
OutlineFont readFontSource(std::string_view text, const std::string& name);

}  // namespace qv::tool
