#include "hosts/qt/tray_clicks.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace tarnvale {
namespace {

using Messages = std::vector<TrayMessage>;

class QtTrayClicks : public ::testing::Test {
 protected:
  /// All messages so far.
  const Messages& MessagesOf(QSystemTrayIcon::ActivationReason reason, std::int64_t now_ms) {
    const Messages messages = clicks_.MessagesOf(reason, now_ms);
    messages_.insert(messages_.end(), messages.begin(), messages.end());
    return messages_;
  }

 private:
  TrayClicks clicks_;
  Messages messages_;
};

TEST_F(QtTrayClicks, ASecondQuickClickIsADoubleClick) {
  MessagesOf(QSystemTrayIcon::Trigger, 0);
  EXPECT_EQ(MessagesOf(QSystemTrayIcon::Trigger, 150),
            (Messages{kTrayLeftDown, kTrayLeftUp, kTrayLeftDouble}));
}

TEST_F(QtTrayClicks, ASecondLateClickIsAClick) {
  MessagesOf(QSystemTrayIcon::Trigger, 0);
  EXPECT_EQ(MessagesOf(QSystemTrayIcon::Trigger, 2000),
            (Messages{kTrayLeftDown, kTrayLeftUp, kTrayLeftDown, kTrayLeftUp}));
}

TEST_F(QtTrayClicks, AThirdQuickClickIsAFirstOne) {
  MessagesOf(QSystemTrayIcon::Trigger, 0);
  MessagesOf(QSystemTrayIcon::Trigger, 150);
  EXPECT_EQ(MessagesOf(QSystemTrayIcon::Trigger, 300),
            (Messages{kTrayLeftDown, kTrayLeftUp, kTrayLeftDouble, kTrayLeftDown, kTrayLeftUp}));
}

TEST_F(QtTrayClicks, ADoubleClickThatTheDesktopReportsIsOne) {
  MessagesOf(QSystemTrayIcon::Trigger, 0);
  EXPECT_EQ(MessagesOf(QSystemTrayIcon::DoubleClick, 150),
            (Messages{kTrayLeftDown, kTrayLeftUp, kTrayLeftDouble}));
}

TEST_F(QtTrayClicks, AClickAfterADoubleClickIsAFirstOne) {
  MessagesOf(QSystemTrayIcon::Trigger, 0);
  MessagesOf(QSystemTrayIcon::DoubleClick, 100);
  EXPECT_EQ(MessagesOf(QSystemTrayIcon::Trigger, 200),
            (Messages{kTrayLeftDown, kTrayLeftUp, kTrayLeftDouble, kTrayLeftDown, kTrayLeftUp}));
}

TEST_F(QtTrayClicks, TheRightButtonGoesDownAndUp) {
  EXPECT_EQ(MessagesOf(QSystemTrayIcon::Context, 0), (Messages{kTrayRightDown, kTrayRightUp}));
}

TEST_F(QtTrayClicks, OtherActivationsSayNothing) {
  EXPECT_EQ(MessagesOf(QSystemTrayIcon::MiddleClick, 0), Messages{});
  EXPECT_EQ(MessagesOf(QSystemTrayIcon::Unknown, 0), Messages{});
}

}  // namespace
}  // namespace tarnvale
