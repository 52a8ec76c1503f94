#include <utility>

#include "base/failure.h"
#include "hosts/windows/native_errors.h"
#include "hosts/windows/paths.h"
#include "hosts/windows/replacing_copy.h"
#include "hosts/windows/wide.h"
#include "native/console.h"
#include "native/native_paths_windows.h"
#include "native/output_folder.h"
#include "native/work_name.h"
#include "platform/path_text.h"

namespace tarnvale {
namespace {

FileIdentity IdentityOf(HANDLE file) {
  const auto number = NumberOf(file);
  if (!number) throw SystemError();
  return {number->volume, number->number};
}

bool IsMissing(DWORD error) {
  return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

/// A file in work, gone with this object unless it has got its name.
class FileInWork {
 public:
  explicit FileInWork(std::wstring native)
      : native_(std::move(native)),
        file_(::CreateFileW(native_.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                            FILE_ATTRIBUTE_NORMAL, nullptr)) {
    if (!file_) throw SystemError();
  }
  FileInWork(const FileInWork&) = delete;
  FileInWork& operator=(const FileInWork&) = delete;
  ~FileInWork() {
    file_.Close();
    ::DeleteFileW(native_.c_str());
  }

  void Write(std::span<const std::uint8_t> bytes) {
    constexpr std::size_t kMostAtOnce = std::size_t{1} << 22U;
    while (!bytes.empty()) {
      StopIfAsked();
      const auto piece = bytes.first(std::min(bytes.size(), kMostAtOnce));
      DWORD done = 0;
      if (::WriteFile(file_.Get(), piece.data(), static_cast<DWORD>(piece.size()), &done,
                      nullptr) == 0) {
        throw SystemError();
      }
      bytes = bytes.subspan(done);
    }
    // Onto the medium first: a power cut leaves no name with half a file behind.
    if (::FlushFileBuffers(file_.Get()) == 0) throw SystemError();
  }

  FileIdentity Identity() const { return IdentityOf(file_.Get()); }
  void Close() { file_.Close(); }

 private:
  std::wstring native_;
  Handle file_;
};

}  // namespace

struct OutputFolder::State {
  Handle held;
  std::wstring native;
};

OutputFolder::OutputFolder(std::unique_ptr<State> state) : state_(std::move(state)) {}
OutputFolder::OutputFolder(OutputFolder&& other) noexcept = default;
OutputFolder& OutputFolder::operator=(OutputFolder&& other) noexcept = default;
OutputFolder::~OutputFolder() = default;

std::optional<OutputFolder> OutputFolder::Open(const std::string& native) {
  std::wstring path = SystemPathOf(native);
  const auto state = StateOf(path, Links::kFollow);
  if (!state && IsMissing(::GetLastError())) return std::nullopt;
  if (!state) throw SystemError();
  if (!state->IsFolder()) throw SystemError("is no folder");
  Handle held = OpenForHolding(path, Links::kFollow);
  if (!held) throw SystemError();
  return OutputFolder(std::make_unique<State>(State{std::move(held), std::move(path)}));
}

OutputFolder OutputFolder::Make(const std::string& native) {
  const std::wstring path = SystemPathOf(native);
  for (std::size_t end = 0; end != std::wstring::npos;) {
    end = path.find(L'\\', end + 1);
    const std::wstring part = path.substr(0, end);
    if (part.size() < 6 || StateOf(part, Links::kFollow)) continue;  // within "\\?\C:"
    if (::CreateDirectoryW(part.c_str(), nullptr) == 0 && end == std::wstring::npos) {
      throw SystemError();
    }
  }
  auto made = Open(native);
  if (!made) throw SystemError();
  return std::move(*made);
}

OutputFolder OutputFolder::Again() const {
  auto again = Open(ShownPathOf(state_->native) + kSeparator);
  if (!again) throw SystemError();
  return std::move(*again);
}

std::optional<OutputFolder::Inner> OutputFolder::Enter(const std::string& name) const {
  if (name == "..") {
    // Only where names may lead anywhere.
    auto above = Open(ShownPathOf(NativeFolderOf(state_->native)) + kSeparator);
    if (!above) return std::nullopt;
    return Inner{std::move(*above), false};
  }
  std::wstring native = Joined(state_->native, Wide(name));
  const auto state = StateOf(native, Links::kKeep);
  if (!state && IsMissing(::GetLastError())) return std::nullopt;
  if (!state) throw SystemError();
  if (!state->IsFolder()) throw SystemError(name + " is no folder");
  Handle held = OpenForHolding(native, state->is_link ? Links::kFollow : Links::kKeep);
  // What has become a link since leads nowhere we looked.
  const auto still = StateOf(native, Links::kKeep);
  if (!held || !still || still->is_link != state->is_link)
    throw SystemError(name + " is no folder");
  return Inner{OutputFolder(std::make_unique<State>(State{std::move(held), std::move(native)})),
               state->is_link};
}

void OutputFolder::MakeInner(const std::string& name) const {
  const std::wstring native = Joined(state_->native, Wide(name));
  if (::CreateDirectoryW(native.c_str(), nullptr) == 0 &&
      ::GetLastError() != ERROR_ALREADY_EXISTS) {
    throw SystemError();
  }
}

// Chosen: the older systems don't say where a link leads to, so none is followed.
bool OutputFolder::LiesIn(const OutputFolder&) const {
  return false;
}

std::optional<OutputFolder::Entry> OutputFolder::Find(const std::string& name) const {
  const std::wstring native = Joined(state_->native, Wide(name));
  const auto state = StateOf(native, Links::kKeep);
  const Handle held = state ? OpenForHolding(native, Links::kKeep) : Handle();
  if (!held) return std::nullopt;
  return Entry{IdentityOf(held.Get()), state->IsFolder() && !state->is_link};
}

FileIdentity OutputFolder::Write(const std::string& name,
                                 std::span<const std::uint8_t> bytes) const {
  const std::wstring target = Joined(state_->native, Wide(name));
  const auto old = StateOf(target, Links::kKeep);
  try {
    if (old) RequireReplaceable({}, *old);
    const std::wstring native = Joined(state_->native, Wide(WorkName()));
    FileInWork work(native);
    work.Write(bytes);
    const FileIdentity identity = work.Identity();
    work.Close();
    GiveName(native, target, old.has_value());
    return identity;
  } catch (const ProgramError& error) {
    throw SystemError(error.Description());
  }
}

// A drive and all behind it, or the first two names of a network's path.
std::optional<RootedName> TakeRoot(const std::string& name) {
  const auto parts = TakeApart(name);
  if (!parts || !DrivePaths().ToNative(name)) return std::nullopt;
  const std::string native = ShownPathOf(*DrivePaths().ToNative(name));
  std::size_t end = 2;
  if (parts->begins_twice) end = native.find('\\', native.find('\\', 2) + 1);
  RootedName rooted{native.substr(0, end) + "\\", {}};
  if (end < native.size()) rooted.rest = native.substr(end);
  return rooted;
}

const char* WrongWithName(const std::string& name) {
  return CanBeNamed(Wide(name)) ? nullptr : "no file can be called so here";
}

std::size_t LongestPath() {
  return 32000;
}

}  // namespace tarnvale
