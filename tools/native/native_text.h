// The code page of texts on this system.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#ifdef _WIN32
#include "hosts/windows/text_coding.h"
#endif

namespace tarnvale {

/// As OpenFiles::FromCodePage of this system's host.
inline std::optional<std::string> FromNativeCodePage(std::string_view bytes) {
#ifdef _WIN32
  return TextCoding().Decode(bytes);
#else
  return std::string(bytes);
#endif
}

}  // namespace tarnvale
