// The whole program for a month of its own time.
#include <malloc.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "base/date_time.h"
#include "tests/reliability/checks.h"
#include "tests/reliability/operations.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_windows.h"
#include "tests/support/manual_loop.h"

namespace tarnvale::reliability {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

// Names and times of another length.
constexpr std::int64_t kFlatBytes = 64 * 1024;
// A timer's first tick comes a little sooner or later in the hour.
constexpr std::int64_t kFlatTicks = 60;

/// What a program that lets something lie holds more and more of.
struct Held {
  std::int64_t memory_bytes = 0;
  std::int64_t descriptors = 0;
  std::int64_t threads = 0;
  std::int64_t windows = 0;
  std::int64_t ticks = 0;  ///< of all timers in half an hour in which nothing happens
};

std::int64_t CountIn(const char* folder) {
  return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
}

class Soak {
 public:
  Soak()
      : program_(SurroundingsIn(work_.Path()), [](const std::string&) {}),
        main_window_(program_.Parts().form) {
    LayOutDrive(Drive());
    // Noon comes when nothing else happens.
    program_.Clock().SetTime("11:15");
    program_.Do([&] { program_.Parts().Start(); });
    BackupSettings& settings = program_.Parts().engine.settings;
    settings.DataFolder = "C:\\Data";
    auto& began = program_.Parts().engine.stages.FollowCopy;
    began = [this, was_set = began] {
      was_set();
      if (!is_by_hand_) scheduled_.push_back(program_.Clock().Now());
    };
    Schedule();
  }

  // All operations, then all windows and screens, and the rest of it nothing.
  Held Hour() {
    // Waiting for the medium takes some of the program's time: no hour is the later for it.
    end_ += 1h;
    fs::remove_all(Drive());
    LayOutDrive(Drive());
    program_.Parts().engine.settings.AutoCompress = false;
    for (const Operation& operation : AllOperations()) {
      if (operation.takes_server) continue;
      is_by_hand_ = true;
      operation.work(program_);
      is_by_hand_ = false;
      program_.Loop().Advance(10s);
    }
    // One of them has brought other settings.
    Schedule();
    Form1& form = program_.Parts().form;
    for (Label* const link :
         {&form.Label34, &form.Label42, &form.Label56, &form.Label46, &form.Label41, &form.Label36,
          &form.Label37, &form.Label38, &form.Label39, &form.Label51, &form.Label44}) {
      program_.Do([&] { link->Clicked.Emit(); });
      program_.Loop().Advance(5s);
      CloseAll();
      program_.Loop().Advance(1s);
    }
    program_.Loop().Advance(end_ - 30min - program_.Clock().Uptime());
    Held held;
    held.ticks = -Handled();
    program_.Loop().Advance(end_ - program_.Clock().Uptime());
    held.ticks += Handled();
    held.windows = static_cast<std::int64_t>(program_.Windows().Adopted().size());
    held.descriptors = CountIn("/proc/self/fd");
    held.threads = CountIn("/proc/self/task");
    held.memory_bytes = static_cast<std::int64_t>(::mallinfo2().uordblks);
    return held;
  }

  /// When the runs began that nobody started.
  const std::vector<DateTime>& Scheduled() const { return scheduled_; }

 private:
  void Schedule() {
    BackupSettings& settings = program_.Parts().engine.settings;
    settings.EveryDay = true;
    settings.ScheduleAt = true;
    settings.AlwaysAtText = "12:00";
    settings.AlwaysAtTime = MakeTime({12, 0, 0});
  }

  fs::path Drive() const { return work_.Path() / "drive"; }

  void CloseAll() {
    const std::vector<Window*> open = program_.Windows().Adopted();
    for (Window* const window : open) {
      if (window != &main_window_ && window->Visible) program_.Do([&] { window->Close(); });
    }
  }

  std::int64_t Handled() {
    std::uint64_t count = 0;
    program_.Loop().Deliver([&] { count = program_.Loop().RunningHandler(); });
    return static_cast<std::int64_t>(count);
  }

  WorkFolder work_;
  WholeProgram program_;
  Window& main_window_;
  std::chrono::nanoseconds end_ = program_.Clock().Uptime();
  bool is_by_hand_ = false;
  std::vector<DateTime> scheduled_;
};

void Compare(const char* what, std::int64_t first, std::int64_t last, std::int64_t most,
             Findings& findings) {
  std::printf("soak: %-12s %10lld, in the end %10lld\n", what, static_cast<long long>(first),
              static_cast<long long>(last));
  if (last - first > most || first - last > most) {
    findings.Add(std::string(what) + " didn't stay what it was");
  }
}

// A run at each noon, and none at another time.
void CheckScheduled(const std::vector<DateTime>& scheduled, int hours, Findings& findings) {
  std::set<DateTime> days;
  for (const DateTime began : scheduled) {
    const double minutes = (TimePart(began) - MakeTime({12, 0, 0})) * 24 * 60;
    if (minutes < 0 || minutes > 2) findings.Add("a scheduled run began at another time than noon");
    days.insert(DatePart(began));
  }
  const auto noons = static_cast<std::size_t>((hours + 23) / 24);
  std::printf("soak: %zu scheduled runs at %zu of %zu noons\n", scheduled.size(), days.size(),
              noons);
  if (days.size() != noons) findings.Add("a scheduled run is missing, or there is one too many");
}

}  // namespace

int CheckSoak(int hours) {
  Findings findings;
  Soak soak;
  // What is made once is there by then, and the hour of the day the same as in the end.
  const int settled = hours > 48 ? 24 + hours % 24 : hours / 2;
  Held first;
  Held last;
  for (int hour = 1; hour <= hours; ++hour) {
    last = soak.Hour();
    if (hour == settled) first = last;
    if (hour % 24 == 0) {
      std::printf("soak: day %d, %lld bytes\n", hour / 24,
                  static_cast<long long>(last.memory_bytes));
      std::fflush(stdout);
    }
  }
  Compare("bytes", first.memory_bytes, last.memory_bytes, kFlatBytes, findings);
  Compare("ticks", first.ticks, last.ticks, kFlatTicks, findings);
  Compare("windows", first.windows, last.windows, 0, findings);
  Compare("descriptors", first.descriptors, last.descriptors, 0, findings);
  Compare("threads", first.threads, last.threads, 0, findings);
  CheckScheduled(soak.Scheduled(), hours, findings);
  std::printf("soak: %d hours, %d failures\n", hours, findings.Count());
  return findings.Count();
}

}  // namespace tarnvale::reliability
