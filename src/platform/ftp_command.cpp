#include "platform/ftp_command.h"

#include <utility>

#include "base/text.h"

namespace tarnvale {
namespace {

constexpr std::string_view kBetweenNames = "\" \"";

struct TwoNames {
  std::string_view first;
  std::string_view second;
};

std::optional<TwoNames> ReadNames(std::string_view text) {
  if (text.size() < 2 || text.front() != '"' || text.back() != '"') return std::nullopt;
  const std::string_view names = text.substr(1, text.size() - 2);
  const auto between = names.find(kBetweenNames);
  if (between == std::string_view::npos) return std::nullopt;
  // Chosen: rather no transfer than one of the wrong file.
  if (names.find(kBetweenNames, between + 1) != std::string_view::npos) return std::nullopt;
  const TwoNames read{names.substr(0, between), names.substr(between + kBetweenNames.size())};
  if (read.first.empty() || read.second.empty()) return std::nullopt;
  if (!FitsOneLine(names)) return std::nullopt;
  return read;
}

}  // namespace

std::optional<FtpCommand> ParseFtpCommand(std::string_view text) {
  const auto blank = text.find(' ');
  const std::string verb = ToLower(text.substr(0, blank));
  if (blank == std::string_view::npos) {
    if (verb == "dir") return FtpCommand{FtpVerb::kList, {}, {}};
    if (verb == "close") return FtpCommand{FtpVerb::kClose, {}, {}};
    return std::nullopt;
  }
  if (verb != "put" && verb != "get") return std::nullopt;
  const auto names = ReadNames(text.substr(blank + 1));
  if (!names) return std::nullopt;
  if (verb == "put") {
    return FtpCommand{FtpVerb::kUpload, Path(names->first), std::string(names->second)};
  }
  return FtpCommand{FtpVerb::kDownload, Path(names->second), std::string(names->first)};
}

}  // namespace tarnvale
