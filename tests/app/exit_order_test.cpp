// Every way out takes the tray icon away first, and only then starts the
// companion program that ends the process.
#include <gmock/gmock.h>

#include "app/program.h"
#include "tests/support/fake_machine.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using Deeds = std::vector<std::string>;

class ToldTray : public FakeTray {
 public:
  explicit ToldTray(Deeds& deeds) : deeds_(deeds) {}
  bool Notify(TrayCommand command, const TrayRecord& record) override {
    if (command == TrayCommand::kDelete) deeds_.emplace_back("icon removed");
    return FakeTray::Notify(command, record);
  }

 private:
  Deeds& deeds_;
};

class ToldProcesses : public FakeProcesses {
 public:
  ToldProcesses(FakeFiles& files, Deeds& deeds) : FakeProcesses(files), deeds_(deeds) {}
  bool StartProgram(const Path& program) override {
    deeds_.push_back("started " + program);
    return FakeProcesses::StartProgram(program);
  }

 private:
  Deeds& deeds_;
};

class ExitOrderTest : public ::testing::Test {
 protected:
  ExitOrderTest() {
    machine.files.Write("C:\\Program\\Data.txt", "C:\\Data\r\n");
    machine.files.Write("C:\\Data\\Tarnvale.ini", "[Setup]\r\nWizard=1\r\n");
    machine.files.Write("C:\\Program\\Quit.exe", "");
    EXPECT_TRUE(program.Start());
    machine.Advance(1s);
    deeds.clear();
  }

  FakeMachine machine;
  Deeds deeds;
  ToldTray tray{deeds};
  ToldProcesses processes{machine.files, deeds};
  Machine told{{machine.files, machine.open_files, machine.profiles, processes, machine.clock,
                machine.random, machine.formats, machine.registry, machine.applications},
               {machine.loop, machine.boxes, machine.desktop, machine.windows, machine.dialogs,
                tray, machine.network, machine.ftp}};
  Program program{told};
};

TEST_F(ExitOrderTest, TheMenuRemovesTheIconBeforeItStartsTheCompanion) {
  program.form.mnuQuit.Clicked.Emit();
  EXPECT_THAT(deeds, ElementsAre("icon removed", "started C:\\Program\\Quit.exe"));
}

TEST_F(ExitOrderTest, TheCrossRemovesTheIconBeforeItStartsTheCompanion) {
  machine.boxes.Answer(BoxAnswer::kYes);
  program.form.Close();
  EXPECT_THAT(deeds, ElementsAre("icon removed", "started C:\\Program\\Quit.exe"));
}

TEST_F(ExitOrderTest, TheDeclinedAgreementRemovesTheIconBeforeItStartsTheCompanion) {
  machine.boxes.Answer(BoxAnswer::kYes);
  program.Agreement.Get().chameleonButton2.Click.Emit();
  EXPECT_THAT(deeds, ElementsAre("icon removed", "started C:\\Program\\Quit.exe"));
}

TEST_F(ExitOrderTest, ADataFolderThatIsGoneRemovesTheIconBeforeItStartsTheCompanionEachTime) {
  machine.Advance(5s);
  machine.files.Remove("C:\\Data");
  deeds.clear();
  machine.Advance(200ms);
  EXPECT_THAT(deeds, ElementsAre("icon removed", "started C:\\Program\\Quit.exe", "icon removed",
                                 "started C:\\Program\\Quit.exe"));
}

TEST_F(ExitOrderTest, TheCrossAnsweredWithNoDoesNeither) {
  machine.boxes.Answer(BoxAnswer::kNo);
  program.form.Close();
  EXPECT_TRUE(deeds.empty());
}

}  // namespace
}  // namespace tarnvale::testing
