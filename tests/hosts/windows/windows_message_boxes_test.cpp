#include "hosts/windows/windows_message_boxes.h"

#include "tests/hosts/windows/scripted_system.h"
#include "tests/hosts/windows/windows_fixture.h"

namespace tarnvale::testing {
namespace {

class WindowsMessagesTest : public WindowsWindowTest {
 protected:
  /// Shows a box and calls `act` as soon as it is up.
  BoxAnswer Answer(const BoxRequest& request, const std::function<void(HWND box)>& act) {
    const Once acts(
        loop, [] { return Dialog() != nullptr; }, [&] { act(Dialog()); });
    const BoxAnswer answer = boxes.Show(request);
    EXPECT_TRUE(acts.HasActed());
    return answer;
  }
  static void Close(HWND box) { ::PostMessageW(box, WM_SYSCOMMAND, SC_CLOSE, 0); }

  const BoxRequest yes_no{.text = "Proceed?", .buttons = BoxButtons::kYesNo};
  const BoxRequest ok_cancel{.text = "Proceed?", .buttons = BoxButtons::kOkCancel};
};

TEST_F(WindowsMessagesTest, ShowsTheIconAndTheButtons) {
  std::vector<UINT> styles;
  const Scripted shown("MessageBoxW", &::MessageBoxW,
                       [&](auto, HWND, LPCWSTR, LPCWSTR, UINT style) {
                         styles.push_back(style);
                         return IDOK;
                       });
  for (const BoxIcon icon : {BoxIcon::kNone, BoxIcon::kInformation, BoxIcon::kQuestion,
                             BoxIcon::kExclamation, BoxIcon::kStop}) {
    boxes.Show({.text = "?", .icon = icon, .buttons = BoxButtons::kYesNo});
  }
  EXPECT_EQ(styles, (std::vector<UINT>{0x04, 0x44, 0x24, 0x34, 0x14}));
}

TEST_F(WindowsMessagesTest, TheProgramsEndClosesABoxOverAnOpenMenuAndTheMenuToo) {
  Show();
  MenuItem menu;
  MenuItem row("Row");
  menu.Add(row);
  BoxAnswer answer = BoxAnswer::kYes;
  const Once asks(
      loop, [] { return IsMenuOpen(); }, [&] { answer = boxes.Show(yes_no); });
  const Once ends(
      loop, [] { return Dialog() != nullptr; }, [&] { loop.Quit(5); });
  bool is_back = false;
  loop.Post([&] {
    host.PopUp(menu);
    is_back = true;
  });
  EXPECT_EQ(loop.Run(), 5);
  EXPECT_EQ(answer, BoxAnswer::kNo);
  EXPECT_TRUE(is_back);
  EXPECT_EQ(Dialog(), nullptr);
  EXPECT_FALSE(IsMenuOpen());
}

// Without a parent's number of its own, the system gives that of OK.
TEST_F(WindowsMessagesTest, TheProgramsEndAnswersNoOrCancel) {
  std::vector<BoxAnswer> answers;
  loop.Post([&] {
    for (const BoxRequest& request : {yes_no, ok_cancel}) answers.push_back(boxes.Show(request));
  });
  const Once quits(
      loop, [] { return Dialog() != nullptr; }, [&] { loop.Quit(3); });
  EXPECT_EQ(loop.Run(), 3);
  EXPECT_EQ(answers, (std::vector{BoxAnswer::kNo, BoxAnswer::kCancel}));
}

TEST_F(WindowsMessagesTest, NoWindowTakesInputBehindABoxAndAllDoAfterIt) {
  Window other;
  Window disabled;
  disabled.Enabled = false;
  for (Window* shown : {&other, &disabled}) {
    shown->ClientSize = {100, 100};
    host.Adopt(*shown);
    shown->Show();
    ASSERT_TRUE(WaitFor([&] { return host.NativeOf(*shown)->Native() != nullptr; }));
  }
  Show();
  const auto takes_input = [&](Window& any) {
    return ::IsWindowEnabled(host.NativeOf(any)->Native()) != 0;
  };
  Window late;
  late.ClientSize = {100, 100};
  Answer({.text = "?"}, [&](HWND box) {
    EXPECT_EQ(::GetWindow(box, GW_OWNER), Native());
    EXPECT_FALSE(takes_input(window));
    EXPECT_FALSE(takes_input(other));
    host.Adopt(late);
    late.Show();
    ASSERT_TRUE(WaitFor([&] { return host.NativeOf(late)->Native() != nullptr; }));
    EXPECT_FALSE(takes_input(late));
    Close(box);
  });
  EXPECT_TRUE(takes_input(window));
  EXPECT_TRUE(takes_input(other));
  EXPECT_TRUE(takes_input(late));
  EXPECT_FALSE(takes_input(disabled));
}

TEST_F(WindowsMessagesTest, ABoxOfATimerIsAboveTheBoxThatIsUp) {
  Show();
  HWND first = nullptr;
  HWND owner = nullptr;
  Answer({.text = "first"}, [&](HWND box) {
    first = box;
    Answer({.text = "second"}, [&](HWND second) {
      owner = ::GetWindow(second, GW_OWNER);
      EXPECT_FALSE(::IsWindowEnabled(first));
      Close(second);
    });
    EXPECT_TRUE(::IsWindowEnabled(first));
    EXPECT_FALSE(::IsWindowEnabled(Native()));
    Close(first);
  });
  EXPECT_EQ(owner, first);
  EXPECT_TRUE(::IsWindowEnabled(Native()));
}

}  // namespace
}  // namespace tarnvale::testing
