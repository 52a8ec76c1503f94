#include "hosts/linux/locator.h"

#include <cerrno>
#include <climits>
#include <utility>

#include "base/failure.h"
#include "hosts/linux/folder_scan.h"
#include "hosts/linux/name_case.h"
#include "hosts/linux/native_errors.h"
#include "platform/path_text.h"

namespace tarnvale {
namespace {

bool MeansMissing(int error) {
  return error == ENOENT || error == ENOTDIR || error == ENAMETOOLONG;
}

bool IsFolder(const std::string& native) {
  struct stat info {};
  return ::stat((native + "/.").c_str(), &info) == 0;
}

// Queries the medium again for a link only.
bool LeadsToFolder(const Located& located) {
  if (!located.found) return false;
  return S_ISDIR(located.info.st_mode) ||
         (S_ISLNK(located.info.st_mode) && IsFolder(located.Native()));
}

}  // namespace

Locator::Locator(DrivePaths drive, const Temporaries& temporaries)
    : drive_(std::move(drive)), temporaries_(temporaries) {}

Located Locator::Locate(const Path& path) const {
  Located located = LocateFolder(path);
  if (EndsInSeparator(path) && located.error == 0 && !LeadsToFolder(located)) {
    located.found = located.folder_found = false;
  }
  return located;
}

Located Locator::LocateFolder(const Path& path) const {
  Located located;
  const auto native = drive_.ToNative(path);
  if (!native || native->size() >= PATH_MAX) return located;
  located.folder = NativeFolderOf(*native);
  located.name = NativeNameOf(*native);
  const bool can_be_named = CanBeNamed(located.name);
  if (can_be_named && ::lstat(native->c_str(), &located.info) == 0) {
    located.found = located.folder_found = true;
    return located;
  }
  if (can_be_named && !MeansMissing(errno)) {
    located.error = errno;
    located.folder_found = true;
    return located;
  }
  auto folder = RealFolder(located.folder);
  if (!folder) return located;
  located.folder = std::move(*folder);
  located.folder_found = true;
  if (!can_be_named) return located;
  if (::lstat(located.Native().c_str(), &located.info) == 0) {
    located.found = true;
  } else if (auto variant = VariantOf(located.folder, located.name)) {
    located.found = ::lstat((located.folder + "/" + *variant).c_str(), &located.info) == 0;
    if (located.found) located.name = std::move(*variant);
  }
  return located;
}

Located Locator::Find(const Path& path) const {
  Located located = Locate(path);
  if (located.error != 0) RaiseNative(located.error, Attempt::kQuery);
  if (!located.folder_found) throw ProgramError(kPathNotFound);
  if (!located.found) throw ProgramError(kFileNotFound);
  return located;
}

Located Locator::RequireTarget(Located located) {
  if (located.error != 0) RaiseNative(located.error, Attempt::kChange);
  if (!located.folder_found) throw ProgramError(kPathNotFound);
  if (!CanBeNamed(located.name)) throw ProgramError(kPathFileAccess);
  return located;
}

std::optional<std::string> Locator::FindFolder(const Path& path) const {
  const Located located = Locate(path);
  // Not there is one thing, not to be looked at another: a count of files would stop short.
  if (located.error != 0) RaiseNative(located.error, Attempt::kQuery);
  if (LeadsToFolder(located)) return located.Native();
  return std::nullopt;
}

std::optional<std::string> Locator::RealFolder(std::string_view folder) const {
  std::string existing(folder);
  if (IsFolder(existing)) return existing;
  if (existing.size() <= drive_.Root().size()) return std::nullopt;
  const auto parent = RealFolder(NativeFolderOf(folder));
  if (!parent) return std::nullopt;
  const std::string name(NativeNameOf(folder));
  std::string real = *parent + "/" + name;
  struct stat info {};
  if (::lstat(real.c_str(), &info) != 0) {
    const auto variant = VariantOf(*parent, name);
    if (!variant) return std::nullopt;
    real = *parent + "/" + *variant;
  }
  if (!IsFolder(real)) return std::nullopt;
  return real;
}

// The name in a native folder that differs from `name` in case only; the first
// by bytes of several.
std::optional<std::string> Locator::VariantOf(const std::string& folder,
                                              const std::string& name) const {
  const std::string folded = FoldCase(name);
  std::optional<std::string> variant;
  // A folder that may be entered but not read has no variants for us.
  PassedOver pass;
  pass.Step([&] {
    FolderScan scan(OpenNativeFolder(folder + "/.", true), temporaries_);
    while (const dirent* entry = scan.Next()) {
      if (FoldCase(entry->d_name) != folded) continue;
      if (!variant || entry->d_name < *variant) variant = entry->d_name;
    }
  });
  return variant;
}

}  // namespace tarnvale
