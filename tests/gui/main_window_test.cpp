// The main window as a person uses it.
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QTest>

#include "hosts/qt/qt_text.h"
#include "tests/gui/gui_fixture.h"

namespace tarnvale::testing {
namespace {

class GuiMainWindow : public GuiTest {};

TEST_F(GuiMainWindow, APersonMakesAListChoosesThePlaceSetsTheScheduleSavesAndBacksUp) {
  Form1& form = StartAndBringUp().form;
  Click(form.Label37);
  ChooseFolder(form.List.ListTree, {"Work"});
  EXPECT_EQ(form.Focused(), &form.List.ListTree);
  ASSERT_TRUE(WaitFor([&] { return form.List.File1.Rows().size() == 2; }));
  ClickRow(form.List.File1, 1);
  Click(form.List.Command5);
  EXPECT_EQ(form.List.List1.Rows.Rows(), std::vector<std::string>{"C:\\Work\\b.txt"});

  Click(form.Label36);
  ChooseFolder(form.Storage.StorageTree, {"Store"});
  Click(form.Storage.chameleonButton1);
  EXPECT_EQ(form.Storage.Text1.Text.Get(), "C:\\Store");

  Click(form.Label44);
  Click(form.Schedule.Optionbutton1);
  QTest::keyClicks(&WidgetOf(form.Schedule.MaskEdBox1), "1234");
  EXPECT_EQ(form.Schedule.MaskEdBox1.Text.Get(), "12:34");
  QTest::keyClick(&WidgetOf(form.Schedule.MaskEdBox1), Qt::Key_Tab);
  EXPECT_TRUE(WaitFor([&] { return form.Schedule.Label60.Caption.Get().find("12:34") == 0; }))
      << form.Schedule.Label60.Caption.Get();

  AnswerNextBox(QMessageBox::Ok);
  Click(form.Label45);
  EXPECT_EQ(box_text, "Your Tarnvale Settings Have Been Sucessfully Saved");
  const std::string saved = Content("Data/Tarnvale.ini");
  for (const char* line :
       {"AlwaysAt=12:34\r\n", "Default=False\r\n", "Dir=C:\\Store\r\n", "0=C:\\Work\\b.txt\r\n"}) {
    EXPECT_NE(saved.find(line), std::string::npos) << line << " in\n" << saved;
  }

  AnswerNextBox(QMessageBox::Yes);
  Click(form.Label49);
  EndPauseBeforeRun();
  ASSERT_TRUE(WaitFor([&] { return form.Progress.Label14.Caption.Get().starts_with("Success"); }));
  EXPECT_EQ(Content("Store/b.txt"), "two");
  EXPECT_TRUE(form.Progress.GroupBox3.Visible);
  EXPECT_NE(Content("Data/Backup Log.txt").find("Backup Status: OK!"), std::string::npos);
}

TEST_F(GuiMainWindow, TabVisitsEveryFieldOfTheScheduleInItsOrder) {
  Form1& form = StartAndBringUp().form;
  form.Focus(form.Schedule.Optionbutton1);
  std::vector<Control*> visited;
  for (int step = 0; step < 4; ++step) {
    Press(Qt::Key_Tab);
    visited.push_back(form.Focused());
  }
  EXPECT_EQ(visited,
            (std::vector<Control*>{&form.Schedule.MaskEdBox1, &form.Schedule.Optionbutton2,
                                   &form.Schedule.MaskEdBox2, &form.Schedule.Optionbutton3}));
}

TEST_F(GuiMainWindow, ABadIntervalBringsItsBoxAndTheFocusBack) {
  Form1& form = StartAndBringUp().form;
  Click(form.Schedule.Optionbutton2);
  QTest::keyClicks(&WidgetOf(form.Schedule.MaskEdBox2), "2500");
  AnswerNextBox(QMessageBox::Ok);
  Click(form.Schedule.Checkbox2[0]);
  EXPECT_EQ(box_text, "An Invalid Interval Has Been Entered.");
  EXPECT_EQ(program->engine.settings.EachTime, 0);
  EXPECT_EQ(form.Focused(), &form.Schedule.MaskEdBox2);
  EXPECT_FALSE(form.Schedule.Checkbox2[0].Value) << "the click that was interrupted does nothing";
}

TEST_F(GuiMainWindow, AWindowBroughtUpRightAfterTheStartStaysUp) {
  Form1& form = Start().form;
  ASSERT_TRUE(WaitFor([&] { return NativeOf(form).isVisible(); }));
  // As the task bar does it: without the record.
  NativeOf(form).setWindowState(Qt::WindowActive);
  // The timers of the first second show the window again.
  ASSERT_TRUE(WaitFor([&] { return !program->engine.timers[EngineTimer::kStorageTree].Enabled; }));
  ASSERT_TRUE(WaitFor([&] { return form.State.Get() == WindowState::kNormal; }));
  EXPECT_FALSE(NativeOf(form).isMinimized());
}

TEST_F(GuiMainWindow, AnIdleScreenIsNotDrawnAgain) {
  Form1& form = StartAndBringUp().form;
  Click(form.Label37);
  form.Focus(form.List.Command1);  // no blinking caret
  EXPECT_EQ(PaintsWhileIdle(), 0);
}

TEST_F(GuiMainWindow, ARunningBarIsDrawnSixtyTimesASecondAtMost) {
  Form1& form = StartAndBringUp().form;
  form.Schedule.GroupBox4.Visible = false;
  form.Progress.GroupBox3.Visible = true;
  ASSERT_TRUE(WaitFor([&] { return WidgetOf(form.Progress.XP_ProgressBar1).isVisible(); }));
  PaintCounter paints;
  WidgetOf(form.Progress.XP_ProgressBar1).installEventFilter(&paints);
  QElapsedTimer since;
  since.start();
  int changes = 0;
  while (since.elapsed() < 1000) {
    program->engine.run.CopyBar = ++changes % 100;
    loop.Yield();
  }
  const double seconds = static_cast<double>(since.elapsed()) / 1000;
  std::printf("a running bar: %.0f changes and %.1f draws a second\n", changes / seconds,
              paints.count / seconds);
  EXPECT_GT(paints.count, 0);
  EXPECT_LE(paints.count / seconds, 61.0);
}

}  // namespace
}  // namespace tarnvale::testing
