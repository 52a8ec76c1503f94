// Texts of others, shown.
#pragma once

#include <string>
#include <string_view>

namespace tarnvale {

/// A control character (C0, DEL, C1), or one that ends a line or paragraph or turns
/// the direction of writing.
bool IsControl(char32_t c);

/// A text that stays on its line and does nothing to a terminal, of UTF-8: each
/// control character and each byte that is no UTF-8 becomes a question mark. For names out of
/// archives and file systems, which anybody may have chosen.
std::string Shown(std::string_view text);

}  // namespace tarnvale
