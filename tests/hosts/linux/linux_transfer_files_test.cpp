#include "hosts/linux/linux_transfer_files.h"

#include <gmock/gmock.h>

#include <csignal>
#include <filesystem>

#include <sys/resource.h>

#include "tests/hosts/linux/linux_stage.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class LinuxTransferFilesTest : public LinuxStage {
 protected:
  std::string ReadAll(TransferSource& source) {
    std::string all;
    std::array<char, 3> part{};
    while (const std::size_t got = source.Read(part)) all.append(part.data(), got);
    return all;
  }

  std::vector<std::string> Names() { return NativeNames(OnDrive("Data")); }

  LinuxHost host{surroundings};
  LinuxTransferFiles& transfers = host.transfer_files;
};

TEST_F(LinuxTransferFilesTest, ASourceIsReadToItsEnd) {
  WriteNative(OnDrive("Data/a"), "0123456789");
  EXPECT_EQ(ReadAll(*transfers.OpenSource("c:\\data\\A")), "0123456789");
}

TEST_F(LinuxTransferFilesTest, ATargetIsSeenOnlyWhenItIsWhole) {
  auto target = transfers.OpenTarget("C:\\Data\\a");
  target->Write(std::string("hello"));
  EXPECT_TRUE(host.files.List("C:\\Data\\*", {}).empty());
  EXPECT_FALSE(std::filesystem::exists(OnDrive("Data/a")));
  target->Commit();
  EXPECT_EQ(ReadNative(OnDrive("Data/a")), "hello");
  EXPECT_TRUE(host.files.FileExists("C:\\Data\\a"));
  EXPECT_THAT(Names(), ElementsAre("a"));
}

TEST_F(LinuxTransferFilesTest, ATargetThatIsGivenUpLeavesWhatWasThere) {
  WriteNative(OnDrive("Data/a"), "was here");
  transfers.OpenTarget("C:\\Data\\a")->Write(std::string("half"));
  EXPECT_EQ(ReadNative(OnDrive("Data/a")), "was here");
  EXPECT_THAT(Names(), ElementsAre("a"));
}

// As a medium that hung lets go of it.
TEST_F(LinuxTransferFilesTest, ATargetThatIsGivenUpLateTakesNothingFromTheNext) {
  auto late = transfers.OpenTarget("C:\\Data\\a");
  const auto next = transfers.OpenTarget("C:\\Data\\a");
  next->Write(std::string("next"));
  late.reset();
  next->Commit();
  EXPECT_EQ(ReadNative(OnDrive("Data/a")), "next");
}

TEST_F(LinuxTransferFilesTest, TwoTargetsInOneFolderAreReceivedSideBySide) {
  const auto a = transfers.OpenTarget("C:\\Data\\a");
  const auto b = transfers.OpenTarget("C:\\Data\\b");
  a->Write(std::string("one"));
  b->Write(std::string("two"));
  a->Commit();
  b->Commit();
  EXPECT_EQ(ReadNative(OnDrive("Data/a")), "one");
  EXPECT_EQ(ReadNative(OnDrive("Data/b")), "two");
}

TEST_F(LinuxTransferFilesTest, ANewFileIsItsOwnersAlone) {
  transfers.OpenTarget("C:\\Data\\new")->Commit();
  EXPECT_EQ(ModeOf(OnDrive("Data/new")), 0600U);
}

TEST_F(LinuxTransferFilesTest, ATargetReplacesTheFileOfItsNameInAnyCaseAndKeepsItsPermissions) {
  WriteNative(OnDrive("Data/Report.txt"), "was here");
  std::filesystem::permissions(OnDrive("Data/Report.txt"), std::filesystem::perms(0640));
  auto target = transfers.OpenTarget("C:\\DATA\\REPORT.TXT");
  target->Write(std::string("new"));
  target->Commit();
  EXPECT_THAT(Names(), ElementsAre("Report.txt"));
  EXPECT_EQ(ReadNative(OnDrive("Data/Report.txt")), "new");
  EXPECT_EQ(ModeOf(OnDrive("Data/Report.txt")), 0640U);
}

TEST_F(LinuxTransferFilesTest, ATargetReplacesALinkAndNotWhatItLeadsTo) {
  WriteNative(OnDrive("Data/real"), "was here");
  std::filesystem::create_symlink("real", OnDrive("Data/link"));
  const auto target = transfers.OpenTarget("C:\\Data\\link");
  target->Write(std::string("new"));
  target->Commit();
  EXPECT_EQ(ReadNative(OnDrive("Data/real")), "was here");
  EXPECT_EQ(ReadNative(OnDrive("Data/link")), "new");
  EXPECT_FALSE(std::filesystem::is_symlink(OnDrive("Data/link")));
}

TEST_F(LinuxTransferFilesTest, WhatIsNotThereRaises) {
  EXPECT_EQ(RaisedBy([&] { transfers.OpenSource("C:\\Data\\a"); }), kFileNotFound);
  EXPECT_EQ(RaisedBy([&] { transfers.OpenTarget("C:\\None\\a"); }), kPathNotFound);
  EXPECT_EQ(RaisedBy([&] { transfers.OpenTarget("D:\\a"); }), kPathNotFound);
}

TEST_F(LinuxTransferFilesTest, WhatIsNoPlainFileRaises75) {
  ASSERT_EQ(::mkfifo(OnDrive("Data/pipe").c_str(), 0600), 0);
  EXPECT_EQ(RaisedBy([&] { transfers.OpenSource("C:\\Data\\pipe"); }), kPathFileAccess);
  EXPECT_EQ(RaisedBy([&] { transfers.OpenTarget("C:\\Data\\pipe"); }), kPathFileAccess);
  EXPECT_EQ(RaisedBy([&] { transfers.OpenSource("C:\\Data"); }), kPathFileAccess);
  EXPECT_EQ(RaisedBy([&] { transfers.OpenTarget("C:\\Data"); }), kPathFileAccess);
}

TEST_F(LinuxTransferFilesTest, AReadOnlyTargetRaises75) {
  WriteNative(OnDrive("Data/a"), "was here");
  std::filesystem::permissions(OnDrive("Data/a"), std::filesystem::perms::owner_read);
  EXPECT_EQ(RaisedBy([&] { transfers.OpenTarget("C:\\Data\\a"); }), kPathFileAccess);
}

TEST_F(LinuxTransferFilesTest, AFullMediumRaises61AndNothingIsLeft) {
  auto target = transfers.OpenTarget("C:\\Data\\a");
  const auto handler = ::signal(SIGXFSZ, SIG_IGN);
  rlimit old{};
  ::getrlimit(RLIMIT_FSIZE, &old);
  rlimit small = old;
  small.rlim_cur = 4;
  ::setrlimit(RLIMIT_FSIZE, &small);
  const int raised = RaisedBy([&] { target->Write(std::string("hello")); });
  ::setrlimit(RLIMIT_FSIZE, &old);
  ::signal(SIGXFSZ, handler);
  EXPECT_EQ(raised, kDiskFull);
  target.reset();
  EXPECT_THAT(Names(), IsEmpty());
}

}  // namespace
}  // namespace tarnvale::testing
