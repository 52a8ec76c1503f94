// The whole program, killed at random moments of each operation.
#include <cstdio>
#include <random>
#include <string>

#include "tests/reliability/checks.h"
#include "tests/reliability/operations.h"

namespace tarnvale::reliability {

int CheckProgramKills(int kills, std::uint64_t seed, const std::string& only) {
  Findings findings;
  std::mt19937_64 random(seed);
  int operations = 0;
  for (const Operation& operation : AllOperations()) {
    if (only.empty() || operation.name == only) ++operations;
  }
  if (operations == 0) findings.Add("there is no such operation");
  int all_runs = 0;
  int all_kills = 0;
  for (const Operation& operation : AllOperations()) {
    if (!only.empty() && operation.name != only) continue;
    Stage stage(operation);
    KillMoments moments(stage.Duration());
    int runs = 0;
    int killed = 0;
    while (killed * operations < kills) {
      ++runs;
      stage.LayOut();
      const auto moment = moments.Next(random);
      const bool in_work = RunAndKill(stage.Work(), moment);
      moments.Learn(in_work);
      if (in_work) ++killed;
      const std::string when = "killed after " + std::to_string(moment.count()) + " us";
      stage.CheckNothingIsHarmed(when, findings);
      stage.CheckNextStart(when, findings);
      stage.CheckRepetition(when, findings);
    }
    std::printf(
        "kills: %-18s %5d of %d runs killed in work, %d temporaries left by kills, %d files cut "
        "short on the server\n",
        operation.name.c_str(), killed, runs, stage.LeftByThem(), stage.CutShortOnServer());
    std::fflush(stdout);
    all_runs += runs;
    all_kills += killed;
  }
  std::printf("kills: %d of %d runs killed in work, %d failures\n", all_kills, all_runs,
              findings.Count());
  return findings.Count();
}

}  // namespace tarnvale::reliability
