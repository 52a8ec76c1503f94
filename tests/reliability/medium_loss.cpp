// The medium of the copies goes away in the middle of each operation, and comes back.
#include <chrono>
#include <cstdio>
#include <functional>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "tests/reliability/checks.h"
#include "tests/reliability/medium.h"
#include "tests/reliability/operations.h"
#include "tests/reliability/traced.h"

namespace tarnvale::reliability {
namespace {

// Copies, archives, parts, joined files and exported settings. Everybody's own files are on
// the computer, and so is the program.
using Folders = std::vector<std::string>;
const Folders kOnMedium{"Store", "Archives", "Parts", "Whole", "Safe", "Joined", "Exported"};

std::string NameOf(Loss loss) {
  if (loss == Loss::kNothing) return "all that was written";
  return loss == Loss::kAll ? "what was flushed" : "names without contents";
}

// Calls `before_call` with how many calls were made so far.
TracedRun RunOnMedium(Stage& stage, Medium& medium,
                      const std::function<void(int, const FileCall&)>& before_call) {
  stage.LayOut();
  medium.Take(stage.Drive(), kOnMedium);
  int calls = 0;
  TracedRun run = RunTraced(stage.Work(), std::nullopt,
                            [&](const FileCall& call) { before_call(calls++, call); });
  medium.TakeOut();
  return run;
}

// False when the operation made fewer calls this time.
bool LoseMedium(Stage& stage, Medium& medium, int point, Loss loss, Findings& findings) {
  std::string when;
  const TracedRun run = RunOnMedium(stage, medium, [&](int calls, const FileCall& call) {
    if (calls != point) return;
    when = "the medium goes away before " + NameOfCall(call.number) + " (point " +
           std::to_string(point) + ") and comes back with " + NameOf(loss);
    medium.GoAway(loss);
  });
  if (when.empty()) return false;
  CheckEnd(run, when, findings);
  stage.CheckMessages(when, findings);
  // What was renamed or deleted and not flushed has its temporary name again, which nobody
  // knows: the next time finds it. So the next start may as well come before the medium.
  if (loss == Loss::kAll) stage.CheckNextStart(when + ", after a start without it", findings);
  medium.PutBack();
  stage.CheckNothingIsHarmed(when, findings,
                             {.lossy = loss == Loss::kContents ? kOnMedium : Folders()});
  if (loss != Loss::kAll) stage.CheckNextStart(when, findings);
  stage.CheckRepetition(when, findings);
  medium.TakeOut();
  return true;
}

}  // namespace

int CheckMediumLoss(int share, std::uint64_t seed, const std::string& only) {
  if (!CanTrace()) {
    std::printf("skipped: no process can be traced here\n");
    return -1;
  }
  std::optional<Medium> medium;
  try {
    medium.emplace();
    medium->PutBack();
    medium->GoAway(Loss::kAll);
    medium->TakeOut();
  } catch (const NoMedium& reason) {
    std::printf("skipped: %s\n", reason.what());
    return -1;
  }
  Findings findings;
  std::mt19937_64 random(seed);
  int all_losses = 0;
  for (const Operation& operation : AllOperations()) {
    if (!only.empty() && operation.name != only) continue;
    const auto began = std::chrono::steady_clock::now();
    Stage stage(operation);
    int points = 0;
    RunOnMedium(stage, *medium, [&](int calls, const FileCall&) { points = calls + 1; });
    int losses = 0;
    for (int point = 0; point < points; ++point) {
      for (const Loss loss : {Loss::kNothing, Loss::kContents, Loss::kAll}) {
        if (share > 1 && random() % static_cast<unsigned>(share) != 0) continue;
        if (LoseMedium(stage, *medium, point, loss, findings)) ++losses;
      }
    }
    const auto took = std::chrono::duration<double>(std::chrono::steady_clock::now() - began);
    std::printf(
        "medium: %-18s %5d points, %5d times away, %d files torn, %d temporaries left, %.0f s\n",
        operation.name.c_str(), points, losses, stage.TornBeforeTheirFlush(), stage.LeftByThem(),
        took.count());
    stage.PrintShown();
    std::fflush(stdout);
    all_losses += losses;
  }
  std::printf("medium: %d times away, %d failures\n", all_losses, findings.Count());
  return findings.Count();
}

}  // namespace tarnvale::reliability
