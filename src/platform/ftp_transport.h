// An FTP client with a command interface: a session is set up by properties,
// a command is started and ends on its own, and what happens on the wire is
// reported by numbered states.
#pragma once

#include <cstdint>
#include <string>

#include "base/signal.h"

namespace tarnvale {

/// The states that a transport reports, by their classic numbers.
enum class TransportState : std::int32_t {
  kResolvingHost = 1,
  kHostResolved = 2,
  kConnecting = 3,
  kConnected = 4,
  kRequesting = 5,
  kRequestSent = 6,
  kReceivingResponse = 7,
  kResponseReceived = 8,
  kDisconnecting = 9,
  kDisconnected = 10,
  kError = 11,
  kResponseCompleted = 12,
};

/// The classic numbers of what a request can end in.
enum TransportError : std::int32_t {
  kTransferNoError = 0,
  // The local file.
  kTransferFileNotFound = 2,
  kTransferPathNotFound = 3,
  kTransferAccessDenied = 5,
  kTransferWriteFault = 29,
  kTransferReadFault = 30,
  kTransferDiskFull = 112,
  // The session.
  kTransferTimeOut = 12002,
  kTransferRefusedByServer = 12003,
  kTransferNameNotResolved = 12007,
  kTransferWrongUserName = 12013,
  kTransferWrongPassword = 12014,
  kTransferCannotConnect = 12029,
  kTransferConnectionAborted = 12030,
};

enum class TransferProtocol : std::int32_t { kFtp = 2 };

/// The number that Execute raises while a command runs.
inline constexpr int kStillExecuting = 35764;
/// The number that Execute raises for a command that can't be started: no
/// host, or a text that is no host or no command.
inline constexpr int kMalformedCommand = 35752;

/// One client with one control connection. Everything happens on the thread of
/// the event loop, and only while it yields. On a machine without a client every
/// setting is taken, and Execute raises 5.
class FtpTransport {
 public:
  virtual ~FtpTransport() = default;

  /// The port stays the protocol's own. Raises 380 for any protocol but kFtp.
  virtual void SetProtocol(TransferProtocol protocol) = 0;
  /// A name or an address. A port may stand behind it after a colon; blanks
  /// around it don't count.
  virtual void SetRemoteHost(const std::string& host) = 0;
  /// Empty: "anonymous".
  virtual void SetUserName(const std::string& name) = 0;
  virtual void SetPassword(const std::string& password) = 0;
  /// In seconds, 0 for no limit. A limit on silence as well: a server that says
  /// nothing for so long ends the request as a time-out. Raises 380 below 0.
  virtual void SetRequestTimeout(std::int32_t seconds) = 0;

  /// Drops whatever request or connection is open, at once. Busy falls. Reports
  /// no state, and nothing of what was dropped is reported later.
  virtual void Cancel() = 0;

  /// Starts one of the commands and returns at once:
  ///   DIR                              lists the root folder of the login
  ///   PUT "local path" "remote name"   uploads
  ///   GET "remote name" "local path"   downloads, replacing the local file
  ///   CLOSE                            ends the session
  /// The words count in any case. Paths are the program's own (drive, colon,
  /// backslashes). The connection is made by the first command that needs one and
  /// is kept for the next ones.
  /// Raises kStillExecuting while a command runs, kMalformedCommand when there
  /// is no host, when its text can't be one (a blank within it, or one of
  /// / @ ? # "), or the text is no command. Every later failure comes as state
  /// kError with its ResponseCode, and nothing raises.
  virtual void Execute(const std::string& command) = 0;

  /// True while the last command runs.
  virtual bool IsBusy() const = 0;

  /// The number of the last error. Read it in state kError.
  virtual std::int32_t ResponseCode() const = 0;

  /// Emitted on the thread of the event loop, during yields. A handler may Cancel.
  Signal<TransportState> StateChanged;
};

}  // namespace tarnvale
