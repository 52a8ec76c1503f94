// What needs a network of the test's own; see in-namespace.
#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "tests/hosts/ftp/ftp_stage.h"
#include "tests/hosts/ftp/scripted_server.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;

constexpr int kNameServerPort = 53;

// A name server that takes every question and answers none.
class SilentNameServer {
 public:
  SilentNameServer() : socket_(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(kNameServerPort);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(::bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  }
  SilentNameServer(const SilentNameServer&) = delete;
  SilentNameServer& operator=(const SilentNameServer&) = delete;
  ~SilentNameServer() { ::close(socket_); }

 private:
  int socket_;
};

class FtpInNamespace : public FtpStage {
 protected:
  template <class Action>
  static double SecondsOf(const Action& action) {
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  }
};

TEST_F(FtpInNamespace, ConnectsToThePortOfTheProtocol) {
  ScriptedServer server(
      [](Talk& talk) {
        talk.LogIn();
        talk.EnterPassive();
        talk.AcceptData();
        talk.CloseData();
        talk.Say("226 done\r\n");
        talk.Hang();
      },
      21);
  for (const char* name : {"127.0.0.1", "localhost"}) {
    Configure(name, "ann", "x");
    EXPECT_EQ(Run("DIR").code, kTransferNoError) << name;
  }
  EXPECT_EQ(server.Connections(), 2);
}

TEST_F(FtpInNamespace, ANameThatNobodyKnowsIsNotResolved) {
  Configure("ftp.example.org", "ann", "x");
  const FtpRun run = Run("DIR");
  EXPECT_THAT(run.states, ElementsAre(1, 11));
  EXPECT_EQ(run.code, kTransferNameNotResolved);
}

TEST_F(FtpInNamespace, ASilentNameServerIsATimeOutAndStopsNothing) {
  const SilentNameServer name_server;
  Configure("ftp.example.org", "ann", "x", 1);
  const FtpRun run = Run("DIR");
  EXPECT_THAT(run.states, ElementsAre(1, 11));
  EXPECT_EQ(run.code, kTransferTimeOut);
  EXPECT_LT(run.awake_seconds, 2.0);
  EXPECT_LT(WorstGap(), 0.5);
}

TEST_F(FtpInNamespace, LeavingASilentNameServerTakesNoTime) {
  const SilentNameServer name_server;
  Configure("ftp.example.org", "ann", "x", 40);
  transport->Execute("DIR");
  ASSERT_TRUE(WaitFor([&] { return reported.size() == 1; }));
  EXPECT_LT(SecondsOf([&] { transport->Cancel(); }), 0.5);
  transport->Execute("DIR");
  ASSERT_TRUE(WaitFor([&] { return reported.size() == 2; }));
  EXPECT_LT(SecondsOf([&] { transport.reset(); }), 0.5);
}

}  // namespace
}  // namespace tarnvale::testing
