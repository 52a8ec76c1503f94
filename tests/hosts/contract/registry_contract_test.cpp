// The registry: what every host must do alike.
#include "tests/hosts/contract/host_under_test.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

class RegistryContract : public HostTest {};
INSTANTIATE_TEST_SUITE_P(Hosts, RegistryContract, ::testing::ValuesIn(AllHosts()), NameOfHost);

TEST_P(RegistryContract, AMissingValueRaises) {
  Registry& values = host.Values();
  EXPECT_EQ(RaisedBy([&] { values.Read("HKEY_CURRENT_USER\\Tarnvale Test\\Missing"); }), 53);
  EXPECT_EQ(RaisedBy([&] { values.Read(""); }), 53);
}

}  // namespace
}  // namespace tarnvale::testing
