#include "registry/registry.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "tests/support/fake_machine.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Dialog = FakeDialogs::Kind;

class RegistryTest : public ::testing::Test {
 protected:
  RegistryTest() {
    machine.files.Write("C:\\Windows\\Regedit.exe", "the editor");
    window.Show();
  }

  /// As the host does it: an error ends the handler.
  void Click(chameleonButton& button) {
    machine.loop.Deliver([&] { button.Click.Emit(); });
  }
  void Tick() { machine.Advance(100ms); }
  void ExpectMessage() {
    machine.boxes.Expect("Your Registry Has Been Sucessfully Backed Up", BoxIcon::kInformation,
                         BoxAnswer::kOk);
  }
  /// Fills the fields, lets the timer see them and saves; gives the line.
  std::string LineFor(const std::string& branch, const std::string& sub_branch) {
    window.Text3.Text = "C:\\out\\a.reg";
    window.Combo1.Text = branch;
    window.Text2.Text = sub_branch;
    Tick();
    ExpectMessage();
    Click(window.Command1);
    return machine.processes.Started().back().text;
  }

  FakeMachine machine;
  registry window{machine.Interfaces()};
};

TEST_F(RegistryTest, OpensWithTheWholeRegistryChosen) {
  EXPECT_EQ(window.Caption.Get(), "Registry Backup Maker");
  EXPECT_EQ(window.GroupBox1.Caption.Get(), "Registry Backup");
  EXPECT_EQ(window.Combo1.Text.Get(), "Backup All Registry");
  EXPECT_THAT(window.Combo1.Rows.Rows(),
              ElementsAre("Backup All Registry", "HKEY_CLASSES_ROOT", "HKEY_CURRENT_USER",
                          "HKEY_LOCAL_MACHINE", "HKEY_USERS", "HKEY_CURRENT_CONFIG"));
  EXPECT_EQ(window.Label5.Caption.Get(), " (Not Required / Expert Users Only)");
  EXPECT_EQ(window.Text4.Owner(), nullptr) << "the state isn't shown";
}

TEST_F(RegistryTest, NothingReachesOverTheEdgeOfWhatHoldsIt) {
  for (const Placement& inner : window.Placements()) {
    Size room = window.ClientSize;
    for (const Placement& outer : window.Placements()) {
      if (outer.control == inner.container) room = {outer.place.width_px, outer.place.height_px};
    }
    EXPECT_LE(inner.place.RightPx(), room.width_px);
    EXPECT_LE(inner.place.BottomPx(), room.height_px);
  }
}

TEST_F(RegistryTest, TheRunButtonIsOutOfUseUntilALocationIsChosenAndFollowsWithin100Ms) {
  EXPECT_FALSE(window.Command1.Enabled);
  Tick();
  EXPECT_FALSE(window.Command1.Enabled);
  window.Text3.Text = "C:\\a.reg";
  Tick();
  EXPECT_TRUE(window.Command1.Enabled);
  window.Text3.Text = "";
  Tick();
  EXPECT_FALSE(window.Command1.Enabled);
}

TEST_F(RegistryTest, TheBranchFollowsTheComboAndIsEmptyForTheWholeRegistry) {
  window.Combo1.Text = "HKEY_USERS";
  EXPECT_EQ(window.Text4.Text.Get(), "") << "not before the tick";
  Tick();
  EXPECT_EQ(window.Text4.Text.Get(), "HKEY_USERS");
  window.Combo1.Text = "Backup All Registry";
  Tick();
  EXPECT_EQ(window.Text4.Text.Get(), "");
}

TEST_F(RegistryTest, TheTextOfASubBranchOutOfUseStays) {
  window.Combo1.Text = "HKEY_USERS";
  Tick();
  EXPECT_TRUE(window.Text2.Enabled);
  window.Text2.Text = "Software";
  window.Combo1.Text = "Backup All Registry";
  Tick();
  EXPECT_FALSE(window.Text2.Enabled);
  EXPECT_EQ(window.Text2.Text.Get(), "Software");
}

TEST_F(RegistryTest, WithTheWholeRegistryAnyTextOfASubBranchIsIgnored) {
  EXPECT_EQ(LineFor("Backup All Registry", "Software"),
            R"(C:\Windows\Regedit.exe /e "C:\out\a.reg")");
}

TEST_F(RegistryTest, ABranchWithASubBranchEndsInAQuotedPath) {
  EXPECT_EQ(LineFor("HKEY_CURRENT_USER", "Software"),
            R"(C:\Windows\Regedit.exe /e "C:\out\a.reg" "HKEY_CURRENT_USER\Software")");
}

TEST_F(RegistryTest, ABranchAloneLeavesItsQuoteOpen) {
  EXPECT_EQ(LineFor("HKEY_LOCAL_MACHINE", ""),
            R"(C:\Windows\Regedit.exe /e "C:\out\a.reg" "HKEY_LOCAL_MACHINE)");
}

