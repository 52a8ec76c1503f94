// The case of letters in names.
#pragma once

#include <string>
#include <string_view>

namespace tarnvale {

/// A form in which names are equal that differ in the case of letters only, of
/// every alphabet. Bytes that are no UTF-8 stay as they are.
std::string FoldCase(std::string_view name);

/// The name with its letters in the other case: those from a to z, or when it has
/// none of them, all others. The name itself when it has no letters with a case.
std::string InOtherCase(std::string_view name);

}  // namespace tarnvale
