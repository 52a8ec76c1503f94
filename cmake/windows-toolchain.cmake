# Cross-compiles to Windows with mingw-w64: 32-bit for the oldest system, XP, or 64-bit.
# The compilers with the system's own threads: those with POSIX threads bring functions
# along that XP lacks. Everything is linked statically.
set(CMAKE_SYSTEM_NAME Windows)
if(TARNVALE_WINDOWS_TARGET STREQUAL "x86")
  set(CMAKE_SYSTEM_PROCESSOR i686)
else()
  set(CMAKE_SYSTEM_PROCESSOR x86_64)
endif()
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES TARNVALE_WINDOWS_TARGET)

set(triplet ${CMAKE_SYSTEM_PROCESSOR}-w64-mingw32)
set(CMAKE_CXX_COMPILER ${triplet}-g++-win32)
set(CMAKE_C_COMPILER ${triplet}-gcc-win32)
set(CMAKE_RC_COMPILER ${triplet}-windres)
set(CMAKE_OBJDUMP ${triplet}-objdump)
set(CMAKE_FIND_ROOT_PATH /usr/${triplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# 0x0501 is XP: what newer systems offer isn't even declared.
set(CMAKE_CXX_FLAGS_INIT
  "-D_WIN32_WINNT=0x0501 -DWINVER=0x0501 -DUNICODE -D_UNICODE -DWIN32_LEAN_AND_MEAN -DNOMINMAX")
# What a program doesn't call isn't in it; a report of a fault can be read by its lines.
string(APPEND CMAKE_CXX_FLAGS_INIT " -ffunction-sections -fdata-sections -g1")
if(TARNVALE_WINDOWS_TARGET STREQUAL "x86")
  # Gradients and times are computed as everywhere else: the older unit rounds otherwise.
  string(APPEND CMAKE_CXX_FLAGS_INIT " -msse2 -mfpmath=sse")
endif()
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -Wl,--gc-sections")

# 64-bit programs run here as they are; the first start makes the folder that they live in.
if(TARNVALE_WINDOWS_TARGET STREQUAL "x64")
  set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../scripts/under-wine)
endif()
