// The end of the user's session.
#include "tests/hosts/windows/program_fixture.h"

namespace tarnvale::testing {
namespace {

class WindowsSession : public WindowsProgramTest {
 protected:
  /// As the system does it: to each window on top, until one says no.
  static bool Asked() {
    return ::EnumThreadWindows(::GetCurrentThreadId(), &SaysYes, WM_QUERYENDSESSION) != 0;
  }
  static void Told(bool ends) {
    ::EnumThreadWindows(::GetCurrentThreadId(), ends ? &HearsTheEnd : &HearsNoEnd, 0);
  }

  void AnswerNextBox(WORD answer) {
    box.emplace(
        loop, [] { return Dialog() != nullptr; },
        [this, answer] {
          title = TextOf(Dialog());
          ::PostMessageW(Dialog(), WM_COMMAND, answer, 0);
        });
  }

  static BOOL CALLBACK SaysYes(HWND window, LPARAM question) {
    return ::SendMessageW(window, static_cast<UINT>(question), 0, 0) != 0 ? TRUE : FALSE;
  }
  static BOOL CALLBACK HearsTheEnd(HWND window, LPARAM) {
    ::SendMessageW(window, WM_ENDSESSION, TRUE, 0);
    return TRUE;
  }
  static BOOL CALLBACK HearsNoEnd(HWND window, LPARAM) {
    ::SendMessageW(window, WM_ENDSESSION, FALSE, 0);
    return TRUE;
  }

  std::optional<Once> box;
  std::wstring title;
};

TEST_F(WindowsSession, TheMainWindowAsksAndANoKeepsTheSession) {
  Form1& f = StartAndBringUp().form;
  AnswerNextBox(IDNO);
  EXPECT_FALSE(Asked());
  EXPECT_EQ(title, L"Exit Tarnvale");
  EXPECT_TRUE(f.Visible);
}

TEST_F(WindowsSession, AYesLeavesByTheWayOut) {
  Form1& f = StartAndBringUp().form;
  AnswerNextBox(IDYES);
  EXPECT_TRUE(Asked());
  EXPECT_TRUE(box->HasActed());
  EXPECT_FALSE(f.Visible);
}

TEST_F(WindowsSession, AWindowThatWasNeverShownAsksToo) {
  Start();
  AnswerNextBox(IDNO);
  EXPECT_FALSE(Asked());
  EXPECT_TRUE(box->HasActed());
}

TEST_F(WindowsSession, AnOpenQuestionHoldsNothingUp) {
  StartAndBringUp();
  bool asked = false;
  const Once answer(
      loop, [] { return Dialog() != nullptr; },
      [&] {
        asked = Asked();
        ::PostMessageW(Dialog(), WM_COMMAND, IDOK, 0);
      });
  screen->boxes.Show({.text = "Something is said."});
  EXPECT_TRUE(asked);
}

TEST_F(WindowsSession, OnlyAnEndThatComesIsOne) {
  StartAndBringUp();
  int ends = 0;
  screen->host.SessionEnds.Listen([&] { ++ends; });
  Told(false);
  EXPECT_EQ(ends, 0);
  Told(true);
  EXPECT_EQ(ends, 1);
}

}  // namespace
}  // namespace tarnvale::testing
