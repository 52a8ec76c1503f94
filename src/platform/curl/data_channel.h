// The data connection of one transfer.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "platform/curl/connection.h"
#include "platform/socket_watch.h"
#include "platform/transfer_files.h"

namespace tarnvale {

class DataChannel {
 public:
  enum class Outcome {
    kGoesOn,
    kEnded,   ///< all is with the system to be sent, or the server has sent all
    kBroken,  ///< the connection broke, or the server sends without end
  };

  DataChannel() = default;
  DataChannel(const DataChannel&) = delete;
  DataChannel& operator=(const DataChannel&) = delete;
  virtual ~DataChannel() = default;

  /// Takes the connection that the transfer goes over.
  void Connect(Connection socket) { socket_ = std::move(socket); }
  const Connection& Line() const { return socket_; }

  /// What the transfer waits for.
  virtual SocketReadiness Wants() const = 0;

  /// Moves what can be moved without waiting, for some milliseconds at most.
  /// Raises what the local file raises.
  virtual Outcome Pump() = 0;

  /// Tells the server that this side has ended. To be called after kEnded, when
  /// nobody watches the connection any more.
  virtual void EndConnection() = 0;

  /// True when something moved since the last question. For a transfer whose
  /// data nobody reads a trickle doesn't count.
  virtual bool Moved() = 0;

  /// The server has confirmed the transfer. Raises what the local file raises.
  virtual void Commit() {}

  /// Closes so that the server doesn't take what it has for the whole.
  void Abort() { socket_.Abort(); }

 protected:
  Connection socket_;
};

std::unique_ptr<DataChannel> MakeUpload(std::unique_ptr<TransferSource> source);
std::unique_ptr<DataChannel> MakeDownload(std::unique_ptr<TransferTarget> target);
/// A listing, which nobody reads.
std::unique_ptr<DataChannel> MakeListing();

}  // namespace tarnvale
