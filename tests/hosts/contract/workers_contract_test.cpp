#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>
#include <string>

#include "platform/workers.h"
#ifndef _WIN32
#include "hosts/linux/linux_workers.h"
#endif

namespace tarnvale::testing {
namespace {

struct WorkersKind {
  const char* name;
  std::unique_ptr<Workers> (*make)();
};

class WorkersContractTest : public ::testing::TestWithParam<WorkersKind> {
 protected:
  std::unique_ptr<Workers> workers = GetParam().make();
};

TEST_P(WorkersContractTest, EachPieceIsTakenOnceAndDoneAtTheReturn) {
  std::array<int, 5000> done{};
  std::atomic<std::size_t> next = 0;
  workers->Run(3, [&] {
    for (std::size_t i = next++; i < done.size(); i = next++) ++done[i];
  });
  for (const int times : done) ASSERT_EQ(times, 1);
}

TEST_P(WorkersContractTest, NoMoreCallsAreMadeThanHelpersAndTheCallersOwn) {
  std::atomic<int> calls = 0;
  workers->Run(2, [&] { ++calls; });
  EXPECT_GE(calls, 1);
  EXPECT_LE(calls, 3);
  EXPECT_LE(calls, 1 + static_cast<int>(workers->Helpers()));
  calls = 0;
  workers->Run(0, [&] { ++calls; });
  EXPECT_EQ(calls, 1);
}

TEST_P(WorkersContractTest, ACallCanWaitForWhatAnEarlierPieceMakes) {
  constexpr std::size_t kPieces = 200;
  std::atomic<std::size_t> next = 0;
  std::atomic<std::size_t> done = 0;
  workers->Run(3, [&] {
    for (std::size_t i = next++; i < kPieces; i = next++) {
      while (done != i) workers->LetOthersRun();
      ++done;
    }
  });
  EXPECT_EQ(done, kPieces);
}

TEST_P(WorkersContractTest, RunsCanBeNested) {
  std::atomic<int> inner = 0;
  std::atomic<int> outer = 0;
  workers->Run(3, [&] {
    ++outer;
    workers->Run(0, [&] { ++inner; });
  });
  EXPECT_EQ(inner, outer);
}

template <class W>
std::unique_ptr<Workers> Make() {
  return std::make_unique<W>();
}

#ifndef _WIN32
INSTANTIATE_TEST_SUITE_P(Linux, WorkersContractTest,
                         ::testing::Values(WorkersKind{"Linux", &Make<LinuxWorkers>}),
                         [](const auto& kind) { return std::string(kind.param.name); });
#endif
// The fake's, and the Windows host's.
INSTANTIATE_TEST_SUITE_P(None, WorkersContractTest,
                         ::testing::Values(WorkersKind{"None", &Make<NoWorkers>}),
                         [](const auto& kind) { return std::string(kind.param.name); });

}  // namespace
}  // namespace tarnvale::testing
