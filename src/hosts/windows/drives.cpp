#include "hosts/windows/drives.h"

#include <shellapi.h>

#include "hosts/windows/wide.h"

namespace tarnvale {
namespace {

SHFILEINFOW Ask(const std::wstring& path, UINT what, DWORD attributes = 0) {
  SHFILEINFOW info{};
  if (::SHGetFileInfoW(path.c_str(), attributes, &info, sizeof info, what) == 0) info.iIcon = -1;
  return info;
}

}  // namespace

std::wstring DriveName(const Path& root) {
  const std::wstring wide = Wide(root);
  const std::wstring name = Ask(wide, SHGFI_DISPLAYNAME).szDisplayName;
  return name.empty() ? wide.substr(0, 2) : name;
}

DesktopIcons SmallIcons() {
  constexpr UINT kWhat = SHGFI_SYSICONINDEX | SHGFI_SMALLICON | SHGFI_USEFILEATTRIBUTES;
  SHFILEINFOW info{};
  const DWORD_PTR list =
      ::SHGetFileInfoW(L"folder", FILE_ATTRIBUTE_DIRECTORY, &info, sizeof info, kWhat);
  return {reinterpret_cast<HIMAGELIST>(list), info.iIcon};
}

int IconOfDrive(const Path& root, int otherwise) {
  const int icon = Ask(Wide(root), SHGFI_SYSICONINDEX | SHGFI_SMALLICON).iIcon;
  return icon < 0 ? otherwise : icon;
}

}  // namespace tarnvale
