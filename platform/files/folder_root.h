#pragma once

/// A folder of the machine as the root of classic names: finds them in any letter case, and never
/// leads outside, not through links either. Nothing is remembered between calls, so that files
/// which appear or vanish meanwhile are seen. Any thread.

#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include <sys/stat.h>

#include "platform/files/descriptor.h"

namespace qv {

class FolderRoot {
 public:
  explicit FolderRoot(std::filesystem::path path) : path_(std::move(path)) {}

  const std::filesystem::path& path() const { return path_; }
  /// False for an empty path and for a folder that is not there (now).
  bool available() const { return static_cast<bool>(openRoot()); }
  /// Makes the root itself where it is missing; 0 or errno.
  int create() const;

  struct Found {
    int error = 0;              ///< errno; ENOENT: `depth` names were found
    size_t depth = 0;           ///< names found from the front
    std::string relative{"."};  ///< the machine's path of those names, "." for the root
    struct stat status {};      ///< of what `relative` names
    bool ok() const { return error == 0; }
    bool isFolder() const { return S_ISDIR(status.st_mode); }
  };
  /// Each name by its exact spelling first, then by its folded form (the first in byte order).
  Found find(std::span<const std::string> elements) const;

  /// Opens what `find` found; empty and errno on failure.
  Descriptor open(const std::string& relative, int flags) const;

  struct Entry {
    std::string name;  ///< as the machine spells it
    bool directory = false;
    int64_t bytes = 0;
  };
  /// Files and folders of a folder in byte order of their names; links are followed inside only.
  std::vector<Entry> list(const std::string& relative) const;

 private:
  Descriptor openRoot() const;

  std::filesystem::path path_;
};

/// The names in an open folder without the two dots, in byte order.
std::vector<std::string> namesIn(int folder);

}  // namespace qv
