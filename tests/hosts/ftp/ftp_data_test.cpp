// Transfers that go wrong or slowly in the middle of their data.
#include <gmock/gmock.h>

#include <atomic>
#include <filesystem>
#include <thread>

#include "tests/hosts/ftp/ftp_stage.h"
#include "tests/hosts/ftp/scripted_server.h"

namespace tarnvale::testing {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAre;

// A transfer up to its data.
void BeginTransfer(Talk& talk) {
  talk.LogIn();
  talk.EnterPassive();
  talk.AcceptData();
}

/// Files on a medium that has stopped answering.
class HangingFiles final : public TransferFiles {
 public:
  ~HangingFiles() override { GoOn(); }

  std::unique_ptr<TransferSource> OpenSource(const Path&) override {
    return std::make_unique<File>(state_);
  }
  std::unique_ptr<TransferTarget> OpenTarget(const Path&) override {
    return std::make_unique<File>(state_);
  }

  bool IsReached() const { return state_->reached; }
  bool IsClosed() const { return state_->closed; }
  void GoOn() { state_->goes_on = true; }

 private:
  struct State {
    std::atomic<bool> reached = false;
    std::atomic<bool> goes_on = false;
    std::atomic<bool> closed = false;
  };

  class File final : public TransferSource, public TransferTarget {
   public:
    explicit File(std::shared_ptr<State> state) : state_(std::move(state)) {}
    ~File() override { state_->closed = true; }

    std::size_t Read(std::span<char>) override {
      Hang();
      return 0;
    }
    void Write(std::span<const char>) override { Hang(); }
    void Commit() override { ADD_FAILURE() << "of a file that isn't whole"; }

   private:
    // Not for ever, so that whoever waits for it fails and doesn't hang too.
    void Hang() {
      state_->reached = true;
      for (int i = 0; i < 500 && !state_->goes_on; ++i) {
        std::this_thread::sleep_for(milliseconds(10));
      }
    }

    std::shared_ptr<State> state_;
  };

  std::shared_ptr<State> state_ = std::make_shared<State>();
};

// Of a transfer that goes on, between whose bytes a busy machine may put a second.
constexpr int kSlowLimitSeconds = 2;

class FtpData : public FtpStage {
 protected:
  FtpRun RunAgainst(const ScriptedServer::Script& script, const std::string& command,
                    int limit_s = 10) {
    server = std::make_unique<ScriptedServer>(script);
    Configure(server->Port(), limit_s);
    return Run(command);
  }

  /// The server begins a transfer, plays `data`, says its last words and is silent.
  FtpRun RunFromData(const std::string& command, const ScriptedServer::Script& data,
                     const std::string& last_words = {}, int limit_s = 10) {
    return RunAgainst(
        [data, last_words](Talk& talk) {
          BeginTransfer(talk);
          data(talk);
          talk.Say(last_words);
          talk.Hang();
        },
        command, limit_s);
  }

  /// A local file that is there before a download.
  void ExpectUntouched() {
    EXPECT_EQ(ReadNative(Native("a")), "was here");
    EXPECT_THAT(NativeNames(OnDrive("Data")), ElementsAre("a"));
  }

