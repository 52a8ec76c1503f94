#include <map>

#include "tests/shell/form1_fixture.h"

namespace tarnvale::testing {
namespace {

using Form1CommandsTest = Form1Test;

struct SwitchCase {
  const char* command;
  Signal<>& (*click)(Form1& form);
  int shown;
  /// What is left of all seven screens standing.
  std::vector<int> left;
};

const SwitchCase kSwitches[] = {
    {"Label36", [](Form1& f) -> Signal<>& { return f.Label36.Clicked; }, 2, {2}},
    {"Label37", [](Form1& f) -> Signal<>& { return f.Label37.Clicked; }, 1, {1}},
    {"Label38", [](Form1& f) -> Signal<>& { return f.Label38.Clicked; }, 5, {5, 15}},
    {"Label39", [](Form1& f) -> Signal<>& { return f.Label39.Clicked; }, 6, {6}},
    {"Label44", [](Form1& f) -> Signal<>& { return f.Label44.Clicked; }, 4, {4}},
    {"Label51", [](Form1& f) -> Signal<>& { return f.Label51.Clicked; }, 15, {15}},
    {"mnusettings", [](Form1& f) -> Signal<>& { return f.mnusettings.Clicked; }, 5, {5, 15}},
    {"mnucompauto", [](Form1& f) -> Signal<>& { return f.mnucompauto.Clicked; }, 6, {6, 15}},
    {"mnufiles", [](Form1& f) -> Signal<>& { return f.mnufiles.Clicked; }, 1, {1, 15}},
    {"mnustorage", [](Form1& f) -> Signal<>& { return f.mnustorage.Clicked; }, 2, {2, 15}},
    {"mnuSchedule", [](Form1& f) -> Signal<>& { return f.mnuSchedule.Clicked; }, 4, {4, 15}},
};

// Whole folders are compared in each of the modes.
TEST_F(Form1CommandsTest, TheNoteOnCompleteBackupsPromisesTheListsSingleFilesOnly) {
  const std::string note = form.General.CompleteNote.Caption;
  EXPECT_NE(note.find("every single file of the list"), std::string::npos) << note;
  EXPECT_NE(note.find("of a whole folder, what has changed"), std::string::npos) << note;
}

TEST_F(Form1CommandsTest, EachCommandShowsItsScreenAndHidesThoseOfItsRow) {
  for (const SwitchCase& row : kSwitches) {
    for (const ScreenFrame& frame : Frames()) frame.box.Visible = true;
    row.click(form).Emit();
    EXPECT_EQ(VisibleFrames(), row.left) << row.command;
    for (const ScreenFrame& frame : Frames()) frame.box.Visible = false;
    row.click(form).Emit();
    EXPECT_EQ(VisibleFrames(), std::vector<int>{row.shown}) << row.command;
  }
}

/// The flags that each command sets, in order: the number of a frame, below zero
/// for one that is hidden.
const std::map<std::string, std::vector<int>> kFlags = {
    {"Label36", {2, -1, -3, -4, -5, -6, -15}},
    {"Label37", {1, -2, -3, -4, -5, -6, -15}},
    {"Label38", {5, -2, -3, -4, -1, -6}},
    {"Label39", {6, -2, -3, -1, -5, -4, -15}},
    {"Label44", {4, -2, -3, -1, -5, -6, -15}},
    {"Label51", {15, -2, -3, -1, -5, -6, -4}},
    {"mnusettings", {5, -2, -3, -4, -1, -6}},
    {"mnucompauto", {6, -2, -3, -1, -5, -4}},
    {"mnufiles", {1, -2, -3, -4, -5, -6}},
    {"mnustorage", {2, -1, -3, -4, -5, -6}},
    {"mnuSchedule", {2, -1, -3, -4, -5, -6, 4, -2, -3, -1, -5, -6}},
};

TEST_F(Form1CommandsTest, EachCommandSetsTheFlagsInTheOrderOfItsRow) {
  std::vector<int> set;
  engine.screens.Show = [&](Screen screen) { set.push_back(FrameNumber(screen)); };
  engine.screens.Hide = [&](Screen screen) { set.push_back(-FrameNumber(screen)); };
  for (const SwitchCase& row : kSwitches) {
    set.clear();
    row.click(form).Emit();
    EXPECT_EQ(set, kFlags.at(row.command)) << row.command;
  }
}

TEST_F(Form1CommandsTest, EveryMenuScreenCommandShowsTheWindowBeforeAndAfterItsFlags) {
  std::string seen;
  form.Raised.Listen([&] { seen += "raised "; });
  engine.screens.Show = [&](Screen) {
    EXPECT_EQ(form.State.Get(), WindowState::kNormal);
    EXPECT_TRUE(form.Visible);
    seen += "+";
  };
  engine.screens.Hide = [&](Screen) { seen += "-"; };
  for (MenuItem* item : {&form.mnusettings, &form.mnucompauto, &form.mnufiles, &form.mnustorage,
                         &form.mnuSchedule}) {
    form.State = WindowState::kMinimized;
    form.Hide();
    seen.clear();
    item->Clicked.Emit();
    const std::string once = "raised +-----raised ";
    EXPECT_EQ(seen, item == &form.mnuSchedule ? once + once : once) << item->Caption.Get();
    EXPECT_EQ(form.State.Get(), WindowState::kNormal);
    EXPECT_TRUE(form.Visible);
  }
}

TEST_F(Form1CommandsTest, TheGeneralLinkLeavesTheRestoreScreenStanding) {
  form.Label51.Clicked.Emit();
  EXPECT_EQ(VisibleFrames(), std::vector<int>{15});
  form.Label38.Clicked.Emit();
  EXPECT_EQ(VisibleFrames(), (std::vector<int>{5, 15}));
}

TEST_F(Form1CommandsTest, TheScheduleCommandGoesThroughTheStorageScreen) {
  std::vector<std::vector<int>> seen;
  for (GroupBox* frame : {&form.Storage.GroupBox2, &form.Schedule.GroupBox4}) {
    frame->Visible.Changed.Listen([&] { seen.push_back(VisibleFrames()); });
  }
  for (const ScreenFrame& frame : Frames()) frame.box.Visible = false;
  seen.clear();
  form.mnuSchedule.Clicked.Emit();
  EXPECT_EQ(seen, (std::vector<std::vector<int>>{{2}, {2, 4}, {4}}));
}

TEST_F(Form1CommandsTest, AMenuCommandBringsTheWindowUp) {
  form.Load();
  form.InTaskBar = false;  // as in the tray
  form.mnufiles.Clicked.Emit();
  EXPECT_TRUE(form.InTaskBar);
  EXPECT_EQ(form.State.Get(), WindowState::kNormal);
  form.State = WindowState::kMinimized;
  form.Label37.Clicked.Emit();
  EXPECT_EQ(form.State.Get(), WindowState::kMinimized) << "a link doesn't";
}

TEST_F(Form1CommandsTest, TheFolderOfTheTreeIsAddedByItsContentsOrWhole) {
  form.List.Text3.Text = "C:\\Work";
  form.List.Command4.Click.Emit();
  form.List.CheckBox3.Value = true;
  form.List.Command4.Click.Emit();
  EXPECT_EQ(form.List.List1.Rows.Rows(),
            (std::vector<std::string>{"C:\\Work\\*.*", "C:\\Work\\*+++++*"}));
}

TEST_F(Form1CommandsTest, SelectedFilesAreAddedByButtonAndDoubleClick) {
  machine.files.Write("C:\\Work\\a.txt", "");
  machine.files.Write("C:\\Work\\b.txt", "");
  form.List.Text3.Text = "C:\\Work";
  form.List.File1.Folder = "C:\\Work";
  form.List.File1.Select(0, true);
  form.List.Command5.Click.Emit();
  form.List.File1.SelectNone();
  form.List.File1.Select(1, true);
  form.List.File1.DoubleClicked.Emit();
  EXPECT_EQ(form.List.List1.Rows.Rows(),
            (std::vector<std::string>{"C:\\Work\\a.txt", "C:\\Work\\b.txt"}));
}

TEST_F(Form1CommandsTest, DeleteRemovesOnlyWhileTheListHasTheFocus) {
  form.List.GroupBox1.Visible = true;
  engine.settings.Entries.Assign({"C:\\a", "C:\\b", "C:\\c"});
  form.List.List1.Select(0, true);
  form.List.List1.Select(2, true);
  Press(Key::kDelete);
  EXPECT_FALSE(key_was_used);
  EXPECT_EQ(form.List.List1.Rows.Count(), 3U);
  form.Focus(form.List.List1);
  Press(Key::kDelete);
  EXPECT_TRUE(key_was_used);
  EXPECT_EQ(form.List.List1.Rows.Rows(), std::vector<std::string>{"C:\\b"});
  form.Focus(form.List.Command1);
  form.List.List1.Select(0, true);
  Press(Key::kDelete);
  EXPECT_EQ(form.List.List1.Rows.Count(), 1U);
}

TEST_F(Form1CommandsTest, EnterMovesToTheNextField) {
  form.Focus(form.Schedule.Optionbutton1);
  Press(Key::kEnter);
  EXPECT_TRUE(key_was_used);
  EXPECT_EQ(form.Focused(), &form.Schedule.MaskEdBox1);
}

TEST_F(Form1CommandsTest, TheStorageButtonTakesTheTreesFolderForSettingAndRun) {
  form.Storage.StorageTree.SelectedPath = "C:\\Store";
  form.Storage.chameleonButton1.Click.Emit();
  EXPECT_EQ(form.Storage.Text1.Text.Get(), "C:\\Store");
  EXPECT_EQ(engine.settings.DestinationDir.Get(), "C:\\Store");
  EXPECT_EQ(engine.run.RunDestination.Get(), "C:\\Store");
}

TEST_F(Form1CommandsTest, AFieldThatGetsTheFocusIsSelectedWhole) {
  form.Storage.GroupBox2.Visible = true;
  form.Storage.Text1.Text = "C:\\Store";
  form.Focus(form.Storage.Text1);
  EXPECT_EQ(form.Storage.Text1.Selection.Get(), (TextSelection{0, 8}));
  form.Focus(form.Schedule.MaskEdBox1);
  EXPECT_EQ(form.Schedule.MaskEdBox1.Selection.Get(), (TextSelection{0, 5}));
}

TEST_F(Form1CommandsTest, FieldFocusSelectsTheFocusedFieldsTextAgain) {
  form.Storage.GroupBox2.Visible = true;
  form.Storage.Text1.Text = "C:\\Store";
  form.Focus(form.Storage.Text1);
  form.Storage.Text1.Selection = {3, 0};
  form.FieldFocus();
  EXPECT_EQ(form.Storage.Text1.Selection.Get(), (TextSelection{0, 8}));
  form.Focus(form.Label41);
  form.FieldFocus();
  EXPECT_EQ(form.Storage.Text1.Selection.Get(), (TextSelection{0, 8})) << "a link has no text";
}

TEST_F(Form1CommandsTest, ChoosingAKindOfScheduleLeadsToItsField) {
  form.Schedule.Optionbutton2.Value = true;
  form.Schedule.Optionbutton2.Clicked.Emit();
  EXPECT_EQ(form.Focused(), &form.Schedule.MaskEdBox2);
  form.Schedule.Optionbutton1.Value = true;
  form.Schedule.Optionbutton1.Clicked.Emit();
  EXPECT_EQ(form.Focused(), &form.Schedule.MaskEdBox1);
  EXPECT_FALSE(engine.settings.ScheduleEach);
}

TEST_F(Form1CommandsTest, ABadIntervalIsReportedAndTheFocusComesBack) {
  form.Focus(form.Schedule.MaskEdBox2);
  form.Schedule.MaskEdBox2.Text = "25:00";
  machine.boxes.Expect("An Invalid Interval Has Been Entered.", BoxIcon::kStop, BoxAnswer::kOk);
  form.Focus(form.Schedule.Optionbutton3);
  EXPECT_EQ(form.Focused(), &form.Schedule.MaskEdBox2);
  EXPECT_EQ(engine.settings.EachTime, 0);
  EXPECT_FALSE(engine.scheduler.BadEachTime()) << "entering the field clears it";
}

TEST_F(Form1CommandsTest, ABadFixedTimeIsReported) {
  form.Focus(form.Schedule.MaskEdBox1);
  form.Schedule.MaskEdBox1.Text = "25:00";
  machine.boxes.Expect("An Invalid Time Frame Has Been Entered", BoxIcon::kStop, BoxAnswer::kOk);
  form.Focus(form.Schedule.Optionbutton3);
  EXPECT_EQ(engine.settings.AlwaysAtTime, 0);
  EXPECT_TRUE(engine.scheduler.BadAtTime());
}

TEST_F(Form1CommandsTest, EachDaysBoxTicksItsOwnDay) {
  for (std::size_t day = 0; day < form.Schedule.Checkbox2.size(); ++day) {
    form.Schedule.Checkbox2[day].Value = true;
    EXPECT_TRUE(engine.settings.WeekDays[day]) << day;
  }
}

TEST_F(Form1CommandsTest, TickingADayEndsEveryDayAndEveryDayClearsTheDays) {
  form.Schedule.Checkbox2[2].Value = true;
  EXPECT_FALSE(form.Schedule.Optionbutton3.Value);
  form.Schedule.Optionbutton3.Clicked.Emit();
  EXPECT_TRUE(form.Schedule.Optionbutton3.Value);
  EXPECT_FALSE(form.Schedule.Checkbox2[2].Value);
}

TEST_F(Form1CommandsTest, SavingSaysSoUnlessSomethingObjects) {
  form.Load();
  machine.boxes.Expect("You Must At Least Have An Item For Backup", BoxIcon::kStop, BoxAnswer::kOk);
  form.Label45.Clicked.Emit();
  EXPECT_EQ(VisibleFrames(), std::vector<int>{1});

  engine.settings.Entries.Append("C:\\a");
  engine.settings.DestinationDir = "C:\\Store";
  engine.settings.EachText = "01:00";
  engine.settings.ScheduleEach = true;
  machine.boxes.Expect("Your Tarnvale Settings Have Been Sucessfully Saved", BoxIcon::kInformation,
                       BoxAnswer::kOk);
  form.Label45.Clicked.Emit();
  EXPECT_EQ(machine.boxes.Shown().back().title, "Settings Saved");
  machine.boxes.Expect("Tarnvale Settings Saved To Your U3 Device", BoxIcon::kInformation,
                       BoxAnswer::kOk);
  form.mnusave.Clicked.Emit();
  EXPECT_NE(machine.files.Content("C:\\Data\\Tarnvale.ini").find("0=C:\\a"), std::string::npos);
}

TEST_F(Form1CommandsTest, ABackupByHandStartsAfterAPauseWhenConfirmed) {
  form.Load();
  machine.Advance(1s);
  machine.boxes.Expect("Tarnvale Will Now Perform A Backup On Your Files. Proceed?",
                       BoxIcon::kQuestion, BoxAnswer::kNo);
  form.Label49.Clicked.Emit();
  EXPECT_FALSE(engine.timers[EngineTimer::kRunPause].Enabled);

  machine.boxes.Expect(
      "Tarnvale Will Now Perform A Backup For Your Files - Compression & FTP Upload Will Occur If "
      "Selected. Proceed?",
      BoxIcon::kQuestion, BoxAnswer::kYes);
  form.mnuBackup.Clicked.Emit();
  machine.Advance(8s);
  EXPECT_EQ(form.Progress.Label14.Caption.Get(), "No Backup Process Has Been Currently Performed");
  machine.Advance(100ms);
  EXPECT_EQ(form.Progress.Label14.Caption.Get().substr(0, 25), "Success >> Copied 0 Items");
}

TEST_F(Form1CommandsTest, TheLogIsOpenedByTheDesktop) {
  machine.files.Write("C:\\Data\\Backup Log.txt", "");
  form.Load();
  form.Progress.Label50.Clicked.Emit();
  const StartedProcess opened{StartKind::kOpenWithDesktop, "C:\\Data\\Backup Log.txt"};
  EXPECT_EQ(machine.processes.Started(), std::vector{opened});
}

TEST_F(Form1CommandsTest, ExitLeavesTheWindowUp) {
  form.Load();
  form.Show();
  form.mnuQuit.Clicked.Emit();
  EXPECT_TRUE(form.Visible);
}

}  // namespace
}  // namespace tarnvale::testing
