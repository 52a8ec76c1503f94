// The test machine: every interface of the platform, in memory.
#pragma once

#include <chrono>
#include <deque>
#include <string_view>

#include "tests/support/fake_boxes.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_dialogs.h"
#include "tests/support/fake_files.h"
#include "tests/support/fake_formats.h"
#include "tests/support/fake_ftp_transport.h"
#include "tests/support/fake_network.h"
#include "tests/support/fake_open_files.h"
#include "tests/support/fake_processes.h"
#include "tests/support/fake_profiles.h"
#include "tests/support/fake_random.h"
#include "tests/support/fake_registry.h"
#include "tests/support/fake_windows.h"
#include "tests/support/manual_loop.h"
#include "ui/machine.h"

namespace tarnvale::testing {

using namespace std::chrono_literals;

/// Stands at 2008-03-14 11:00:00, with a drive C: and the program folder
/// C:\Program. What must outlive a window (all of this) is declared before it.
/// A fault of a handler that wasn't expected fails the test.
class FakeMachine {
 public:
  FakeMachine();
  ~FakeMachine();
  FakeMachine(const FakeMachine&) = delete;
  FakeMachine& operator=(const FakeMachine&) = delete;

  /// Set the wall clock alone; timers don't hear of it.
  void SetTime(std::string_view time) { clock.SetTime(time); }
  void SetDate(CivilDate date) { clock.SetDate(date); }
  /// Moves the time and runs what comes due, see ManualLoop::Advance.
  void Advance(std::chrono::nanoseconds span) { loop.Advance(span); }

  /// A handler is going to fail with this number. One that doesn't fails the
  /// test.
  void ExpectFault(int number) { expected_faults_.push_back(number); }

  Machine& Interfaces() { return interfaces_; }

  FakeClock clock;
  ManualLoop loop{clock};
  FakeFiles files{clock};
  FakeOpenFiles open_files{files};
  FakeProfiles profiles{files};
  FakeProcesses processes{files};
  FakeRandom random;
  FakeFormats formats;
  FakeBoxes boxes{loop};
  Desktop desktop;
  FakeWindows windows{loop, desktop};
  FakeDialogs dialogs{loop};
  FakeTray tray;
  FakeRegistry registry;
  FakeApplicationFolders applications;
  FakeNetwork network{loop, clock};
  FakeFtpTransport ftp{loop};

 private:
  Machine interfaces_{
      {files, open_files, profiles, processes, clock, random, formats, registry, applications},
      {loop, boxes, desktop, windows, dialogs, tray, network, ftp}};
  std::deque<int> expected_faults_;
};

}  // namespace tarnvale::testing
