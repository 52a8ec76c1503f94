#include "tvcheck/packed_copies.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "codec/enumeration.h"
#include "native/command_failure.h"
#include "tvz/archive_contents.h"

namespace tarnvale {
namespace {

bool IsLink(const std::string& native) {
  const auto state = StateOfEntry({nullptr, native});
  return state && state->is_link;
}

// An archive has no times but its own, and one that was fetched back not even that: only
// the bytes say whether a file is in it as it is.
State Judge(const std::string& source, const ContainerRecord& record, std::int64_t packed_s,
            Contents& contents, std::string& reason) {
  NativeState state;
  try {
    state = StateBehindLinks(source);
  } catch (const SystemError& error) {
    reason = error.what();
    return State::kUnreadable;
  }
  if (static_cast<std::size_t>(state.size_bytes) == record.content.Size()) {
    const Equality equality = contents.Compare(source, record.content.View());
    reason = equality.failure;
    if (!reason.empty()) return State::kUnreadable;
    if (equality.equal) return State::kSame;
  }
  return state.modified_s > packed_s ? State::kOlder : State::kDifferent;
}

}  // namespace

PackedCopies::PackedCopies(std::string archive, Path location, const std::string& location_native)
    : archive_(std::move(archive)),
      location_(std::move(location)),
      name_offset_(location_native.size() + (location_native.ends_with(kSeparator) ? 0 : 1)) {}

void PackedCopies::Expect(std::string source, const std::string& copy, Rule rule) {
  std::string entry = copy.substr(std::min(copy.size(), name_offset_));
  std::replace(entry.begin(), entry.end(), kSeparator, '\\');
  expected_.push_back({std::move(source), std::move(entry), rule});
}

void PackedCopies::Compare(NativeHost& host, Contents& contents, Findings& findings,
                           CheckProgress& progress) {
  const ArchiveContents archive(archive_, progress.line);
  std::unordered_multimap<std::string_view, Expected*> by_entry;
  for (Expected& expected : expected_) by_entry.emplace(expected.entry, &expected);
  archive.ForEach([&](const ContainerRecord& record) {
    const auto [first, last] = by_entry.equal_range(record.name);
    for (auto at = first; at != last; ++at) {
      Expected& expected = *at->second;
      if (std::exchange(expected.found, true)) continue;
      progress.AddFile();
      Finding finding{State::kSame, expected.source, expected.entry};
      finding.state =
          Judge(expected.source, record, archive.ModifiedSeconds(), contents, finding.reason);
      const bool differs = finding.state == State::kOlder || finding.state == State::kDifferent;
      if (differs) finding.rule = expected.rule;
      if (differs && expected.rule == Rule::kNewerCopy) finding.state = State::kPassedOver;
      findings.Add(std::move(finding));
    }
  });
  for (const Expected& expected : expected_) {
    if (!expected.found) AddMissing(host, expected, findings);
  }
}

void PackedCopies::AddMissing(NativeHost& host, const Expected& expected, Findings& findings) {
  Rule rule = Rule::kNone;
  if (IsHidden(host, expected)) {
    rule = Rule::kPackedHidden;
  } else if (HoldsDrive(expected.entry)) {
    rule = Rule::kPackedName;
  } else if (IsLink(expected.source)) {
    rule = Rule::kPackedLink;
  } else if (host.files.FileExists(location_ + expected.entry) &&
             !WouldBePacked(host, expected.entry)) {
    rule = Rule::kNotPacked;
  }
  if (rule != Rule::kNone) {
    findings.Add({State::kPassedOver, expected.source, expected.entry, rule});
  } else {
    findings.Add({State::kMissing, expected.source, expected.entry, expected.rule});
  }
}

// With all folders that it lies in there. A copy that is gone was as its file is.
bool PackedCopies::IsHidden(NativeHost& host, const Expected& expected) const {
  constexpr int kUnseen = attribute::kHidden | attribute::kSystem;
  Path copy = location_ + expected.entry;
  Path source = PathOfNative(host, expected.source);
  for (; copy.size() > location_.size(); copy.resize(copy.rfind('\\'))) {
    int value = 0;
    PassedOver pass;
    if (!pass.Step([&] { value = host.files.Attributes(copy); })) {
      pass.Step([&] { value = host.files.Attributes(source); });
    }
    if ((value & kUnseen) != 0) return true;
    source.resize(source.rfind('\\'));
  }
  return false;
}

// By the packing's own walk.
bool PackedCopies::WouldBePacked(NativeHost& host, const std::string& entry) {
  if (!packable_) {
    packable_.emplace();
    const TextList files = EnumerateFiles(host.files, location_, true);
    for (std::size_t i = 0; i <= files.UpperBound(); ++i) packable_->insert(files[i]);
  }
  return packable_->contains(location_ + entry);
}

}  // namespace tarnvale
