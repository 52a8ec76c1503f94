#include "hosts/linux/native_errors.h"

#include <cerrno>

#include "base/failure.h"

namespace tarnvale {

int ErrorNumberOf(int error, Attempt attempt) {
  switch (error) {
    case ENOENT:
      return kFileNotFound;
    case ENOTDIR:
      return kPathNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
      return attempt == Attempt::kQuery ? kPathFileAccess : kPermissionDenied;
    case EBUSY:
    case ETXTBSY:
      return kPermissionDenied;
    case ENOSPC:
    case EDQUOT:
    // A file too large for the medium's format doesn't fit on it either.
    case EFBIG:
      return kDiskFull;
    case EIO:
      return kDeviceIoError;
    case EMFILE:
    case ENFILE:
      return kTooManyFiles;
    case ENODEV:
    case ENXIO:
    case ESTALE:
    case ENOTCONN:
    case EHOSTDOWN:
      return kDeviceUnavailable;
    case ENOMEDIUM:
      return kDiskNotReady;
    default:
      return kPathFileAccess;
  }
}

void RaiseNative(int error, Attempt attempt) {
  throw ProgramError(ErrorNumberOf(error, attempt));
}

}  // namespace tarnvale
