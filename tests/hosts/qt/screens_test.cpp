// A desktop of two screens, none of which lies in the desktop's corner.
#include <QGuiApplication>
#include <QScreen>

#include "tests/hosts/qt/qt_fixture.h"

namespace tarnvale {
namespace {

class QtScreens : public QtFixture {
 protected:
  QtScreens() {
    EXPECT_EQ(QGuiApplication::screens().size(), 2);
    EXPECT_NE(main_screen.topLeft(), QPoint(0, 0));
  }

  const QRect main_screen = QGuiApplication::primaryScreen()->geometry();
};

TEST_F(QtScreens, APopupStandsOnTheMainScreenWhereverThatLies) {
  window.Frame = WindowFrame::kPopup;
  window.ClientSize = {100, 60};
  window.LeftTwips = host.ScreenWidthTwips() - 100 * kTwipsPerPixel;
  window.TopTwips = host.ScreenHeightTwips() - 60 * kTwipsPerPixel;
  host.Adopt(window);
  window.Show();
  ASSERT_TRUE(WaitFor([&] { return Native().isVisible(); }));
  EXPECT_EQ(Native().size(), QSize(100, 60));
  EXPECT_EQ(Native().geometry().bottomRight(), main_screen.bottomRight());
}

TEST_F(QtScreens, AWindowOpensOnTheMainScreen) {
  window.ClientSize = {400, 300};
  host.Adopt(window);
  window.Show();
  ASSERT_TRUE(WaitFor([&] { return Native().isVisible(); }));
  EXPECT_TRUE(main_screen.contains(Native().geometry()));
}

}  // namespace
}  // namespace tarnvale
