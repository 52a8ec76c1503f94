// The program's end, within the loops of the system's own.
#include <optional>

#include "tests/hosts/windows/desktop_fixture.h"

namespace tarnvale::testing {
namespace {

class WindowsLoopsTest : public WindowsDesktopTest {
 protected:
  void PostBox() {
    loop.Post([] { ::MessageBoxW(nullptr, L"Waiting", L"Box", MB_YESNO); });
  }
  static bool IsBoxUp() { return Dialog() != nullptr; }
  static bool IsQuitLeft() {
    MSG message;
    return ::PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_NOREMOVE) != 0;
  }
};

TEST_F(WindowsLoopsTest, QuitEndsABoxAndRun) {
  PostBox();
  const Once quits(loop, IsBoxUp, [this] { loop.Quit(5); });
  EXPECT_EQ(loop.Run(), 5);
  EXPECT_FALSE(IsBoxUp());
}

TEST_F(WindowsLoopsTest, QuitEndsABoxWhoseTimerGoesOnYielding) {
  PostBox();
  const Once quits(loop, IsBoxUp, [this] {
    loop.Quit(5);
    for (int i = 0; i < 5; ++i) loop.WaitPass();
    EXPECT_TRUE(IsBoxUp());
  });
  EXPECT_EQ(loop.Run(), 5);
  EXPECT_FALSE(IsBoxUp());
}

TEST_F(WindowsLoopsTest, TheSystemsOwnEndIsOne) {
  loop.Post([] { ::PostQuitMessage(9); });
  EXPECT_EQ(loop.Run(), 9);
  EXPECT_TRUE(loop.IsEnding());
}

TEST_F(WindowsLoopsTest, AHandlerThatGoesOnForASecondAfterTheEndIsReported) {
  std::optional<int> status;
  loop.Lingering.Listen([&](int code) { status = code; });
  loop.Post([&] {
    loop.Quit(4);
    const DWORD start = ::GetTickCount();
    EXPECT_TRUE(WaitFor([&] { return status.has_value(); }));
    EXPECT_GE(::GetTickCount() - start, 900U);
  });
  EXPECT_EQ(loop.Run(), 4);
  EXPECT_EQ(status, 4);
}

TEST_F(WindowsLoopsTest, NoMessageOfTheEndStaysBehindRun) {
  loop.Post([this] { loop.Quit(1); });
  loop.Run();
  EXPECT_FALSE(IsQuitLeft());
}

TEST_F(WindowsLoopsTest, NoMessageOfTheEndStaysBehindALoopThatNeverRan) {
  {
    WindowsEventLoop other;
    other.Quit(1);
    EXPECT_TRUE(IsQuitLeft());
  }
  EXPECT_FALSE(IsQuitLeft());
}

TEST_F(WindowsLoopsTest, TimersAndJobsGoOnBehindABox) {
  PostBox();
  Timer other(loop.Timers(), 10, true);
  int ticks = 0;
  int jobs = 0;
  other.Tick.Listen([&] {
    if (!IsBoxUp()) return;
    loop.Post([&] { ++jobs; });
    if (++ticks == 5) loop.Quit(0);
  });
  EXPECT_EQ(loop.Run(), 0);
  EXPECT_EQ(ticks, 5);
  EXPECT_GE(jobs, 4);
}

TEST_F(WindowsLoopsTest, WaitingWhileTheProgramEndsSleeps) {
  loop.Quit(0);
  loop.WaitPass();
  const DWORD start = ::GetTickCount();
  for (int i = 0; i < 20; ++i) loop.WaitPass();
  // Of 10 ms each; the system's ticks are 15.6 ms.
  EXPECT_GE(::GetTickCount() - start, 100U);
}

}  // namespace
}  // namespace tarnvale::testing
