// A storage location that whoever can write to the folder around it exchanges during a
// run.
#include <unistd.h>

#include <cstdio>
#include <filesystem>

#include "tests/runs/real_run.h"

namespace tarnvale::testing {
namespace {

class ExchangedStorageTest : public RealRun {
 protected:
  ExchangedStorageTest() {
    Write("Work/One/1.txt", "one");
    Write("Work/Two/2.txt", "two");
    engine.settings.Entries.Assign({"C:\\Work\\One\\*+++++*", "C:\\Work\\Two\\*+++++*"});
  }

  // As soon as the first item has been copied.
  void ExchangeBetweenTheItems() {
    std::filesystem::create_directories(Native("His"));
    constexpr int kMoreThanARunHas = 100;
    for (int yield = 1; yield < kMoreThanARunHas; ++yield) {
      machine.loop.OnYield(yield, [this] {
        if (exchanged_ || !std::filesystem::exists(Native("Store/One/1.txt"))) return;
        exchanged_ = ::rename(Native("Store").c_str(), Native("Away").c_str()) == 0 &&
                     ::rename(Native("His").c_str(), Native("Store").c_str()) == 0;
      });
    }
  }

  bool exchanged_ = false;
};

TEST_F(ExchangedStorageTest, GetsNoItemOfTheRun) {
  engine.settings.BackupMode.Complete = true;
  ExchangeBetweenTheItems();
  Run();
  ASSERT_TRUE(exchanged_);
  EXPECT_TRUE(std::filesystem::is_empty(Native("Store")));
  EXPECT_EQ(Content("Away/One/1.txt"), "one");
  EXPECT_EQ(Content("Away/Two/2.txt"), "two");
}

}  // namespace
}  // namespace tarnvale::testing
