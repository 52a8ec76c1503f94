// Private profiles: texts of sections, keys and values.
//
//   [When]
//   AlwaysAt=12:00
//
// Sections and keys are found without regard to case, the first of equal ones
// counts. Blanks around keys and values are dropped, and on reading one pair of
// enclosing quotes (double or single). Lines that begin with a semicolon are
// comments. What a write doesn't name stays as it is, byte for byte, line ends
// included.
// The files are in the system's encoding: bytes as they are on Linux, the ANSI code page
// on Windows, where one that begins with the mark of UTF-8 is in that.
#pragma once

#include <cstddef>
#include <string>

#include "platform/files.h"

namespace tarnvale {

class ProfileFiles {
 public:
  virtual ~ProfileFiles() = default;

  /// The value of a key, cut to `buffer_size` - 1 characters; `fallback`, cut
  /// likewise, when file, section or key is missing. A byte that belongs to no character
  /// counts as one (FirstCharacters). Sees held-back writes.
  virtual std::string Read(const std::string& section, const std::string& key,
                           const std::string& fallback, std::size_t buffer_size,
                           const Path& file) = 0;

  /// Replaces the value of a key in place, or adds key and section at the end
  /// of section and file, creating the file if it is missing. Writes are held
  /// back until Flush. False when the file can't be written (read-only, no
  /// folder for it) or is there and can't be read, or couldn't when Read last looked for
  /// any one of its keys, as what that holds isn't known then; and for what could not be read
  /// back: a line break in any of the texts, a key that is empty, holds "=" or
  /// begins with ";" or "[", a section with "]".
  virtual bool Write(const std::string& section, const std::string& key, const std::string& value,
                     const Path& file) = 0;

  /// Puts what was held back onto the medium, into the file as it is by then, in one step:
  /// it is always its old or its new self. A file whose content didn't change
  /// isn't touched; what others wrote to it in the meantime stays. False when it
  /// failed, for whatever reason; the old file is then as it was and the
  /// held-back writes are given up. With nothing held back, true.
  virtual bool Flush(const Path& file) = 0;
};

}  // namespace tarnvale
