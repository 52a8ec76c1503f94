#include "core/engine_gate.h"

#include <array>
#include <string_view>

namespace tarnvale {
namespace {

struct StatusRule {
  std::string_view status;
  const char* engine_free;
};

// Compared exactly. The spelling of the texts is theirs.
constexpr std::array kStatusRules = {
    StatusRule{"Transferring File...", "0"},      StatusRule{"Finding Host IP Address", "0"},
    StatusRule{"File Transfer Complete", "0"},    StatusRule{"IP Address Found", "0"},
    StatusRule{"Connecting To Host", "0"},        StatusRule{"Connected To Sever", "0"},
    StatusRule{"Sending Request", "0"},           StatusRule{"Request Sent", "0"},
    StatusRule{"Receiving Response", "0"},        StatusRule{"Response Received", "0"},
    StatusRule{"Disconnecting From Server", "0"}, StatusRule{"File Transfer Canceled", "1"},
    StatusRule{"Not Connected To Server", "1"},   StatusRule{"File Transfer Failed!", "1"},
    StatusRule{"FTP Upload Idle", "1"},           StatusRule{"Action Completed", "1"},
};

}  // namespace

std::string EngineFreeAfterTick(int compression_progress, const std::string& connection_status) {
  if (compression_progress == 0 || compression_progress == 100) return "1";
  for (const StatusRule& rule : kStatusRules) {
    if (connection_status == rule.status) return rule.engine_free;
  }
  return "0";
}

}  // namespace tarnvale
