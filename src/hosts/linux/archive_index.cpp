#include "hosts/linux/archive_index.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <cstddef>
#include <fstream>
#include <string_view>
#include <system_error>
#include <utility>

#include "base/failure.h"
#include "hosts/linux/descriptor.h"
#include "hosts/linux/replacement.h"
#include "hosts/linux/state_folder.h"

namespace tarnvale {
namespace {

std::string Escape(std::string_view path) {
  std::string text;
  for (const char c : path) {
    if (c == '\n') {
      text += "\\n";
    } else {
      if (c == '\\') text += '\\';
      text += c;
    }
  }
  return text;
}

std::string Unescape(std::string_view text) {
  std::string path;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      path += text[i];
    } else {
      ++i;
      path += text[i] == 'n' ? '\n' : text[i];
    }
  }
  return path;
}

// A number and the blank behind it.
template <class Number>
bool TakeNumber(std::string_view& text, Number& number) {
  const char* const end = text.data() + text.size();
  const auto [behind, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || behind == end || *behind != ' ') return false;
  text.remove_prefix(static_cast<std::size_t>(behind - text.data()) + 1);
  return true;
}

std::string LineOf(const std::string& native, const ArchiveMark& mark) {
  return mark.ToText() + " " + Escape(native) + "\n";
}

}  // namespace

std::string ArchiveMark::ToText() const {
  return std::to_string(size_bytes) + " " + std::to_string(modified_ns) + " " +
         std::to_string(inode) + " " + std::to_string(born_ns) + " " + std::to_string(changed_ns);
}

std::optional<ArchiveMark> ArchiveMark::Take(std::string_view& text) {
  ArchiveMark mark;
  if (TakeNumber(text, mark.size_bytes) && TakeNumber(text, mark.modified_ns) &&
      TakeNumber(text, mark.inode) && TakeNumber(text, mark.born_ns) &&
      TakeNumber(text, mark.changed_ns)) {
    return mark;
  }
  return std::nullopt;
}

ArchiveIndex::ArchiveIndex(std::string state_folder, Temporaries& temporaries)
    : folder_(std::move(state_folder)), file_(folder_ + "/archived"), temporaries_(temporaries) {}

const ArchiveMark* ArchiveIndex::Find(const std::string& native) {
  Load();
  const auto found = marks_.find(native);
  return found == marks_.end() ? nullptr : &found->second;
}

void ArchiveIndex::Set(const std::string& native, const ArchiveMark& mark) {
  Load();
  Append(LineOf(native, mark));
  marks_[native] = mark;
}

void ArchiveIndex::Remove(const std::string& native) {
  Load();
  if (!marks_.contains(native)) return;
  Append("- " + Escape(native) + "\n");
  marks_.erase(native);
}

void ArchiveIndex::Load() {
  if (std::exchange(loaded_, true)) return;
  std::ifstream in(file_, std::ios::binary);
  std::size_t lines = 0;
  for (std::string line; std::getline(in, line); ++lines) {
    // A line without its end was cut off by a crash.
    if (!in.eof()) TakeLine(line);
  }
  in.close();
  if (lines > 2 * marks_.size() + 100) Compact();
}

void ArchiveIndex::TakeLine(std::string_view line) {
  if (line.starts_with("- ")) {
    marks_.erase(Unescape(line.substr(2)));
  } else if (const auto mark = ArchiveMark::Take(line)) {
    marks_[Unescape(line)] = *mark;
  }
}

void ArchiveIndex::Compact() {
  std::string text;
  for (const auto& [native, mark] : marks_) text += LineOf(native, mark);
  TemporarySlot slot(temporaries_);
  Replacement fresh(slot, folder_);
  // The long form goes on to serve when this fails.
  PassedOver pass;
  pass.Step([&] {
    if (fresh.Create(0600) && WriteAll(fresh.Fd(), text)) fresh.Commit(file_, Flush::kYes);
  });
}

void ArchiveIndex::Append(const std::string& line) {
  MakeStateFolder(folder_);
  const Descriptor out(::open(file_.c_str(), O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC, 0600));
  if (!out) throw ProgramError(kPathFileAccess);
  // A cut-off line of an earlier crash must not swallow this one.
  char last = '\n';
  const off_t end = ::lseek(out.Get(), 0, SEEK_END);
  if (end > 0 && ::pread(out.Get(), &last, 1, end - 1) != 1) throw ProgramError(kPathFileAccess);
  const std::string text = last == '\n' ? line : "\n" + line;
  if (::write(out.Get(), text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
    throw ProgramError(kPathFileAccess);
  }
}

}  // namespace tarnvale
