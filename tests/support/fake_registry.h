// A registry, and the places of applications' data, that tests fill.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "base/failure.h"
#include "base/text.h"
#include "platform/application_folders.h"
#include "platform/registry.h"

namespace tarnvale::testing {

class FakeRegistry : public Registry {
 public:
  std::map<std::string, std::string> values;  ///< by full path

  std::string Read(const std::string& path) override {
    for (const auto& [known, value] : values) {
      if (EqualIgnoringCase(known, path)) return value;
    }
    throw ProgramError(kFileNotFound);
  }
};

/// Everything at its classic place, but for what a test names.
class FakeApplicationFolders : public ApplicationFolders {
 public:
  std::map<Application, Path> folders;

  std::optional<Path> DataFolder(Application application) override {
    const auto known = folders.find(application);
    return known == folders.end() ? std::nullopt : std::optional(known->second);
  }
};

}  // namespace tarnvale::testing
