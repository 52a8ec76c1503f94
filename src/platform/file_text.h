// Texts in the program's own files: names in archives, the pointer file.
//
// They are in the system's code page, as ever. What that can't hold, or what would be
// read back as something else, is UTF-8 behind a mark. Bytes without a mark that are
// UTF-8 are taken for it, whatever the code page: so an archive can be carried from one
// system to another, and a pointer file written by any editor.
#pragma once

#include <string>
#include <string_view>

#include "platform/open_files.h"

namespace tarnvale {

/// What a text in UTF-8 begins with on a system that has another code page.
inline constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

std::string TextToFile(const OpenFiles& system, std::string_view text);

/// The text of what TextToFile gave. Bytes that are of no code page stay as they are.
std::string TextFromFile(const OpenFiles& system, std::string_view bytes);

}  // namespace tarnvale
