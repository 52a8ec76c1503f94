// The copies in an archive.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "tvcheck/check_progress.h"
#include "tvcheck/contents.h"
#include "tvcheck/findings.h"

namespace tarnvale {

/// Collects what an archive should hold, then goes through it once, decoded in memory.
class PackedCopies {
 public:
  /// `archive`: native. `location`: the folder that was packed, with a backslash at its
  /// end.
  PackedCopies(std::string archive, Path location, const std::string& location_native);

  /// A file whose copy in the storage location is `copy`, native both. `rule`: why the
  /// program may have left it as it was.
  void Expect(std::string source, const std::string& copy, Rule rule);

  /// Compares all that is expected with sizes, and its time with the archive's own; or
  /// with its bytes. Raises CommandFailure for a bad archive.
  void Compare(NativeHost& host, Contents& contents, Findings& findings, CheckProgress& progress);

 private:
  struct Expected {
    std::string source;
    std::string entry;  ///< its name in the archive
    Rule rule;
    bool found = false;
  };
  void AddMissing(NativeHost& host, const Expected& expected, Findings& findings);
  bool IsHidden(NativeHost& host, const Expected& expected) const;
  bool WouldBePacked(NativeHost& host, const std::string& entry);

  std::string archive_;
  Path location_;
  std::size_t name_offset_;
  std::vector<Expected> expected_;
  std::optional<std::unordered_set<std::string>> packable_;
};

}  // namespace tarnvale
