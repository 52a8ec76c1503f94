#include "hosts/windows/file_state.h"

#include "base/failure.h"
#include "hosts/windows/native_errors.h"
#include "hosts/windows/newer_calls.h"
#include "hosts/windows/paths.h"
#include "hosts/windows/volume.h"

namespace tarnvale {
namespace {

std::uint64_t Joined64(DWORD high, DWORD low) {
  return static_cast<std::uint64_t>(high) << 32U | low;
}

// The tags of reparse points that name something else have this bit.
bool NamesAnother(DWORD tag) {
  constexpr DWORD kNameSurrogate = 0x20000000;
  return (tag & kNameSurrogate) != 0;
}

bool IsSpecial(DWORD tag) {
  constexpr DWORD kProgramOfShop = 0x8000001B;
  constexpr DWORD kSocket = 0x80000023;
  constexpr DWORD kPipe = 0x80000024;
  constexpr DWORD kCharacterDevice = 0x80000025;
  constexpr DWORD kBlockDevice = 0x80000026;
  return tag == kProgramOfShop || tag == kSocket || tag == kPipe || tag == kCharacterDevice ||
         tag == kBlockDevice;
}

bool IsPoints(const wchar_t* name) {
  return name[0] == L'.' && (name[1] == 0 || (name[1] == L'.' && name[2] == 0));
}

// Errors of a search for one name say which part was missing.
bool FindOne(const std::wstring& native, WIN32_FIND_DATAW& found) {
  const HANDLE search = ::FindFirstFileW(native.c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return false;
  ::FindClose(search);
  return true;
}

Handle OpenEntry(const std::wstring& native, DWORD access, DWORD share, Links links) {
  const DWORD as_link = links == Links::kKeep ? FILE_FLAG_OPEN_REPARSE_POINT : 0;
  return Handle(::CreateFileW(native.c_str(), access, share, nullptr, OPEN_EXISTING,
                              FILE_FLAG_BACKUP_SEMANTICS | as_link, nullptr));
}

}  // namespace

FileState StateOf(const WIN32_FIND_DATAW& found) {
  FileState state;
  state.attributes = found.dwFileAttributes;
  state.size_bytes = static_cast<std::int64_t>(Joined64(found.nFileSizeHigh, found.nFileSizeLow));
  state.modified =
      Joined64(found.ftLastWriteTime.dwHighDateTime, found.ftLastWriteTime.dwLowDateTime);
  const bool is_reparse = (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  state.is_link = is_reparse && NamesAnother(found.dwReserved0);
  state.is_special = is_reparse && IsSpecial(found.dwReserved0);
  return state;
}

std::optional<FileState> StateOf(const std::wstring& native, Links links) {
  WIN32_FILE_ATTRIBUTE_DATA data{};
  if (::GetFileAttributesExW(native.c_str(), GetFileExInfoStandard, &data) == 0) {
    return std::nullopt;
  }
  WIN32_FIND_DATAW found{};
  found.dwFileAttributes = data.dwFileAttributes;
  found.nFileSizeHigh = data.nFileSizeHigh;
  found.nFileSizeLow = data.nFileSizeLow;
  found.ftLastWriteTime = data.ftLastWriteTime;
  // Only the listing has the kind of a reparse point.
  const bool is_reparse = (data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  if (is_reparse && native.back() != L'\\') FindOne(native, found);
  FileState state = StateOf(found);
  if (!state.is_link || links == Links::kKeep) return state;
  const Handle target = OpenToAsk(native, Links::kFollow);
  BY_HANDLE_FILE_INFORMATION info{};
  if (!target || ::GetFileInformationByHandle(target.Get(), &info) == 0) return std::nullopt;
  state.attributes = info.dwFileAttributes;
  state.size_bytes = static_cast<std::int64_t>(Joined64(info.nFileSizeHigh, info.nFileSizeLow));
  state.modified =
      Joined64(info.ftLastWriteTime.dwHighDateTime, info.ftLastWriteTime.dwLowDateTime);
  return state;
}

std::wstring ListedName(const std::wstring& native) {
  WIN32_FIND_DATAW found{};
  return FindOne(native, found) ? std::wstring(found.cFileName) : std::wstring();
}

Handle OpenForHolding(const std::wstring& native, Links links) {
  constexpr DWORD kShare = FILE_SHARE_READ | FILE_SHARE_WRITE;
  return OpenEntry(native, FILE_READ_ATTRIBUTES | FILE_LIST_DIRECTORY, kShare, links);
}

Handle OpenToAsk(const std::wstring& native, Links links) {
  constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  return OpenEntry(native, FILE_READ_ATTRIBUTES, kShareAll, links);
}

bool FlushFile(HANDLE file) {
  if (::FlushFileBuffers(file) != 0) return true;
  const DWORD error = ::GetLastError();
  return error == ERROR_INVALID_FUNCTION || error == ERROR_NOT_SUPPORTED;
}

std::wstring BehindLinks(const std::wstring& native) {
  using Ask = DWORD(WINAPI*)(HANDLE, LPWSTR, DWORD, DWORD);
  const auto ask = SystemsCall<Ask>("GetFinalPathNameByHandleW");
  const Handle target = ask != nullptr ? OpenToAsk(native, Links::kFollow) : Handle();
  if (!target) return native;
  std::wstring path(ask(target.Get(), nullptr, 0, 0), L'\0');
  const DWORD length = ask(target.Get(), path.data(), static_cast<DWORD>(path.size()), 0);
  if (length == 0 || length >= path.size()) return native;
  path.resize(length);
  return path;
}

std::optional<FileNumber> NumberOf(HANDLE file) {
  BY_HANDLE_FILE_INFORMATION info{};
  if (::GetFileInformationByHandle(file, &info) == 0) return std::nullopt;
  const std::uint64_t number = Joined64(info.nFileIndexHigh, info.nFileIndexLow);
  if (number == 0) return std::nullopt;
  return FileNumber{info.dwVolumeSerialNumber, number};
}

bool AreSame(HANDLE a, const std::wstring& native_a, HANDLE b, const std::wstring& native_b) {
  const auto number_a = NumberOf(a);
  const auto number_b = NumberOf(b);
  if (!number_a || !number_b) return FoldedPath(native_a) == FoldedPath(native_b);
  return number_a == number_b && MayBeOneMedium(NativeFolderOf(native_a), NativeFolderOf(native_b));
}

bool AreOneFile(const std::wstring& native, const std::wstring& other) {
  const Handle one = OpenToAsk(native, Links::kFollow);
  const Handle two = OpenToAsk(other, Links::kFollow);
  return one && two && AreSame(one.Get(), native, two.Get(), other);
}

FILETIME FileTimeOf(std::uint64_t modified) {
  return {static_cast<DWORD>(modified), static_cast<DWORD>(modified >> 32U)};
}

std::int64_t SecondsSince1970(std::uint64_t modified) {
  constexpr std::int64_t kUnitsPerSecond = 10'000'000;
  constexpr std::int64_t k1970 = 11'644'473'600;  // seconds behind 1601-01-01
  return static_cast<std::int64_t>(modified) / kUnitsPerSecond - k1970;
}

FolderListing::FolderListing(const std::wstring& folder) {
  search_ = ::FindFirstFileW(Joined(folder, L"*").c_str(), &entry_);
  if (search_ != INVALID_HANDLE_VALUE) return;
  // An empty drive has no entries at all.
  const DWORD error = ::GetLastError();
  const auto state = StateOf(folder, Links::kFollow);
  if (!state || !state->IsFolder()) throw ProgramError(kPathNotFound);
  if (error != ERROR_FILE_NOT_FOUND && error != ERROR_NO_MORE_FILES)
    RaiseNative(error, Attempt::kQuery);
}

FolderListing::~FolderListing() {
  if (search_ != INVALID_HANDLE_VALUE) ::FindClose(search_);
}

const WIN32_FIND_DATAW* FolderListing::Next() {
  while (search_ != INVALID_HANDLE_VALUE) {
    if (!is_first_ && ::FindNextFileW(search_, &entry_) == 0) {
      if (::GetLastError() != ERROR_NO_MORE_FILES) RaiseLast(Attempt::kQuery);
      break;
    }
    is_first_ = false;
    if (!IsPoints(entry_.cFileName)) return &entry_;
  }
  return nullptr;
}

}  // namespace tarnvale
