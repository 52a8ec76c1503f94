#include "hosts/linux/linux_open_files.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/hosts/contract/full_medium.h"
#include "tests/hosts/linux/linux_stage.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

class LinuxOpenFilesTest : public LinuxStage {
 protected:
  LinuxHost host{surroundings};
  LinuxOpenFiles& open = host.open_files;
};

TEST_F(LinuxOpenFilesTest, WhatWasWrittenIsInTheFileAtOnce) {
  open.OpenOutput(1, "C:\\Data\\log.txt");
  open.Write(1, "line\r\n");
  EXPECT_EQ(ReadNative(OnDrive("Data/log.txt")), "line\r\n");
}

TEST_F(LinuxOpenFilesTest, AWriteThatDoesNotFitRaises61) {
  open.OpenOutput(1, "C:\\Data\\log.txt");
  int number = 0;
  {
    const FullMedium full;
    number = RaisedBy([&] { open.Write(1, "hello"); });
  }
  EXPECT_EQ(number, 61);
  EXPECT_TRUE(open.IsOpen(1));
}

TEST_F(LinuxOpenFilesTest, ACopyThatDoesNotFitRaises61AtTheLatestWhenItIsClosed) {
  for (const int closed_first : {1, 2}) {
    WriteNative(OnDrive("Data/from.bin"), "0123456789");
    open.OpenInput(1, "C:\\Data\\from.bin");
    open.OpenOutput(2, "C:\\Data\\to.bin");
    std::array<std::uint8_t, 10> step{};
    int number = 0;
    {
      const FullMedium full;
      number = RaisedBy([&] {
        open.Copy(1, 2, step);
        open.Close(closed_first);
      });
    }
    EXPECT_EQ(number, 61) << closed_first;
    EXPECT_FALSE(open.IsOpen(closed_first));
    EXPECT_EQ(RaisedBy([&] { open.Close(3 - closed_first); }), 0) << "it is reported once";
  }
}

TEST_F(LinuxOpenFilesTest, ACopyThatFailsOnTheWayIsReportedOnceWithWhatFittedInTheFile) {
  constexpr std::size_t kStep = 1 << 20;
  const std::string bytes(20 * kStep, 'x');
  WriteNative(OnDrive("Data/from.bin"), bytes);
  open.OpenInput(1, "C:\\Data\\from.bin");
  open.OpenOutput(2, "C:\\Data\\to.bin");
  std::vector<std::uint8_t> step(kStep);
  std::vector<int> raised;
  {
    const FullMedium full(5 * kStep);
    for (int i = 0; i < 20 && raised.empty(); ++i) {
      if (const int number = RaisedBy([&] { open.Copy(1, 2, step); }); number != 0) {
        raised.push_back(number);
      }
    }
    for (const int number : {2, 1}) {
      if (const int late = RaisedBy([&] { open.Close(number); }); late != 0) raised.push_back(late);
    }
  }
  EXPECT_EQ(raised, std::vector<int>{61});
  EXPECT_TRUE(ReadNative(OnDrive("Data/to.bin")) == bytes.substr(0, 5 * kStep));
}

TEST_F(LinuxOpenFilesTest, WhatIsBeingCopiedIsThereForWhoeverUsesEitherNumber) {
  constexpr std::size_t kStep = 1 << 20;
  WriteNative(OnDrive("Data/from.bin"), std::string(20 * kStep, 'x'));
  open.OpenInput(1, "C:\\Data\\from.bin");
  open.OpenOutput(2, "C:\\Data\\to.bin");
  std::vector<std::uint8_t> step(kStep);
  for (int copied = 0; copied < 20; ++copied) {
    ASSERT_EQ(open.Copy(1, 2, step), kStep);
    if (copied % 7 != 6) continue;
    if (copied % 2 == 0) {
      open.Seek(1, (copied + 1) * std::int64_t{kStep});
    } else {
      EXPECT_EQ(open.Length(2), (copied + 1) * std::int64_t{kStep});
    }
    EXPECT_EQ(ReadNative(OnDrive("Data/to.bin")).size(), (copied + 1) * kStep) << copied;
  }
}

