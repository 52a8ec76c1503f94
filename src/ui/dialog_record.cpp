#include "ui/dialog_record.h"

#include <algorithm>
#include <string_view>

#include "base/characters.h"
#include "base/text.h"

namespace tarnvale {
namespace {

std::vector<std::string_view> Parts(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  while (true) {
    const std::size_t end = text.find(separator);
    parts.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return parts;
    text.remove_prefix(end + 1);
  }
}

std::vector<std::string> PatternsIn(std::string_view field) {
  std::vector<std::string> patterns;
  for (const std::string_view part : Parts(field, ';')) {
    if (!part.empty()) patterns.emplace_back(Trimmed(part));
  }
  if (patterns.empty()) patterns.emplace_back("*.*");
  return patterns;
}

bool Fits(const std::string& text, const std::string& buffer) {
  return CountCharacters(text) < CountCharacters(buffer);
}

void Fill(std::string& buffer, const std::string& text) {
  buffer = PaddedWithNuls(text, CountCharacters(buffer));
}

}  // namespace

std::vector<FileFilter> FiltersOf(const FileDialogRecord& record) {
  std::vector<std::string_view> fields = Parts(record.filter, '\0');
  while (!fields.empty() && fields.back().empty()) fields.pop_back();
  std::vector<FileFilter> filters;
  for (std::size_t i = 0; i < fields.size(); i += 2) {
    filters.push_back({.description = std::string(fields[i]),
                       .patterns = PatternsIn(i + 1 < fields.size() ? fields[i + 1] : "")});
  }
  return filters;
}

std::size_t FirstFilterOf(const FileDialogRecord& record, std::size_t count) {
  const auto wanted = static_cast<std::size_t>(std::max(record.filter_index - 1, 0));
  return count == 0 ? 0 : std::min(wanted, count - 1);
}

std::string DefaultExtensionOf(const FileDialogRecord& record) {
  return record.default_ext.substr(record.default_ext.starts_with('.') ? 1 : 0);
}

// The file may have a name on another machine, with slashes and without a drive.
OfferedFile OfferedBy(const FileDialogRecord& record) {
  const std::string file = record.file.substr(0, record.file.find('\0'));
  if (file.find_first_of("*?") != std::string::npos) return {};
  const std::size_t name = file.find_last_of("\\/") + 1;
  return {.folder = file.substr(0, name), .name = file.substr(name)};
}

std::string QuestionOfMissing(const FileDialogRecord& record, const Path& missing) {
  if ((record.flags & kCreatePrompt) == 0) return {};
  return FileNameOf(missing) + "\nThis file doesn't exist. Create it?";
}

bool GiveBack(FileDialogRecord& record, const Path& chosen) {
  const std::string name = FileNameOf(chosen);
  if (chosen.empty() || !Fits(chosen, record.file) || !Fits(name, record.file_title)) return false;
  Fill(record.file, chosen);
  Fill(record.file_title, name);
  return true;
}

}  // namespace tarnvale
