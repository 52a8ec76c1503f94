// Splitting and joining real files.
#include <gmock/gmock.h>

#include "tests/hosts/contract/full_medium.h"
#include "tests/hosts/linux/linux_stage.h"
#include "tests/splitter/splitter_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;

class SplitJoinOnLinuxTest : public LinuxStage {
 protected:
  SplitJoinOnLinuxTest() {
    std::filesystem::create_directories(OnDrive("Out"));
    WriteNative(OnDrive("Data/backup.tvz"), bytes);
  }

  FakeMachine fake;
  LinuxHost host{surroundings};
  Machine machine{host.Parts(), fake.Interfaces()};
  const std::string bytes = GeneratedBytes(50000);
  const Path source = "C:\\Data\\backup.tvz";
  Property<std::string> target{"C:\\Out"};
  Property<std::string> joined;
  modFHand hand{
      machine.files, machine.open_files, machine.loop, {target, joined, [](std::int16_t) {}}};
  std::int16_t count = -1;
};

TEST_F(SplitJoinOnLinuxTest, AFileComesBackFromItsParts) {
  EXPECT_EQ(hand.SplitFile(source, 20000, count), PartsCode::kDone);
  EXPECT_EQ(count, 3);
  EXPECT_THAT(NativeNames(OnDrive("Out")),
              ElementsAre("backup.tvz.001", "backup.tvz.002", "backup.tvz.003"));
  EXPECT_TRUE(ReadNative(OnDrive("Out/backup.tvz.002")) == bytes.substr(20000, 20000));
  Path part = "C:\\Out\\backup.tvz.002";
  EXPECT_EQ(hand.JoinFile(part, count), PartsCode::kDone);
  EXPECT_EQ(part, "C:\\Out\\backup.tvz.003");
  EXPECT_TRUE(ReadNative(OnDrive("Out/backup.tvz")) == bytes);
  EXPECT_EQ(hand.JoinFile(part, count), PartsCode::kRefused);
}

TEST_F(SplitJoinOnLinuxTest, PartsAndWhatIsJoinedAreTheirOwnersAlone) {
  ASSERT_EQ(::chmod(OnDrive("Data/backup.tvz").c_str(), 0644), 0);
  EXPECT_EQ(hand.SplitFile(source, 20000, count), PartsCode::kDone);
  Path part = "C:\\Out\\backup.tvz.001";
  EXPECT_EQ(hand.JoinFile(part, count), PartsCode::kDone);
  const std::vector<std::string> made = NativeNames(OnDrive("Out"));
  EXPECT_EQ(made.size(), 4U);
  for (const std::string& name : made) EXPECT_EQ(ModeOf(OnDrive("Out/" + name)), 0600U) << name;
}

TEST_F(SplitJoinOnLinuxTest, PartsOfAnotherFileInAnotherCaseStay) {
  WriteNative(OnDrive("Out/BACKUP.tvz.001"), "of another file");
  WriteNative(OnDrive("Out/BACKUP.tvz.002"), "of another file");
  for (int time = 0; time < 2; ++time) {
    EXPECT_EQ(hand.SplitFile(source, 30000, count), PartsCode::kDone);
    EXPECT_EQ(ReadNative(OnDrive("Out/BACKUP.tvz.001")), "of another file");
    EXPECT_EQ(ReadNative(OnDrive("Out/BACKUP.tvz.002")), "of another file");
  }
  Path part = "C:\\Out\\backup.tvz.001";
  EXPECT_EQ(hand.JoinFile(part, count), PartsCode::kDone);
  EXPECT_TRUE(ReadNative(OnDrive("Out/backup.tvz")) == bytes);
}

TEST_F(SplitJoinOnLinuxTest, AFileOfMegabytesComesBackFromItsParts) {
  const std::string large = GeneratedBytes(9000001);
  WriteNative(OnDrive("Data/backup.tvz"), large);
  EXPECT_EQ(hand.SplitFile(source, 5000000, count), PartsCode::kDone);
  EXPECT_TRUE(ReadNative(OnDrive("Out/backup.tvz.001")) == large.substr(0, 5000000));
  Path part = "C:\\Out\\backup.tvz.001";
  EXPECT_EQ(hand.JoinFile(part, count), PartsCode::kDone);
  EXPECT_TRUE(ReadNative(OnDrive("Out/backup.tvz")) == large);
}

TEST_F(SplitJoinOnLinuxTest, AFullMediumIsCode4AndClosesBothNumbers) {
  Path part = "C:\\Data\\joined.001";
  WriteNative(OnDrive("Data/joined.001"), bytes);
  {
    const FullMedium full;
    EXPECT_EQ(hand.SplitFile(source, 20000, count), PartsCode::kFailed);
    EXPECT_EQ(hand.JoinFile(part, count), PartsCode::kFailed);
  }
  EXPECT_FALSE(host.open_files.IsOpen(1));
  EXPECT_FALSE(host.open_files.IsOpen(2));
  EXPECT_EQ(count, -1);
}

TEST_F(SplitJoinOnLinuxTest, AnOldLongerPartKeepsItsTail) {
  WriteNative(OnDrive("Out/backup.tvz.003"), std::string(10003, 'x'));
  EXPECT_EQ(hand.SplitFile(source, 20000, count), PartsCode::kDone);
  EXPECT_TRUE(ReadNative(OnDrive("Out/backup.tvz.003")) == bytes.substr(40000) + "xxx");
}

TEST_F(SplitJoinOnLinuxTest, TheRootsSecondBackslashDoesNoHarm) {
  target = "C:\\";
  EXPECT_EQ(hand.SplitFile(source, 50000, count), PartsCode::kDone);
  EXPECT_TRUE(ReadNative(OnDrive("backup.tvz.001")) == bytes);
  target = "";
  EXPECT_EQ(hand.SplitFile(source, 25000, count), PartsCode::kDone);
  EXPECT_TRUE(ReadNative(OnDrive("backup.tvz.002")) == bytes.substr(25000));
}

TEST_F(SplitJoinOnLinuxTest, APathWithoutABackslashIsCode4) {
  EXPECT_EQ(hand.SplitFile("C:/Data/backup.tvz", 20000, count), PartsCode::kFailed);
}

TEST_F(SplitJoinOnLinuxTest, AMissingTargetFolderClosesTheLogOfARunToo) {
  host.open_files.OpenOutput(256, "C:\\Data\\Backup Log.txt");
  target = "C:\\Nowhere";
  EXPECT_EQ(hand.SplitFile(source, 20000, count), PartsCode::kFailed);
  EXPECT_FALSE(host.open_files.IsOpen(256));
  EXPECT_FALSE(host.open_files.IsOpen(1));
}

}  // namespace
}  // namespace tarnvale::testing