  std::unique_ptr<ScriptedServer> server;
};

TEST_F(FtpData, ADownloadThatStallsIsATimeOutAndDestroysNothing) {
  WriteNative(Native("a"), "was here");
  const FtpRun run = RunFromData(
      kGet, [](Talk& talk) { talk.SendData(std::string(100000, 'x')); }, {}, kLimitSeconds);
  EXPECT_EQ(run.code, kTransferTimeOut);
  EXPECT_LT(run.awake_seconds, kLimitSeconds + 1.0);
  ExpectUntouched();
}

TEST_F(FtpData, ASlowDownloadThatGoesOnIsNotEnded) {
  SKIP_ON_WININET("hands on 16 KiB at once");
  const FtpRun run = RunFromData(
      kGet,
      [](Talk& talk) {
        for (int i = 0; i < 10; ++i) {
          talk.SendData("x");
          std::this_thread::sleep_for(milliseconds(450));
        }
        talk.CloseData();
      },
      "226 done\r\n", kSlowLimitSeconds);
  EXPECT_EQ(run.code, kTransferNoError);
  EXPECT_GT(run.seconds, 2.0 * kSlowLimitSeconds);
  EXPECT_EQ(ReadNative(Native("a")), "xxxxxxxxxx");
}

// All of the file is with the system long before the server has it.
TEST_F(FtpData, ASlowUploadThatGoesOnIsNotEnded) {
  const std::string content(240000, 'x');
  WriteNative(Native("a"), content);
  std::atomic<std::size_t> received = 0;
  const FtpRun run = RunAgainst(
      [&received](Talk& talk) {
        talk.LogIn();
        talk.HoldAtMost(4096);
        talk.EnterPassive();
        talk.AcceptData();
        for (std::string part = "x"; !part.empty(); received += part.size()) {
          part = talk.ReceiveData(1500);
          std::this_thread::sleep_for(milliseconds(20));
        }
        talk.CloseData();
        talk.Say("226 done\r\n");
        talk.Hang();
      },
      kPut, kSlowLimitSeconds);
  EXPECT_EQ(run.code, kTransferNoError);
  EXPECT_GT(run.seconds, 1.5 * kSlowLimitSeconds);
  EXPECT_GE(received, content.size());
}

TEST_F(FtpData, AnUploadThatNobodyReadsIsATimeOut) {
  WriteNative(Native("a"), Megabytes(20));
  const FtpRun run = RunFromData(
      kPut, [](Talk&) {}, {}, kLimitSeconds);
  EXPECT_EQ(run.code, kTransferTimeOut);
  EXPECT_LT(run.awake_seconds, kLimitSeconds + 1.0);
}

TEST_F(FtpData, AnUploadWhoseDataTheServerBreaksOffIsAnAbortedConnection) {
  WriteNative(Native("a"), Megabytes(20));
  const FtpRun run = RunFromData(
      kPut,
      [](Talk& talk) {
        talk.ReceiveData(1000);
        talk.BreakData();
      },
      "552 full\r\n");
  EXPECT_EQ(run.code, kTransferConnectionAborted);
}

TEST_F(FtpData, AnUploadThatTheServerRefusesAtItsEndIsRefused) {
  WriteNative(Native("a"), "content");
  const FtpRun run = RunFromData(
      kPut, [](Talk& talk) { talk.ReceiveData(); }, "552 full\r\n");
  EXPECT_EQ(run.code, kTransferRefusedByServer);
}

TEST_F(FtpData, AnUploadThatIsConfirmedTooEarlyHasFailed) {
  WriteNative(Native("a"), Megabytes(20));
  const FtpRun run = RunFromData(
      kPut, [](Talk& talk) { talk.ReceiveData(1000); }, "226 done\r\n", kLimitSeconds);
  EXPECT_EQ(run.code, kTransferTimeOut);
}

TEST_F(FtpData, AnUploadWhoseDataBrokeHasFailedWhateverTheServerSays) {
  WriteNative(Native("a"), Megabytes(20));
  const FtpRun run = RunFromData(
      kPut,
      [](Talk& talk) {
        talk.ReceiveData(1000);
        talk.BreakData();
        std::this_thread::sleep_for(milliseconds(200));
      },
      "226 done\r\n");
  EXPECT_EQ(run.code, kTransferConnectionAborted);
}

TEST_F(FtpData, ACancelledUploadDoesntLookWholeToTheServer) {
  SKIP_ON_WININET("ends what it sends as if it were whole");
  WriteNative(Native("a"), Megabytes(20));
  std::atomic<bool> begun = false;
  std::atomic<bool> reset = false;
  std::atomic<bool> ended = false;
  server = std::make_unique<ScriptedServer>([&](Talk& talk) {
    BeginTransfer(talk);
    talk.ReceiveData(1000);
    begun = true;
    talk.Hang();
    talk.ReceiveData();
    reset = talk.DataWereReset();
    ended = true;
  });
  Configure(server->Port(), 40);
  transport->Execute(kPut);
  ASSERT_TRUE(WaitFor([&] { return begun.load(); }));
  transport->Cancel();
  ASSERT_TRUE(WaitFor([&] { return ended.load(); }));
  EXPECT_TRUE(reset);
}

TEST_F(FtpData, ADownloadWhoseDataBrokeHasFailedWhateverTheServerSays) {
  WriteNative(Native("a"), "was here");
  const FtpRun run = RunFromData(
      kGet,
      [](Talk& talk) {
        talk.SendData("half");
        std::this_thread::sleep_for(milliseconds(100));
        talk.BreakData();
      },
      "226 done\r\n");
  EXPECT_EQ(run.code, kTransferConnectionAborted);
  ExpectUntouched();
}

TEST_F(FtpData, ADownloadThatTheServerBreaksOffWithAWordDestroysNothing) {
  WriteNative(Native("a"), "was here");
  const FtpRun run = RunFromData(
      kGet,
      [](Talk& talk) {
        talk.SendData("half");
        talk.CloseData();
      },
      "426 broken\r\n");
  EXPECT_EQ(run.code, kTransferRefusedByServer);
  ExpectUntouched();
}

TEST_F(FtpData, ADownloadConfirmedBeforeItsEndIsReadToTheEnd) {
  const FtpRun run = RunAgainst(
      [](Talk& talk) {
        BeginTransfer(talk);
        talk.SendData("first ");
        talk.Say("226 done\r\n");
        std::this_thread::sleep_for(milliseconds(100));
        talk.SendData("last");
      },
      kGet);
  EXPECT_EQ(run.code, kTransferNoError);
  EXPECT_EQ(ReadNative(Native("a")), "first last");
}

TEST_F(FtpData, ASizeThatTheServerMadeUpChangesNothing) {
  const FtpRun run = RunAgainst(
      [](Talk& talk) {
        talk.LogIn();
        talk.EnterPassive();
        talk.AcceptData("150 opening for a (9999999 bytes)");
        talk.SendData("short");
        talk.CloseData();
        talk.Say("226 done\r\n");
        talk.Hang();
      },
      kGet);
  EXPECT_EQ(run.code, kTransferNoError);
  EXPECT_EQ(ReadNative(Native("a")), "short");
}

class FtpHangingFiles : public FtpData, public ::testing::WithParamInterface<const char*> {
 protected:
  FtpHangingFiles() {
    transport = std::make_unique<FtpTransportUnderTest>(loop, files);
    transport->StateChanged.Listen(
        [this](TransportState state) { reported.push_back(static_cast<int>(state)); });
    server = std::make_unique<ScriptedServer>(
        [](Talk& talk) { BeginTransfer(talk), talk.SendData("some"), talk.Hang(); });
  }
  ~FtpHangingFiles() override { transport.reset(); }

