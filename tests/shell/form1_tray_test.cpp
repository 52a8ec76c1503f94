#include <gmock/gmock.h>

#include "tests/shell/form1_fixture.h"

namespace tarnvale::testing {
namespace {

class Form1TrayTest : public Form1Test {
 protected:
  void Start() {
    machine.files.Write("C:\\Program\\Quit.exe", "");
    Load();
  }
  // The host reports in the next pass that it was minimised.
  void Load() {
    machine.windows.Adopt(form);
    form.Load();
    machine.loop.Yield();
  }
  int Quits() const {
    int count = 0;
    for (const StartedProcess& process : machine.processes.Started()) {
      count += process.text == "C:\\Program\\Quit.exe" ? 1 : 0;
    }
    return count;
  }
};

TEST_F(Form1TrayTest, TheWindowStartsInTheTray) {
  Start();
  EXPECT_TRUE(machine.tray.HasIcon());
  EXPECT_FALSE(form.Visible);
  EXPECT_FALSE(form.InTaskBar);
  EXPECT_FALSE(machine.tray.Log().back().record.icon.empty());
}

TEST_F(Form1TrayTest, TheTipFollowsTheSchedule) {
  Start();
  machine.Advance(2s);
  EXPECT_THAT(form.gSysTray.ToolTip(), ::testing::StartsWith("Tarnvale [Next Scedule On: "));
  EXPECT_THAT(form.gSysTray.ToolTip(), ::testing::EndsWith("]"));
}

TEST_F(Form1TrayTest, TheRightButtonOpensTheMenuWithBackupInBold) {
  Start();
  machine.windows.ChooseInMenu(&form.mnufiles);
  machine.tray.Mouse(kTrayRightUp);
  EXPECT_THAT(machine.windows.PoppedUp(), ::testing::ElementsAre(&form.mnuMenu));
  EXPECT_TRUE(form.mnuBackup.IsDefault);
  EXPECT_EQ(VisibleFrames(), std::vector<int>{1});
  EXPECT_TRUE(form.Visible);
}

TEST_F(Form1TrayTest, AnAreaThatOpensMenusByItselfGetsTheSameOneWithTheIcon) {
  Start();
  ASSERT_EQ(machine.tray.Log().back().command, TrayCommand::kAdd);
  EXPECT_EQ(machine.tray.Log().back().record.menu, &form.mnuMenu);
}

TEST_F(Form1TrayTest, ARightClickWhileTheMenuIsOpenOpensNoSecondOne) {
  Start();
  machine.windows.WhileMenuIsOpen([&] { machine.tray.Mouse(kTrayRightUp); });
  machine.tray.Mouse(kTrayRightUp);
  EXPECT_EQ(machine.windows.PoppedUp().size(), 1U);
}

TEST_F(Form1TrayTest, ClosingAndAnsweringNoRestoresTheWindow) {
  Start();
  form.Hide();
  machine.boxes.Expect("Are You Sure You Want You Exit Tarnvale Now?", BoxIcon::kQuestion,
                       BoxAnswer::kNo);
  EXPECT_FALSE(form.Close());
  EXPECT_EQ(machine.boxes.Shown().at(0).title, "Exit Tarnvale");
  EXPECT_TRUE(form.Visible);
  EXPECT_TRUE(machine.tray.HasIcon());
  EXPECT_EQ(Quits(), 0);
}

TEST_F(Form1TrayTest, ClosingAndAnsweringYesRemovesTheIconAndStartsTheCompanion) {
  Start();
  machine.boxes.Answer(BoxAnswer::kYes);
  EXPECT_TRUE(form.Close());
  EXPECT_FALSE(machine.tray.HasIcon());
  EXPECT_EQ(Quits(), 1);
}

TEST_F(Form1TrayTest, ExitAndDeclineLeaveWithoutAQuestion) {
  Start();
  form.mnuQuit.Clicked.Emit();
  EXPECT_FALSE(machine.tray.HasIcon());
  EXPECT_EQ(Quits(), 1);
  form.Decline();
  EXPECT_EQ(Quits(), 2);
  EXPECT_TRUE(machine.boxes.Shown().empty());
}

TEST_F(Form1TrayTest, WithoutTheCompanionTheProgramGoesOnWithoutAnIcon) {
  Load();
  ASSERT_TRUE(machine.tray.HasIcon());
  form.mnuQuit.Clicked.Emit();
  EXPECT_FALSE(machine.tray.HasIcon());
  EXPECT_TRUE(machine.boxes.Shown().empty());
  ASSERT_EQ(form.gSysTray.ToolTip(), "");
  machine.Advance(2s);
  EXPECT_THAT(form.gSysTray.ToolTip(), ::testing::StartsWith("Tarnvale [Next Scedule On: "));
  EXPECT_FALSE(machine.loop.IsEnding());
}

TEST_F(Form1TrayTest, NoWayOutSavesSettings) {
  Start();
  const std::string before = machine.files.Content("C:\\Data\\Tarnvale.ini");
  form.Storage.Text1.Text = "C:\\Elsewhere";
  form.mnuQuit.Clicked.Emit();
  machine.boxes.Answer(BoxAnswer::kYes);
  form.Close();
  EXPECT_EQ(machine.files.Content("C:\\Data\\Tarnvale.ini"), before);
}

TEST_F(Form1TrayTest, ADataFolderThatGoesAwayTakesTheIconAndStartsTheCompanionAgainAndAgain) {
  Start();
  machine.Advance(5100ms);
  machine.files.Remove("C:\\Data");
  machine.Advance(1s);
  EXPECT_FALSE(machine.tray.HasIcon());
  EXPECT_GE(Quits(), 9);
}

TEST_F(Form1TrayTest, TheToolLinksOpenTheirWindows) {
  std::vector<std::string> opened;
  const auto notes = [&opened](const char* name) {
    return [&opened, name] { opened.emplace_back(name); };
  };
  form.Tools.ShowUserData = notes("userdata");
  form.Tools.ShowSplitter = notes("frmMain");
  form.Tools.ShowRegistry = notes("registry");
  form.Tools.ShowTransfer = notes("Main");
  form.Tools.ShowCompressor = notes("compression");
  form.Tools.ShowCompressorPanel = notes("compression panel");
  for (Label* link : {&form.Label34, &form.Label42, &form.Label56, &form.Label46,
                      &form.Progress.Label47, &form.Label41}) {
    link->Clicked.Emit();
  }
  for (MenuItem* row :
       {&form.mnudata, &form.mnusplitter, &form.mnuregistry, &form.mnuFTP, &form.mnuCompressor}) {
    row->Clicked.Emit();
  }
  form.Advanced.chameleonButton7.Click.Emit();
  EXPECT_THAT(opened, ::testing::ElementsAre("userdata", "frmMain", "registry", "Main",
                                             "compression", "compression panel", "userdata",
                                             "frmMain", "registry", "Main", "compression", "Main"));
}

TEST_F(Form1TrayTest, TheFolderPickerFillsTheCompressionFolderUnlessItIsCancelled) {
  machine.dialogs.Choose(FakeDialogs::Kind::kFolder, "C:\\Archives");
  form.Advanced.chameleonButton4.Click.Emit();
  EXPECT_EQ(engine.settings.CompressDir.Get(), "C:\\Archives");
  EXPECT_EQ(machine.dialogs.Seen().at(0).folder.prompt, "Select a directory:");
  machine.dialogs.Cancel(FakeDialogs::Kind::kFolder);
  form.Advanced.chameleonButton4.Click.Emit();
  EXPECT_EQ(engine.settings.CompressDir.Get(), "C:\\Archives");
}

TEST_F(Form1TrayTest, TheTestReportSendsItsTextAndSavesNothing) {
  Start();
  const std::string before = machine.files.Content("C:\\Data\\Tarnvale.ini");
  std::string body;
  form.Tools.SendTestReport = [&](const std::string& text) { body = text; };
  form.Advanced.chameleonButton6.Click.Emit();
  EXPECT_EQ(body, "This Is A Test E-Mail Report From Tarnvale : Your Settings Have Been Confirmed");
  EXPECT_EQ(machine.files.Content("C:\\Data\\Tarnvale.ini"), before);
}

}  // namespace
}  // namespace tarnvale::testing
