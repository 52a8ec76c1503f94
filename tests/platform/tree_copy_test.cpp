#include "platform/tree_copy.h"

#include <gtest/gtest.h>

#include "tests/support/fake_machine.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

TEST(ContentsCopyTest, OfSeveralFailuresTheFirstIsRaised) {
  FakeMachine machine;
  for (const char* name : {"a", "b", "c"}) {
    machine.files.Write(std::string("C:\\From\\") + name, name);
  }
  machine.files.MakeFolder("C:\\To");
  machine.files.FailOn("CopyEntry", "C:\\From\\a", kDiskFull);
  machine.files.FailOn("CopyEntry", "C:\\From\\b", kPermissionDenied);
  const auto from = machine.files.OpenFolder("C:\\From");
  const auto to = machine.files.OpenFolder("C:\\To");
  const std::function<void()> nothing;
  EXPECT_EQ(RaisedBy([&] {
              CopyContents(machine.files, *from, *to, Rights::kSource, {}, nothing,
                           [](HeldFolder&, HeldFolder&) {});
            }),
            kDiskFull);
  EXPECT_EQ(machine.files.Content("C:\\To\\c"), "c");
}

}  // namespace
}  // namespace tarnvale::testing
