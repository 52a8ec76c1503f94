#include "hosts/windows/paths.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <utility>

#include "base/text.h"
#include "hosts/windows/wide.h"
#include "platform/path_text.h"

namespace tarnvale {
namespace {

constexpr std::wstring_view kLong = L"\\\\?\\";
constexpr std::wstring_view kNetwork = L"\\\\?\\UNC\\";
// What the system can take, with room for a name beside a file.
constexpr std::size_t kLongestPath = 32000;
constexpr std::size_t kLongestName = 255;

// "con", "Con.txt", "com1": they are devices in every folder.
bool IsDevice(std::wstring_view name) {
  name = name.substr(0, name.find(L'.'));
  while (!name.empty() && name.back() == L' ') name.remove_suffix(1);
  std::wstring folded(name);
  for (wchar_t& c : folded) c = InLowerCase(c);
  constexpr std::array<std::wstring_view, 4> kPlain{L"con", L"prn", L"aux", L"nul"};
  if (std::find(kPlain.begin(), kPlain.end(), folded) != kPlain.end()) return true;
  if (folded.size() != 4 ||
      (folded.compare(0, 3, L"com") != 0 && folded.compare(0, 3, L"lpt") != 0)) {
    return false;
  }
  constexpr std::wstring_view kDigits = L"123456789\u00B9\u00B2\u00B3";
  return kDigits.find(folded[3]) != std::wstring_view::npos;
}

// Nothing leads from a share of a machine to another one.
std::optional<PathText> TakeApartKeepingShare(std::string_view path) {
  auto parts = TakeApart(path);
  if (!parts || !parts->begins_twice) return parts;
  const std::size_t server_end = path.find_first_of("\\/", 2);
  const std::size_t share = path.find_first_not_of("\\/", server_end);
  if (server_end == std::string_view::npos || share == std::string_view::npos) return parts;
  const std::size_t share_end = std::min(path.find_first_of("\\/", share), path.size());
  parts->names = {path.substr(2, server_end - 2), path.substr(share, share_end - share)};
  if (parts->names[1] == ".." || parts->names[1] == ".") return std::nullopt;
  if (const auto rest = TakeApart(path.substr(share_end))) {
    parts->names.insert(parts->names.end(), rest->names.begin(), rest->names.end());
  }
  return parts;
}

DriveKind KindOf(const Path& root) {
  switch (::GetDriveTypeW(Wide(root).c_str())) {
    case DRIVE_FIXED:
    case DRIVE_RAMDISK:
      return DriveKind::kFixed;
    case DRIVE_CDROM:
      return DriveKind::kOptical;
    case DRIVE_REMOTE:
      return DriveKind::kNetwork;
    default:
      return DriveKind::kRemovable;
  }
}

wchar_t CurrentDrive() {
  std::array<wchar_t, MAX_PATH> folder{};
  const DWORD length = ::GetCurrentDirectoryW(MAX_PATH, folder.data());
  return length >= 2 && length < MAX_PATH && folder[1] == L':' ? folder[0] : L'C';
}

}  // namespace

bool CanBeFound(std::wstring_view name) {
  const bool is_plain = std::none_of(name.begin(), name.end(), [](wchar_t c) {
    return c < L' ' || std::wstring_view(L"<>:\"/\\|?*").find(c) != std::wstring_view::npos;
  });
  return is_plain && !name.empty() && name != L"." && name != L".." && name.size() <= kLongestName;
}

bool CanBeNamed(std::wstring_view name) {
  return CanBeFound(name) && !IsDevice(name);
}

DrivePaths::DrivePaths(std::wstring root) : root_(std::move(root)) {
  while (!root_.empty() && root_.back() == L'\\') root_.pop_back();
}

std::optional<std::wstring> DrivePaths::ToNative(const Path& path) const {
  const auto parts = TakeApartKeepingShare(path);
  if (!parts) return std::nullopt;
  std::wstring native;
  std::size_t first = 0;
  if (!root_.empty()) {
    if (parts->drive != 0 && parts->drive != 'C') return std::nullopt;
    native = root_;
  } else if (parts->begins_twice) {
    if (parts->names.size() < 2) return std::nullopt;
    native.append(kNetwork)
        .append(Wide(parts->names[0]))
        .append(L"\\")
        .append(Wide(parts->names[1]));
    first = 2;
  } else {
    const wchar_t drive = parts->drive == 0 ? CurrentDrive() : static_cast<wchar_t>(parts->drive);
    native.append(kLong).append({drive, L':'});
  }
  for (std::size_t i = first; i < parts->names.size(); ++i) {
    native.append(L"\\").append(Wide(parts->names[i]));
  }
  if (parts->names.size() == first) native += L'\\';
  if (native.size() > kLongestPath) return std::nullopt;
  return native;
}

std::vector<Drive> DrivePaths::List() const {
  if (!root_.empty()) return {{"C:\\", DriveKind::kFixed}};
  std::vector<Drive> drives;
  const DWORD letters = ::GetLogicalDrives();
  for (char letter = 'A'; letter <= 'Z'; ++letter) {
    if ((letters >> static_cast<unsigned>(letter - 'A') & 1U) == 0) continue;
    const Path root{letter, ':', '\\'};
    drives.push_back({root, KindOf(root)});
  }
  return drives;
}

Path DrivePaths::FromNative(std::wstring_view native) const {
  while (!native.empty() && native.back() == L'\\') native.remove_suffix(1);
  if (!root_.empty() && native.substr(0, root_.size()) == root_) {
    return "C:" + Narrow(native.substr(root_.size()));
  }
  return Narrow(WithoutPrefix(native));
}

std::wstring WithoutPrefix(std::wstring_view native) {
  if (native.substr(0, kNetwork.size()) == kNetwork) {
    return std::wstring(L"\\\\").append(native.substr(kNetwork.size()));
  }
  if (native.substr(0, kLong.size()) == kLong) native.remove_prefix(kLong.size());
  return std::wstring(native);
}

std::wstring NativeFolderOf(std::wstring_view native) {
  const std::size_t last = native.rfind(L'\\');
  std::wstring folder(native.substr(0, last));
  if (!folder.empty() && folder.back() == L':') folder += L'\\';
  return folder;
}

std::wstring_view NativeNameOf(std::wstring_view native) {
  return native.substr(native.rfind(L'\\') + 1);
}

std::wstring FoldedPath(std::wstring_view native) {
  std::wstring folded(native);
  ::CharLowerBuffW(folded.data(), static_cast<DWORD>(folded.size()));
  return folded;
}

std::wstring Joined(std::wstring_view folder, std::wstring_view name) {
  std::wstring joined(folder);
  if (name.empty()) return joined;
  if (!joined.empty() && joined.back() != L'\\') joined += L'\\';
  return joined.append(name);
}

}  // namespace tarnvale