  HangingFiles files;
};

TEST_P(FtpHangingFiles, HoldTheTransferAndNothingElse) {
  Configure(server->Port(), kLimitSeconds);
  EXPECT_EQ(Run(GetParam()).code, kTransferTimeOut);
  EXPECT_TRUE(files.IsReached());
  EXPECT_FALSE(files.IsClosed());
  EXPECT_LT(WorstGap(), 1.0);
  files.GoOn();
  EXPECT_TRUE(WaitFor([this] { return files.IsClosed(); }));
}

TEST_P(FtpHangingFiles, AreLeftToThemselvesByACancel) {
  Configure(server->Port(), 40);
  transport->Execute(GetParam());
  ASSERT_TRUE(WaitFor([this] { return files.IsReached(); }));
  transport->Cancel();
  EXPECT_FALSE(transport->IsBusy());
  EXPECT_FALSE(files.IsClosed());
  files.GoOn();
  EXPECT_TRUE(WaitFor([this] { return files.IsClosed(); }));
}

INSTANTIATE_TEST_SUITE_P(Transfers, FtpHangingFiles, ::testing::Values(kGet, kPut),
                         [](const auto& row) { return row.param == kGet ? "Download" : "Upload"; });

TEST_F(FtpData, ACancelledDownloadLeavesNothingBehind) {
  WriteNative(Native("a"), "was here");
  server = std::make_unique<ScriptedServer>(
      [](Talk& talk) { BeginTransfer(talk), talk.SendData("half"), talk.Hang(); });
  Configure(server->Port(), 40);
  transport->Execute(kGet);
  // A reply, and behind it no request but data.
  ASSERT_TRUE(WaitFor(
      [&] { return reported.size() > 1 && reported.back() == 7 && reported.end()[-2] == 8; }));
  transport->Cancel();
  // The thread may be writing just now and closes the file then.
  EXPECT_TRUE(WaitFor([&] { return NativeNames(OnDrive("Data")).size() == 1; }));
  ExpectUntouched();
}

}  // namespace
}  // namespace tarnvale::testing
