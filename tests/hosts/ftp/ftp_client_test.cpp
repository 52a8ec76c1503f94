// The client against a real server.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "base/failure.h"
#include "tests/hosts/ftp/ftp_server.h"
#include "tests/hosts/ftp/ftp_stage.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::Not;

std::string RandomBytes(std::size_t count) {
  std::mt19937_64 random(count);
  std::string bytes(count, '\0');
  for (char& byte : bytes) byte = static_cast<char>(random());
  return bytes;
}

class FtpClient : public FtpStage {
 protected:
  void SetUp() override {
    if (!FtpServer::Obstacle().empty()) GTEST_SKIP() << FtpServer::Obstacle();
    ASSERT_TRUE(server.Answers()) << "scripts/setup installs the server";
    Configure(server.Port());
  }

  FtpServer server;
};

TEST_F(FtpClient, ListsTheRootFolderAndReportsEveryStepInOrder) {
  const FtpRun run = Run("DIR");
  EXPECT_EQ(run.code, kTransferNoError);
  // Resolve, connect, greeting; then a request and its response each time (AUTH
  // twice, USER, PASS, PWD, EPSV, TYPE, LIST), and the listing with its last word.
  std::vector<int> expected{1, 2, 3, 4, 7, 8};
#ifdef _WIN32
  constexpr int kRequests = 5;  // WinINet knows neither AUTH nor EPSV, and needs no PWD
#else
  constexpr int kRequests = 8;
#endif
  for (int i = 0; i < kRequests; ++i) expected.insert(expected.end(), {5, 6, 7, 8});
  expected.insert(expected.end(), {7, 8, 12});
  EXPECT_THAT(run.states, ElementsAreArray(expected));
}

TEST_F(FtpClient, UploadsBytesAsTheyAre) {
  const std::string content = RandomBytes(3 * 1024 * 1024 + 1) + "\r\n\n\r";
  WriteNative(Native("Auto Compressed.tvz"), content);
  const FtpRun run = Run(R"(PUT "C:\Data\Auto Compressed.tvz" "AutoCompressed.tvz")");
  EXPECT_EQ(run.code, kTransferNoError);
  EXPECT_EQ(run.states.back(), 12);
  EXPECT_TRUE(ReadNative(server.PathOf("AutoCompressed.tvz")) == content);
}

TEST_F(FtpClient, DownloadsBytesAsTheyAre) {
  const std::string content = RandomBytes(3 * 1024 * 1024 + 1) + "\r\n\n\r";
  WriteNative(server.PathOf("backup.tvz"), content);
  const FtpRun run = Run(R"(GET "backup.tvz" "C:\Data\backup.tvz")");
  EXPECT_EQ(run.code, kTransferNoError);
  EXPECT_TRUE(ReadNative(Native("backup.tvz")) == content);
  EXPECT_THAT(NativeNames(OnDrive("Data")), ElementsAre("backup.tvz"));
}

TEST_F(FtpClient, TransfersEmptyFiles) {
  WriteNative(Native("empty"), "");
  EXPECT_EQ(Run(R"(PUT "C:\Data\empty" "empty")").code, kTransferNoError);
  EXPECT_TRUE(std::filesystem::exists(server.PathOf("empty")));
  EXPECT_EQ(Run(R"(GET "empty" "C:\Data\again")").code, kTransferNoError);
  EXPECT_EQ(std::filesystem::file_size(Native("again")), 0U);
}

TEST_F(FtpClient, KeepsBlanksAndLettersBeyondAsciiInNames) {
  std::string name = "J\xC3\xA4nner  \xE6\x97\xA5\xE6\x9C\xAC \"x\".tvz";
#ifdef _WIN32
  // No file there has quotes in its name.
  name = "J\xC3\xA4nner  \xE6\x97\xA5\xE6\x9C\xAC.tvz";
#endif
  WriteNative(Native(name), "january");
  EXPECT_EQ(Run("PUT \"C:\\Data\\" + name + "\" \"" + name + "\"").code, kTransferNoError);
  EXPECT_EQ(ReadNative(server.PathOf(name)), "january");
  EXPECT_EQ(Run("GET \"" + name + "\" \"C:\\Data\\back " + name + "\"").code, kTransferNoError);
  EXPECT_EQ(ReadNative(Native("back " + name)), "january");
}

