// High contrast: the system's colours in the place of the program's.
#include <array>
#include <functional>

#include "app/windows_machine.h"
#include "kit/system_colors.h"
#include "tests/hosts/windows/scripted_system.h"
#include "tests/hosts/windows/windows_fixture.h"
#include "ui/owner_drawn.h"
#include "ui/palette.h"

namespace tarnvale::testing {
namespace {

constexpr COLORREF kBlackGround = RGB(0, 0, 0);
constexpr COLORREF kYellowText = RGB(255, 255, 0);

/// Shows what the host lends to it.
class Lent final : public OwnerDrawn {
 public:
  Kind AccessibleKind() const override { return Kind::kButton; }
  void OnLent(const LentByHost& lent) override { ambient = lent.ambient; }
  void Paint(Canvas& canvas, TextPainter&) override {
    ++paints;
    canvas.FillRect({0, 0, canvas.WidthPx(), canvas.HeightPx()}, ambient.back);
  }

  AmbientLook ambient;
  int paints = 0;
};

/// Has high contrast by switch.
class ScriptedContrast {
 public:
  using Ask = std::function<BOOL(BOOL(WINAPI*)(UINT, UINT, PVOID, UINT), UINT, UINT, PVOID, UINT)>;
  using Mix = std::function<DWORD(DWORD(WINAPI*)(int), int)>;

  /// The user switches it, and the system says so to each window on top.
  void Switch(bool on) {
    is_on = on;
    ::EnumThreadWindows(
        ::GetCurrentThreadId(),
        [](HWND top, LPARAM) -> BOOL {
          ::SendMessageW(top, WM_SYSCOLORCHANGE, 0, 0);
          return TRUE;
        },
        0);
  }
  bool is_on = false;
  Scripted<Ask, BOOL, UINT, UINT, PVOID, UINT> asks{
      "SystemParametersInfoW", &::SystemParametersInfoW,
      [this](auto* real, UINT what, UINT size, PVOID answer, UINT how) {
        if (what != SPI_GETHIGHCONTRAST) return real(what, size, answer, how);
        static_cast<HIGHCONTRASTW*>(answer)->dwFlags = is_on ? HCF_HIGHCONTRASTON : 0;
        return TRUE;
      }};
  Scripted<Mix, DWORD, int> mixes{
      "GetSysColor", &::GetSysColor, [this](auto* real, int which) -> DWORD {
        if (!is_on) return real(which);
        const bool is_ground = which == COLOR_BTNFACE || which == COLOR_WINDOW;
        return is_ground ? kBlackGround : which == COLOR_GRAYTEXT ? RGB(0, 255, 0) : kYellowText;
      }};
};

class WindowsContrast : public WindowsWindowTest, protected ScriptedContrast {
 protected:
  bool Shows(LONG x, LONG y, unsigned color) {
    return WaitFor([&] {
      ::UpdateWindow(Native());
      return ColorAt(x, y) == color;
    });
  }
};

TEST_F(WindowsContrast, WindowsAreInTheSystemsColoursWhileItIsOn) {
  PictureBox panel;
  panel.Background = PictureBox::Ground::kTaskPanel;
  PictureBox field;
  field.Background = PictureBox::Ground::kField;
  Place(panel);
  Place(field);
  Show();
  EXPECT_TRUE(Shows(5, 5, palette::kGround));
  EXPECT_TRUE(Shows(20, 11, palette::kPanelTop));
  Switch(true);
  EXPECT_TRUE(Shows(5, 5, 0x000000));
  EXPECT_TRUE(Shows(20, 11, 0x000000));
  EXPECT_TRUE(Shows(10, 130, 0xFFFF00)) << "the frame of a field";
  ASSERT_TRUE(host.HighContrast.Get().has_value());
  EXPECT_EQ((*host.HighContrast.Get())[COLOR_BTNTEXT], kYellowText);
  Switch(false);
  EXPECT_TRUE(Shows(5, 5, palette::kGround));
  EXPECT_FALSE(host.HighContrast.Get().has_value());
}

TEST_F(WindowsContrast, DrawnControlsAreDrawnAnewAndButtonsGetAFrameThatIsSeen) {
  Lent button;
  Place(button);
  Show();
  const RECT& area = PeerOf(button).Area();
  EXPECT_TRUE(Shows(area.left, area.top, palette::kGround));
  const int paints = button.paints;
  Switch(true);
  EXPECT_TRUE(Shows(area.left, area.top, 0xFFFF00));
  EXPECT_TRUE(Shows(area.left + 1, area.top + 1, 0x000000));
  EXPECT_GT(button.paints, paints);
  EXPECT_EQ(button.ambient.fore, Color{0x00FFFF});
  button.Enabled = false;
  EXPECT_TRUE(Shows(area.left, area.top, 0x00FF00)) << "out of use, in the system's colour of it";
}

TEST_F(WindowsContrast, TextsOutOfUseAndLinksKeepApart) {
  is_on = true;
  const LookColors colors(*HighContrastColors());
  EXPECT_EQ(colors.OfRole(TextRole::kBody, false), Color{0x00FF00});
  EXPECT_EQ(colors.OfRole(TextRole::kLink, false), Color{0x00FF00});
  EXPECT_EQ(colors.OfRole(TextRole::kNote, true), Color{0x00FFFF});
  is_on = false;
  EXPECT_FALSE(HighContrastColors().has_value());
  EXPECT_EQ(LookColors().OfRole(TextRole::kNote, true), ToColor(palette::kNote));
}

// The program's own machine, which joins what the system says with what the kit draws by.
TEST(WindowsMachineContrast, TheKitDrawsInTheColoursThatTheHostFollows) {
  ScriptedContrast contrast;
  contrast.is_on = true;
  WindowsMachine machine;
  EXPECT_EQ(SystemColor(kColorButtonFace), kBlackGround) << "it was on when the program started";
  contrast.Switch(false);
  EXPECT_EQ(SystemColor(kColorButtonFace), ToColor(palette::kGround));
  contrast.Switch(true);
  EXPECT_EQ(SystemColor(kColorButtonFace), kBlackGround);
  contrast.Switch(false);
}

}  // namespace
}  // namespace tarnvale::testing
