#include "core/registry_editor.h"

namespace tarnvale {
namespace {

// Required: constants, wherever the system's folder is.
constexpr const char* kExport = "C:\\Windows\\Regedit.exe /e ";
constexpr const char* kImport = "C:\\Windows\\Regedit.exe /s ";
constexpr const char* kQuote = "\"";

}  // namespace

std::string ExportLine(const Path& file, const std::string& branch, const std::string& sub_branch) {
  std::string line = std::string(kExport) + kQuote + file + kQuote;
  if (!branch.empty()) line += std::string(" ") + kQuote + branch;
  // Required: no quote closes the line behind a branch alone.
  if (!branch.empty() && !sub_branch.empty()) line += "\\" + sub_branch + kQuote;
  return line;
}

// Required: no closing quote.
std::string ImportLine(const Path& file) {
  return std::string(kImport) + kQuote + file;
}

}  // namespace tarnvale
