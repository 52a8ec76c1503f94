#include <windows.h>

#include <shellapi.h>

#include <algorithm>
#include <atomic>

#include "hosts/windows/wide.h"
#include "native/command_failure.h"
#include "native/console.h"
#include "native/system_error.h"

namespace tarnvale {
namespace {

constexpr DWORD kMostAtOnce = 8192;

std::atomic<bool> is_stopped{false};

// Runs in a thread of its own. The second time the system ends the command at once.
BOOL WINAPI StopCommand(DWORD reason) {
  constexpr DWORD kPatience_ms = 5000;  // the system's own, after which it ends us
  if (is_stopped.exchange(true)) return FALSE;
  // Of a closed console and the session's end: the command lives until this returns.
  if (reason != CTRL_C_EVENT && reason != CTRL_BREAK_EVENT) ::Sleep(kPatience_ms);
  return TRUE;
}

bool IsConsole(HANDLE output) {
  DWORD mode = 0;
  return ::GetConsoleMode(output, &mode) != 0;
}

bool WriteBytes(HANDLE output, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto wanted = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), kMostAtOnce));
    DWORD done = 0;
    if (::WriteFile(output, bytes.data(), wanted, &done, nullptr) == 0) return false;
    bytes.remove_prefix(done);
  }
  return true;
}

bool WriteText(HANDLE output, std::string_view text) {
  if (!IsConsole(output)) return WriteBytes(output, text);
  const std::wstring wide = Wide(text);
  std::wstring_view rest = wide;
  while (!rest.empty()) {
    const auto wanted = static_cast<DWORD>(std::min<std::size_t>(rest.size(), kMostAtOnce));
    DWORD done = 0;
    if (::WriteConsoleW(output, rest.data(), wanted, &done, nullptr) == 0) return false;
    rest.remove_prefix(done);
  }
  return true;
}

}  // namespace

std::vector<std::string> Arguments(int, char**) {
  int count = 0;
  wchar_t** const words = ::CommandLineToArgvW(::GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; words != nullptr && i < count; ++i) arguments.push_back(Narrow(words[i]));
  ::LocalFree(words);
  return arguments;
}

void Print(std::string_view text) {
  if (!WriteText(::GetStdHandle(STD_OUTPUT_HANDLE), text)) {
    throw CommandFailure("standard output", SystemError().what());
  }
}

void PrintBytes(std::span<const std::uint8_t> bytes) {
  const void* const first = bytes.data();
  if (!WriteBytes(::GetStdHandle(STD_OUTPUT_HANDLE),
                  {static_cast<const char*>(first), bytes.size()})) {
    throw CommandFailure("standard output", SystemError().what());
  }
}

void PrintError(std::string_view text) {
  WriteText(::GetStdHandle(STD_ERROR_HANDLE), text);
}

bool ErrorsAreSeen() {
  return IsConsole(::GetStdHandle(STD_ERROR_HANDLE));
}

void CatchEnding() {
  ::SetConsoleCtrlHandler(&StopCommand, TRUE);
}

void StopIfAsked() {
  if (is_stopped) throw Stopped();
}

}  // namespace tarnvale
