#pragma once

/// How a play script names what sounds: by the path as the game gives it, by the file's name with
/// or without its ending, or by the short name that scenes use. Letter case and the kind of slash
/// make no difference. Pure; any thread.

#include <string>

namespace qv {

/// Both in UTF-8. "SE05" and an effect's label name the effect's file.
bool waveIsNamed(const std::string& path, const std::string& name);
/// "K03" names song 3 in any of its arrangements.
bool songIsNamed(const std::string& path, const std::string& name);

}  // namespace qv
