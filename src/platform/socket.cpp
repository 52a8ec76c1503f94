#include "platform/socket.h"

#include <algorithm>
#include <array>

namespace tarnvale {
namespace {

struct KnownError {
  int number;
  const char* text;
};

constexpr std::array kKnownErrors = {
    KnownError{kSocketAccessDenied, "Permission denied"},
    KnownError{kAddressNotAvailable, "Address is not available from the local machine"},
    KnownError{kNetworkDown, "The network subsystem failed"},
    KnownError{kNetworkUnreachable, "The network cannot be reached from this host at this time"},
    KnownError{kConnectionAborted, "Connection is aborted due to timeout or other failure"},
    KnownError{kConnectionReset, "The connection is reset by remote side"},
    KnownError{kNoBufferSpace, "No buffer space is available"},
    KnownError{kConnectTimedOut, "The attempt to connect timed out"},
    KnownError{kConnectionRefused, "Connection is forcefully rejected"},
    KnownError{kHostUnreachable, "No route to host"},
    KnownError{kHostNotFound, "Authoritative answer: Host not found"},
    KnownError{kHostNotFoundTryAgain, "Non-Authoritative answer: Host not found"},
    KnownError{kNameServerFailure, "Non-recoverable errors"},
    KnownError{kNoAddressForName, "Valid name, no data record of requested type"},
    KnownError{kWrongConnectionState,
               "Wrong protocol or connection state for the requested transaction or request"},
    KnownError{kSocketInUse, "Invalid operation at current state"},
};

}  // namespace

std::string SocketErrorText(int number) {
  const auto* known = std::find_if(kKnownErrors.begin(), kKnownErrors.end(),
                                   [&](const KnownError& e) { return e.number == number; });
  return known != kKnownErrors.end() ? known->text : SocketErrorText(kConnectionAborted);
}

}  // namespace tarnvale
