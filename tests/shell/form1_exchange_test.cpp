#include <gmock/gmock.h>

#include "tests/shell/form1_fixture.h"

namespace tarnvale::testing {
namespace {

using Kind = FakeDialogs::Kind;

class Form1ExchangeTest : public Form1Test {
 protected:
  Form1ExchangeTest() {
    GivenSettings("[Setup]\r\nWizard=1\r\n[Destiny]\r\nDir=C:\\Store\r\n");
    form.Load();
  }

  void ExpectExport(bool chosen, bool exported) {
    EXPECT_EQ(form.General.CheckBox5.Checked, chosen);
    EXPECT_EQ(form.General.Label30.Caption.Get(), chosen ? "Files Status OK!" : ".");
    EXPECT_EQ(form.General.CheckBox6.Checked, exported);
    EXPECT_EQ(form.General.Label61.Caption.Get(), exported ? "Settings Exported OK!" : ".");
  }
  void ExpectImport(bool chosen, bool imported) {
    EXPECT_EQ(form.General.CheckBox7.Checked, chosen);
    EXPECT_EQ(form.General.Label63.Caption.Get(),
              chosen ? "Files Status OK! - Restart Application" : ".");
    EXPECT_EQ(form.General.CheckBox8.Checked, imported);
    EXPECT_EQ(form.General.Label62.Caption.Get(), imported ? "Settings Imported OK!" : ".");
  }
};

TEST_F(Form1ExchangeTest, AnExportCopiesTheFileOnTheMediumNotWhatIsSet) {
  form.Storage.Text1.Text = "C:\\Elsewhere";
  machine.files.Write("C:\\out.ini", "something else");
  machine.dialogs.Choose(Kind::kSave, "C:\\out.ini");
  form.General.chameleonButton2.Click.Emit();
  EXPECT_EQ(machine.files.Content("C:\\out.ini"), machine.files.Content("C:\\Data\\Tarnvale.ini"));
  EXPECT_EQ(machine.files.CopiedWith("C:\\out.ini"), Rights::kOwner);
  EXPECT_EQ(form.General.Text8.Text.Get(), "C:\\out.ini");
  ExpectExport(true, true);
  const FileDialogRecord& record = machine.dialogs.Seen().at(0).file;
  EXPECT_EQ(record.filter, std::string("Tarnvale Setting Files (*.ini)\0*.ini\0\0", 38));
  EXPECT_EQ(record.default_ext, ".ini");
}

TEST_F(Form1ExchangeTest, AnExportThatFailsKeepsItsFirstMarkOnly) {
  machine.dialogs.Choose(Kind::kSave, "C:\\Missing\\out.ini");
  form.General.chameleonButton2.Click.Emit();
  ExpectExport(true, false);
}

TEST_F(Form1ExchangeTest, AnExportOverAReadOnlyFileOrOfMissingSettingsKeepsItsFirstMarkOnly) {
  machine.files.Write("C:\\out.ini", "something else");
  machine.files.SetAttributes("C:\\out.ini", attribute::kReadOnly);
  machine.dialogs.Choose(Kind::kSave, "C:\\out.ini");
  form.General.chameleonButton2.Click.Emit();
  ExpectExport(true, false);
  EXPECT_EQ(machine.files.Content("C:\\out.ini"), "something else");

  machine.files.Remove("C:\\Data\\Tarnvale.ini");
  machine.dialogs.Choose(Kind::kSave, "C:\\new.ini");
  form.General.chameleonButton2.Click.Emit();
  ExpectExport(true, false);
  EXPECT_FALSE(machine.files.Exists("C:\\new.ini"));
}

TEST_F(Form1ExchangeTest, AnExportHasReachedTheMediumBeforeItSaysSo) {
  machine.files.MakeFolder("C:\\Stick");
  std::string last_call;
  form.General.CheckBox6.Checked.Changed().Listen(
      [&] { last_call = machine.files.Calls().back(); });
  machine.dialogs.Choose(Kind::kSave, "C:\\Stick\\out.ini");
  form.General.chameleonButton2.Click.Emit();
  EXPECT_EQ(last_call, "BeginFlush C:\\Stick\\");
}

TEST_F(Form1ExchangeTest, AMediumThatCannotBeFlushedChangesNoMark) {
  machine.files.FailAlways("BeginFlush", 57);
  machine.files.Write("C:\\in.ini", "[A]\r\n");
  machine.dialogs.Choose(Kind::kSave, "C:\\out.ini");
  form.General.chameleonButton2.Click.Emit();
  ExpectExport(true, true);
  machine.dialogs.Choose(Kind::kOpen, "C:\\in.ini");
  form.General.chameleonButton3.Click.Emit();
  ExpectImport(true, true);
  EXPECT_EQ(machine.files.CallsOf("BeginFlush"), 2);
}

TEST_F(Form1ExchangeTest, ADialogDoesNotComeUpWithTheFileChosenLast) {
  machine.dialogs.Choose(Kind::kSave, "C:\\out.ini");
  form.General.chameleonButton2.Click.Emit();
  machine.dialogs.Cancel(Kind::kOpen);
  form.General.chameleonButton3.Click.Emit();
  machine.dialogs.Cancel(Kind::kSave);
  form.General.chameleonButton2.Click.Emit();
  for (const FakeDialogs::Shown& dialog : machine.dialogs.Seen()) {
    EXPECT_EQ(dialog.file.file.find_first_not_of('\0'), std::string::npos);
  }
}

TEST_F(Form1ExchangeTest, AMarkCannotBeTickedByHand) {
  for (CheckBox* mark : {&form.General.CheckBox5, &form.General.CheckBox6, &form.General.CheckBox7,
                         &form.General.CheckBox8, &form.Schedule.CheckBox9,
                         &form.Schedule.CheckBox10, &form.Schedule.CheckBox11}) {
    mark->Press();
    EXPECT_FALSE(mark->Checked) << mark->AccessibleName.Get();
  }
}

TEST_F(Form1ExchangeTest, ACancelClearsTheMarksOfTheLastTimeWithoutAMessage) {
  machine.dialogs.Choose(Kind::kSave, "C:\\out.ini");
  form.General.chameleonButton2.Click.Emit();
  machine.dialogs.Cancel(Kind::kSave);
  form.General.chameleonButton2.Click.Emit();
  ExpectExport(false, false);
  EXPECT_EQ(form.General.Text8.Text.Get(), "C:\\out.ini");
  machine.dialogs.Cancel(Kind::kOpen);
  form.General.chameleonButton3.Click.Emit();
  ExpectImport(false, false);
}

TEST_F(Form1ExchangeTest, AnImportReplacesTheFileAndLoadsNothing) {
  machine.files.Write("C:\\in.ini", "[Destiny]\r\nDir=C:\\Imported\r\n");
  machine.dialogs.Choose(Kind::kOpen, "C:\\in.ini");
  form.General.chameleonButton3.Click.Emit();
  EXPECT_EQ(machine.files.Content("C:\\Data\\Tarnvale.ini"), "[Destiny]\r\nDir=C:\\Imported\r\n");
  EXPECT_EQ(machine.files.CopiedWith("C:\\Data\\Tarnvale.ini"), Rights::kOwner);
  EXPECT_EQ(form.Storage.Text1.Text.Get(), "C:\\Store");
  ExpectImport(true, true);
}

TEST_F(Form1ExchangeTest, AnImportOfAMissingFileOrOverAReadOnlyOneKeepsItsFirstMarkOnly) {
  machine.dialogs.Choose(Kind::kOpen, "C:\\missing.ini");
  form.General.chameleonButton3.Click.Emit();
  ExpectImport(true, false);
  machine.files.Write("C:\\in.ini", "[A]\r\n");
  machine.files.SetAttributes("C:\\Data\\Tarnvale.ini", attribute::kReadOnly);
  machine.dialogs.Choose(Kind::kOpen, "C:\\in.ini");
  form.General.chameleonButton3.Click.Emit();
  ExpectImport(true, false);
}

TEST_F(Form1ExchangeTest, ACancelledImportClearsBothMarksOfTheLastOneAndNeedsNoExportBefore) {
  machine.dialogs.Cancel(Kind::kOpen);
  form.General.chameleonButton3.Click.Emit();
  ExpectImport(false, false);
  const FileDialogRecord record = machine.dialogs.Seen().at(0).file;
  EXPECT_EQ(record.filter, std::string("Tarnvale Setting Files (*.ini)\0*.ini\0\0", 38));
  EXPECT_EQ(record.default_ext, ".ini");

  machine.files.Write("C:\\in.ini", "[A]\r\n");
  machine.dialogs.Choose(Kind::kOpen, "C:\\in.ini");
  form.General.chameleonButton3.Click.Emit();
  ExpectImport(true, true);

  machine.dialogs.Cancel(Kind::kOpen);
  form.General.chameleonButton3.Click.Emit();
  ExpectImport(false, false);
  EXPECT_EQ(form.General.Text9.Text.Get(), "C:\\in.ini");
  EXPECT_TRUE(machine.boxes.Shown().empty());
}

TEST_F(Form1ExchangeTest, AnImportHasReachedTheMediumBeforeItSaysSo) {
  std::string last_call;
  form.General.CheckBox8.Checked.Changed().Listen(
      [&] { last_call = machine.files.Calls().back(); });
  machine.files.Write("C:\\in.ini", "[A]\r\n");
  machine.dialogs.Choose(Kind::kOpen, "C:\\in.ini");
  form.General.chameleonButton3.Click.Emit();
  EXPECT_EQ(last_call, "BeginFlush C:\\Data\\");
}

TEST_F(Form1ExchangeTest, SettingsThatCameFromAReadOnlyFileCanBeSavedAgain) {
  machine.files.Write("C:\\in.ini", "[Destiny]\r\nDir=C:\\Imported\r\n");
  machine.files.SetAttributes("C:\\in.ini", attribute::kReadOnly);
  machine.dialogs.Choose(Kind::kOpen, "C:\\in.ini");
  form.General.chameleonButton3.Click.Emit();
  ExpectImport(true, true);
  EXPECT_EQ(machine.files.Attributes("C:\\in.ini") & attribute::kReadOnly, attribute::kReadOnly);
  engine.SaveChanges();
  EXPECT_THAT(machine.files.Content("C:\\Data\\Tarnvale.ini"),
              ::testing::HasSubstr("Dir=C:\\Store\r\n"));
}

TEST_F(Form1ExchangeTest, AnAttributeThatStaysChangesNoMark) {
  machine.files.Write("C:\\in.ini", "[A]\r\n");
  machine.files.SetAttributes("C:\\in.ini", attribute::kReadOnly);
  machine.files.FailNext("SetAttributes", 75);
  machine.dialogs.Choose(Kind::kOpen, "C:\\in.ini");
  form.General.chameleonButton3.Click.Emit();
  ExpectImport(true, true);
}

TEST_F(Form1ExchangeTest, ASaveAfterAnImportDiscardsItButForKeysAboveTheList) {
  engine.settings.Entries.Assign({"C:\\one"});
  machine.files.Write("C:\\in.ini",
                      "[Destiny]\r\nDir=C:\\Imported\r\n[Entries]\r\n0=C:\\x\r\n1=C:\\kept\r\n");
  machine.dialogs.Choose(Kind::kOpen, "C:\\in.ini");
  form.General.chameleonButton3.Click.Emit();
  engine.SaveChanges();
  const std::string saved = machine.files.Content("C:\\Data\\Tarnvale.ini");
  EXPECT_THAT(saved, ::testing::HasSubstr("Dir=C:\\Store\r\n"));
  EXPECT_THAT(saved, ::testing::HasSubstr("0=C:\\one\r\n"));
  EXPECT_THAT(saved, ::testing::HasSubstr("1=C:\\kept\r\n"));
}

class Form1RestoreTest : public Form1ExchangeTest {
 protected:
  Form1RestoreTest() {
    machine.files.Write("C:\\Store\\a.txt", "backed up");
    machine.files.Write("C:\\Work\\a.txt", "lost");
    machine.Advance(3s);  // the trees are set up
    form.Restore.RestoreSourceTree.SelectedPath = "C:\\Store";
    form.Restore.RestoreTargetTree.SelectedPath = "C:\\Work";
    machine.Advance(200ms);
  }

