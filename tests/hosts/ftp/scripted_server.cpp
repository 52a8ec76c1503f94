#include "tests/hosts/ftp/scripted_server.h"

#include <algorithm>
#include <array>

#include "tests/hosts/contract/loopback.h"

namespace tarnvale::testing {
namespace {

constexpr int kLookMs = 100;

}  // namespace

Talk::Talk(ScriptedServer& server, int socket) : server_(server), socket_(socket) {
  server_.Keep(socket_);
  LimitReading(socket_, kLookMs);
}

// Not every system wakes a reader when its socket is ended.
int Talk::Receive(int socket, char* bytes, std::size_t count) {
  for (;;) {
    const int got = ReceiveFrom(socket, bytes, count);
    const bool is_silent = got < 0 && LastSocketError() == 0;
    if (!is_silent || silence_is_end_ || server_.stopping_) return got;
  }
}

Talk::~Talk() {
  CloseData();
  if (data_listener_ >= 0) server_.Drop(data_listener_, &CloseSocket);
  for (const int socket : silent_) CloseSocket(socket);
  server_.Drop(socket_, &CloseSocket);
}

bool Talk::Send(int socket, const std::string& bytes) {
  std::size_t sent = 0;
  while (sent < bytes.size()) {
    const int done = SendTo(socket, bytes.data() + sent, bytes.size() - sent);
    if (done <= 0) return false;
    sent += static_cast<std::size_t>(done);
  }
  return true;
}

std::string Talk::Hear() {
  for (;;) {
    std::string line = HearAny();
    if (line.starts_with("AUTH ")) {
      Say("502 no\r\n");
    } else if (line == "PWD") {
      Say("257 \"/\"\r\n");
    } else if (line.starts_with("TYPE ")) {
      Say("200 so be it\r\n");
    } else {
      if (!line.empty()) server_.Note(line);
      return line;
    }
  }
}

std::string Talk::HearAny() {
  while (heard_.find('\n') == std::string::npos) {
    std::array<char, 4096> bytes{};
    const int got = Receive(socket_, bytes.data(), bytes.size());
    if (got <= 0) return {};
    heard_.append(bytes.data(), static_cast<std::size_t>(got));
  }
  const auto end = heard_.find('\n');
  std::string line = heard_.substr(0, end);
  heard_.erase(0, end + 1);
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return line;
}

void Talk::TakeSilenceForAnEnd(int silence_ms) {
  silence_is_end_ = true;
  LimitReading(socket_, silence_ms);
}

void Talk::Hang() {
  while (!Hear().empty()) continue;
}

void Talk::SendForever(int socket, const std::string& bytes, int interval_ms) {
  while (Send(socket, bytes)) {
    if (HangsUpWithin(socket_, interval_ms)) return;
  }
}

void Talk::SayForever(const std::string& bytes, int interval_ms) {
  SendForever(socket_, bytes, interval_ms);
}

void Talk::SendDataForever(const std::string& bytes, int interval_ms) {
  SendForever(data_, bytes, interval_ms);
}

void Talk::LogIn() {
  Say("220 ready\r\n");
  Hear();
  Say("331 password\r\n");
  Hear();
  Say("230 in\r\n");
}

int Talk::DataPort() {
  if (data_listener_ < 0) {
    data_listener_ = ListenOnLoopback(0);
    server_.Keep(data_listener_);
  }
  return PortOf(data_listener_);
}

// A queue that is full takes no more knocks.
int Talk::SilentDataPort() {
  const int listener = ListenOnLoopback(0, 0);
  silent_.push_back(listener);
  for (int i = 0; i < 4; ++i) silent_.push_back(BeginToConnect(PortOf(listener)));
  return PortOf(listener);
}

std::string Talk::PassiveReply(const std::string& command, int port) {
  if (command == "EPSV") return "229 ok (|||" + std::to_string(port) + "|)\r\n";
  const std::string both = std::to_string(port / 256) + "," + std::to_string(port % 256);
  return "227 ok (127,0,0,1," + both + ")\r\n";
}

std::string Talk::EnterPassive() {
  Say(PassiveReply(Hear(), DataPort()));
  return Hear();
}

std::string Talk::AnswerPassive(const std::string& reply) {
  Hear();
  Say(reply);
  return Hear();
}

void Talk::HoldAtMost(int bytes) {
  DataPort();
  LimitReceived(data_listener_, bytes);
}

void Talk::AcceptData(const std::string& words) {
  CloseData();
  Say(words + "\r\n");
  data_ = AcceptOn(data_listener_);
  if (data_ < 0) return;
  server_.Keep(data_);
  LimitReading(data_, kLookMs);
}

std::string Talk::ReceiveData(std::size_t most) {
  std::string received;
  std::array<char, 65536> bytes{};
  while (received.size() < most) {
    const std::size_t wanted = std::min(bytes.size(), most - received.size());
    const int got = Receive(data_, bytes.data(), wanted);
    data_reset_ = got < 0;
    if (got <= 0) break;
    received.append(bytes.data(), static_cast<std::size_t>(got));
  }
  return received;
}

void Talk::ReceiveDataByByte(int interval_ms) {
  while (!ReceiveData(1).empty()) {
    if (HangsUpWithin(socket_, interval_ms)) return;
  }
}

void Talk::CloseData() {
  if (data_ >= 0) server_.Drop(data_, &CloseSocket);
  data_ = -1;
}

void Talk::BreakData() {
  if (data_ >= 0) server_.Drop(data_, &ResetSocket);
  data_ = -1;
}

ScriptedServer::ScriptedServer(Script script, int port)
    : script_(std::move(script)), listener_(ListenOnLoopback(port)), port_(PortOf(listener_)) {
  thread_ = Thread([this] { Serve(); });
}

ScriptedServer::~ScriptedServer() {
  stopping_ = true;
  // Wakes the one that accepts.
  const LoopbackSocket knock(BeginToConnect(port_));
  {
    const std::lock_guard lock(mutex_);
    for (const int socket : sockets_) EndSocket(socket);
  }
  thread_.join();
  CloseSocket(listener_);
}

std::vector<std::string> ScriptedServer::Heard() {
  const std::lock_guard lock(mutex_);
  return heard_;
}

void ScriptedServer::Serve() {
  while (!stopping_) {
    const int socket = AcceptOn(listener_);
    if (socket < 0) continue;
    if (stopping_) return CloseSocket(socket);
    ++connections_;
    Talk talk(*this, socket);
    script_(talk);
  }
}

void ScriptedServer::Keep(int socket) {
  const std::lock_guard lock(mutex_);
  sockets_.insert(socket);
  if (stopping_) EndSocket(socket);
}

void ScriptedServer::Drop(int socket, void (*close)(int)) {
  const std::lock_guard lock(mutex_);
  sockets_.erase(socket);
  close(socket);
}

void ScriptedServer::Note(const std::string& line) {
  const std::lock_guard lock(mutex_);
  heard_.push_back(line);
}

}  // namespace tarnvale::testing
