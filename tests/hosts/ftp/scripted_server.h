// A server on the loopback that says what its script says.
#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "tests/support/threads.h"

namespace tarnvale::testing {

class ScriptedServer;

/// One connection of the client, as the server sees it. Every wait ends when
/// the client hangs up or the server goes.
class Talk {
 public:
  Talk(ScriptedServer& server, int socket);
  Talk(const Talk&) = delete;
  Talk& operator=(const Talk&) = delete;
  ~Talk();

  /// False when nobody is there any more.
  bool Say(const std::string& bytes) { return Send(socket_, bytes); }
  /// The next line without its end; empty when the client hung up. What is the
  /// same in every conversation is answered and not heard: no encryption (AUTH),
  /// the folder (PWD), the kind of data (TYPE).
  std::string Hear();
  /// The next line, whatever it is.
  std::string HearAny();
  /// Whoever says nothing for so long has hung up.
  void TakeSilenceForAnEnd(int silence_ms);
  /// Waits until the client hangs up.
  void Hang();
  /// Says the same again and again, at intervals, until the client hangs up.
  void SayForever(const std::string& bytes, int interval_ms);

  /// Greets, and answers USER and PASS.
  void LogIn();
  /// What leads to a port, in answer to EPSV or PASV.
  static std::string PassiveReply(const std::string& command, int port);
  /// Answers EPSV or PASV with the port of a data connection, and hears the command
  /// that follows.
  std::string EnterPassive();
  /// Answers EPSV with this text.
  std::string AnswerPassive(const std::string& reply);
  int DataPort();
  /// Before the client learns of the port: the system will take about so many bytes that the
  /// script hasn't received. Later it would throw away what it has given room for, and the
  /// client's would send that again after longer and longer pauses.
  void HoldAtMost(int bytes);
  /// Says this and takes the client's data connection.
  void AcceptData(const std::string& words = "150 here it comes");
  /// The port of a listener that answers nobody: neither yes nor no.
  int SilentDataPort();
  bool SendData(const std::string& bytes) { return Send(data_, bytes); }
  void SendDataForever(const std::string& bytes, int interval_ms);
  /// Reads data up to the client's end, or so many bytes.
  std::string ReceiveData(std::size_t most = std::string::npos);
  /// Takes one byte at each interval, until the client hangs up.
  void ReceiveDataByByte(int interval_ms);
  /// The client ended its data with a reset.
  bool DataWereReset() const { return data_reset_; }
  void CloseData();
  /// Resets the data connection.
  void BreakData();

 private:
  bool Send(int socket, const std::string& bytes);
  int Receive(int socket, char* bytes, std::size_t count);
  void SendForever(int socket, const std::string& bytes, int interval_ms);

  ScriptedServer& server_;
  int socket_;
  int data_listener_ = -1;
  std::vector<int> silent_;
  int data_ = -1;
  bool data_reset_ = false;
  bool silence_is_end_ = false;
  std::string heard_;
};

class ScriptedServer {
 public:
  using Script = std::function<void(Talk&)>;

  /// Runs the script once for each connection, one after the other.
  explicit ScriptedServer(Script script, int port = 0);
  ScriptedServer(const ScriptedServer&) = delete;
  ScriptedServer& operator=(const ScriptedServer&) = delete;
  ~ScriptedServer();

  int Port() const { return port_; }
  int Connections() const { return connections_; }
  /// All lines that were heard.
  std::vector<std::string> Heard();

 private:
  friend class Talk;
  void Serve();
  /// Sockets that are to be ended when the server goes.
  void Keep(int socket);
  void Drop(int socket, void (*close)(int));
  void Note(const std::string& line);

  Script script_;
  int listener_;
  int port_;
  std::atomic<bool> stopping_ = false;
  std::atomic<int> connections_ = 0;
  Mutex mutex_;
  std::set<int> sockets_;
  std::vector<std::string> heard_;
  Thread thread_;
};

}  // namespace tarnvale::testing
