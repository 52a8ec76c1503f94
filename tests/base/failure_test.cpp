#include "base/failure.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace tarnvale {
namespace {

TEST(ProgramErrorTest, AClassicErrorHasItsFixedDescription) {
  const ProgramError error(kPathFileAccess);
  EXPECT_EQ(error.Number(), 75);
  EXPECT_EQ(error.Description(), "Path/File access error");
  EXPECT_EQ(error.Source(), "Tarnvale");
  EXPECT_STREQ(error.what(), "Path/File access error");
}

TEST(ProgramErrorTest, TheProgramsOwnErrorsHaveTheirOwnTexts) {
  const ProgramError error(kProgramDefinedError, "clsHuffman", "Broken");
  EXPECT_EQ(static_cast<unsigned>(error.Number()), 0x80040000U);
  EXPECT_EQ(error.Source(), "clsHuffman");
  EXPECT_EQ(error.Description(), "Broken");
}

TEST(ProgramErrorTest, DescriptionsOfTheNumbersThatThePartsTestFor) {
  EXPECT_EQ(DescriptionOf(5), "Invalid procedure call or argument");
  EXPECT_EQ(DescriptionOf(6), "Overflow");
  EXPECT_EQ(DescriptionOf(7), "Out of memory");
  EXPECT_EQ(DescriptionOf(9), "Subscript out of range");
  EXPECT_EQ(DescriptionOf(13), "Type mismatch");
  EXPECT_EQ(DescriptionOf(53), "File not found");
  EXPECT_EQ(DescriptionOf(61), "Disk full");
  EXPECT_EQ(DescriptionOf(68), "Device unavailable");
  EXPECT_EQ(DescriptionOf(76), "Path not found");
  EXPECT_EQ(DescriptionOf(4711), "Application-defined or object-defined error");
}

TEST(PassedOverTest, AFailedStepIsPassedOverAndTheNextOneRuns) {
  PassedOver pass;
  int done = 0;
  EXPECT_TRUE(pass.Step([&] { ++done; }));
  EXPECT_FALSE(pass.Step([&] { throw ProgramError(kDiskFull); }));
  EXPECT_TRUE(pass.Step([&] { ++done; }));
  EXPECT_EQ(done, 2);
}

TEST(PassedOverTest, AStepThatFailsKeepsWhatItDidBefore) {
  PassedOver pass;
  int value = 1;
  pass.Step([&] {
    value = 2;
    throw ProgramError(kDiskFull);
  });
  EXPECT_EQ(value, 2);
}

TEST(PassedOverTest, ATestThatFailsCountsAsTrue) {
  PassedOver pass;
  EXPECT_TRUE(pass.Test([]() -> bool { throw ProgramError(kTypeMismatch); }));
  EXPECT_TRUE(pass.Test([] { return true; }));
  EXPECT_FALSE(pass.Test([] { return false; }));
}

TEST(PassedOverTest, TheLastErrorStandsUntilItIsCleared) {
  PassedOver pass;
  EXPECT_FALSE(pass.StandingError().has_value());
  pass.Step([] { throw ProgramError(kDiskFull); });
  pass.Test([]() -> bool { throw ProgramError(kOverflow); });
  pass.Step([] {});
  ASSERT_TRUE(pass.StandingError().has_value());
  EXPECT_EQ(pass.StandingError()->Number(), 6);
  pass.Clear();
  EXPECT_FALSE(pass.StandingError().has_value());
}

TEST(PassedOverTest, ABugGoesThrough) {
  PassedOver pass;
  EXPECT_THROW(pass.Step([] { throw std::logic_error("bug"); }), std::logic_error);
  EXPECT_THROW(pass.Test([]() -> bool { throw std::logic_error("bug"); }), std::logic_error);
}

}  // namespace
}  // namespace tarnvale
