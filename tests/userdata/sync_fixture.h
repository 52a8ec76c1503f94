// Two folders to compare and to keep in step.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "core/file_sync.h"
#include "tests/support/fake_machine.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {

class SyncFixture : public ::testing::Test {
 protected:
  SyncFixture() {
    machine.files.MakeFolder("C:\\1");
    machine.files.MakeFolder("C:\\2");
  }

  static constexpr std::int64_t kNoon = 1205496000;

  void Put(const Path& file, const std::string& content, std::int64_t modified_s = kNoon) {
    machine.files.Write(file, content);
    machine.files.SetModified(file, modified_s);
  }

  FakeMachine machine;
  FileSync sync{machine.files, machine.loop};
};

}  // namespace tarnvale::testing
