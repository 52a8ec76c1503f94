// Native paths as a person gives them, on Windows.
#pragma once

#include <string>

#include "hosts/windows/file_state.h"

namespace tarnvale {

/// As the system takes it, whatever its length. Raises SystemError for what no path of a
/// file can be.
std::wstring SystemPathOf(const std::string& given);
/// As a person reads it.
std::string ShownPathOf(const std::wstring& native);

/// The state of what is there, links followed. Raises SystemError.
FileState RequireState(const std::wstring& native);

}  // namespace tarnvale
