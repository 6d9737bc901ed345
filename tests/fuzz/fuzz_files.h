#pragma once

/// What fuzz entries of file formats stand on: a kernel, silent boxes, two files that stay
/// open over all runs, one that is given to the reader and one that takes what is written back.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include "foundation/file.h"
#include "platform/dialogs/dialogs.h"
#include "platform/files/file_system.h"
#include "platform/kernel/kernel.h"
#include "platform/services.h"

namespace qv::fuzz {

/// Ends the run with a finding.
[[noreturn]] inline void finding(const char* what) {
  std::fprintf(stderr, "finding: %s\n", what);
  std::abort();
}

inline void require(bool holds, const char* what) {
  if (!holds) finding(what);
}

class SilentDialogs : public Dialogs {
 public:
  BoxAnswer messageBox(std::string_view, std::string_view, uint32_t flags) override {
    return (flags & BoxButtonMask) == 0 ? BoxAnswer::Ok : BoxAnswer::Cancel;
  }
  bool fileDialog(FileDialogRequest&) override { return false; }
};

class FuzzFiles {
 public:
  FuzzFiles()
      : folder_(makeFolder()),
        kernel_(makeRealKernel()),
        files_(FileRoots{folder_ / "game", folder_ / "player", {}}),
        services_(Services{.files = &files_, .dialogs = &dialogs_}) {
    const std::filesystem::path path = folder_ / "player" / "input.bin";
    inputDescriptor_ = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (inputDescriptor_ < 0) finding("the input file cannot be made");
    input_.openName("input.bin", OpenExisting, GenericRead, ShareRead | ShareWrite,
                    AttributeNormal);
    output_.openName("output.bin", CreateAlways, GenericRead | GenericWrite, ShareRead,
                     AttributeNormal);
  }
  ~FuzzFiles() {
    ::close(inputDescriptor_);
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  FuzzFiles(const FuzzFiles&) = delete;
  FuzzFiles& operator=(const FuzzFiles&) = delete;

  /// The input file with these bytes, at its start.
  QVFile& input(const uint8_t* data, size_t size) {
    if (::ftruncate(inputDescriptor_, static_cast<off_t>(size)) != 0 ||
        ::pwrite(inputDescriptor_, data, size, 0) != static_cast<ssize_t>(size))
      finding("the input file cannot be written");
    input_.seek(0, SeekFrom::Start);
    return input_;
  }
  /// Where that file stands, as "input.bin".
  std::filesystem::path folder() const { return folder_ / "player"; }
  /// The output file at its start. What earlier runs wrote stands behind what this one writes; the
  /// file is never finished and so leaves nothing behind.
  QVFile& output() {
    output_.seek(0, SeekFrom::Start);
    return output_;
  }
  std::string outputBytes(int64_t size) {
    std::string bytes(static_cast<size_t>(size), '\0');
    output_.seek(0, SeekFrom::Start);
    if (output_.read(bytes.data(), static_cast<int32_t>(size)) != size)
      finding("the output file cannot be read");
    return bytes;
  }

 private:
  static std::filesystem::path makeFolder() {
    // In memory where the machine has such a folder.
    const std::filesystem::path memory = "/dev/shm";
    const std::filesystem::path base =
        ::access(memory.c_str(), W_OK) == 0 ? memory : std::filesystem::temp_directory_path();
    std::string pattern = (base / "qvlib.XXXXXX").string();
    if (!mkdtemp(pattern.data())) finding("no folder can be made");
    std::filesystem::create_directories(std::filesystem::path(pattern) / "game");
    std::filesystem::create_directories(std::filesystem::path(pattern) / "player");
    return pattern;
  }
  std::filesystem::path folder_;
  KernelScope kernel_;
  FileSystem files_;
  SilentDialogs dialogs_;
  ServicesScope services_;
  QVFile input_, output_;
  int inputDescriptor_ = -1;
};

}  // namespace qv::fuzz
