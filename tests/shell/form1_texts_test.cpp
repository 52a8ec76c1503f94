// What the main window says, as a screen reader reads it: each screen in the order of
// its tabs.
#include <gmock/gmock.h>

#include <map>
#include <string>
#include <vector>

#include "tests/shell/form1_fixture.h"
#include "ui/accessible_names.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;

class Form1TextsTest : public Form1Test {
 protected:
  /// A menu with all below it, a row a line.
  static std::string Tree(const MenuItem& menu, const std::string& indent = "") {
    std::string lines = indent + menu.Caption.Get() + "\n";
    for (const MenuItem* row : menu.Rows()) lines += Tree(*row, indent + "  ");
    return lines;
  }

  /// The names of what is placed in a control and can be seen, but for what has none.
  std::vector<std::string> In(const Control& container) {
    const std::map<const Control*, const Label*> labels = LabelsOf(form);
    std::vector<std::string> names;
    for (const Placement& placement : form.Placements()) {
      if (placement.container != &container || !placement.control->Visible) continue;
      const auto label = labels.find(placement.control);
      const std::string name =
          NameForReaders(*placement.control, label == labels.end() ? nullptr : label->second);
      if (!name.empty()) names.push_back(name);
    }
    return names;
  }
};

TEST_F(Form1TextsTest, OfTheMenu) {
  EXPECT_THAT(form.MenuBar, ElementsAre(&form.mnuMenu));
  EXPECT_EQ(Tree(form.mnuMenu),
            "File\n"
            "  &Backup Now\n"
            "  Backup &Wizard\n"
            "    Schedule\n"
            "    Backup Files\n"
            "    Storage Location\n"
            "    Save Settings\n"
            "  Additional &Features\n"
            "    General && Backup Settings\n"
            "    Advanced Auto Settings\n"
            "  -\n"
            "  Tarnvale &Tools\n"
            "    User Data Applications\n"
            "    Tarnvale Splitter\n"
            "    Registry Backup Maker\n"
            "    Server Upload && Download\n"
            "    Tarnvale Compressor\n"
            "  -\n"
            "  &Exit\n");
}

TEST_F(Form1TextsTest, OfTheTaskPanel) {
  EXPECT_THAT(
      In(form.TaskPanel),
      ElementsAre("Tarnvale Tasks", "Perform A Quick Backup", "Restore A Selected Backup",
                  "Backup Wizard", "Schedule My Backup Process", "Include Files In My Backup List",
                  "Storage Location For Backup", "Save My Backup Settings", "Additional Features",
                  "General & Backup Settings", "Advanced Auto Settings", "Tarnvale Tools",
                  "User Data Applications", "Tarnvale Splitter", "Registry Backup Maker",
                  "Server Upload & Download", "Tarnvale Compressor"));
}

TEST_F(Form1TextsTest, OfTheList) {
  EXPECT_EQ(form.List.GroupBox1.Caption.Get(), "Include Files In My Backup List");
  EXPECT_THAT(In(form.List.Picture1), ElementsAre("Folders"));
  EXPECT_THAT(In(form.List.GroupBox1),
              ElementsAre("Files Of The Folder", "Filter With Extension", "Extension",
                          "Show Hidden", "Show System", "Show Read-Only", "Include Sub Directories",
                          " Backup This Directory's Contents", " Backup Selected Items",
                          "Selected Files & Directories For Backup: ",
                          "Selected Files And Directories For Backup",
                          " Remove Selected Item(s) From Backup"));
}

TEST_F(Form1TextsTest, OfTheStorageLocation) {
  EXPECT_EQ(form.Storage.GroupBox2.Caption.Get(), "Storage Location For Backup");
  EXPECT_THAT(In(form.Storage.picBrowse), ElementsAre("Folders For Storage"));
  const std::string heading = "Select Directory Where You Want To Backup Your Files";
  EXPECT_THAT(
      In(form.Storage.GroupBox2),
      ElementsAre(heading, heading, "Selected Backup Folder Path", "Selected Backup Folder Path",
                  "Select This Location For My Backup Files"));
}

TEST_F(Form1TextsTest, OfTheProgress) {
  EXPECT_EQ(form.Progress.GroupBox3.Caption.Get(), "Backup Progress");
  const std::string nothing_yet = "No Backup Process Has Been Currently Performed";
  EXPECT_THAT(In(form.Progress.GroupBox3),
              ElementsAre("Current Backup From:", nothing_yet, "Current Backup To:", nothing_yet,
                          "Current Backup Progress:", nothing_yet,
                          "Current File Progress:", "Current File Progress",
                          "Total Backup Progress:", "Total Backup Progress",
                          "More Options:", "Read Log File To Check For Backup Errors And Success",
                          "Tarnvale Compressor"));
}

