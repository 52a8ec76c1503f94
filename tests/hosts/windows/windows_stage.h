// A Windows host of a test's own: its drive C: is an empty folder.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

#include "hosts/windows/wide.h"
#include "hosts/windows/windows_host.h"
#include "tests/hosts/windows/temporary_folder.h"

namespace tarnvale::testing {

class WindowsHostTest : public ::testing::Test {
 protected:
  WindowsHostTest() {
    std::filesystem::create_directory(folder_ / "drive");
    surroundings.root = L"\\\\?\\" + (folder_ / "drive").wstring();
    surroundings.state_folder = (folder_ / "state").wstring();
    surroundings.program_file = (folder_ / "program").wstring();
    surroundings.code_page = 1252;
    surroundings.locale = MAKELCID(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), SORT_DEFAULT);
  }

  WindowsHost& Host() {
    if (!host_) host_.emplace(surroundings);
    return *host_;
  }
  /// The program ends and starts again.
  void Restart() { host_.reset(); }

  std::filesystem::path Native(const std::string& name) const {
    return folder_ / "drive" / Wide(name);
  }
  void Write(const std::string& name, const std::string& content) const {
    WriteNative(Native(name), content);
  }
  std::string Content(const std::string& name) const { return ReadNative(Native(name)); }

  WindowsSurroundings surroundings;

 private:
  TemporaryFolder folder_;
  std::optional<WindowsHost> host_;
};

}  // namespace tarnvale::testing
