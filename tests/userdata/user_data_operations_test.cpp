// Each button's operation and its order.
#include <gmock/gmock.h>

#include "tests/userdata/user_data_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST_F(UserDataTest, ABackupAsksCopiesAndSaysSo) {
  Tick();
  machine.files.Write(window.Text1.Text.Get() + "\\profiles.ini", "[General]");
  BackUp(window.chameleonButton1, folder);
  EXPECT_EQ(machine.dialogs.Seen().at(0).folder.prompt, "Select A Folder:");
  EXPECT_EQ(window.Text2.Text.Get(), folder);
  EXPECT_EQ(machine.files.Content("C:\\Keep\\Firefox Backup\\profiles.ini"), "[General]");
  EXPECT_EQ(machine.boxes.Shown().at(0).title, "User Data Backup");
}

TEST_F(UserDataTest, ARestoreTakesTheChosenFolderItself) {
  Tick();
  machine.files.MakeFolder(profile + "\\Application Data\\Mozilla");
  machine.files.Write("C:\\Keep\\Firefox Backup\\profiles.ini", "[General]");
  Restore(window.chameleonButton2, "C:\\Keep\\Firefox Backup");
  EXPECT_EQ(machine.files.Content(window.Text1.Text.Get() + "\\profiles.ini"), "[General]");
  EXPECT_EQ(machine.boxes.Shown().at(0).title, "User Data Restore");
}

TEST_F(UserDataTest, TheBackupMessageHasAFullStopAndTheRestoreMessageNone) {
  BackUp(window.chameleonButton1, folder);
  Restore(window.chameleonButton2, folder);
  EXPECT_EQ(machine.boxes.Shown().at(0).text.back(), '.');
  EXPECT_EQ(machine.boxes.Shown().at(1).text.back(), 'd');
}

TEST_F(UserDataTest, ThePlainApplicationsHaveFoldersOfTheirOwn) {
  Tick();
  struct Plain {
    chameleonButton& backup;
    chameleonButton& restore;
    TextBox& profile;
    TextBox& chosen;
    std::string name;
  };
  for (const Plain& each :
       std::initializer_list<Plain>{{window.chameleonButton1, window.chameleonButton2, window.Text1,
                                     window.Text2, "\\Firefox Backup"},
                                    {window.chameleonButton12, window.chameleonButton13,
                                     window.Text20, window.Text21, "\\Opera Backup"},
                                    {window.chameleonButton4, window.chameleonButton3, window.Text3,
                                     window.Text4, "\\Thunderbird Backup"},
                                    {window.chameleonButton7, window.chameleonButton8, window.Text7,
                                     window.Text8, "\\Outlook Settings"}}) {
    machine.files.ClearCalls();
    BackUp(each.backup, folder);
    EXPECT_EQ(each.chosen.Text.Get(), folder);
    Restore(each.restore, folder + each.name);
    EXPECT_EQ(each.chosen.Text.Get(), folder + each.name);
    EXPECT_THAT(CallsOf("CopyTree"),
                ElementsAre(each.profile.Text.Get() + " -> " + folder + each.name,
                            folder + each.name + " -> " + each.profile.Text.Get()));
    EXPECT_EQ(machine.files.CopiedWith(folder + each.name), Rights::kSource);
    EXPECT_EQ(machine.files.CopiedWith(each.profile.Text.Get()), Rights::kNewFile);
  }
}

TEST_F(UserDataTest, ACancelGoesOnWithTheFolderChosenLast) {
  Tick();
  BackUp(window.chameleonButton4, folder);
  machine.files.Write(window.Text3.Text.Get() + "\\profiles.ini", "[General]");
  BackUpCancelled(window.chameleonButton4);
  EXPECT_EQ(window.Text4.Text.Get(), folder);
  EXPECT_TRUE(machine.files.Exists("C:\\Keep\\Thunderbird Backup\\profiles.ini"));
}

