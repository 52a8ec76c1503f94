#include "hosts/windows/windows_application_folders.h"

#include <shlobj.h>

#include <array>

#include "hosts/windows/file_state.h"

namespace tarnvale {

std::optional<Path> WindowsApplicationFolders::DataFolder(Application application) {
  std::array<wchar_t, MAX_PATH> folder{};
  if (application != Application::kOpera ||
      ::SHGetFolderPathW(nullptr, CSIDL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, folder.data()) !=
          S_OK) {
    return std::nullopt;
  }
  const std::wstring newer = Joined(folder.data(), L"Opera Software");
  const auto state = StateOf(newer, Links::kFollow);
  if (!state || !state->IsFolder()) return std::nullopt;
  return drives_.FromNative(newer);
}

}  // namespace tarnvale
