// The registry and the user data window as a person uses them.
#include <gtest/gtest.h>

#include <QTest>

#include <filesystem>

#include "tests/gui/gui_fixture.h"

namespace tarnvale::testing {
namespace {

class GuiToolWindows : public GuiTest {
 protected:
  template <class W>
  W& Open(WindowSlot<W>& slot) {
    slot.Show();
    EXPECT_TRUE(WaitUntilActive(slot.Get()));
    return slot.Get();
  }
};

TEST_F(GuiToolWindows, APersonBacksUpThunderbirdAndRestoresIt) {
  std::filesystem::create_directories(Native("Keep"));
  Write("home/ann/.thunderbird/abc.default/prefs.js", "good");
  userdata& user_data = Open(Start().UserData);
  ASSERT_TRUE(WaitFor([&] { return !user_data.Text3.Text.Get().empty(); }));
  Click(user_data.Label49);
  ASSERT_TRUE(WaitFor([&] { return WidgetOf(user_data.chameleonButton4).isVisible(); }));
  EXPECT_FALSE(WidgetOf(user_data.chameleonButton1).isVisible());

  TypeIntoNextFileDialog(Native("Keep"));
  AnswerNextBox(QMessageBox::Ok);
  Click(user_data.chameleonButton4);
  EXPECT_EQ(box_text, "Your User Data Has Been Successfully Backed Up.");
  EXPECT_EQ(Content("Keep/Thunderbird Backup/abc.default/prefs.js"), "good");

  Write("home/ann/.thunderbird/abc.default/prefs.js", "broken");
  TypeIntoNextFileDialog(Native("Keep/Thunderbird Backup"));
  AnswerNextBox(QMessageBox::Ok);
  Click(user_data.chameleonButton3);
  EXPECT_EQ(box_text, "Your User Data Has Been Successfully Restored");
  EXPECT_EQ(Content("home/ann/.thunderbird/abc.default/prefs.js"), "good");
}

TEST_F(GuiToolWindows, APersonTypesABranchAndALocationAndSaves) {
  registry& registry_backup = Open(Start().RegistryBackup);
  registry_backup.Combo1.Text = "";
  registry_backup.Focus(registry_backup.Combo1);
  Type("HKEY_USERS");
  ASSERT_TRUE(WaitFor([&] { return registry_backup.Text4.Text.Get() == "HKEY_USERS"; }));
  EXPECT_TRUE(WidgetOf(registry_backup.Text2).isEnabled());
  EXPECT_FALSE(WidgetOf(registry_backup.Command1).isEnabled());
  Click(registry_backup.Text3);
  Type("C:\\a.reg");
  ASSERT_TRUE(WaitFor([&] { return WidgetOf(registry_backup.Command1).isEnabled(); }));
  AnswerNextBox(QMessageBox::Ok);
  Click(registry_backup.Command1);
  EXPECT_EQ(box_text, "Your Registry Has Been Sucessfully Backed Up");
}

TEST_F(GuiToolWindows, TheTimersOfIdleWindowsDrawNothing) {
  Form1& form = StartAndBringUp().form;
  Click(form.Label37);  // a screen without a clock
  registry& registry_backup = Open(program->RegistryBackup);
  registry_backup.Focus(registry_backup.chameleonButton1);  // no blinking caret
  Open(program->UserData);
  EXPECT_EQ(PaintsWhileIdle(), 0);
}

}  // namespace
}  // namespace tarnvale::testing