TEST_F(UserDataTest, ACancelledFirstBackupGoesToTheRootOfTheDrive) {
  Tick();
  machine.files.Write(window.Text1.Text.Get() + "\\profiles.ini", "[General]");
  BackUpCancelled(window.chameleonButton1);
  EXPECT_EQ(window.Text2.Text.Get(), "");
  EXPECT_TRUE(machine.files.Exists("C:\\Firefox Backup\\profiles.ini"));
}

TEST_F(UserDataTest, ACancelledFirstRestoreOfTheOthersGoesOnAndIsReported) {
  Tick();
  machine.files.ClearCalls();
  for (chameleonButton* restore :
       {&window.chameleonButton2, &window.chameleonButton13, &window.chameleonButton3,
        &window.chameleonButton8, &window.chameleonButton6}) {
    RestoreCancelled(*restore);
  }
  EXPECT_EQ(machine.boxes.Shown().size(), 5U);
  // A name alone begins at the root of the drive.
  EXPECT_THAT(CallsOf("CopyTree"),
              ElementsAre("-> " + window.Text1.Text.Get(), "-> " + window.Text20.Text.Get(),
                          "-> " + window.Text3.Text.Get(), "-> " + window.Text7.Text.Get(),
                          "\\IE Favorites -> " + window.Text5.Text.Get(),
                          "\\IE Cookies -> " + window.Text16.Text.Get(),
                          "\\IE History -> " + window.Text17.Text.Get(),
                          "\\IE Temp -> " + window.Text18.Text.Get()));
}

TEST_F(UserDataTest, AFileInThePlaceOfTheBackupIsKeptWithoutAQuestion) {
  Tick();
  machine.files.Write(window.Text1.Text.Get() + "\\profiles.ini", "[General]");
  machine.files.Write("C:\\Keep\\Firefox Backup", "a file");
  BackUp(window.chameleonButton1, folder);
  EXPECT_EQ(machine.files.Content("C:\\Keep\\Firefox Backup"), "a file");
  EXPECT_EQ(machine.boxes.Shown().size(), 1U);
}

TEST_F(UserDataTest, AMissingApplicationIsReportedAsASuccess) {
  Tick();
  BackUp(window.chameleonButton7, folder);
  EXPECT_THAT(machine.files.Names(folder), IsEmpty());
  Restore(window.chameleonButton8, "C:\\Gone");
}

TEST_F(UserDataTest, ACopyThatFailsIsReportedAsASuccess) {
  Tick();
  machine.files.Write(window.Text1.Text.Get() + "\\profiles.ini", "[General]");
  machine.files.FailNext("CopyTree", 61);
  BackUp(window.chameleonButton1, folder);
  machine.files.FailNext("CopyTree", 70);
  Restore(window.chameleonButton2, folder);
}

TEST_F(UserDataTest, InTheFirstHalfSecondThereIsNothingToCopy) {
  machine.files.Write(profile + "\\Application Data\\Mozilla\\Firefox\\profiles.ini", "");
  machine.files.Write("C:\\Keep\\Firefox Backup\\new.txt", "");
  BackUp(window.chameleonButton1, "C:\\Keep\\Firefox Backup");
  Restore(window.chameleonButton2, "C:\\Keep\\Firefox Backup");
  EXPECT_THAT(machine.files.Names("C:\\Keep\\Firefox Backup"), ElementsAre("new.txt"));
  EXPECT_FALSE(machine.files.Exists(profile + "\\Application Data\\Mozilla\\Firefox\\new.txt"));
}

TEST_F(UserDataTest, AnOperationYieldsBetweenTheChoiceAndTheCopy) {
  Tick();
  machine.files.Write(window.Text1.Text.Get() + "\\profiles.ini", "");
  bool between = false;
  // The dialog yields once before it is answered.
  machine.loop.OnYield(2, [&] {
    between = window.Text2.Text.Get() == folder && machine.files.CallsOf("CopyTree") == 0;
  });
  BackUp(window.chameleonButton1, folder);
  EXPECT_TRUE(between);
}

