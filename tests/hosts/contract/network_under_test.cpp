#include "tests/hosts/contract/network_under_test.h"

#include <chrono>

#include "tests/hosts/contract/loopback_server.h"
#include "tests/hosts/contract/network_parts.h"
#include "tests/support/fake_machine.h"
#include "tests/support/run_until.h"

namespace tarnvale::testing {
namespace {

class FakeNetworkUnderTest final : public NetworkUnderTest {
 public:
  EventLoop& Loop() override { return machine_.loop; }
  Sockets& Maker() override { return machine_.network; }
  std::string Host() override { return "server.example"; }
  std::uint16_t Port() override { return 25; }
  std::uint16_t DeadPort() override { return 26; }

  bool WaitFor(const std::function<bool()>& condition) override {
    for (int i = 0; i < 1000; ++i) {
      if (condition()) return true;
      machine_.Advance(10ms);
    }
    return false;
  }

  bool HasConnection() override { return server_.ConnectionCount() > 0; }
  std::string Received() override { return HasConnection() ? Last().Text() : ""; }
  bool SawEnd() override { return HasConnection() && Last().IsEnded(); }
  void Say(const std::string& bytes) override { Last().Say(bytes); }
  void EndSending() override { Last().EndSending(); }
  void HangUp() override { Last().HangUp(); }
  void Reset() override { Last().Reset(); }

 private:
  FakeConnection& Last() { return server_.Connection(server_.ConnectionCount() - 1); }

  FakeMachine machine_;
  FakeServer& server_ = machine_.network.AddServer("server.example", 25);
};

class LoopbackNetworkUnderTest final : public NetworkUnderTest {
 public:
  LoopbackNetworkUnderTest() { dead_.StopListening(); }

  EventLoop& Loop() override { return loop_; }
  Sockets& Maker() override { return sockets_; }
  std::string Host() override { return "127.0.0.1"; }
  std::uint16_t Port() override { return server_.Port(); }
  std::uint16_t DeadPort() override { return dead_.Port(); }

  bool WaitFor(const std::function<bool()>& condition) override {
    return RunUntil(loop_, condition, 10s, [this] {
      server_.Accept();
      server_.Read();
    });
  }

  bool HasConnection() override { return server_.HasConnection(); }
  std::string Received() override { return server_.Received(); }
  bool SawEnd() override { return server_.SawEnd(); }
  void Say(const std::string& bytes) override { server_.Say(bytes); }
  void EndSending() override { server_.EndSending(); }
  void HangUp() override { server_.HangUp(); }
  void Reset() override { server_.Reset(); }

 private:
  HostLoop loop_;
  HostSockets sockets_{loop_};
  LoopbackServer server_;
  LoopbackServer dead_;
};

}  // namespace

std::unique_ptr<NetworkUnderTest> MakeFakeNetwork() {
  return std::make_unique<FakeNetworkUnderTest>();
}

std::unique_ptr<NetworkUnderTest> MakeLoopbackNetwork() {
  return std::make_unique<LoopbackNetworkUnderTest>();
}

}  // namespace tarnvale::testing
