// The text of a command to the FTP client.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/files.h"

namespace tarnvale {

enum class FtpVerb { kList, kUpload, kDownload, kClose };

/// What a command text asks for.
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

}  // namespace tarnvale
