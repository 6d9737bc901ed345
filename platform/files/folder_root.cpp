#include "platform/files/folder_root.h"

#include <algorithm>
#include <cerrno>
#include <memory>
#include <system_error>

#include <dirent.h>
#include <fcntl.h>

#include "platform/files/classic_path.h"
#include "platform/files/system_calls.h"

namespace qv {

namespace {

/// 0 or errno of a look at something below `root`.
int statusBeneath(int root, const std::string& relative, struct stat& status) {
  const Descriptor opened(fileCalls().openBeneath(root, relative.c_str(), O_PATH));
  if (!opened || fstat(opened.get(), &status) != 0) return errno;
  return 0;
}

bool isMissing(int error) {
  return error == ENOENT || error == ENOTDIR;
}

std::string joined(const std::string& folder, const std::string& name) {
  return folder == "." ? name : folder + "/" + name;
}

/// The name in that folder whose folded form is `folded`; empty when there is none, with errno in
/// `error`: a machine that has no descriptor left does not know that a file is missing.
std::string spellingIn(int root, const std::string& folder, const std::string& folded, int& error) {
  error = ENOENT;
  const Descriptor opened(
      fileCalls().openBeneath(root, folder.c_str(), O_RDONLY | O_DIRECTORY | O_NONBLOCK));
  if (!opened) {
    // A folder that may be entered but not listed has its files under their exact names.
    if (errno != EACCES) error = errno;
    return {};
  }
  for (std::string& name : namesIn(opened.get())) {
    if (foldedName(name) == folded) return std::move(name);
  }
  return {};
}

}  // namespace

std::vector<std::string> namesIn(int folder) {
  std::vector<std::string> names;
  // The stream takes over a descriptor of its own, so that the caller's keeps its position.
  const int own = openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (own < 0) return names;
  const std::unique_ptr<DIR, int (*)(DIR*)> stream(fdopendir(own), closedir);
  if (!stream) {
    ::close(own);
    return names;
  }
  while (const dirent* entry = readdir(stream.get())) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
  }
  std::sort(names.begin(), names.end());
  return names;
}

Descriptor FolderRoot::openRoot() const {
  if (path_.empty()) {
    errno = ENOENT;
    return Descriptor();
  }
  return Descriptor(::open(path_.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
}

int FolderRoot::create() const {
  std::error_code error;
  std::filesystem::create_directories(path_, error);
  return error.value();
}

FolderRoot::Found FolderRoot::find(std::span<const std::string> elements) const {
  Found found;
  const Descriptor root = openRoot();
  if (!root) {
    found.error = errno;
    return found;
  }
  // Nearly every name is spelled as the file is: one look at the whole path.
  std::string exact = ".";
  for (const std::string& element : elements)
    exact = joined(exact, element);
  found.error = statusBeneath(root.get(), exact, found.status);
  if (!isMissing(found.error)) {
    if (found.ok()) found.depth = elements.size();
    found.relative = exact;
    return found;
  }
  found.error = statusBeneath(root.get(), ".", found.status);
  for (const std::string& element : elements) {
    if (!found.ok()) break;
    std::string next = joined(found.relative, element);
    int error = statusBeneath(root.get(), next, found.status);
    if (isMissing(error)) {
      const std::string spelled =
          spellingIn(root.get(), found.relative, foldedName(element), error);
      if (!spelled.empty()) {
        next = joined(found.relative, spelled);
        error = statusBeneath(root.get(), next, found.status);
      }
    }
    found.error = error;
    if (error == 0) {
      found.relative = next;
      found.depth += 1;
    }
  }
  return found;
}

Descriptor FolderRoot::open(const std::string& relative, int flags) const {
  const Descriptor root = openRoot();
  if (!root) return Descriptor();
  return Descriptor(fileCalls().openBeneath(root.get(), relative.c_str(), flags));
}

std::vector<FolderRoot::Entry> FolderRoot::list(const std::string& relative) const {
  std::vector<Entry> entries;
  const Descriptor root = openRoot();
  const Descriptor folder = open(relative, O_RDONLY | O_DIRECTORY | O_NONBLOCK);
  if (!root || !folder) return entries;
  for (std::string& name : namesIn(folder.get())) {
    struct stat status {};
    if (statusBeneath(root.get(), joined(relative, name), status) != 0) continue;
    const bool directory = S_ISDIR(status.st_mode);
    if (!directory && !S_ISREG(status.st_mode)) continue;
    entries.push_back({std::move(name), directory, directory ? 0 : status.st_size});
  }
  return entries;
}

}  // namespace qv