TEST_F(LinuxOpenFilesTest, ClosingAllOnAFullMediumRaisesNothing) {
  WriteNative(OnDrive("Data/from.bin"), "0123456789");
  open.OpenInput(1, "C:\\Data\\from.bin");
  open.OpenOutput(2, "C:\\Data\\to.bin");
  std::array<std::uint8_t, 10> step{};
  {
    const FullMedium full;
    EXPECT_EQ(open.Copy(1, 2, step), 10U);
    EXPECT_EQ(RaisedBy([&] { open.CloseAll(); }), 0);
  }
  EXPECT_FALSE(open.IsOpen(2));
}

TEST_F(LinuxOpenFilesTest, ACopyWhoseSourceWasCutShortMeanwhileRaises62) {
  WriteNative(OnDrive("Data/from.bin"), "0123456789");
  open.OpenInput(1, "C:\\Data\\from.bin");
  open.OpenOutput(2, "C:\\Data\\to.bin");
  std::array<std::uint8_t, 4> step{};
  EXPECT_EQ(open.Copy(1, 2, step), 4U);
  WriteNative(OnDrive("Data/from.bin"), "01");
  EXPECT_EQ(RaisedBy([&] { open.Close(2); }), 62);
  EXPECT_EQ(ReadNative(OnDrive("Data/to.bin")), "01");
}

TEST_F(LinuxOpenFilesTest, ASourceThatHasGrownMeanwhileIsCopiedToItsNewEnd) {
  WriteNative(OnDrive("Data/from.bin"), "01234");
  open.OpenInput(1, "C:\\Data\\from.bin");
  open.OpenOutput(2, "C:\\Data\\to.bin");
  std::array<std::uint8_t, 4> step{};
  EXPECT_EQ(open.Copy(1, 2, step), 4U);
  WriteNative(OnDrive("Data/from.bin"), "012345678");
  EXPECT_EQ(open.Copy(1, 2, step), 4U);
  EXPECT_EQ(open.Copy(1, 2, step), 1U);
  open.CloseAll();
  EXPECT_EQ(ReadNative(OnDrive("Data/to.bin")), "012345678");
}

TEST_F(LinuxOpenFilesTest, WhatWasCopiedIsKeptWhenTheProgramEnds) {
  WriteNative(OnDrive("Data/from.bin"), "0123456789");
  {
    LinuxHost other(surroundings);
    other.open_files.OpenInput(1, "C:\\Data\\from.bin");
    other.open_files.OpenOutput(2, "C:\\Data\\to.bin");
    std::array<std::uint8_t, 4> step{};
    EXPECT_EQ(other.open_files.Copy(1, 2, step), 4U);
  }
  EXPECT_EQ(ReadNative(OnDrive("Data/to.bin")), "0123");
}

TEST_F(LinuxOpenFilesTest, APipeIsNoTextAndDoesNotHoldAnybodyUp) {
  ASSERT_EQ(::mkfifo(OnDrive("Data/pipe").c_str(), 0600), 0);
  EXPECT_EQ(RaisedBy([&] { open.OpenInput(1, "C:\\Data\\pipe"); }), 75);
  EXPECT_EQ(RaisedBy([&] { open.OpenOutput(1, "C:\\Data\\pipe"); }), 75);
  EXPECT_EQ(RaisedBy([&] { open.OpenBinary(1, "C:\\Data\\pipe"); }), 75);
}

TEST_F(LinuxOpenFilesTest, ALinkLeadsToItsFile) {
  WriteNative(OnDrive("Data/real.txt"), "hello");
  ASSERT_EQ(::symlink("real.txt", OnDrive("Data/link.txt").c_str()), 0);
  open.OpenOutput(1, "C:\\Data\\link.txt");
  open.Write(1, "new");
  open.Close(1);
  EXPECT_EQ(ReadNative(OnDrive("Data/real.txt")), "new");
  EXPECT_TRUE(S_ISLNK(StateOf(OnDrive("Data/link.txt")).st_mode));
}

