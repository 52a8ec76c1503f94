#include "tests/hosts/contract/host_under_test.h"

namespace tarnvale::testing {

std::vector<HostKind> AllHosts() {
  return {{"Fake", MakeFakeHost}, {"Linux", MakeLinuxHost}};
}

std::string NameOfHost(const ::testing::TestParamInfo<HostKind>& info) {
  return info.param.name;
}

}  // namespace tarnvale::testing
