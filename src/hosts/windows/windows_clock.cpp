#include "hosts/windows/windows_clock.h"

#include <windows.h>

#include <cstdint>

namespace tarnvale {
namespace {

SYSTEMTIME Present() {
  SYSTEMTIME now{};
  ::GetLocalTime(&now);
  return now;
}

}  // namespace

DateTime WindowsClock::Now() {
  const SYSTEMTIME now = Present();
  return MakeDateTime({now.wYear, now.wMonth, now.wDay}, {now.wHour, now.wMinute, now.wSecond});
}

double WindowsClock::SecondsSinceMidnight() {
  const SYSTEMTIME now = Present();
  return now.wHour * 3600 + now.wMinute * 60 + now.wSecond + now.wMilliseconds / 1000.0;
}

std::chrono::nanoseconds WindowsClock::Uptime() {
  constexpr std::int64_t kPerSecond = 1'000'000'000;
  LARGE_INTEGER frequency{};
  LARGE_INTEGER count{};
  ::QueryPerformanceFrequency(&frequency);
  ::QueryPerformanceCounter(&count);
  const std::int64_t seconds = count.QuadPart / frequency.QuadPart;
  const std::int64_t rest = count.QuadPart % frequency.QuadPart;
  return std::chrono::nanoseconds(seconds * kPerSecond + rest * kPerSecond / frequency.QuadPart);
}

}  // namespace tarnvale
