#include "native/native_file.h"

#include <algorithm>
#include <vector>

#include "base/failure.h"
#include "hosts/windows/native_errors.h"
#include "hosts/windows/paths.h"
#include "hosts/windows/wide.h"
#include "native/command_failure.h"
#include "native/native_paths_windows.h"

namespace tarnvale {
namespace {

ByteBuffer ReadFrom(const Handle& file, std::size_t size) {
  constexpr std::size_t kMostAtOnce = std::size_t{1} << 24U;
  ByteBuffer bytes(size);
  std::size_t done = 0;
  while (done < size) {
    const auto wanted = static_cast<DWORD>(std::min(size - done, kMostAtOnce));
    DWORD got = 0;
    if (::ReadFile(file.Get(), bytes.Data() + done, wanted, &got, nullptr) == 0) {
      throw SystemError();
    }
    if (got == 0) break;
    done += got;
  }
  bytes.Shrink(done);
  return bytes;
}

}  // namespace

// In the program's own words, which are the same in every language of the system.
SystemError::SystemError() : SystemError(static_cast<int>(::GetLastError())) {}
SystemError::SystemError(int code)
    : SystemError(DescriptionOf(ErrorNumberOf(static_cast<DWORD>(code), Attempt::kChange))) {}

std::wstring SystemPathOf(const std::string& given) {
  const std::wstring wide = Wide(given);
  std::vector<wchar_t> full(MAX_PATH);
  DWORD length = ::GetFullPathNameW(wide.c_str(), MAX_PATH, full.data(), nullptr);
  if (length >= full.size()) {
    full.resize(length);
    length = ::GetFullPathNameW(wide.c_str(), length, full.data(), nullptr);
  }
  const auto native = DrivePaths().ToNative(Narrow({full.data(), length}));
  // The names of devices come back as paths of no drive.
  if (length == 0 || !native) throw SystemError(DescriptionOf(kPathNotFound));
  return *native;
}

std::string ShownPathOf(const std::wstring& native) {
  return DrivePaths().FromNative(native);
}

FileState RequireState(const std::wstring& native) {
  const bool can_be_named = NativeNameOf(native).empty() || CanBeNamed(NativeNameOf(native));
  const auto state = can_be_named ? StateOf(native, Links::kFollow) : std::nullopt;
  if (!can_be_named) throw SystemError(DescriptionOf(kFileNotFound));
  if (!state) throw SystemError();
  return *state;
}

Path PathOfNative(const NativeHost& host, const std::string& given) {
  return About(given, [&] { return host.PathOf(SystemPathOf(given)); });
}

WholeFile ReadWholeFile(const std::string& native, std::int64_t most_bytes) {
  const std::wstring path = SystemPathOf(native);
  const FileState state = RequireState(path);
  if (state.IsFolder()) throw SystemError("is a folder");
  if (state.size_bytes > most_bytes) throw SystemError("is no archive: too large");
  const Handle file(::CreateFileW(path.c_str(), GENERIC_READ,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
  if (!file) throw SystemError();
  return {ReadFrom(file, static_cast<std::size_t>(state.size_bytes)),
          SecondsSince1970(state.modified)};
}

}  // namespace tarnvale
