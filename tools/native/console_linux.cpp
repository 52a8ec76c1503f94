#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "hosts/linux/descriptor.h"
#include "native/command_failure.h"
#include "native/console.h"
#include "native/leftovers_linux.h"
#include "native/system_error.h"

namespace tarnvale {

std::vector<std::string> Arguments(int argc, char** argv) {
  return {argv + 1, argv + argc};
}

void Print(std::string_view text) {
  if (!WriteAll(STDOUT_FILENO, text)) {
    throw CommandFailure("standard output", SystemError(errno).what());
  }
}

void PrintBytes(std::span<const std::uint8_t> bytes) {
  const void* const first = bytes.data();
  Print({static_cast<const char*>(first), bytes.size()});
}

void PrintError(std::string_view text) {
  WriteAll(STDERR_FILENO, text);
}

bool ErrorsAreSeen() {
  return ::isatty(STDERR_FILENO) == 1;
}

void CatchEnding() {
  CatchEndingSignals();
}

void StopIfAsked() {}

}  // namespace tarnvale
