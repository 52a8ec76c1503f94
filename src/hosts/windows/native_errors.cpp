#include "hosts/windows/native_errors.h"

#include "base/failure.h"
#include "base/out_of_memory.h"

namespace tarnvale {
namespace {

// Later than the headers for the oldest system.
constexpr DWORD kDiskQuotaExceeded = 1295;
constexpr DWORD kNoSuchDevice = 433;
constexpr DWORD kDeviceHardwareError = 483;

}  // namespace

bool MeansAway(DWORD error) {
  switch (error) {
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_NO_NET_OR_BAD_PATH:
    case ERROR_NO_NETWORK:
    case ERROR_NETWORK_UNREACHABLE:
    case ERROR_HOST_UNREACHABLE:
    case ERROR_REM_NOT_LIST:
    case ERROR_NETWORK_BUSY:
      return true;
    default:
      return false;
  }
}

int ErrorNumberOf(DWORD error, Attempt attempt) {
  if (MeansAway(error)) return kPathNotFound;
  switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_NO_MORE_FILES:
      return kFileNotFound;
    case ERROR_PATH_NOT_FOUND:
    case ERROR_DIRECTORY:
    case ERROR_BAD_PATHNAME:
      return kPathNotFound;
    case ERROR_INVALID_NAME:
    case ERROR_FILENAME_EXCED_RANGE:
      return attempt == Attempt::kQuery ? kFileNotFound : kPathFileAccess;
    case ERROR_ACCESS_DENIED:
    case ERROR_WRITE_PROTECT:
    case ERROR_PRIVILEGE_NOT_HELD:
    case ERROR_NETWORK_ACCESS_DENIED:
      return attempt == Attempt::kQuery ? kPathFileAccess : kPermissionDenied;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_USER_MAPPED_FILE:
    case ERROR_BUSY:
    case ERROR_DELETE_PENDING:
      return kPermissionDenied;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
    case kDiskQuotaExceeded:
    case ERROR_NOT_ENOUGH_QUOTA:
    // FAT's root folder is full.
    case ERROR_CANNOT_MAKE:
    // A file too large for the medium's format doesn't fit on it either.
    case ERROR_FILE_TOO_LARGE:
      return kDiskFull;
    case ERROR_CRC:
    case ERROR_SEEK:
    case ERROR_SECTOR_NOT_FOUND:
    case ERROR_WRITE_FAULT:
    case ERROR_READ_FAULT:
    case ERROR_GEN_FAILURE:
    case ERROR_IO_DEVICE:
    case ERROR_FILE_CORRUPT:
    case ERROR_DISK_CORRUPT:
      return kDeviceIoError;
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
    case ERROR_NO_SYSTEM_RESOURCES:
      return kOutOfMemory;
    case ERROR_TOO_MANY_OPEN_FILES:
      return kTooManyFiles;
    case ERROR_DEV_NOT_EXIST:
    case ERROR_UNEXP_NET_ERR:
    case ERROR_NETNAME_DELETED:
    case ERROR_DEVICE_NOT_CONNECTED:
    case ERROR_SEM_TIMEOUT:
    case ERROR_BAD_UNIT:
    case ERROR_FILE_INVALID:
    case kNoSuchDevice:
    case kDeviceHardwareError:
    case ERROR_DEVICE_REMOVED:
      return kDeviceUnavailable;
    case ERROR_NOT_READY:
    case ERROR_WRONG_DISK:
    case ERROR_MEDIA_CHANGED:
    case ERROR_NO_MEDIA_IN_DRIVE:
    case ERROR_UNRECOGNIZED_VOLUME:
      return kDiskNotReady;
    default:
      return kPathFileAccess;
  }
}

void RaiseNative(DWORD error, Attempt attempt) {
  throw ProgramError(ErrorNumberOf(error, attempt));
}

}  // namespace tarnvale
