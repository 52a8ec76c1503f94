// The event loop, the clock and the sockets of the host that is built.
#pragma once

#ifdef _WIN32

#include "hosts/windows/windows_clock.h"
#include "hosts/windows/windows_event_loop.h"
#include "hosts/windows/windows_sockets.h"

namespace tarnvale::testing {
using HostClock = WindowsClock;
using HostLoop = WindowsEventLoop;
using HostSockets = WindowsSockets;
}  // namespace tarnvale::testing

#else

#include "hosts/linux/linux_clock.h"
#include "hosts/qt/qt_event_loop.h"
#include "hosts/qt/qt_sockets.h"

namespace tarnvale::testing {
using HostClock = LinuxClock;
using HostLoop = QtEventLoop;
using HostSockets = QtSockets;
}  // namespace tarnvale::testing

#endif
