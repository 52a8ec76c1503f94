#include "native/native_entry.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "base/failure.h"
#include "hosts/windows/file_state.h"
#include "hosts/windows/paths.h"
#include "hosts/windows/replacing_copy.h"
#include "hosts/windows/wide.h"
#include "native/native_paths_windows.h"
#include "platform/temporary_name.h"

namespace tarnvale {
namespace {

// The path of a folder that is held stays its own. Names are taken as they are written.
std::wstring NativeOf(const NativeEntry& entry) {
  if (entry.folder != nullptr) return Joined(entry.folder->Native(), Wide(entry.name));
  const auto native = DrivePaths().ToNative(entry.name);
  if (!native) throw SystemError(DescriptionOf(kPathNotFound));
  return *native;
}

NativeState Told(const FileState& state) {
  const bool is_plain = !state.IsFolder() && !state.is_link && !state.is_special;
  return {is_plain, state.is_link, is_plain && state.IsReadOnly(), state.size_bytes,
          SecondsSince1970(state.modified)};
}

Handle OpenToRead(const std::wstring& native, DWORD access) {
  constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  return Handle(::CreateFileW(native.c_str(), GENERIC_READ | access, kShareAll, nullptr,
                              OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
}

// Not everybody may leave the time of the last access as it is.
Handle OpenKeepingTime(const std::wstring& native) {
  constexpr DWORD kAsItIs = 0xFFFFFFFF;
  Handle file = OpenToRead(native, FILE_WRITE_ATTRIBUTES);
  if (!file) file = OpenToRead(native, 0);
  if (!file) throw SystemError();
  const FILETIME time{kAsItIs, kAsItIs};
  ::SetFileTime(file.Get(), nullptr, &time, nullptr);
  return file;
}

}  // namespace

std::string NativeEntry::Path() const {
  return folder == nullptr ? name : ShownPathOf(NativeOf(*this));
}

std::optional<NativeState> StateOfEntry(const NativeEntry& entry) {
  if (const auto state = StateOf(NativeOf(entry), Links::kKeep)) return Told(*state);
  const DWORD error = ::GetLastError();
  if (error != ERROR_FILE_NOT_FOUND && error != ERROR_PATH_NOT_FOUND) throw SystemError();
  return std::nullopt;
}

NativeState StateBehindLinks(const std::string& native) {
  const auto state = StateOf(NativeOf({nullptr, native}), Links::kFollow);
  if (!state) throw SystemError();
  return Told(*state);
}

bool StaysAsReadOnly(const NativeState&, const NativeState& copy) {
  return copy.is_read_only;
}

std::optional<std::string> LinkOf(const NativeEntry& entry) {
  const auto state = StateOf(NativeOf(entry), Links::kKeep);
  if (!state) throw SystemError();
  if (!state->is_link) return std::nullopt;
  try {
    const std::vector<char> link = ReadLink(NativeOf(entry));
    return std::string(link.begin(), link.end());
  } catch (const ProgramError& error) {
    throw SystemError(error.Description());
  }
}

struct FileReader::State {
  Handle file;
};

FileReader::FileReader(std::unique_ptr<State> state) : state_(std::move(state)) {}
FileReader::FileReader(FileReader&& other) noexcept = default;
FileReader::~FileReader() = default;

FileReader FileReader::Open(const NativeEntry& entry) {
  return FileReader(std::make_unique<State>(State{OpenKeepingTime(NativeOf(entry))}));
}

FileReader FileReader::OpenBehindLinks(const std::string& native) {
  return Open({nullptr, native});
}

std::size_t FileReader::Read(std::span<char> buffer) const {
  std::size_t done = 0;
  while (done < buffer.size()) {
    constexpr std::size_t kMost = std::numeric_limits<DWORD>::max();
    DWORD got = 0;
    if (::ReadFile(state_->file.Get(), buffer.data() + done,
                   static_cast<DWORD>(std::min(buffer.size() - done, kMost)), &got, nullptr) == 0) {
      throw SystemError();
    }
    if (got == 0) break;
    done += got;
  }
  return done;
}

bool HasRoom(const NativeEntry& entry) {
  return !StateOf(NativeOf(entry), Links::kKeep) || entry.folder->HasExactly(entry.name);
}

std::vector<UnseenEntry> UnseenIn(const NativeEntry& folder, bool files_only) {
  constexpr DWORD kUnlisted = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
  std::vector<UnseenEntry> unseen;
  PassedOver pass;
  pass.Step([&] {
    FolderListing listing(NativeOf(folder));
    while (const auto* entry = listing.Next()) {
      const FileState state = tarnvale::StateOf(*entry);
      const std::string name = Narrow(entry->cFileName);
      if (IsOwnName(name) || (files_only && state.IsFolder())) continue;
      const auto add = [&](UnseenEntry::Reason reason) {
        unseen.push_back({folder.Path() + kSeparator + name, reason});
      };
      if (!CanBeFound(entry->cFileName)) {
        add(UnseenEntry::Reason::kName);
      } else if (state.is_special) {
        add(UnseenEntry::Reason::kSpecial);
      } else if (files_only && (state.attributes & kUnlisted) != 0) {
        add(UnseenEntry::Reason::kHidden);
      }
    }
  });
  return unseen;
}

std::string NativePathOf(NativeHost& host, const Path& path) {
  const auto native = host.drives.ToNative(path);
  return native ? ShownPathOf(*native) : path;
}

std::string ComparedPath(const std::string& native) {
  return Narrow(FoldedPath(Wide(native)));
}

NativeSurroundings SurroundingsThatKeepLeftovers() {
  NativeSurroundings surroundings;
  surroundings.state_folder.clear();
  surroundings.locale = LOCALE_INVARIANT;
  return surroundings;
}

}  // namespace tarnvale
