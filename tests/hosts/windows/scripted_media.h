// Media that differ from those of the test machine.
#pragma once

#include <windows.h>

#include <winioctl.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "hosts/windows/paths.h"
#include "tests/hosts/windows/scripted_system.h"

namespace tarnvale::testing {

/// Lasts as long as it is kept.
using Script = std::shared_ptr<void>;

template <class Function, class Answer>
Script Answering(std::string_view name, Function* function, Answer answer) {
  using Kept = decltype(Scripted(name, function, std::move(answer)));
  return std::make_shared<Kept>(name, function, std::move(answer));
}

/// Lets whatever has the name of a native path look like a reparse point with this tag.
/// Opened by that path, a link leads to `target`; its own data are empty.
inline std::vector<Script> AsReparsePoint(const std::wstring& native, DWORD tag,
                                          const std::wstring& target = {}) {
  const auto mark = [=](WIN32_FIND_DATAW* found) {
    if (NativeNameOf(native) != found->cFileName) return;
    found->dwFileAttributes |= FILE_ATTRIBUTE_REPARSE_POINT;
    found->dwReserved0 = tag;
  };
  return {
      Answering("GetFileAttributesExW", &::GetFileAttributesExW,
                [=](auto real, LPCWSTR path, GET_FILEEX_INFO_LEVELS level, LPVOID data) {
                  const BOOL done = real(path, level, data);
                  if (done != 0 && NativeNameOf(path) == NativeNameOf(native)) {
                    static_cast<WIN32_FILE_ATTRIBUTE_DATA*>(data)->dwFileAttributes |=
                        FILE_ATTRIBUTE_REPARSE_POINT;
                  }
                  return done;
                }),
      Answering("FindFirstFileW", &::FindFirstFileW,
                [=](auto real, LPCWSTR pattern, LPWIN32_FIND_DATAW found) {
                  const HANDLE search = real(pattern, found);
                  if (search != INVALID_HANDLE_VALUE) mark(found);
                  return search;
                }),
      Answering("FindNextFileW", &::FindNextFileW,
                [=](auto real, HANDLE search, LPWIN32_FIND_DATAW found) {
                  const BOOL done = real(search, found);
                  if (done != 0) mark(found);
                  return done;
                }),
      Answering("CreateFileW", &::CreateFileW,
                [=](auto real, LPCWSTR path, DWORD access, DWORD share,
                    LPSECURITY_ATTRIBUTES security, DWORD disposition, DWORD flags, HANDLE like) {
                  const bool follows = path == native && !target.empty() &&
                                       (flags & FILE_FLAG_OPEN_REPARSE_POINT) == 0;
                  return real(follows ? target.c_str() : path, access, share, security, disposition,
                              flags, like);
                }),
      Answering("DeviceIoControl", &::DeviceIoControl,
                [=](auto real, HANDLE device, DWORD code, LPVOID in, DWORD in_size, LPVOID out,
                    DWORD out_size, LPDWORD length, LPOVERLAPPED later) {
                  if (code != FSCTL_GET_REPARSE_POINT) {
                    return real(device, code, in, in_size, out, out_size, length, later);
                  }
                  *length = 0;
                  return TRUE;
                }),
  };
}

/// Lets every medium be a drive of this kind, with a format that has these features.
inline std::vector<Script> AsMedium(UINT kind, DWORD features, const std::wstring& format) {
  return {Answering("GetDriveTypeW", &::GetDriveTypeW, [=](auto, LPCWSTR) { return kind; }),
          Answering("GetVolumeInformationW", &::GetVolumeInformationW,
                    [=](auto, LPCWSTR, LPWSTR, DWORD, LPDWORD, LPDWORD, LPDWORD flags,
                        LPWSTR format_name, DWORD) {
                      *flags = features;
                      std::copy_n(format.c_str(), format.size() + 1, format_name);
                      return TRUE;
                    })};
}

}  // namespace tarnvale::testing
