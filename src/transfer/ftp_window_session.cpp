// The session with the server: how one is set up, how a command is waited for,
// and what the transport reports of it.
#include "transfer/ftp_window.h"

namespace tarnvale {
namespace {

constexpr int kTimeoutSeconds = 40;

// None for a state that changes nothing.
const char* StatusOf(TransportState state) {
  switch (state) {
    case TransportState::kResolvingHost:
      return "Finding Host IP Address";
    case TransportState::kHostResolved:
      return "IP Address Found";
    case TransportState::kConnecting:
      return "Connecting To Server";
    case TransportState::kConnected:
      return "Connected To Server";
    case TransportState::kRequesting:
      return "Sending Request";
    case TransportState::kRequestSent:
      return "Request Sent";
    case TransportState::kReceivingResponse:
      return "Receiving Response";
    case TransportState::kResponseReceived:
      return "Please Wait...";
    case TransportState::kDisconnecting:
      return "Disconnecting From Server";
    case TransportState::kDisconnected:
      return "Action Completed";
    default:
      return nullptr;
  }
}

}  // namespace

// Required: the order. The cancel drops the connection of an earlier session.
void Main::ConfigureTransport() {
  Inet1.SetProtocol(TransferProtocol::kFtp);
  Inet1.SetRemoteHost(txtServer.Text);
  Inet1.SetUserName(txtUserID.Text);
  Inet1.Cancel();
  Inet1.SetPassword(txtPassword.Text);
  Inet1.SetRequestTimeout(kTimeoutSeconds);
}

// Chosen: both waits yield by wait passes, which sleep until something happens,
// so that waiting for a server doesn't keep a processor busy.
void Main::Pause(int yields) {
  for (int i = 0; i < yields; ++i) machine_.loop.WaitPass();
}

// Required: two forms of the wait, which differ in their yields. Only the
// transport's own time limit ends either, and the end of the program: false then,
// and the flow goes no further.
bool Main::WaitForTransport() {
  while (Inet1.IsBusy() && !machine_.loop.IsEnding()) Pause(3);
  return !machine_.loop.IsEnding();
}

bool Main::WaitUntilIdle() {
  while (Inet1.IsBusy() && !machine_.loop.IsEnding()) Pause(4);
  return !machine_.loop.IsEnding();
}

void Main::ShowState(TransportState state) {
  if (state == TransportState::kError) {
    ShowError();
  } else if (const char* status = StatusOf(state)) {
    ConnectionStatus = status;
  }
}

// Required: every other error is passed over, a refused login included. The flow
// goes on when the transport isn't busy any more.
void Main::ShowError() {
  if (Inet1.ResponseCode() != kTransferConnectionAborted) return;
  ConnectionStatus = "Not Connected : Server Error";
  Inet1.Cancel();
}

}  // namespace tarnvale
