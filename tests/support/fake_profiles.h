// Private profiles on files in memory.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "platform/profile_table.h"
#include "tests/support/fake_files.h"
#include "tests/support/scripted_failures.h"

namespace tarnvale::testing {

/// A scripted failure of "Write" or "Flush" makes it return false, whatever its number. One
/// of "Read" stands for a file that is there and can't be read, in the two others as well.
class FakeProfiles : public ProfileTable, public ScriptedFailures {
 public:
  explicit FakeProfiles(FakeFiles& files) : files_(files) {}

  std::string Read(const std::string& section, const std::string& key, const std::string& fallback,
                   std::size_t buffer_size, const Path& file) override;
  bool Write(const std::string& section, const std::string& key, const std::string& value,
             const Path& file) override;
  bool Flush(const Path& file) override;

 private:
  class File;
  std::unique_ptr<NativeProfile> MakeNative(const Path& file) override;

  FakeFiles& files_;
  bool can_be_read_ = true;
  bool can_be_replaced_ = true;
};

}  // namespace tarnvale::testing
