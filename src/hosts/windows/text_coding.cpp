#include "hosts/windows/text_coding.h"

#include "hosts/windows/wide.h"
#include "platform/file_text.h"

namespace tarnvale {
namespace {

bool IsMarked(std::string_view text) {
  return text.substr(0, kUtf8Mark.size()) == kUtf8Mark;
}

bool IsUtf16(std::string_view bytes) {
  return bytes.starts_with("\xFF\xFE") && bytes.size() % 2 == 0;
}

std::string FromUtf16(std::string_view bytes) {
  std::wstring wide;
  for (; bytes.size() >= 2; bytes.remove_prefix(2)) {
    const auto low = static_cast<unsigned char>(bytes[0]);
    wide += static_cast<wchar_t>(low | static_cast<unsigned char>(bytes[1]) << 8U);
  }
  return Narrow(wide);
}

}  // namespace

TextCoding::TextCoding(UINT code_page) : code_page_(code_page == CP_ACP ? ::GetACP() : code_page) {}

std::optional<std::string> TextCoding::Decode(std::string_view bytes) const {
  if (IsUtf16(bytes)) return std::string(kUtf8Mark) + FromUtf16(bytes.substr(2));
  if (code_page_ == CP_UTF8 || IsMarked(bytes) || bytes.empty()) return std::string(bytes);
  const int size = static_cast<int>(bytes.size());
  const int length = ::MultiByteToWideChar(code_page_, 0, bytes.data(), size, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(length), L'\0');
  ::MultiByteToWideChar(code_page_, 0, bytes.data(), size, wide.data(), length);
  BOOL lost = FALSE;
  if (Bytes(wide, lost) != bytes || lost != FALSE) return std::nullopt;
  return Narrow(wide);
}

std::optional<std::string> TextCoding::Encode(std::string_view text) const {
  if (code_page_ == CP_UTF8 || IsMarked(text)) return std::string(text);
  BOOL lost = FALSE;
  std::string bytes = Bytes(Wide(text), lost);
  if (lost != FALSE) return std::nullopt;
  return bytes;
}

// No letter is turned into one that looks like it.
std::string TextCoding::Bytes(std::wstring_view text, BOOL& lost) const {
  if (text.empty()) return {};
  const int size = static_cast<int>(text.size());
  constexpr DWORD kExact = WC_NO_BEST_FIT_CHARS;
  const int length =
      ::WideCharToMultiByte(code_page_, kExact, text.data(), size, nullptr, 0, nullptr, nullptr);
  std::string bytes(static_cast<std::size_t>(length), '\0');
  ::WideCharToMultiByte(code_page_, kExact, text.data(), size, bytes.data(), length, nullptr,
                        &lost);
  return bytes;
}

}  // namespace tarnvale
