// The program ends while the system still looks for a name: this process has to end
// long before the look-up does. Its exit status says whether all went well.
#include <netdb.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <thread>

#include "app/desktop_machine.h"

namespace {

std::atomic<bool> lookup_has_begun = false;

}  // namespace

// Stands in for the system's, which asks a name server that doesn't answer.
extern "C" int getaddrinfo(const char*, const char*, const addrinfo*, addrinfo**) {
  lookup_has_begun = true;
  std::this_thread::sleep_for(std::chrono::hours(1));
  return EAI_AGAIN;
}

int main(int argc, char** argv) {
  using Clock = std::chrono::steady_clock;
  tarnvale::DesktopMachine machine(argc, argv);
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
