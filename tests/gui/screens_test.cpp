// The screens of the main window and the windows that it opens, by clicks and
// menus.
#include <gmock/gmock.h>

#include <QAbstractItemView>
#include <QTest>

#include "tests/gui/gui_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

/// Settings with which a save raises no objection.
constexpr const char* kComplete =
    "[When]\r\nEach=01:00\r\nDefault=True\r\n[Alert]\r\nShow=True\r\n[Setup]\r\nWizard=1\r\n"
    "[Destiny]\r\nDir=C:\\Store\r\nBackup=\r\n[Entries]\r\n0=C:\\Work\\a.txt\r\n";

class GuiScreens : public GuiTest {
 protected:
  /// The screens that can be seen on the display.
  std::vector<GroupBox*> Seen() {
    std::vector<GroupBox*> seen;
    Form1& f = program->form;
    for (GroupBox* screen :
         {&f.List.GroupBox1, &f.Storage.GroupBox2, &f.Progress.GroupBox3, &f.Schedule.GroupBox4,
          &f.General.GroupBox5, &f.Advanced.GroupBox6, &f.Restore.GroupBox15}) {
      if (WidgetOf(*screen).isVisible()) seen.push_back(screen);
    }
    return seen;
  }
  /// A person sees this screen, not one that covers it.
  bool LiesInFront(GroupBox& screen) {
    QWidget& own = WidgetOf(screen);
    const QWidget* front = own.parentWidget()->childAt(own.geometry().center());
    return front == &own || own.isAncestorOf(front);
  }
};

TEST_F(GuiScreens, EachLinkShowsItsScreen) {
  Form1& f = StartAndBringUp().form;
  EXPECT_THAT(Seen(), ElementsAre(&f.Schedule.GroupBox4));
  const std::pair<Label*, GroupBox*> links[] = {
      {&f.Label37, &f.List.GroupBox1},     {&f.Label36, &f.Storage.GroupBox2},
      {&f.Label38, &f.General.GroupBox5},  {&f.Label39, &f.Advanced.GroupBox6},
      {&f.Label51, &f.Restore.GroupBox15}, {&f.Label44, &f.Schedule.GroupBox4}};
  for (const auto& [link, screen] : links) {
    Click(*link);
    EXPECT_THAT(Seen(), ElementsAre(screen)) << link->Caption.Get();
  }
}

TEST_F(GuiScreens, EachMenuRowShowsItsScreen) {
  Form1& f = StartAndBringUp().form;
  const std::pair<std::vector<QString>, GroupBox*> rows[] = {
      {{"File", "Backup Wizard", "Backup Files"}, &f.List.GroupBox1},
      {{"File", "Backup Wizard", "Storage Location"}, &f.Storage.GroupBox2},
      {{"File", "Additional Features", "General & Backup Settings"}, &f.General.GroupBox5},
      {{"File", "Additional Features", "Advanced Auto Settings"}, &f.Advanced.GroupBox6},
      {{"File", "Backup Wizard", "Schedule"}, &f.Schedule.GroupBox4}};
  for (const auto& [captions, screen] : rows) {
    ChooseInMenuBar(captions);
    EXPECT_THAT(Seen(), ElementsAre(screen)) << captions.back().toStdString();
  }
}

TEST_F(GuiScreens, TheGeneralLinkLeavesTheRestoreScreenBehindItsOwn) {
  Form1& f = StartAndBringUp().form;
  Click(f.Label51);
  Click(f.Label38);
  EXPECT_THAT(Seen(), ElementsAre(&f.General.GroupBox5, &f.Restore.GroupBox15));
  EXPECT_TRUE(LiesInFront(f.General.GroupBox5));
}

