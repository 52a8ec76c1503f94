#include "registry/registry_editor.h"

namespace tarnvale {
namespace {

// Required: a constant, wherever the system's folder is.
constexpr const char* kEditor = "C:\\Windows\\Regedit.exe";
constexpr const char* kQuote = "\"";

}  // namespace

std::string ExportLine(const Path& file, const std::string& branch, const std::string& sub_branch) {
  const std::string whole = std::string(kEditor) + " /e " + kQuote + file + kQuote;
  if (branch.empty()) return whole;
  // Required: no quote closes the line behind a branch that stands alone.
  if (sub_branch.empty()) return whole + " " + kQuote + branch;
  return whole + " " + kQuote + branch + "\\" + sub_branch + kQuote;
}

// Required: no closing quote.
std::string ImportLine(const Path& file) {
  return std::string(kEditor) + " /s " + kQuote + file;
}

}  // namespace tarnvale
