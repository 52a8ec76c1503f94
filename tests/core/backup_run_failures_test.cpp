// No failing statement of a run stops it or shows a box.
#include "core/backup_run.h"
#include "tests/core/engine_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::IsEmpty;

enum class On { kFiles, kOpenFiles };

struct Statement {
  On on;
  const char* function;
};

constexpr Statement kStatements[] = {
    {On::kFiles, "Length"},       {On::kFiles, "Attributes"}, {On::kFiles, "CopyWhole"},
    {On::kFiles, "CreateFolder"}, {On::kFiles, "OpenFolder"}, {On::kFiles, "CopyEntry"},
    {On::kFiles, "CopyTree"},     {On::kFiles, "BeginFlush"}, {On::kOpenFiles, "OpenOutput"},
    {On::kOpenFiles, "Write"},    {On::kOpenFiles, "Close"},
};

constexpr int kNumbers[] = {5, 6, 9, 13, 52, 53, 55, 57, 61, 70, 71, 75, 76};

using Case = std::tuple<Statement, int>;

class FailingStatementTest : public RunFixture, public ::testing::WithParamInterface<Case> {
 protected:
  FailingStatementTest() {
    engine.settings.SaveLog = true;
    engine.settings.AutoReport = true;
    engine.stages.SendReport = [this](const RunFacts&) { actions.push_back("report"); };
    AddFile("C:\\Src\\a.txt", "a");
    machine.files.Write("C:\\Src\\Work\\w.txt", "w");
    machine.files.Write("C:\\Src\\Work\\Sub\\s.txt", "s");
    machine.files.Write("C:\\Backup\\Work\\old.txt", "old");
    Add("C:\\Src\\Work\\*+++++*");
    Add("C:\\Src\\New\\*+++++*");
    machine.files.MakeFolder("C:\\Src\\New");
    const auto& [statement, number] = GetParam();
    if (statement.on == On::kFiles) machine.files.FailAlways(statement.function, number);
    if (statement.on == On::kOpenFiles) machine.open_files.FailAlways(statement.function, number);
  }

  void ExpectSuccess() {
    Run();
    const Statement& statement = std::get<0>(GetParam());
    const ScriptedFailures& reached = statement.on == On::kFiles
                                          ? static_cast<const ScriptedFailures&>(machine.files)
                                          : machine.open_files;
    EXPECT_GT(reached.CallsOf(statement.function), 0);
    EXPECT_EQ(Status(), "Success >> Copied 3 Items, 11:00 To 11:00 On 3/14/2008.");
    EXPECT_THAT(machine.boxes.Shown(), IsEmpty());
    EXPECT_FALSE(engine.backup.Failures().NotedNumber().has_value());
    EXPECT_EQ(actions, std::vector<std::string>{"report"});
  }
};

TEST_P(FailingStatementTest, IsPassedOverInCompleteMode) {
  ExpectSuccess();
}

TEST_P(FailingStatementTest, IsPassedOverInIncrementalMode) {
  engine.settings.BackupMode.Incremental = true;
  ExpectSuccess();
}

std::string NameOfCase(const ::testing::TestParamInfo<Case>& test) {
  return std::string(std::get<0>(test.param).function) + std::to_string(std::get<1>(test.param));
}

INSTANTIATE_TEST_SUITE_P(Statements, FailingStatementTest,
                         ::testing::Combine(::testing::ValuesIn(kStatements),
                                            ::testing::ValuesIn(kNumbers)),
                         NameOfCase);

class FailingIncrementalStatementTest : public FailingStatementTest {};

TEST_P(FailingIncrementalStatementTest, IsPassedOver) {
  engine.settings.BackupMode.Incremental = true;
  ExpectSuccess();
}

INSTANTIATE_TEST_SUITE_P(Statements, FailingIncrementalStatementTest,
                         ::testing::Combine(::testing::Values(Statement{On::kFiles,
                                                                        "SetAttributes"}),
                                            ::testing::ValuesIn(kNumbers)),
                         NameOfCase);

class RunFailureTest : public RunFixture {};

TEST_F(RunFailureTest, AFailedCopyDoesNotStopTheFilesBehindIt) {
  for (const char* name : {"a", "b", "c"}) AddFile(std::string("C:\\Src\\") + name, name);
  machine.files.FailOn("CopyWhole", "C:\\Src\\b", 61);
  Run();
  EXPECT_THAT(machine.files.Names("C:\\Backup"), ::testing::ElementsAre("a", "c"));
}

TEST_F(RunFailureTest, AFailedCopyIsTriedOnce) {
  AddFile("C:\\Src\\a", "a");
  machine.files.FailAlways("CopyWhole", 75);
  Run();
  EXPECT_EQ(machine.files.CallsOf("CopyWhole"), 1);
}

TEST_F(RunFailureTest, AReadOnlyTargetStaysAsItIs) {
  AddFile("C:\\Src\\a", "new");
  machine.files.Write("C:\\Backup\\a", "old");
  machine.files.SetAttributes("C:\\Backup\\a", 33);
  Run();
  EXPECT_EQ(machine.files.Content("C:\\Backup\\a"), "old");
  EXPECT_EQ(machine.files.Attributes("C:\\Backup\\a"), 33);
}

TEST_F(RunFailureTest, ALengthThatCannotBeReadLeavesTheTotal) {
  AddFile("C:\\Src\\a", "1234");
  AddFile("C:\\Src\\b", "12");
  engine.settings.AutoReport = true;
  std::int32_t total = -1;
  engine.stages.SendReport = [&](const RunFacts& facts) { total = facts.total_bytes; };
  machine.loop.OnYield(1, [this] { machine.files.FailOn("Length", "C:\\Src\\a", 75); });
  Run();
  EXPECT_EQ(total, 2);
}

TEST_F(RunFailureTest, AFailedCopyCountsAsCopied) {
  AddFile("C:\\Src\\a", "1234");
  engine.settings.AutoReport = true;
  std::int32_t total = -1;
  engine.stages.SendReport = [&](const RunFacts& facts) { total = facts.total_bytes; };
  machine.files.FailAlways("CopyWhole", 70);
  Run();
  EXPECT_EQ(total, 4);
}

TEST_F(RunFailureTest, CallsIntoOtherWindowsMayFail) {
  AddFile("C:\\Src\\a", "a");
  engine.stages.ResetProgressWindow = [] { throw ProgramError(kInvalidCall); };
  engine.stages.FollowCopy = [] { throw ProgramError(kInvalidCall); };
  engine.screens.Show = [](Screen) { throw ProgramError(kInvalidCall); };
  int hidden = 0;
  engine.screens.Hide = [&](Screen) {
    ++hidden;
    throw ProgramError(kInvalidCall);
  };
  Run();
  EXPECT_EQ(hidden, 5);
  EXPECT_TRUE(machine.files.Exists("C:\\Backup\\a"));
}

TEST_F(RunFailureTest, AnUnavailableDestinationEndsWithSuccess) {
  AddFile("C:\\Src\\a", "a");
  engine.run.RunDestination = "Z:\\Gone";
  Run();
  EXPECT_EQ(Status(), "Success >> Copied 1 Items, 11:00 To 11:00 On 3/14/2008.");
}

}  // namespace
}  // namespace tarnvale::testing
