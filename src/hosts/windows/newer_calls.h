// Calls that the oldest system lacks.
#pragma once

#include <windows.h>

namespace tarnvale {

/// A function of the system's main library; null where it has none of this name.
template <class Function>
Function SystemsCall(const char* name) {
  const FARPROC found = ::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), name);
  return reinterpret_cast<Function>(reinterpret_cast<void*>(found));
}

}  // namespace tarnvale
