#include "tests/support/fake_processes.h"

#include <algorithm>

#include "base/failure.h"
#include "base/text.h"

namespace tarnvale::testing {
namespace {

// The program at the front of a command line, quotes dropped.
std::string ProgramOf(const std::string& command_line) {
  std::string program;
  bool quoted = false;
  for (const char c :
       command_line.substr(std::min(command_line.find_first_not_of(" \t"), command_line.size()))) {
    if (c == '"') {
      quoted = !quoted;
    } else if (!quoted && (c == ' ' || c == '\t')) {
      break;
    } else {
      program += c;
    }
  }
  return program;
}

}  // namespace

bool FakeProcesses::Record(StartKind kind, const std::string& text, bool found) {
  const bool fails = failing_starts_ > 0;
  if (fails) --failing_starts_;
  (found && !fails ? started_ : refused_).push_back({kind, text});
  return found && !fails;
}

bool FakeProcesses::OpenWithDesktop(const Path& file) {
  return Record(StartKind::kOpenWithDesktop, file, files_.Find(file) != nullptr);
}

bool FakeProcesses::StartProgram(const Path& program) {
  return Record(StartKind::kProgram, program, files_.FileExists(program));
}

void FakeProcesses::StartMinimized(const std::string& command_line) {
  const std::string program = ProgramOf(command_line);
  if (program.empty()) throw ProgramError(kInvalidCall);
  const bool found = files_.FileExists(program) || known_commands.count(program) != 0;
  if (!Record(StartKind::kMinimized, command_line, found)) throw ProgramError(kFileNotFound);
}

std::optional<std::string> FakeProcesses::Variable(const std::string& name) {
  for (const auto& [known, value] : variables) {
    if (EqualIgnoringCase(known, name)) return value;
  }
  return std::nullopt;
}

}  // namespace tarnvale::testing
