#include "core/check_settings.h"

#include "tests/core/engine_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kNoTime = "You Must Specify A Valid Time For The Backup Schedule!";
constexpr const char* kRootQuestion = "The Destiny Directroy Was Left C:\\.\n\nConfirm?";

class CheckSettingsTest : public EngineFixture {
 protected:
  CheckSettingsTest() {
    WatchScreens();
    Add("C:\\a.txt");
    engine.settings.DestinationDir = "D:\\Backup";
    engine.settings.AlwaysAtText = "12:00";
    engine.settings.EachText = "01:00";
  }

  bool Objects() {
    // Whatever it held before.
    bool objection = !last_objection_;
    CheckSettings(machine.boxes, engine.settings, engine.screens, objection);
    last_objection_ = objection;
    return objection;
  }
  void ExpectStop(const char* text) { machine.boxes.Expect(text, BoxIcon::kStop, BoxAnswer::kOk); }

 private:
  bool last_objection_ = false;
};

TEST_F(CheckSettingsTest, ObjectsToNothingWhenAllIsThere) {
  EXPECT_FALSE(Objects());
  engine.settings.ScheduleAt = true;
  EXPECT_FALSE(Objects());
  EXPECT_THAT(actions, IsEmpty());
}

TEST_F(CheckSettingsTest, AnEmptyListIsTheFirstObjection) {
  engine.settings.Entries.Clear();
  engine.settings.DestinationDir = "";
  ExpectStop("You Must At Least Have An Item For Backup");
  EXPECT_TRUE(Objects());
  EXPECT_THAT(actions, ElementsAre("show list", "hide storage", "hide progress", "hide schedule",
                                   "hide general", "hide advanced", "hide restore"));
}

TEST_F(CheckSettingsTest, AnEmptyLocationIsTheSecondObjection) {
  engine.settings.DestinationDir = "";
  engine.settings.EachText = "00:00";
  ExpectStop("You Must Specify The Backup Location");
  EXPECT_TRUE(Objects());
  EXPECT_EQ(actions.front(), "show storage");
  EXPECT_EQ(actions.back(), "focus storage");
  EXPECT_EQ(actions.size(), 8U);
}

TEST_F(CheckSettingsTest, ARefusedRootIsAnObjectionWithTheFocusOnTheField) {
  for (const char* root : {"C:\\", "c:\\"}) {
    actions.clear();
    engine.settings.DestinationDir = root;
    machine.boxes.Expect(kRootQuestion, BoxIcon::kExclamation, BoxAnswer::kNo);
    EXPECT_TRUE(Objects());
    EXPECT_EQ(machine.boxes.Shown().back().buttons, BoxButtons::kYesNo);
    EXPECT_EQ(actions.back(), "focus storage");
  }
}

TEST_F(CheckSettingsTest, AConfirmedRootPassesOverTheTimes) {
  engine.settings.DestinationDir = "C:\\";
  engine.settings.EachText = "00:00";
  machine.boxes.Expect(kRootQuestion, BoxIcon::kExclamation, BoxAnswer::kYes);
  EXPECT_FALSE(Objects());
  EXPECT_THAT(actions, IsEmpty());
}

TEST_F(CheckSettingsTest, TheRootOfAnotherDriveIsNotAskedAbout) {
  engine.settings.DestinationDir = "D:\\";
  EXPECT_FALSE(Objects());
}

TEST_F(CheckSettingsTest, AFixedTimeThatIsNotSetIsAnObjection) {
  engine.settings.ScheduleAt = true;
  engine.settings.AlwaysAtText = "00:00";
  ExpectStop(kNoTime);
  EXPECT_TRUE(Objects());
  EXPECT_THAT(actions, ElementsAre("show schedule", "hide list", "hide storage", "hide progress",
                                   "hide general", "hide advanced", "hide restore"));
}

TEST_F(CheckSettingsTest, AnIntervalThatIsNotSetIsAnObjectionWithTheFocusOnItsField) {
  engine.settings.EachText = "00:00";
  ExpectStop(kNoTime);
  EXPECT_TRUE(Objects());
  EXPECT_EQ(actions.front(), "show schedule");
  EXPECT_EQ(actions.back(), "focus interval");
}

TEST_F(CheckSettingsTest, OnlyTheChosenScheduleIsTested) {
  engine.settings.AlwaysAtText = "00:00";
  EXPECT_FALSE(Objects());
  engine.settings.AlwaysAtText = "12:00";
  engine.settings.EachText = "00:00";
  engine.settings.ScheduleAt = true;
  EXPECT_FALSE(Objects());
}

TEST_F(CheckSettingsTest, TheMessageComesBeforeTheScreen) {
  engine.settings.Entries.Clear();
  ExpectStop("You Must At Least Have An Item For Backup");
  machine.boxes.WhileOpen([&] { EXPECT_THAT(actions, IsEmpty()); });
  EXPECT_TRUE(Objects());
}

}  // namespace
}  // namespace tarnvale::testing
