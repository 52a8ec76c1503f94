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
void FlushWritten(const std::wstring& native) {
  const Handle file(::CreateFileW(native.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file || !FlushFile(file.Get())) RaiseLast(Attempt::kChange);
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

void DeleteTemporary(const std::wstring& temporary) {
  const DWORD error = ::GetLastError();
  ::SetFileAttributesW(temporary.c_str(), FILE_ATTRIBUTE_NORMAL);
  if (::DeleteFileW(temporary.c_str()) == 0) ::RemoveDirectoryW(temporary.c_str());
  ::SetLastError(error);
}

// The whole of a link, as the system keeps it; empty when it can't be read.
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

// Media that can't hold links refuse to make one in these ways; and the system refuses
// those to files to ordinary users.
bool MeansNoLinks(DWORD error) {
  return error == ERROR_INVALID_FUNCTION || error == ERROR_NOT_SUPPORTED ||
         error == ERROR_INVALID_PARAMETER || error == ERROR_NOT_A_REPARSE_POINT ||
         error == ERROR_PRIVILEGE_NOT_HELD;
}

// False where none can be made.
bool WriteLink(const std::wstring& native, bool is_folder, std::vector<char> data) {
  if (is_folder && ::CreateDirectoryW(native.c_str(), nullptr) == 0) RaiseLast(Attempt::kChange);
  const Handle link(::CreateFileW(
      native.c_str(), GENERIC_WRITE, 0, nullptr, is_folder ? OPEN_EXISTING : CREATE_NEW,
      FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
  DWORD length = 0;
  if (link &&
      ::DeviceIoControl(link.Get(), FSCTL_SET_REPARSE_POINT, data.data(),
                        static_cast<DWORD>(data.size()), nullptr, 0, &length, nullptr) != 0) {
    return true;
  }
  const DWORD error = ::GetLastError();
  if (MeansNoLinks(error)) return false;
  RaiseNative(error, Attempt::kChange);
}

}  // namespace

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

void CopyFileBeside(Temporaries& temporaries, const std::wstring& source, DWORD attributes,
                    const std::wstring& target, bool replaces, Rights rights,
                    const std::function<bool()>& may_replace) {
  const std::wstring folder = NativeFolderOf(target);
  const std::wstring temporary = temporaries.Begin(folder);
  if (rights == Rights::kOwner) {
    // A copy into a file that is there keeps that one's security.
    const Handle made(::CreateFileW(temporary.c_str(), GENERIC_WRITE, 0, OwnersAlone(folder),
                                    CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!made) RaiseLast(Attempt::kChange);
  }
  if (::CopyFileExW(source.c_str(), temporary.c_str(), nullptr, nullptr, nullptr,
                    COPY_FILE_ALLOW_DECRYPTED_DESTINATION) == 0) {
    DeleteTemporary(temporary);
    RaiseLast(Attempt::kChange);
  }
  ::SetFileAttributesW(temporary.c_str(), FILE_ATTRIBUTE_NORMAL);
  try {
    FlushWritten(temporary);
  } catch (const ProgramError&) {
    DeleteTemporary(temporary);
    throw;
  }
  if (may_replace && !may_replace()) {
    DeleteTemporary(temporary);
    throw ProgramError(kFileAlreadyExists);
  }
  ::SetFileAttributesW(temporary.c_str(), (attributes & kKeptAttributes) | FILE_ATTRIBUTE_ARCHIVE);
  GiveName(temporary, target, replaces);
}

bool CopyLink(Temporaries& temporaries, const std::wstring& source, const FileState& state,
              const std::wstring& target, bool replaces) {
  const std::wstring folder = NativeFolderOf(target);
  const DWORD features = VolumeOf(folder).features;
  if (features != 0 && (features & FILE_SUPPORTS_REPARSE_POINTS) == 0) return false;
  std::vector<char> data = ReadLink(source);
  const std::wstring temporary = temporaries.Begin(folder);
  try {
    if (!WriteLink(temporary, state.IsFolder(), std::move(data))) {
      DeleteTemporary(temporary);
      return false;
    }
  } catch (const ProgramError&) {
    DeleteTemporary(temporary);
    throw;
  }
  // A folder's name can't be taken over in one step, not even by a link to one.
  if (replaces && ::RemoveDirectoryW(target.c_str()) == 0 && state.IsFolder()) {
    ::DeleteFileW(target.c_str());
  }
  GiveName(temporary, target, replaces && !state.IsFolder());
  return true;
}

}  // namespace tarnvale
