// Texts that are only shown.
#pragma once

#include <string>
#include <string_view>

namespace tarnvale {

/// A text that is only shown, and may hold a name that anybody chose: each control
/// character but tabs and line ends, and each one that turns the direction of
/// writing, becomes a question mark. Line ends become "\n".
std::wstring ToShown(std::string_view text);

}  // namespace tarnvale
