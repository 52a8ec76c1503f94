// Ends this user's running instances of the program that lies in this program's
// own folder, and no other process.
//
// The main program starts it on every way out, after its tray icon is gone, and
// waits to be ended. Exit status: 0 when no such instance is left, 1 otherwise.

#include <algorithm>

#include "companions/quit/instances.h"

namespace tarnvale {
namespace {

using namespace std::chrono_literals;

// An instance may be in the middle of a copy; every file is then its old or its
// new self, so a second of patience is politeness, not safety.
constexpr std::chrono::milliseconds kPatience = 1s;

// True when none is left.
bool End(void (Instance::*how)() const) {
  const Instances instances = FindInstances();
  for (const auto& instance : instances) (*instance.*how)();
  const auto latest = Uptime() + kPatience;
  for (const auto& instance : instances) instance->AwaitEnd(std::max(0ms, latest - Uptime()));
  return FindInstances().empty();
}

int Run() {
  try {
    return End(&Instance::RequestEnd) || End(&Instance::Kill) ? 0 : 1;
  } catch (const NobodyKnows&) {
    return 1;
  }
}

}  // namespace
}  // namespace tarnvale

#ifdef _WIN32
// Without a console of its own.
extern "C" int __stdcall WinMain(void*, void*, char*, int) {
  return tarnvale::Run();
}
#else
int main() {
  return tarnvale::Run();
}
#endif
