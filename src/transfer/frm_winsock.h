// The window that sends a mail and keeps the log of the conversation.
#pragma once

#include <memory>
#include <string>

#include "platform/controls.h"
#include "platform/machine.h"
#include "platform/socket.h"
#include "platform/window.h"
#include "settings/backup_settings.h"
#include "transfer/report_mail.h"

namespace tarnvale {

/// Sends one plain mail over a bare connection, shown or not. Nobody is told how
/// it went: what the server says is only logged.
///
/// One of it is loaded at a time (WindowSlot): closing it closes the connection
/// and unloads it. A conversation that waits goes on then, and reaches nobody.
class frmWinsock : public Window {
 public:
  /// All must outlive the window. `last_reply` is LastReply, which stays when the
  /// window is unloaded: the last chunk that any server sent, empty before the
  /// first. Required: nothing clears it.
  frmWinsock(Machine& machine, const BackupSettings& settings, const ReportMail& mail,
             std::string& last_reply);

  /// Asks for the connection to the server of the settings and returns. The rest
  /// runs from the loop: what the mail says is read when the connection stands.
  void StartSend();

  /// Waits, yielding once at least, until a server has ever said anything or the
  /// program ends. Required: there is no time-out.
  void WinsockReady();

  /// Waits, yielding, by the clock that starts anew at midnight, at most until the
  /// program ends. As the start is rounded, half a second lasts anything up to one,
  /// and what begins in a day's last half second never ends.
  void Pause(double seconds);

  /// Adds a line to the log.
  void Status(const std::string& text);

  /// Sends a line, and logs it.
  void SendData(const std::string& text);

 private:
  friend void LayOut(frmWinsock& window);

 public:
  // The window.
  TextBox txtData{TextKind::kMemo};  ///< The log.

  /// The connection.
  const std::unique_ptr<Socket> Winsock;

 private:
  void WireSocket();

  // The conversation, in the order in which it runs. Each yields.
  void SmtpConversation();
  void SendRecipients(std::string recipients);
  void SendMessage(const std::string& subject, const std::string& body);

  Machine& machine_;
  const BackupSettings& settings_;
  const ReportMail& mail_;
  std::string& last_reply_;
};

/// Gives the log its place.
void LayOut(frmWinsock& window);

}  // namespace tarnvale
