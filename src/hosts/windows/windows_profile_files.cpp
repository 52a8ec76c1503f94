#include "hosts/windows/windows_profile_files.h"

#include <optional>
#include <string>
#include <utility>

#include "base/failure.h"
#include "base/stable_hash.h"
#include "hosts/windows/file_state.h"
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

/// What a file was like when it was looked at.
struct Version {
  FileState state;
  FileNumber number;

  bool operator==(const Version& other) const {
    return number == other.number && state.modified == other.state.modified &&
           state.size_bytes == other.state.size_bytes && state.attributes == other.state.attributes;
  }
};

std::optional<Version> VersionOf(const std::wstring& native) {
  const auto state = StateOf(native, Links::kFollow);
  if (!state) return std::nullopt;
  const Handle file = OpenToAsk(native, Links::kFollow);
  return Version{*state, file ? NumberOf(file.Get()).value_or(FileNumber{}) : FileNumber{}};
}

class WindowsProfile : public NativeProfile {
 public:
  WindowsProfile(const Locator& locator, TemporarySlot& slot, TextCoding coding, Path file)
      : locator_(locator), slot_(slot), coding_(coding), file_(std::move(file)) {}

  bool Find() override;
  std::string Place() override { return Narrow(FoldedPath(native_)); }
  bool IsAsRead() override { return there_ == read_; }
  std::optional<std::string> Read() override;
  bool MayBeWritten() override {
    return !native_.empty() && !(there_ && there_->state.IsReadOnly());
  }
  bool Begin() override;
  Outcome Replace(const std::string& bytes, bool looks_first, std::string& displaced) override;

 private:
  bool WriteBeside(const std::string& bytes);

  const Locator& locator_;
  TemporarySlot& slot_;
  const TextCoding coding_;
  const Path file_;
  // Where the profile lies, behind a link that may have its place; empty where no file could.
  std::wstring native_;
  // The file now and when it was read; none for no file.
  std::optional<Version> there_;
  std::optional<Version> read_;
};

bool WindowsProfile::Find() {
  native_.clear();
  there_.reset();
  const Located located = locator_.Locate(file_);
  if (located.error != 0) return false;
  if (!located.folder_found || !located.can_be_named) return true;
  native_ = located.state && located.state->is_link ? BehindLinks(located.native) : located.native;
  there_ = VersionOf(native_);
  return true;
}

std::optional<std::string> WindowsProfile::Read() {
  std::string bytes;
  read_ = there_;
  if (there_ && (there_->state.IsFolder() || !ReadWhole(native_, bytes))) return std::nullopt;
  // What no code page can read is kept as the bytes that it is.
  return coding_.Decode(bytes).value_or(bytes);
}

// A folder that can't be written is noticed at once.
bool WindowsProfile::Begin() {
  const bool is_written = WriteBeside({});
  DeleteTemporary(slot_.NativePath());
  return is_written;
}

NativeProfile::Outcome WindowsProfile::Replace(const std::string& bytes, bool looks_first,
                                               std::string&) {
  if (!WriteBeside(coding_.Encode(bytes).value_or(std::string(kUtf8Mark) + bytes))) {
    // It may hold a password.
    DeleteTemporary(slot_.NativePath());
    return Outcome::kFailed;
  }
  const SaveLock lock(native_);
  if (looks_first && !(Find() && IsAsRead())) return Outcome::kAgain;
  PassedOver pass;
  return pass.Step([&] { GiveName(slot_, native_, there_.has_value()); }) ? Outcome::kDone
                                                                          : Outcome::kFailed;
}

bool WindowsProfile::WriteBeside(const std::string& bytes) {
  const std::wstring folder = NativeFolderOf(native_);
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

}  // namespace

WindowsProfileFiles::WindowsProfileFiles(const Locator& locator, Temporaries& temporaries,
                                         TextCoding coding)
    : locator_(locator), slot_(temporaries), coding_(coding) {}

std::unique_ptr<NativeProfile> WindowsProfileFiles::MakeNative(const Path& file) {
  return std::make_unique<WindowsProfile>(locator_, slot_, coding_, file);
}

}  // namespace tarnvale
