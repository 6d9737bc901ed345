#pragma once

/// A classic path taken apart: a drive and the names below its root, "." and ".." resolved. What
/// cannot be a name there (and so could mean something else to the machine) is an error here.
/// Pure functions; any thread.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files/file_system.h"

namespace qv {

struct ClassicPath {
  char drive = 'C';                   ///< upper case
  std::vector<std::string> elements;  ///< UTF-8, spelled as asked for; empty: the root
  bool folder = false;                ///< ended in a backslash: only a folder will do
  uint32_t error = FileOk;            ///< anything else: the rest means nothing
};

/// `path` is Shift-JIS; what it leaves out comes from `current`.
ClassicPath parseClassicPath(std::string_view path, const ClassicPath& current);
/// "C:\dat\x.dat" in UTF-8; no final backslash but the root's.
std::string utf8OfClassicPath(const ClassicPath& path);

/// A name as it is compared: letters of the system's character set (ASCII, full width, Greek,
/// Cyrillic, small Roman numerals) in lower case. Malformed UTF-8 only folds its ASCII letters.
std::string foldedName(std::string_view utf8);

/// Unfinished files lie beside their target under such names, which no path can say.
inline constexpr std::string_view UnfinishedPrefix = ".qv-unfinished.";
bool isUnfinishedName(std::string_view utf8);

/// The Shift-JIS of a machine's name, when a classic path can say it; else empty.
std::string classicNameOf(std::string_view utf8);

}  // namespace qv
