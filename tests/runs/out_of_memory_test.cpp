// A run whose archive takes more memory than there is.
#include <chrono>

#include "compressor/compressor_window.h"
#include "tests/runs/real_run.h"
#include "tests/support/in_a_child.h"

namespace tarnvale::testing {
namespace {

using OutOfMemoryRunTest = RealRun;

TEST_F(OutOfMemoryRunTest, AfterTheFailedCompressionTheChainGoesOnAndTheNextRunPacks) {
  if (kSanitized) GTEST_SKIP() << "the sanitizer reserves terabytes of address space";
  Write("Work/a.txt", "one");
  Write("Store/large", "");
  std::filesystem::resize_file(Native("Store/large"), std::uintmax_t{300} << 20U);
  std::filesystem::create_directories(Native("Archives"));
  engine.settings.Entries.Assign({"C:\\Work\\a.txt"});
  engine.settings.AutoCompress = true;
  engine.settings.AutoReport = true;
  engine.settings.CompressDir = "C:\\Archives";
  engine.settings.DestinationDir = "C:\\Store";
  compression compressor(interfaces, engine.settings);
  machine.Advance(std::chrono::seconds(1));
  engine.stages.Compress = [&] { compressor.Compress(); };
  int reports = 0;
  engine.stages.SendReport = [&](const RunFacts&) { ++reports; };
  EXPECT_EQ(WithLittleMemory(std::uint64_t{100} << 20U,
                             [&] {
                               Run();
                               if (reports != 1) return 1;
                               const Path archive = "C:\\Archives\\Auto Compressed.tvz";
                               if (system.files.FileExists(archive)) return 2;
                               std::filesystem::remove(Native("Store/large"));
                               Run();
                               return system.files.FileExists(archive) && reports == 2 ? 0 : 3;
                             }),
            0);
  EXPECT_EQ(Content("Store/a.txt"), "one");
}

}  // namespace
}  // namespace tarnvale::testing
