#include "hosts/windows/windows_folder.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "base/failure.h"
#include "hosts/windows/native_errors.h"
#include "hosts/windows/ownership.h"
#include "hosts/windows/paths.h"
#include "hosts/windows/wide.h"
#include "platform/names.h"
#include "platform/temporary_name.h"

namespace tarnvale {
namespace {

FolderEntry EntryOf(std::string name, const FileState& state, const MediumTimes& times) {
  constexpr std::uint64_t kUnitsPerSecond = 10'000'000;
  const std::uint64_t modified = times.FromMedium(state.modified);
  return {std::move(name), state.size_bytes, SecondsSince1970(modified),
          static_cast<std::int32_t>(modified % kUnitsPerSecond * 100)};
}

}  // namespace

FolderContents WindowsFolder::Contents() {
  FolderContents contents;
  std::vector<std::wstring> leftovers;
  FolderListing listing(native_);
  while (const auto* entry = listing.Next()) {
    const FileState state = StateOf(*entry);
    std::string name = Narrow(entry->cFileName);
    if (IsOwnName(name)) {
      leftovers.emplace_back(entry->cFileName);
    } else if (!CanBeFound(entry->cFileName) || state.is_special) {
      // Made by another system: no path leads there. Or no file.
      continue;
    } else if (state.IsFolder() && !state.is_link) {
      contents.folders.push_back(std::move(name));
    } else {
      contents.files.push_back(EntryOf(std::move(name), state, times_));
    }
  }
  RequirePresent();
  for (const std::wstring& name : leftovers) temporaries_.Sweep(native_, name);
  SortContents(contents);
  listed_.emplace(contents.folders.begin(), contents.folders.end());
  for (const FolderEntry& file : contents.files) listed_->insert(file.name);
  return contents;
}

void WindowsFolder::RequirePresent() const {
  BY_HANDLE_FILE_INFORMATION info{};
  if (::GetFileInformationByHandle(Get(), &info) == 0) throw ProgramError(kPathNotFound);
}

bool WindowsFolder::HasExactly(const std::string& name) {
  if (made_.contains(name)) return true;
  if (!listed_) Contents();
  return listed_->contains(name);
}

std::optional<FolderEntry> WindowsFolder::File(const std::string& name) {
  if (!CanBeFound(Wide(name))) return std::nullopt;
  const std::wstring native = NativeOf(name);
  const auto state = StateOf(native, Links::kKeep);
  if (!state || (state->IsFolder() && !state->is_link) || state->is_special ||
      NativeNameOf(native) != ListedName(native)) {
    return std::nullopt;
  }
  return EntryOf(name, *state, times_);
}

std::optional<std::size_t> WindowsFolder::FoundBy(const std::string& name,
                                                  const ListedNames& listed) {
  if (!CanBeFound(Wide(name))) return std::nullopt;
  const auto at = std::find(listed.begin(), listed.end(), Narrow(ListedName(NativeOf(name))));
  if (at == listed.end()) return std::nullopt;
  return static_cast<std::size_t>(at - listed.begin());
}

std::unique_ptr<HeldFolder> WindowsFolder::Inner(const std::string& names) {
  std::wstring native = native_;
  Handle held;
  std::string_view rest = names;
  // Each is held before the next one is looked for, so that none turns into a link.
  do {
    const std::size_t end = std::min(rest.find('\\'), rest.size());
    const std::wstring name = Wide(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
    if (!names.empty()) {
      native = Joined(native, name);
      if (!CanBeFound(name) || ListedName(native) != name) throw ProgramError(kPathNotFound);
    }
    // This folder itself may have been found by a link.
    const Links links = names.empty() ? Links::kFollow : Links::kKeep;
    Handle next = OpenForHolding(native, links);
    if (!next) RaiseLast(Attempt::kQuery);
    const auto state = StateOf(native, links);
    if (!state) RaiseLast(Attempt::kQuery);
    const bool is_link = !names.empty() && state->is_link;
    if (!state->IsFolder() || is_link) throw ProgramError(kPathNotFound);
    held = std::move(next);
  } while (!rest.empty());
  RequirePresent();
  return std::make_unique<WindowsFolder>(std::move(held), std::move(native), times_, temporaries_);
}

std::wstring WindowsFolder::NativeOf(const std::string& name) const {
  const std::wstring wide = Wide(name);
  if (!CanBeFound(wide)) throw ProgramError(kPathFileAccess);
  return Joined(native_, wide);
}

void WindowsFolder::MakeFolder(const std::string& name) {
  const std::wstring native = NativeOf(name);
  RequirePresent();
  if (::CreateDirectoryW(native.c_str(), nullptr) == 0) RaiseForMaking(name, ::GetLastError());
  NoteMade(name);
}

void WindowsFolder::MakeFile(const std::string& name, Rights rights) {
  const std::wstring native = NativeOf(name);
  RequirePresent();
  SECURITY_ATTRIBUTES* const security = rights == Rights::kOwner ? OwnersAlone(native_) : nullptr;
  const Handle made(::CreateFileW(native.c_str(), GENERIC_WRITE, 0, security, CREATE_NEW,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!made) RaiseForMaking(name, ::GetLastError());
  NoteMade(name);
}

bool WindowsFolder::Is(const HeldFolder& other) {
  const auto& their = static_cast<const WindowsFolder&>(other);
  return AreSame(Get(), Native(), their.Get(), their.Native());
}

void WindowsFolder::RaiseForMaking(const std::string& name, DWORD error) {
  const bool is_taken = StateOf(NativeOf(name), Links::kKeep).has_value();
  if (is_taken) throw ProgramError(HasExactly(name) ? kPathFileAccess : kFileAlreadyExists);
  RaiseNative(error, Attempt::kChange);
}

}  // namespace tarnvale
