// The case of letters in names.
#pragma once

#include <string>
#include <string_view>

namespace tarnvale {

/// A form in which names are equal that differ in the case of letters only, by the
/// system's own table.
std::string FoldCase(std::string_view name);

}  // namespace tarnvale
