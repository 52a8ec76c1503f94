#include "hosts/windows/windows_window.h"

#include <memory>
#include <vector>

#include "base/failure.h"
#include "tests/hosts/windows/windows_fixture.h"

namespace tarnvale::testing {
namespace {

class WindowsWindows : public WindowsWindowTest {
 protected:
  static LONG_PTR StyleOf(HWND of) { return ::GetWindowLongPtrW(of, GWL_STYLE); }
  static LONG_PTR ExtendedStyleOf(HWND of) { return ::GetWindowLongPtrW(of, GWL_EXSTYLE); }
};

TEST_F(WindowsWindows, ComeIntoBeingWhenTheyAreFirstShown) {
  host.Adopt(window);
  loop.WaitPass();
  EXPECT_EQ(Native(), nullptr);
}

TEST_F(WindowsWindows, HaveTheRecordsSizeCaptionAndFixedFrame) {
  window.Caption = "Tarnvale \xC3\xA4";
  Show();
  EXPECT_EQ(TextOf(Native()), L"Tarnvale \u00E4");
  RECT client{};
  ::GetClientRect(Native(), &client);
  EXPECT_EQ(client.right, window.ClientSize.width_px);
  EXPECT_EQ(client.bottom, window.ClientSize.height_px);
  EXPECT_EQ(StyleOf(Native()) & (WS_CAPTION | WS_THICKFRAME | WS_MINIMIZEBOX | WS_MAXIMIZEBOX),
            WS_CAPTION | WS_MINIMIZEBOX);
}

TEST_F(WindowsWindows, AreAsLargeAsTheDisplaysResolutionSays) {
  WindowsWindowHost fine(
      loop, files, boxes, [](const std::wstring&) { return Path(); }, 144);
  Window large;
  large.ClientSize = {101, 60};
  fine.Adopt(large);
  large.Show();
  ASSERT_TRUE(WaitFor([&] { return fine.NativeOf(large)->Native() != nullptr; }));
  RECT client{};
  ::GetClientRect(fine.NativeOf(large)->Native(), &client);
  EXPECT_EQ(client.right, 152);
  EXPECT_EQ(client.bottom, 90);
}

TEST_F(WindowsWindows, TheMenuBarComesOnTopOfTheClientSize) {
  MenuItem file("&File");
  MenuItem leave("E&xit");
  file.Add(leave);
  window.MenuBar = {&file};
  int clicks = 0;
  leave.Clicked.Listen([&] { ++clicks; });
  Show();
  RECT client{};
  ::GetClientRect(Native(), &client);
  EXPECT_EQ(client.bottom, window.ClientSize.height_px);
  const HMENU rows = ::GetSubMenu(::GetMenu(Native()), 0);
  ::SendMessageW(Native(), WM_COMMAND, ::GetMenuItemID(rows, 0), 0);
  EXPECT_EQ(clicks, 1);
}

TEST_F(WindowsWindows, OneThatIsNotOnTheTaskBarHasAnOwnerThatIsNeverSeen) {
  window.InTaskBar = false;
  Show();
  const HWND owner = ::GetWindow(Native(), GW_OWNER);
  ASSERT_NE(owner, nullptr);
  EXPECT_EQ(::IsWindowVisible(owner), 0);
  window.InTaskBar = true;
  EXPECT_TRUE(WaitFor([&] { return ::GetWindow(Native(), GW_OWNER) == nullptr; }));
  EXPECT_NE(::IsWindowVisible(Native()), 0);
}

TEST_F(WindowsWindows, NoneIsActiveWhileAnotherProgramIs) {
  Show();
  ::SendMessageW(Native(), WM_ACTIVATEAPP, FALSE, 0);
  EXPECT_TRUE(WaitFor([&] { return host.Surroundings().ActiveWindow.Get() == nullptr; }));
}

TEST_F(WindowsWindows, ADisabledWindowTakesNoInputAndDoesNotClose) {
  Show();
  window.Enabled = false;
  EXPECT_EQ(::IsWindowEnabled(Native()), 0);
  ::SendMessageW(Native(), WM_CLOSE, 0, 0);
  EXPECT_TRUE(window.Visible);
  window.Enabled = true;
  EXPECT_NE(::IsWindowEnabled(Native()), 0);
}

TEST_F(WindowsWindows, NoneTakesInputDuringABoxNotEvenOneThatIsShownMeanwhile) {
  Show();
  Window later;
  later.ClientSize = {50, 50};
  host.Adopt(later);
  {
    const WindowsWindowHost::Modal box(host, nullptr);
    EXPECT_EQ(::IsWindowEnabled(Native()), 0);
    later.Show();
    ASSERT_TRUE(WaitFor([&] { return NativeOf(later) != nullptr; }));
    EXPECT_EQ(::IsWindowEnabled(NativeOf(later)), 0);
    later.Enabled = false;
  }
  EXPECT_NE(::IsWindowEnabled(Native()), 0);
  EXPECT_EQ(::IsWindowEnabled(NativeOf(later)), 0) << "by its record";
}

TEST_F(WindowsWindows, APopupLiesWhereTheRecordSaysAboveAllAndTakesNoFocus) {
  Show();
  Window popup;
  popup.Frame = WindowFrame::kPopup;
  popup.ClientSize = {120, 80};
  popup.LeftTwips = 30 * kTwipsPerPixel;
  popup.TopTwips = 40 * kTwipsPerPixel;
  popup.Alpha = 200;
  host.Adopt(popup);
  popup.Show();
  ASSERT_TRUE(WaitFor(
      [&] { return NativeOf(popup) != nullptr && ::IsWindowVisible(NativeOf(popup)) != 0; }));
  RECT place{};
  ::GetWindowRect(NativeOf(popup), &place);
  EXPECT_EQ(place.left, 30);
  EXPECT_EQ(place.top, 40);
  EXPECT_EQ(place.right - place.left, 120) << "it has no frame";
  EXPECT_NE(ExtendedStyleOf(NativeOf(popup)) & WS_EX_TOPMOST, 0);
  BYTE alpha = 0;
  ASSERT_NE(::GetLayeredWindowAttributes(NativeOf(popup), nullptr, &alpha, nullptr), 0);
  EXPECT_EQ(alpha, 200);
  EXPECT_EQ(::GetActiveWindow(), Native());
  EXPECT_EQ(::SendMessageW(NativeOf(popup), WM_MOUSEACTIVATE, 0, 0), MA_NOACTIVATE);
  popup.TopTwips = 60 * kTwipsPerPixel;
  EXPECT_TRUE(WaitFor([&] {
    ::GetWindowRect(NativeOf(popup), &place);
    return place.top == 60;
  }));
}

TEST_F(WindowsWindows, APressOnAControlWhoseForerunnerCallsTheFocusBackIsLost) {
  CheckButton bad;
  CheckButton check;
  Place(bad);
  Place(check);
  Show();
  int left = 0;
  bad.LostFocus.Listen([&] {
    ++left;
    window.Focus(bad);
  });
  Click(check);
  EXPECT_EQ(left, 1);
  EXPECT_EQ(window.Focused(), &bad);
  EXPECT_FALSE(check.Value);
}

}  // namespace

// Outside of the fixture, whose tests fail by any fault.
TEST(WindowsWindowFaults, AFaultOfAHandlerIsReportedAndGoesNoFurther) {
  WindowsEventLoop loop;
  std::vector<int> faults;
  loop.Fault.Listen([&](const ProgramError& error) { faults.push_back(error.Number()); });
  FakeClock clock;
  FakeFiles files(clock);
  class Silent final : public MessageBoxes {
    BoxAnswer Show(const BoxRequest&) override { return BoxAnswer::kOk; }
  } boxes;
  WindowsWindowHost host(
      loop, files, boxes, [](const std::wstring&) { return Path(); }, 96);
  Window window;
  window.ClientSize = {50, 50};
  window.CloseAsked.Listen([](CloseRequest&) { throw ProgramError(5); });
  host.Adopt(window);
  window.Show();
  while (host.NativeOf(window)->Native() == nullptr) loop.WaitPass();
  ::SendMessageW(host.NativeOf(window)->Native(), WM_CLOSE, 0, 0);
  EXPECT_EQ(faults, std::vector<int>{5});
  EXPECT_TRUE(window.Visible);
}

}  // namespace tarnvale::testing
