// The FTP client before a server that says any bytes.
#include <QCoreApplication>
#include <array>
#include <chrono>
#include <mutex>
#include <string>

#include "hosts/curl/curl_ftp_transport.h"
#include "hosts/linux/linux_host.h"
#include "hosts/qt/qt_event_loop.h"
#include "tests/fuzz/fuzz_script.h"
#include "tests/fuzz/fuzz_targets.h"
#include "tests/hosts/contract/native_files.h"
#include "tests/hosts/contract/temporary_folder.h"
#include "tests/hosts/ftp/scripted_server.h"

namespace tarnvale::testing {
namespace {

using std::chrono::seconds;

// What it answers follows the bytes: the first of each step says what, and how many of
// those behind it are said. Without any it hangs up, so that nobody waits.
class HostileFtpServer {
 public:
  explicit HostileFtpServer(std::span<const std::uint8_t> script) : script_(script) {}

  int Port() const { return server_.Port(); }
  /// What it sent last on a data connection.
  std::string LastData() {
    const std::lock_guard lock(mutex_);
    return last_data_;
  }

 private:
  void Serve(Talk& talk) {
    // Well below the client's limit.
    talk.TakeSilenceForAnEnd(50);
    if (script_.IsOver()) return;
    bool has_data = false;
    talk.Say(script_.Next() % 4 == 0 ? script_.Text() : "220 ready\r\n");
    for (std::string line = talk.HearAny(); !line.empty() && !script_.IsOver();
         line = talk.HearAny()) {
      const std::uint8_t what = script_.Next();
      if (what == 0) return;
      if (what % 4 == 0) {
        talk.Say(script_.Text());
      } else if (line.starts_with("EPSV")) {
        has_data = SayPort(talk, what);
      } else if (has_data && what % 4 != 1) {
        has_data = false;
        Transfer(talk, line, what);
      } else {
        talk.Say(Reply(line, what));
      }
    }
  }

  // Mostly what leads on.
  static std::string Reply(const std::string& line, std::uint8_t what) {
    static const std::array<const char*, 16> replies{
        "200 ok",   "220 ready", "230 in",  "331 more",      "150 now", "226 done",
        "421 bye",  "550 no",    "502 no",  "234 ok",        "257 \"/", "229 (|||)",
        "227 (1,2", "999 x",     "120 now", "230-a\r\n230 b"};
    const char* text = replies[what / 4 % replies.size()];
    if (what % 2 == 1) {
      text = line.starts_with("USER") ? "331 more" : line.starts_with("PASS") ? "230 in" : "200 ok";
      if (line.starts_with("AUTH")) text = "502 no";
      if (line.starts_with("PWD")) text = "257 \"/\"";
    }
    return std::string(text) + "\r\n";
  }

  static bool SayPort(Talk& talk, std::uint8_t what) {
    const int port = talk.DataPort();
    const bool ends = what % 8 != 1;
    return talk.Say("229 ok (|||" + std::to_string(port) + (ends ? "|)\r\n" : "|\r\n")) && ends;
  }

  void Transfer(Talk& talk, const std::string& line, std::uint8_t what) {
    talk.AcceptData();
    if (line.starts_with("STOR")) {
      talk.ReceiveData(what % 8 == 2 ? script_.Next() : std::string::npos);
    } else {
      const std::string data = script_.Text();
      {
        const std::lock_guard lock(mutex_);
        last_data_ = data;
      }
      talk.SendData(data);
    }
    what % 8 == 3 ? talk.BreakData() : talk.CloseData();
    talk.Say(Reply({}, script_.Next()));
  }

  FuzzScript script_;
  std::mutex mutex_;
  std::string last_data_;
  ScriptedServer server_{[this](Talk& talk) { Serve(talk); }};
};

// The program's loop and a drive with two files.
struct Client {
  Client() {
    std::filesystem::create_directories(data);
    WriteNative(data + "/up", std::string(1000, 'u'));
  }

  // Runs a command to its end and says whether it went well.
  bool Run(CurlFtpTransport& transport, const std::string& command) {
    int ends = 0;
    bool well = false;
    const Subscription reported = transport.StateChanged.Subscribe([&](TransportState state) {
      well = state == TransportState::kResponseCompleted;
      const bool failed = state == TransportState::kError;
      if (well || failed) ++ends;
      Require(failed == (transport.ResponseCode() != kTransferNoError) || !failed,
              "an error has no number");
    });
    const auto limit = std::chrono::steady_clock::now() + seconds(20);
    transport.Execute(command);
    while (transport.IsBusy()) {
      Require(std::chrono::steady_clock::now() < limit, "a command doesn't end");
      loop.WaitPass();
    }
    Require(ends == 1, "a command ended other than once");
    return well;
  }

  TemporaryFolder folder;
  std::string data = folder / "drive/Data";
  LinuxHost host{{.root = folder / "drive", .state_folder = folder / "state", .locale_name = "C"}};
  QtEventLoop loop;
};

}  // namespace

void FuzzFtpServer(std::span<const std::uint8_t> bytes) {
  static int count = 1;
  static std::array<char, 5> name{"fuzz"};
  static std::array<char*, 2> words{name.data(), nullptr};
  static const QCoreApplication application(count, words.data());
  static Client client;
  WriteNative(client.data + "/down", "old");
  const std::uint8_t command = bytes.empty() ? std::uint8_t{0} : bytes.front();
  HostileFtpServer server(bytes.subspan(bytes.empty() ? 0 : 1));
  CurlFtpTransport transport(client.loop, client.host.transfer_files,
                             {.listing = seconds(1), .span = seconds(1)});
  transport.SetProtocol(TransferProtocol::kFtp);
  transport.SetRemoteHost("127.0.0.1:" + std::to_string(server.Port()));
  transport.SetUserName("ann");
  transport.SetPassword("open sesame");
  transport.SetRequestTimeout(1);
  bool arrived = false;
  if (command % 3 == 0) client.Run(transport, "DIR");
  if (command % 3 == 1) client.Run(transport, R"(PUT "C:\Data\up" "up")");
  if (command % 3 == 2) arrived = client.Run(transport, R"(GET "down" "C:\Data\down")");
  Require(ReadNative(client.data + "/down") == (arrived ? server.LastData() : "old"),
          "a download is neither the new nor the old file");
  if (command % 2 == 0) client.Run(transport, "DIR");
  client.Run(transport, "CLOSE");
  Require(NativeNames(client.data).size() == 2, "something else was left in the folder");
}

}  // namespace tarnvale::testing
