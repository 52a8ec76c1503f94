#include "hosts/windows/replacing_copy.h"

#include <winioctl.h>

#include <vector>

#include "base/failure.h"
#include "hosts/windows/native_errors.h"
#include "hosts/windows/ownership.h"
#include "hosts/windows/paths.h"
#include "hosts/windows/volume.h"

namespace tarnvale {
namespace {

constexpr DWORD kKeptAttributes =
    FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;

// Puts what was written to a file onto the medium.
void FinishWritten(const std::wstring& native, std::optional<std::uint64_t> time) {
  const Handle file(::CreateFileW(native.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (file && time) {
    const FILETIME native_time = FileTimeOf(*time);
    ::SetFileTime(file.Get(), nullptr, nullptr, &native_time);
  }
  if (!file || !FlushFile(file.Get())) RaiseLast(Attempt::kChange);
}

// What the user gave a file that is replaced, and a copy hasn't by itself. A medium may
// refuse; that does no harm.
void TakeOver(const std::wstring& replaced, const std::wstring& fresh) {
  KeepRightsOf(replaced, fresh);
  const auto old = StateOf(replaced, Links::kKeep);
  const auto now = StateOf(fresh, Links::kKeep);
  if (!old || !now || old->is_link) return;
  const DWORD missing = old->attributes & ~now->attributes;
  if ((missing & FILE_ATTRIBUTE_ENCRYPTED) != 0) {
    ::EncryptFileW(fresh.c_str());
  } else if ((missing & FILE_ATTRIBUTE_COMPRESSED) != 0) {
    const Handle file(::CreateFileW(fresh.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    USHORT format = COMPRESSION_FORMAT_DEFAULT;
    DWORD length = 0;
    if (file) {
      ::DeviceIoControl(file.Get(), FSCTL_SET_COMPRESSION, &format, sizeof format, nullptr, 0,
                        &length, nullptr);
    }
  }
}

// Scanners and indexers open what was just written or listed, for a moment.
bool MoveWithPatience(const std::wstring& from, const std::wstring& to, DWORD flags) {
  constexpr DWORD kLongestPause_ms = 320;
  for (DWORD pause_ms = 10;; pause_ms *= 2) {
    if (::MoveFileExW(from.c_str(), to.c_str(), flags) != 0) return true;
    const DWORD error = ::GetLastError();
    const bool may_pass = error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED ||
                          error == ERROR_LOCK_VIOLATION || error == ERROR_USER_MAPPED_FILE;
    if (!may_pass || pause_ms > kLongestPause_ms) return false;
    ::Sleep(pause_ms);
  }
}

// Media that can't hold links refuse to make one in these ways; and the system refuses
// those to files to ordinary users.
bool MeansNoLinks(DWORD error) {
  return error == ERROR_INVALID_FUNCTION || error == ERROR_NOT_SUPPORTED ||
         error == ERROR_INVALID_PARAMETER || error == ERROR_NOT_A_REPARSE_POINT ||
         error == ERROR_PRIVILEGE_NOT_HELD;
}

// False where none can be made.
bool WriteLink(const std::wstring& native, const FileState& state, std::vector<char> data) {
  const bool is_folder = state.IsFolder();
  if (is_folder && ::CreateDirectoryW(native.c_str(), nullptr) == 0) RaiseLast(Attempt::kChange);
  const Handle link(::CreateFileW(
      native.c_str(), GENERIC_WRITE, 0, nullptr, is_folder ? OPEN_EXISTING : CREATE_NEW,
      FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
  DWORD length = 0;
  if (link &&
      ::DeviceIoControl(link.Get(), FSCTL_SET_REPARSE_POINT, data.data(),
                        static_cast<DWORD>(data.size()), nullptr, 0, &length, nullptr) != 0) {
    // Otherwise the copy would be the newer one and come back in the next run.
    const FILETIME time = FileTimeOf(state.modified);
    ::SetFileTime(link.Get(), nullptr, nullptr, &time);
    return true;
  }
  const DWORD error = ::GetLastError();
  if (MeansNoLinks(error)) return false;
  RaiseNative(error, Attempt::kChange);
}

bool IsFolderLink(const std::wstring& native) {
  const auto state = StateOf(native, Links::kKeep);
  return state && state->IsFolder();
}

}  // namespace

std::vector<char> ReadLink(const std::wstring& native) {
  constexpr std::size_t kLongest = 16384;  // the system's own limit
  const Handle link(::CreateFileW(
      native.c_str(), FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
      OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
  std::vector<char> data(kLongest);
  DWORD length = 0;
  if (!link || ::DeviceIoControl(link.Get(), FSCTL_GET_REPARSE_POINT, nullptr, 0, data.data(),
                                 kLongest, &length, nullptr) == 0) {
    RaiseLast(Attempt::kChange);
  }
  data.resize(length);
  return data;
}

void RequireReplaceable(const FileState& source, const FileState& target) {
  if (target.IsFolder() && !target.is_link) {
    throw ProgramError(source.is_link ? kFileAlreadyExists : kPathFileAccess);
  }
  if (target.IsReadOnly() && !target.is_link) throw ProgramError(kPathFileAccess);
}

void GiveName(const std::wstring& temporary, const std::wstring& target, bool replaces) {
  const DWORD flags = MOVEFILE_WRITE_THROUGH | (replaces ? MOVEFILE_REPLACE_EXISTING : 0);
  if (MoveWithPatience(temporary, target, flags)) return;
  DeleteTemporary(temporary);
  const DWORD error = ::GetLastError();
  if (error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS) {
    throw ProgramError(kFileAlreadyExists);
  }
  RaiseNative(error, Attempt::kChange);
}

void GiveName(TemporarySlot& slot, const std::wstring& target, bool replaces) {
  if (replaces) slot.WillReplace(target);
  GiveName(slot.NativePath(), target, replaces);
}

void CopyFileBeside(TemporarySlot& slot, const std::wstring& source, DWORD attributes,
                    const std::wstring& target, bool replaces, Rights rights,
                    const CopyExtras& extras) {
  const std::wstring folder = NativeFolderOf(target);
  const std::wstring& temporary = slot.Begin(folder);
  if (rights == Rights::kOwner) {
    // A copy into a file that is there keeps that one's security.
    const Handle made(::CreateFileW(temporary.c_str(), GENERIC_WRITE, 0, OwnersAlone(folder),
                                    CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!made) RaiseLast(Attempt::kChange);
  }
  try {
    if (::CopyFileExW(source.c_str(), temporary.c_str(), nullptr, nullptr, nullptr,
                      COPY_FILE_ALLOW_DECRYPTED_DESTINATION) == 0) {
      RaiseLast(Attempt::kChange);
    }
    ::SetFileAttributesW(temporary.c_str(), FILE_ATTRIBUTE_NORMAL);
    if (replaces && rights != Rights::kOwner) TakeOver(target, temporary);
    FinishWritten(temporary, extras.time);
    if (extras.may_replace && !extras.may_replace()) throw ProgramError(kFileAlreadyExists);
    if (::SetFileAttributesW(temporary.c_str(),
                             (attributes & kKeptAttributes) | FILE_ATTRIBUTE_ARCHIVE) == 0) {
      RaiseLast(Attempt::kChange);
    }
  } catch (const ProgramError&) {
    DeleteTemporary(temporary);
    throw;
  }
  GiveName(slot, target, replaces);
}

bool CopyLink(const Temporaries& temporaries, const std::wstring& source, const FileState& state,
              const std::wstring& target, bool replaces) {
  const std::wstring folder = NativeFolderOf(target);
  const DWORD features = VolumeOf(folder).features;
  if (features != 0 && (features & FILE_SUPPORTS_REPARSE_POINTS) == 0) return false;
  std::vector<char> data = ReadLink(source);
  TemporarySlot slot(temporaries);
  const std::wstring& temporary = slot.Begin(folder);
  try {
    if (!WriteLink(temporary, state, std::move(data))) {
      DeleteTemporary(temporary);
      return false;
    }
  } catch (const ProgramError&) {
    DeleteTemporary(temporary);
    throw;
  }
  if (!replaces || !(state.IsFolder() || IsFolderLink(target))) {
    GiveName(slot, target, replaces);
    return true;
  }
  // A folder's name can't be taken over in one step, not even by a link to one. What is
  // there waits under a temporary name of its own until the link is in its place.
  TemporarySlot aside(temporaries);
  const std::wstring& old = aside.Begin(folder);
  aside.WillReplace(target, TemporarySlot::Steps::kAlways);
  if (!MoveWithPatience(target, old, MOVEFILE_WRITE_THROUGH)) {
    DeleteTemporary(temporary);
    RaiseLast(Attempt::kChange);
  }
  try {
    GiveName(slot, target, false);
  } catch (const ProgramError&) {
    ::MoveFileExW(old.c_str(), target.c_str(), MOVEFILE_WRITE_THROUGH);
    throw;
  }
  DeleteTemporary(old);
  return true;
}

}  // namespace tarnvale
