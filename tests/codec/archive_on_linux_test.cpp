// Archives on real files.
#include <gmock/gmock.h>
#include <pthread.h>

#include <functional>

#include "codec/archive.h"
#include "hosts/linux/linux_workers.h"
#include "tests/hosts/linux/linux_stage.h"
#include "tests/support/fake_machine.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;

// Runs `part` on a thread of 128 KiB and waits for its end.
void OnSmallStack(const std::function<void()>& part) {
  pthread_attr_t small;
  ASSERT_EQ(::pthread_attr_init(&small), 0);
  ASSERT_EQ(::pthread_attr_setstacksize(&small, 128U << 10U), 0);
  pthread_t thread{};
  const auto run = [](void* given) -> void* {
    (*static_cast<const std::function<void()>*>(given))();
    return nullptr;
  };
  std::function<void()> copy = part;
  ASSERT_EQ(::pthread_create(&thread, &small, run, &copy), 0);
  ::pthread_join(thread, nullptr);
}

class ArchiveOnLinuxTest : public LinuxStage {
 protected:
  ArchiveOnLinuxTest() {
    std::filesystem::create_directories(OnDrive("Data/sub"));
    std::filesystem::create_directories(OnDrive("Data/.private"));
    std::filesystem::create_directories(OnDrive("Store"));
    WriteNative(OnDrive("Data/a.txt"), "hi");
    WriteNative(OnDrive("Data/sub/b.txt"), std::string(300000, 'b') + "end");
    WriteNative(OnDrive("Data/.hidden"), "secret");
    WriteNative(OnDrive("Data/.private/c.txt"), "secret");
  }

  FakeMachine fake;
  LinuxHost host{surroundings};
  Machine machine{host.Parts(), fake.Interfaces()};
  usercontrol11 archiver{machine};
  const Path archive = "C:\\Store\\a.tvz";
};

TEST_F(ArchiveOnLinuxTest, NamesThatDifferInCaseAreUnpackedAsTwo) {
  for (const char* place : {"Two/Doc", "Two/doc"}) {
    std::filesystem::create_directories(OnDrive(place));
    WriteNative(OnDrive(place) + "/x.txt", place);
  }
  WriteNative(OnDrive("Two/Ä.txt"), "capital");
  WriteNative(OnDrive("Two/ä.txt"), "small");
  EXPECT_EQ(archiver.SaveFilesToArchiv("C:\\Two", archive, true), 4);
  // The exact name wins, whatever was in the folder before.
  std::filesystem::create_directories(OnDrive("Out/doc"));
  WriteNative(OnDrive("Out/ä.txt"), "old");
  for (int time = 0; time < 2; ++time) {
    EXPECT_EQ(archiver.ExtractFilesFromArchiv(archive, "C:\\Out", true), 4);
    EXPECT_EQ(ReadNative(OnDrive("Out/Ä.txt")), "capital");
    EXPECT_EQ(ReadNative(OnDrive("Out/ä.txt")), "small");
    EXPECT_EQ(ReadNative(OnDrive("Out/Doc/x.txt")), "Two/Doc");
    EXPECT_EQ(ReadNative(OnDrive("Out/doc/x.txt")), "Two/doc");
  }
  EXPECT_EQ(NativeNames(OnDrive("Out")).size(), 4U);
}

TEST_F(ArchiveOnLinuxTest, AnotherCaseStandsForANameThatNeitherSideHas) {
  std::filesystem::create_directories(OnDrive("One/Sub"));
  WriteNative(OnDrive("One/Sub/a.TXT"), "new");
  EXPECT_EQ(archiver.SaveFilesToArchiv("C:\\One", archive, true), 1);
  std::filesystem::create_directories(OnDrive("Out/SUB"));
  WriteNative(OnDrive("Out/SUB/A.txt"), "old");
  EXPECT_EQ(archiver.ExtractFilesFromArchiv(archive, "C:\\Out", true), 1);
  EXPECT_THAT(NativeNames(OnDrive("Out")), ElementsAre("SUB"));
  EXPECT_THAT(NativeNames(OnDrive("Out/SUB")), ElementsAre("A.txt"));
  EXPECT_EQ(ReadNative(OnDrive("Out/SUB/A.txt")), "new");
}