TEST_F(FtpClient, FindsTheLocalFileWithoutRegardToCase) {
  WriteNative(Native("Auto Compressed.tvz"), "content");
  EXPECT_EQ(Run(R"(PUT "c:\DATA\auto compressed.TVZ" "a.tvz")").code, kTransferNoError);
  EXPECT_EQ(ReadNative(server.PathOf("a.tvz")), "content");
}

TEST_F(FtpClient, ReplacesTheRemoteFile) {
  WriteNative(Native("a.tvz"), "a much longer one that was there");
  ASSERT_EQ(Run(R"(PUT "C:\Data\a.tvz" "a.tvz")").code, kTransferNoError);
  WriteNative(Native("a.tvz"), "new");
  EXPECT_EQ(Run(R"(PUT "C:\Data\a.tvz" "a.tvz")").code, kTransferNoError);
  EXPECT_EQ(ReadNative(server.PathOf("a.tvz")), "new");
}

TEST_F(FtpClient, KeepsItsConnectionForTheNextCommands) {
  WriteNative(Native("a.tvz"), "content");
  Run("DIR");
  EXPECT_THAT(Run("DIR").states, Not(Contains(1)));
  EXPECT_EQ(Run(R"(PUT "C:\Data\a.tvz" "a.tvz")").code, kTransferNoError);
  EXPECT_EQ(Run(R"(GET "a.tvz" "C:\Data\b.tvz")").code, kTransferNoError);
  EXPECT_EQ(server.Count("USER"), 1);
}

TEST_F(FtpClient, KeepsItsConnectionAfterAFileWasRefused) {
  Run("DIR");
  EXPECT_EQ(Run(R"(GET "missing" "C:\Data\b.tvz")").code, kTransferRefusedByServer);
  EXPECT_EQ(Run("DIR").code, kTransferNoError);
  EXPECT_EQ(server.Count("USER"), 1);
}

TEST_F(FtpClient, ConnectsAnewAfterACancel) {
  Run("DIR");
  transport->Cancel();
  EXPECT_THAT(Run("DIR").states, Contains(1));
  EXPECT_EQ(server.Count("USER"), 2);
}

TEST_F(FtpClient, ConnectsAnewForAnotherLogin) {
  Run("DIR");
  transport->SetPassword("another");
  EXPECT_EQ(Run("DIR").code, kTransferWrongPassword);
  EXPECT_EQ(server.Count("USER"), 2);
}

TEST_F(FtpClient, DisconnectsOnCloseAfterAQuit) {
  Run("DIR");
  const FtpRun run = Run("CLOSE");
  EXPECT_THAT(run.states, ElementsAre(5, 6, 7, 8, 9, 10, 12));
  EXPECT_TRUE(WaitFor([&] { return server.Count("QUIT") == 1; }));
  EXPECT_THAT(Run("DIR").states, Contains(1));
}

TEST_F(FtpClient, ReportsNoDisconnectingWhereNothingIsConnected) {
  EXPECT_THAT(Run("CLOSE").states, ElementsAre(12));
}

TEST_F(FtpClient, ReportsAWrongPassword) {
  Configure("127.0.0.1:" + std::to_string(server.Port()), kServerUser, "wrong");
  const FtpRun run = Run("DIR");
  EXPECT_EQ(run.code, kTransferWrongPassword);
  EXPECT_EQ(run.states.back(), 11);
}

TEST_F(FtpClient, ReportsAnUnknownUser) {
  Configure("127.0.0.1:" + std::to_string(server.Port()), "nobody here", kServerPassword);
  // This server, like most, doesn't say which of the two was wrong.
  EXPECT_EQ(Run("DIR").code, kTransferWrongPassword);
}

TEST_F(FtpClient, AMissingRemoteFileLeavesTheLocalOneAsItWas) {
  WriteNative(Native("b.tvz"), "was here");
  const FtpRun run = Run(R"(GET "missing.tvz" "C:\Data\b.tvz")");
  EXPECT_EQ(run.code, kTransferRefusedByServer);
  EXPECT_EQ(ReadNative(Native("b.tvz")), "was here");
  EXPECT_THAT(NativeNames(OnDrive("Data")), ElementsAre("b.tvz"));
}