TEST_F(GuiScreens, AMenuRowLeavesTheRestoreScreenBehindItsOwn) {
  Form1& f = StartAndBringUp().form;
  const std::pair<std::vector<QString>, GroupBox*> rows[] = {
      {{"File", "Backup Wizard", "Backup Files"}, &f.List.GroupBox1},
      {{"File", "Backup Wizard", "Storage Location"}, &f.Storage.GroupBox2},
      {{"File", "Additional Features", "Advanced Auto Settings"}, &f.Advanced.GroupBox6},
      {{"File", "Backup Wizard", "Schedule"}, &f.Schedule.GroupBox4}};
  for (const auto& [captions, screen] : rows) {
    Click(f.Label51);
    EXPECT_TRUE(LiesInFront(f.Restore.GroupBox15));
    ChooseInMenuBar(captions);
    EXPECT_THAT(Seen(), ElementsAre(screen, &f.Restore.GroupBox15))
        << captions.back().toStdString();
    EXPECT_TRUE(LiesInFront(*screen)) << captions.back().toStdString();
  }
}

TEST_F(GuiScreens, FilesAndFoldersComeOntoTheListAndGoFromIt) {
  Write("Work/c.txt", "three");
  Form1& f = StartAndBringUp().form;
  Click(f.Label37);
  ChooseFolder(f.List.ListTree, {"Work"});
  ASSERT_TRUE(WaitFor([&] { return f.List.File1.Rows().size() == 3; }));
  Click(f.List.Command4);
  Click(f.List.CheckBox3);
  Click(f.List.Command4);
  ClickRow(f.List.File1, 0);
  ClickRow(f.List.File1, 1, Qt::ControlModifier);
  Click(f.List.Command5);
  DoubleClickRow(f.List.File1, 2);
  const auto& rows = f.List.List1.Rows;
  EXPECT_THAT(rows.Rows(), ElementsAre("C:\\Work\\*.*", "C:\\Work\\*+++++*", "C:\\Work\\a.txt",
                                       "C:\\Work\\b.txt", "C:\\Work\\c.txt"));

  ClickRow(f.List.List1, 0);
  ClickRow(f.List.List1, 2, Qt::ControlModifier);
  Click(f.List.Command1);
  EXPECT_THAT(rows.Rows(), ElementsAre("C:\\Work\\*+++++*", "C:\\Work\\b.txt", "C:\\Work\\c.txt"));
  ClickRow(f.List.List1, 1);
  Press(Qt::Key_Delete);
  EXPECT_THAT(rows.Rows(), ElementsAre("C:\\Work\\*+++++*", "C:\\Work\\c.txt"));
}

TEST_F(GuiScreens, SavingWithoutAListSaysWhatIsMissingAndLeadsThere) {
  Form1& f = StartAndBringUp().form;
  AnswerNextBox(QMessageBox::Ok);
  Click(f.Label45);
  EXPECT_EQ(box_text, "You Must At Least Have An Item For Backup");
  EXPECT_THAT(Seen(), ElementsAre(&f.List.GroupBox1));
}

TEST_F(GuiScreens, AClickOnALinkLeavesNoField) {
  Form1& f = StartAndBringUp(
                 "[When]\r\nAlwaysAt=12:00\r\nEach=???\r\nDefault=True\r\n"
                 "[Setup]\r\nWizard=1\r\n[Destiny]\r\nDir=C:\\Store\r\n"
                 "Backup=\r\n[Entries]\r\n0=C:\\Work\\a.txt\r\n")
                 .form;
  Click(f.Schedule.Optionbutton2);
  ASSERT_EQ(f.Focused(), &f.Schedule.MaskEdBox2);
  ASSERT_EQ(f.Schedule.MaskEdBox2.Text.Get(), "00:00");
  AnswerNextBox(QMessageBox::Ok);
  Click(f.Label45);
  EXPECT_EQ(box_text, "You Must Specify A Valid Time For The Backup Schedule!");
  EXPECT_TRUE(f.Schedule.Optionbutton2.Value) << "the interval stays chosen";
  EXPECT_EQ(f.Focused(), &f.Schedule.MaskEdBox2);
  EXPECT_THAT(Content("Data/Tarnvale.ini"), Not(HasSubstr("Default=False")));
}

