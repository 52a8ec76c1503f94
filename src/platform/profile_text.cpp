#include "platform/profile_text.h"

#include <algorithm>
#include <iterator>

#include "base/text.h"
#include "platform/file_text.h"

namespace tarnvale {
namespace {

constexpr std::string_view kCrLf = "\r\n";
constexpr std::string_view kLf = "\n";

std::string_view WithoutQuotes(std::string_view text) {
  if (text.size() < 2 || text.front() != text.back()) return text;
  if (text.front() != '"' && text.front() != '\'') return text;
  return text.substr(1, text.size() - 2);
}

std::optional<std::string_view> SectionOf(std::string_view line) {
  line = Trimmed(line);
  if (line.empty() || line.front() != '[') return std::nullopt;
  const auto close = line.find(']');
  if (close == std::string_view::npos) return std::nullopt;
  return Trimmed(line.substr(1, close - 1));
}

std::optional<std::string_view> KeyOf(std::string_view line) {
  line = Trimmed(line);
  const auto equals = line.find('=');
  if (equals == std::string_view::npos || line.front() == ';') return std::nullopt;
  const auto key = Trimmed(line.substr(0, equals));
  if (key.empty()) return std::nullopt;
  return key;
}

std::string_view ValueOf(std::string_view line) {
  return Trimmed(line.substr(line.find('=') + 1));
}

std::string Folded(std::string_view name) {
  return ToLower(Trimmed(name));
}

}  // namespace

ProfileText::ProfileText(std::string_view bytes) {
  if (bytes.starts_with(kUtf8Mark)) {
    mark_ = kUtf8Mark;
    bytes.remove_prefix(kUtf8Mark.size());
  }
  const auto first_end = bytes.find('\n');
  if (first_end != std::string_view::npos && (first_end == 0 || bytes[first_end - 1] != '\r')) {
    new_end_ = kLf;
  }
  Section* section = nullptr;
  while (!bytes.empty()) {
    const auto feed = bytes.find('\n');
    auto text = bytes.substr(0, feed);
    std::string_view end;
    if (feed != std::string_view::npos) {
      end = kLf;
      if (!text.empty() && text.back() == '\r') {
        text.remove_suffix(1);
        end = kCrLf;
      }
    }
    bytes.remove_prefix(feed == std::string_view::npos ? bytes.size() : feed + 1);
    AddParsed(text, end, section);
  }
}

void ProfileText::AddParsed(std::string_view text, std::string_view end, Section*& section) {
  lines_.push_back({std::string(text), end});
  if (const auto name = SectionOf(text)) {
    AddSection(*name, section);
    return;
  }
  if (section == nullptr || Trimmed(text).empty()) return;
  const auto line = std::prev(lines_.end());
  section->last = line;
  if (const auto key = KeyOf(text)) section->keys.emplace(Folded(*key), line);
}

// The last line is the header. The lines of a section that was there before
// belong to nobody.
void ProfileText::AddSection(std::string_view name, Section*& section) {
  const auto [place, added] = sections_.emplace(Folded(name), Section{std::prev(lines_.end()), {}});
  section = added ? &place->second : nullptr;
}

const ProfileText::Lines::iterator* ProfileText::Find(std::string_view section,
                                                      std::string_view key) const {
  const auto found = sections_.find(Folded(section));
  if (found == sections_.end()) return nullptr;
  const auto line = found->second.keys.find(Folded(key));
  return line == found->second.keys.end() ? nullptr : &line->second;
}

std::optional<std::string> ProfileText::Value(std::string_view section,
                                              std::string_view key) const {
  const auto* line = Find(section, key);
  if (line == nullptr) return std::nullopt;
  return std::string(WithoutQuotes(ValueOf((*line)->text)));
}

bool ProfileText::CanHold(std::string_view section, std::string_view key, std::string_view value) {
  if (!FitsOneLine(section) || !FitsOneLine(key) || !FitsOneLine(value)) return false;
  if (section.find(']') != std::string_view::npos) return false;
  key = Trimmed(key);
  return !key.empty() && key.find('=') == std::string_view::npos && key.front() != ';' &&
         key.front() != '[';
}

bool ProfileText::Holds(std::string_view section, std::string_view key,
                        std::string_view value) const {
  const auto* line = Find(section, key);
  return line != nullptr && ValueOf((*line)->text) == Trimmed(value);
}

bool ProfileText::Set(std::string_view section, std::string_view key, std::string_view value) {
  if (const auto* found = Find(section, key)) {
    std::string& text = (*found)->text;
    if (ValueOf(text) == Trimmed(value)) return false;
    auto start = text.find('=') + 1;
    while (start < text.size() && IsBlank(text[start])) ++start;
    text.replace(start, std::string::npos, value);
    return true;
  }
  auto place = sections_.find(Folded(section));
  if (place == sections_.end()) {
    const auto header = InsertAfter(lines_.end(), "[" + std::string(Trimmed(section)) + "]");
    place = sections_.emplace(Folded(section), Section{header, {}}).first;
  }
  Section& home = place->second;
  home.last = InsertAfter(home.last, std::string(Trimmed(key)) + "=" + std::string(value));
  home.keys.emplace(Folded(key), home.last);
  return true;
}

// `place` lines_.end() stands for the end of the file.
ProfileText::Lines::iterator ProfileText::InsertAfter(Lines::iterator place, std::string text) {
  const auto next = place == lines_.end() ? place : std::next(place);
  if (next != lines_.begin() && std::prev(next)->end.empty()) std::prev(next)->end = new_end_;
  return lines_.insert(next, {std::move(text), new_end_});
}

void ProfileText::ForEachChange(const ProfileText& before, const Visitor& visit) const {
  std::string_view section;
  for (auto line = lines_.begin(); line != lines_.end(); ++line) {
    if (const auto name = SectionOf(line->text)) section = *name;
    const auto key = KeyOf(line->text);
    const auto* found = key ? Find(section, *key) : nullptr;
    const std::string_view value = ValueOf(line->text);
    // A second line of the same key counts for nothing.
    if (found == nullptr || *found != line || before.Holds(section, *key, value)) continue;
    visit(section, *key, value);
  }
}

std::string ProfileText::Bytes() const {
  std::size_t size = mark_.size();
  for (const Line& line : lines_) size += line.text.size() + line.end.size();
  std::string bytes(mark_);
  bytes.reserve(size);
  for (const Line& line : lines_) {
    bytes += line.text;
    bytes += line.end;
  }
  return bytes;
}

}  // namespace tarnvale
