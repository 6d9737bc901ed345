#include "platform/text/font_search.h"

#include <cstdlib>
#include <string>
#include <vector>

namespace qv {

namespace fs = std::filesystem;

namespace {

constexpr const char* SystemFontFolder = "/usr/share/fonts";
constexpr int SearchedEntries = 8192;
constexpr int SearchedDepth = 4;

std::vector<fs::path> knownFolders() {
  std::vector<fs::path> folders = {"/usr/share/fonts/opentype/ipafont-gothic",
                                   "/usr/share/fonts/opentype/ipafont-mincho",
                                   "/usr/share/fonts/ipa-gothic",
                                   "/usr/share/fonts/ipa-mincho",
                                   "/usr/share/fonts/truetype/ipafont",
                                   "/usr/share/fonts/OTF",
                                   "/usr/local/share/fonts"};
  const char* data = std::getenv("XDG_DATA_HOME");
  const char* home = std::getenv("HOME");
  if (data && *data)
    folders.push_back(fs::path(data) / "fonts");
  else if (home && *home)
    folders.push_back(fs::path(home) / ".local/share/fonts");
  return folders;
}

std::optional<fs::path> searchBelow(const fs::path& root, const std::string& name) {
  std::error_code error;
  fs::recursive_directory_iterator entry(root, fs::directory_options::skip_permission_denied,
                                         error);
  for (int seen = 0;
       !error && entry != fs::recursive_directory_iterator() && seen < SearchedEntries;
       ++seen, entry.increment(error)) {
    if (entry.depth() >= SearchedDepth) entry.disable_recursion_pending();
    std::error_code ignored;
    if (entry->path().filename() == name && entry->is_regular_file(ignored)) return entry->path();
  }
  return std::nullopt;
}

}  // namespace

const char* fontFileName(FontFace face) {
  switch (face) {
    case FontFace::Gothic:
      return "ipag.ttf";
    case FontFace::ProportionalGothic:
      return "ipagp.ttf";
    case FontFace::Mincho:
      return "ipam.ttf";
    case FontFace::ProportionalMincho:
      return "ipamp.ttf";
  }
  return "";
}

std::optional<fs::path> findFont(FontFace face, const fs::path& onlyFolder) {
  const std::string name = fontFileName(face);
  if (!onlyFolder.empty()) return searchBelow(onlyFolder, name);
  for (const fs::path& folder : knownFolders()) {
    std::error_code ignored;
    if (fs::is_regular_file(folder / name, ignored)) return folder / name;
  }
  return searchBelow(SystemFontFolder, name);
}

}  // namespace qv
