// This system's host.
#pragma once

#ifdef _WIN32
#include "hosts/windows/name_case.h"
#include "hosts/windows/windows_folder.h"
#include "hosts/windows/windows_host.h"
#include "platform/workers.h"
#else
#include "hosts/linux/linux_folder.h"
#include "hosts/linux/linux_host.h"
#include "hosts/linux/linux_workers.h"
#include "hosts/linux/name_case.h"
#endif

namespace tarnvale {

#ifdef _WIN32
using NativeHost = WindowsHost;
using NativeFolder = WindowsFolder;
using NativeSurroundings = WindowsSurroundings;
using NativeWorkers = NoWorkers;
#else
using NativeHost = LinuxHost;
using NativeFolder = LinuxFolder;
using NativeSurroundings = LinuxSurroundings;
using NativeWorkers = LinuxWorkers;
#endif

}  // namespace tarnvale
