#include <windows.h>

#include <tlhelp32.h>

#include <array>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "companions/quit/instances.h"
#include "hosts/windows/file_state.h"
#include "hosts/windows/handle.h"
#include "hosts/windows/paths.h"
#include "hosts/windows/windows_processes.h"

namespace tarnvale {
namespace {

constexpr wchar_t kProgramName[] = L"tarnvale.exe";

// Empty when the process doesn't let us look. The newer of the two calls sees processes of
// the other word size as well.
std::wstring ProgramFileOf(HANDLE process) {
  using NewCall = BOOL(WINAPI*)(HANDLE, DWORD, wchar_t*, DWORD*);
  using OldCall = DWORD(WINAPI*)(HANDLE, HMODULE, wchar_t*, DWORD);
  std::wstring file(32768, L'\0');
  auto length = static_cast<DWORD>(file.size());
  const HMODULE kernel = ::GetModuleHandleW(L"kernel32.dll");
  void* const newer =
      reinterpret_cast<void*>(::GetProcAddress(kernel, "QueryFullProcessImageNameW"));
  if (newer != nullptr) {
    if (reinterpret_cast<NewCall>(newer)(process, 0, file.data(), &length) == 0) length = 0;
  } else {
    const HMODULE library = ::LoadLibraryW(L"psapi.dll");
    void* const older =
        library == nullptr
            ? nullptr
            : reinterpret_cast<void*>(::GetProcAddress(library, "GetModuleFileNameExW"));
    length = older == nullptr
                 ? 0
                 : reinterpret_cast<OldCall>(older)(process, nullptr, file.data(), length);
    if (library != nullptr) ::FreeLibrary(library);
  }
  file.resize(length);
  return file;
}

bool IsOfThisUser(HANDLE process) {
  const auto user_of = [](HANDLE of, std::array<std::uint64_t, 64>& buffer) -> PSID {
    HANDLE opened = nullptr;
    if (::OpenProcessToken(of, TOKEN_QUERY, &opened) == 0) return nullptr;
    const Handle token(opened);
    DWORD length = 0;
    if (::GetTokenInformation(token.Get(), TokenUser, buffer.data(), sizeof buffer, &length) == 0) {
      return nullptr;
    }
    const void* const user = buffer.data();
    return static_cast<const TOKEN_USER*>(user)->User.Sid;
  };
  std::array<std::uint64_t, 64> ours{};  // aligned for the structure
  std::array<std::uint64_t, 64> theirs{};
  const PSID one = user_of(::GetCurrentProcess(), ours);
  const PSID other = user_of(process, theirs);
  return one != nullptr && other != nullptr && ::EqualSid(one, other) != 0;
}

BOOL CALLBACK CloseIfOf(HWND window, LPARAM process_number) {
  DWORD owner = 0;
  ::GetWindowThreadProcessId(window, &owner);
  if (owner == static_cast<DWORD>(process_number)) ::PostMessageW(window, WM_CLOSE, 0, 0);
  return TRUE;
}

class WindowsInstance final : public Instance {
 public:
  WindowsInstance(Handle process, DWORD number) : process_(std::move(process)), number_(number) {}

  // All its windows, hidden ones as well: it may be in the notification area.
  void RequestEnd() const override { ::EnumWindows(&CloseIfOf, static_cast<LPARAM>(number_)); }
  void Kill() const override { ::TerminateProcess(process_.Get(), 1); }
  void AwaitEnd(std::chrono::milliseconds patience) const override {
    ::WaitForSingleObject(process_.Get(), static_cast<DWORD>(patience.count()));
  }

 private:
  Handle process_;  ///< while it is held, nobody else gets its number
  DWORD number_;
};

bool HasEnded(const Handle& process) {
  return ::WaitForSingleObject(process.Get(), 0) == WAIT_OBJECT_0;
}

}  // namespace

Instances FindInstances() {
  const std::wstring program = Joined(NativeFolderOf(OwnProgramFile()), kProgramName);
  const Handle processes(::CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
  PROCESSENTRY32W entry{};
  entry.dwSize = sizeof entry;
  if (!processes || ::Process32FirstW(processes.Get(), &entry) == 0) throw NobodyKnows();
  Instances found;
  do {
    constexpr DWORD kRights =
        PROCESS_QUERY_INFORMATION | PROCESS_VM_READ | PROCESS_TERMINATE | SYNCHRONIZE;
    Handle held(::OpenProcess(kRights, FALSE, entry.th32ProcessID));
    if (held && !HasEnded(held) && IsOfThisUser(held.Get()) &&
        AreOneFile(ProgramFileOf(held.Get()), program)) {
      found.push_back(std::make_unique<WindowsInstance>(std::move(held), entry.th32ProcessID));
    }
  } while (::Process32NextW(processes.Get(), &entry) != 0);
  return found;
}

std::chrono::milliseconds Uptime() {
  LARGE_INTEGER count{};
  LARGE_INTEGER per_second{};
  ::QueryPerformanceCounter(&count);
  ::QueryPerformanceFrequency(&per_second);
  return std::chrono::milliseconds(count.QuadPart / per_second.QuadPart * 1000 +
                                   count.QuadPart % per_second.QuadPart * 1000 /
                                       per_second.QuadPart);
}

}  // namespace tarnvale
