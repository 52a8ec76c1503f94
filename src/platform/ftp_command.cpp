#include "platform/ftp_command.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "base/text.h"
#include "platform/ftp_transport.h"

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

constexpr std::string_view kBlanks = " \t\r\n";
constexpr char kNoHostsCharacters[] = " \t\r\n/\\@?#\"[]{}<>^`|*$!'=;,&()";
// With the zero byte at its end.
constexpr std::string_view kNotInHosts{kNoHostsCharacters, sizeof kNoHostsCharacters};

std::string_view WithoutBlanksAround(std::string_view text) {
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// Behind a colon; none behind it is the protocol's own.
bool ReadPort(std::string_view text, std::uint16_t& port) {
  if (text.empty()) return true;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, port);
  return error == std::errc() && stop == end;
}

}  // namespace

std::optional<FtpHost> ParseFtpHost(std::string_view text) {
  std::string_view name = WithoutBlanksAround(text);
  std::string_view port;
  if (name.starts_with('[')) {
    const auto end = name.find(']');
    if (end == std::string_view::npos) return std::nullopt;
    const std::string_view behind = name.substr(end + 1);
    if (!behind.empty() && behind.front() != ':') return std::nullopt;
    if (!behind.empty()) port = behind.substr(1);
    name = name.substr(1, end - 1);
    if (name.find(':') == std::string_view::npos) return std::nullopt;
  } else if (std::count(name.begin(), name.end(), ':') == 1) {
    const auto colon = name.find(':');
    port = name.substr(colon + 1);
    name = name.substr(0, colon);
  }
  if (name.empty() || name.find_first_of(kNotInHosts) != std::string_view::npos) {
    return std::nullopt;
  }
  FtpHost host{.name = std::string(name)};
  if (!ReadPort(port, host.port)) return std::nullopt;
  return host;
}

std::int32_t TransferErrorOf(const ProgramError& error, FtpVerb verb) {
  switch (error.Number()) {
    case kFileNotFound:
      return kTransferFileNotFound;
    case kPathNotFound:
      return kTransferPathNotFound;
    case kPermissionDenied:
    case kPathFileAccess:
      return kTransferAccessDenied;
    case kDiskFull:
      return kTransferDiskFull;
    default:
      return verb == FtpVerb::kUpload ? kTransferReadFault : kTransferWriteFault;
  }
}

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