TEST_F(FtpClient, AMissingLocalFileIsAnErrorThatIsReported) {
  const FtpRun run = Run(R"(PUT "C:\Data\missing.tvz" "a.tvz")");
  EXPECT_THAT(run.states, ElementsAre(11));
  EXPECT_EQ(run.code, kTransferFileNotFound);
  EXPECT_FALSE(std::filesystem::exists(server.PathOf("a.tvz")));
}

TEST_F(FtpClient, AMissingOrReadOnlyLocalTargetIsAnErrorThatIsReported) {
  WriteNative(server.PathOf("a.tvz"), "content");
  EXPECT_EQ(Run(R"(GET "a.tvz" "C:\Nowhere\a.tvz")").code, kTransferPathNotFound);
  WriteNative(Native("locked.tvz"), "was here");
  std::filesystem::permissions(Native("locked.tvz"), std::filesystem::perms::owner_read);
  EXPECT_EQ(Run(R"(GET "a.tvz" "C:\Data\locked.tvz")").code, kTransferAccessDenied);
  EXPECT_EQ(ReadNative(Native("locked.tvz")), "was here");
  EXPECT_EQ(Run(R"(GET "a.tvz" "C:\Data")").code, kTransferAccessDenied);
}

TEST_F(FtpClient, WorksOverIpv6) {
  SKIP_ON_WININET("of Wine takes the address for a name");
  Configure("[::1]:" + std::to_string(server.Port()), kServerUser, kServerPassword);
  const std::string content = RandomBytes(100000);
  WriteNative(Native("a.tvz"), content);
  EXPECT_EQ(Run(R"(PUT "C:\Data\a.tvz" "a.tvz")").code, kTransferNoError);
  EXPECT_EQ(Run(R"(GET "a.tvz" "C:\Data\b.tvz")").code, kTransferNoError);
  EXPECT_TRUE(ReadNative(Native("b.tvz")) == content);
}

TEST_F(FtpClient, ResolvesNames) {
  Configure("localhost:" + std::to_string(server.Port()), kServerUser, kServerPassword);
  EXPECT_EQ(Run("DIR").code, kTransferNoError);
}

TEST_F(FtpClient, RefusesASecondCommandWhileOneRuns) {
  transport->Execute("DIR");
  EXPECT_EQ(RaisedBy([&] { transport->Execute("DIR"); }), kStillExecuting);
  EXPECT_TRUE(WaitFor([&] { return !reported.empty(); }));
  EXPECT_EQ(RaisedBy([&] { transport->Execute("CLOSE"); }), kStillExecuting);
  EXPECT_EQ(Wait().code, kTransferNoError);
}

TEST_F(FtpClient, RaisesForWhatIsNoCommandAndForNoHost) {
  EXPECT_EQ(RaisedBy([&] { transport->Execute("MKD x"); }), kMalformedCommand);
  EXPECT_EQ(RaisedBy([&] { transport->Execute("PUT \"C:\\a\" \"a\r\nDELE b\""); }),
            kMalformedCommand);
  transport->SetRemoteHost(" ");
  EXPECT_EQ(RaisedBy([&] { transport->Execute("DIR"); }), kMalformedCommand);
  EXPECT_FALSE(transport->IsBusy());
}

TEST_F(FtpClient, RaisesForALimitBelowZeroAndForAnotherProtocol) {
  EXPECT_EQ(RaisedBy([&] { transport->SetRequestTimeout(-1); }), kInvalidPropertyValue);
  EXPECT_EQ(RaisedBy([&] { transport->SetProtocol(TransferProtocol{4}); }), kInvalidPropertyValue);
}

TEST_F(FtpClient, ALineEndInTheLoginReachesNoServer) {
  Configure("127.0.0.1:" + std::to_string(server.Port()), "ann\r\nDELE a", kServerPassword);
  EXPECT_EQ(Run("DIR").code, kTransferWrongUserName);
  Configure("127.0.0.1:" + std::to_string(server.Port()), kServerUser, "x\nDELE a");
  EXPECT_EQ(Run("DIR").code, kTransferWrongPassword);
  EXPECT_EQ(server.Count("DELE"), 0);
  EXPECT_EQ(server.Count("USER"), 0);
}