TEST_F(UserDataTest, ThePathsCountAsTheyAreAfterTheQuestion) {
  machine.files.Write(profile + "\\Application Data\\Mozilla\\Firefox\\profiles.ini", "");
  machine.dialogs.WhileOpen([&] { Tick(); });
  BackUp(window.chameleonButton1, folder);
  EXPECT_TRUE(machine.files.Exists("C:\\Keep\\Firefox Backup\\profiles.ini"));
}

TEST_F(UserDataTest, ASecondBackupMergesAndReplacesAndKeepsWhatIsGone) {
  Tick();
  const Path live = window.Text1.Text;
  machine.files.Write(live + "\\a.txt", "old a");
  machine.files.Write(live + "\\gone.txt", "kept");
  BackUp(window.chameleonButton1, folder);
  machine.files.Write(live + "\\a.txt", "new a");
  machine.files.Write(live + "\\Sub\\b.txt", "b");
  machine.files.Remove(live + "\\gone.txt");
  BackUp(window.chameleonButton1, folder);
  EXPECT_EQ(machine.files.Content("C:\\Keep\\Firefox Backup\\a.txt"), "new a");
  EXPECT_EQ(machine.files.Content("C:\\Keep\\Firefox Backup\\Sub\\b.txt"), "b");
  EXPECT_EQ(machine.files.Content("C:\\Keep\\Firefox Backup\\gone.txt"), "kept");
}

TEST_F(UserDataTest, ARestoreReplacesFilesAndRemovesNone) {
  Tick();
  const Path live = window.Text1.Text;
  machine.files.Write(live + "\\a.txt", "broken");
  machine.files.Write(live + "\\later.txt", "later");
  machine.files.Write("C:\\Keep\\Firefox Backup\\a.txt", "good");
  Restore(window.chameleonButton2, "C:\\Keep\\Firefox Backup");
  EXPECT_EQ(machine.files.Content(live + "\\a.txt"), "good");
  EXPECT_EQ(machine.files.Content(live + "\\later.txt"), "later");
}

TEST_F(UserDataTest, OperasChosenFolderDoesNotAppearInTheVisibleField) {
  Tick();
  machine.files.Write(window.Text20.Text.Get() + "\\opera6.ini", "[User]");
  BackUp(window.chameleonButton12, folder);
  EXPECT_EQ(window.Text19.Text.Get(), "");
  EXPECT_TRUE(window.Text19.ReadOnly);
  EXPECT_EQ(window.Text21.Text.Get(), folder);
  EXPECT_TRUE(machine.files.Exists("C:\\Keep\\Opera Backup\\opera6.ini"));
  Restore(window.chameleonButton13, "C:\\Keep\\Opera Backup");
  EXPECT_EQ(window.Text19.Text.Get(), "");
}

// --- Internet Explorer ------------------------------------------------------

TEST_F(UserDataTest, TheExplorersFourFoldersAreCopiedInOrderAndBack) {
  Tick();
  machine.files.ClearCalls();
  BackUp(window.chameleonButton5, folder);
  const std::string made = "C:\\Keep\\IE Settings";
  EXPECT_THAT(CallsOf("CreateFolder"), ElementsAre(made));
  EXPECT_EQ(window.Text6.Text.Get(), made);
  EXPECT_EQ(window.Text15.Text.Get(), folder);
  const std::string temp = profile + "\\Local Settings\\Temporary Internet Files";
  EXPECT_THAT(CallsOf("CopyTree"),
              ElementsAre(profile + "\\Favorites -> " + made + "\\IE Favorites",
                          profile + "\\Cookies -> " + made + "\\IE Cookies",
                          profile + "\\Local Settings\\History -> " + made + "\\IE History",
                          temp + " -> " + made + "\\IE Temp"));
  machine.files.ClearCalls();
  Restore(window.chameleonButton6, "C:\\Keep\\IE Settings");
  EXPECT_THAT(CallsOf("CopyTree"),
              ElementsAre(made + "\\IE Favorites -> " + profile + "\\Favorites",
                          made + "\\IE Cookies -> " + profile + "\\Cookies",
                          made + "\\IE History -> " + profile + "\\Local Settings\\History",
                          made + "\\IE Temp -> " + temp));
}

