#include "hosts/windows/temporaries.h"

#include <shlobj.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "base/failure.h"
#include "base/stable_hash.h"
#include "hosts/windows/file_state.h"
#include "hosts/windows/paths.h"
#include "hosts/windows/volume.h"
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

// What a slot says of its process's copy.
struct Work {
  std::wstring temporary;
  /// What a whole temporary was about to replace; empty for one that isn't whole.
  std::wstring target;
};

Work ReadSlot(const std::wstring& path) {
  const Handle file(::CreateFileW(path.c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
  std::array<char, 200000> bytes{};
  DWORD got = 0;
  if (!file || ::ReadFile(file.Get(), bytes.data(), bytes.size(), &got, nullptr) == 0) return {};
  const std::wstring text = Wide({bytes.data(), got});
  const std::size_t end = std::min(text.find(L'\n'), text.size());
  return {text.substr(0, end), text.substr(std::min(end + 1, text.size()))};
}

bool IsOld(const std::wstring& slot_path) {
  constexpr std::uint64_t kPatience = 30 * 24 * 3600 * std::uint64_t{10'000'000};
  const auto state = StateOf(slot_path, Links::kKeep);
  FILETIME now{};
  ::GetSystemTimeAsFileTime(&now);
  const std::uint64_t time = std::uint64_t{now.dwHighDateTime} << 32U | now.dwLowDateTime;
  return state && time > state->modified + kPatience;
}

bool WasMissing() {
  const DWORD error = ::GetLastError();
  return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

bool IsGone(const std::wstring& native) {
  return !StateOf(native, Links::kKeep) && WasMissing();
}

// True when nothing is left of it. A medium that is away for now, or has another drive's
// letter, will come back.
bool SeeTo(const std::wstring& temporary, const std::wstring& target) {
  if (!target.empty() && IsGone(target)) {
    return ::MoveFileExW(temporary.c_str(), target.c_str(), MOVEFILE_WRITE_THROUGH) != 0;
  }
  DeleteTemporary(temporary);
  return !StateOf(temporary, Links::kKeep) && ::GetLastError() == ERROR_FILE_NOT_FOUND;
}

}  // namespace

std::wstring DefaultStateFolder(const std::wstring& program_file) {
  const std::wstring carried = Joined(NativeFolderOf(program_file), L"Data\\State");
  const auto state = StateOf(carried, Links::kFollow);
  if (state && state->IsFolder()) return carried;
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

bool DeleteTemporary(const std::wstring& native) {
  const DWORD error = ::GetLastError();
  bool is_gone = false;
  if (::DeleteFileW(native.c_str()) == 0) {
    is_gone = WasMissing();
    if (!is_gone) {
      ::SetFileAttributesW(native.c_str(), FILE_ATTRIBUTE_NORMAL);
      if (::DeleteFileW(native.c_str()) == 0) ::RemoveDirectoryW(native.c_str());
    }
  }
  // One that is deleted keeps its name as long as another program has it open.
  if (!is_gone) is_gone = IsGone(native);
  ::SetLastError(error);
  return is_gone;
}

Temporaries::Temporaries(const std::wstring& state_folder)
    : slots_folder_(state_folder.empty() ? std::wstring() : Joined(state_folder, L"copies")),
      mark_(StableHash(ComputerName() + '\n' + Narrow(state_folder))) {
  CleanSlots();
}

void Temporaries::Sweep(const std::wstring& folder, std::wstring_view name) const {
  const std::string narrow = Narrow(name);
  if (MarkOfTemporary(narrow) != mark_) return;
  const std::string slot(SlotOfTemporary(narrow));
  if (SlotIsAlive(slot)) return;
  // The medium may have another drive's letter by now.
  Work work;
  if (!slots_folder_.empty()) work = ReadSlot(Joined(slots_folder_, Wide(slot)));
  const bool is_whole = !work.target.empty() && NativeNameOf(work.temporary) == name;
  SeeTo(Joined(folder, name),
        is_whole ? Joined(folder, NativeNameOf(work.target)) : std::wstring());
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

void Temporaries::CleanSlots() const {
  if (slots_folder_.empty()) return;
  PassedOver pass;
  pass.Step([&] {
    std::vector<std::wstring> slots;
    FolderListing listing(slots_folder_);
    while (const auto* entry = listing.Next()) {
      if (IsHexadecimal(Narrow(entry->cFileName))) slots.emplace_back(entry->cFileName);
    }
    for (const std::wstring& slot : slots) {
      if (!SlotIsAlive(Narrow(slot))) CleanSlot(slot);
    }
  });
}

void Temporaries::CleanSlot(const std::wstring& slot) const {
  const std::wstring slot_path = Joined(slots_folder_, slot);
  const Work work = ReadSlot(slot_path);
  const std::string name = Narrow(NativeNameOf(work.temporary));
  const bool is_ours = MarkOfTemporary(name) == mark_ && SlotOfTemporary(name) == Narrow(slot);
  // Not for ever: each start would wait for a server that is gone.
  if (is_ours && !IsOld(slot_path) && !SeeTo(work.temporary, work.target)) return;
  ::DeleteFileW(slot_path.c_str());
}

// Whoever wants to know whether a process lives opens its slot, which nobody else may
// while that keeps it open.
bool Temporaries::SlotIsAlive(const std::string& slot) const {
  if (slots_folder_.empty()) return false;
  const Handle file(::CreateFileW(Joined(slots_folder_, Wide(slot)).c_str(), GENERIC_READ,
                                  kShareAll, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL,
                                  nullptr));
  return !file && ::GetLastError() == ERROR_SHARING_VIOLATION;
}

TemporarySlot::TemporarySlot(const Temporaries& temporaries)
    : slots_folder_(temporaries.slots_folder_),
      mark_(temporaries.mark_),
      slot_(Hexadecimal(RandomBits())) {}

TemporarySlot::~TemporarySlot() {
  if (!file_) return;
  file_.Close();
  ::DeleteFileW(Joined(slots_folder_, Wide(slot_)).c_str());
}

const std::wstring& TemporarySlot::Begin(const std::wstring& folder) {
  while (true) {
    if (folder != folder_ || path_.empty()) {
      if (!file_tried_) OpenFile();
      folder_ = folder;
      path_ = Joined(folder, Wide(TemporaryName(mark_, slot_)));
      replaces_in_steps_ = VolumeOf(folder).IsFat();
      Record({});
    }
    if (DeleteTemporary(path_)) return path_;
    TakeAnother();
  }
}

// When another program has the temporary open. The next start deletes it.
void TemporarySlot::TakeAnother() {
  file_.Close();
  file_tried_ = false;
  slot_ = Hexadecimal(RandomBits());
  path_.clear();
}

void TemporarySlot::WillReplace(const std::wstring& target, Steps steps) {
  if ((replaces_in_steps_ || steps == Steps::kAlways) && Record(target)) {
    ::FlushFileBuffers(file_.Get());
  }
}

// Without its slot a leftover is still found when its folder is read.
bool TemporarySlot::Record(const std::wstring& target) {
  if (!file_) return false;
  std::string record = Narrow(path_);
  if (!target.empty()) record += '\n' + Narrow(target);
  const auto size = static_cast<DWORD>(record.size());
  DWORD done = 0;
  if (::SetFilePointer(file_.Get(), 0, nullptr, FILE_BEGIN) != 0 ||
      ::WriteFile(file_.Get(), record.data(), size, &done, nullptr) == 0 || done != size ||
      ::SetEndOfFile(file_.Get()) == 0) {
    file_.Close();
  }
  return static_cast<bool>(file_);
}

void TemporarySlot::OpenFile() {
  file_tried_ = true;
  if (!MakeStateFolder(slots_folder_)) return;
  file_ =
      Handle(::CreateFileW(Joined(slots_folder_, Wide(slot_)).c_str(), GENERIC_READ | GENERIC_WRITE,
                           0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
}

}  // namespace tarnvale
