// One session with an FTP server, as hosts have it.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "platform/ftp_command.h"
#include "platform/ftp_transport.h"
#include "platform/transfer_files.h"

namespace tarnvale {

struct FtpLogin {
  FtpHost host;
  std::string user;
  std::string password;

  bool operator==(const FtpLogin&) const = default;
};

struct FtpRequest {
  FtpVerb verb = FtpVerb::kList;
  std::string remote = {};                      ///< of an upload and a download
  std::shared_ptr<TransferSource> source = {};  ///< of an upload
  std::shared_ptr<TransferTarget> target = {};  ///< of a download
  std::int32_t silence_s = 0;                   ///< longest silence; 0: no limit
};

/// Its functions are for the thread of the event loop. None waits for the server.
class FtpSession {
 public:
  using Listener = std::function<void(TransportState, std::int32_t code)>;

  virtual ~FtpSession() = default;
  FtpSession(const FtpSession&) = delete;
  FtpSession& operator=(const FtpSession&) = delete;

  const FtpLogin& Login() const { return login_; }

  /// Starts a request. None may be running.
  virtual void Begin(FtpRequest request) = 0;
  /// Reports this to the listener, later.
  virtual void Report(TransportState state, std::int32_t code = kTransferNoError) = 0;
  /// False when the server of the running request isn't worth waiting for any
  /// more. To be called now and then.
  virtual bool IsAlive() = 0;
  /// Closes the local file of a request that ended; `whole` gives a download its
  /// name first. Raises what the file raises.
  virtual void CloseFile(bool whole) = 0;
  /// Ends everything; nothing is reported any more. The local file is closed, unless a thread
  /// is held up by it and closes it then.
  virtual void Drop() = 0;
  /// Waits until no thread of a dropped session runs any more. False when one still does.
  virtual bool WaitForEnd(std::chrono::milliseconds most) = 0;

 protected:
  /// `listener` is called from the loop until the session is dropped, which must be before
  /// the loop goes. kError and kResponseCompleted end a request, kTransferConnectionAborted
  /// the session with it.
  FtpSession(FtpLogin login, Listener listener)
      : login_(std::move(login)), listener_(std::move(listener)) {}

  const FtpLogin login_;
  const Listener listener_;
};

}  // namespace tarnvale