TEST_F(Form1TextsTest, OfTheSchedule) {
  EXPECT_EQ(form.Schedule.GroupBox4.Caption.Get(), "");
  EXPECT_THAT(
      In(form.Schedule.GroupBox4),
      ElementsAre("Schedule For A Backup", "Current Information", "Backup & Tasks Information"));
  EXPECT_THAT(In(form.Schedule.GroupBox10),
              ElementsAre("Always At This Time:", "Time Of The Backup, Hours And Minutes",
                          "Each Time This Interval Has Passed:",
                          "Interval Between Backups, Hours And Minutes", "On These Days",
                          "Every Day", "Every Sunday", "Every Monday", "Every Tuesday",
                          "Every Wednesday", "Every Thursday", "Every Friday", "Every Saturday"));
  machine.Advance(1s);
  EXPECT_THAT(In(form.Schedule.GroupBox9),
              ElementsAre("Date:", "Friday, March 14, 2008", "Time:", "11:00:01 AM",
                          "Next Schedule:", "No Backup Has Scheduled"));
  EXPECT_THAT(In(form.Schedule.GroupBox8),
              ElementsAre("Items For Backup:", "0 Items", "E-Mail Reports:", "E-Mail Reports",
                          "U3 Smart Drives Backups", "Compression Occurs:", "Compression Occurs",
                          "FTP Server Upload Occurs:", "FTP Server Upload Occurs"));
}

TEST_F(Form1TextsTest, OfTheGeneralSettings) {
  EXPECT_EQ(form.General.GroupBox5.Caption.Get(), "General && Backup Settings");
  EXPECT_THAT(
      In(form.General.GroupBox5),
      ElementsAre(
          "Select A Backup Mode", "Brenlow Mode",
          "Copies every single file of the list at each backup; of a whole folder, what has "
          "changed.",
          "Fennick Mode", "Copies a single file only when it has changed since its last backup.",
          "Tolvern Mode",
          "Keeps one folder and the storage location in step, both ways. Needs a list of one "
          "item.",
          "General Options", "Show Visual Notification Upon Backup",
          "Automatically Save A Backup Log File", "Export & Import My Backup Settings",
          "Export My Current Settings", "File To Export To", "Settings Exported",
          "Import My Saved Settings", "File To Import", "Settings Imported"));
}

TEST_F(Form1TextsTest, OfTheAdvancedSettings) {
  EXPECT_EQ(form.Advanced.GroupBox6.Caption.Get(), "");
  EXPECT_THAT(In(form.Advanced.GroupBox6),
              ElementsAre("Advanced Auto Settings", "Compression Settings", "FTP Server Settings",
                          "E-Mail Reports Settings"));
  EXPECT_THAT(
      In(form.Advanced.GroupBox14),
      ElementsAre("Automatically Compress Files After Backup (Requires Compression Settings)",
                  "Automatically Upload Compressed File (Requires FTP Server Settings)",
                  "Automatically Send An E-Mail Report (Requires E-Mail Reports Settings)"));
  EXPECT_THAT(In(form.Advanced.GroupBox11),
              ElementsAre("Automatic Compression Storage Directory",
                          "Automatic Compression Storage Directory",
                          "Browse For Automatic Compression Storage Directory",
                          "Save My Advanced Auto Settings"));
  EXPECT_THAT(In(form.Advanced.GroupBox13),
              ElementsAre("Setup My FTP Server Upload Settings",
                          "Server, user name and password of the upload."));
  EXPECT_THAT(
      In(form.Advanced.GroupBox12),
      ElementsAre("Outgoing STMP Mail Server:", "Outgoing Mail Server", "Send To: ", "Send To",
                  "(For Multiple Addresses Seperate By A Comma)", "Send Test E-Mail Report"));
}

TEST_F(Form1TextsTest, OfTheRestore) {
  EXPECT_EQ(form.Restore.GroupBox15.Caption.Get(), "Restore A Backup");
  EXPECT_THAT(In(form.Restore.Picture2), ElementsAre("Folders Of Backups"));
  EXPECT_THAT(In(form.Restore.Picture3), ElementsAre("Folders For Restore"));
  EXPECT_THAT(
      In(form.Restore.GroupBox15),
      ElementsAre("Choose A Backup To Restore", "Choose A Backup To Restore", "Backup To Restore",
                  "Choose A Location For Restore", "Choose A Location For Restore",
                  "Location For Restore", "If U3 Device Restore Please Select System Or Documents",
                  "Restore Status", "Restore Status", "Restore My Backup Now"));
}

}  // namespace
}  // namespace tarnvale::testing