  void ExpectDone() {
    machine.boxes.Expect("Please Eject The U3 Smart Drive For Changes To Take Effect.",
                         BoxIcon::kInformation, BoxAnswer::kOk);
  }
};

TEST_F(Form1RestoreTest, PausesForFourSecondsAndCopies) {
  ExpectDone();
  const auto start = machine.clock.Uptime();
  std::string before_the_end_of_the_pause;
  const Subscription watch = form.Restore.XP_ProgressBar3.Value.Changed().Subscribe([&] {
    if (form.Restore.XP_ProgressBar3.Value == 39) {
      before_the_end_of_the_pause = machine.files.Content("C:\\Work\\a.txt");
    }
  });
  form.Restore.chameleonButton8.Click.Emit();
  EXPECT_EQ(before_the_end_of_the_pause, "lost");
  EXPECT_EQ(machine.files.Content("C:\\Work\\a.txt"), "backed up");
  EXPECT_EQ(machine.files.CopiedWith("C:\\Work"), Rights::kNewFile);
  EXPECT_EQ(form.Restore.XP_ProgressBar3.Value, 100);
  EXPECT_FALSE(engine.timers[EngineTimer::kRestoreBar].Enabled);
  EXPECT_GE(machine.clock.Uptime() - start, 4s);
  EXPECT_LE(machine.clock.Uptime() - start, 4100ms);
}

TEST_F(Form1RestoreTest, TheCopyHasReachedTheMediumBeforeTheBoxAsksForTheDrive) {
  ExpectDone();
  std::string last_call;
  machine.boxes.WhileOpen([&] { last_call = machine.files.Calls().back(); });
  form.Restore.chameleonButton8.Click.Emit();
  EXPECT_EQ(last_call, "BeginFlush C:\\Work");
}

TEST_F(Form1RestoreTest, AMediumThatCannotBeFlushedEndsInTheSameWords) {
  machine.files.FailNext("BeginFlush", 57);
  ExpectDone();
  form.Restore.chameleonButton8.Click.Emit();
  EXPECT_EQ(form.Restore.XP_ProgressBar3.Value, 100);
  EXPECT_FALSE(engine.timers[EngineTimer::kRestoreBar].Enabled);
  EXPECT_EQ(machine.boxes.Shown().size(), 1U);
}

TEST_F(Form1RestoreTest, OtherFoldersChosenWhileItCopiesChangeNothing) {
  machine.files.Write("C:\\Store\\b.txt", "the second");
  machine.files.Write("C:\\Store\\Sub\\c.txt", "the third");
  machine.files.MakeFolder("C:\\Other");
  ExpectDone();
  const Subscription watch = form.Restore.XP_ProgressBar3.Value.Changed().Subscribe([&] {
    if (form.Restore.XP_ProgressBar3.Value != 40) return;
    machine.loop.OnYield(1, [&] {
      form.Restore.Text27.Text = "C:\\Other";
      form.Restore.Text28.Text = "C:\\Other";
    });
  });
  form.Restore.chameleonButton8.Click.Emit();
  EXPECT_EQ(form.Restore.Text28.Text.Get(), "C:\\Other");
  EXPECT_EQ(machine.files.Names("C:\\Work"), (std::vector<std::string>{"a.txt", "b.txt", "Sub"}));
  EXPECT_EQ(machine.files.Names("C:\\Work\\Sub"), std::vector<std::string>{"c.txt"});
  EXPECT_TRUE(machine.files.Names("C:\\Other").empty());
}

TEST_F(Form1RestoreTest, WithoutBothFoldersItEndsWithoutAWord) {
  form.Restore.Text28.Text = "";
  form.Restore.XP_ProgressBar3.Value = 70;
  form.Restore.chameleonButton8.Click.Emit();
  EXPECT_EQ(form.Restore.XP_ProgressBar3.Value, 0);
  EXPECT_EQ(machine.files.Content("C:\\Work\\a.txt"), "lost");
}

TEST_F(Form1RestoreTest, ABarThatPassedFortyDoesNotEndTheWait) {
  ExpectDone();
  const auto start = machine.clock.Uptime();
  Subscription watch = form.Restore.XP_ProgressBar3.Value.Changed().Subscribe([&] {
    if (form.Restore.XP_ProgressBar3.Value == 39) form.Restore.XP_ProgressBar3.Value = 41;
    if (form.Restore.XP_ProgressBar3.Value == 100) {
      EXPECT_EQ(machine.files.Content("C:\\Work\\a.txt"), "lost");
      watch.Cancel();
      form.Restore.XP_ProgressBar3.Value = 40;
    }
  });
  form.Restore.chameleonButton8.Click.Emit();
  EXPECT_GE(machine.clock.Uptime() - start, 9s) << "only the exact value ends it";
}

TEST_F(Form1RestoreTest, ASecondPressStartsARestoreInsideTheFirst) {
  ExpectDone();
  ExpectDone();
  int finished_inside = 0;
  machine.loop.OnYield(100, [&] {
    form.Restore.chameleonButton8.Click.Emit();
    finished_inside = form.Restore.XP_ProgressBar3.Value;
    // The inner one stopped the bar at 100; the outer one waits for 40.
    form.Restore.XP_ProgressBar3.Value = 40;
  });
  form.Restore.chameleonButton8.Click.Emit();
  EXPECT_EQ(finished_inside, 100);
  EXPECT_EQ(machine.boxes.Shown().size(), 2U);
}

TEST_F(Form1RestoreTest, ARestoreThatWaitsEndsWithTheProgramAndCopiesNothing) {
  machine.loop.OnYield(1, [&] { machine.loop.Quit(0); });
  form.Restore.chameleonButton8.Click.Emit();
  EXPECT_EQ(machine.files.Content("C:\\Work\\a.txt"), "lost");
  EXPECT_TRUE(machine.boxes.Shown().empty());
}

TEST_F(Form1RestoreTest, ASourceThatIsGoneEndsInTheSameWords) {
  machine.files.Remove("C:\\Store");
  ExpectDone();
  form.Restore.chameleonButton8.Click.Emit();
  EXPECT_EQ(machine.files.Content("C:\\Work\\a.txt"), "lost");
}

}  // namespace
}  // namespace tarnvale::testing
