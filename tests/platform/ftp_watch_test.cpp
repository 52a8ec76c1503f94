#include "platform/ftp_watch.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;

class FtpWatchTest : public ::testing::Test {
 protected:
  FtpWatch watch{{.listing = 60s, .span = 120s, .span_bytes = 1000}};
};

TEST_F(FtpWatchTest, AListingThatGoesOnIsGivenUpAfterItsTime) {
  watch.Begin(FtpVerb::kList, 0, 0s);
  watch.BeginData(5s);
  EXPECT_TRUE(watch.IsAlive(10, 64s));
  EXPECT_FALSE(watch.IsAlive(20, 65s));
}

TEST_F(FtpWatchTest, ATransferGoesOnForAsLongAsItMovesEnoughInEachSpan) {
  watch.Begin(FtpVerb::kUpload, 0, 0s);
  watch.BeginData(5s);
  EXPECT_TRUE(watch.IsAlive(0, 124s)) << "the first span isn't over";
  EXPECT_TRUE(watch.IsAlive(1000, 125s));
  EXPECT_FALSE(watch.IsAlive(1999, 245s));
}

TEST_F(FtpWatchTest, BehindTheDataOnlySilenceCounts) {
  watch.Begin(FtpVerb::kUpload, 300, 0s);
  watch.BeginData(0s);
  watch.EndData(1s);
  EXPECT_FALSE(watch.IsInData());
  EXPECT_TRUE(watch.IsAlive(0, 300s)) << "nothing moves, as the server stores";
  EXPECT_FALSE(watch.IsAlive(0, 301s));
}

TEST_F(FtpWatchTest, TheDataBeginOnce) {
  watch.Begin(FtpVerb::kList, 0, 0s);
  watch.BeginData(0s);
  watch.BeginData(30s);
  EXPECT_FALSE(watch.IsAlive(0, 60s));
}

TEST_F(FtpWatchTest, BehindWhatTheSystemHoldsTheSilenceMayLastASpan) {
  watch.Begin(FtpVerb::kUpload, 30, 0s);
  watch.BeginData(0s);
  watch.AllowForUnsent(10s);
  EXPECT_FALSE(watch.IsInData());
  EXPECT_TRUE(watch.IsAlive(0, 129s));
  EXPECT_FALSE(watch.IsAlive(0, 130s));
}

TEST_F(FtpWatchTest, ALongerSilenceAndNoLimitStayWhatTheyAre) {
  watch.Begin(FtpVerb::kUpload, 300, 0s);
  watch.AllowForUnsent(0s);
  EXPECT_TRUE(watch.IsAlive(0, 299s));
  EXPECT_FALSE(watch.IsAlive(0, 300s));
  watch.Begin(FtpVerb::kUpload, 0, 0s);
  watch.AllowForUnsent(0s);
  EXPECT_TRUE(watch.IsAlive(0, 10000s));
}

}  // namespace
}  // namespace tarnvale
