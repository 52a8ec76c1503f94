#include <array>

#include "base/failure.h"
#include "hosts/windows/file_state.h"
#include "hosts/windows/ownership.h"
#include "hosts/windows/paths.h"
#include "hosts/windows/replacing_copy.h"
#include "hosts/windows/wide.h"
#include "native/native_archive.h"
#include "native/native_file.h"
#include "native/native_paths_windows.h"
#include "native/work_name.h"

namespace tarnvale {

std::string RealFolder(const std::string& folder, const std::string& given) {
  return About(given, [&] {
    const std::wstring native = SystemPathOf(folder);
    if (!RequireState(native).IsFolder()) throw SystemError("is no folder");
    std::string real = ShownPathOf(native);
    // A drive's root, not the folder that one is in there.
    if (real.ends_with(':')) real += kSeparator;
    return real;
  });
}

// By the folders themselves: the older systems don't say where a path really leads.
bool LiesIn(const std::string& folder, const std::string& outer) {
  const Handle around = OpenForHolding(SystemPathOf(outer), Links::kFollow);
  const auto wanted = around ? NumberOf(around.Get()) : std::nullopt;
  std::wstring at = SystemPathOf(folder);
  while (wanted) {
    const Handle held = OpenForHolding(at, Links::kFollow);
    if (held && NumberOf(held.Get()) == wanted) return true;
    if (NativeNameOf(at).empty()) return false;
    const std::wstring above = NativeFolderOf(at);
    if (above.size() >= at.size()) return false;
    at = above;
  }
  return false;
}

ArchivePlace PlaceOfArchive(const std::string& archive) {
  return About(archive, [&] {
    const std::wstring native = SystemPathOf(archive);
    const std::wstring_view name = NativeNameOf(native);
    if (name.empty()) throw SystemError("names no file");
    if (!CanBeNamed(name)) throw SystemError(DescriptionOf(kPathFileAccess));
    const auto state = StateOf(native, Links::kFollow);
    if (state && state->IsFolder()) throw SystemError("is a folder");
    if (state && state->IsReadOnly()) throw SystemError(DescriptionOf(kPathFileAccess));
    return ArchivePlace{RealFolder(ShownPathOf(NativeFolderOf(native)), archive), Narrow(name)};
  });
}

struct NewArchive::State {
  explicit State(const ArchivePlace& place)
      : folder(SystemPathOf(place.folder)),
        work(Joined(folder, Wide(WorkName()))),
        target(Joined(folder, Wide(place.name))) {}

  std::wstring folder;
  std::wstring work;
  std::wstring target;
  std::wstring made = Joined(work, L"archive");
};

NewArchive::NewArchive(const ArchivePlace& place) : state_(std::make_unique<State>(place)) {
  if (::CreateDirectoryW(state_->work.c_str(), OwnersAlone(state_->folder)) == 0)
    throw SystemError();
}

NewArchive::~NewArchive() {
  ::DeleteFileW(state_->made.c_str());
  ::DeleteFileW((state_->made + L".tmp").c_str());
  ::RemoveDirectoryW(state_->work.c_str());
}

std::string NewArchive::InWork() const {
  return ShownPathOf(state_->made);
}

// It was flushed when it was closed.
void NewArchive::PutInPlace() {
  try {
    GiveName(state_->made, state_->target, StateOf(state_->target, Links::kKeep).has_value());
  } catch (const ProgramError& error) {
    throw SystemError(error.Description());
  }
}

}  // namespace tarnvale
