#include "ui/loop_ftp_transport.h"

#include <gmock/gmock.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "base/failure.h"
#include "tests/support/manual_loop.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// What the sessions were asked to do, in order, and what the next ones shall do.
struct Script {
  std::vector<std::string> calls;
  bool is_alive = true;
  int close_error = 0;
};

class ScriptedSession final : public FtpSession {
 public:
  ScriptedSession(EventLoop& loop, Script& script, FtpLogin login, Listener listener)
      : FtpSession(std::move(login), std::move(listener)), loop_(loop), script_(script) {
    script_.calls.push_back("session " + login_.user + "/" + login_.password + "@" +
                            login_.host.name);
  }

  void Begin(FtpRequest request) override {
    script_.calls.push_back("begin " + request.remote + " " + std::to_string(request.silence_s) +
                            (request.source ? " source" : "") + (request.target ? " target" : ""));
  }
  void Report(TransportState state, std::int32_t code) override {
    loop_.Post([this, state, code, life = std::weak_ptr<int>(life_)] {
      if (!life.expired()) listener_(state, code);
    });
  }
  bool IsAlive() override {
    script_.calls.emplace_back("look");
    return script_.is_alive;
  }
  void CloseFile(bool whole) override {
    script_.calls.emplace_back(whole ? "name the file" : "close the file");
    if (script_.close_error != 0) throw ProgramError(script_.close_error);
  }
  void Drop() override {
    script_.calls.emplace_back("drop");
    life_.reset();
  }
  bool WaitForEnd(std::chrono::milliseconds most) override {
    if (most.count() > 0) script_.calls.push_back("wait " + std::to_string(most.count()));
    return false;
  }

 private:
  EventLoop& loop_;
  Script& script_;
  std::shared_ptr<int> life_ = std::make_shared<int>();
};

struct NoSource final : TransferSource {
  std::size_t Read(std::span<char>) override { return 0; }
};
struct NoTarget final : TransferTarget {
  void Write(std::span<const char>) override {}
  void Commit() override {}
};

struct ScriptedTransferFiles final : TransferFiles {
  std::unique_ptr<TransferSource> OpenSource(const Path&) override {
    if (error != 0) throw ProgramError(error);
    return std::make_unique<NoSource>();
  }
  std::unique_ptr<TransferTarget> OpenTarget(const Path&) override {
    if (error != 0) throw ProgramError(error);
    return std::make_unique<NoTarget>();
  }
  int error = 0;
};

class LoopFtpTransportTest : public ::testing::Test {
 protected:
  struct Transport final : LoopFtpTransport {
    Transport(LoopFtpTransportTest& test)
        : LoopFtpTransport(test.loop, test.files, [&test](FtpLogin login, auto listener) {
            auto begun = std::make_shared<ScriptedSession>(test.loop, test.script, std::move(login),
                                                           std::move(listener));
            test.session = begun;
            return begun;
          }) {}
  };

  LoopFtpTransportTest() {
    transport->SetRemoteHost("box");
    transport->SetUserName("ann");
    transport->SetPassword("secret");
    transport->StateChanged.Listen([this](TransportState state) {
      states.push_back(std::to_string(static_cast<int>(state)) + " " +
                       std::to_string(transport->ResponseCode()));
    });
  }

  void Pass() { loop.Advance(0ns); }
  /// What the session of the last command reports.
  void Report(TransportState state, std::int32_t code = kTransferNoError) {
    session.lock()->Report(state, code);
    Pass();
  }

  FakeClock clock;
  ManualLoop loop{clock};
  Script script;
  ScriptedTransferFiles files;
  std::weak_ptr<ScriptedSession> session;
  std::vector<std::string> states;
  std::unique_ptr<LoopFtpTransport> transport = std::make_unique<Transport>(*this);
};

TEST_F(LoopFtpTransportTest, GivesADownloadItsNameWhenTheServerHasConfirmedIt) {
  transport->SetRequestTimeout(60);
  transport->Execute("GET \"a\" \"C:\\a\"");
  EXPECT_TRUE(transport->IsBusy());
  Report(TransportState::kConnected);
  EXPECT_TRUE(transport->IsBusy());
  Report(TransportState::kResponseCompleted);
  EXPECT_FALSE(transport->IsBusy());
  EXPECT_THAT(states, ElementsAre("4 0", "12 0"));
  EXPECT_THAT(script.calls,
              ElementsAre("session ann/secret@box", "begin a 60 target", "name the file"));
}

TEST_F(LoopFtpTransportTest, AnUploadThatFailsHasClosedItsFile) {
  transport->Execute("PUT \"C:\\a\" \"a\"");
  Report(TransportState::kError, kTransferRefusedByServer);
  EXPECT_FALSE(transport->IsBusy());
  EXPECT_THAT(states, ElementsAre("11 12003"));
  EXPECT_THAT(script.calls,
              ElementsAre("session ann/secret@box", "begin a 0 source", "close the file"));
}

TEST_F(LoopFtpTransportTest, ADownloadThatCannotBeNamedHasFailed) {
  transport->Execute("GET \"a\" \"C:\\a\"");
  script.close_error = kDiskFull;
  Report(TransportState::kResponseCompleted);
  EXPECT_FALSE(transport->IsBusy());
  EXPECT_THAT(states, ElementsAre("11 112"));
}

