// Clocks and random numbers: what every host must do.
#include <cmath>

#include "tests/hosts/contract/host_under_test.h"

namespace tarnvale::testing {
namespace {

class ClockContract : public HostTest {
 protected:
  Clock& clock = host.Clocks();
};
INSTANTIATE_TEST_SUITE_P(Hosts, ClockContract, ::testing::ValuesIn(AllHosts()), NameOfHost);

TEST_P(ClockContract, NowIsInWholeSeconds) {
  const DateTime now = clock.Now();
  EXPECT_EQ(now, MakeDateTime(DateOf(now), TimeOf(now)));
  EXPECT_GE(DateOf(now).year, 2008);
}

TEST_P(ClockContract, SecondsSinceMidnightAreTheTimeOfNow) {
  const double before = clock.SecondsSinceMidnight();
  const TimeOfDay now = TimeOf(clock.Now());
  const double after = clock.SecondsSinceMidnight();
  const double seconds = now.hour * 3600 + now.minute * 60 + now.second;
  EXPECT_GE(before, 0);
  EXPECT_LT(before, 86400);
  // Across midnight the seconds begin anew.
  if (after >= before) {
    EXPECT_GE(seconds, std::floor(before));
    EXPECT_LE(seconds, after);
  }
}

TEST_P(ClockContract, UptimeNeverGoesBack) {
  const auto first = clock.Uptime();
  const auto second = clock.Uptime();
  EXPECT_GT(first.count(), 0);
  EXPECT_GE(second, first);
}

TEST_P(ClockContract, RandomNumbersLieBetween0And1) {
  for (int i = 0; i < 10000; ++i) {
    const double number = host.Random().Next();
    ASSERT_GE(number, 0.0);
    ASSERT_LT(number, 1.0);
  }
}

}  // namespace
}  // namespace tarnvale::testing
