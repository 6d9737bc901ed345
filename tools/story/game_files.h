#pragma once

/// Which files a game has, whether it is built already or still its sources. Names are relative to
/// the game folder with "/", and letter case does not matter, as for a player; what lies on the
/// data disc begins with "disc/". One thread.

#include <filesystem>
#include <set>
#include <string>

namespace qv::story {

class GameFiles {
 public:
  /// What the game's sources will become: cg/pictures.txt, midi/*.song, wave/effects.txt, voices/.
  static GameFiles ofSources(const std::filesystem::path& folder);
  /// A built game folder.
  static GameFiles ofBuilt(const std::filesystem::path& folder);

  void add(const std::string& name);
  bool has(const std::string& name) const;
  /// True when nothing at all was found, so that asking makes no sense.
  bool empty() const { return names_.empty(); }
  /// Names in lower case.
  const std::set<std::string>& names() const { return names_; }

 private:
  std::set<std::string> names_;
};

/// The name of a file as a scene says it ("dat\\QVlogo.mcg", "%:\\VOICE\\V00\\0000_001.wav") within
/// the game folder. UTF-8.
std::string nameInGame(const std::string& path);

}  // namespace qv::story