TEST_F(FtpClient, CancelAtEachStateEndsEverythingAtOnce) {
  const std::size_t states = Run("DIR").states.size();
  for (std::size_t at = 1; at < states; ++at) {
    transport->Cancel();
    reported.clear();
    const auto subscription = transport->StateChanged.Subscribe([&](TransportState) {
      if (reported.size() == at) transport->Cancel();
    });
    transport->Execute("DIR");
    ASSERT_TRUE(WaitFor([&] { return !transport->IsBusy(); }));
    EXPECT_EQ(reported.size(), at);
  }
  EXPECT_EQ(Run("DIR").code, kTransferNoError);
}

TEST_F(FtpClient, AListenerMayExecuteAtTheEndOfTheLastCommand) {
  WriteNative(Native("a.tvz"), "content");
  bool once = false;
  const auto subscription = transport->StateChanged.Subscribe([&](TransportState state) {
    if (state != TransportState::kResponseCompleted || std::exchange(once, true)) return;
    EXPECT_FALSE(transport->IsBusy());
    transport->Execute(R"(PUT "C:\Data\a.tvz" "a.tvz")");
  });
  transport->Execute("DIR");
  ASSERT_TRUE(WaitFor([&] { return !transport->IsBusy(); }));
  EXPECT_EQ(ReadNative(server.PathOf("a.tvz")), "content");
}

TEST_F(FtpClient, AListenerMayWaitInALoopOfItsOwn) {
  const std::size_t usual = Run("DIR").states.size();
  transport->Cancel();
  bool once = false;
  const auto subscription = transport->StateChanged.Subscribe([&](TransportState state) {
    if (state != TransportState::kConnected || std::exchange(once, true)) return;
    EXPECT_TRUE(WaitFor([&] { return !transport->IsBusy(); }));
  });
  const FtpRun run = Run("DIR");
  EXPECT_EQ(run.code, kTransferNoError);
  EXPECT_EQ(run.states.size(), usual);
}

class FtpEncrypted : public FtpStage {
 protected:
  void SetUp() override {
    SKIP_ON_WININET("speaks in clear");
    if (!FtpServer::Obstacle().empty()) GTEST_SKIP() << FtpServer::Obstacle();
  }
  void ExpectTransfers(FtpServer& server) {
    ASSERT_TRUE(server.Answers());
    Configure(server.Port());
    const std::string content = RandomBytes(3 * 1024 * 1024 + 1);
    WriteNative(Native("a.tvz"), content);
    EXPECT_EQ(Run("DIR").code, kTransferNoError);
    EXPECT_EQ(Run(R"(PUT "C:\Data\a.tvz" "a.tvz")").code, kTransferNoError);
    EXPECT_TRUE(ReadNative(server.PathOf("a.tvz")) == content);
    EXPECT_EQ(Run(R"(GET "a.tvz" "C:\Data\b.tvz")").code, kTransferNoError);
    EXPECT_TRUE(ReadNative(Native("b.tvz")) == content);
    EXPECT_EQ(Run("CLOSE").code, kTransferNoError);
    EXPECT_EQ(server.Count("USER"), 1);
  }
};

// A server that demands it lets nobody in otherwise, nor move data.
TEST_F(FtpEncrypted, EverythingIsEncryptedWhereTheServerOffersIt) {
  FtpServer server(0, FtpServer::Encryption::kDemanded);
  ExpectTransfers(server);
}

TEST_F(FtpEncrypted, AServerThatKnowsTheNewestEncryptionOnlyIsSpokenToEncrypted) {
  FtpServer server(0, FtpServer::Encryption::kNewest);
  ExpectTransfers(server);
}

TEST_F(FtpEncrypted, AServerThatLeavesTheChoiceIsSpokenToEncrypted) {
  FtpServer server(0, FtpServer::Encryption::kOffered);
  ExpectTransfers(server);
  EXPECT_EQ(server.Count("AUTH"), 1);
  EXPECT_EQ(server.Count("PROT"), 1);
}

// What DIR and transfers are allowed where nothing else is said, as in the program.
TEST(FtpPatienceTest, IsAMinuteAndAMebibyteForAListingAndAKibibyteEachSecondForATransfer) {
  const FtpPatience patience;
  EXPECT_EQ(patience.listing, std::chrono::seconds(60));
  EXPECT_EQ(patience.listing_bytes, 1048576U);
  EXPECT_EQ(patience.span, std::chrono::seconds(120));
  EXPECT_EQ(patience.span_bytes, 120U * 1024U);
}

}  // namespace
}  // namespace tarnvale::testing
