#include "platform/file_text.h"

#include <optional>

#include "base/characters.h"

namespace tarnvale {
namespace {

// So is ASCII, which is the same in every code page.
bool IsUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    const Character first = FirstCharacter(bytes);
    if (first.bytes == 0) return false;
    bytes.remove_prefix(first.bytes);
  }
  return true;
}

}  // namespace

std::string TextToFile(const OpenFiles& system, std::string_view text) {
  const std::optional<std::string> bytes = system.ToCodePage(text);
  if (bytes && TextFromFile(system, *bytes) == text) return *bytes;
  return std::string(kUtf8Mark).append(text);
}

std::string TextFromFile(const OpenFiles& system, std::string_view bytes) {
  if (bytes.starts_with(kUtf8Mark)) return std::string(bytes.substr(kUtf8Mark.size()));
  if (IsUtf8(bytes)) return std::string(bytes);
  return system.FromCodePage(bytes).value_or(std::string(bytes));
}

}  // namespace tarnvale
