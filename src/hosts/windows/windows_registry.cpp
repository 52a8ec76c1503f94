#include "hosts/windows/windows_registry.h"

#include <windows.h>

#include <array>
#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

#include "base/failure.h"
#include "base/text.h"
#include "hosts/windows/wide.h"

namespace tarnvale {
namespace {

// Null for a text that names none.
HKEY HiveOf(std::string_view name) {
  const std::array<std::pair<std::string_view, HKEY>, 5> hives{
      {{"HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT},
       {"HKEY_CURRENT_USER", HKEY_CURRENT_USER},
       {"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE},
       {"HKEY_USERS", HKEY_USERS},
       {"HKEY_CURRENT_CONFIG", HKEY_CURRENT_CONFIG}}};
  for (const auto& [hive, key] : hives) {
    if (EqualIgnoringCase(hive, name)) return key;
  }
  return nullptr;
}

std::string TextOf(DWORD type, const std::vector<wchar_t>& data, DWORD size_bytes) {
  if (type == REG_DWORD && size_bytes == sizeof(DWORD)) {
    DWORD number = 0;
    std::memcpy(&number, data.data(), sizeof number);
    return std::to_string(number);
  }
  if (type != REG_SZ && type != REG_EXPAND_SZ) throw ProgramError(kFileNotFound);
  std::wstring_view text(data.data(), size_bytes / sizeof(wchar_t));
  return Narrow(text.substr(0, text.find(L'\0')));
}

}  // namespace

std::string WindowsRegistry::Read(const std::string& path) {
  const auto first = path.find('\\');
  const auto last = path.rfind('\\');
  const HKEY hive = HiveOf(path.substr(0, first));
  if (hive == nullptr || first == std::string::npos) throw ProgramError(kFileNotFound);
  const std::wstring key = first < last ? Wide(path.substr(first + 1, last - first - 1)) : L"";
  const std::wstring name = Wide(path.substr(last + 1));
  HKEY opened = nullptr;
  if (::RegOpenKeyExW(hive, key.c_str(), 0, KEY_QUERY_VALUE, &opened) != ERROR_SUCCESS) {
    throw ProgramError(kFileNotFound);
  }
  std::vector<wchar_t> data(256);
  DWORD type = 0;
  DWORD size = 0;
  LONG result = ERROR_MORE_DATA;
  while (result == ERROR_MORE_DATA) {
    size = static_cast<DWORD>(data.size() * sizeof(wchar_t));
    void* const place = data.data();
    result =
        ::RegQueryValueExW(opened, name.c_str(), nullptr, &type, static_cast<BYTE*>(place), &size);
    if (result == ERROR_MORE_DATA) data.resize(data.size() * 2);
  }
  ::RegCloseKey(opened);
  if (result != ERROR_SUCCESS) throw ProgramError(kFileNotFound);
  return TextOf(type, data, size);
}

}  // namespace tarnvale