TEST_F(UserDataTest, ARestoreOfTheExplorerRightAfterItsBackupCanBeCancelled) {
  Tick();
  machine.files.Write(profile + "\\Favorites\\News.url", "good");
  BackUp(window.chameleonButton5, folder);
  machine.files.Write(profile + "\\Favorites\\News.url", "broken");
  RestoreCancelled(window.chameleonButton6);
  EXPECT_EQ(machine.files.Content(profile + "\\Favorites\\News.url"), "good");
}

TEST_F(UserDataTest, ASecondCancelledBackupOfTheExplorerGoesToTheSameFolder) {
  Tick();
  BackUp(window.chameleonButton5, folder);
  machine.files.Write(profile + "\\Cookies\\index.dat", "1");
  machine.files.ClearCalls();
  BackUpCancelled(window.chameleonButton5);
  EXPECT_EQ(window.Text6.Text.Get(), "C:\\Keep\\IE Settings");
  EXPECT_TRUE(machine.files.Exists("C:\\Keep\\IE Settings\\IE Cookies\\index.dat"));
  // An empty folder comes of it, made before the field is set.
  EXPECT_THAT(CallsOf("CreateFolder"), ElementsAre("C:\\Keep\\IE Settings\\IE Settings"));
}

TEST_F(UserDataTest, ACancelledFirstBackupOfTheExplorerGoesToTheRootOfTheDrive) {
  Tick();
  machine.files.Write(profile + "\\Favorites\\News.url", "1");
  BackUpCancelled(window.chameleonButton5);
  EXPECT_EQ(window.Text6.Text.Get(), "\\IE Settings");
  EXPECT_TRUE(machine.files.Exists("C:\\IE Settings\\IE Favorites\\News.url"));
}

TEST_F(UserDataTest, ABackupOfTheExplorerIntoAFolderThatIsThereGoesOn) {
  Tick();
  machine.files.Write(profile + "\\Favorites\\News.url", "1");
  machine.files.MakeFolder("C:\\Keep\\IE Settings");
  BackUp(window.chameleonButton5, folder);
  EXPECT_TRUE(machine.files.Exists("C:\\Keep\\IE Settings\\IE Favorites\\News.url"));
}

// --- Outlook Express --------------------------------------------------------

TEST_F(UserDataTest, ExpressCopiesItsMailAndStartsThreeExports) {
  Tick();
  machine.files.Write(window.Text11.Text.Get() + "\\Inbox.dbx", "mail");
  BackUp(window.chameleonButton9, folder);
  EXPECT_EQ(window.Text9.Text.Get(), "C:\\Keep\\Outlook Express Settings");
  EXPECT_EQ(window.Text12.Text.Get(), folder);
  EXPECT_EQ(machine.files.Content("C:\\Keep\\Outlook Express Settings\\OE Identities\\Inbox.dbx"),
            "mail");
  const std::string start = "C:\\Windows\\Regedit.exe /e \"C:\\Keep\\Outlook Express Settings";
  EXPECT_THAT(
      Lines(),
      ElementsAre(start + "\\Accounts.reg\" "
                          "\"HKEY_CURRENT_USER\\Software\\Microsoft\\Internet Account Manager",
                  start + "\\Settings.reg\" "
                          "\"HKEY_CURRENT_USER\\Software\\Microsoft\\Outlook Express",
                  start + "\\Identities.reg\" \"HKEY_CURRENT_USER\\Identities"));
  EXPECT_EQ(machine.processes.Started().at(0).kind, StartKind::kMinimized);
}

TEST_F(UserDataTest, ASecondCancelledBackupOfExpressGoesToTheSameFolder) {
  Tick();
  BackUp(window.chameleonButton9, folder);
  machine.files.Write(window.Text11.Text.Get() + "\\Inbox.dbx", "mail");
  BackUpCancelled(window.chameleonButton9);
  EXPECT_EQ(window.Text9.Text.Get(), "C:\\Keep\\Outlook Express Settings");
  EXPECT_TRUE(machine.files.Exists("C:\\Keep\\Outlook Express Settings\\OE Identities\\Inbox.dbx"));
}

