// The numbers of WinINet's handles, which come again for other sessions.
#include <gtest/gtest.h>
#include <windows.h>

#include <wininet.h>

#include <atomic>
#include <chrono>
#include <map>
#include <mutex>
#include <optional>
#include <set>

#include "hosts/windows/threads.h"
#include "tests/hosts/ftp/ftp_stage.h"
#include "tests/hosts/ftp/scripted_server.h"
#include "tests/hosts/windows/scripted_media.h"

namespace tarnvale::testing {
namespace {

/// Sees each handle made below another one, and closed.
class HandleWatch {
 public:
  /// One was closed that had gone with the one above it.
  bool ClosedTwice() {
    const std::lock_guard lock(lock_);
    return closed_twice_;
  }

 private:
  HINTERNET Made(HINTERNET above, HINTERNET handle) {
    const std::lock_guard lock(lock_);
    closed_.erase(handle);
    above_[handle] = above;
    return handle;
  }
  void Closing(HINTERNET handle) {
    const std::lock_guard lock(lock_);
    for (HINTERNET at = handle; at != nullptr; at = above_[at]) {
      closed_twice_ = closed_twice_ || closed_.contains(at);
    }
    closed_.insert(handle);
  }

  CriticalSection lock_;
  std::map<HINTERNET, HINTERNET> above_;
  std::set<HINTERNET> closed_;
  bool closed_twice_ = false;
  Script opens_ =
      Answering("InternetOpenW", &::InternetOpenW,
                [this](auto real, auto... arguments) { return Made(nullptr, real(arguments...)); });
  Script connects_ = Answering("InternetConnectA", &::InternetConnectA,
                               [this](auto real, HINTERNET above, auto... arguments) {
                                 return Made(above, real(above, arguments...));
                               });
  Script files_ = Answering("FtpOpenFileA", &::FtpOpenFileA,
                            [this](auto real, HINTERNET above, auto... arguments) {
                              return Made(above, real(above, arguments...));
                            });
  Script closes_ =
      Answering("InternetCloseHandle", &::InternetCloseHandle, [this](auto real, HINTERNET handle) {
        Closing(handle);
        return real(handle);
      });
};

using InetHandles = FtpStage;

TEST_F(InetHandles, OfAConnectionThatWasBrokenOffNoneIsClosedAnyMore) {
  HandleWatch watch;
  std::optional<ScriptedServer> server(std::in_place, [](Talk& talk) {
    talk.LogIn();
    talk.EnterPassive();
    talk.AcceptData();
    talk.SendData("a part");
    talk.Hang();
  });
  Configure(server->Port(), 1);
  EXPECT_EQ(Run("GET \"a\" \"C:\\Data\\a\"").code, kTransferTimeOut);
  // The call that waited for the server goes on only now.
  server.reset();
  transport.reset();
  EXPECT_FALSE(watch.ClosedTwice());
}

// Wine's WinINet frees its session twice otherwise.
TEST_F(InetHandles, AConnectionIsClosedOnlyWhenItsLoginHasEnded) {
  std::atomic<bool> logs_in = false;
  std::atomic<bool> closes_early = false;
  std::atomic<bool> closes = false;
  const Script connects =
      Answering("InternetConnectA", &::InternetConnectA, [&](auto real, auto... arguments) {
        logs_in = true;
        HINTERNET made = real(arguments...);
        logs_in = false;
        return made;
      });
  const Script closing =
      Answering("InternetCloseHandle", &::InternetCloseHandle, [&](auto real, HINTERNET handle) {
        if (logs_in) closes_early = true;
        closes = true;
        return real(handle);
      });
  std::optional<ScriptedServer> server(std::in_place, [](Talk& talk) { talk.Hang(); });
  Configure(server->Port());
  transport->Execute("DIR");
  ASSERT_TRUE(WaitFor([&] { return logs_in.load(); }));
  transport->Cancel();
  const auto since = std::chrono::steady_clock::now();
  constexpr std::chrono::seconds kLongEnough{1};
  EXPECT_TRUE(
      WaitFor([&] { return closes || std::chrono::steady_clock::now() - since > kLongEnough; }));
  server.reset();
  EXPECT_TRUE(WaitFor([&] { return closes.load(); }));
  EXPECT_FALSE(closes_early);
}

}  // namespace
}  // namespace tarnvale::testing
