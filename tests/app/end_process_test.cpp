// The program ends while the system still looks for a name, or, with the argument "run",
// while a handler goes on that never looks whether the program ends: this process has to
// end long before either does. Its exit status says whether all went well.
#include <netdb.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <thread>

#include "app/linux_machine.h"

namespace {

std::atomic<bool> lookup_has_begun = false;

}  // namespace

// Stands in for the system's, which queries a name server that doesn't answer.
extern "C" int getaddrinfo(const char*, const char*, const addrinfo*, addrinfo**) {
  lookup_has_begun = true;
  std::this_thread::sleep_for(std::chrono::hours(1));
  return EAI_AGAIN;
}

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kStatus = 7;

// As a copy of many files yields.
int EndDuringARun(tarnvale::LinuxMachine& machine) {
  tarnvale::EventLoop& loop = machine.Parts().loop;
  loop.Post([&] {
    loop.Quit(kStatus);
    const auto start = Clock::now();
    while (Clock::now() - start < std::chrono::seconds(15)) loop.Yield();
    std::puts("the handler went on to its end");
    std::_Exit(1);
  });
  return loop.Run();
}

}  // namespace

int main(int argc, char** argv) {
  tarnvale::LinuxMachine machine(argc, argv);
  if (argc > 1 && std::string_view(argv[1]) == "run") return EndDuringARun(machine);
  const auto socket = machine.Parts().sockets.MakeSocket();
  socket->Connect("mail.example", 25);
  const auto start = Clock::now();
  while (!lookup_has_begun) {
    if (Clock::now() - start > std::chrono::seconds(20)) {
      std::puts("nobody looked the name up");
      return 1;
    }
    machine.Parts().loop.WaitPass();
  }
  machine.EndProcess(0);
}
