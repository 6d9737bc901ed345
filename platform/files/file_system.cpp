#include "platform/files/file_system.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <map>
#include <mutex>
#include <set>

#include <fcntl.h>
#include <sys/stat.h>

#include "platform/files/classic_path.h"
#include "platform/files/file_errors.h"
#include "platform/files/folder_root.h"
#include "platform/files/open_file.h"
#include "platform/files/system_calls.h"
#include "platform/kernel/kernel.h"
#include "platform/text/shift_jis.h"

namespace qv {

namespace {

constexpr size_t MaxOpenFiles = 255;
constexpr unsigned ReadOnlyMode = 0444, FileMode = 0644, FolderMode = 0755;

bool isReadOnly(const struct stat& status) {
  return (status.st_mode & 0222) == 0;
}

/// A path as the layers see it.
struct Located {
  const FolderRoot* layer = nullptr;  ///< null: nowhere
  FolderRoot::Found found;
  uint32_t error = FileOk;
};

struct Disposition {
  uint32_t number;
  bool mayExist, mayBeMissing, fresh;
};
constexpr Disposition Dispositions[] = {
    {CreateNew, false, true, true},        {CreateAlways, true, true, true},
    {OpenExisting, true, false, false},    {OpenAlways, true, true, false},
    {TruncateExisting, true, false, true},
};

const Disposition* dispositionOf(uint32_t number) {
  for (const Disposition& disposition : Dispositions) {
    if (disposition.number == number) return &disposition;
  }
  return nullptr;
}

}  // namespace

struct FileSystem::Body {
  explicit Body(FileRoots given)
      : roots(std::move(given)), game(roots.game), player(roots.player), disc(roots.disc) {}
  ~Body() {
    for (auto& slot : slots)
      delete slot.load();
  }

  ClassicPath parse(std::string_view path);
  /// The layers of a drive in order of reading; empty for a drive that is not there.
  std::vector<const FolderRoot*> layers(char drive) const;
  Located locate(const ClassicPath& path) const;
  Opened openFound(const ClassicPath& path, const Disposition& disposition, uint32_t access,
                   uint32_t attributes);
  /// The player's folder for a path's file, made as far as the game has it; FileOk or the error.
  uint32_t target(const ClassicPath& path, const Located& located, WriteTarget& target);
  uint32_t ensureFolder(const std::vector<std::string>& elements, Descriptor& folder);
  void cleanOnce(const std::string& relative, int folder);
  Opened install(std::unique_ptr<OpenFile> file);
  OpenFile* at(Handle handle) const;
  void close(Handle handle);

