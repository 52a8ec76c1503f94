#include "base/signal.h"

#include <gmock/gmock.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarnvale {
namespace {

using ::testing::ElementsAre;

class SignalTest : public ::testing::Test {
 protected:
  std::vector<std::string> heard;
  Signal<const std::string&> signal;

  auto Hear(const std::string& name) {
    return [this, name](const std::string& what) { heard.push_back(name + " " + what); };
  }
};

TEST_F(SignalTest, HandlersAreCalledInTheOrderInWhichTheyConnected) {
  signal.Listen(Hear("first"));
  const Subscription second = signal.Subscribe(Hear("second"));
  signal.Listen(Hear("third"));
  signal.Emit("x");
  EXPECT_THAT(heard, ElementsAre("first x", "second x", "third x"));
}

TEST_F(SignalTest, LettingGoOfASubscriptionDisconnects) {
  {
    const Subscription brief = signal.Subscribe(Hear("brief"));
    EXPECT_TRUE(signal.HasListeners());
  }
  EXPECT_FALSE(signal.HasListeners());
  signal.Emit("x");
  EXPECT_THAT(heard, ElementsAre());
}

TEST_F(SignalTest, ASubscriptionCanMoveAndBeReplaced) {
  Subscription kept;
  {
    Subscription made = signal.Subscribe(Hear("one"));
    kept = std::move(made);
  }
  signal.Emit("x");
  kept = signal.Subscribe(Hear("two"));
  signal.Emit("y");
  EXPECT_THAT(heard, ElementsAre("one x", "two y"));
}

TEST_F(SignalTest, ASubscriptionMayOutliveItsSignal) {
  std::optional<Signal<>> brief;
  brief.emplace();
  Subscription subscription = brief->Subscribe([] {});
  brief.reset();
  subscription.Cancel();
  EXPECT_FALSE(brief.has_value());
}

TEST_F(SignalTest, OneThatConnectsDuringAnEmissionIsFirstCalledAtTheNext) {
  bool connected = false;
  signal.Listen([&](const std::string&) {
    if (!connected) signal.Listen(Hear("late"));
    connected = true;
  });
  signal.Emit("x");
  EXPECT_THAT(heard, ElementsAre());
  signal.Emit("y");
  EXPECT_THAT(heard, ElementsAre("late y"));
}

TEST_F(SignalTest, OneThatDisconnectsDuringAnEmissionIsCalledNoMore) {
  Subscription second;
  signal.Listen([&](const std::string&) { second.Cancel(); });
  second = signal.Subscribe(Hear("second"));
  signal.Emit("x");
  EXPECT_THAT(heard, ElementsAre());
}

TEST_F(SignalTest, AHandlerMayDisconnectItself) {
  Subscription self;
  self = signal.Subscribe([&](const std::string& what) {
    self.Cancel();
    heard.push_back("once " + what);
  });
  signal.Emit("x");
  signal.Emit("y");
  EXPECT_THAT(heard, ElementsAre("once x"));
}

TEST_F(SignalTest, OneThatIsNeverEmittedKeepsNoHandlerThatHasLeft) {
  const auto held = std::make_shared<int>(0);
  for (int time = 0; time < 3; ++time) {
    const Subscription left = signal.Subscribe([held](const std::string&) {});
    EXPECT_EQ(held.use_count(), 2);
  }
}

TEST_F(SignalTest, AHandlerMayEmitAgain) {
  signal.Listen([&](const std::string& what) {
    if (what == "outer") signal.Emit("inner");
  });
  signal.Listen(Hear("second"));
  signal.Emit("outer");
  EXPECT_THAT(heard, ElementsAre("second inner", "second outer"));
}

}  // namespace
}  // namespace tarnvale
