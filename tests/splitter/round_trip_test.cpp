// Whatever the sizes, joined parts are the source again.
#include "tests/splitter/splitter_fixture.h"

namespace tarnvale::testing {
namespace {

struct Trip {
  std::size_t size = 0;
  std::int32_t segment = 0;
};

// Around the steps of the copy, and sums of them.
constexpr std::size_t kSizes[] = {0,     1,     4,     5,    24,    25,    99,    100,
                                  499,   500,   1499,  1500, 2999,  3000,  5999,  6000,
                                  11999, 12000, 12001, 631,  23131, 23999, 24000, 36025};
constexpr std::int32_t kSegments[] = {1,    2,    5,    7,    25,    99,    100,   500,
                                      1501, 2999, 6000, 6001, 12000, 12001, 24000, 0x7FFFFFFF};

class RoundTripTest : public SplitJoinTest {
 protected:
  // How many parts the routine has to make; 0: it refuses.
  static std::size_t PartsOf(const Trip& trip) {
    const auto segment = static_cast<std::size_t>(trip.segment);
    if (trip.size >= 1000 * segment) return 0;
    return trip.size == 0 ? 1 : (trip.size - 1) / segment + 1;
  }

  void Check(const Trip& trip) {
    SCOPED_TRACE(std::to_string(trip.size) + " bytes by " + std::to_string(trip.segment));
    machine.files.Remove("C:\\out");
    machine.files.MakeFolder("C:\\out");
    const std::string bytes = GeneratedBytes(trip.size);
    const std::size_t parts = PartsOf(trip);
    if (parts == 0) {
      EXPECT_EQ(SplitBytes(bytes, trip.segment), PartsCode::kRefused);
      return;
    }
    ASSERT_EQ(SplitBytes(bytes, trip.segment), PartsCode::kDone);
    EXPECT_EQ(count, static_cast<std::int16_t>(parts));
    ASSERT_EQ(OutNames().size(), parts);
    std::string together;
    for (std::size_t number = 1; number <= parts; ++number) {
      const std::string part =
          Content(PartName("C:\\out\\backup.tvz", static_cast<std::int16_t>(number)));
      together += part;
      if (number == parts) break;
      EXPECT_EQ(part.size(), static_cast<std::size_t>(trip.segment)) << "part " << number;
    }
    EXPECT_TRUE(together == bytes) << "the parts one after the other";
    ASSERT_EQ(Join("C:\\out\\backup.tvz.001"), PartsCode::kDone);
    EXPECT_EQ(count, static_cast<std::int16_t>(parts));
    EXPECT_TRUE(Content("C:\\out\\backup.tvz") == bytes) << "the joined file";
  }
};

TEST_F(RoundTripTest, SplitAndJoinAreInversesAtEveryStepBoundary) {
  for (const std::size_t size : kSizes) {
    for (const std::int32_t segment : kSegments) {
      // More parts than that are the next test's.
      if (size < 200 * static_cast<std::size_t>(segment)) Check({size, segment});
    }
  }
}

TEST_F(RoundTripTest, SplitAndJoinAreInversesUpToAThousandParts) {
  for (const Trip trip : {Trip{999, 1}, Trip{1000, 1}, Trip{1999, 2}, Trip{2000, 2}}) Check(trip);
}

}  // namespace
}  // namespace tarnvale::testing
