// The window and its panels, and the paths that a timer makes anew.
#include "userdata/user_data_window.h"

#include <gmock/gmock.h>

#include <array>
#include <vector>

#include "tests/support/raised.h"
#include "tests/userdata/user_data_fixture.h"
#include "ui/window_slot.h"

namespace tarnvale::testing {
namespace {

struct PanelRow {
  Label userdata::*link;
  const char* caption;
  GroupBox userdata::*panel;
  const char* heading;
  const char* description;
  TextBox userdata::*location;
  chameleonButton userdata::*backup;
  const char* backup_caption;
  chameleonButton userdata::*restore;  ///< null where nothing can be restored
  const char* restore_caption;
};
// As the navigation column has them.
constexpr std::array<PanelRow, 7> kPanels{{
    {&userdata::Label41, "Mozilla Firefox", &userdata::GroupBox1, "Mozilla Firefox",
     "This feature will automatically backup your Mozilla Firefox. This will backup up "
     "your general settings, cache, cookies, history, download list, extensions, "
     "bookmarks and certificates. You can later restore them by clicking on the restore "
     "button.",
     &userdata::Text2, &userdata::chameleonButton1, "Backup My Firefox Profiles",
     &userdata::chameleonButton2, "Restore My Firefox Profiles"},
    {&userdata::Label42, "Internet Explorer", &userdata::GroupBox3, "Microsoft Internet Explorer",
     "This feature will backup your Microsoft Internet Explorer. These Include: Cookies, "
     "Temp Files, History, Favorites and Phishing Filter Settings. You can later restore "
     "them by clicking the restore button. Supported Versions are: IE 5.0, 6.0 and 7.0",
     &userdata::Text6, &userdata::chameleonButton5, "Backup My Internet Explorer",
     &userdata::chameleonButton6, "Restore My Internet Explorer"},
    {&userdata::Label30, "Opera Browser", &userdata::GroupBox7, "Opera Browser",
     "This feature will automatically backup your Opera Browser. This will backup your "
     "general settings, cache, cookies, history, extensions, bookmarks, mail and "
     "certificates. You can later restore them by clicking on the restore button.",
     &userdata::Text19, &userdata::chameleonButton12, "Backup My Opera Profiles",
     &userdata::chameleonButton13, "Restore My Opera Profiles"},
    {&userdata::Label14, "Microsoft Outlook", &userdata::GroupBox4, "Microsoft Outlook",
     "This feature will automatically backup all your Microsoft Outlook Messages in a "
     "Personal Folder Format (.pst). You can later restore them by clicking the restore "
     "button. Supported Versions are: Microsoft Outlook 2000 and Above.",
     &userdata::Text8, &userdata::chameleonButton7, "Backup My Microsoft Outlook Messages",
     &userdata::chameleonButton8, "Restore My Microsoft Outlook Messages"},
    {&userdata::Label15, "Microsoft Outlook Express", &userdata::GroupBox5,
     "Microsoft Outlook Express",
     "This feature will automatically backup your Microsoft Outlook Express. It will "
     "backup Emails Messages, Identities, Accounts and Settings. You can later restore "
     "them by clicking the restore button. Supported Versions 5.0 and Above.  ",
     &userdata::Text9, &userdata::chameleonButton9, "Backup My Outlook Express",
     &userdata::chameleonButton10, "Restore My Outlook Express"},
    {&userdata::Label49, "Mozilla Thunderbird", &userdata::GroupBox2, "Mozilla Thunderbird",
     "This feature will automatically backup your Mozilla Thunderbird. This will backup "
     "your general settings, email messages, address book, saved passwords and "
     "certificates. You can later restore them clicking on the restore button.",
     &userdata::Text4, &userdata::chameleonButton4, "Backup My Thunderbird Profiles",
     &userdata::chameleonButton3, "Restore My Thunderbird Profiles"},
    {&userdata::Label19, "Windows XP Files", &userdata::GroupBox6, "Windows XP Vital Files",
     "This feature will automatically backup your Microsoft Windows XP Files. These "
     "include: Explorer.exe, boot.ini, config.sys, autoexec.bat, System.ini, Regedit.exe, "
     "Rundll32.exe, command.com, hal.dll, defrag.exe and winlogon.exe. Restore is not "
     "available. You can restore these files manually in case of system failure, viruses "
     "or corrupted files.",
     &userdata::Text14, &userdata::chameleonButton11, "Backup My Windows Vital Files", nullptr, ""},
}};

std::vector<const chameleonButton*> ButtonsOn(const userdata& window, const PanelRow& row) {
  if (row.restore == nullptr) return {&(window.*row.backup)};
  return {&(window.*row.backup), &(window.*row.restore)};
}

TEST_F(UserDataTest, OpensWithThePanelOfFirefox) {
  EXPECT_EQ(window.Caption.Get(), "User Data Applications");
  EXPECT_TRUE(window.GroupBox1.Visible);
  for (const GroupBox* other : {&window.GroupBox2, &window.GroupBox3, &window.GroupBox4,
                                &window.GroupBox5, &window.GroupBox6, &window.GroupBox7}) {
    EXPECT_FALSE(other->Visible);
  }
}

TEST_F(UserDataTest, EachLinkShowsItsPanelAndHidesTheSixOthers) {
  for (const PanelRow& row : kPanels) {
    (window.*row.link).Clicked.Emit();
    for (const PanelRow& other : kPanels) {
      EXPECT_EQ((window.*other.panel).Visible.Get(), other.panel == row.panel) << row.caption;
    }
  }
}

TEST_F(UserDataTest, TheNavigationColumnHasThreeHeadings) {
  EXPECT_EQ(window.BrowsersHeading.Caption.Get(), "Internet Browsers");
  EXPECT_EQ(window.MailHeading.Caption.Get(), "E-Mail Clients");
  EXPECT_EQ(window.SystemHeading.Caption.Get(), "Windows XP");
}

TEST_F(UserDataTest, EachPanelSaysWordForWordWhatItDoes) {
  for (std::size_t i = 0; i < kPanels.size(); ++i) {
    const PanelRow& row = kPanels[i];
    EXPECT_EQ((window.*row.link).Caption.Get(), row.caption);
    EXPECT_EQ((window.*row.panel).Caption.Get(), row.heading);
    const userdata::PanelTexts& texts = window.Texts[i];
    EXPECT_EQ(texts.WhatItDoes.Caption.Get(), "What It Does") << row.caption;
    EXPECT_EQ(texts.Description.Caption.Get(), row.description);
    EXPECT_EQ(texts.BackupLocation.Caption.Get(), "Backup Location") << row.caption;
    EXPECT_EQ((window.*row.backup).Caption.Get(), row.backup_caption);
    if (row.restore != nullptr) {
      EXPECT_EQ((window.*row.restore).Caption.Get(), row.restore_caption);
    }
  }
}

TEST_F(UserDataTest, EachButtonStandsOnThePanelOfItsApplication) {
  std::size_t buttons = 0;
  for (std::size_t i = 0; i < kPanels.size(); ++i) {
    const PanelRow& row = kPanels[i];
    const GroupBox* panel = &(window.*row.panel);
    for (const chameleonButton* button : ButtonsOn(window, row)) {
      EXPECT_EQ(button->Parent(), panel) << button->Caption.Get();
      ++buttons;
    }
    EXPECT_EQ((window.*row.location).Parent(), panel) << row.caption;
    const userdata::PanelTexts& texts = window.Texts[i];
    EXPECT_EQ(texts.WhatItDoes.Parent(), panel) << row.caption;
    EXPECT_EQ(texts.Description.Parent(), panel) << row.caption;
    EXPECT_EQ(texts.BackupLocation.Parent(), panel) << row.caption;
  }
  EXPECT_EQ(buttons, 13U);
  EXPECT_EQ(window.XP_ProgressBar1.Parent(), &window.GroupBox6);
}

TEST_F(UserDataTest, TheStateFieldsAreNotLaidOut) {
  for (const TextBox* field :
       {&window.Text1, &window.Text3, &window.Text5, &window.Text7, &window.Text10, &window.Text11,
        &window.Text12, &window.Text13, &window.Text15, &window.Text16, &window.Text17,
        &window.Text18, &window.Text20, &window.Text21}) {
    EXPECT_EQ(field->Owner(), nullptr);
  }
}

TEST_F(UserDataTest, NothingReachesOverTheEdgeOfWhatHoldsIt) {
  for (const Placement& inner : window.Placements()) {
    Size room = window.ClientSize;
    for (const Placement& outer : window.Placements()) {
      if (outer.control == inner.container) room = {outer.place.width_px, outer.place.height_px};
    }
    EXPECT_LE(inner.place.RightPx(), room.width_px);
    EXPECT_LE(inner.place.BottomPx(), room.height_px);
  }
}

TEST_F(UserDataTest, ThePathsAreFilledHalfASecondAfterTheWindowOpened) {
  window.Show();
  machine.Advance(499ms);
  EXPECT_EQ(window.Text1.Text.Get(), "");
  machine.Advance(1ms);
  EXPECT_EQ(window.Text10.Text.Get(), "{1A2B}");
  EXPECT_EQ(window.Text11.Text.Get(), profile +
                                          "\\Local Settings\\Application Data\\Identities\\"
                                          "{1A2B}\\Microsoft\\Outlook Express");
  EXPECT_EQ(window.Text1.Text.Get(), profile + "\\Application Data\\Mozilla\\Firefox");
  EXPECT_EQ(window.Text20.Text.Get(), profile + "\\Application Data\\Opera");
  EXPECT_EQ(window.Text3.Text.Get(), profile + "\\Application Data\\Thunderbird");
  EXPECT_EQ(window.Text5.Text.Get(), profile + "\\Favorites");
  EXPECT_EQ(window.Text7.Text.Get(),
            profile + "\\Local Settings\\Application Data\\Microsoft\\Outlook");
  EXPECT_EQ(window.Text16.Text.Get(), profile + "\\Cookies");
  EXPECT_EQ(window.Text17.Text.Get(), profile + "\\Local Settings\\History");
  EXPECT_EQ(window.Text18.Text.Get(), profile + "\\Local Settings\\Temporary Internet Files");
}

TEST_F(UserDataTest, NothingDependsOnWhatIsInstalled) {
  Tick();
  for (const PanelRow& row : kPanels) {
    for (const chameleonButton* button : ButtonsOn(window, row)) {
      EXPECT_TRUE(button->Enabled) << button->Caption.Get();
    }
  }
}

TEST_F(UserDataTest, AnEmptyUserNameShowsTwoBackslashesAtTheJoin) {
  machine.processes.variables["USERNAME"] = "";
  Tick();
  EXPECT_EQ(window.Text5.Text.Get(), "C:\\Documents and Settings\\\\Favorites");
  machine.processes.variables.clear();
  Tick();
  EXPECT_EQ(window.Text5.Text.Get(), "C:\\Documents and Settings\\\\Favorites");
}

TEST_F(UserDataTest, AnIdentityOfEmptyTextShowsTwoBackslashesInItsPlace) {
  machine.registry.values[identity_value] = "";
  Tick();
  EXPECT_EQ(
      window.Text11.Text.Get(),
      profile + "\\Local Settings\\Application Data\\Identities\\\\Microsoft\\Outlook Express");
}

TEST_F(UserDataTest, AnotherDefaultIdentityTakesEffectWithinHalfASecond) {
  Tick();
  machine.registry.values[identity_value] = "{3C4D}";
  Tick();
  EXPECT_EQ(window.Text10.Text.Get(), "{3C4D}");
  EXPECT_THAT(window.Text11.Text.Get(), ::testing::HasSubstr("\\{3C4D}\\"));
}

TEST_F(UserDataTest, AnotherUserTakesEffectAtTheNextTick) {
  Tick();
  machine.processes.variables["USERNAME"] = "ben";
  Tick();
  EXPECT_EQ(window.Text16.Text.Get(), "C:\\Documents and Settings\\ben\\Cookies");
}

TEST_F(UserDataTest, AMissingRegistryValueLeavesTheIdentityEmptyAndTheWindowAlive) {
  Tick();
  machine.registry.values.clear();
  Tick();
  EXPECT_EQ(window.Text10.Text.Get(), "");
  EXPECT_EQ(window.Text5.Text.Get(), profile + "\\Favorites") << "the rest of the tick runs";
  machine.registry.values[identity_value] = "{5E6F}";
  Tick();
  EXPECT_EQ(window.Text10.Text.Get(), "{5E6F}");
}

TEST_F(UserDataTest, ARegistryReadHasNoTrapOfItsOwn) {
  EXPECT_EQ(window.Reg_Read(identity_value), "{1A2B}");
  EXPECT_EQ(RaisedBy([&] { window.Reg_Read("HKEY_CURRENT_USER\\Missing"); }), 53);
}

TEST_F(UserDataTest, AnApplicationThatThisSystemKeepsElsewhereIsTakenFromThere) {
  machine.applications.folders[Application::kFirefox] = "C:\\home\\ann\\.mozilla\\firefox";
  Tick();
  EXPECT_EQ(window.Text1.Text.Get(), "C:\\home\\ann\\.mozilla\\firefox");
  EXPECT_EQ(window.Text3.Text.Get(), profile + "\\Application Data\\Thunderbird");
}

TEST_F(UserDataTest, AClosedWindowStaysAsItIs) {
  WindowSlot<userdata> slot(
      machine.loop, machine.windows,
      [&] { return std::make_unique<userdata>(machine.Interfaces()); }, WhenClosed::kHidden);
  slot.Show();
  slot.Get().Text14.Text = folder;
  slot.Get().Close();
  Tick();
  EXPECT_TRUE(slot.IsLoaded());
  EXPECT_EQ(slot.Get().Text14.Text.Get(), folder);
}

TEST_F(UserDataTest, AHiddenWindowWakesNobody) {
  EXPECT_FALSE(window.Timer1.WakesLoop);
  window.Show();
  EXPECT_TRUE(window.Timer1.WakesLoop);
  window.Close();
  EXPECT_FALSE(window.Timer1.WakesLoop);
}

}  // namespace
}  // namespace tarnvale::testing
