// The desktop that this program is built for, on real windows: its fixture says in one
// vocabulary what the user does and sees.
#pragma once

#ifdef _WIN32
#include "tests/hosts/windows/windows_fixture.h"
#else
#include "tests/hosts/qt/qt_fixture.h"
#endif

namespace tarnvale::testing {

#ifdef _WIN32
using DesktopUnderTest = WindowsWindowTest;
#else
using DesktopUnderTest = QtFixture;
#endif

}  // namespace tarnvale::testing