TEST_F(ArchiveOnLinuxTest, ATreeComesBackWithoutWhatIsHidden) {
  EXPECT_EQ(archiver.SaveFilesToArchiv("C:\\Data", archive, true), 2);
  EXPECT_THAT(NativeNames(OnDrive("Store")), ElementsAre("a.tvz"));
  EXPECT_EQ(archiver.ExtractFilesFromArchiv(archive, "C:\\Out", true), 2);
  EXPECT_THAT(NativeNames(OnDrive("Out")), ElementsAre("a.txt", "sub"));
  EXPECT_EQ(ReadNative(OnDrive("Out/a.txt")), "hi");
  EXPECT_TRUE(ReadNative(OnDrive("Out/sub/b.txt")) == std::string(300000, 'b') + "end");
  EXPECT_THAT(NativeNames(OnDrive("Store")), ElementsAre("a.tvz"));
}

// A call for each level would take more than this stack.
TEST_F(ArchiveOnLinuxTest, ADeepTreeIsPackedOnASmallStack) {
  constexpr int kLevels = 1000;
  std::string deep = OnDrive("Deep");
  std::filesystem::create_directory(deep);
  for (int level = 0; level < kLevels; ++level) {
    deep += "/d";
    std::filesystem::create_directory(deep);
  }
  WriteNative(deep + "/leaf", "at the end");
  std::int32_t packed = 0;
  OnSmallStack([&] { packed = archiver.SaveFilesToArchiv("C:\\Deep", archive, true); });
  EXPECT_EQ(packed, 1);
  EXPECT_EQ(archiver.ExtractFilesFromArchiv(archive, "C:\\Out", true), 1);
  EXPECT_EQ(ReadNative(OnDrive("Out") + deep.substr(OnDrive("Deep").size()) + "/leaf"),
            "at the end");
}

TEST_F(ArchiveOnLinuxTest, AfterAnEntryWasFoundTheNextOperationFailsThoughTheSystemWouldNot) {
  archiver.SaveFilesToArchiv("C:\\Data", archive, true);
  Path out = "C:\\Out";
  archiver.ExtractFile(archive, "A.TXT", out, true);
  EXPECT_EQ(ReadNative(OnDrive("Out/a.txt")), "hi");
  EXPECT_THAT(NativeNames(OnDrive("Store")), ElementsAre("a.tvz", "a.tvz.tmp"));
  EXPECT_EQ(RaisedBy([&] { archiver.ReadFiles(archive, true); }), 70);
  EXPECT_EQ(RaisedBy([&] { archiver.ExtractFilesFromArchiv(archive, "C:\\Out", true); }), 70);
  EXPECT_EQ(RaisedBy([&] { archiver.ExtractFile(archive, "a.txt", out, true); }), 70);
  EXPECT_EQ(RaisedBy([&] { archiver.SaveFilesToArchiv("C:\\Data", archive, true); }), 70);
  EXPECT_THAT(NativeNames(OnDrive("Store")), ElementsAre("a.tvz", "a.tvz.tmp"));
}

TEST_F(ArchiveOnLinuxTest, ANewProcessFindsTheLeftStageFileInNobodysWay) {
  archiver.SaveFilesToArchiv("C:\\Data", archive, true);
  Path out = "C:\\Out";
  archiver.ExtractFile(archive, "a.txt", out, true);
  host.open_files.CloseAll();
  EXPECT_EQ(archiver.ExtractFilesFromArchiv(archive, "C:\\Again", true), 2);
  EXPECT_THAT(NativeNames(OnDrive("Store")), ElementsAre("a.tvz"));
}

