#include "core/engine_gate.h"

#include <gtest/gtest.h>

#include "tests/core/engine_fixture.h"

namespace tarnvale::testing {
namespace {

struct StatusCase {
  const char* status;
  const char* at_half;  // EngineFree when compression stands at 50
};

class EngineFreeTest : public ::testing::TestWithParam<StatusCase> {};

TEST_P(EngineFreeTest, FollowsTheStatusWhileCompressionIsUnderWay) {
  EXPECT_EQ(EngineFreeAfterTick(50, GetParam().status), GetParam().at_half);
}

TEST_P(EngineFreeTest, IsFreeWithTheBarAtZeroOrFullWhateverTheStatus) {
  for (const int progress : {0, 100}) {
    EXPECT_EQ(EngineFreeAfterTick(progress, GetParam().status), "1") << progress;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Statuses, EngineFreeTest,
    ::testing::Values(
        StatusCase{"Transferring File...", "0"}, StatusCase{"Finding Host IP Address", "0"},
        StatusCase{"File Transfer Complete", "0"}, StatusCase{"IP Address Found", "0"},
        StatusCase{"Connecting To Host", "0"}, StatusCase{"Connected To Sever", "0"},
        StatusCase{"Sending Request", "0"}, StatusCase{"Request Sent", "0"},
        StatusCase{"Receiving Response", "0"}, StatusCase{"Response Received", "0"},
        StatusCase{"Disconnecting From Server", "0"}, StatusCase{"File Transfer Canceled", "1"},
        StatusCase{"Not Connected To Server", "1"}, StatusCase{"File Transfer Failed!", "1"},
        StatusCase{"FTP Upload Idle", "1"}, StatusCase{"Action Completed", "1"},
        // No row of the table: compression alone decides.
        StatusCase{"", "0"}, StatusCase{"Action completed", "0"},
        StatusCase{"Action Completed ", "0"}, StatusCase{"File Transfer Failed", "0"},
        StatusCase{"Connected To Server", "0"}));

TEST(EngineFreeBarTest, IsTakenBackJustBesideTheEndsOfTheBar) {
  EXPECT_EQ(EngineFreeAfterTick(1, ""), "0");
  EXPECT_EQ(EngineFreeAfterTick(99, ""), "0");
}

class EngineFreeTickTest : public EngineFixture {};

TEST_F(EngineFreeTickTest, IsZeroUntilTheFirstTick) {
  EXPECT_EQ(engine.run.EngineFree.Get(), "0");
  machine.Advance(99ms);
  EXPECT_EQ(engine.run.EngineFree.Get(), "0");
  machine.Advance(1ms);
  EXPECT_EQ(engine.run.EngineFree.Get(), "1");
}

TEST_F(EngineFreeTickTest, EachTickReadsTheBarAndTheStatusAnew) {
  int progress = 50;
  std::string status = "Sending Request";
  engine.stages.CompressionProgress = [&] { return progress; };
  engine.stages.ConnectionStatus = [&] { return status; };
  machine.Advance(100ms);
  EXPECT_EQ(engine.run.EngineFree.Get(), "0");
  status = "Action Completed";
  machine.Advance(100ms);
  EXPECT_EQ(engine.run.EngineFree.Get(), "1");
  status = "Sending Request";
  machine.Advance(100ms);
  EXPECT_EQ(engine.run.EngineFree.Get(), "0");
  progress = 100;
  machine.Advance(100ms);
  EXPECT_EQ(engine.run.EngineFree.Get(), "1");
}

TEST_F(EngineFreeTickTest, AnUploadThatFailedLeavesTheEngineFree) {
  engine.stages.CompressionProgress = [] { return 100; };
  for (const char* status :
       {"File Transfer Failed!", "File Transfer Canceled", "Transferring File..."}) {
    engine.stages.ConnectionStatus = [status] { return std::string(status); };
    machine.Advance(100ms);
    EXPECT_EQ(engine.run.EngineFree.Get(), "1") << status;
  }
}

TEST_F(EngineFreeTickTest, AReadingThatFailsCountsAsAFreeingOne) {
  engine.stages.CompressionProgress = [] { return 50; };
  engine.stages.ConnectionStatus = []() -> std::string { throw ProgramError(kInvalidCall); };
  machine.Advance(100ms);
  EXPECT_EQ(engine.run.EngineFree.Get(), "1");
}

}  // namespace
}  // namespace tarnvale::testing
