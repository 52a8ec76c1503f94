// What a run hands on to.
#include "core/backup_run.h"
#include "tests/core/engine_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RunStagesTest : public RunFixture {
 protected:
  RunStagesTest() {
    AddFile("C:\\Src\\a.txt", "1234");
    engine.stages.Compress = [this] { Note("compress"); };
    engine.stages.ShowTransferWindow = [this] { Note("show transfer"); };
    engine.stages.Upload = [this] { Note("upload"); };
    engine.stages.SendReport = [this](const RunFacts& present) {
      facts = present;
      Note("report");
    };
  }

  void SwitchAllOn() {
    engine.settings.AutoCompress = true;
    engine.settings.AutoUpload = true;
    engine.settings.AutoReport = true;
  }
  void Note(const char* action) {
    actions.push_back(action);
    copied_before = copied_before && machine.files.Exists("C:\\Backup\\a.txt");
  }

  RunFacts facts;
  bool copied_before = true;
};

TEST_F(RunStagesTest, RunInTheirOrderAfterTheCopy) {
  SwitchAllOn();
  Run();
  EXPECT_THAT(actions, ElementsAre("compress", "show transfer", "upload", "report"));
  EXPECT_TRUE(copied_before);
}

TEST_F(RunStagesTest, RunOnlyWhenSwitchedOn) {
  Run();
  EXPECT_THAT(actions, IsEmpty());
}

TEST_F(RunStagesTest, CompressionAlone) {
  engine.settings.AutoCompress = true;
  Run();
  EXPECT_THAT(actions, ElementsAre("compress"));
}

TEST_F(RunStagesTest, UploadAlone) {
  engine.settings.AutoUpload = true;
  Run();
  EXPECT_THAT(actions, ElementsAre("show transfer", "upload"));
}

TEST_F(RunStagesTest, ReportAlone) {
  engine.settings.AutoReport = true;
  Run();
  EXPECT_THAT(actions, ElementsAre("report"));
}

TEST_F(RunStagesTest, SeeTheEndCaptionsAndAnEmptyTable) {
  engine.settings.AutoCompress = true;
  std::string status;
  std::size_t bound = 99;
  engine.stages.Compress = [&] {
    status = Status();
    bound = engine.run.Files.UpperBound();
  };
  Run();
  EXPECT_EQ(status, "Success >> Copied 1 Items, 11:00 To 11:00 On 3/14/2008.");
  EXPECT_EQ(bound, 0U);
}

TEST_F(RunStagesTest, AFailedCompressionIsPassedOverAndTheNextStagesRun) {
  SwitchAllOn();
  engine.stages.Compress = [this] {
    Note("compress");
    throw ProgramError(kProgramDefinedError, "compression", "broken");
  };
  Run();
  EXPECT_THAT(actions, ElementsAre("compress", "show transfer", "upload", "report"));
  EXPECT_THAT(machine.boxes.Shown(), IsEmpty());
}

TEST_F(RunStagesTest, EveryStageMayFailOnItsOwn) {
  SwitchAllOn();
  engine.stages.ShowTransferWindow = [this] {
    Note("show transfer");
    throw ProgramError(kInvalidCall);
  };
  engine.stages.Upload = [this] {
    Note("upload");
    throw ProgramError(kDeviceIoError);
  };
  engine.stages.SendReport = [this](const RunFacts&) {
    Note("report");
    throw ProgramError(kInvalidCall);
  };
  Run();
  EXPECT_THAT(actions, ElementsAre("compress", "show transfer", "upload", "report"));
}

TEST_F(RunStagesTest, RunThoughTheCopyPhaseWasPassedOver) {
  SwitchAllOn();
  engine.run.EngineFree = "0";
  Run();
  EXPECT_THAT(actions, ElementsAre("compress", "show transfer", "upload", "report"));
  EXPECT_FALSE(machine.files.Exists("C:\\Backup\\a.txt"));
  EXPECT_EQ(facts.start, 0);
  EXPECT_EQ(facts.date, 0);
  EXPECT_EQ(facts.total_bytes, 0);
}

TEST_F(RunStagesTest, TheReportGetsStartDateAndTotal) {
  engine.settings.AutoReport = true;
  machine.loop.OnYield(1, [this] { machine.clock.Move(90min); });
  Run();
  EXPECT_EQ(facts.start, MakeDateTime({2008, 3, 14}, {11, 0, 0}));
  EXPECT_EQ(facts.date, MakeDate({2008, 3, 14}));
  EXPECT_EQ(facts.total_bytes, 4);
}

TEST_F(RunStagesTest, TotalsBeginAnewWithEachRun) {
  engine.settings.AutoReport = true;
  Run();
  Run();
  EXPECT_EQ(facts.total_bytes, 4);
}

TEST_F(RunStagesTest, AStageSwitchedOffByTheOneBeforeDoesNotRun) {
  SwitchAllOn();
  engine.stages.Compress = [this] {
    Note("compress");
    engine.settings.AutoUpload = false;
  };
  Run();
  EXPECT_THAT(actions, ElementsAre("compress", "report"));
}

TEST_F(RunStagesTest, StagesThatNobodySetDoNothing) {
  SwitchAllOn();
  engine.stages = StageHooks{};
  Run();
  EXPECT_EQ(Status(), "Success >> Copied 1 Items, 11:00 To 11:00 On 3/14/2008.");
}

}  // namespace
}  // namespace tarnvale::testing