TEST_F(RegistryTest, ATypedBranchGoesToTheLineAsTyped) {
  EXPECT_TRUE(window.Combo1.Editable);
  EXPECT_EQ(LineFor("hkey_users\\S-1 ", ""),
            R"(C:\Windows\Regedit.exe /e "C:\out\a.reg" "hkey_users\S-1 )");
  EXPECT_EQ(LineFor("backup all registry", ""),
            R"(C:\Windows\Regedit.exe /e "C:\out\a.reg" "backup all registry)");
}

TEST_F(RegistryTest, AnEmptiedComboSavesTheWholeRegistryThoughASubBranchCanBeTyped) {
  EXPECT_EQ(LineFor("", "Software"), R"(C:\Windows\Regedit.exe /e "C:\out\a.reg")");
  EXPECT_TRUE(window.Text2.Enabled);
}

TEST_F(RegistryTest, TheTextsAreTheRequiredOnes) {
  EXPECT_EQ(window.Label2.Caption.Get(), "Registry Branch Selection");
  EXPECT_EQ(window.Label3.Caption.Get(), "Registry Branch:");
  EXPECT_EQ(window.Label4.Caption.Get(), "Registry Sub Branch:");
  EXPECT_EQ(window.Label1.Caption.Get(), "Registry Backup Location");
  EXPECT_EQ(window.chameleonButton1.Caption.Get(), "Select Registry Backup Location");
  EXPECT_EQ(window.Command1.Caption.Get(), "Backup The Selected Registry Branch");
}

TEST_F(RegistryTest, TicksEvery100Milliseconds) {
  window.Text3.Text = "C:\\a.reg";
  machine.Advance(99ms);
  EXPECT_FALSE(window.Command1.Enabled);
  machine.Advance(1ms);
  EXPECT_TRUE(window.Command1.Enabled);
}

TEST_F(RegistryTest, TheEditorIsStartedMinimised) {
  LineFor("HKEY_USERS", "");
  EXPECT_EQ(machine.processes.Started().back().kind, StartKind::kMinimized);
  EXPECT_EQ(machine.boxes.Shown().back().title, "Registry Backup");
}

TEST_F(RegistryTest, WithoutALocationNothingHappens) {
  window.Combo1.Text = "HKEY_USERS";
  Tick();
  Click(window.Command1);
  EXPECT_THAT(machine.processes.Started(), IsEmpty());
  EXPECT_THAT(machine.boxes.Shown(), IsEmpty());
}

TEST_F(RegistryTest, TheMessageComesBeforeTheExportHasBegun) {
  window.Text3.Text = "C:\\a.reg";
  Tick();
  ExpectMessage();
  machine.boxes.WhileOpen([&] { EXPECT_THAT(machine.processes.Started(), IsEmpty()); });
  // The box yields once; the next one is the command's own.
  machine.loop.OnYield(2, [&] { EXPECT_THAT(machine.processes.Started(), IsEmpty()); });
  const int before = machine.loop.YieldCount();
  Click(window.Command1);
  EXPECT_EQ(machine.loop.YieldCount(), before + 2);
  EXPECT_EQ(machine.processes.Started().size(), 1U);
}

TEST_F(RegistryTest, WhatIsChangedBehindTheMessageCounts) {
  window.Text3.Text = "C:\\a.reg";
  Tick();
  ExpectMessage();
  machine.boxes.WhileOpen([&] { window.Text3.Text = "C:\\b.reg"; });
  Click(window.Command1);
  EXPECT_EQ(machine.processes.Started().back().text, R"(C:\Windows\Regedit.exe /e "C:\b.reg")");
}

TEST_F(RegistryTest, AnEditorThatIsMissingChangesNothingForTheUser) {
  machine.files.Remove("C:\\Windows");
  window.Text3.Text = "C:\\a.reg";
  Tick();
  ExpectMessage();
  Click(window.Command1);
  EXPECT_THAT(machine.processes.Started(), IsEmpty());
  EXPECT_FALSE(machine.files.Exists("C:\\a.reg"));
}

TEST_F(RegistryTest, TheFileIsChosenInTheSaveDialogWithTheArchivesExtension) {
  machine.dialogs.Choose(Dialog::kSave, "C:\\out\\mine.tvz");
  Click(window.chameleonButton1);
  EXPECT_EQ(window.Text3.Text.Get(), "C:\\out\\mine.tvz");
  FileDialogRecord record = machine.dialogs.Seen()[0].file;
  std::replace(record.filter.begin(), record.filter.end(), '\0', '|');
  EXPECT_EQ(record.filter, "Registry File (*.reg)|*.reg||");
  EXPECT_EQ(record.default_ext, ".tvz");
}

TEST_F(RegistryTest, ACancelledChoiceKeepsTheFileAndSaysNothing) {
  window.Text3.Text = "C:\\old.reg";
  machine.dialogs.Cancel(Dialog::kSave);
  Click(window.chameleonButton1);
  EXPECT_EQ(window.Text3.Text.Get(), "C:\\old.reg");
}

TEST_F(RegistryTest, AHiddenWindowWakesNobody) {
  EXPECT_TRUE(window.Timer1.WakesLoop);
  window.Close();
  EXPECT_FALSE(window.Timer1.WakesLoop);
  EXPECT_FALSE((registry{machine.Interfaces()}.Timer1.WakesLoop));
}

}  // namespace
}  // namespace tarnvale::testing
