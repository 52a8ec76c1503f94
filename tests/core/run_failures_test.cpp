#include "core/run_failures.h"

#include <gtest/gtest.h>

#include "tests/support/fake_machine.h"

namespace tarnvale::testing {
namespace {

constexpr const char* kTarget = "C:\\Backup\\a.txt";

struct FailureCase {
  int number;
  const char* box;  // null: none is shown
};

const FailureCase kTable[] = {
    {5, nullptr},
    {52, nullptr},
    {53, nullptr},
    {57, "Backup Disk Is Not Ready!"},
    {61, "Backup Disk Is Full!"},
    {70, "Backup Directory or Backup Drive Are Protected!"},
    {71, "Backup Disk Is Not Ready!"},
    {76, "Backup Directory Is Unavailable!"},
    {6, "An Unexpected Error Has Occured!"},
    {9, "An Unexpected Error Has Occured!"},
    {13, "An Unexpected Error Has Occured!"},
    {68, "An Unexpected Error Has Occured!"},
    {static_cast<int>(0x80040000U), "An Unexpected Error Has Occured!"},
};

class RunFailuresTest : public ::testing::TestWithParam<FailureCase> {
 protected:
  AfterFailure DecideWith(BoxAnswer answer) {
    if (GetParam().box != nullptr) machine.boxes.Expect(GetParam().box, BoxIcon::kStop, answer);
    return failures.DecideByNumber(ProgramError(GetParam().number), kTarget, true);
  }

  FakeMachine machine;
  RunFailures failures{machine.files, machine.boxes};
};

TEST_P(RunFailuresTest, YesRetriesTheCopy) {
  const AfterFailure after = DecideWith(BoxAnswer::kYes);
  EXPECT_EQ(after,
            GetParam().box == nullptr ? AfterFailure::kNextStatement : AfterFailure::kRetryCopy);
  for (const BoxRequest& box : machine.boxes.Shown()) EXPECT_EQ(box.buttons, BoxButtons::kYesNo);
}

TEST_P(RunFailuresTest, NoGoesToTheEndOfTheLog) {
  const AfterFailure after = DecideWith(BoxAnswer::kNo);
  EXPECT_EQ(after,
            GetParam().box == nullptr ? AfterFailure::kNextStatement : AfterFailure::kEndOfLog);
}

TEST_P(RunFailuresTest, TheNumberIsNotedForTheLog) {
  DecideWith(BoxAnswer::kNo);
  EXPECT_EQ(failures.NotedNumber(), GetParam().number);
}

TEST_P(RunFailuresTest, TheTableIsNeverReachedByAFailingStatement) {
  EXPECT_EQ(failures.OnFailure(ProgramError(GetParam().number), kTarget, true),
            AfterFailure::kNextStatement);
  EXPECT_TRUE(machine.boxes.Shown().empty());
  EXPECT_FALSE(failures.NotedNumber().has_value());
}

INSTANTIATE_TEST_SUITE_P(Rows, RunFailuresTest, ::testing::ValuesIn(kTable), [](const auto& test) {
  return test.param.number < 0 ? std::string("Own") : std::to_string(test.param.number);
});

class RunFailuresPlainTest : public ::testing::Test {
 protected:
  FakeMachine machine;
  RunFailures failures{machine.files, machine.boxes};
};

TEST_F(RunFailuresPlainTest, APathErrorTakesTheReadOnlyBitOffTheTargetAndRetries) {
  machine.files.Write(kTarget, "old");
  machine.files.SetAttributes(kTarget, 33);
  EXPECT_EQ(failures.DecideByNumber(ProgramError(kPathFileAccess), kTarget, true),
            AfterFailure::kRetryCopy);
  EXPECT_EQ(machine.files.Attributes(kTarget), 32);
  EXPECT_TRUE(machine.boxes.Shown().empty());
}

TEST_F(RunFailuresPlainTest, APathErrorNeverReachesTheTargetInARun) {
  machine.files.Write(kTarget, "old");
  machine.files.SetAttributes(kTarget, 33);
  EXPECT_EQ(failures.OnFailure(ProgramError(kPathFileAccess), kTarget, true),
            AfterFailure::kNextStatement);
  EXPECT_EQ(machine.files.Attributes(kTarget), 33);
}

TEST_F(RunFailuresPlainTest, NothingIsNotedWithoutALog) {
  failures.DecideByNumber(ProgramError(kFileNotFound), kTarget, false);
  EXPECT_FALSE(failures.NotedNumber().has_value());
}

}  // namespace
}  // namespace tarnvale::testing
