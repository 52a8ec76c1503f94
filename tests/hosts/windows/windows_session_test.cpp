// The end of the user's session.
#include "tests/hosts/windows/program_fixture.h"

namespace tarnvale::testing {
namespace {

class WindowsSession : public WindowsProgramTest {
 protected:
  static HWND Listener() {
    HWND window = nullptr;
    do {
      window = ::FindWindowExW(nullptr, window, SessionEnd::kWindowClass.data(), nullptr);
    } while (window != nullptr &&
             ::GetWindowThreadProcessId(window, nullptr) != ::GetCurrentThreadId());
    return window;
  }
  /// What the system hears when it asks whether the session may end.
  static bool Asked() { return ::SendMessageW(Listener(), WM_QUERYENDSESSION, 0, 0) != 0; }

  void AnswerNextBox(WORD answer) {
    box.emplace(
        loop, [] { return Dialog() != nullptr; },
        [this, answer] {
          title = TextOf(Dialog());
          ::PostMessageW(Dialog(), WM_COMMAND, answer, 0);
        });
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
  ::SendMessageW(Listener(), WM_ENDSESSION, FALSE, 0);
  EXPECT_EQ(ends, 0);
  ::SendMessageW(Listener(), WM_ENDSESSION, TRUE, 0);
  EXPECT_EQ(ends, 1);
}

}  // namespace
}  // namespace tarnvale::testing
