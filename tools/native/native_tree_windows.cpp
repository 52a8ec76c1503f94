#include "base/failure.h"
#include "hosts/windows/file_state.h"
#include "hosts/windows/paths.h"
#include "hosts/windows/wide.h"
#include "native/native_file.h"
#include "native/native_paths_windows.h"
#include "native/native_tree.h"
#include "platform/temporary_name.h"

namespace tarnvale {

std::vector<TreeEntry> EntriesOf(const std::string& folder) {
  const std::wstring native = About(folder, [&] { return SystemPathOf(folder); });
  std::vector<TreeEntry> entries;
  try {
    FolderListing listing(native);
    while (const auto* entry = listing.Next()) {
      constexpr DWORD kUnseen = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
      const FileState state = StateOf(*entry);
      std::string name = Narrow(entry->cFileName);
      if ((state.attributes & kUnseen) != 0 || IsOwnName(name)) continue;
      if (state.IsFolder() && state.is_link) continue;
      const std::wstring path = Joined(native, entry->cFileName);
      TreeEntry found{.path = ShownPathOf(path), .name = name, .is_folder = state.IsFolder()};
      if (!CanBeNamed(entry->cFileName)) {
        found.left_out = "another system made it: no path leads to such a name here";
      } else if (state.is_link && !StateOf(path, Links::kFollow)) {
        continue;
      }
      entries.push_back(std::move(found));
    }
  } catch (const ProgramError& error) {
    throw CommandFailure(folder, error.Description());
  }
  return entries;
}

std::optional<std::int64_t> SizeOfPacked(const std::string& file) {
  return About(file, [&]() -> std::optional<std::int64_t> {
    const std::wstring native = SystemPathOf(file);
    const Handle opened(::CreateFileW(native.c_str(), GENERIC_READ,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!opened && ::GetLastError() == ERROR_FILE_NOT_FOUND) return std::nullopt;
    LARGE_INTEGER size{};
    if (!opened || ::GetFileSizeEx(opened.Get(), &size) == 0) throw SystemError();
    return size.QuadPart;
  });
}

}  // namespace tarnvale
