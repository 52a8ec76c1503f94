// The case of letters in names.
#pragma once

#include <string>
#include <string_view>

namespace tarnvale {

/// A form in which names are equal that differ in the case of letters only, of
/// every alphabet. Bytes that are no UTF-8 stay as they are.
std::string FoldCase(std::string_view name);

}  // namespace tarnvale