TEST_F(ArchiveOnLinuxTest, AnEmptyTreeFailsToOpenTheRootAsAFile) {
  std::filesystem::create_directories(OnDrive("Empty/sub"));
  EXPECT_EQ(RaisedBy([&] { archiver.SaveFilesToArchiv("C:\\Empty", archive, true); }), 75);
  EXPECT_THAT(NativeNames(OnDrive("Store")), ElementsAre("a.tvz.tmp"));
  EXPECT_EQ(ReadNative(OnDrive("Store/a.tvz.tmp")), std::string("\1\0\0\0\0\0", 6));
}

TEST_F(ArchiveOnLinuxTest, NamesThatPointOutsideTheTargetAreFollowed) {
  WriteNative(OnDrive("Store/bare"), std::string("\1\0\0\0\7\0..\\evil\2\0\0\0hi", 19));
  EXPECT_EQ(archiver.ExtractFilesFromArchiv("C:\\Store\\bare", "C:\\Out\\deep", false), 1);
  EXPECT_EQ(ReadNative(OnDrive("Out/evil")), "hi");
}

TEST_F(ArchiveOnLinuxTest, ANameWithADriveFails) {
  WriteNative(OnDrive("Store/bare"), std::string("\1\0\0\0\4\0D:\\a\2\0\0\0hi", 16));
  const auto extract = [&] {
    archiver.ExtractFilesFromArchiv("C:\\Store\\bare", "C:\\Out", false);
  };
  EXPECT_EQ(RaisedBy(extract), 76);
}

TEST_F(ArchiveOnLinuxTest, AFolderNamedLikeADriveIsLeftOutAsItWouldEndTheExtraction) {
  std::filesystem::create_directories(OnDrive("Data/sub/D:"));
  WriteNative(OnDrive("Data/sub/D:/in"), "never");
  WriteNative(OnDrive("Data/1:"), "never");
  EXPECT_EQ(archiver.SaveFilesToArchiv("C:\\Data", archive, true), 2);
  EXPECT_EQ(archiver.ExtractFilesFromArchiv(archive, "C:\\Out", true), 2);
}

TEST_F(ArchiveOnLinuxTest, ReadingAheadPacksTheSameBytesAndEachFileAsItIsInItsTurn) {
  for (int i = 0; i < 300; ++i) {
    WriteNative(OnDrive("Data/sub/" + std::to_string(1000 + i)), "content " + std::to_string(i));
  }
  const auto packed_by = [&](Workers& workers, const Path& into) {
    usercontrol11 packer(ArchiveParts(machine, workers));
    WriteNative(OnDrive("Data/sub/1200"), "as it was");
    // In the turn of another file of those that are read together.
    packer.AddingFile.Listen([&](const std::string& name, const Path&, std::int32_t) {
      if (name == "1140") WriteNative(OnDrive("Data/sub/1200"), "changed meanwhile");
    });
    EXPECT_EQ(packer.SaveFilesToArchiv("C:\\Data", into, true), 302);
  };
  packed_by(ArchiveParts::nobody, "C:\\Store\\plain.tvz");
  LinuxWorkers workers(DrivePaths(surroundings.root));
  packed_by(workers, "C:\\Store\\ahead.tvz");
  EXPECT_TRUE(ReadNative(OnDrive("Store/plain.tvz")) == ReadNative(OnDrive("Store/ahead.tvz")));
  archiver.ExtractFilesFromArchiv("C:\\Store\\ahead.tvz", "C:\\Out", true);
  EXPECT_EQ(ReadNative(OnDrive("Out/sub/1200")), "changed meanwhile");
}

TEST_F(ArchiveOnLinuxTest, AColonInANameIsNoDrive) {
  WriteNative(OnDrive("Data/a: b.txt"), "colon");
  EXPECT_EQ(archiver.SaveFilesToArchiv("C:\\Data", archive, true), 3);
  EXPECT_EQ(archiver.ExtractFilesFromArchiv(archive, "C:\\Out", true), 3);
  EXPECT_EQ(ReadNative(OnDrive("Out/a: b.txt")), "colon");
}

}  // namespace
}  // namespace tarnvale::testing