TEST_F(LoopFtpTransportTest, ALocalFileThatCannotBeOpenedStartsNothing) {
  files.error = kFileNotFound;
  transport->Execute("PUT \"C:\\a\" \"a\"");
  Pass();
  files.error = kPathNotFound;
  transport->Execute("GET \"a\" \"C:\\a\"");
  EXPECT_THAT(states, ElementsAre("11 2")) << "reported from the loop";
  Pass();
  EXPECT_THAT(states, ElementsAre("11 2", "11 3"));
  EXPECT_THAT(script.calls,
              ElementsAre("session ann/secret@box", "close the file", "close the file"));
  loop.Advance(1s);
  EXPECT_EQ(script.calls.size(), 3U) << "nothing runs that is to be looked at";
}

TEST_F(LoopFtpTransportTest, ALoginOfTwoLinesStartsNothing) {
  transport->SetUserName("ann\r\nDELE a");
  transport->Execute("DIR");
  Pass();
  transport->SetUserName("ann");
  transport->SetPassword("secret\n");
  transport->Execute("DIR");
  Pass();
  EXPECT_THAT(states, ElementsAre("11 12013", "11 12014"));
  EXPECT_THAT(script.calls, Not(::testing::Contains(::testing::StartsWith("begin"))));
}

TEST_F(LoopFtpTransportTest, KeepsItsSessionAsLongAsTheLoginStays) {
  transport->Execute("DIR");
  Report(TransportState::kResponseCompleted);
  transport->Execute("DIR");
  Report(TransportState::kResponseCompleted);
  transport->SetUserName("");
  transport->Execute("DIR");
  Report(TransportState::kResponseCompleted);
  transport->SetPassword("");
  transport->Execute("DIR");
  EXPECT_THAT(script.calls,
              ElementsAre("session ann/secret@box", "begin  0", "name the file", "begin  0",
                          "name the file", "drop", "session anonymous/secret@box", "begin  0",
                          "name the file", "drop", "session anonymous/anonymous@@box", "begin  0"));
}

TEST_F(LoopFtpTransportTest, AnErrorIsForgottenWhenTheNextCommandStarts) {
  transport->Execute("DIR");
  Report(TransportState::kError, kTransferRefusedByServer);
  EXPECT_EQ(transport->ResponseCode(), kTransferRefusedByServer);
  transport->Execute("DIR");
  EXPECT_EQ(transport->ResponseCode(), kTransferNoError);
}

TEST_F(LoopFtpTransportTest, ClosingAndALostConnectionEndTheSession) {
  transport->Execute("DIR");
  Report(TransportState::kError, kTransferConnectionAborted);
  EXPECT_THAT(script.calls,
              ElementsAre("session ann/secret@box", "begin  0", "close the file", "drop"));
  transport->Execute("CLOSE");
  script.calls.clear();
  Report(TransportState::kResponseCompleted);
  EXPECT_THAT(script.calls, ElementsAre("name the file", "drop"));
}

TEST_F(LoopFtpTransportTest, LooksTenTimesASecondWhetherTheServerIsWorthWaitingFor) {
  transport->Execute("DIR");
  loop.Advance(250ms);
  EXPECT_THAT(script.calls, ElementsAre("session ann/secret@box", "begin  0", "look", "look"));
  Report(TransportState::kResponseCompleted);
  script.calls.clear();
  loop.Advance(1s);
  EXPECT_THAT(script.calls, IsEmpty());
}

TEST_F(LoopFtpTransportTest, AServerThatIsNotWorthWaitingForIsATimeOutAndTheNextSessionIsNew) {
  transport->Execute("DIR");
  script.is_alive = false;
  loop.Advance(150ms);
  Pass();
  EXPECT_FALSE(transport->IsBusy());
  EXPECT_THAT(states, ElementsAre("11 12002"));
  EXPECT_THAT(script.calls, ElementsAre("session ann/secret@box", "begin  0", "look", "drop",
                                        "session ann/secret@box", "close the file"));
}

TEST_F(LoopFtpTransportTest, ACancelReportsNothingAnyMore) {
  transport->Execute("DIR");
  session.lock()->Report(TransportState::kConnected, kTransferNoError);
  transport->Cancel();
  EXPECT_FALSE(transport->IsBusy());
  loop.Advance(1s);
  EXPECT_THAT(states, IsEmpty());
  EXPECT_THAT(script.calls, ElementsAre("session ann/secret@box", "begin  0", "drop"));
}

TEST_F(LoopFtpTransportTest, RaisesForWhatCannotBeStarted) {
  EXPECT_EQ(RaisedBy([&] { transport->Execute("RETR a"); }), kMalformedCommand);
  transport->Execute("DIR");
  EXPECT_EQ(RaisedBy([&] { transport->Execute("DIR"); }), kStillExecuting);
  transport->Cancel();
  transport->SetRemoteHost("");
  EXPECT_EQ(RaisedBy([&] { transport->Execute("DIR"); }), kMalformedCommand);
  EXPECT_EQ(RaisedBy([&] { transport->SetRequestTimeout(-1); }), kInvalidPropertyValue);
  transport->SetProtocol(TransferProtocol::kFtp);
  EXPECT_EQ(RaisedBy([&] { transport->SetProtocol(TransferProtocol{1}); }), kInvalidPropertyValue);
}

TEST_F(LoopFtpTransportTest, TheProgramsEndWaitsAMomentForAllSessionsTogether) {
  for (int i = 0; i < 3; ++i) {
    transport->Execute("DIR");
    transport->Cancel();
  }
  script.calls.clear();
  transport.reset();
  EXPECT_THAT(script.calls, ElementsAre("wait 100", "wait 100", "wait 100"));
}

}  // namespace
}  // namespace tarnvale::testing