  const FileRoots roots;
  const FolderRoot game, player, disc;
  mutable Lock lock{"file system", LockRank::Leaf};  ///< guards `current` and `cleaned`
  ClassicPath current;
  std::set<std::string> cleaned;  ///< the player's folders whose leftovers are gone
  // A handle belongs to one thread at a time, so a slot needs no lock: only its taking races.
  mutable std::array<std::atomic<OpenFile*>, MaxOpenFiles> slots{};
};

ClassicPath FileSystem::Body::parse(std::string_view path) {
  const std::lock_guard guard(lock);
  return parseClassicPath(path, current);
}

std::vector<const FolderRoot*> FileSystem::Body::layers(char drive) const {
  if (drive == 'C') return {&player, &game};
  if (drive == 'D' && !disc.path().empty()) return {&disc};
  return {};
}

Located FileSystem::Body::locate(const ClassicPath& path) const {
  Located located;
  located.error = path.error;
  if (path.error != FileOk) return located;
  const auto candidates = layers(path.drive);
  located.error = FilePathNotFound;
  if (path.drive == 'D' && !candidates.empty() && !disc.available()) {
    located.error = FileNotReady;
    return located;
  }
  for (const FolderRoot* layer : candidates) {
    FolderRoot::Found found = layer->find(path.elements);
    if (found.ok()) {
      // "name\" asks for a folder.
      const bool wrongKind = path.folder && !found.isFolder();
      located = {layer, std::move(found), wrongKind ? FilePathNotFound : FileOk};
      return located;
    }
    if (found.error != ENOENT) {
      located.error = fileErrorOfErrno(found.error);
      return located;
    }
    // The folder is there, in whichever layer: then it is the file that is missing.
    if (found.depth + 1 == path.elements.size() && S_ISDIR(found.status.st_mode)) {
      located.error = FileNotFound;
    }
  }
  return located;
}

FileSystem::Opened FileSystem::Body::install(std::unique_ptr<OpenFile> file) {
  for (size_t index = 0; index < slots.size(); ++index) {
    OpenFile* empty = nullptr;
    if (slots[index].compare_exchange_strong(empty, file.get())) {
      static_cast<void>(file.release());  // the slot owns it now
      return {static_cast<Handle>(index + 1), FileOk};
    }
  }
  return {NoHandle, FileTooManyOpen};
}

OpenFile* FileSystem::Body::at(Handle handle) const {
  if (handle < 1 || static_cast<size_t>(handle) > slots.size()) return nullptr;
  return slots[static_cast<size_t>(handle) - 1].load(std::memory_order_acquire);
}

void FileSystem::Body::close(Handle handle) {
  if (at(handle)) delete slots[static_cast<size_t>(handle) - 1].exchange(nullptr);
}

void FileSystem::Body::cleanOnce(const std::string& relative, int folder) {
  {
    const std::lock_guard guard(lock);
    if (!cleaned.insert(relative).second) return;
  }
  FreshFile::removeLeftovers(folder);
}

uint32_t FileSystem::Body::ensureFolder(const std::vector<std::string>& elements,
                                        Descriptor& folder) {
  FolderRoot::Found own = player.find(elements);
  if (!own.ok() && own.error == ENOENT && own.depth == 0 && !player.available()) {
    if (const int error = player.create()) return fileErrorOfErrno(error);
    own = player.find(elements);
  }
  if (own.error == ENOENT) {
    // A folder of the game that the player's has not yet: it takes the game's spelling.
    const FolderRoot::Found shipped = game.find(elements);
    if (!shipped.ok() || !shipped.isFolder()) return FilePathNotFound;
    const std::filesystem::path spelled(shipped.relative);
    auto spelling = spelled.begin();
    std::advance(spelling, static_cast<std::ptrdiff_t>(own.depth));
    for (; spelling != spelled.end(); ++spelling) {
      const Descriptor parent = player.open(own.relative, O_RDONLY | O_DIRECTORY);
      if (!parent) return errno == ENOTDIR ? FilePathNotFound : fileErrorOfErrno(errno);
      if (mkdirat(parent.get(), spelling->c_str(), FolderMode) != 0 && errno != EEXIST) {
        return fileErrorOfErrno(errno);
      }
      own.relative =
          own.relative == "." ? spelling->string() : own.relative + "/" + spelling->string();
    }
  } else if (!own.ok()) {
    return fileErrorOfErrno(own.error);
  }
  folder = player.open(own.relative, O_RDONLY | O_DIRECTORY);
  if (!folder) return errno == ENOTDIR ? FilePathNotFound : fileErrorOfErrno(errno);
  cleanOnce(own.relative, folder.get());
  return FileOk;
}

uint32_t FileSystem::Body::target(const ClassicPath& path, const Located& located,
                                  WriteTarget& target) {
  if (path.drive != 'C') return FileAccessDenied;
  if (located.layer == &player && isReadOnly(located.found.status)) return FileAccessDenied;
  if (path.elements.empty() || path.folder) return FilePathNotFound;
  std::vector<std::string> parents = path.elements;
  target.name = std::move(parents.back());
  parents.pop_back();
  // An existing file keeps its spelling.
  if (located.layer) target.name = std::filesystem::path(located.found.relative).filename();
  return ensureFolder(parents, target.folder);
}

FileSystem::Opened FileSystem::Body::openFound(const ClassicPath& path,
                                               const Disposition& disposition, uint32_t access,
                                               uint32_t attributes) {
  const Located located = locate(path);
  if (!located.layer && located.error != FileNotFound) return {NoHandle, located.error};
  const bool exists = located.layer != nullptr;
  if (exists && located.error != FileOk) return {NoHandle, located.error};
  if (exists && !disposition.mayExist) return {NoHandle, FileExists};
  if (!exists && !disposition.mayBeMissing) return {NoHandle, located.error};
  if (exists && !S_ISREG(located.found.status.st_mode)) return {NoHandle, FileAccessDenied};

  const bool fresh = disposition.fresh || !exists;
  WriteTarget goal;
  if (fresh || (access & GenericWrite) != 0) {
    if (const uint32_t error = target(path, located, goal)) return {NoHandle, error};
    goal.mode = !exists && (attributes & AttributeReadOnly) != 0 ? ReadOnlyMode : FileMode;
  }
  Descriptor source;
  if (!fresh) {
    // A pipe put in the file's place since we looked must not hold us up.
    source = located.layer->open(located.found.relative, O_RDONLY | O_NONBLOCK);
    if (!source) return {NoHandle, fileErrorOfErrno(errno)};
  }
  auto file = std::make_unique<OpenFile>(std::move(source), access, utf8OfClassicPath(path));
  file->setTarget(std::move(goal));
  if (fresh) {
    if (const uint32_t error = file->begin()) return {NoHandle, error};
  }
  return install(std::move(file));
}

FileSystem::FileSystem(FileRoots roots) : body_(std::make_unique<Body>(std::move(roots))) {}
FileSystem::~FileSystem() = default;

FileSystem::Opened FileSystem::open(std::string_view path, uint32_t disposition, uint32_t access,
                                    uint32_t, uint32_t attributes) {
  const Disposition* how = dispositionOf(disposition);
  if (!how) return {NoHandle, FileInvalidParameter};
  if (disposition == TruncateExisting && (access & GenericWrite) == 0) {
    return {NoHandle, FileInvalidParameter};
  }
  return body_->openFound(body_->parse(path), *how, access, attributes);
}

void FileSystem::setDurability(Handle handle, Durability durability) {
  if (OpenFile* file = body_->at(handle)) file->setDurability(durability);
}

FileSystem::Transferred FileSystem::read(Handle handle, void* buffer, size_t size) {
  OpenFile* file = body_->at(handle);
  return file ? file->read(buffer, size) : Transferred{-1, FileInvalidHandle};
}

FileSystem::Transferred FileSystem::write(Handle handle, const void* buffer, size_t size) {
  OpenFile* file = body_->at(handle);
  return file ? file->write(buffer, size) : Transferred{-1, FileInvalidHandle};
}

int64_t FileSystem::seek(Handle handle, int64_t offset, SeekFrom from) {
  OpenFile* file = body_->at(handle);
  return file ? file->seek(offset, from) : -1;
}

int64_t FileSystem::size(Handle handle) {
  const OpenFile* file = body_->at(handle);
  return file ? file->size() : -1;
}

std::optional<int64_t> FileSystem::time(Handle handle, FileTime which) {
  const OpenFile* file = body_->at(handle);
  return file ? file->time(which) : std::nullopt;
}

uint32_t FileSystem::commit(Handle handle) {
  OpenFile* file = body_->at(handle);
  if (!file) return FileInvalidHandle;
  const uint32_t error = file->commit();
  if (error == FileOk) body_->close(handle);
  return error;
}

void FileSystem::discard(Handle handle) {
  body_->close(handle);
}

std::optional<uint32_t> FileSystem::attributes(std::string_view path, uint32_t* error) {
  const Located located = body_->locate(body_->parse(path));
  if (error) *error = located.error;
  if (located.error != FileOk) return std::nullopt;
  const struct stat& status = located.found.status;
  if (S_ISDIR(status.st_mode)) return AttributeDirectory;
  return isReadOnly(status) ? AttributeReadOnly : AttributeNormal;
}

uint32_t FileSystem::remove(std::string_view path) {
  const Located located = body_->locate(body_->parse(path));
  if (located.error != FileOk) return located.error;
  if (located.layer != &body_->player || !S_ISREG(located.found.status.st_mode) ||
      isReadOnly(located.found.status)) {
    return FileAccessDenied;
  }
  const std::filesystem::path relative(located.found.relative);
  const std::string folder = relative.has_parent_path() ? relative.parent_path().string() : ".";
  const Descriptor opened = body_->player.open(folder, O_RDONLY | O_DIRECTORY);
  if (!opened || fileCalls().removeIn(opened.get(), relative.filename().c_str()) != 0) {
    return fileErrorOfErrno(errno);
  }
  return FileOk;
}

std::vector<FileEntry> FileSystem::list(std::string_view folder) {
  const ClassicPath path = body_->parse(folder);
  std::map<std::string, FileEntry> byFoldedName;
  if (path.error == FileOk) {
    for (const FolderRoot* layer : body_->layers(path.drive)) {
      const FolderRoot::Found found = layer->find(path.elements);
      if (!found.ok()) continue;
      for (const FolderRoot::Entry& entry : layer->list(found.relative)) {
        std::string name = classicNameOf(entry.name);
        if (name.empty()) continue;
        // The upper layer's file was there first and stays.
        byFoldedName.try_emplace(foldedName(entry.name),
                                 FileEntry{std::move(name), entry.directory, entry.bytes});
      }
    }
  }
  std::vector<FileEntry> entries;
  for (auto& [folded, entry] : byFoldedName)
    entries.push_back(std::move(entry));
  std::sort(entries.begin(), entries.end(),
            [](const FileEntry& a, const FileEntry& b) { return a.name < b.name; });
  return entries;
}

uint32_t FileSystem::logicalDrives() const {
  uint32_t drives = 0;
  for (char drive = 'A'; drive <= 'Z'; ++drive) {
    if (!body_->layers(drive).empty()) drives |= 1u << (drive - 'A');
  }
  return drives;
}

uint32_t FileSystem::driveType(std::string_view root) const {
  std::string whole(root);
  if (whole.size() == 2) whole += '\\';  // "D:" alone would be a folder of that drive
  const ClassicPath path = body_->parse(whole);
  const bool isRoot = path.error == FileOk && path.elements.empty();
  if (!isRoot || body_->layers(path.drive).empty()) return DriveNoRoot;
  return path.drive == 'D' ? DriveCdRom : DriveFixed;
}

std::string FileSystem::currentDirectory() const {
  std::string utf8;
  {
    const std::lock_guard guard(body_->lock);
    utf8 = utf8OfClassicPath(body_->current);
  }
  if (utf8.back() != '\\') utf8 += '\\';
  return shiftJisOfUtf8(utf8).text;
}

bool FileSystem::setCurrentDirectory(std::string_view path) {
  ClassicPath parsed = body_->parse(path);
  const Located located = body_->locate(parsed);
  if (located.error != FileOk || !located.found.isFolder()) return false;
  parsed.folder = false;
  const std::lock_guard guard(body_->lock);
  body_->current = std::move(parsed);
  return true;
}

std::optional<std::filesystem::path> FileSystem::hostPath(std::string_view path) {
  const Located located = body_->locate(body_->parse(path));
  if (located.error != FileOk) return std::nullopt;
  return (located.layer->path() / located.found.relative).lexically_normal();
}

const FileRoots& FileSystem::roots() const {
  return body_->roots;
}

}  // namespace qv
