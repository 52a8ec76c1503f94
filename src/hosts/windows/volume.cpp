#include "hosts/windows/volume.h"

#include <array>

namespace tarnvale {
namespace {

std::wstring RootOf(const std::wstring& native_folder) {
  std::wstring root(native_folder.size() + MAX_PATH, L'\0');
  if (::GetVolumePathNameW(native_folder.c_str(), root.data(), static_cast<DWORD>(root.size())) ==
      0) {
    return {};
  }
  root.resize(root.find(L'\0'));
  return root;
}

// Empty for a network's, and for a letter that stands for a folder.
std::wstring NameOf(const std::wstring& native_folder) {
  std::array<wchar_t, 64> name{};
  const std::wstring root = RootOf(native_folder);
  if (root.empty() ||
      ::GetVolumeNameForVolumeMountPointW(root.c_str(), name.data(), name.size()) == 0) {
    return {};
  }
  return name.data();
}

}  // namespace

Volume VolumeOf(const std::wstring& native_folder) {
  Volume volume;
  volume.root = RootOf(native_folder);
  if (volume.root.empty()) return volume;
  volume.is_fixed = ::GetDriveTypeW(volume.root.c_str()) == DRIVE_FIXED;
  std::array<wchar_t, MAX_PATH + 1> format{};
  if (::GetVolumeInformationW(volume.root.c_str(), nullptr, 0, nullptr, nullptr, &volume.features,
                              format.data(), format.size()) != 0) {
    volume.format = format.data();
  }
  return volume;
}

bool MayBeOneMedium(const std::wstring& native_folder, const std::wstring& other) {
  const std::wstring name = NameOf(native_folder);
  const std::wstring other_name = NameOf(other);
  return name.empty() || other_name.empty() || name == other_name;
}

}  // namespace tarnvale
