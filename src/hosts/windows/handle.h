// A handle of the system that is closed with its owner.
#pragma once

#include <windows.h>

#include <utility>

// A macro that does nothing, of the name that a function of the event loop has.
#undef Yield

namespace tarnvale {

class Handle {
 public:
  Handle() = default;
  /// Both values that calls give for a failure are no handle.
  explicit Handle(HANDLE handle) : handle_(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
  Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Handle& operator=(Handle&& other) noexcept {
    if (this != &other) Close();
    handle_ = std::exchange(other.handle_, nullptr);
    return *this;
  }
  ~Handle() { Close(); }

  explicit operator bool() const { return handle_ != nullptr; }
  HANDLE Get() const { return handle_; }
  /// The code of the call before it stays.
  void Close() {
    const DWORD error = ::GetLastError();
    if (handle_ != nullptr) ::CloseHandle(std::exchange(handle_, nullptr));
    ::SetLastError(error);
  }

 private:
  HANDLE handle_ = nullptr;
};

}  // namespace tarnvale
