// Private profiles on files in memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/profile_files.h"
#include "platform/profile_text.h"
#include "tests/support/fake_files.h"
#include "tests/support/scripted_failures.h"

namespace tarnvale::testing {

/// Holds every write back until Flush. A scripted failure of "Write" or "Flush"
/// makes it return false, whatever its number. One of "Read" stands for a file
/// that is there and can't be read: a read then gives the fallback, and the two
/// others fail as well, and a write goes on failing until each key has been read that couldn't be.
class FakeProfiles : public ProfileFiles, public ScriptedFailures {
 public:
  explicit FakeProfiles(FakeFiles& files) : files_(files) {}

  std::string Read(const std::string& section, const std::string& key, const std::string& fallback,
                   std::size_t buffer_size, const Path& file) override;
  bool Write(const std::string& section, const std::string& key, const std::string& value,
             const Path& file) override;
  bool Flush(const Path& file) override;

 private:
  struct Edit {
    std::string section;
    std::string key;
    std::string value;
  };
  struct Profile {
    ProfileText text;  // what the file holds, with the edits
    std::uint64_t revision = 0;
    bool exists = false;
    std::vector<Edit> edits;
  };

  Profile& Current(const Path& file);
  bool CanWrite(const Path& file);

  FakeFiles& files_;
  std::map<std::string, Profile> profiles_;  // by folded path
  std::map<Path, std::set<std::pair<std::string, std::string>>> unread_;
};

}  // namespace tarnvale::testing
