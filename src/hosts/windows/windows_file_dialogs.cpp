#include "hosts/windows/windows_file_dialogs.h"

#include <cderr.h>
#include <objbase.h>
#include <shlobj.h>

#include <algorithm>
#include <array>

#include "hosts/windows/shown_text.h"
#include "hosts/windows/wide.h"
#include "hosts/windows/windows_window_host.h"
#include "ui/dialog_record.h"

namespace tarnvale {
namespace {

/// A path as long as the dialogs take it, its NUL included.
using PathBuffer = std::array<wchar_t, MAX_PATH>;

/// The current folder, which says what drive a path without one is on: the dialogs move it.
class KeptFolder {
 public:
  KeptFolder() { ::GetCurrentDirectoryW(MAX_PATH, folder_.data()); }
  KeptFolder(const KeptFolder&) = delete;
  KeptFolder& operator=(const KeptFolder&) = delete;
  ~KeptFolder() { ::SetCurrentDirectoryW(folder_.data()); }

 private:
  PathBuffer folder_{};
};

/// What the shell's own objects need.
class Com {
 public:
  Com() : is_begun_(SUCCEEDED(::CoInitialize(nullptr))) {}
  Com(const Com&) = delete;
  Com& operator=(const Com&) = delete;
  ~Com() {
    if (is_begun_) ::CoUninitialize();
  }

 private:
  bool is_begun_;
};

// Empty for none: the system then shows all files.
std::wstring FilterOf(const std::vector<FileFilter>& filters) {
  std::wstring text;
  for (const FileFilter& filter : filters) {
    text.append(ToShown(filter.description)).push_back(L'\0');
    for (std::size_t i = 0; i < filter.patterns.size(); ++i) {
      if (i > 0) text += L';';
      text += Wide(filter.patterns[i]);
    }
    text += L'\0';
  }
  return text;
}

void Offer(PathBuffer& buffer, const std::wstring& folder, const std::string& name) {
  std::wstring text = Joined(folder, Wide(name));
  if (text.size() >= buffer.size()) text = Wide(name);
  if (text.size() < buffer.size()) std::copy(text.begin(), text.end(), buffer.begin());
}

const wchar_t* OrNone(const std::wstring& text) {
  return text.empty() ? nullptr : text.c_str();
}

}  // namespace

// Its box for reading alone would do nothing here.
bool WindowsFileDialogs::ShowOpen(FileDialogRecord& record) {
  return Show(&::GetOpenFileNameW, record.flags | OFN_HIDEREADONLY, record);
}

// Chosen: it asks before it replaces a file, whatever the flags are.
bool WindowsFileDialogs::ShowSave(FileDialogRecord& record) {
  return Show(&::GetSaveFileNameW, record.flags | OFN_OVERWRITEPROMPT, record);
}

bool WindowsFileDialogs::Show(Dialog dialog, DWORD flags, FileDialogRecord& record) {
  const HWND owner = windows_.OwnerFor(record.owner);
  const std::vector<FileFilter> filters = FiltersOf(record);
  const std::wstring filter = FilterOf(filters);
  const std::wstring title = ToShown(record.title);
  const std::wstring extension = Wide(DefaultExtensionOf(record));
  const std::wstring folder = FolderOf(record.initial_dir);
  const OfferedFile offered = OfferedBy(record);
  PathBuffer file{};
  if (!offered.name.empty()) Offer(file, FolderOf(offered.folder), offered.name);

  OPENFILENAMEW data{};
  // The oldest system takes no more.
  data.lStructSize = OPENFILENAME_SIZE_VERSION_400W;
  data.hwndOwner = owner;
  data.lpstrFilter = OrNone(filter);
  data.nFilterIndex = static_cast<DWORD>(FirstFilterOf(record, filters.size()) + 1);
  data.lpstrFile = file.data();
  data.nMaxFile = static_cast<DWORD>(file.size());
  data.lpstrInitialDir = OrNone(folder);
  data.lpstrTitle = OrNone(title);
  data.Flags = flags;
  data.lpstrDefExt = OrNone(extension);

  const WindowsWindowHost::Modal modal(windows_, owner);
  const KeptFolder kept;
  bool is_confirmed = dialog(&data) != 0;
  if (!is_confirmed && ::CommDlgExtendedError() == FNERR_INVALIDFILENAME) {
    // It doesn't come up with a name that no file can have.
    file.fill(L'\0');
    is_confirmed = dialog(&data) != 0;
  }
  return is_confirmed && GiveBack(record, drives_.FromNative(file.data()));
}

std::optional<Path> WindowsFileDialogs::BrowseForFolder(const FolderDialogRecord& record) {
  const Com com;
  const HWND owner = windows_.OwnerFor(record.owner);
  const std::wstring prompt = ToShown(record.prompt);
  PathBuffer buffer{};
  BROWSEINFOW data{};
  data.hwndOwner = owner;
  data.pszDisplayName = buffer.data();
  data.lpszTitle = prompt.c_str();
  data.ulFlags = BIF_RETURNONLYFSDIRS;
  const WindowsWindowHost::Modal modal(windows_, owner);
  PIDLIST_ABSOLUTE item = ::SHBrowseForFolderW(&data);
  if (item == nullptr) return std::nullopt;
  const bool has_path = ::SHGetPathFromIDListW(item, buffer.data()) != 0;
  ::CoTaskMemFree(item);
  if (!has_path) return std::nullopt;
  Path chosen = drives_.FromNative(buffer.data());
  const bool is_drive = chosen.size() == 2;
  if (is_drive) chosen += '\\';
  return chosen;
}

// In the form that the dialogs take; empty when there is no such folder.
std::wstring WindowsFileDialogs::FolderOf(const Path& path) const {
  if (path.empty()) return {};
  const auto native = drives_.ToNative(path);
  if (!native) return {};
  const DWORD attributes = ::GetFileAttributesW(native->c_str());
  const bool is_folder =
      attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  return is_folder ? WithoutPrefix(*native) : std::wstring();
}

}  // namespace tarnvale
