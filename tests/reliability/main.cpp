// Checks that a process may die at any moment without harm.
//
//   tarnvale_reliability copy|settings KILLS [SEED]
//   tarnvale_reliability full
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <random>
#include <string>

#include "tests/reliability/checks.h"

namespace {

int Run(int argc, char** argv) {
  using namespace tarnvale::reliability;
  const std::string what = argc > 1 ? argv[1] : "";
  if (what == "full" && argc == 2) return CheckDiskFull();
  if ((what != "copy" && what != "settings") || argc < 3) {
    std::fprintf(stderr, "usage: tarnvale_reliability copy|settings KILLS [SEED] | full\n");
    return 2;
  }
  const int kills = std::atoi(argv[2]);
  const std::uint64_t seed =
      argc > 3 ? std::strtoull(argv[3], nullptr, 10) : std::random_device{}();
  std::printf("seed %llu\n", static_cast<unsigned long long>(seed));
  return what == "copy" ? CheckCopyKills(kills, seed, SyncPass) : CheckSettingsKills(kills, seed);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(argc, argv) == 0 ? 0 : 1;
  } catch (const std::exception& error) {
    std::printf("FAILED: %s\n", error.what());
    return 1;
  }
}
