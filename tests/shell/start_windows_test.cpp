// The two windows of the start, put together with the main window as the
// program puts them together.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "shell/accept.h"
#include "shell/splash.h"
#include "tests/shell/form1_fixture.h"
#include "ui/window_slot.h"

namespace tarnvale::testing {
namespace {

const StartedProcess kHelper{StartKind::kProgram, "C:\\Program\\U3-Data.exe"};

class StartTest : public Form1Test {
 protected:
  StartTest() { machine.files.Write("C:\\Program\\U3-Data.exe", ""); }

  void GivenMark(const std::string& mark) { GivenSettings("[Setup]\r\nWizard=" + mark + "\r\n"); }

  /// The program's start, up to the end of the main window's load; then the
  /// window goes out of sight, as it does into the tray.
  void StartProgram() {
    splash_window.Start();
    form.Load();
    form.Hide();
  }

  std::string SavedMark() {
    return machine.profiles.Read("Setup", "Wizard", "none", 255, "C:\\Data\\Tarnvale.ini");
  }

  /// Starts with no mark and waits for the agreement.
  Accept& StartToAgreement() {
    GivenSettings("");
    StartProgram();
    machine.Advance(7s);
    EXPECT_TRUE(agreement.IsLoaded());
    return agreement.Get();
  }

