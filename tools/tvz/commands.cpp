#include "tvz/commands.h"

#include <algorithm>

#include "base/shown_text.h"
#include "native/command_failure.h"
#include "native/console.h"
#include "native/native_file.h"
#include "tvz/archive_contents.h"
#include "tvz/extraction.h"
#include "tvz/packing.h"
#include "tvz/progress.h"

namespace tarnvale {
namespace {

// A name as it is written here.
std::string Native(std::string name) {
  std::replace(name.begin(), name.end(), '\\', kSeparator);
  return name;
}

// The same however it is written.
std::string WithSlashes(std::string name) {
  std::replace(name.begin(), name.end(), '\\', '/');
  return name;
}

std::string Counted(std::int64_t number, const std::string& one, const std::string& many) {
  return std::to_string(number) + " " + (number == 1 ? one : many);
}

void Create(const Request& request) {
  std::vector<LeftOut> left_out;
  {
    Progress progress;
    left_out = PackFolder(request.archive, request.folder, progress);
  }
  for (const LeftOut& entry : left_out) {
    PrintError("tvz: " + Shown(entry.path) + ": left out: " + entry.reason + "\n");
  }
}

// Nothing is written before the whole archive and all its names were found good.
void Extract(const Request& request) {
  Progress progress;
  const ArchiveContents contents(request.archive, progress);
  TargetFolder target(request.folder, request.allow_outside);
  std::int64_t entries = 0;
  contents.ForEach([&](const ContainerRecord& record) {
    target.Check(record.name);
    ++entries;
  });
  target.Make();
  std::int64_t done = 0;
  std::vector<std::string> left_out;
  contents.ForEach([&](const ContainerRecord& record) {
    try {
      target.Write(record);
    } catch (const LeftOutEntry& entry) {
      left_out.push_back(Native(entry.what()));
    }
    progress.Show("writing", static_cast<int>(++done * 100 / entries));
  });
  progress.Clear();
  for (const std::string& entry : left_out) {
    PrintError("tvz: " + Shown(entry) + "\n");
  }
  if (!left_out.empty()) {
    throw CommandFailure(
        request.archive,
        Counted(static_cast<std::int64_t>(left_out.size()), "entry", "entries") + " left out");
  }
}

void List(const Request& request) {
  constexpr std::size_t kPiece = 65536;
  Progress progress;
  const ArchiveContents contents(request.archive, progress);
  progress.Clear();
  std::string lines;
  // What can be said is said, also of a container that is cut off.
  const auto list = [&](const ContainerRecord& record) {
    lines += Shown(Native(record.name)) + "\t" + std::to_string(record.content.Size()) + "\n";
    if (lines.size() < kPiece) return;
    Print(lines);
    lines.clear();
  };
  try {
    contents.ForEach(list);
  } catch (const CommandFailure&) {
    Print(lines);
    throw;
  }
  Print(lines);
}

void Test(const Request& request) {
  Progress progress;
  const ArchiveContents::Sums sums = ArchiveContents(request.archive, progress).CheckWhole();
  progress.Clear();
  std::string line = Shown(request.archive) + ": good, " +
                     Counted(sums.entries, "entry", "entries") + ", " +
                     Counted(sums.content_bytes, "byte", "bytes");
  if (sums.bytes_behind > 0) {
    line += " (and " + Counted(sums.bytes_behind, "byte", "bytes") + " behind the last entry)";
  }
  Print(line + "\n");
}

// The first entry of exactly this name; without one, the first that differs in
// the case of letters only.
void Cat(const Request& request) {
  Progress progress;
  const ArchiveContents contents(request.archive, progress);
  const std::string wanted = WithSlashes(request.entry);
  const std::string folded = FoldCase(wanted);
  ByteBuffer found;
  bool is_found = false;
  bool is_exact = false;
  contents.ForEach([&](const ContainerRecord& record) {
    const std::string name = WithSlashes(record.name);
    const bool exact = name == wanted;
    if (is_exact || (is_found && !exact) || FoldCase(name) != folded) return;
    found = ByteBuffer(record.content.Size());
    std::copy_n(record.content.Data(), record.content.Size(), found.Data());
    is_found = true;
    is_exact = exact;
  });
  if (!is_found) throw CommandFailure(request.archive, "holds no entry " + request.entry);
  progress.Clear();
  PrintBytes(found.View());
}

}  // namespace

void RunCommand(const Request& request) {
  switch (request.command) {
    case Command::kHelp:
      return Print(kHelpText);
    case Command::kVersion:
      return Print("tvz " TARNVALE_VERSION " (Tarnvale)\n");
    case Command::kCreate:
      return Create(request);
    case Command::kExtract:
      return Extract(request);
    case Command::kList:
      return List(request);
    case Command::kTest:
      return Test(request);
    case Command::kCat:
      return Cat(request);
  }
}

}  // namespace tarnvale
