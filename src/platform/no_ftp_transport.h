// For a machine that reaches no server.
#pragma once

#include <string>

#include "base/failure.h"
#include "platform/ftp_transport.h"

namespace tarnvale {

/// Takes every setting, and can start no command: Execute raises 5.
class NoFtpTransport final : public FtpTransport {
 public:
  void SetProtocol(TransferProtocol) override {}
  void SetRemoteHost(const std::string&) override {}
  void SetUserName(const std::string&) override {}
  void SetPassword(const std::string&) override {}
  void SetRequestTimeout(std::int32_t) override {}
  void Cancel() override {}
  void Execute(const std::string&) override { throw ProgramError(kInvalidCall); }
  bool IsBusy() const override { return false; }
  std::int32_t ResponseCode() const override { return kTransferNoError; }
};

}  // namespace tarnvale
