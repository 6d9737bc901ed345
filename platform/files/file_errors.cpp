#include "platform/files/file_errors.h"

#include <cerrno>

#include "platform/files/file_system.h"

namespace qv {

namespace {

struct Pair {
  int number;
  uint32_t code;
};
constexpr Pair Pairs[] = {
    {0, FileOk},
    {ENOENT, FileNotFound},
    {ENOTDIR, FilePathNotFound},
    {EACCES, FileAccessDenied},
    {EPERM, FileAccessDenied},
    {EROFS, FileAccessDenied},
    {EISDIR, FileAccessDenied},
    {ENXIO, FileAccessDenied},  // a pipe or socket that somebody put there
    {EXDEV, FileAccessDenied},  // a link that leads out of the root
    {ELOOP, FileAccessDenied},  // links in a circle
    {ETXTBSY, FileSharing},
    {EBUSY, FileSharing},
    {EMFILE, FileTooManyOpen},
    {ENFILE, FileTooManyOpen},
    {EBADF, FileInvalidHandle},
    {ENODEV, FileNotReady},
    {ENOMEDIUM, FileNotReady},
    {ESTALE, FileNotReady},
    {ENOSPC, FileDiskFull},
    {EDQUOT, FileDiskFull},
    {EFBIG, FileDiskFull},
    {EEXIST, FileExists},
    {EINVAL, FileInvalidParameter},
    {ENAMETOOLONG, FileInvalidName},
    {EILSEQ, FileInvalidName},
    {EAGAIN, FileLocked},
    {EIO, FileGeneralFailure},
};

}  // namespace

uint32_t fileErrorOfErrno(int number) {
  for (const Pair& pair : Pairs) {
    if (pair.number == number) return pair.code;
  }
  return FileGeneralFailure;
}

}  // namespace qv
