// Archives on real files, with less memory than they take.
#include <gmock/gmock.h>

#include "compressor/compressor_window.h"
#include "tests/hosts/linux/linux_stage.h"
#include "tests/support/fake_machine.h"
#include "tests/support/in_a_child.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

constexpr std::uint64_t kLarge = std::uint64_t{300} << 20U;
constexpr std::uint64_t kRoom = std::uint64_t{100} << 20U;

class OutOfMemoryTest : public LinuxStage {
 protected:
  OutOfMemoryTest() {
    std::filesystem::create_directories(OnDrive("Store"));
    WriteNative(OnDrive("Data/a.txt"), "hi");
    settings.DestinationDir = "C:\\Data";
    settings.CompressDir = "C:\\Store";
    window.Text1.Text = "C:\\Data";
    fake.loop.Fault.Listen([this](const ProgramError& error) { faults.push_back(error); });
  }

  void SetUp() override {
    if (kSanitized) GTEST_SKIP() << "the sanitizer reserves terabytes of address space";
  }

  // A file of zeros that takes no room on the medium.
  void MakeLarge(const std::string& name, const std::string& begin = "") {
    WriteNative(OnDrive(name), begin);
    std::filesystem::resize_file(OnDrive(name), kLarge);
  }

  // A folder of little is packed and comes back.
  bool Works() {
    usercontrol11 archiver(machine);
    archiver.SaveFilesToArchiv("C:\\Small", "C:\\Store\\small.tvz", true);
    archiver.ExtractFilesFromArchiv("C:\\Store\\small.tvz", "C:\\Out", true);
    return ReadNative(OnDrive("Out/b.txt")) == "hello";
  }

  FakeMachine fake;
  LinuxHost host{surroundings};
  Machine machine{host.Parts(), fake.Interfaces()};
  BackupSettings settings;
  compression window{machine, settings};
  std::vector<ProgramError> faults;
};

TEST_F(OutOfMemoryTest, PackingAndUnpackingRaise7AndTheNextOnesGoThrough) {
  MakeLarge("Data/large");
  MakeLarge("Store/stored.tvz", "HE0\r");
  std::filesystem::create_directories(OnDrive("Small"));
  WriteNative(OnDrive("Small/b.txt"), "hello");
  EXPECT_EQ(WithLittleMemory(kRoom,
                             [&] {
                               usercontrol11 archiver(machine);
                               const int packing = RaisedBy([&] {
                                 archiver.SaveFilesToArchiv("C:\\Data", "C:\\Store\\a.tvz", true);
                               });
                               const int unpacking = RaisedBy([&] {
                                 archiver.ExtractFilesFromArchiv("C:\\Store\\stored.tvz",
                                                                 "C:\\Elsewhere", true);
                               });
                               if (packing != 7 || unpacking != 7) return packing;
                               return Works() ? 0 : 1;
                             }),
            0);
  EXPECT_THAT(NativeNames(OnDrive("Store")),
              ::testing::ElementsAre("a.tvz.tmp", "small.tvz", "stored.tvz"));
}

// The stream says 2 GiB and has the bytes for a third of that.
TEST_F(OutOfMemoryTest, AResultThatIsTooLargeRaises7) {
  std::string head("HE3\r\0\xFF\xFF\xFF\x7F\2\0a\1b\1\2", 16);
  MakeLarge("Store/a.tvz", head);
  EXPECT_EQ(
      WithLittleMemory(kLarge + kRoom,
                       [&] {
                         usercontrol11 archiver(machine);
                         return RaisedBy([&] { archiver.ReadFiles("C:\\Store\\a.tvz", true); });
                       }),
      7);
}

TEST_F(OutOfMemoryTest, AClickInTheCompressorShows7AndTheWindowLivesOn) {
  MakeLarge("Store/large.tvz", "HE0\r");
  EXPECT_EQ(WithLittleMemory(kRoom,
                             [&] {
                               fake.ExpectFault(7);
                               fake.dialogs.Choose(FakeDialogs::Kind::kOpen,
                                                   "C:\\Store\\large.tvz");
                               fake.loop.Deliver([&] { window.Command3.Click.Emit(); });
                               if (faults.size() != 1 || faults[0].Number() != 7) return 1;
                               if (faults[0].Description() != "Out of memory") return 2;
                               fake.loop.Deliver([&] { window.Compress(); });
                               return faults.size() == 1 ? 0 : 3;
                             }),
            0);
  EXPECT_TRUE(std::filesystem::exists(OnDrive("Store/Auto Compressed.tvz")));
}

}  // namespace
}  // namespace tarnvale::testing
