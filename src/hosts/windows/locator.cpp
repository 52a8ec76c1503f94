#include "hosts/windows/locator.h"

#include <string_view>

#include "base/failure.h"
#include "hosts/windows/native_errors.h"
#include "platform/path_text.h"

namespace tarnvale {
namespace {

bool IsMissing(DWORD error) {
  const int number = ErrorNumberOf(error, Attempt::kQuery);
  return !MeansAway(error) && (number == kFileNotFound || number == kPathNotFound);
}

// Whether all names but the last one are such that the system takes them as they are.
// A wildcard within a path leads nowhere.
bool FoldersCanBeFound(std::wstring_view native, std::wstring_view root) {
  const std::size_t last = native.rfind(L'\\');
  std::wstring_view names =
      last <= root.size() ? std::wstring_view() : native.substr(root.size(), last - root.size());
  while (!names.empty()) {
    const std::size_t end = names.find(L'\\');
    const std::wstring_view name = names.substr(0, end);
    if (!name.empty() && !CanBeFound(name)) return false;
    names.remove_prefix(end == std::wstring_view::npos ? names.size() : end + 1);
  }
  return true;
}

}  // namespace

Located Locator::LocateFolder(const Path& path) const {
  Located located;
  const auto native = drives_.ToNative(path);
  if (!native || !FoldersCanBeFound(*native, *drives_.ToNative("\\"))) return located;
  located.native = *native;
  const std::wstring_view name = NativeNameOf(located.native);
  located.can_be_named = name.empty() || CanBeNamed(name);
  // Another system may have made a file of a device's name.
  if (!located.can_be_named && CanBeFound(name)) {
    located.can_be_named = StateOf(located.native, Links::kKeep).has_value();
  }
  // For a name that can be none, the folder is looked at in its stead.
  const std::wstring asked = located.can_be_named ? located.native : NativeFolderOf(located.native);
  const auto state = StateOf(asked, Links::kKeep);
  const DWORD error = state ? 0 : ::GetLastError();
  if (!located.can_be_named) {
    located.folder_found = state && state->IsFolder();
  } else if (state) {
    located.state = state;
    located.folder_found = true;
  } else {
    located.folder_found = error == ERROR_FILE_NOT_FOUND;
    if (!IsMissing(error)) located.error = error;
  }
  return located;
}

Located Locator::Locate(const Path& path) const {
  Located located = LocateFolder(path);
  if (!EndsInSeparator(path) || located.IsFolder()) return located;
  return {};
}

Located Locator::Find(const Path& path) const {
  Located located = Locate(path);
  if (located.error != 0) RaiseNative(located.error, Attempt::kQuery);
  if (!located.folder_found) throw ProgramError(kPathNotFound);
  if (!located.state) throw ProgramError(kFileNotFound);
  if (located.state->is_link) {
    located.state = StateOf(located.native, Links::kFollow);
    if (!located.state) RaiseLast(Attempt::kQuery);
  }
  return located;
}

Located Locator::RequireTarget(Located located) {
  if (located.error != 0) RaiseNative(located.error, Attempt::kChange);
  if (!located.folder_found) throw ProgramError(kPathNotFound);
  if (!located.can_be_named) throw ProgramError(kPathFileAccess);
  return located;
}

}  // namespace tarnvale
