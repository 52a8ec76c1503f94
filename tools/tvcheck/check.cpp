#include "tvcheck/check.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "base/failure.h"
#include "base/text.h"

namespace tarnvale {
namespace {

// The rounds of a run's file loop beyond the list.
constexpr std::int64_t kExtraRounds = 2;
constexpr int kMarkersOfFolder = 5;

Rule RuleOf(UnseenEntry::Reason reason) {
  switch (reason) {
    case UnseenEntry::Reason::kName:
      return Rule::kName;
    case UnseenEntry::Reason::kSpecial:
      return Rule::kSpecial;
    case UnseenEntry::Reason::kHidden:
      return Rule::kHidden;
  }
  return Rule::kNone;
}

}  // namespace

Check::Check(NativeHost& host, const Options& options, CheckProgress& progress)
    : host_(host),
      options_(options),
      progress_(progress),
      contents_([this](std::int64_t bytes) { progress_.AddBytes(bytes); }),
      location_(ComparedPath(NativePathOf(host, options.location))) {}

void Check::Follow(const RunState& run, std::size_t items) {
  run_ = &run;
  items_ = static_cast<std::int64_t>(items);
}

bool Check::IsLocation(const std::string& native) const {
  return ComparedPath(native) == location_;
}

bool Check::LiesInLocation(const std::string& native) const {
  return IsLocation(native) || location_ == "/" ||
         ComparedPath(native).starts_with(location_ + kSeparator);
}

void Check::Add(Finding finding) {
  progress_.AddFile();
  findings_.Add(std::move(finding));
}

void Check::AddUnreadable(const std::string& native, const std::string& reason) {
  Add({State::kUnreadable, native, {}, Rule::kNone, reason});
}

void Check::PassOver(const std::string& native, Rule rule) {
  Add({State::kPassedOver, native, {}, rule});
}

void Check::AddMissing(const std::string& source, const std::string& copy) {
  if (options_.archive != nullptr) {
    options_.archive->Expect(source, copy, Rule::kNone);
  } else {
    Add({State::kMissing, source, copy});
  }
}

// --- whole folders

void Check::OnCompared(const ComparedFile& file) {
  const bool to_first = file.direction == SyncDirection::kSecondToFirst;
  // The list knows nothing of what only the storage location has.
  if (file.status == difference::kOnlyInSecond && !file.copies) return;
  const NativeEntry first = PlannedFolder::EntryOf(file.first);
  const NativeEntry second = PlannedFolder::EntryOf(file.second);
  if (options_.archive != nullptr) {
    const Rule rule = to_first && !file.copies ? Rule::kNewerCopy : Rule::kNone;
    options_.archive->Expect((to_first && file.copies ? second : first).Path(), second.Path(),
                             rule);
  } else if (to_first && file.copies) {
    Add(Judge(file, second, first));
  } else {
    Add(Judge(file, first, second));
  }
}

Finding Check::Judge(const ComparedFile& file, const NativeEntry& source, const NativeEntry& copy) {
  Finding finding{State::kDifferent, source.Path(), copy.Path()};
  if (file.status < difference::kNone) {
    finding.state = State::kMissing;
    return finding;
  }
  const bool sizes_differ = (file.status & difference::kSizesDiffer) != 0;
  if (options_.contents && !sizes_differ) {
    const Equality equality = contents_.Compare(source, copy);
    if (equality.equal) finding.state = State::kSame;
    if (!equality.failure.empty()) finding.state = State::kUnreadable;
    finding.reason = equality.failure;
    if (finding.state != State::kDifferent) return finding;
  } else if (file.status == difference::kNone) {
    finding.state = State::kSame;
    return finding;
  }
  if (file.direction == SyncDirection::kSecondToFirst && !file.copies) {
    finding.state = State::kPassedOver;
    finding.rule = Rule::kNewerCopy;
    return finding;
  }
  const bool times_differ = (file.status & ~difference::kSizesDiffer) != 0;
  if (times_differ) finding.state = State::kOlder;
  const auto ours = StateOfEntry(source);
  const auto theirs = StateOfEntry(copy);
  if (ours && theirs && StaysAsReadOnly(*ours, *theirs)) finding.rule = Rule::kReadOnlyCopy;
  return finding;
}

void Check::OnTree(const TreeEnd& source, const TreeEnd& target, const LeftOutFolders& left_out) {
  PassedOver pass;
  std::unique_ptr<HeldFolder> from;
  if (!pass.Step([&] { from = source.open(); })) {
    // A file with five plus signs in its path: its row says so.
    if (host_.files.FileExists(PathOfNative(host_, source.native))) return;
    AddUnreadable(source.native, pass.StandingError()->Description());
    return;
  }
  if (options_.archive == nullptr) {
    pass.Step([&] { target.open()->Contents(); });
    const auto& failure = pass.StandingError();
    if (failure && failure->Number() != kPathNotFound) {
      AddUnreadable(target.native, failure->Description());
      return;
    }
  }
  AddTree(*from, source, target, left_out);
}

// Folders are found from the first one, so that not all on the way are held.
void Check::AddTree(HeldFolder& source, const TreeEnd& from, const TreeEnd& to,
                    const LeftOutFolders& left_out) {
  std::vector<std::string> folders{std::string()};
  while (!folders.empty()) {
    const std::string inner = std::move(folders.back());
    folders.pop_back();
    std::string below = kSeparator + inner;
    if (!inner.empty()) below += kSeparator;
    PassedOver pass;
    FolderContents contents;
    bool is_left_out = false;
    pass.Step([&] {
      std::string names = inner;
      std::replace(names.begin(), names.end(), kSeparator, '\\');
      const auto folder = source.Inner(names);
      const auto is_it = [&](const HeldFolder* other) { return folder->Is(*other); };
      is_left_out = !inner.empty() && std::any_of(left_out.begin(), left_out.end(), is_it);
      if (is_left_out) return;
      contents = folder->Contents();
    });
    if (pass.StandingError()) {
      AddUnreadable(from.native + below, pass.StandingError()->Description());
      continue;
    }
    if (is_left_out) continue;
    for (const FolderEntry& file : contents.files) {
      AddMissing(from.native + below + file.name, to.native + below + file.name);
    }
    for (auto name = contents.folders.rbegin(); name != contents.folders.rend(); ++name) {
      folders.push_back(inner.empty() ? *name : inner + kSeparator + *name);
    }
    if (options_.archive == nullptr && contents.files.empty() && contents.folders.empty()) {
      Add({State::kMissing, from.native + below, to.native + below});
    }
  }
}

void Check::OnRead(const NativeEntry& folder, const FolderContents& contents) {
  const std::string path = folder.Path() + kSeparator;
  if (LiesInLocation(folder.Path()) || !read_folders_.insert(path).second) return;
  PassOverNames(folder, false);
  for (const std::string& name : contents.folders) {
    if (IsLocation(path + name)) PassOver(path + name + kSeparator, Rule::kStorage);
  }
  if (options_.archive != nullptr && contents.files.empty() && contents.folders.empty()) {
    PassOver(path, Rule::kEmptyFolder);
  }
}

// What the program doesn't see in a folder.
void Check::PassOverNames(const NativeEntry& folder, bool files_only) {
  for (const UnseenEntry& entry : UnseenIn(folder, files_only)) {
    PassOver(entry.path, RuleOf(entry.reason));
  }
}

// --- single files

void Check::OnRow(const Path& file, const std::optional<ProgramError>& error) {
  // Of the pattern that a whole folder gives.
  if (file.find('*') != Path::npos || !seen_rows_.insert(file).second) return;
  if (!error) {
    rows_.push_back(file);
    return;
  }
  failed_rows_.insert(file);
  AddUnreadable(NativePathOf(host_, file), error->Description());
}

void Check::OnListed(const Path& folder, const std::optional<ProgramError>& error) {
  const std::string native = NativePathOf(host_, folder);
  if (error) {
    AddUnreadable(native, error->Description());
  } else if (read_folders_.insert(native).second) {
    PassOverNames({nullptr, native}, true);
  }
}

void Check::OnAsked(const Path& file, int attributes) {
  asked_[file] = attributes;
}

void Check::OnFile(const Path& source, const std::string& target, bool has_room) {
  if (failed_rows_.contains(source)) return;
  const bool unchanged = options_.incremental && asked_.contains(source) && asked_[source] == 0;
  copied_.insert(source);
  singles_.push_back(
      {NativePathOf(host_, source), target, unchanged ? Rule::kUnchanged : Rule::kNone, has_room});
}

void Check::OnEnd() {
  if (run_ != nullptr) PassOverLeftRows(*run_);
}

void Check::PassOverLeftRows(const RunState& run) {
  std::unordered_map<Path, std::int64_t> places;
  for (std::size_t row = 0; row <= run.Files.UpperBound(); ++row) {
    const auto place = static_cast<std::int64_t>(row);
    places.try_emplace(run.Files.Row(place).Path, place);
  }
  for (const Path& file : rows_) {
    if (copied_.contains(file)) continue;
    const auto place = places.find(file);
    const Rule rule = RuleOfLeftRow(file, place == places.end() ? -1 : place->second);
    const std::string native = NativePathOf(host_, file);
    // Another one of the list, in another case, is all that is there.
    if (rule == Rule::kNone) AddUnreadable(native, DescriptionOf(kFileNotFound));
    if (rule != Rule::kNone) PassOver(native, rule);
  }
}

// `row`: -1 for none.
Rule Check::RuleOfLeftRow(const Path& file, std::int64_t row) const {
  if (asked_.contains(file)) {
    return CountChar(file, "+") == kMarkersOfFolder ? Rule::kFivePluses : Rule::kBesideAFolder;
  }
  if (row < 0) return Rule::kRowTaken;
  return row > items_ + kExtraRounds ? Rule::kBeyondTheList : Rule::kNone;
}

Finding Check::Judge(const SingleFile& file) {
  Finding finding{State::kDifferent, file.source, file.target};
  try {
    const NativeState ours = StateBehindLinks(file.source);
    const auto theirs = file.has_room ? StateOfEntry({nullptr, file.target}) : std::nullopt;
    if (!theirs) {
      finding.state = State::kMissing;
      finding.rule = file.rule;
      return finding;
    }
    const bool alike = theirs->is_plain && ours.size_bytes == theirs->size_bytes;
    if (alike && options_.contents) {
      const Equality equality = contents_.Compare(file.source, file.target);
      if (!equality.failure.empty()) finding.state = State::kUnreadable;
      if (equality.equal) finding.state = State::kSame;
      finding.reason = equality.failure;
    } else if (alike && ours.modified_s == theirs->modified_s) {
      finding.state = State::kSame;
    }
    if (finding.state != State::kDifferent) return finding;
    if (theirs->modified_s < ours.modified_s) finding.state = State::kOlder;
    finding.rule = StaysAsReadOnly(ours, *theirs) ? Rule::kReadOnlyCopy : file.rule;
  } catch (const SystemError& error) {
    finding.state = State::kUnreadable;
    finding.reason = error.what();
  }
  return finding;
}

Findings Check::Finish() {
  std::unordered_map<std::string, std::string> last_for;
  for (const SingleFile& file : singles_) last_for[file.target] = file.source;
  std::unordered_set<std::string> done;
  for (const SingleFile& file : singles_) {
    if (last_for[file.target] != file.source) {
      PassOver(file.source, Rule::kNameTaken);
    } else if (!done.insert(file.target).second) {
      continue;  // twice in the list
    } else if (options_.archive != nullptr) {
      options_.archive->Expect(file.source, file.target, file.rule);
    } else {
      Add(Judge(file));
    }
  }
  return std::move(findings_);
}

}  // namespace tarnvale
