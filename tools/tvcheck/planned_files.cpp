#include "tvcheck/planned_files.h"

#include <utility>

#include "base/text.h"

namespace tarnvale {
namespace {

class NothingToFlush final : public MediumFlush {
 public:
  bool IsDone() override { return true; }
};

// What `query` raises, if anything.
template <class Query>
std::optional<ProgramError> FailureOf(Query&& query) {
  PassedOver pass;
  pass.Step(std::forward<Query>(query));
  return pass.StandingError();
}

}  // namespace

FolderContents PlannedFolder::Contents() {
  FolderContents contents = folder_->Contents();
  watch_.OnRead({&Native(), {}}, contents);
  return contents;
}

std::unique_ptr<HeldFolder> PlannedFolder::Inner(const std::string& names) {
  return std::make_unique<PlannedFolder>(folder_->Inner(names), watch_);
}

// One that is there makes this fail, as it does in a run.
void PlannedFolder::MakeFolder(const std::string& name) {
  const auto failure = FailureOf([&] { folder_->Inner(name); });
  if (!failure || failure->Number() != kPathNotFound) throw ProgramError(kPathFileAccess);
}

NativeEntry PlannedFolder::EntryOf(const HeldEntry& entry) {
  return {&static_cast<const PlannedFolder&>(entry.folder).Native(), entry.name};
}

std::int64_t PlannedFiles::Length(const Path& file) {
  std::int64_t length = 0;
  const auto failure = FailureOf([&] { length = host_.files.Length(file); });
  watch_.OnRow(file, failure);
  if (failure) throw ProgramError(*failure);
  return length;
}

int PlannedFiles::Attributes(const Path& path) {
  const int value = host_.files.Attributes(path);
  watch_.OnAsked(path, value);
  return value == 0 ? attribute::kArchive : value;
}

std::vector<std::string> PlannedFiles::List(const Path& pattern, ListKinds kinds) {
  std::vector<std::string> names;
  auto failure = FailureOf([&] { names = host_.files.List(pattern, kinds); });
  const Path folder = FolderOf(pattern);
  if (!failure && !host_.files.FolderExists(folder)) failure = ProgramError(kPathNotFound);
  // A whole folder's pattern is another one, which hardly ever finds anything.
  if (FileNameOf(pattern) == "*.*") watch_.OnListed(folder, failure);
  if (failure && failure->Number() != kPathNotFound) throw ProgramError(*failure);
  return names;
}

std::unique_ptr<HeldFolder> PlannedFiles::OpenFolder(const Path& folder) {
  return std::make_unique<PlannedFolder>(host_.files.OpenFolder(folder), watch_);
}

std::unique_ptr<MediumFlush> PlannedFiles::BeginFlush(const Path&) {
  watch_.OnEnd();
  return std::make_unique<NothingToFlush>();
}

void PlannedFiles::CopyWhole(const Path& source, const Path& target, Rights) {
  watch_.OnFile(source, NativePathOf(host_, target));
}

void PlannedFiles::CopyWhole(const Path& source, const HeldEntry& target, Rights) {
  const NativeEntry entry = PlannedFolder::EntryOf(target);
  watch_.OnFile(source, entry.Path(), HasRoom(entry));
}

void PlannedFiles::CopyTree(const Path& source, const Path& target, const std::function<void()>&,
                            Rights, const LeftOutFolders& left_out) {
  watch_.OnTree(EndOf(source), EndOf(target), left_out);
}

void PlannedFiles::CopyTree(const Path& source, const HeldEntry& target,
                            const std::function<void()>&, Rights, const LeftOutFolders& left_out) {
  watch_.OnTree(EndOf(source), EndOf(target), left_out);
}

void PlannedFiles::CopyTree(const HeldEntry& source, const HeldEntry& target,
                            const std::function<void()>&, Rights, const LeftOutFolders& left_out) {
  watch_.OnTree(EndOf(source), EndOf(target), left_out);
}

TreeEnd PlannedFiles::EndOf(const Path& folder) {
  return {NativePathOf(host_, folder), [this, folder] { return OpenFolder(folder); }};
}

TreeEnd PlannedFiles::EndOf(const HeldEntry& entry) {
  return {PlannedFolder::EntryOf(entry).Path(), [entry] { return entry.folder.Inner(entry.name); }};
}

}  // namespace tarnvale
