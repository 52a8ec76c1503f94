// The text of a command to the FTP client.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/failure.h"
#include "platform/files.h"

namespace tarnvale {

enum class FtpVerb { kList, kUpload, kDownload, kClose };

/// What a command text requests.
struct FtpCommand {
  FtpVerb verb = FtpVerb::kList;
  Path local;          ///< of an upload and a download
  std::string remote;  ///< likewise
};

/// Reads DIR, PUT "local" "remote", GET "remote" "local" or CLOSE; the words in
/// any case, both names in double quotes with a blank between them. A double
/// quote may stand in a name, but not so that the text can be read in two ways.
/// None for any other text, and for a name that is empty or that holds a line
/// end or a zero byte: nothing of that may reach a server.
std::optional<FtpCommand> ParseFtpCommand(std::string_view text);

/// What the text of a host names.
struct FtpHost {
  std::string name;        ///< or an address, that of IPv6 without brackets
  std::uint16_t port = 0;  ///< 0: the protocol's own

  bool operator==(const FtpHost&) const = default;
};

/// Reads a name or an address, with a port behind a colon or without; blanks around them
/// don't count. An address of IPv6 that has a port is in brackets. None for what can't be
/// a host, whether there is such a host or not.
std::optional<FtpHost> ParseFtpHost(std::string_view text);

/// The number of TransferError for what the local file of a transfer raised.
std::int32_t TransferErrorOf(const ProgramError& error, FtpVerb verb);

}  // namespace tarnvale
