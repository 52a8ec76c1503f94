// How the texts of files are written: in the system's ANSI code page, as ever, or as
// UTF-8 with a mark where that can't hold them.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>

namespace tarnvale {

class TextCoding {
 public:
  /// CP_ACP for the system's own. Bytes are taken as they are where that is UTF-8.
  explicit TextCoding(UINT code_page = CP_ACP);

  /// The text of a file, its UTF-8 mark included, which one in UTF-16, as editors call it
  /// Unicode, is given; none when bytes of the code page wouldn't come back from Encode as
  /// they are.
  std::optional<std::string> Decode(std::string_view bytes) const;

  /// The bytes of a text: UTF-8 when it begins with the mark. None when the code page
  /// can't hold it.
  std::optional<std::string> Encode(std::string_view text) const;

 private:
  std::string Bytes(std::wstring_view text, BOOL& lost) const;

  UINT code_page_;
};

}  // namespace tarnvale
