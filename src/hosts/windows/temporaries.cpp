#include "hosts/windows/temporaries.h"

#include <shlobj.h>

#include <array>
#include <string>
#include <vector>

#include "base/failure.h"
#include "base/stable_hash.h"
#include "hosts/windows/file_state.h"
#include "hosts/windows/paths.h"
#include "hosts/windows/wide.h"
#include "hosts/windows/windows_random.h"
#include "platform/temporary_name.h"

namespace tarnvale {
namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
// More folders than this are simply looked through once more.
constexpr std::size_t kMostSwept = 65536;

std::string ComputerName() {
  std::array<wchar_t, MAX_COMPUTERNAME_LENGTH + 1> name{};
  DWORD length = name.size();
  return ::GetComputerNameW(name.data(), &length) != 0 ? Narrow({name.data(), length})
                                                       : std::string();
}

std::string ReadWhole(const Handle& file) {
  std::array<char, 65536> bytes{};
  DWORD got = 0;
  if (::ReadFile(file.Get(), bytes.data(), bytes.size(), &got, nullptr) == 0) return {};
  return {bytes.data(), got};
}

}  // namespace

std::wstring DefaultStateFolder() {
  std::array<wchar_t, MAX_PATH> folder{};
  constexpr int kLocal = CSIDL_LOCAL_APPDATA;
  if (::SHGetFolderPathW(nullptr, kLocal, nullptr, SHGFP_TYPE_CURRENT, folder.data()) != S_OK) {
    return {};
  }
  return Joined(folder.data(), L"Tarnvale");
}

bool MakeStateFolder(const std::wstring& folder) {
  if (folder.empty()) return false;
  if (::CreateDirectoryW(folder.c_str(), nullptr) != 0) return true;
  const DWORD error = ::GetLastError();
  if (error == ERROR_ALREADY_EXISTS) return true;
  const std::wstring parent = NativeFolderOf(folder);
  return error == ERROR_PATH_NOT_FOUND && parent.size() < folder.size() &&
         MakeStateFolder(parent) && ::CreateDirectoryW(folder.c_str(), nullptr) != 0;
}

Temporaries::Temporaries(const std::wstring& state_folder)
    : slots_folder_(Joined(state_folder, L"copies")),
      mark_(StableHash(ComputerName() + '\n' + Narrow(state_folder))),
      slot_(Hexadecimal(RandomBits())) {
  CleanSlots();
}

Temporaries::~Temporaries() {
  if (!slot_file_) return;
  slot_file_.Close();
  ::DeleteFileW(Joined(slots_folder_, Wide(slot_)).c_str());
}

const std::wstring& Temporaries::Begin(const std::wstring& folder) {
  if (!slot_tried_) OpenSlot();
  if (folder != folder_in_slot_ || path_.empty()) {
    folder_in_slot_ = folder;
    path_ = Joined(folder, Wide(TemporaryName(mark_, slot_)));
    const std::string record = Narrow(path_);
    DWORD done = 0;
    // Without a slot a leftover is still found when its folder is read.
    if (slot_file_ && (::SetFilePointer(slot_file_.Get(), 0, nullptr, FILE_BEGIN) != 0 ||
                       ::WriteFile(slot_file_.Get(), record.data(),
                                   static_cast<DWORD>(record.size()), &done, nullptr) == 0 ||
                       ::SetEndOfFile(slot_file_.Get()) == 0)) {
      slot_file_.Close();
    }
  }
  ::SetFileAttributesW(path_.c_str(), FILE_ATTRIBUTE_NORMAL);
  ::DeleteFileW(path_.c_str());
  return path_;
}

void Temporaries::Sweep(const std::wstring& folder, std::wstring_view name) const {
  const std::string narrow = Narrow(name);
  if (MarkOfTemporary(narrow) != mark_) return;
  const std::string slot(SlotOfTemporary(narrow));
  // No folder is read while a copy of our own is in work.
  if (slot != slot_ && SlotIsAlive(slot)) return;
  const std::wstring path = Joined(folder, name);
  ::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  ::DeleteFileW(path.c_str());
}

void Temporaries::SweepOnce(const std::wstring& folder) {
  if (swept_.contains(folder)) return;
  PassedOver pass;
  pass.Step([&] {
    FolderListing listing(folder);
    std::vector<std::wstring> leftovers;
    while (const auto* entry = listing.Next()) {
      if (IsTemporaryName(Narrow(entry->cFileName))) leftovers.emplace_back(entry->cFileName);
    }
    for (const std::wstring& name : leftovers) Sweep(folder, name);
  });
  if (swept_.size() >= kMostSwept) swept_.clear();
  swept_.insert(folder);
}

// Whoever wants to know whether we live opens the slot, which nobody else may while we
// keep it open.
void Temporaries::OpenSlot() {
  slot_tried_ = true;
  if (!MakeStateFolder(slots_folder_)) return;
  slot_file_ =
      Handle(::CreateFileW(Joined(slots_folder_, Wide(slot_)).c_str(), GENERIC_READ | GENERIC_WRITE,
                           0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
}

void Temporaries::CleanSlots() const {
  PassedOver pass;
  pass.Step([&] {
    std::vector<std::wstring> slots;
    FolderListing listing(slots_folder_);
    while (const auto* entry = listing.Next()) {
      if (IsHexadecimal(Narrow(entry->cFileName))) slots.emplace_back(entry->cFileName);
    }
    for (const std::wstring& slot : slots) CleanSlot(slot);
  });
}

void Temporaries::CleanSlot(const std::wstring& slot) const {
  const std::wstring slot_path = Joined(slots_folder_, slot);
  Handle file(::CreateFileW(slot_path.c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING,
                            FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) return;
  const std::wstring path = Wide(ReadWhole(file));
  const std::string name = Narrow(NativeNameOf(path));
  if (MarkOfTemporary(name) == mark_ && SlotOfTemporary(name) == Narrow(slot)) {
    ::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    const bool gone = ::DeleteFileW(path.c_str()) != 0 || ::GetLastError() == ERROR_FILE_NOT_FOUND;
    // A medium that is away for now: the slot stays until it is back.
    if (!gone) return;
  }
  file.Close();
  ::DeleteFileW(slot_path.c_str());
}

bool Temporaries::SlotIsAlive(const std::string& slot) const {
  const Handle file(::CreateFileW(Joined(slots_folder_, Wide(slot)).c_str(), GENERIC_READ,
                                  kShareAll, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL,
                                  nullptr));
  return !file && ::GetLastError() == ERROR_SHARING_VIOLATION;
}

}  // namespace tarnvale
