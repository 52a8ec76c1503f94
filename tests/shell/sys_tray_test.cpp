#include "shell/sys_tray.h"

#include <gmock/gmock.h>

#include "tests/support/fake_machine.h"

namespace tarnvale {
namespace {

using ::testing::ElementsAre;

class SysTrayTest : public ::testing::Test {
 protected:
  SysTrayTest() {
    window.Icon = "AAA";
    tray.LButtonDblClk.Listen([this] { events.emplace_back("LButtonDblClk"); });
    tray.LButtonDown.Listen([this] { events.emplace_back("LButtonDown"); });
    tray.LButtonUp.Listen([this] { events.emplace_back("LButtonUp"); });
    tray.RButtonDblClk.Listen([this] { events.emplace_back("RButtonDblClk"); });
    tray.RButtonDown.Listen([this] { events.emplace_back("RButtonDown"); });
    tray.RButtonUp.Listen([this] { events.emplace_back("RButtonUp"); });
    tray.SourceWindow(&window);
    window.Show();
  }

  std::string ShownTip() const {
    const auto& tip = machine.tray.Log().back().record.tip;
    return std::string(tip.begin(), tip.end());
  }

  testing::FakeMachine machine;
  Window window;
  clsSysTray tray{machine.Interfaces(), window};
  std::vector<std::string> events;
};

TEST_F(SysTrayTest, TheRecordIsThatOfTheClassicCall) {
  tray.IconInSysTray();
  const auto& sent = machine.tray.Log().at(0);
  EXPECT_EQ(sent.command, TrayCommand::kAdd);
  EXPECT_EQ(sent.record.size, 88U);
  EXPECT_EQ(sent.record.id, 1U);
  EXPECT_EQ(sent.record.flags, 7U);
  EXPECT_EQ(sent.record.callback_message, 512U);
  ASSERT_NE(sent.record.hook, nullptr);
  EXPECT_FALSE(sent.record.hook->Visible);
  EXPECT_EQ(sent.record.hook->Owner(), &window);
}

TEST_F(SysTrayTest, EachMouseMessageRaisesItsEvent) {
  tray.IconInSysTray();
  tray.DefaultDblClk = false;
  for (const TrayMessage message : {kTrayLeftDown, kTrayLeftUp, kTrayLeftDouble, kTrayRightDown,
                                    kTrayRightUp, kTrayRightDouble}) {
    machine.tray.Mouse(message);
  }
  EXPECT_THAT(events, ElementsAre("LButtonDown", "LButtonUp", "LButtonDblClk", "RButtonDown",
                                  "RButtonUp", "RButtonDblClk"));
}

TEST_F(SysTrayTest, AnXOf7710TwipsIsMessage514AndOthersAreIgnored) {
  tray.IconInSysTray();
  PictureBox& hook = *machine.tray.Log().at(0).record.hook;
  for (const double x : {7710.0, 7680.0, 7785.0, 0.0}) hook.MouseMove.Emit(x, 3);
  EXPECT_THAT(events, ElementsAre("LButtonUp"));
}

TEST_F(SysTrayTest, ADoubleClickBringsTheWindowUpAndBackToTheTaskBar) {
  window.State = WindowState::kMinimized;
  tray.MinToSysTray();
  EXPECT_FALSE(window.Visible);
  EXPECT_FALSE(window.InTaskBar);
  machine.tray.Mouse(kTrayLeftDouble);
  EXPECT_TRUE(window.Visible);
  EXPECT_TRUE(window.InTaskBar);
  EXPECT_EQ(window.State.Get(), WindowState::kNormal);
  EXPECT_TRUE(machine.tray.HasIcon()) << "a restored window keeps its icon";
  EXPECT_THAT(events, ElementsAre("LButtonDblClk"));
  tray.MinToSysTray();
  EXPECT_FALSE(machine.tray.Log().back().taken) << "a second add is refused";
  EXPECT_FALSE(window.Visible);
}

TEST_F(SysTrayTest, WithoutTheDefaultADoubleClickOnlyRaisesItsEvent) {
  tray.DefaultDblClk = false;
  tray.MinToSysTray();
  machine.tray.Mouse(kTrayLeftDouble);
  EXPECT_FALSE(window.Visible);
  EXPECT_THAT(events, ElementsAre("LButtonDblClk"));
}

TEST_F(SysTrayTest, MessagesDuringAHandlerAreDropped) {
  tray.IconInSysTray();
  tray.RButtonUp.Listen([this] { machine.tray.Mouse(kTrayLeftDown); });
  machine.tray.Mouse(kTrayRightUp);
  EXPECT_THAT(events, ElementsAre("RButtonUp"));
  machine.tray.Mouse(kTrayLeftDown);
  EXPECT_THAT(events, ElementsAre("RButtonUp", "LButtonDown"));
}

TEST_F(SysTrayTest, ATipIsCutBetweenCharacters) {
  std::string letters;
  for (int i = 0; i < 64; ++i) letters += "\xD0\x96";
  tray.ToolTip(letters + letters);
  EXPECT_EQ(ShownTip(), letters);
}

TEST_F(SysTrayTest, ATipOf64CharactersIsCutAtTheFieldsEndWithoutANul) {
  tray.IconInSysTray();
  tray.ToolTip("Tip");
  EXPECT_EQ(ShownTip().substr(0, 4), std::string("Tip\0", 4));
  const std::string long_tip = std::string(63, 'a') + "bc";
  tray.ToolTip(long_tip);
  EXPECT_EQ(machine.tray.Log().back().command, TrayCommand::kModify);
  EXPECT_EQ(ShownTip(), std::string(63, 'a') + "b");
  EXPECT_EQ(tray.ToolTip(), long_tip) << "the property keeps all of it";
}

TEST_F(SysTrayTest, RemovingAnIconThatIsNotThereHasNoEffect) {
  tray.RemoveFromSysTray();
  EXPECT_EQ(machine.tray.Log().back().command, TrayCommand::kDelete);
  EXPECT_FALSE(machine.tray.Log().back().taken);
  tray.IconInSysTray();
  EXPECT_TRUE(machine.tray.HasIcon());
  tray.RemoveFromSysTray();
  EXPECT_FALSE(machine.tray.HasIcon());
}

TEST_F(SysTrayTest, ChangingTheIconSendsItWithTheModifyCommand) {
  tray.IconInSysTray();
  EXPECT_EQ(tray.Icon(), 0);
  tray.ChangeIcon("BBB");
  EXPECT_NE(tray.Icon(), 0);
  EXPECT_EQ(machine.tray.Log().back().command, TrayCommand::kModify);
  EXPECT_EQ(machine.tray.Log().back().record.icon, "BBB");
}

TEST_F(SysTrayTest, WithoutAnAreaTheWindowStaysOnTheTaskBarUntilOneComes) {
  machine.tray.IsPresent = false;
  window.State = WindowState::kMinimized;
  tray.MinToSysTray();
  EXPECT_TRUE(window.Visible);
  EXPECT_TRUE(window.InTaskBar);
  machine.tray.IsPresent = true;
  EXPECT_TRUE(machine.tray.HasIcon());
  EXPECT_FALSE(window.Visible);
  EXPECT_FALSE(window.InTaskBar);
  machine.tray.IsPresent = false;
  EXPECT_TRUE(window.Visible) << "an area that goes away leaves nobody behind";
  EXPECT_TRUE(window.InTaskBar);
}

TEST_F(SysTrayTest, AnAreaThatComesAndGoesLeavesAnOpenWindowAsItIs) {
  machine.tray.IsPresent = false;
  tray.IconInSysTray();
  machine.tray.IsPresent = true;
  EXPECT_TRUE(machine.tray.HasIcon());
  EXPECT_TRUE(window.Visible);
  EXPECT_TRUE(window.InTaskBar);
  window.Hide();
  machine.tray.IsPresent = false;
  EXPECT_FALSE(window.Visible) << "nor does it come up, as it can be found";
}

TEST_F(SysTrayTest, AnIconThatWasTakenAwayDoesNotComeBackWithALaterArea) {
  tray.MinToSysTray();
  tray.RemoveFromSysTray();
  machine.tray.IsPresent = false;
  machine.tray.IsPresent = true;
  EXPECT_FALSE(machine.tray.HasIcon());
}

TEST_F(SysTrayTest, AHookThatCannotBeBuiltIsReportedAndEndsTheProgram) {
  machine.boxes.Expect("Run-time error '91':\n\nObject variable or With block variable not set",
                       BoxIcon::kStop, BoxAnswer::kOk);
  tray.SourceWindow(nullptr);
  EXPECT_EQ(machine.boxes.Shown().at(0).title, "Error");
  EXPECT_EQ(machine.loop.QuitCode(), 1);
}

}  // namespace
}  // namespace tarnvale
