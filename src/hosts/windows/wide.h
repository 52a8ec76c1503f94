// Texts of the system: UTF-16. Above the host a text is UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace tarnvale {

/// Bytes that are no UTF-8 become U+FFFD, so that no name is taken for another one.
/// Half of a surrogate pair, which a name may hold, goes through both ways as its
/// three bytes.
std::wstring Wide(std::string_view text);
std::string Narrow(std::wstring_view text);

}  // namespace tarnvale
