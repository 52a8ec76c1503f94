#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "platform/workers.h"
#ifndef _WIN32
#include "hosts/linux/linux_workers.h"
#include "tests/hosts/contract/native_files.h"
#include "tests/hosts/contract/temporary_folder.h"
#endif

namespace tarnvale::testing {
namespace {

struct WorkersKind {
  const char* name;
  std::unique_ptr<Workers> (*make)();
  bool reads_ahead = false;
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

TEST_P(WorkersContractTest, MemoryThatWillBeFilledAndWhatLiesBesideItStayAsTheyAre) {
  constexpr std::size_t kLargePage = std::size_t{2} << 20U;
  std::vector<std::uint8_t> memory(4 * kLargePage);
  for (std::size_t i = 0; i < memory.size(); ++i) memory[i] = static_cast<std::uint8_t>(i / 4096);
  const std::vector<std::uint8_t> before = memory;
  for (const std::size_t count : {std::size_t{0}, std::size_t{1}, kLargePage, 3 * kLargePage}) {
    workers->WillFill(std::span(memory).subspan(5, count));
    EXPECT_TRUE(memory == before) << count;
  }
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

#ifndef _WIN32
// The path of a native one.
Path PathOf(const std::string& native) {
  Path path = native;
  std::replace(path.begin(), path.end(), '/', '\\');
  return "C:" + path;
}

TEST_P(WorkersContractTest, WhatWasReadAheadIsWhatTheFilesHoldNow) {
  const TemporaryFolder folder;
  std::vector<Path> files;
  for (int i = 0; i < 40; ++i) {
    const std::string native = folder / ("file" + std::to_string(i));
    WriteNative(native, "content " + std::to_string(i));
    files.push_back(PathOf(native));
  }
  workers->ReadAhead(files);
  workers->ReadAhead({});
  WriteNative(folder / "file7", "changed since");
  std::filesystem::remove(folder / "file8");
  int found = 0;
  for (int i = 0; i < 40; ++i) {
    const auto read = workers->TakeRead(files[static_cast<std::size_t>(i)]);
    if (!read) continue;
    ++found;
    EXPECT_EQ(std::string(read->begin(), read->end()), "content " + std::to_string(i));
    EXPECT_TRUE(i != 7 && i != 8);
  }
  EXPECT_EQ(found, GetParam().reads_ahead && workers->Helpers() > 0 ? 38 : 0);
}

TEST_P(WorkersContractTest, WhatIsNoPlainFileOrWasNotAnnouncedIsNotReadAhead) {
  const TemporaryFolder folder;
  WriteNative(folder / "there", "content");
  const std::vector<Path> files{PathOf(folder.Path()), PathOf(folder / "missing"), "", "there"};
  workers->ReadAhead(files);
  workers->ReadAhead({PathOf(folder / "there")});
  for (const Path& file : files) EXPECT_FALSE(workers->TakeRead(file)) << file;
  EXPECT_FALSE(workers->TakeRead(PathOf(folder / "there"))) << "that is the next call's";
}

#endif

template <class W>
std::unique_ptr<Workers> Make() {
  return std::make_unique<W>();
}

#ifndef _WIN32
INSTANTIATE_TEST_SUITE_P(Linux, WorkersContractTest,
                         ::testing::Values(WorkersKind{"Linux", &Make<LinuxWorkers>, true}),
                         [](const auto& kind) { return std::string(kind.param.name); });
#endif
// The fake's, and the Windows host's.
INSTANTIATE_TEST_SUITE_P(None, WorkersContractTest,
                         ::testing::Values(WorkersKind{"None", &Make<NoWorkers>}),
                         [](const auto& kind) { return std::string(kind.param.name); });

}  // namespace
}  // namespace tarnvale::testing
