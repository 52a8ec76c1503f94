// Checks of the whole program's operations on files.
//
//   tarnvale_operations faults SHARE [SEED [OPERATION]]   one of SHARE faults; 1: all
//   tarnvale_operations kills KILLS [SEED [OPERATION]]
//   tarnvale_operations medium SHARE [SEED [OPERATION]]   one of SHARE losses; 1: all
//   tarnvale_operations clock SHARE [SEED [OPERATION]]    one of SHARE jumps; 1: all
//   tarnvale_operations soak HOURS
//   tarnvale_operations power [OPERATION]
//   tarnvale_operations one OPERATION POINT ERROR [CALLS]  one fault; see what is left
//   tarnvale_operations list
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

#include "tests/reliability/checks.h"
#include "tests/reliability/operations.h"

namespace {

constexpr int kSkipped = 77;

int Run(int argc, char** argv) {
  using namespace tarnvale::reliability;
  const auto argument = [&](int index) {
    return argc > index ? std::string(argv[index]) : std::string();
  };
  const std::string what = argument(1);
  if (what == "list") {
    for (const Operation& operation : AllOperations()) std::printf("%s\n", operation.name.c_str());
    return 0;
  }
  if (what == "one" && argc >= 5) {
    return ShowFault(argument(2),
                     {std::atoi(argv[3]), std::atoi(argv[4]), argc > 5 ? std::atoi(argv[5]) : 1});
  }
  if (what == "power") return CheckPowerLoss(argument(2));
  const int count = std::atoi(argument(2).c_str());
  const std::uint64_t seed = argc > 3 ? std::strtoull(argv[3], nullptr, 10) : 1;
  std::printf("seed %llu\n", static_cast<unsigned long long>(seed));
  if (what == "faults" && count > 0) return CheckFaults(count, seed, argument(4));
  if (what == "medium" && count > 0) return CheckMediumLoss(count, seed, argument(4));
  if (what == "clock" && count > 0) return CheckClockJumps(count, seed, argument(4));
  if (what == "soak" && count > 0) return CheckSoak(count);
  if (what == "kills" && count > 0) return CheckProgramKills(count, seed, argument(4));
  std::fprintf(stderr,
               "usage: tarnvale_operations faults SHARE | kills KILLS | medium SHARE | clock SHARE "
               "| soak HOURS | "
               "power | list\n");
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const int failures = Run(argc, argv);
    return failures < 0 ? kSkipped : failures > 0 ? 1 : 0;
  } catch (const std::exception& error) {
    std::printf("FAILED: %s\n", error.what());
    return 1;
  }
}