TEST_F(UserDataTest, TheExportsAreStartedAfterTheCopyAndBeforeTheMessage) {
  Tick();
  machine.files.Write(window.Text11.Text.Get() + "\\Inbox.dbx", "mail");
  // The picker's yield, the operation's own, then that of the copied file.
  machine.loop.OnYield(3, [&] { EXPECT_THAT(Lines(), IsEmpty()); });
  machine.boxes.WhileOpen([&] { EXPECT_EQ(Lines().size(), 3U); });
  BackUp(window.chameleonButton9, folder);
}

TEST_F(UserDataTest, AnIdentityThatChangesDuringTheCopyDoesNotDisturbIt) {
  Tick();
  machine.files.Write(window.Text11.Text.Get() + "\\Folders.dbx", "1");
  machine.files.Write(window.Text11.Text.Get() + "\\Inbox.dbx", "2");
  // The yield after the first file.
  machine.loop.OnYield(3, [&] {
    machine.registry.values[identity_value] = "{another identity, with a longer name}";
    Tick();
  });
  BackUp(window.chameleonButton9, folder);
  EXPECT_THAT(window.Text11.Text.Get(), ::testing::HasSubstr("another"));
  EXPECT_THAT(machine.files.Names("C:\\Keep\\Outlook Express Settings\\OE Identities"),
              ElementsAre("Folders.dbx", "Inbox.dbx"));
}

TEST_F(UserDataTest, ExpressIsRestoredWithThreeImports) {
  Tick();
  machine.files.MakeFolder(profile +
                           "\\Local Settings\\Application Data\\Identities\\{1A2B}\\Microsoft");
  const Path backup = "C:\\Keep\\Outlook Express Settings";
  machine.files.Write(backup + "\\OE Identities\\Inbox.dbx", "mail");
  Restore(window.chameleonButton10, backup);
  EXPECT_EQ(window.Text13.Text.Get(), backup + "\\OE Identities");
  EXPECT_EQ(machine.files.Content(window.Text11.Text.Get() + "\\Inbox.dbx"), "mail");
  const std::string start = "C:\\Windows\\Regedit.exe /s \"" + backup;
  EXPECT_THAT(Lines(), ElementsAre(start + "\\Accounts.reg", start + "\\Settings.reg",
                                   start + "\\Identities.reg"));
}

TEST_F(UserDataTest, ACancelledFirstRestoreOfExpressDoesNothingAndSaysNothing) {
  Tick();
  Cancel();
  Click(window.chameleonButton10);
  EXPECT_THAT(machine.boxes.Shown(), IsEmpty());
  EXPECT_THAT(Lines(), IsEmpty());
  EXPECT_THAT(CallsOf("CopyTree"), IsEmpty());
  EXPECT_EQ(window.Text13.Text.Get(), "\\OE Identities");
}

TEST_F(UserDataTest, ACancelledFirstBackupOfExpressGoesToTheRootOfTheDrive) {
  Tick();
  machine.files.Write(window.Text11.Text.Get() + "\\Inbox.dbx", "mail");
  BackUpCancelled(window.chameleonButton9);
  EXPECT_TRUE(machine.files.Exists("C:\\Outlook Express Settings\\OE Identities\\Inbox.dbx"));
}

TEST_F(UserDataTest, AnEditorThatIsMissingIsReportedAsASuccess) {
  machine.files.Remove("C:\\Windows");
  Tick();
  BackUp(window.chameleonButton9, folder);
  Restore(window.chameleonButton10, "C:\\Keep\\Outlook Express Settings");
  EXPECT_THAT(Lines(), IsEmpty());
  EXPECT_EQ(machine.processes.Refused().size(), 6U) << "each is tried";
}

// --- The system's files -----------------------------------------------------

