// The clock is set while an operation runs.
#include <array>
#include <chrono>
#include <cstdio>
#include <functional>
#include <random>
#include <string>

#include "tests/reliability/checks.h"
#include "tests/reliability/operations.h"
#include "tests/support/fake_clock.h"
#include "tests/support/manual_loop.h"

namespace tarnvale::reliability {
namespace {

struct Jump {
  const char* name;
  std::function<void(testing::FakeClock&)> make;
};

const std::array<Jump, 6> kJumps{{
    {"an hour forwards", [](testing::FakeClock& clock) { clock.SetTime("12:00:00"); }},
    {"an hour backwards", [](testing::FakeClock& clock) { clock.SetTime("10:00:00"); }},
    {"to right before midnight", [](testing::FakeClock& clock) { clock.SetTime("23:59:59"); }},
    {"to right before the new year",
     [](testing::FakeClock& clock) {
       clock.SetDate({2008, 12, 31});
       clock.SetTime("23:59:59");
     }},
    {"to a leap day",
     [](testing::FakeClock& clock) {
       clock.SetDate({2024, 2, 29});
     }},
    {"years backwards",
     [](testing::FakeClock& clock) {
       clock.SetDate({1980, 1, 1});
     }},
}};

// The log holds times.
Snapshot WithoutLog(const Stage& stage) {
  Snapshot snapshot = stage.Now();
  snapshot.erase("Data/Backup Log.txt");
  return snapshot;
}

// Whether the operation came as far as that yield.
bool JumpAt(Stage& stage, int yield, const Jump& jump) {
  bool has_jumped = false;
  stage.LayOut();
  stage.DoHere([&](WholeProgram& program) {
    program.Loop().OnYield(yield, [&has_jumped, &jump, &clock = program.Clock()] {
      jump.make(clock);
      has_jumped = true;
    });
  });
  return has_jumped;
}

}  // namespace

int CheckClockJumps(int share, std::uint64_t seed, const std::string& only) {
  Findings findings;
  std::mt19937_64 random(seed);
  int points = 0;
  int all_jumps = 0;
  for (const Operation& operation : AllOperations()) {
    if (!only.empty() && operation.name != only) continue;
    Stage stage(operation);
    stage.LayOut();
    stage.DoHere([](WholeProgram&) {});
    const Snapshot wanted = WithoutLog(stage);
    // A transfer waits in hundreds of yields, all alike.
    const int one_of = operation.takes_server ? 10 * share : share;
    int yields = 0;  // reached
    int jumps = 0;
    bool goes_on = true;
    for (int yield = 1; goes_on; ++yield) {
      for (const Jump& jump : kJumps) {
        if (one_of > 1 && random() % static_cast<unsigned>(one_of) != 0) continue;
        goes_on = JumpAt(stage, yield, jump);
        if (!goes_on) break;
        yields = yield;
        ++jumps;
        if (WithoutLog(stage) == wanted) continue;
        findings.Add(operation.name + ", at yield " + std::to_string(yield) + " " + jump.name +
                     ": another result");
      }
    }
    std::printf("clock: %-18s %4d yields, %5d jumps\n", operation.name.c_str(), yields, jumps);
    std::fflush(stdout);
    points += yields;
    all_jumps += jumps;
  }
  std::printf("clock: %d yields, %d jumps, %d failures\n", points, all_jumps, findings.Count());
  return findings.Count();
}

}  // namespace tarnvale::reliability
