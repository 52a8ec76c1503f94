#include "tvcheck/packed_copies.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <unordered_map>
#include <utility>

#include "codec/enumeration.h"
#include "hosts/linux/own_links.h"
#include "native/command_failure.h"
#include "native/system_error.h"
#include "tvz/archive_contents.h"

namespace tarnvale {
namespace {

bool IsHidden(const std::string& entry) {
  return entry.starts_with('.') || entry.find("\\.") != std::string::npos;
}

bool IsLink(const std::string& native) {
  struct stat info {};
  return ::lstat(native.c_str(), &info) == 0 && S_ISLNK(info.st_mode);
}

// An archive has no times but its own, and one that was fetched back not even that: only
// the bytes say whether a file is in it as it is.
State Judge(const std::string& source, const ContainerRecord& record, time_t packed_s,
            Contents& contents, std::string& reason) {
  struct stat info {};
  if (!StateByOwnLinks(AT_FDCWD, source, info)) {
    reason = SystemError().what();
    return State::kUnreadable;
  }
  const bool is_later = info.st_mtim.tv_sec > packed_s;
  const bool same_size = static_cast<std::size_t>(info.st_size) == record.content.Size();
  if (same_size) {
    const Equality equality = contents.Compare(source, record.content.View());
    reason = equality.failure;
    if (!reason.empty()) return State::kUnreadable;
    if (equality.equal) return State::kSame;
  }
  return is_later ? State::kOlder : State::kDifferent;
}

}  // namespace

PackedCopies::PackedCopies(std::string archive, Path location, const std::string& location_native)
    : archive_(std::move(archive)),
      location_(std::move(location)),
      name_offset_(location_native.size() + (location_native.ends_with('/') ? 0 : 1)) {}

void PackedCopies::Expect(std::string source, const std::string& copy, Rule rule) {
  std::string entry = copy.substr(std::min(copy.size(), name_offset_));
  std::replace(entry.begin(), entry.end(), '/', '\\');
  expected_.push_back({std::move(source), std::move(entry), rule});
}

void PackedCopies::Compare(LinuxHost& host, Contents& contents, Findings& findings,
                           CheckProgress& progress) {
  struct stat info {};
  const ArchiveContents archive(archive_, progress.line);
  if (::stat(archive_.c_str(), &info) != 0) throw CommandFailure(archive_, SystemError().what());
  std::unordered_multimap<std::string_view, Expected*> by_entry;
  for (Expected& expected : expected_) by_entry.emplace(expected.entry, &expected);
  archive.ForEach([&](const ContainerRecord& record) {
    const auto [first, last] = by_entry.equal_range(record.name);
    for (auto at = first; at != last; ++at) {
      Expected& expected = *at->second;
      if (std::exchange(expected.found, true)) continue;
      progress.AddFile();
      Finding finding{State::kSame, expected.source, expected.entry};
      finding.state = Judge(expected.source, record, info.st_mtim.tv_sec, contents, finding.reason);
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

void PackedCopies::AddMissing(LinuxHost& host, const Expected& expected, Findings& findings) {
  Rule rule = Rule::kNone;
  if (IsHidden(expected.entry)) {
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

// By the packing's own walk.
bool PackedCopies::WouldBePacked(LinuxHost& host, const std::string& entry) {
  if (!packable_) {
    packable_.emplace();
    const TextList files = EnumerateFiles(host.files, location_, true);
    for (std::size_t i = 0; i <= files.UpperBound(); ++i) packable_->insert(files[i]);
  }
  return packable_->contains(location_ + entry);
}

}  // namespace tarnvale