TEST_F(GuiScreens, EachOfTheThreeSavesSaysSoInItsOwnWords) {
  Form1& f = StartAndBringUp(kComplete).form;
  AnswerNextBox(QMessageBox::Ok);
  Click(f.Label45);
  EXPECT_EQ(box_text, "Your Tarnvale Settings Have Been Sucessfully Saved");
  EXPECT_EQ(box_title, "Settings Saved");
  EXPECT_THAT(Content("Data/Tarnvale.ini"), HasSubstr("Syncro=False"));
  AnswerNextBox(QMessageBox::Ok);
  ChooseInMenuBar({"File", "Backup Wizard", "Save Settings"});
  EXPECT_EQ(box_text, "Tarnvale Settings Saved To Your U3 Device");
  Click(f.Label39);
  AnswerNextBox(QMessageBox::Ok);
  Click(f.Advanced.chameleonButton5);
  EXPECT_EQ(box_text, "Tarnvale Settings Save To Your U3 Device");
}

TEST_F(GuiScreens, AnImportOfAFileThatIsNotThereGoesThroughTheDialogAndFails) {
  Form1& f = StartAndBringUp(kComplete).form;
  Click(f.Label38);
  for (const std::string& typed : {Native("Store/none"), std::string("C:\\None\\none.ini")}) {
    TypeIntoNextFileDialog(typed);
    Click(f.General.chameleonButton3);
    EXPECT_TRUE(f.General.CheckBox7.Checked) << typed;
    EXPECT_EQ(f.General.Label63.Caption.Get(), "Files Status OK! - Restart Application");
    EXPECT_FALSE(f.General.CheckBox8.Checked) << typed;
    EXPECT_EQ(f.General.Label62.Caption.Get(), ".");
    EXPECT_EQ(Content("Data/Tarnvale.ini"), kComplete);
  }
}

TEST_F(GuiScreens, SettingsGoOutAndComeBackByTheDialogs) {
  Form1& f = StartAndBringUp(kComplete).form;
  Click(f.Label38);
  TypeIntoNextFileDialog(Native("Store/mine"));
  Click(f.General.chameleonButton2);
  EXPECT_EQ(Content("Store/mine.ini"), kComplete) << "the extension is added";
  EXPECT_TRUE(f.General.CheckBox6.Checked);
  EXPECT_EQ(f.General.Label61.Caption.Get(), "Settings Exported OK!");

  Write("Store/mine.ini", "[Setup]\r\nWizard=2\r\n");
  TypeIntoNextFileDialog(Native("Store/mine.ini"));
  Click(f.General.chameleonButton3);
  EXPECT_EQ(Content("Data/Tarnvale.ini"), "[Setup]\r\nWizard=2\r\n");
  EXPECT_EQ(f.General.Label63.Caption.Get(), "Files Status OK! - Restart Application");
  EXPECT_EQ(f.General.Label62.Caption.Get(), "Settings Imported OK!");

  CancelNextFileDialog();
  Click(f.General.chameleonButton3);
  EXPECT_FALSE(f.General.CheckBox7.Checked);
  EXPECT_EQ(f.General.Label63.Caption.Get(), ".");
}

TEST_F(GuiScreens, ABackupIsAnnouncedRunsAndIsFollowedByItsPopup) {
  Program& p = StartAndBringUp(kComplete);
  AnswerNextBox(QMessageBox::Yes);
  ChooseInMenuBar({"File", "Backup Now"});
  EXPECT_THAT(box_text, HasSubstr("Tarnvale Will Now Perform A Backup For Your Files"));
  ASSERT_TRUE(p.popups.IsAlertLoaded());
  ASSERT_TRUE(WaitUntilShown(p.popups.Alert()));
  QTest::mouseClick(&WidgetOf(p.popups.Alert().Label1), Qt::LeftButton);
  ASSERT_TRUE(WaitUntilShown(p.popups.ProgressPopup()));
  EndPauseBeforeRun();
  EXPECT_EQ(Content("Store/a.txt"), "one");
  EXPECT_TRUE(WaitFor([&] {
    return p.popups.ProgressPopup().Label1.Caption.Get() == "Backup Has Been Completed";
  }));
  EXPECT_TRUE(WaitFor([&] { return !NativeOf(p.popups.Alert()).isVisible(); }));
  ASSERT_TRUE(WaitFor([&] { return !p.popups.ProgressPopup().Timer1.Enabled; }));
  QTest::mouseClick(&WidgetOf(p.popups.ProgressPopup().Image2), Qt::LeftButton);
  EXPECT_TRUE(WaitFor([&] { return !NativeOf(p.popups.ProgressPopup()).isVisible(); }));
}

