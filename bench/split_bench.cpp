// One splitting or joining with the splitter's window on the screen;
// split_bench.sh puts them together. Needs a display.
//
//   split_bench split FILE FOLDER BYTES   cuts FILE into parts in FOLDER
//   split_bench join PART                 joins the parts beside them
//
// Prints the seconds that it took and the longest time in milliseconds in which
// the window couldn't answer.
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "app/linux_machine.h"
#include "bench/pulse.h"
#include "splitter/frm_main.h"

namespace tarnvale {
namespace {

using SteadyClock = std::chrono::steady_clock;

struct Request {
  bool is_split = false;
  std::string file;    // the source, or a part
  std::string folder;  // of the parts
  std::int32_t segment_bytes = 0;
};

PartsCode Serve(Machine& machine, frmMain& window, const DrivePaths& drive,
                const Request& request) {
  modFHand hand(machine.files, machine.open_files, machine.loop,
                {window.Text3.Text.Target(), window.Text2.Text.Target(),
                 [&window](std::int16_t percent) { window.spProg(percent); }});
  std::int16_t parts = 0;
  Path file = drive.FromNative(request.file);
  if (!request.is_split) return hand.JoinFile(file, parts);
  window.Text3.Text = drive.FromNative(request.folder);
  return hand.SplitFile(file, request.segment_bytes, parts);
}

int Measure(int argc, char** argv, const Request& request) {
  LinuxMachine desktop(argc, argv);
  Machine& machine = desktop.Parts();
  frmMain window(machine);
  machine.windows.Adopt(window);
  window.Show();

  PartsCode code = PartsCode::kFailed;
  // The window has come up by the first tick.
  Timer start(machine.loop.Timers(), 300, true);
  start.Tick.Listen([&] {
    start.Enabled = false;
    const Pulse pulse(machine.loop.Timers());
    const SteadyClock::time_point began = SteadyClock::now();
    code = Serve(machine, window, DrivePaths("/"), request);
    const std::chrono::duration<double> took = SteadyClock::now() - began;
    std::printf("%.4f %.1f\n", took.count(), pulse.WorstMs());
    machine.loop.Quit(0);
  });
  machine.loop.Run();
  return code == PartsCode::kDone ? 0 : 1;
}

}  // namespace
}  // namespace tarnvale

int main(int argc, char** argv) {
  const std::string step = argc > 1 ? argv[1] : "";
  tarnvale::Request request;
  request.is_split = step == "split";
  if (request.is_split && argc == 5) {
    request.folder = std::filesystem::absolute(argv[3]);
    request.segment_bytes = static_cast<std::int32_t>(std::atol(argv[4]));
  } else if (step != "join" || argc != 3) {
    std::fprintf(stderr, "usage: split_bench split FILE FOLDER BYTES | join PART\n");
    return 2;
  }
  request.file = std::filesystem::absolute(argv[2]);
  return tarnvale::Measure(argc, argv, request);
}