const std::vector<std::string> kSources = {"C:\\Windows\\Explorer.exe",
                                           "C:\\Windows\\System.ini",
                                           "C:\\Windows\\Regedit.exe",
                                           "C:\\Windows\\system32\\Rundll32.exe",
                                           "C:\\Windows\\system32\\command.com",
                                           "C:\\Windows\\system32\\hal.dll",
                                           "C:\\Windows\\system32\\defrag.exe",
                                           "C:\\autoexec.bat",
                                           "C:\\boot.ini",
                                           "C:\\CONFIG.SYS",
                                           "C:\\Windows\\system32\\winlogon.exe"};

std::string NameOf(const std::string& path) {
  return path.substr(path.rfind('\\'));
}

TEST_F(UserDataTest, TheSystemsElevenFilesAreCopiedInOrder) {
  for (const std::string& source : kSources) machine.files.Write(source, "of " + source);
  machine.files.Write("C:\\Keep\\Windows Settings\\boot.ini", "old");
  machine.files.ClearCalls();
  BackUp(window.chameleonButton11, folder);
  std::vector<std::string> calls;
  for (const std::string& source : kSources) {
    const std::string target = "C:\\Keep\\Windows Settings" + NameOf(source);
    calls.push_back(source + " -> " + target);
    EXPECT_EQ(machine.files.Content(target), "of " + source);
  }
  EXPECT_EQ(CallsOf("CopyWhole"), calls);
}

TEST_F(UserDataTest, TheBarCountsTheFilesAndStandsAtItsEnd) {
  std::vector<int> steps;
  window.XP_ProgressBar1.Value.Changed().Listen(
      [&] { steps.push_back(window.XP_ProgressBar1.Value); });
  BackUp(window.chameleonButton11, folder);
  EXPECT_THAT(steps, ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11));
  EXPECT_EQ(window.XP_ProgressBar1.Max.Get(), 11);
  EXPECT_EQ(window.XP_ProgressBar1.Percent(), 100);
}

TEST_F(UserDataTest, TheBarStartsOverBeforeTheQuestion) {
  BackUp(window.chameleonButton11, folder);
  machine.dialogs.WhileOpen([&] { EXPECT_EQ(window.XP_ProgressBar1.Value, 0); });
  BackUp(window.chameleonButton11, folder);
}

TEST_F(UserDataTest, AFileThatFailsIsPassedOverAndTheBarRunsToItsEnd) {
  for (const std::string& source : kSources) machine.files.Write(source, "x");
  machine.files.Remove("C:\\boot.ini");
  machine.files.FailOn("CopyWhole", "C:\\Windows\\system32\\hal.dll", 70);
  BackUp(window.chameleonButton11, folder);
  EXPECT_THAT(machine.files.Names("C:\\Keep\\Windows Settings"),
              ElementsAre("autoexec.bat", "command.com", "CONFIG.SYS", "defrag.exe", "Explorer.exe",
                          "Regedit.exe", "Rundll32.exe", "System.ini", "winlogon.exe"));
  EXPECT_EQ(window.XP_ProgressBar1.Value, 11);
}

TEST_F(UserDataTest, ACancelledFirstBackupOfTheSystemsFilesGoesToTheRootOfTheDrive) {
  machine.files.Write("C:\\boot.ini", "boot");
  BackUpCancelled(window.chameleonButton11);
  EXPECT_EQ(window.Text14.Text.Get(), "\\Windows Settings");
  EXPECT_EQ(machine.files.Content("C:\\Windows Settings\\boot.ini"), "boot");
}

TEST_F(UserDataTest, ASecondPressThatIsCancelledGoesOneLevelDeeper) {
  machine.files.Write("C:\\boot.ini", "boot");
  BackUp(window.chameleonButton11, folder);
  EXPECT_EQ(window.Text14.Text.Get(), "C:\\Keep\\Windows Settings");
  BackUpCancelled(window.chameleonButton11);
  EXPECT_EQ(window.Text14.Text.Get(), "C:\\Keep\\Windows Settings\\Windows Settings");
  EXPECT_EQ(machine.files.Content("C:\\Keep\\Windows Settings\\Windows Settings\\boot.ini"),
            "boot");
}

}  // namespace
}  // namespace tarnvale::testing