  int declines = 0;
  int main_window_shows = 0;
  WindowSlot<Accept> agreement{machine.loop, machine.windows, [this] {
                                 return std::make_unique<Accept>(
                                     machine.Interfaces(),
                                     AgreementHooks{
                                         .DisableMainWindow = [this] { form.Enabled = false; },
                                         .EnableMainWindow = [this] { form.Enabled = true; },
                                         .ShowMainWindow = [this] { form.Show(); },
                                         .SaveChanges = [this] { engine.SaveChanges(); },
                                         .Decline = [this] { ++declines; },
                                     });
                               }};
  splash splash_window{machine.Interfaces(), engine.settings,
                       SplashHooks{.ShowMainWindow =
                                       [this] {
                                         ++main_window_shows;
                                         form.Visible = true;
                                       },
                                   .ShowAgreement = [this] { agreement.Get().Visible = true; }}};
};

// The splash.

using SplashTest = StartTest;

TEST_F(SplashTest, StartsTheHelperFirstAndIsShown) {
  splash_window.Start();
  EXPECT_EQ(machine.processes.Started(), std::vector{kHelper});
  EXPECT_TRUE(splash_window.Visible);
  EXPECT_EQ(splash_window.Caption.Get(), "Form2");
  EXPECT_EQ(splash_window.Frame, WindowFrame::kPlain);
}

TEST_F(SplashTest, ItsSceneryFillsIt) {
  const Placement& first = splash_window.Placements().front();
  EXPECT_EQ(first.control, &splash_window.Scenery);
  EXPECT_EQ(first.place,
            (Rect{0, 0, splash_window.ClientSize.width_px, splash_window.ClientSize.height_px}));
}

TEST_F(SplashTest, TheTimerIsDisabledUntilTheLoad) {
  EXPECT_FALSE(splash_window.Timer1.Enabled);
  EXPECT_EQ(splash_window.Timer1.IntervalMs(), 7000);
  splash_window.Start();
  EXPECT_TRUE(splash_window.Timer1.Enabled);
}

TEST_F(SplashTest, AHelperThatIsMissingOrCannotStartIsPassedOverInSilence) {
  machine.files.Remove("C:\\Program\\U3-Data.exe");
  GivenMark("1");
  StartProgram();
  EXPECT_EQ(machine.processes.Refused(), std::vector{kHelper});
  EXPECT_TRUE(machine.boxes.Shown().empty());
  machine.Advance(7s);
  EXPECT_EQ(main_window_shows, 1);
}

TEST_F(SplashTest, NothingIsDecidedBeforeSevenSeconds) {
  GivenMark("1");
  StartProgram();
  machine.Advance(6999ms);
  EXPECT_TRUE(splash_window.Visible);
  EXPECT_EQ(main_window_shows, 0);
  machine.Advance(1ms);
  EXPECT_FALSE(splash_window.Visible);
  EXPECT_EQ(main_window_shows, 1);
}

TEST_F(SplashTest, MarkOneShowsTheMainWindowAlone) {
  GivenMark("1");
  StartProgram();
  machine.Advance(7s);
  EXPECT_FALSE(splash_window.Visible);
  EXPECT_TRUE(form.Visible);
  EXPECT_TRUE(form.Enabled);
  EXPECT_FALSE(agreement.IsLoaded());
  EXPECT_FALSE(splash_window.Timer1.Enabled);
}

TEST_F(SplashTest, TheMainWindowIsSetVisibleWithItsStateLeftAlone) {
  GivenMark("1");
  StartProgram();
  machine.Advance(7s);
  EXPECT_EQ(form.State.Get(), WindowState::kMinimized);
}

TEST_F(SplashTest, MarkZeroAndAllElseInOrderBringsUpOnlyTheAgreement) {
  GivenSettings(
      "[When]\r\nAlwaysAt=12:00\r\n[Destiny]\r\nDir=C:\\Store\r\n[Setup]\r\nWizard=0\r\n"
      "[Entries]\r\n0=C:\\a.txt\r\n");
  StartProgram();
  // The one-shot timers of the first second show the window once more.
  machine.Advance(1s);
  form.Hide();
  machine.Advance(6s);
  EXPECT_FALSE(splash_window.Visible);
  EXPECT_FALSE(form.Visible);
  EXPECT_EQ(main_window_shows, 0);
  ASSERT_TRUE(agreement.IsLoaded());
  EXPECT_TRUE(agreement.Get().Visible);
  EXPECT_FALSE(splash_window.Timer1.Enabled);
  machine.Advance(100ms);
  EXPECT_FALSE(form.Enabled) << "hidden and disabled";
}

TEST_F(SplashTest, NoMarkBringsUpBothWindows) {
  GivenSettings("");
  StartProgram();
  machine.Advance(7s);
  EXPECT_FALSE(splash_window.Visible);
  EXPECT_TRUE(form.Visible);
  EXPECT_EQ(main_window_shows, 1);
  ASSERT_TRUE(agreement.IsLoaded());
  EXPECT_TRUE(agreement.Get().Visible);
  EXPECT_FALSE(splash_window.Timer1.Enabled);
}

TEST_F(SplashTest, AMarkThatIsNoNumberBringsUpBothWindows) {
  GivenMark("yes");
  StartProgram();
  machine.Advance(7s);
  EXPECT_EQ(main_window_shows, 1);
  ASSERT_TRUE(agreement.IsLoaded());
  EXPECT_TRUE(agreement.Get().Visible);
}

TEST_F(SplashTest, AMarkIsComparedAsANumberNotAsAText) {
  GivenMark("1.0");
  StartProgram();
  machine.Advance(7s);
  EXPECT_EQ(main_window_shows, 1);
  EXPECT_FALSE(agreement.IsLoaded());
}

TEST_F(SplashTest, MarkTwoLeavesTheSplashUpForGoodAndTheProgramRunsUnderIt) {
  GivenSettings(
      "[When]\r\nAlwaysAt=11:05\r\nDefault=False\r\n[Destiny]\r\nDir=C:\\Store\r\n"
      "[Setup]\r\nWizard=2\r\n[Entries]\r\n0=C:\\Work\\a.txt\r\n");
  machine.files.Write("C:\\Work\\a.txt", "one");
  machine.files.MakeFolder("C:\\Store");
  StartProgram();
  machine.Advance(10min);
  EXPECT_TRUE(splash_window.Visible);
  EXPECT_TRUE(splash_window.Timer1.Enabled);
  EXPECT_EQ(main_window_shows, 0);
  EXPECT_FALSE(agreement.IsLoaded());
  EXPECT_EQ(machine.files.Content("C:\\Store\\a.txt"), "one");
}

TEST_F(SplashTest, TheMarkIsTestedAgainEverySevenSeconds) {
  GivenMark("2");
  StartProgram();
  machine.Advance(14s);
  engine.settings.WizardMark = "1";
  machine.Advance(6999ms);
  EXPECT_TRUE(splash_window.Visible);
  machine.Advance(1ms);
  EXPECT_FALSE(splash_window.Visible);
  EXPECT_EQ(main_window_shows, 1);
}

TEST_F(SplashTest, ADecisionIsMadeOnce) {
  GivenMark("1");
  StartProgram();
  machine.Advance(1min);
  EXPECT_EQ(main_window_shows, 1);
}

TEST_F(SplashTest, ASplashThatAPersonClosedDecidesAllTheSame) {
  GivenMark("1");
  StartProgram();
  splash_window.Close();
  EXPECT_FALSE(splash_window.Visible);
  machine.Advance(7s);
  EXPECT_EQ(main_window_shows, 1);
}

TEST_F(SplashTest, AMainWindowThatFailsToShowDoesNotKeepTheDecisionOpen) {
  splash failing(machine.Interfaces(), engine.settings,
                 {.ShowMainWindow = [] { throw ProgramError(kInvalidCall); }, .ShowAgreement = {}});
  engine.settings.WizardMark = "1";
  failing.Start();
  machine.Advance(7s);
  EXPECT_FALSE(failing.Visible);
  EXPECT_FALSE(failing.Timer1.Enabled);
}

TEST_F(SplashTest, ASecondInstanceHasStartedTheHelperBeforeItEnds) {
  machine.processes.previous_instance = true;
  machine.boxes.Answer(BoxAnswer::kOk);
  StartProgram();
  EXPECT_TRUE(form.IsDying());
  EXPECT_EQ(machine.processes.Started(), std::vector{kHelper});
}

// The agreement.

using AgreementTest = StartTest;

TEST_F(AgreementTest, HasItsCaptionsAndATextThatCannotBeChanged) {
  Accept& window = StartToAgreement();
  EXPECT_EQ(window.Caption.Get(), "End User Liscence Agreement");
  EXPECT_EQ(window.chameleonButton1.Caption.Get(), " Accept End User Liscence Agreement");
  EXPECT_EQ(window.chameleonButton2.Caption.Get(), "Decline");
  EXPECT_EQ(window.RichTextBox1.Kind, TextKind::kMemo);
  EXPECT_TRUE(window.RichTextBox1.ReadOnly);
  EXPECT_NE(window.RichTextBox1.Text.Get().find("plain text"), std::string::npos)
      << "it says how the password is kept";
}

TEST_F(AgreementTest, DisablesTheMainWindowEveryTenthOfASecond) {
  StartToAgreement();
  EXPECT_TRUE(form.Enabled);
  machine.Advance(100ms);
  EXPECT_FALSE(form.Enabled);
  form.Enabled = true;
  machine.Advance(99ms);
  EXPECT_TRUE(form.Enabled);
  machine.Advance(1ms);
  EXPECT_FALSE(form.Enabled);
}

TEST_F(AgreementTest, AcceptanceEnablesAndShowsTheMainWindowSavesAndUnloads) {
  Accept& window = StartToAgreement();
  machine.Advance(1s);
  form.Hide();
  window.chameleonButton1.Click.Emit();
  EXPECT_TRUE(form.Enabled);
  EXPECT_TRUE(form.Visible);
  EXPECT_EQ(SavedMark(), "1");
  EXPECT_FALSE(window.Visible);
  EXPECT_FALSE(agreement.IsLoaded());
  EXPECT_TRUE(machine.boxes.Shown().empty()) << "saved without examining the settings";
}

TEST_F(AgreementTest, AcceptanceWritesAllOtherKeysAsTheFieldsAre) {
  Accept& window = StartToAgreement();
  form.Storage.Text1.Text = "C:\\Store";
  window.chameleonButton1.Click.Emit();
  const std::string saved = machine.files.Content("C:\\Data\\Tarnvale.ini");
  EXPECT_NE(saved.find("Dir=C:\\Store\r\n"), std::string::npos) << saved;
  EXPECT_NE(saved.find("AlwaysAt=???\r\n"), std::string::npos) << saved;
}

TEST_F(AgreementTest, AfterAcceptanceTheMainWindowStaysEnabled) {
  StartToAgreement().chameleonButton1.Click.Emit();
  machine.Advance(1min);
  EXPECT_TRUE(form.Enabled);
}

TEST_F(AgreementTest, ATickThatComesDueWhileSettingsAreSavedDoesNotDisableTheMainWindow) {
  Accept& window = StartToAgreement();
  form.List.List1.Rows.Append("C:\\a.txt");
  // A write of a list item that fails lets events run.
  machine.files.Remove("C:\\Data");
  machine.clock.Move(150ms);
  const int yields = machine.loop.YieldCount();
  window.chameleonButton1.Click.Emit();
  EXPECT_GT(machine.loop.YieldCount(), yields);
  EXPECT_TRUE(form.Enabled);
}

TEST_F(AgreementTest, TheNextStartAfterAcceptanceIsANormalOne) {
  StartToAgreement().chameleonButton1.Click.Emit();
  machine.Advance(1min);
  Engine next_engine{machine.Interfaces()};
  next_engine.LoadSettings();
  bool main_window_shown = false;
  bool agreement_shown = false;
  splash next(machine.Interfaces(), next_engine.settings,
              {.ShowMainWindow = [&] { main_window_shown = true; },
               .ShowAgreement = [&] { agreement_shown = true; }});
  next.Start();
  machine.Advance(7s);
  EXPECT_TRUE(main_window_shown);
  EXPECT_FALSE(agreement_shown);
}

TEST_F(AgreementTest, DeclineAsksAndYesDeclines) {
  Accept& window = StartToAgreement();
  machine.boxes.Expect("Selecting Decline Will Close Tarnvale. Continue ?", BoxIcon::kQuestion,
                       BoxAnswer::kYes);
  window.chameleonButton2.Click.Emit();
  EXPECT_EQ(machine.boxes.Shown()[0].title, "Exit Tarnvale");
  EXPECT_EQ(machine.boxes.Shown()[0].buttons, BoxButtons::kYesNo);
  EXPECT_EQ(declines, 1);
  EXPECT_EQ(machine.files.Content("C:\\Data\\Tarnvale.ini"), "") << "nothing is saved";
}

TEST_F(AgreementTest, DeclineWithNoLeavesTheAgreementUpAndTheMainWindowDisabled) {
  Accept& window = StartToAgreement();
  machine.boxes.Answer(BoxAnswer::kNo);
  machine.boxes.WhileOpen([&] { machine.Advance(1s); });
  window.chameleonButton2.Click.Emit();
  EXPECT_EQ(declines, 0);
  EXPECT_TRUE(window.Visible);
  form.Enabled = true;
  machine.Advance(100ms);
  EXPECT_FALSE(form.Enabled);
}

TEST_F(AgreementTest, NoBringsAnAgreementBackThatWentOutOfSight) {
  Accept& window = StartToAgreement();
  machine.boxes.Answer(BoxAnswer::kNo);
  machine.boxes.WhileOpen([&] { window.Hide(); });
  window.chameleonButton2.Click.Emit();
  EXPECT_TRUE(window.Visible);
}

TEST_F(AgreementTest, WithoutTheProgramThatEndsItADeclinedStartKeepsTheAgreementUp) {
  Accept& window = StartToAgreement();
  machine.boxes.Answer(BoxAnswer::kYes);
  window.chameleonButton2.Click.Emit();
  machine.Advance(100ms);
  EXPECT_TRUE(window.Visible);
  EXPECT_FALSE(form.Enabled);
}

TEST_F(AgreementTest, TheCloseBoxAsksAsDeclineDoes) {
  Accept& window = StartToAgreement();
  machine.boxes.Expect("Selecting Decline Will Close Tarnvale. Continue ?", BoxIcon::kQuestion,
                       BoxAnswer::kNo);
  EXPECT_FALSE(window.Close());
  EXPECT_TRUE(window.Visible);
  EXPECT_EQ(declines, 0);
  machine.boxes.Answer(BoxAnswer::kYes);
  EXPECT_FALSE(window.Close());
  EXPECT_EQ(declines, 1);
  machine.Advance(100ms);
  EXPECT_FALSE(form.Enabled) << "nothing was accepted";
}

}  // namespace
}  // namespace tarnvale::testing
