#include "hosts/windows/windows_open_files.h"

#include <algorithm>
#include <memory>

#include "base/failure.h"
#include "hosts/windows/native_errors.h"
#include "hosts/windows/ownership.h"
#include "hosts/windows/paths.h"

namespace tarnvale {
namespace {

constexpr DWORD kShare = FILE_SHARE_READ | FILE_SHARE_WRITE;

OVERLAPPED At(std::int64_t position) {
  OVERLAPPED place{};
  place.Offset = static_cast<DWORD>(position);
  place.OffsetHigh = static_cast<DWORD>(position >> 32U);
  return place;
}

// So much that no call has to lock too much memory at once, which network drives refuse.
constexpr std::size_t kMostAtOnce = std::size_t{1} << 24U;

class WindowsFile final : public NativeFile {
 public:
  WindowsFile(Handle file, bool is_writable) : file_(std::move(file)), is_writable_(is_writable) {}

  std::size_t ReadAt(std::int64_t position, std::span<std::uint8_t> bytes) override {
    std::size_t done = 0;
    while (done < bytes.size()) {
      OVERLAPPED place = At(position + static_cast<std::int64_t>(done));
      const auto wanted = static_cast<DWORD>(std::min(bytes.size() - done, kMostAtOnce));
      DWORD got = 0;
      if (::ReadFile(file_.Get(), bytes.data() + done, wanted, &got, &place) == 0 &&
          ::GetLastError() != ERROR_HANDLE_EOF) {
        throw ProgramError(kDeviceIoError);
      }
      if (got == 0) break;
      done += got;
    }
    return done;
  }

  void WriteAt(std::int64_t position, std::string_view bytes) override {
    while (!bytes.empty()) {
      OVERLAPPED place = At(position);
      const auto wanted = static_cast<DWORD>(std::min(bytes.size(), kMostAtOnce));
      DWORD done = 0;
      if (::WriteFile(file_.Get(), bytes.data(), wanted, &done, &place) == 0 || done == 0) {
        const int number = ErrorNumberOf(::GetLastError(), Attempt::kChange);
        throw ProgramError(number == kDiskFull ? kDiskFull : kDeviceIoError);
      }
      position += done;
      bytes.remove_prefix(done);
    }
  }

  std::int64_t Length() override {
    LARGE_INTEGER length{};
    if (::GetFileSizeEx(file_.Get(), &length) == 0) throw ProgramError(kDeviceIoError);
    return length.QuadPart;
  }

  void Close() override {
    const bool is_flushed = !is_writable_ || FlushFile(file_.Get());
    const DWORD error = ::GetLastError();
    file_.Close();
    if (!is_flushed) {
      throw ProgramError(ErrorNumberOf(error, Attempt::kChange) == kDiskFull ? kDiskFull
                                                                             : kDeviceIoError);
    }
  }

 private:
  Handle file_;
  bool is_writable_;
};

Handle OpenShared(const std::wstring& native, DWORD access, DWORD disposition,
                  SECURITY_ATTRIBUTES* security = nullptr) {
  return Handle(::CreateFileW(native.c_str(), access, kShare, security, disposition,
                              FILE_ATTRIBUTE_NORMAL, nullptr));
}

}  // namespace

OpenFileTable::Opened WindowsOpenFiles::OpenNative(Use use, const Path& file, Rights rights) {
  if (use != Use::kInput) return OpenToWrite(use, file, rights);
  const Located located = locator_.Find(file);
  if (located.IsFolder()) throw ProgramError(kPathFileAccess);
  Handle opened = OpenShared(located.native, GENERIC_READ, OPEN_EXISTING);
  if (!opened) RaiseLast(Attempt::kChange);
  return {std::make_unique<WindowsFile>(std::move(opened), false), false};
}

// Whether something else has the place of a file that is the program's own, or of a text
// that the user writes anew.
bool WindowsOpenFiles::MustGo(Use use, const Located& located) {
  if (use == Use::kBinary) return false;
  if (use == Use::kOwn) {
    const Handle file = OpenToAsk(located.native, Links::kKeep);
    BY_HANDLE_FILE_INFORMATION info{};
    const bool has_other_names =
        file && ::GetFileInformationByHandle(file.Get(), &info) != 0 && info.nNumberOfLinks > 1;
    if (located.state->is_link || has_other_names) return true;
  }
  return !IsOfThisUser(located.native);
}

OpenFileTable::Opened WindowsOpenFiles::OpenToWrite(Use use, const Path& file, Rights rights) {
  const Located located = Locator::RequireTarget(locator_.Locate(file));
  const auto state = located.state && located.state->is_link
                         ? StateOf(located.native, Links::kFollow)
                         : located.state;
  if (state && state->IsFolder()) throw ProgramError(kPathFileAccess);
  bool is_writable = !state || !state->IsReadOnly();
  if (!is_writable && use != Use::kBinary) throw ProgramError(kPathFileAccess);
  if (located.state && MustGo(use, located) && ::DeleteFileW(located.native.c_str()) == 0) {
    RaiseLast(Attempt::kChange);
  }
  const bool for_owner = rights == Rights::kOwner;
  Handle opened;
  if (is_writable) {
    opened = OpenShared(located.native, GENERIC_READ | GENERIC_WRITE, OPEN_ALWAYS,
                        for_owner ? OwnersAlone(NativeFolderOf(located.native)) : nullptr);
    const DWORD error = ::GetLastError();
    is_writable = opened || use != Use::kBinary || !state ||
                  (error != ERROR_ACCESS_DENIED && error != ERROR_WRITE_PROTECT);
  }
  // The system refuses to make a file anew that is hidden, and to empty one in opening it.
  if (opened && use == Use::kOutput && ::SetEndOfFile(opened.Get()) == 0) {
    RaiseLast(Attempt::kChange);
  }
  if (opened && located.state && for_owner && use != Use::kBinary) KeepForOwner(located.native);
  if (!is_writable) opened = OpenShared(located.native, GENERIC_READ, OPEN_EXISTING);
  if (!opened) RaiseLast(Attempt::kChange);
  return {std::make_unique<WindowsFile>(std::move(opened), is_writable), is_writable};
}

}  // namespace tarnvale
