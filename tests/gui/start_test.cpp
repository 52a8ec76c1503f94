// The start of the program as a person sees it.
#include <QTest>

#include <algorithm>
#include <cmath>

#include "hosts/qt/qt_pictures.h"
#include "tests/gui/gui_fixture.h"
#include "ui/palette.h"

namespace tarnvale::testing {
namespace {

using GuiStart = GuiTest;

TEST_F(GuiStart, TheSplashStandsForSevenSecondsAndTheWindowWaitsOnTheTaskBar) {
  Program& p = Start();
  ASSERT_TRUE(WaitUntilShown(p.Splash));
  EXPECT_TRUE(NativeOf(p.Splash).windowFlags().testFlag(Qt::FramelessWindowHint));
  QElapsedTimer since;
  since.start();
  ASSERT_TRUE(WaitFor([&] { return !NativeOf(p.Splash).isVisible(); }));
  EXPECT_GT(since.elapsed(), 6000);
  EXPECT_EQ(Starts("U3-Data.exe"), 1);
  EXPECT_FALSE(p.Agreement.IsLoaded());
  // There is no notification area here: what went into it could not come back.
  EXPECT_TRUE(NativeOf(p.form).isVisible());
  EXPECT_TRUE(NativeOf(p.form).isMinimized());
  EXPECT_FALSE(tray.IsPresent);
}

TEST_F(GuiStart, TheFirstStartAsksForTheAgreementBeforeTheWindowCanBeUsed) {
  Program& p = Start("");
  EndSplash();
  ASSERT_TRUE(WaitUntilShown(p.Agreement.Get()));
  p.form.State = WindowState::kNormal;
  ASSERT_TRUE(WaitUntilShown(p.form));
  ASSERT_TRUE(WaitFor([&] { return !p.form.Enabled; }));
  QTest::mouseClick(&WidgetOf(p.form.Label37), Qt::LeftButton);
  EXPECT_FALSE(p.form.List.GroupBox1.Visible) << "a click on a link of the disabled window";

  Click(p.Agreement.Get().chameleonButton1);
  EXPECT_FALSE(p.Agreement.IsLoaded());
  EXPECT_NE(Content("Data/Tarnvale.ini").find("Wizard=1"), std::string::npos);
  ASSERT_TRUE(WaitUntilActive(p.form));
  Click(p.form.Label37);
  EXPECT_TRUE(p.form.List.GroupBox1.Visible);
}

TEST_F(GuiStart, TheAcceptedAgreementHandsTheFocusToTheMainWindow) {
  Program& p = Start("");
  EndSplash();
  ASSERT_TRUE(WaitUntilShown(p.Agreement.Get()));
  Click(p.Agreement.Get().chameleonButton1);
  p.form.State = WindowState::kNormal;
  p.form.Show();
  ASSERT_TRUE(WaitUntilActive(p.form));
  EXPECT_EQ(p.form.Focused(), &p.form.Schedule.MaskEdBox1);
}

TEST_F(GuiStart, TheAgreementIsAcceptedByTheKeyboardAlone) {
  Program& p = Start("[Setup]\r\nWizard=0\r\n");
  EndSplash();
  Accept& agreement = p.Agreement.Get();
  ASSERT_TRUE(WaitUntilShown(agreement));
  NativeOf(agreement).activateWindow();
  ASSERT_TRUE(WaitUntilActive(agreement));
  EXPECT_FALSE(NativeOf(p.form).isVisible() && !NativeOf(p.form).isMinimized());
  ASSERT_TRUE(WaitFor([&] { return agreement.Focused() == &agreement.RichTextBox1; }));
  Press(Qt::Key_Tab);
  ASSERT_EQ(agreement.Focused(), &agreement.chameleonButton1);
  Press(Qt::Key_Space);
  EXPECT_FALSE(p.Agreement.IsLoaded());
  EXPECT_TRUE(p.form.Enabled);
}

TEST_F(GuiStart, DeclinedWithNoTheAgreementStaysAndWithYesTheProgramLeaves) {
  Program& p = Start("");
  EndSplash();
  ASSERT_TRUE(WaitUntilShown(p.Agreement.Get()));
  AnswerNextBox(QMessageBox::No);
  Click(p.Agreement.Get().chameleonButton2);
  EXPECT_EQ(box_text, "Selecting Decline Will Close Tarnvale. Continue ?");
  EXPECT_EQ(box_title, "Exit Tarnvale");
  ASSERT_TRUE(WaitUntilShown(p.Agreement.Get()));
  EXPECT_EQ(Starts("Quit.exe"), 0);
  p.form.Enabled = true;
  EXPECT_TRUE(WaitFor([&] { return !p.form.Enabled; })) << "it goes on disabling the window";

  AnswerNextBox(QMessageBox::Yes);
  Click(p.Agreement.Get().chameleonButton2);
  EXPECT_TRUE(WaitFor([&] { return Starts("Quit.exe") == 1; }));
}

TEST_F(GuiStart, ClosingTheAgreementAsksAsDecliningDoes) {
  Program& p = Start("");
  EndSplash();
  ASSERT_TRUE(WaitUntilShown(p.Agreement.Get()));
  AnswerNextBox(QMessageBox::No);
  NativeOf(p.Agreement.Get()).close();
  EXPECT_EQ(box_text, "Selecting Decline Will Close Tarnvale. Continue ?");
  EXPECT_TRUE(p.Agreement.IsLoaded());
  EXPECT_TRUE(WaitUntilShown(p.Agreement.Get()));
}

double LuminanceOf(QRgb color) {
  const auto linear = [](int channel) {
    const double value = channel / 255.0;
    return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(qRed(color)) + 0.7152 * linear(qGreen(color)) +
         0.0722 * linear(qBlue(color));
}

TEST_F(GuiStart, TheProgramsNameCanBeReadOnEveryPixelOfTheSplashBelowIt) {
  Program& p = Start();
  const auto& placements = p.Splash.Placements();
  const auto label = std::find_if(
      placements.begin(), placements.end(),
      [&](const Placement& placement) { return placement.control == &p.Splash.NameLabel; });
  ASSERT_NE(label, placements.end());
  const QSize size(p.Splash.ClientSize.width_px, p.Splash.ClientSize.height_px);
  const QImage picture = PictureNamed(p.Splash.Scenery.Picture).pixmap(size).toImage();
  ASSERT_EQ(picture.size(), size);
  const double name = LuminanceOf(palette::kHeading);
  for (int y = label->place.top_px; y < label->place.BottomPx(); ++y) {
    for (int x = label->place.left_px; x < label->place.RightPx(); ++x) {
      ASSERT_GE((LuminanceOf(picture.pixel(x, y)) + 0.05) / (name + 0.05), 4.5) << x << "," << y;
    }
  }
}

}  // namespace
}  // namespace tarnvale::testing
