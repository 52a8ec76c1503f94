// The system's headers, for what also sees the event loop: without a macro of the
// system's past that has a name of ours.
#pragma once

#include <windows.h>
#include <winsock2.h>

#include <oleacc.h>

#undef Yield
