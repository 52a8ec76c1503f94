// The window that sends a mail and keeps the log of the conversation.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/report_mail.h"
#include "platform/socket.h"
#include "settings/backup_settings.h"
#include "ui/controls.h"
#include "ui/machine.h"
#include "ui/window.h"

namespace tarnvale {

/// Sends one plain mail over a bare connection, shown or not. Nothing reports how
/// it went: what the server says is only logged.
///
/// One of it is loaded at a time (WindowSlot): closing it closes the connection
/// and unloads it. A conversation then ends, as it does when the program ends: nothing
/// more of it is sent.
///
/// The log keeps the first 64 KiB that a server says on one connection and, of all,
/// the latest mebibyte at most.
class frmWinsock : public Window {
 public:
  /// All must outlive the window. `last_reply` is LastReply, which stays when the
  /// window is unloaded: the last chunk that any server sent, empty before the
  /// first. Required: nothing clears it.
  frmWinsock(Machine& machine, const BackupSettings& settings, const ReportMail& mail,
             std::string& last_reply);

  /// Begins to connect to the server of the settings and returns. The rest
  /// runs from the loop: the mail's contents are read once it is connected.
  void StartSend();

  /// Waits, yielding once at least, until a server has ever said anything. False
  /// when the program ends or the window was closed: the conversation is over.
  /// Required: there is no time-out.
  bool WinsockReady();

  /// Waits, yielding, by the clock that starts anew at midnight. False as with
  /// WinsockReady. As the start is rounded, half a second lasts anything up to one,
  /// and what begins in a day's last half second never ends.
  bool Pause(double seconds);

  /// Adds a line to the log.
  void Status(const std::string& text);

  /// Sends a text with a line end behind it, and logs it.
  void SendData(const std::string& text);

  // The window.
  TextBox txtData{TextKind::kMemo};  ///< The log.

  /// The connection.
  const std::unique_ptr<Socket> Winsock;

 private:
  friend void LayOut(frmWinsock& window);

  void WireSocket();
  void LogServer(const std::string& bytes);
  bool IsOver() const;
  /// Sends what is one line, whatever was pasted into its parts.
  void SendCommand(const std::string& text);

  struct Mail {
    std::string recipients;
    std::string sender;
    std::string subject;
    std::string body;
  };

  // The conversation, in the order in which it runs. From SendMail on each yields; false
  // when the conversation is over.
  void SmtpConversation();
  /// Goes on with what no server had said a word to, now that one has.
  void SendUnanswered();
  void SendMail(const Mail& mail);
  bool SendRecipients(std::string recipients);
  bool SendMessage(const std::string& subject, const std::string& body);

  Machine& machine_;
  const BackupSettings& settings_;
  const ReportMail& mail_;
  std::string& last_reply_;
  std::vector<Mail> unanswered_;     ///< the conversations before any server's first word
  std::size_t room_for_server_ = 0;  ///< of the connection, in the log
  bool was_closed_ = false;
};

/// Gives the log its place.
void LayOut(frmWinsock& window);

}  // namespace tarnvale
