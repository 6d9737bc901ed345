#pragma once

/// What the classic platform called its Japanese faces. Pure.

#include <optional>
#include <string_view>

#include "platform/text/text_style.h"

namespace qv {

/// The face of a Shift-JIS name: full-width and half-width spellings, with or without spaces, and
/// the English ones. Nothing for any other name.
std::optional<FontFace> faceOfName(std::string_view name);

}  // namespace qv
