#include "tvcheck/arguments.h"

#include <string_view>

#include "native/command_failure.h"

namespace tarnvale {

const char* const kHelpText =
    "usage: tvcheck [--settings FILE] [--mode MODE] [--contents]\n"
    "               [--archive[=FILE]] [--json]\n"
    "\n"
    "Compares what Tarnvale's list names with its copies, and changes nothing.\n"
    "\n"
    "  --settings FILE   the settings file; without it the one of the program that\n"
    "                    lies beside this command\n"
    "  --mode MODE       brenlow, fennick or tolvern instead of the file's mode;\n"
    "                    Tolvern Mode is in no file\n"
    "  --contents        compares bytes instead of sizes and times\n"
    "  --archive[=FILE]  compares with an archive instead of the storage location;\n"
    "                    without FILE the one of automatic compression; always by\n"
    "                    the bytes, as it holds no times\n"
    "  --json            prints JSON\n"
    "  -h, --help        prints this text\n"
    "  --version         prints the version\n"
    "\n"
    "Exit code: 0 all that the program copies is there and current, 1 it isn't, 2 the\n"
    "command line is wrong, or there is nothing to check or no way to.\n";

namespace {

Mode ModeOf(std::string_view name) {
  if (name == "brenlow") return Mode::kBrenlow;
  if (name == "fennick") return Mode::kFennick;
  if (name == "tolvern") return Mode::kTolvern;
  throw UsageError("no mode \"" + std::string(name) + "\"; see tvcheck --help");
}

}  // namespace

Request ParseArguments(const std::vector<std::string>& arguments) {
  Request request;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view argument = arguments[i];
    // The value of an option, behind "=" or as the next argument.
    const auto value_of = [&](std::string_view option) -> std::optional<std::string> {
      if (!argument.starts_with(option)) return std::nullopt;
      const std::string_view rest = argument.substr(option.size());
      std::string value;
      if (rest.empty() && i + 1 < arguments.size()) {
        value = arguments[++i];
      } else if (rest.starts_with("=")) {
        value = rest.substr(1);
      } else if (!rest.empty()) {
        return std::nullopt;
      }
      if (value.empty()) throw UsageError(std::string(option) + " needs a value");
      return value;
    };
    if (argument == "-h" || argument == "--help") {
      request.help = true;
    } else if (argument == "--version") {
      request.version = true;
    } else if (argument == "--contents") {
      request.contents = true;
    } else if (argument == "--json") {
      request.json = true;
    } else if (argument == "--archive") {
      request.archive = true;
    } else if (argument.starts_with("--archive=")) {
      request.archive = true;
      request.archive_file = *value_of("--archive");
    } else if (const auto file = value_of("--settings")) {
      request.settings = *file;
    } else if (const auto mode = value_of("--mode")) {
      request.mode = ModeOf(*mode);
    } else {
      throw UsageError("no option \"" + std::string(argument) + "\"; see tvcheck --help");
    }
  }
  return request;
}

}  // namespace tarnvale
