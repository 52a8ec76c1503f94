// The alert in the chain of a start.
#include "shell/alerts.h"

#include "tests/shell/popups_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class AlertChainTest : public PopupsFixture {
 protected:
  AlertChainTest() {
    engine.settings.AutoReport = true;
    engine.stages.SendReport = [this](const RunFacts&) { actions.push_back("report"); };
  }

  void StartByHand() {
    machine.boxes.Expect("Start?", BoxIcon::kQuestion, BoxAnswer::kYes);
    engine.AskAndStart("Start?");
  }
  void StartByTheScheduleAtNoon() {
    engine.settings.ScheduleAt = true;
    engine.settings.AlwaysAtTime = 0.5;
    machine.SetTime("12:00:00");
    engine.scheduler.CheckSchedule();
  }
};

TEST_F(AlertChainTest, AStartByHandShowsIt) {
  StartByHand();
  ASSERT_TRUE(popups.IsAlertLoaded());
  EXPECT_TRUE(Alert().Visible);
}

TEST_F(AlertChainTest, WithoutShowAlertThereIsNoPopupAndTheSamePause) {
  engine.settings.ShowAlert = false;
  StartByHand();
  EXPECT_FALSE(popups.IsAlertLoaded());
  machine.Advance(8099ms);
  EXPECT_THAT(actions, IsEmpty());
  machine.Advance(1ms);
  EXPECT_THAT(actions, ElementsAre("report"));
}

TEST_F(AlertChainTest, AScheduledStartOfABusyEngineHasNoPopupNoCopyAndTheChain) {
  compression = 50;
  engine.run.EngineFree = "0";
  StartByTheScheduleAtNoon();
  machine.Advance(8100ms);
  EXPECT_FALSE(popups.IsAlertLoaded());
  EXPECT_FALSE(popups.IsProgressLoaded()) << "the copy phase would have touched its bar";
  EXPECT_THAT(actions, ElementsAre("report"));
}

TEST_F(AlertChainTest, ItAppearsAgainWithEachStart) {
  StartByHand();
  machine.Advance(1min);
  EXPECT_FALSE(Alert().Visible);
  StartByTheScheduleAtNoon();
  EXPECT_TRUE(Alert().Visible);
  machine.Advance(Slide(Alert()));
  EXPECT_EQ(Alert().TopTwips, kScreenHeightTwips - HeightTwips(Alert()));
}

}  // namespace
}  // namespace tarnvale::testing
