// Every way out takes the tray icon away first, and only then starts the
// companion program that ends the process.
#include <gmock/gmock.h>

#include "app/program.h"
#include "tests/support/fake_machine.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using Actions = std::vector<std::string>;

class NotingTray : public FakeTray {
 public:
  explicit NotingTray(Actions& actions) : actions_(actions) {}
  bool Notify(TrayCommand command, const TrayRecord& record) override {
    if (command == TrayCommand::kDelete) actions_.emplace_back("icon removed");
    return FakeTray::Notify(command, record);
  }

 private:
  Actions& actions_;
};

class NotingProcesses : public FakeProcesses {
 public:
  NotingProcesses(FakeFiles& files, Actions& actions) : FakeProcesses(files), actions_(actions) {}
  bool StartProgram(const Path& program) override {
    actions_.push_back("started " + program);
    return FakeProcesses::StartProgram(program);
  }

 private:
  Actions& actions_;
};

class ExitOrderTest : public ::testing::Test {
 protected:
  ExitOrderTest() {
    machine.files.Write("C:\\Program\\Data.txt", "C:\\Data\r\n");
    machine.files.Write("C:\\Data\\Tarnvale.ini", "[Setup]\r\nWizard=1\r\n");
    machine.files.Write("C:\\Program\\Quit.exe", "");
    EXPECT_TRUE(program.Start());
    machine.Advance(1s);
    actions.clear();
  }

  FakeMachine machine;
  Actions actions;
  NotingTray tray{actions};
  NotingProcesses processes{machine.files, actions};
  Machine noting{{machine.files, machine.open_files, machine.profiles, processes, machine.clock,
                  machine.random, machine.formats, machine.registry, machine.applications},
                 {machine.loop, machine.boxes, machine.desktop, machine.windows, machine.dialogs,
                  tray, machine.network, machine.ftp}};
  Program program{noting};
};

TEST_F(ExitOrderTest, TheMenuRemovesTheIconBeforeItStartsTheCompanion) {
  program.form.mnuQuit.Clicked.Emit();
  EXPECT_THAT(actions, ElementsAre("icon removed", "started C:\\Program\\Quit.exe"));
}

TEST_F(ExitOrderTest, TheCrossRemovesTheIconBeforeItStartsTheCompanion) {
  machine.boxes.Answer(BoxAnswer::kYes);
  program.form.Close();
  EXPECT_THAT(actions, ElementsAre("icon removed", "started C:\\Program\\Quit.exe"));
}

TEST_F(ExitOrderTest, TheDeclinedAgreementRemovesTheIconBeforeItStartsTheCompanion) {
  machine.boxes.Answer(BoxAnswer::kYes);
  program.Agreement.Get().chameleonButton2.Click.Emit();
  EXPECT_THAT(actions, ElementsAre("icon removed", "started C:\\Program\\Quit.exe"));
}

TEST_F(ExitOrderTest, ADataFolderThatIsGoneRemovesTheIconBeforeItStartsTheCompanionEachTime) {
  machine.Advance(5s);
  machine.files.Remove("C:\\Data");
  actions.clear();
  machine.Advance(200ms);
  EXPECT_THAT(actions, ElementsAre("icon removed", "started C:\\Program\\Quit.exe", "icon removed",
                                   "started C:\\Program\\Quit.exe"));
}

TEST_F(ExitOrderTest, TheCrossAnsweredWithNoDoesNeither) {
  machine.boxes.Answer(BoxAnswer::kNo);
  program.form.Close();
  EXPECT_TRUE(actions.empty());
}

}  // namespace
}  // namespace tarnvale::testing
