#include "tests/chain/mail_receiver.h"

#include <algorithm>

namespace tarnvale::testing {
namespace {

constexpr std::uint16_t kMailPort = 25;

std::string WithoutEmptyEnd(std::string text) {
  while (text.ends_with('\n')) text.pop_back();
  return text;
}

// A mailbox begins each mail by a line "From ", and its headers end at the first
// empty line.
std::string FromMailbox(const std::string& mailbox, const std::string& recipient) {
  std::size_t begin = mailbox.find("\nDelivered-To: " + recipient + "\n");
  if (begin == std::string::npos) return "";
  begin = mailbox.find("\n\n", begin + 1);
  if (begin == std::string::npos) return "";
  begin += 2;
  const std::size_t end = mailbox.find("\nFrom ", begin);
  return WithoutEmptyEnd(mailbox.substr(begin, end - begin));
}

std::string FromTalk(std::string talk, const std::string& recipient) {
  std::erase(talk, '\r');
  const std::string headers = "\nDATA\nSUBJECT: 0\n";
  const std::size_t begin = talk.find(headers);
  const std::size_t end = talk.find("\n.\n");
  if (begin == std::string::npos || end == std::string::npos) return "";
  if (talk.find("\nRCPT TO: " + recipient + "\n") > begin) return "";
  return WithoutEmptyEnd(talk.substr(begin + headers.size(), end - begin - headers.size()));
}

}  // namespace

MailReceiver::MailReceiver() {
  if (MailServer::Obstacle().empty()) {
    server_.emplace(kMailPort);
  } else {
    recorder_.emplace(kMailPort);
  }
}

bool MailReceiver::IsReady() const {
  return recorder_ || server_->Log().find("daemon started") != std::string::npos;
}

void MailReceiver::Serve() {
  if (!recorder_) return;
  // Every reply counts as the first one: the client waits for no other.
  if (recorder_->Accept()) recorder_->Say("220 ready\r\n");
  recorder_->Read();
}

std::string MailReceiver::TextFor(const std::string& recipient) const {
  return recorder_ ? FromTalk(recorder_->Received(), recipient)
                   : FromMailbox(server_->Mailbox(), recipient);
}

std::string MailReceiver::Everything() const {
  return recorder_ ? recorder_->Received() : server_->Mailbox() + server_->Log();
}

}  // namespace tarnvale::testing
