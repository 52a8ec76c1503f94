#include "transfer/frm_winsock.h"

#include "base/numbers.h"

namespace tarnvale {
namespace {

// Required: no setting changes it.
constexpr std::uint16_t kPort = 25;

constexpr double kPauseBeforeData = 0.5;

}  // namespace

frmWinsock::frmWinsock(Machine& machine, const BackupSettings& settings, const ReportMail& mail,
                       std::string& last_reply)
    : Winsock(machine.sockets.MakeSocket()),
      machine_(machine),
      settings_(settings),
      mail_(mail),
      last_reply_(last_reply) {
  LayOut(*this);
  txtData.Text.Changed().Listen([this] {
    txtData.Selection = TextSelection{txtData.Text.Get().size(), 0};
  });
  WireSocket();
  Closed.Listen([this] { Winsock->Close(); });
}

void frmWinsock::WireSocket() {
  Winsock->Connected.Listen([this] { SmtpConversation(); });
  Winsock->DataArrived.Listen([this](const std::string& bytes) {
    last_reply_ = bytes;
    Status(bytes);
  });
  // Required: this end stays open, and a conversation goes on.
  Winsock->ClosedByPeer.Listen([this] { Status("<CONNECTION CLOSED>"); });
  Winsock->Failed.Listen([this](int number) {
    Status("<WINSOCK ERROR> " + ToText(number) + ". " + SocketErrorText(number) + ".");
  });
}

void frmWinsock::StartSend() {
  Winsock->Connect(settings_.SmtpServer, kPort);
}

void frmWinsock::WinsockReady() {
  machine_.loop.Yield();
  while (last_reply_.empty() && !machine_.loop.IsEnding()) machine_.loop.WaitPass();
}

void frmWinsock::Pause(double seconds) {
  const auto start = static_cast<double>(RoundHalfEven(machine_.clock.SecondsSinceMidnight()));
  // Required: one that spans midnight lasts until the next day's same time.
  while (machine_.clock.SecondsSinceMidnight() - start < seconds && !machine_.loop.IsEnding()) {
    machine_.loop.WaitPass();
  }
}

void frmWinsock::Status(const std::string& text) {
  txtData.Append(text + "\r\n");
}

void frmWinsock::SendData(const std::string& text) {
  Winsock->Send(text + "\r\n");
  Status("> " + text);
}

// Required: what the server answers changes nothing, and as LastReply is never
// cleared, only the first wait of all can last.
void frmWinsock::SmtpConversation() {
  const std::string recipients = settings_.ReportTo;
  const std::string sender = mail_.Sender;
  const std::string subject = mail_.Subject;
  const std::string body = mail_.Body;
  Status("<CONNECTED>");
  SendData("HELO x.x");
  WinsockReady();
  SendData("MAIL FROM: " + sender);
  SendRecipients(recipients);
  Pause(kPauseBeforeData);
  SendMessage(subject, body);
  Winsock->Close();
  Status("<CONNECTION CLOSED>");
}

// Required: an empty text, and nothing between two commas, make a line too.
void frmWinsock::SendRecipients(std::string recipients) {
  if (!recipients.ends_with(',')) recipients += ',';
  std::size_t comma = recipients.find(',');
  while (comma != std::string::npos) {
    WinsockReady();
    SendData("RCPT TO: " + recipients.substr(0, comma));
    recipients.erase(0, comma + 1);
    comma = recipients.find(',');
  }
}

// Required: no empty line behind the subject, and points aren't doubled.
void frmWinsock::SendMessage(const std::string& subject, const std::string& body) {
  SendData("DATA");
  WinsockReady();
  SendData("SUBJECT: " + subject);
  WinsockReady();
  SendData(body);
  SendData("\r\n\r\n.");
  WinsockReady();
}

}  // namespace tarnvale
