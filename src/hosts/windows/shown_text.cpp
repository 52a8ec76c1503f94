#include "hosts/windows/shown_text.h"

#include "base/shown_text.h"
#include "hosts/windows/wide.h"

namespace tarnvale {

std::wstring ToShown(std::string_view text) {
  std::wstring shown;
  wchar_t before = 0;
  for (const wchar_t c : Wide(text)) {
    const bool ends_line = c == L'\n' || c == L'\r';
    const bool is_second_half = before == L'\r' && c == L'\n';
    before = c;
    if (is_second_half) continue;
    if (ends_line) {
      shown += L'\n';
    } else {
      shown += c != L'\t' && IsControl(c) ? L'?' : c;
    }
  }
  return shown;
}

}  // namespace tarnvale