TEST_F(LinuxOpenFilesTest, AProgramThatRunsOpensInBinaryForReadingAlone) {
  const auto program = std::filesystem::read_symlink("/proc/self/exe");
  ASSERT_EQ(::symlink(program.c_str(), OnDrive("Data/program").c_str()), 0);
  open.OpenBinary(1, "C:\\Data\\program");
  EXPECT_EQ(open.Read(1, 4),
            "\x7F"
            "ELF");
  EXPECT_EQ(RaisedBy([&] { open.Write(1, "x"); }), 75);
}

TEST_F(LinuxOpenFilesTest, WhatIsMadeIsItsOwnersAloneUnlessOthersMayHaveIt) {
  const mode_t mask = ::umask(0022);
  open.OpenOutput(1, "C:\\Data\\log");
  open.OpenBinary(2, "C:\\Data\\archive");
  open.OpenOwn(3, "C:\\Data\\stage");
  open.OpenOutput(4, "C:\\Data\\unpacked", Rights::kNewFile);
  ::umask(mask);
  EXPECT_EQ(ModeOf(OnDrive("Data/log")), 0600U);
  EXPECT_EQ(ModeOf(OnDrive("Data/archive")), 0600U);
  EXPECT_EQ(ModeOf(OnDrive("Data/stage")), 0600U);
  EXPECT_EQ(ModeOf(OnDrive("Data/unpacked")), 0644U);
}

TEST_F(LinuxOpenFilesTest, AnOldLogIsItsOwnersAloneFromNowOn) {
  WriteNative(OnDrive("Data/log"), "old");
  ASSERT_EQ(::chmod(OnDrive("Data/log").c_str(), 0644), 0);
  open.OpenOutput(1, "C:\\Data\\log");
  EXPECT_EQ(ModeOf(OnDrive("Data/log")), 0600U);
}

TEST_F(LinuxOpenFilesTest, AnOwnFileThatWasLeftIsItsOwnersAloneFromNowOn) {
  WriteNative(OnDrive("Data/stage"), "left");
  ASSERT_EQ(::chmod(OnDrive("Data/stage").c_str(), 0666), 0);
  open.OpenOwn(1, "C:\\Data\\stage");
  EXPECT_EQ(ModeOf(OnDrive("Data/stage")), 0600U);
  EXPECT_EQ(open.Read(1, 10), "left");
}

TEST_F(LinuxOpenFilesTest, AnOwnFileIsNotWrittenThroughLinksOfEitherKind) {
  WriteNative(OnDrive("Data/other"), "other");
  const auto native = OnDrive("Data/stage");
  for (const auto& link : {&::symlink, &::link}) {
    ASSERT_EQ(link(OnDrive("Data/other").c_str(), native.c_str()), 0);
    open.OpenOwn(1, "C:\\Data\\stage");
    open.Write(1, "new");
    open.Close(1);
    EXPECT_EQ(ReadNative(OnDrive("Data/other")), "other");
    EXPECT_EQ(ReadNative(native), "new");
    EXPECT_TRUE(S_ISREG(StateOf(native).st_mode));
    std::filesystem::remove(native);
  }
}

TEST_F(LinuxOpenFilesTest, NoChildInheritsAnOpenFile) {
  open.OpenOutput(1, "C:\\Data\\a.txt");
  bool found = false;
  for (const std::string& name : NativeNames("/proc/self/fd")) {
    std::error_code gone;
    const auto target = std::filesystem::read_symlink("/proc/self/fd/" + name, gone);
    if (target != OnDrive("Data/a.txt")) continue;
    found = true;
    EXPECT_NE(::fcntl(std::stoi(name), F_GETFD) & FD_CLOEXEC, 0);
  }
  EXPECT_TRUE(found);
}

}  // namespace
}  // namespace tarnvale::testing
