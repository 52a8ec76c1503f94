#include "transfer/frm_winsock.h"

#include <algorithm>
#include <utility>

#include "base/characters.h"
#include "base/numbers.h"
#include "base/text.h"

namespace tarnvale {
namespace {

// Required: no setting changes it.
constexpr std::uint16_t kPort = 25;

constexpr double kPauseBeforeData = 0.5;

constexpr const char* kLineEnd = "\r\n";

// Chosen: a server that never stops talking costs no more than this. Real ones say
// a few hundred bytes.
constexpr std::size_t kMostOfServer = 65536;
constexpr std::size_t kMostOfLog = 1 << 20;

/// What stays of a log that is too long: half of what it may hold, so that it isn't
/// cut at every line, from the start of a line where there is one. A log ends with
/// a line end.
std::string Latest(const std::string& log) {
  const std::size_t cut = WholeCharacters(log, log.size() - kMostOfLog / 2).size();
  const std::size_t line_end = log.find(kLineEnd, cut);
  return log.substr(line_end + 2 < log.size() ? line_end + 2 : cut);
}

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
  Closed.Listen([this] {
    Winsock->Close();
    was_closed_ = true;
  });
}

void frmWinsock::WireSocket() {
  Winsock->Connected.Listen([this] {
    room_for_server_ = kMostOfServer;
    SmtpConversation();
  });
  Winsock->DataArrived.Listen([this](const std::string& bytes) {
    LogServer(bytes);
    SendUnanswered();
  });
  // Required: this end stays open, and a conversation goes on.
  Winsock->ClosedByPeer.Listen([this] { Status("<CONNECTION CLOSED>"); });
  Winsock->Failed.Listen([this](int number) {
    Status("<WINSOCK ERROR> " + ToText(number) + ". " + SocketErrorText(number) + ".");
  });
}

void frmWinsock::LogServer(const std::string& bytes) {
  last_reply_ = WholeCharacters(bytes, kMostOfServer);
  const std::string_view logged = WholeCharacters(bytes, room_for_server_);
  room_for_server_ = logged.size() < bytes.size() ? 0 : room_for_server_ - logged.size();
  if (!logged.empty()) Status(std::string(logged));
}

void frmWinsock::StartSend() {
  Winsock->Connect(settings_.SmtpServer, kPort);
}

bool frmWinsock::IsOver() const {
  return was_closed_ || machine_.loop.IsEnding();
}

bool frmWinsock::WinsockReady() {
  machine_.loop.Yield();
  while (last_reply_.empty() && !IsOver()) machine_.loop.WaitPass();
  return !IsOver();
}

bool frmWinsock::Pause(double seconds) {
  const auto start = static_cast<double>(RoundHalfEven(machine_.clock.SecondsSinceMidnight()));
  // Required: one that spans midnight lasts until the next day's same time.
  while (machine_.clock.SecondsSinceMidnight() - start < seconds && !IsOver()) {
    machine_.loop.WaitPass();
  }
  return !IsOver();
}

void frmWinsock::Status(const std::string& text) {
  txtData.Append(text + kLineEnd);
  if (txtData.Text.Get().size() > kMostOfLog) txtData.Text = Latest(txtData.Text.Get());
}

void frmWinsock::SendData(const std::string& text) {
  Winsock->Send(text + kLineEnd);
  Status("> " + text);
}

void frmWinsock::SendCommand(const std::string& text) {
  SendData(OneLine(text));
}

// Required: what the server answers changes nothing, and as LastReply is never
// cleared, only the first wait of all can last.
// Chosen: that one is no wait within this handler. A run may be waiting around it, and
// a server that says nothing would hold it.
void frmWinsock::SmtpConversation() {
  Mail mail{settings_.ReportTo, mail_.Sender, mail_.Subject, mail_.Body};
  Status("<CONNECTED>");
  SendCommand("HELO x.x");
  if (last_reply_.empty()) {
    unanswered_.push_back(std::move(mail));
  } else {
    SendMail(mail);
  }
}

// The latest first, and the next when it has ended.
void frmWinsock::SendUnanswered() {
  const auto mails = std::exchange(unanswered_, {});
  for (auto mail = mails.rbegin(); mail != mails.rend(); ++mail) SendMail(*mail);
}

void frmWinsock::SendMail(const Mail& mail) {
  if (!WinsockReady()) return;
  SendCommand("MAIL FROM: " + mail.sender);
  if (!SendRecipients(mail.recipients)) return;
  if (!Pause(kPauseBeforeData)) return;
  if (!SendMessage(mail.subject, mail.body)) return;
  Winsock->Close();
  Status("<CONNECTION CLOSED>");
}

// Required: an empty text, and nothing between two commas, make a line too.
bool frmWinsock::SendRecipients(std::string recipients) {
  if (!recipients.ends_with(',')) recipients += ',';
  std::size_t comma = recipients.find(',');
  while (comma != std::string::npos) {
    if (!WinsockReady()) return false;
    SendCommand("RCPT TO: " + recipients.substr(0, comma));
    recipients.erase(0, comma + 1);
    comma = recipients.find(',');
  }
  return true;
}

// Required: no empty line behind the subject, and points aren't doubled.
bool frmWinsock::SendMessage(const std::string& subject, const std::string& body) {
  SendCommand("DATA");
  if (!WinsockReady()) return false;
  SendCommand("SUBJECT: " + subject);
  if (!WinsockReady()) return false;
  SendData(body);
  SendData("\r\n\r\n.");
  return WinsockReady();
}

}  // namespace tarnvale
