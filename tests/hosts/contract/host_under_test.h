// A host for the contract tests: its interfaces, and what a test needs to set
// the stage without going through them.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "platform/system_parts.h"

namespace tarnvale::testing {

/// Its drive C: holds nothing but a folder C:\Data.
class HostUnderTest {
 public:
  virtual ~HostUnderTest() = default;

  virtual SystemParts Parts() = 0;
  FileSystem& Files() { return Parts().files; }
  OpenFiles& Open() { return Parts().open_files; }
  ProfileFiles& Profiles() { return Parts().profiles; }
  Processes& Programs() { return Parts().processes; }
  Clock& Clocks() { return Parts().clock; }
  RandomSource& Random() { return Parts().random; }
  LocaleFormats& Formats() { return Parts().formats; }
  Registry& Values() { return Parts().registry; }

  /// Writes as another program would; the folder must be there.
  virtual void Write(const Path& file, const std::string& content) = 0;
  virtual std::string Content(const Path& file) = 0;
  /// With those above it.
  virtual void MakeFolder(const Path& folder) = 0;
  /// As another program would, read-only or not; a folder with all that is in it.
  virtual void Remove(const Path& path) = 0;
  /// Lets reads of a file fail that may still be replaced, as long as this host
  /// lives. False where the system won't have that.
  virtual bool MakeUnreadable(const Path& file) = 0;
  /// Ends that.
  virtual void MakeReadable(const Path& file) = 0;
  /// Whether the archive attribute can be taken from a file. Not every stand-in for a
  /// system does that.
  virtual bool ClearsArchive() { return true; }
  virtual void SetModified(const Path& file, std::int64_t seconds) = 0;
  virtual std::int64_t Modified(const Path& file) = 0;
  /// Names that are hidden begin with a point, so that every host can hide them.
  virtual void HideFile(const Path& file) = 0;
  virtual void HideFolder(const Path& folder) = 0;
  /// All that a folder holds, by name.
  virtual std::vector<std::string> Names(const Path& folder) = 0;
  virtual void SetVariable(const std::string& name, const std::string& value) = 0;
};

inline constexpr char kNoArchive[] = "this system always reports the archive attribute as set";

struct HostKind {
  const char* name;
  std::unique_ptr<HostUnderTest> (*make)();
};

std::unique_ptr<HostUnderTest> MakeFakeHost();
std::unique_ptr<HostUnderTest> MakeLinuxHost();
std::unique_ptr<HostUnderTest> MakeWindowsHost();

std::vector<HostKind> AllHosts();
inline void PrintTo(const HostKind& kind, std::ostream* out) {
  *out << kind.name;
}
std::string NameOfHost(const ::testing::TestParamInfo<HostKind>& info);

class HostTest : public ::testing::TestWithParam<HostKind> {
 protected:
  std::unique_ptr<HostUnderTest> host_ = GetParam().make();
  FileSystem& files = host_->Files();
  OpenFiles& open = host_->Open();
  ProfileFiles& profiles = host_->Profiles();
  Processes& programs = host_->Programs();
  HostUnderTest& host = *host_;
};

}  // namespace tarnvale::testing
