#pragma once

/// Classic paths on the machine's files. Drive C is the game folder with the player's folder laid
/// over it (reading looks in the player's folder first, writing goes there alone); drive D is the
/// data disc's folder, read only. Names are Shift-JIS, case-blind, split at backslashes that are
/// not the second byte of a character (a forward slash splits too). Nothing outside the roots can
/// be named, not by "..", not by a link of the player's making.
/// A handle belongs to one thread at a time; all other operations may come from any thread.

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qv {

/// The classic platform's error codes, as far as they are shown or tested.
enum FileError : uint32_t {
  FileOk = 0,
  FileNotFound = 2,
  FilePathNotFound = 3,
  FileTooManyOpen = 4,
  FileAccessDenied = 5,
  FileInvalidHandle = 6,
  FileNotReady = 21,
  FileGeneralFailure = 31,
  FileSharing = 32,
  FileLocked = 33,
  FileHandleEof = 38,
  FileBadNetworkPath = 53,
  FileBadNetworkName = 67,
  FileExists = 80,
  FileInvalidParameter = 87,
  FileDiskFull = 112,
  FileInvalidName = 123,
  FileNoNetworkAccess = 2118,
};

inline constexpr uint32_t CreateNew = 1, CreateAlways = 2, OpenExisting = 3, OpenAlways = 4,
                          TruncateExisting = 5;                                 // dispositions
inline constexpr uint32_t GenericRead = 0x80000000, GenericWrite = 0x40000000;  // access
inline constexpr uint32_t ShareRead = 1, ShareWrite = 2;
inline constexpr uint32_t AttributeReadOnly = 1, AttributeDirectory = 16, AttributeNormal = 128;
inline constexpr uint32_t DriveFixed = 3, DriveCdRom = 5, DriveNoRoot = 1;

/// Whether a file written afresh is flushed to the disk before it takes its name.
enum class Durability { Flushed, Renamed };
enum class FileTime { Write = 0, Creation = 1, Access = 2 };
enum class SeekFrom { Start = 0, Current = 1, End = 2 };

struct FileRoots {
  std::filesystem::path game;
  std::filesystem::path player;
  std::filesystem::path disc;  ///< empty: there is no drive D
};

struct FileEntry {
  std::string name;  ///< Shift-JIS, as stored
  bool directory = false;
  int64_t bytes = 0;
};

class FileSystem {
 public:
  using Handle = int;
  static constexpr Handle NoHandle = -1;

  explicit FileSystem(FileRoots roots);
  ~FileSystem();
  FileSystem(const FileSystem&) = delete;
  FileSystem& operator=(const FileSystem&) = delete;

  struct Opened {
    Handle handle = NoHandle;
    uint32_t error = FileOk;
  };
  /// Every change is written beside the file's name and takes it in `commit`; until then readers
  /// see the old file. A file opened without being made afresh is copied at the first write.
  Opened open(std::string_view path, uint32_t disposition, uint32_t access, uint32_t share,
              uint32_t attributes);
  void setDurability(Handle handle, Durability durability);

  struct Transferred {
    int64_t bytes = 0;  ///< -1 on failure
    uint32_t error = FileOk;
  };
  Transferred read(Handle handle, void* buffer, size_t size);
  Transferred write(Handle handle, const void* buffer, size_t size);
  /// The new position, or -1; a position before the start is refused.
  int64_t seek(Handle handle, int64_t offset, SeekFrom from);
  int64_t size(Handle handle);
  /// UTC in milliseconds since 1970 on the kernel's clock; nothing on a bad handle.
  std::optional<int64_t> time(Handle handle, FileTime which);
  /// Gives a written file its name and closes; FileOk for files that were only read. On an error
  /// the file stays open, so that the call can be tried again or `discard` give up. A write that
  /// failed and was not made good by the same write again is such an error.
  uint32_t commit(Handle handle);
  /// Closes; what was written vanishes.
  void discard(Handle handle);

  /// Nothing when there is no such file (`lastError` of the call in `error`).
  std::optional<uint32_t> attributes(std::string_view path, uint32_t* error = nullptr);
  /// Removes from the player's folder; a file of the game shows again. What only the game or the
  /// disc has is refused (5), as are folders and files that are read-only.
  uint32_t remove(std::string_view path);
  /// Entries of a folder of both layers, each name once, sorted by byte order.
  std::vector<FileEntry> list(std::string_view folder);

  uint32_t logicalDrives() const;                   ///< bit 0 is A
  uint32_t driveType(std::string_view root) const;  ///< "D:\\"
  std::string currentDirectory() const;             ///< "C:\\" at first, with a final backslash
  bool setCurrentDirectory(std::string_view path);

  /// The machine's path of an existing file, for what must be handed to a library.
  std::optional<std::filesystem::path> hostPath(std::string_view path);
  const FileRoots& roots() const;

 private:
  struct Body;
  std::unique_ptr<Body> body_;
};

}  // namespace qv
