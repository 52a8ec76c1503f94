#include "tvz/arguments.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "native/command_failure.h"

namespace tarnvale {

const char* const kHelpText =
    "usage: tvz create ARCHIVE FOLDER\n"
    "       tvz extract ARCHIVE [-C FOLDER] [--allow-outside]\n"
    "       tvz list ARCHIVE\n"
    "       tvz test ARCHIVE\n"
    "       tvz cat ARCHIVE ENTRY\n"
    "\n"
    "Makes and reads the archives of Tarnvale.\n"
    "\n"
    "  create    packs the files below FOLDER; hidden ones are left out\n"
    "  extract   unpacks into FOLDER, or into the folder that you are in\n"
    "  list      prints name and size of each entry, with a tab in between\n"
    "  test      decodes everything and checks every length\n"
    "  cat       writes one entry to standard output\n"
    "\n"
    "  -C FOLDER        the folder to unpack into; it is made if it is missing\n"
    "  --allow-outside  follows names and links that lead out of that folder\n"
    "  -h, --help       prints this text\n"
    "  --version        prints the version\n"
    "\n"
    "Exit code: 0 good, 1 the archive is bad or a file can't be read or written,\n"
    "2 the command line is wrong.\n";

namespace {

struct CommandForm {
  std::string_view name;
  Command command;
  std::size_t operands;  // behind the command
};

constexpr std::array kForms{
    CommandForm{"create", Command::kCreate, 2}, CommandForm{"extract", Command::kExtract, 1},
    CommandForm{"list", Command::kList, 1},     CommandForm{"test", Command::kTest, 1},
    CommandForm{"cat", Command::kCat, 2},
};

// The command line taken apart, before it is interpreted.
struct Pieces {
  std::vector<std::string> operands;
  std::optional<std::string> folder;
  bool allow_outside = false;
  bool help = false;
  bool version = false;
};

Pieces TakeApart(const std::vector<std::string>& arguments) {
  Pieces pieces;
  bool options = true;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (!options || argument.size() < 2 || argument[0] != '-') {
      pieces.operands.push_back(argument);
    } else if (argument == "--") {
      options = false;
    } else if (argument == "--help" || argument == "-h") {
      pieces.help = true;
    } else if (argument == "--version") {
      pieces.version = true;
    } else if (argument == "--allow-outside") {
      pieces.allow_outside = true;
    } else if (argument.starts_with("-C")) {
      if (pieces.folder) throw UsageError("-C is given twice");
      if (argument == "-C" && i + 1 == arguments.size()) throw UsageError("-C needs a folder");
      pieces.folder = argument == "-C" ? arguments[++i] : argument.substr(2);
    } else {
      throw UsageError("unknown option \"" + argument + "\"; see tvz --help");
    }
  }
  return pieces;
}

}  // namespace

Request ParseArguments(const std::vector<std::string>& arguments) {
  const Pieces pieces = TakeApart(arguments);
  Request request;
  if (pieces.help) return request;
  if (pieces.version) {
    request.command = Command::kVersion;
    return request;
  }
  const std::vector<std::string>& operands = pieces.operands;
  if (operands.empty()) throw UsageError("a command is missing; see tvz --help");
  const auto* form = std::find_if(kForms.begin(), kForms.end(), [&](const CommandForm& known) {
    return known.name == operands[0];
  });
  if (form == kForms.end()) {
    throw UsageError("unknown command \"" + operands[0] + "\"; see tvz --help");
  }
  if (operands.size() != form->operands + 1) {
    throw UsageError(operands[0] + (operands.size() <= form->operands
                                        ? " needs more arguments; see tvz --help"
                                        : " has too many arguments; see tvz --help"));
  }
  const auto is_empty = [](const std::string& text) { return text.empty(); };
  if (std::any_of(operands.begin(), operands.end(), is_empty) || pieces.folder == "") {
    throw UsageError("an empty name names nothing");
  }
  request.command = form->command;
  if (request.command != Command::kExtract && (pieces.folder || pieces.allow_outside)) {
    throw UsageError("-C and --allow-outside go with extract only");
  }
  request.archive = operands[1];
  if (request.command == Command::kCreate) request.folder = operands[2];
  if (request.command == Command::kCat) request.entry = operands[2];
  if (pieces.folder) request.folder = *pieces.folder;
  request.allow_outside = pieces.allow_outside;
  return request;
}

}  // namespace tarnvale
