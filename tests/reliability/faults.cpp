// Each system call of the file layer fails once, in each operation.
#include <algorithm>
#include <cctype>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <random>
#include <set>
#include <string>

#include "tests/reliability/checks.h"
#include "tests/reliability/operations.h"
#include "tests/reliability/traced.h"

namespace tarnvale::reliability {
namespace {

constexpr int kShort = 0;
constexpr int kShownAround = 8;  // calls
// All that follow fail, too, until the next start, or for a while: a medium that was
// pulled out, with everything on it, and put back.
constexpr int kUntilTheEnd = 1'000'000;
constexpr int kForAWhile = 40;

struct Kind {
  int error;
  int calls = 1;
};
constexpr Kind kKinds[] = {{EIO},    {ENOSPC},          {EACCES},           {EINTR},
                           {kShort}, {EIO, kForAWhile}, {EIO, kUntilTheEnd}};

std::string NameOfFault(const Fault& fault) {
  if (fault.calls == kUntilTheEnd) return "the medium's being away";
  if (fault.calls > 1) return "the medium's being away for a while";
  return fault.error == kShort ? "half of it" : ::strerrorname_np(fault.error);
}

struct Totals {
  int points = 0;
  int faults = 0;
};

void Inject(Stage& stage, Fault fault, Totals& totals, Findings& findings) {
  stage.LayOut();
  const TracedRun run = RunTraced(stage.Work(), fault);
  if (run.failed_call.empty()) return;  // it has no half, or wasn't reached
  ++totals.faults;
  const std::string when = run.failed_call + " (point " + std::to_string(fault.point) +
                           ") ends in " + NameOfFault(fault);
  CheckEnd(run, when, findings);
  stage.CheckMessages(when, findings);
  // Required: a folder that can't be opened is copied whole, whatever is newer. These
  // are the calls that open folders.
  static const std::set<std::string> kOpening{"openat",  "openat2",    "newfstatat",
                                              "fstatfs", "readlinkat", "fcntl"};
  const Allowed allowed{.whole_copies = fault.calls > 1 || kOpening.contains(run.failed_call)};
  stage.CheckNothingIsHarmed(when, findings, allowed);
  stage.CheckNextStart(when, findings);
  stage.CheckRepetition(when, findings, allowed);
}

std::string Shortly(const Snapshot& snapshot, const std::string& path) {
  const auto found = snapshot.find(path);
  if (found == snapshot.end()) return "-";
  const std::string text = found->second.substr(0, 3000);
  const bool is_text = std::all_of(text.begin(), text.end(), [](char c) {
    return std::isprint(static_cast<unsigned char>(c)) != 0 || c == '\r' || c == '\n';
  });
  if (is_text) return text;
  return std::to_string(found->second.size()) + " bytes, " +
         std::to_string(std::hash<std::string>()(found->second) % 10000);
}

}  // namespace

int ShowFault(const std::string& name, Fault fault) {
  for (const Operation& operation : AllOperations()) {
    if (operation.name != name) continue;
    Stage stage(operation);
    stage.LayOut();
    Totals totals;
    Findings findings;
    int at = 0;
    const TracedRun run = RunTraced(stage.Work(), fault, [&](const FileCall& call) {
      if (std::abs(at++ - fault.point) > kShownAround) return;
      std::printf("%5d %s %d \"%s\"\n", at - 1, NameOfCall(call.number).c_str(),
                  static_cast<int>(call.arguments[0]),
                  TextIn(call.process, call.arguments[1]).substr(0, 80).c_str());
    });
    const Snapshot now = stage.Now();
    Inject(stage, fault, totals, findings);
    std::printf("%s\n", run.failed_call.c_str());
    std::set<std::string> paths;
    for (const Snapshot* snapshot : {&stage.Before(), &stage.After(), &now}) {
      for (const auto& [path, state] : *snapshot) paths.insert(path);
    }
    for (const std::string& path : paths) {
      const std::string before = Shortly(stage.Before(), path);
      const std::string after = Shortly(stage.After(), path);
      const std::string left = Shortly(now, path);
      if (before == left && after == left) continue;
      std::printf("%s\n   before: %s\n   after:  %s\n   left:   %s\n", path.c_str(), before.c_str(),
                  after.c_str(), left.c_str());
    }
  }
  return 0;
}

int CheckFaults(int share, std::uint64_t seed, const std::string& only) {
  if (!CanTrace()) {
    std::printf("skipped: no process can be traced here\n");
    return -1;
  }
  Findings findings;
  Totals all;
  std::mt19937_64 random(seed);
  for (const Operation& operation : AllOperations()) {
    if (!only.empty() && operation.name != only) continue;
    const auto began = std::chrono::steady_clock::now();
    Stage stage(operation);
    stage.LayOut();
    std::map<std::string, int> calls;
    Totals totals;
    RunTraced(stage.Work(), std::nullopt, [&](const FileCall& call) {
      ++totals.points;
      ++calls[NameOfCall(call.number)];
    });
    for (int point = 0; point < totals.points; ++point) {
      for (const Kind& kind : kKinds) {
        if (share > 1 && random() % static_cast<unsigned>(share) != 0) continue;
        Inject(stage, {point, kind.error, kind.calls}, totals, findings);
      }
    }
    const auto took = std::chrono::duration<double>(std::chrono::steady_clock::now() - began);
    std::printf("faults: %-18s %5d points, %6d faults, %d temporaries left, %.0f s\n",
                operation.name.c_str(), totals.points, totals.faults, stage.LeftByThem(),
                took.count());
    stage.PrintShown();
    std::fflush(stdout);
    all.points += totals.points;
    all.faults += totals.faults;
  }
  std::printf("faults: %d points, %d faults, %d failures\n", all.points, all.faults,
              findings.Count());
  return findings.Count();
}

}  // namespace tarnvale::reliability
