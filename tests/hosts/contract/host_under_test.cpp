#include "tests/hosts/contract/host_under_test.h"

namespace tarnvale::testing {

std::vector<HostKind> AllHosts() {
#ifdef _WIN32
  return {{"Fake", MakeFakeHost}, {"Windows", MakeWindowsHost}};
#else
  return {{"Fake", MakeFakeHost}, {"Linux", MakeLinuxHost}};
#endif
}

std::string NameOfHost(const ::testing::TestParamInfo<HostKind>& info) {
  return info.param.name;
}

}  // namespace tarnvale::testing
