#include "hosts/windows/windows_profile_files.h"

#include <string_view>
#include <utility>

#include "base/characters.h"
#include "base/failure.h"
#include "base/stable_hash.h"
#include "hosts/windows/ownership.h"
#include "hosts/windows/replacing_copy.h"
#include "hosts/windows/wide.h"
#include "platform/file_text.h"

namespace tarnvale {
namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

bool ReadWhole(const std::wstring& native, std::string& bytes) {
  const Handle file(::CreateFileW(native.c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
  LARGE_INTEGER length{};
  if (!file || ::GetFileSizeEx(file.Get(), &length) == 0 || length.HighPart != 0) return false;
  bytes.resize(length.LowPart);
  DWORD got = 0;
  if (::ReadFile(file.Get(), bytes.data(), length.LowPart, &got, nullptr) == 0) return false;
  bytes.resize(got);
  return true;
}

// The file that a path names, behind a link that may have its place.
std::wstring PlaceOf(const Located& located) {
  return located.state && located.state->is_link ? BehindLinks(located.native) : located.native;
}

// Keeps other instances from replacing a file while we look and replace it. They hold it
// for as long as a slow medium takes to rename a file; whoever holds it for longer doesn't
// stop us.
class SaveLock {
 public:
  explicit SaveLock(const std::wstring& native)
      : mutex_(::CreateMutexW(
            nullptr, FALSE,
            Wide("Local\\Tarnvale-save-" + StableHash(Narrow(FoldedPath(native)))).c_str())) {
    constexpr DWORD kPatience_ms = 3000;
    const DWORD result = mutex_ ? ::WaitForSingleObject(mutex_.Get(), kPatience_ms) : WAIT_FAILED;
    is_held_ = result == WAIT_OBJECT_0 || result == WAIT_ABANDONED;
  }
  SaveLock(const SaveLock&) = delete;
  SaveLock& operator=(const SaveLock&) = delete;
  ~SaveLock() {
    if (is_held_) ::ReleaseMutex(mutex_.Get());
  }

 private:
  Handle mutex_;
  bool is_held_ = false;
};

}  // namespace

WindowsProfileFiles::WindowsProfileFiles(const Locator& locator, Temporaries& temporaries,
                                         TextCoding coding)
    : locator_(locator), slot_(temporaries), coding_(coding) {}

WindowsProfileFiles::Profile& WindowsProfileFiles::ProfileOf(const std::wstring& native) {
  return profiles_[FoldedPath(native)];
}

std::optional<WindowsProfileFiles::Version> WindowsProfileFiles::VersionOf(
    const std::wstring& native) {
  const auto state = StateOf(native, Links::kFollow);
  if (!state) return std::nullopt;
  const Handle file = OpenToAsk(native, Links::kFollow);
  return Version{*state, file ? NumberOf(file.Get()).value_or(FileNumber{}) : FileNumber{}};
}

bool WindowsProfileFiles::IsStill(const std::optional<Version>& version,
                                  const std::wstring& native) {
  const auto now = VersionOf(native);
  if (!now || !version) return now.has_value() == version.has_value();
  return now->number == version->number && now->state.modified == version->state.modified &&
         now->state.size_bytes == version->state.size_bytes &&
         now->state.attributes == version->state.attributes;
}

// Brings the text up to what the medium holds, with the held-back edits. False when the
// file is there but can't be read: its text then counts as empty.
bool WindowsProfileFiles::Refresh(Profile& profile, const std::wstring& native) {
  if (profile.is_known && IsStill(profile.version, native)) return true;
  profile.version = VersionOf(native);
  std::string bytes;
  const bool is_file = profile.version && !profile.version->state.IsFolder();
  profile.is_known = !profile.version || (is_file && ReadWhole(native, bytes));
  // What no code page can read is kept as the bytes that it is.
  profile.text = ProfileText(coding_.Decode(bytes).value_or(bytes));
  for (const Edit& edit : profile.edits) profile.text.Set(edit.section, edit.key, edit.value);
  return profile.is_known;
}

std::string WindowsProfileFiles::Read(const std::string& section, const std::string& key,
                                      const std::string& fallback, std::size_t buffer_size,
                                      const Path& file) {
  std::string value = fallback;
  const Located located = locator_.Locate(file);
  if ((located.folder_found && located.can_be_named) || located.error != 0) {
    const std::wstring native = PlaceOf(located);
    Profile& profile = ProfileOf(native);
    // Until it has been read: whatever ends this before then leaves it unknown.
    const auto unread = profile.unread.emplace(section, key).first;
    const bool is_read = located.error == 0 && Refresh(profile, native);
    if (auto found = profile.text.Value(section, key)) value = std::move(*found);
    if (is_read) profile.unread.erase(unread);
  }
  return std::string(FirstCharacters(value, buffer_size == 0 ? 0 : buffer_size - 1));
}

bool WindowsProfileFiles::Write(const std::string& section, const std::string& key,
                                const std::string& value, const Path& file) {
  const Located located = locator_.Locate(file);
  if (!located.folder_found || !located.can_be_named || located.error != 0 ||
      !ProfileText::CanHold(section, key, value)) {
    return false;
  }
  const std::wstring native = PlaceOf(located);
  Profile& profile = ProfileOf(native);
  if (!profile.unread.empty() || !Refresh(profile, native)) return false;
  if (profile.version && profile.version->state.IsReadOnly()) return false;
  if (profile.text.Holds(section, key, value)) return true;
  // A folder that can't be written is noticed at once.
  if (profile.edits.empty()) {
    const bool is_written = WriteBeside(native, {});
    DeleteTemporary(slot_.NativePath());
    if (!is_written) return false;
  }
  profile.text.Set(section, key, value);
  profile.edits.push_back({section, key, value});
  return true;
}

bool WindowsProfileFiles::Flush(const Path& file) {
  const Located located = locator_.Locate(file);
  const std::wstring native = PlaceOf(located);
  Profile& profile = ProfileOf(native);
  if (profile.edits.empty()) return true;
  const bool is_done = located.folder_found && Put(profile, native);
  profile.edits.clear();
  profile.is_known = false;
  return is_done;
}

// The medium may take its time, so nothing is locked meanwhile: it is looked once more
// right before we replace the file whether another program has done so, and what that
// wrote is then taken in.
bool WindowsProfileFiles::Put(Profile& profile, const std::wstring& native) {
  constexpr int kMostTries = 20;
  for (int tries = 1;; ++tries) {
    if (!Refresh(profile, native)) return false;
    if (profile.version && profile.version->state.IsReadOnly()) return false;
    const std::string text = profile.text.Bytes();
    const std::string bytes = coding_.Encode(text).value_or(std::string(kUtf8Mark) + text);
    std::string old;
    if (profile.version && ReadWhole(native, old) && old == bytes) return true;
    if (!WriteBeside(native, bytes)) {
      // It may hold a password.
      DeleteTemporary(slot_.NativePath());
      return false;
    }
    const SaveLock lock(native);
    if (tries < kMostTries && !IsStill(profile.version, native)) continue;
    PassedOver pass;
    return pass.Step([&] { GiveName(slot_, native, profile.version.has_value()); });
  }
}

bool WindowsProfileFiles::WriteBeside(const std::wstring& native, const std::string& bytes) {
  const std::wstring folder = NativeFolderOf(native);
  // A settings file holds passwords, so it is its owner's alone.
  const Handle file(::CreateFileW(slot_.Begin(folder).c_str(), GENERIC_WRITE, 0,
                                  OwnersAlone(folder), CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                                  nullptr));
  DWORD done = 0;
  return file &&
         ::WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &done, nullptr) !=
             0 &&
         done == bytes.size() && FlushFile(file.Get());
}

}  // namespace tarnvale
