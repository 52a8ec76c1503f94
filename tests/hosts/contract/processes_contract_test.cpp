// Other programs: what every host must do without starting one.
#include "tests/hosts/contract/host_under_test.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

class ProcessesContract : public HostTest {};
INSTANTIATE_TEST_SUITE_P(Hosts, ProcessesContract, ::testing::ValuesIn(AllHosts()), NameOfHost);

TEST_P(ProcessesContract, AMissingFileIsNotOpened) {
  EXPECT_FALSE(programs.OpenWithDesktop("C:\\Data\\missing.txt"));
  EXPECT_FALSE(programs.OpenWithDesktop("D:\\a.txt"));
}

TEST_P(ProcessesContract, AMissingProgramIsNotStarted) {
  EXPECT_FALSE(programs.StartProgram("C:\\Data\\missing.exe"));
  EXPECT_FALSE(programs.StartProgram("C:\\Data"));
  EXPECT_FALSE(programs.StartProgram(""));
}

TEST_P(ProcessesContract, ACommandLineWithoutAProgramRaises) {
  EXPECT_EQ(RaisedBy([&] { programs.StartMinimized(""); }), 5);
  EXPECT_EQ(RaisedBy([&] { programs.StartMinimized("  \t"); }), 5);
  EXPECT_EQ(RaisedBy([&] { programs.StartMinimized("\"\" /e"); }), 5);
  EXPECT_EQ(RaisedBy([&] { programs.StartMinimized("C:\\Windows\\Regedit.exe /e \"x"); }), 53);
  EXPECT_EQ(RaisedBy([&] { programs.StartMinimized("no-such-program-here"); }), 53);
  EXPECT_EQ(RaisedBy([&] { programs.StartMinimized("C:\\Data"); }), 53);
}

TEST_P(ProcessesContract, VariablesAreFoundWithoutRegardToCase) {
  EXPECT_FALSE(programs.Variable("tarnvale_test_unset").has_value());
  host.SetVariable("TARNVALE_TEST_NAME", "ann");
  EXPECT_EQ(programs.Variable("TARNVALE_TEST_NAME"), "ann");
  EXPECT_EQ(programs.Variable("tarnvale_test_name"), "ann");
  host.SetVariable("TARNVALE_TEST_EMPTY", "");
  EXPECT_EQ(programs.Variable("TARNVALE_TEST_EMPTY"), "");
}

TEST_P(ProcessesContract, TheFirstInstanceHasNoPrevious) {
  EXPECT_FALSE(programs.PreviousInstance());
  EXPECT_FALSE(programs.PreviousInstance());
}

}  // namespace
}  // namespace tarnvale::testing
