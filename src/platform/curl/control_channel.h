// The control connection: commands go out, replies come in.
#pragma once

#include <optional>
#include <string>
#include <utility>

#include "platform/curl/connection.h"
#include "platform/curl/ftp_reply.h"

namespace tarnvale {

class ControlChannel {
 public:
  explicit ControlChannel(Connection socket) : socket_(std::move(socket)) {}

  const Connection& Line() const { return socket_; }

  /// Adds a command to what is to be sent. It must fit one line.
  void Queue(const std::string& command) { unsent_ += command + "\r\n"; }
  bool HasUnsent() const { return !unsent_.empty(); }
  /// Sends what the line takes. False when the connection is broken.
  bool Flush();

  /// Reads once what has come. False when the connection has ended.
  bool Read();
  FtpReplyReader& Replies() { return replies_; }

  /// True for a connection that rests and that the server has ended, or on
  /// which it speaks unasked.
  bool IsStale() const { return !replies_.IsEmpty() || socket_.HasUnasked(); }

 private:
  Connection socket_;
  std::string unsent_;
  FtpReplyReader replies_;
};

}  // namespace tarnvale
