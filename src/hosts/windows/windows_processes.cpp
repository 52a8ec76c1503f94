#include "hosts/windows/windows_processes.h"

#include <objbase.h>
#include <shellapi.h>

#include <string_view>
#include <utility>
#include <vector>

#include "base/failure.h"
#include "base/stable_hash.h"
#include "base/text.h"
#include "hosts/windows/paths.h"
#include "hosts/windows/wide.h"
#include "platform/command_line.h"
#include "platform/path_text.h"

namespace tarnvale {
namespace {

// Of newer systems: the program requires more rights than ours.
constexpr DWORD kElevationRequired = 740;

// What follows the first word of a command line.
std::string_view BehindFirstWord(std::string_view line) {
  line = Trimmed(line);
  bool quoted = false;
  std::size_t at = 0;
  for (; at < line.size() && (quoted || !IsBlank(line[at])); ++at) {
    if (line[at] == '"') quoted = !quoted;
  }
  return Trimmed(line.substr(at));
}

DWORD Start(const std::wstring& program, std::wstring command_line, WORD show) {
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESHOWWINDOW;
  startup.wShowWindow = show;
  PROCESS_INFORMATION process{};
  if (::CreateProcessW(program.c_str(), command_line.data(), nullptr, nullptr, FALSE,
                       CREATE_DEFAULT_ERROR_MODE, nullptr, nullptr, &startup, &process) == 0) {
    return ::GetLastError();
  }
  ::CloseHandle(process.hThread);
  ::CloseHandle(process.hProcess);
  return 0;
}

bool OpenByDesktop(const wchar_t* verb, const std::wstring& file, const std::wstring& parameters,
                   int show) {
  SHELLEXECUTEINFOW call{};
  call.cbSize = sizeof call;
  call.fMask = SEE_MASK_FLAG_NO_UI;
  call.lpVerb = verb;
  call.lpFile = file.c_str();
  call.lpParameters = parameters.empty() ? nullptr : parameters.c_str();
  call.nShow = show;
  // Some of what the desktop starts is started by COM.
  const HRESULT com = ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE);
  const bool is_started = ::ShellExecuteExW(&call) != 0;
  if (SUCCEEDED(com)) ::CoUninitialize();
  return is_started;
}

}  // namespace

std::wstring OwnProgramFile() {
  std::wstring file(MAX_PATH, L'\0');
  DWORD length = 0;
  // Its length isn't given, only that it didn't fit.
  while ((length = ::GetModuleFileNameW(nullptr, file.data(), static_cast<DWORD>(file.size()))) ==
         file.size()) {
    file.resize(file.size() * 2);
  }
  file.resize(length);
  return file;
}

WindowsProcesses::WindowsProcesses(const Locator& locator, std::wstring program_file)
    : locator_(locator), program_file_(std::move(program_file)) {}

bool WindowsProcesses::OpenWithDesktop(const Path& file) {
  const Located located = locator_.Locate(file);
  return located.state && OpenByDesktop(nullptr, WithoutPrefix(located.native), {}, SW_SHOWNORMAL);
}

bool WindowsProcesses::StartProgram(const Path& program) {
  const Located located = locator_.Locate(program);
  if (!located.state || located.IsFolder()) return false;
  const std::wstring file = WithoutPrefix(located.native);
  const DWORD error = Start(file, L"\"" + file + L"\"", SW_SHOWNORMAL);
  if (error != kElevationRequired) return error == 0;
  return OpenByDesktop(L"runas", file, {}, SW_SHOWNORMAL);
}

// Empty when there is no such program.
std::wstring WindowsProcesses::ProgramOf(const std::string& name) const {
  if (IsPathLanguage(name)) {
    const Located located = locator_.Locate(name);
    return located.state && !located.IsFolder() ? WithoutPrefix(located.native) : std::wstring();
  }
  std::wstring found(MAX_PATH, L'\0');
  const DWORD length =
      ::SearchPathW(nullptr, Wide(name).c_str(), L".exe", MAX_PATH, found.data(), nullptr);
  found.resize(length < MAX_PATH ? length : 0);
  return found;
}

// As the system itself finds it: a path without quotes may go on behind a blank.
WindowsProcesses::Command WindowsProcesses::CommandOf(std::string_view line) const {
  line = Trimmed(line);
  const std::string first = WordsOf(line).front();
  Command command{ProgramOf(first), Wide(line), Wide(BehindFirstWord(line))};
  if (!command.program.empty() || !IsPathLanguage(line)) return command;
  for (std::size_t end = first.size(); end != std::string_view::npos && end < line.size();) {
    end = line.find(' ', end + 1);
    command.program = ProgramOf(std::string(line.substr(0, end)));
    if (command.program.empty()) continue;
    if (end != std::string_view::npos) command.parameters = Wide(Trimmed(line.substr(end)));
    command.line = L"\"" + command.program + L"\" " + command.parameters;
    break;
  }
  return command;
}

void WindowsProcesses::StartMinimized(const std::string& command_line) {
  const std::vector<std::string> words = WordsOf(command_line);
  if (words.empty() || words.front().empty()) throw ProgramError(kInvalidCall);
  const Command command = CommandOf(command_line);
  if (command.program.empty()) throw ProgramError(kFileNotFound);
  const DWORD error = Start(command.program, command.line, SW_SHOWMINIMIZED);
  if (error == 0) return;
  if (error == kElevationRequired &&
      OpenByDesktop(L"runas", command.program, command.parameters, SW_SHOWMINIMIZED)) {
    return;
  }
  throw ProgramError(kFileNotFound);
}

std::optional<std::string> WindowsProcesses::Variable(const std::string& name) {
  const std::wstring wide = Wide(name);
  std::wstring value(256, L'\0');
  while (true) {
    ::SetLastError(ERROR_SUCCESS);
    const DWORD length =
        ::GetEnvironmentVariableW(wide.c_str(), value.data(), static_cast<DWORD>(value.size()));
    if (length == 0 && ::GetLastError() != ERROR_SUCCESS) return std::nullopt;
    const bool fits = length < value.size();
    value.resize(length);
    if (fits) return Narrow(value);
  }
}

bool WindowsProcesses::PreviousInstance() {
  if (!had_predecessor_) {
    const std::string name = "Local\\Tarnvale-" + StableHash(Narrow(FoldedPath(program_file_)));
    ::SetLastError(ERROR_SUCCESS);
    instance_ = Handle(::CreateMutexW(nullptr, FALSE, Wide(name).c_str()));
    const DWORD error = ::GetLastError();
    had_predecessor_ = error == ERROR_ALREADY_EXISTS || error == ERROR_ACCESS_DENIED;
  }
  return *had_predecessor_;
}

}  // namespace tarnvale
