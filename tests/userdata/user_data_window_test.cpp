// The window and its panels, and the paths that a timer makes anew.
#include "userdata/user_data_window.h"

#include <gmock/gmock.h>

#include <utility>

#include "platform/window_slot.h"
#include "tests/support/raised.h"
#include "tests/userdata/user_data_fixture.h"

namespace tarnvale::testing {
namespace {

TEST_F(UserDataTest, OpensWithThePanelOfFirefox) {
  EXPECT_EQ(window.Caption.Get(), "User Data Applications");
  EXPECT_TRUE(window.GroupBox1.Visible);
  for (const GroupBox* other : {&window.GroupBox2, &window.GroupBox3, &window.GroupBox4,
                                &window.GroupBox5, &window.GroupBox6, &window.GroupBox7}) {
    EXPECT_FALSE(other->Visible);
  }
}

TEST_F(UserDataTest, EachLinkShowsItsPanelAndHidesTheSixOthers) {
  const std::vector<std::pair<Label*, GroupBox*>> panels = {
      {&window.Label41, &window.GroupBox1}, {&window.Label42, &window.GroupBox3},
      {&window.Label30, &window.GroupBox7}, {&window.Label14, &window.GroupBox4},
      {&window.Label15, &window.GroupBox5}, {&window.Label49, &window.GroupBox2},
      {&window.Label19, &window.GroupBox6}};
  for (const auto& [link, panel] : panels) {
    link->Clicked.Emit();
    for (const auto& [other_link, other] : panels) {
      EXPECT_EQ(other->Visible.Get(), other == panel) << link->Caption.Get();
    }
  }
}

TEST_F(UserDataTest, ThePanelsAreHeadedByTheirApplications) {
  EXPECT_EQ(window.Label42.Caption.Get(), "Internet Explorer");
  EXPECT_EQ(window.GroupBox3.Caption.Get(), "Microsoft Internet Explorer");
  EXPECT_EQ(window.Label19.Caption.Get(), "Windows XP Files");
  EXPECT_EQ(window.GroupBox6.Caption.Get(), "Windows XP Vital Files");
  EXPECT_EQ(window.GroupBox5.Caption.Get(), "Microsoft Outlook Express");
  EXPECT_EQ(window.ExpressTexts.Description.Caption.Get(),
            "This feature will automatically backup your Microsoft Outlook Express. It will backup "
            "Emails Messages, Identities, Accounts and Settings. You can later restore them by "
            "clicking the restore button. Supported Versions 5.0 and Above.  ");
  EXPECT_EQ(window.ThunderbirdTexts.WhatItDoes.Caption.Get(), "What It Does");
  EXPECT_EQ(window.OperaTexts.BackupLocation.Caption.Get(), "Backup Location");
}

TEST_F(UserDataTest, EachButtonStandsOnThePanelOfItsApplication) {
  EXPECT_EQ(window.chameleonButton1.Parent(), &window.GroupBox1);
  EXPECT_EQ(window.chameleonButton3.Caption.Get(), "Restore My Thunderbird Profiles");
  EXPECT_EQ(window.chameleonButton3.Parent(), &window.GroupBox2);
  EXPECT_EQ(window.chameleonButton4.Caption.Get(), "Backup My Thunderbird Profiles");
  EXPECT_EQ(window.chameleonButton5.Parent(), &window.GroupBox3);
  EXPECT_EQ(window.chameleonButton8.Parent(), &window.GroupBox4);
  EXPECT_EQ(window.chameleonButton10.Parent(), &window.GroupBox5);
  EXPECT_EQ(window.chameleonButton11.Parent(), &window.GroupBox6);
  EXPECT_EQ(window.XP_ProgressBar1.Parent(), &window.GroupBox6);
  EXPECT_EQ(window.chameleonButton12.Parent(), &window.GroupBox7);
  EXPECT_EQ(window.Text19.Parent(), &window.GroupBox7);
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
  for (const chameleonButton* button :
       {&window.chameleonButton1, &window.chameleonButton5, &window.chameleonButton7,
        &window.chameleonButton9, &window.chameleonButton11, &window.chameleonButton12}) {
    EXPECT_TRUE(button->Enabled);
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

TEST_F(UserDataTest, AClosedWindowTicksNoMoreAndIsMadeAnew) {
  WindowSlot<userdata> slot(machine.windows,
                            [&] { return std::make_unique<userdata>(machine.Interfaces()); });
  slot.Show();
  userdata& first = slot.Get();
  first.Text14.Text = folder;
  first.Close();
  Tick();
  EXPECT_EQ(first.Text1.Text.Get(), "");
  EXPECT_EQ(slot.Get().Text14.Text.Get(), "");
}

}  // namespace
}  // namespace tarnvale::testing
