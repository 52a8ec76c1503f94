// Rights that the author of a medium wrote on it.
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <cstdint>

#include "core/file_control.h"
#include "core/file_sync.h"
#include "tests/hosts/linux/linux_stage.h"
#include "tests/security/another_user.h"
#include "tests/support/fake_machine.h"

namespace tarnvale::testing {
namespace {

constexpr const char* kAccessList = "system.posix_acl_access";
// Of a folder, for what is made in it.
constexpr const char* kDefaultList = "system.posix_acl_default";

// An access list as the system keeps it: user 54321 may read and write.
constexpr std::array<std::uint8_t, 44> kHeMayWrite{
    2,    0, 0, 0,                           // version
    1,    0, 6, 0, 0xff, 0xff, 0xff, 0xff,   // owner
    2,    0, 6, 0, 0x31, 0xd4, 0,    0,      // user 54321
    4,    0, 6, 0, 0xff, 0xff, 0xff, 0xff,   // group
    0x10, 0, 6, 0, 0xff, 0xff, 0xff, 0xff,   // mask
    0x20, 0, 6, 0, 0xff, 0xff, 0xff, 0xff};  // others

// "Data/medium" holds what its author left there, "Data/home" is the user's.
class RightsFromAMediumTest : public LinuxStage {
 protected:
  void SetUp() override {
    for (const char* made : {"Data/medium", "Data/medium/folder", "Data/home"}) {
      std::filesystem::create_directories(OnDrive(made));
    }
    WriteNative(OnDrive("Data/medium/tool"), "tool");
    WriteNative(OnDrive("Data/medium/folder/tool"), "tool");
    lists_ = SetList("Data/medium/tool", kAccessList) &&
             SetList("Data/medium/folder", kAccessList) &&
             SetList("Data/medium/folder", kDefaultList);
    for (const char* set : {"Data/medium/tool", "Data/medium/folder", "Data/medium/folder/tool"}) {
      ASSERT_EQ(::chmod(OnDrive(set).c_str(), 07777), 0);
    }
    mask_ = ::umask(0022);
  }
  void TearDown() override { ::umask(mask_); }

  bool SetList(const std::string& file, const char* list) const {
    return ::setxattr(OnDrive(file).c_str(), list, kHeMayWrite.data(), kHeMayWrite.size(), 0) == 0;
  }
  bool HasList(const std::string& file, const char* list) const {
    return ::getxattr(OnDrive(file).c_str(), list, nullptr, 0) > 0;
  }

  void ExpectHarmless(const std::string& copy) const {
    EXPECT_EQ(ModeOf(OnDrive(copy + "/tool")), 0755U);
    EXPECT_EQ(ModeOf(OnDrive(copy + "/folder")), 0755U);
    EXPECT_EQ(ModeOf(OnDrive(copy + "/folder/tool")), 0755U);
    EXPECT_FALSE(HasList(copy + "/tool", kAccessList));
    EXPECT_FALSE(HasList(copy + "/folder", kAccessList));
    EXPECT_FALSE(HasList(copy + "/folder", kDefaultList));
    EXPECT_FALSE(HasList(copy + "/folder/tool", kAccessList));
  }

  bool lists_ = false;
  mode_t mask_ = 0;
  FakeMachine fake;
  LinuxHost host{surroundings};
  Machine machine{host.Parts(), fake.Interfaces()};
};

TEST_F(RightsFromAMediumTest, AreNotRestored) {
  EXPECT_TRUE(
      FileControl(machine.files, machine.boxes, machine.loop)
          .CopyFolderTo("C:\\Data\\medium", "C:\\Data\\home\\restored", {.overwrite = true}));
  ExpectHarmless("Data/home/restored");
}

TEST_F(RightsFromAMediumTest, DoNotComeBackWithATwoWaySync) {
  FileSync(machine.files, machine.loop).SyncFolders("C:\\Data\\home", "C:\\Data\\medium", true);
  ExpectHarmless("Data/home");
}

TEST_F(RightsFromAMediumTest, OpenNoFileThatIsTheUsersAlone) {
  const std::string tool = OnDrive("Data/home/tool");
  WriteNative(tool, "old");
  ASSERT_EQ(::chmod(tool.c_str(), 0600), 0);
  SetModifiedNative(tool, 1000);
  FileSync(machine.files, machine.loop).SyncFolders("C:\\Data\\home", "C:\\Data\\medium", true);
  EXPECT_EQ(ReadNative(tool), "tool");
  EXPECT_EQ(ModeOf(tool), 0600U);

  SetModifiedNative(tool, 1000);
  EXPECT_TRUE(FileControl(machine.files, machine.boxes, machine.loop)
                  .CopyFolderTo("C:\\Data\\medium", "C:\\Data\\home", {.overwrite = true}));
  EXPECT_EQ(ModeOf(tool), 0600U);
}

TEST_F(RightsFromAMediumTest, ButThoseOfTheUserGoToTheStorageWithoutSetIdBits) {
  FileSync(machine.files, machine.loop).SyncFolders("C:\\Data\\medium", "C:\\Data\\home", false);
  EXPECT_EQ(ModeOf(OnDrive("Data/home/tool")), 0777U);
  EXPECT_EQ(ModeOf(OnDrive("Data/home/folder")), 01777U);
  EXPECT_EQ(ModeOf(OnDrive("Data/home/folder/tool")), 0777U);
  EXPECT_EQ(HasList("Data/home/tool", kAccessList), lists_);
  EXPECT_EQ(HasList("Data/home/folder", kDefaultList), lists_);
}

using HomesTest = AttackedStage;

// For an ordinary user a folder of his own will do, as he can close that to himself too.
TEST_F(HomesTest, AFolderBelowOneThatCanOnlyBeEnteredIsCopiedTo) {
  const std::string homes = OnDrive("Data/homes");
  std::filesystem::create_directories(homes + "/his");
  std::filesystem::create_directories(OnDrive("Data/medium"));
  WriteNative(OnDrive("Data/medium/letter"), "letter");
  if (AnotherUser::IsReal()) {
    ASSERT_EQ(::chown((homes + "/his").c_str(), AnotherUser::kNumber, AnotherUser::kNumber), 0);
  }
  ASSERT_EQ(::chmod(homes.c_str(), 0111), 0);
  EXPECT_TRUE(AnotherUser::Does([&] {
    LinuxHost host{surroundings};
    host.files.CopyTree("C:\\Data\\medium", "C:\\Data\\homes\\his", {}, Rights::kNewFile);
    return true;
  }));
  EXPECT_EQ(ReadNative(homes + "/his/letter"), "letter");
  ASSERT_EQ(::chmod(homes.c_str(), 0755), 0);
}

}  // namespace
}  // namespace tarnvale::testing