TEST_F(GuiScreens, ARunAnsweredWithNoDoesNotStart) {
  Program& p = StartAndBringUp(kComplete);
  AnswerNextBox(QMessageBox::No);
  Click(p.form.Label49);
  EXPECT_EQ(box_text, "Tarnvale Will Now Perform A Backup On Your Files. Proceed?");
  EXPECT_FALSE(p.engine.timers[EngineTimer::kRunPause].Enabled);
  EXPECT_FALSE(p.engine.timers[EngineTimer::kRunStart].Enabled);
}

TEST_F(GuiScreens, ABackupIsRestoredIntoTheChosenFolder) {
  Write("Store/a.txt", "backed up");
  Form1& f = StartAndBringUp().form;
  Click(f.Label51);
  ChooseFolder(f.Restore.RestoreSourceTree, {"Store"});
  ChooseFolder(f.Restore.RestoreTargetTree, {"Work"});
  ASSERT_TRUE(WaitFor([&] { return f.Restore.Text28.Text.Get() == "C:\\Work"; }));
  ASSERT_EQ(f.Restore.Text27.Text.Get(), "C:\\Store");
  AnswerNextBox(QMessageBox::Ok);
  Click(f.Restore.chameleonButton8);
  EXPECT_EQ(box_text, "Please Eject The U3 Smart Drive For Changes To Take Effect.");
  EXPECT_EQ(box_title, "Tarnvale");
  EXPECT_EQ(f.Restore.XP_ProgressBar3.Value, 100);
  EXPECT_EQ(Content("Work/a.txt"), "backed up");
}

TEST_F(GuiScreens, TheLogIsOpenedWithTheDesktopsProgram) {
  Write("Data/Backup Log.txt", "");
  Form1& f = StartAndBringUp().form;
  f.Schedule.GroupBox4.Visible = false;
  f.Progress.GroupBox3.Visible = true;
  Click(f.Progress.Label50);
  EXPECT_TRUE(WaitFor([&] { return Starts("opener") == 1; }));
}

TEST_F(GuiScreens, TheFolderForArchivesIsChosenInADialog) {
  Form1& f = StartAndBringUp().form;
  Click(f.Label39);
  TypeIntoNextFileDialog(Native("Store"));
  Click(f.Advanced.chameleonButton4);
  EXPECT_EQ(f.Advanced.Text5.Text.Get(), "C:\\Store");
  CancelNextFileDialog();
  Click(f.Advanced.chameleonButton4);
  EXPECT_EQ(f.Advanced.Text5.Text.Get(), "C:\\Store");
}

TEST_F(GuiScreens, TheToolsOpenByLinkAndMenuAndCloseByTheirOwnLinks) {
  Program& p = StartAndBringUp();
  Click(p.form.Label41);
  ASSERT_TRUE(WaitUntilActive(p.Compressor.Get()));
  EXPECT_TRUE(WidgetOf(p.Compressor.Get().GroupBox1).isVisible());
  Click(p.Compressor.Get().Label42);
  EXPECT_TRUE(WidgetOf(p.Compressor.Get().GroupBox2).isVisible());
  Click(p.Compressor.Get().Label1);
  ASSERT_TRUE(WaitUntilActive(p.Splitter.Get()));
  Click(p.Splitter.Get().Label3);
  EXPECT_FALSE(p.Splitter.IsLoaded());
  Click(p.Compressor.Get().Label2);
  EXPECT_FALSE(p.Compressor.IsLoaded());
  ChooseInMenuBar({"File", "Tarnvale Tools", "Tarnvale Splitter"});
  EXPECT_TRUE(WaitUntilShown(p.Splitter.Get()));
  ChooseInMenuBar({"File", "Tarnvale Tools", "Tarnvale Compressor"});
  EXPECT_TRUE(WaitUntilShown(p.Compressor.Get()));
}

}  // namespace
}  // namespace tarnvale::testing
