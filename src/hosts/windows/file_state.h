// What the system knows of a file or folder.
#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "hosts/windows/handle.h"

namespace tarnvale {

struct FileState {
  DWORD attributes = 0;
  std::int64_t size_bytes = 0;
  /// In units of 100 ns since 1601-01-01 UTC.
  std::uint64_t modified = 0;
  /// It leads to another file or folder: a junction or a symbolic link. Other
  /// reparse points are what they look like.
  bool is_link = false;
  /// No file and no folder: a socket, pipe or device of a Unix layer, or the stand-in for
  /// a program of the system's shop.
  bool is_special = false;

  bool IsFolder() const { return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0; }
  bool IsReadOnly() const { return (attributes & FILE_ATTRIBUTE_READONLY) != 0; }
};

enum class Links { kKeep, kFollow };

/// The state of what has a native path; none when it can't be had, with the
/// system's last error set. A name with a wildcard must not get here.
std::optional<FileState> StateOf(const std::wstring& native, Links links);

FileState StateOf(const WIN32_FIND_DATAW& found);

/// What a name is in its folder's listing: the same in another case, or the long name for
/// a short one. Empty when nothing has it.
std::wstring ListedName(const std::wstring& native);

/// Opens a folder. While it is held, neither it nor a folder that it lies in can be renamed
/// or deleted. Sets the last error.
Handle OpenForHolding(const std::wstring& native, Links links);

/// Opens anything for what the system knows of it alone, which keeps nobody from anything.
/// Sets the last error.
Handle OpenToAsk(const std::wstring& native, Links links);

/// Puts what was written to a file onto the medium. Some drivers know no such thing, and
/// keep nothing back. Sets the last error.
bool FlushFile(HANDLE file);

/// The native path of what a link leads to in the end; the link's own where that isn't
/// known: it leads nowhere, or the system is one that knows links to folders only.
std::wstring BehindLinks(const std::wstring& native);

/// The same file or folder has the same number, as long as it is held.
struct FileNumber {
  DWORD volume = 0;
  std::uint64_t number = 0;
  bool operator==(const FileNumber&) const = default;
};
/// None where the medium numbers nothing.
std::optional<FileNumber> NumberOf(HANDLE file);

/// Whether two that are held, found at these native paths, are the same. Without numbers
/// that is so if their paths are.
bool AreSame(HANDLE a, const std::wstring& native_a, HANDLE b, const std::wstring& native_b);

/// As AreSame, of what these native paths lead to. False where it can't be looked at.
bool AreOneFile(const std::wstring& native, const std::wstring& other);

FILETIME FileTimeOf(std::uint64_t modified);

std::int64_t SecondsSince1970(std::uint64_t modified);

/// Goes through a native folder, leaving out "." and "..".
class FolderListing {
 public:
  /// Raises 76 when there is no such folder, 75 when it can't be read.
  explicit FolderListing(const std::wstring& folder);
  FolderListing(const FolderListing&) = delete;
  FolderListing& operator=(const FolderListing&) = delete;
  ~FolderListing();

  /// The next entry, null at the end. It is good until the next call. Raises 57, 75.
  const WIN32_FIND_DATAW* Next();

 private:
  HANDLE search_ = INVALID_HANDLE_VALUE;
  WIN32_FIND_DATAW entry_{};
  bool is_first_ = true;
};

}  // namespace tarnvale
