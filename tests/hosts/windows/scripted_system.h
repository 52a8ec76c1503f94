// Calls of the system that a test records or answers itself: what its stand-in here
// can't show, by the codes that its documentation has.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <cstddef>
#include <string_view>
#include <utility>

namespace tarnvale::testing {

/// Where this program keeps the address of a function that it imports; null for one that
/// it doesn't.
inline void** ImportedAddress(std::string_view name) {
  auto* const base = reinterpret_cast<std::byte*>(::GetModuleHandleW(nullptr));
  const auto at = [&](std::size_t offset) -> void* { return base + offset; };
  const auto* const dos = static_cast<IMAGE_DOS_HEADER*>(at(0));
  const auto* const headers =
      static_cast<IMAGE_NT_HEADERS*>(at(static_cast<std::size_t>(dos->e_lfanew)));
  const auto& table = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  for (auto* library = static_cast<IMAGE_IMPORT_DESCRIPTOR*>(at(table.VirtualAddress));
       library->Name != 0; ++library) {
    const auto* names = static_cast<IMAGE_THUNK_DATA*>(at(library->OriginalFirstThunk));
    auto* addresses = static_cast<IMAGE_THUNK_DATA*>(at(library->FirstThunk));
    for (; names->u1.AddressOfData != 0; ++names, ++addresses) {
      if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
      const auto* const import = static_cast<IMAGE_IMPORT_BY_NAME*>(at(names->u1.AddressOfData));
      const void* const text = &import->Name;
      if (name == static_cast<const char*>(text)) {
        return reinterpret_cast<void**>(&addresses->u1.Function);
      }
    }
  }
  return nullptr;
}

/// Puts an answer of the test's own in the place of a call, for all of this program and
/// as long as it lives. `answer` is called with the real function and the arguments.
/// Those of one call may be nested; the last one then comes first.
template <class Answer, class Result, class... Arguments>
class Scripted {
 public:
  using Function = Result(WINAPI*)(Arguments...);

  Scripted(std::string_view name, Function, Answer answer) : answer_(std::move(answer)) {
    address_ = ImportedAddress(name);
    if (address_ == nullptr) {
      ADD_FAILURE() << name << " isn't imported";
      return;
    }
    real_ = reinterpret_cast<Function>(*address_);
    outer_ = std::exchange(present_, this);
    Put(reinterpret_cast<void*>(&Call));
  }
  Scripted(const Scripted&) = delete;
  Scripted& operator=(const Scripted&) = delete;
  ~Scripted() {
    if (address_ == nullptr) return;
    present_ = outer_;
    Put(reinterpret_cast<void*>(real_));
  }

 private:
  // Each has a type of its own by its answer, and so an address.
  static Result WINAPI Call(Arguments... arguments) {
    return present_->answer_(present_->real_, arguments...);
  }

  void Put(void* function) {
    DWORD before = 0;
    ::VirtualProtect(address_, sizeof function, PAGE_READWRITE, &before);
    *address_ = function;
    ::VirtualProtect(address_, sizeof function, before, &before);
  }

  static inline Scripted* present_ = nullptr;
  Scripted* outer_ = nullptr;
  Answer answer_;
  Function real_ = nullptr;
  void** address_ = nullptr;
};

template <class Answer, class Result, class... Arguments>
Scripted(std::string_view, Result(WINAPI*)(Arguments...), Answer)
    -> Scripted<Answer, Result, Arguments...>;

/// For an answer that is a failure.
inline BOOL Failing(DWORD error) {
  ::SetLastError(error);
  return FALSE;
}

}  // namespace tarnvale::testing
