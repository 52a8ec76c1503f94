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
  const Messages& Told(QSystemTrayIcon::ActivationReason reason, std::int64_t now_ms) {
    const Messages told = clicks_.MessagesOf(reason, now_ms);
    messages_.insert(messages_.end(), told.begin(), told.end());
    return messages_;
  }

 private:
  TrayClicks clicks_;
  Messages messages_;
};

TEST_F(QtTrayClicks, ASecondQuickClickIsADoubleClick) {
  Told(QSystemTrayIcon::Trigger, 0);
  EXPECT_EQ(Told(QSystemTrayIcon::Trigger, 150),
            (Messages{kTrayLeftDown, kTrayLeftUp, kTrayLeftDouble}));
}

TEST_F(QtTrayClicks, ASecondLateClickIsAClick) {
  Told(QSystemTrayIcon::Trigger, 0);
  EXPECT_EQ(Told(QSystemTrayIcon::Trigger, 2000),
            (Messages{kTrayLeftDown, kTrayLeftUp, kTrayLeftDown, kTrayLeftUp}));
}

TEST_F(QtTrayClicks, AThirdQuickClickIsAFirstOne) {
  Told(QSystemTrayIcon::Trigger, 0);
  Told(QSystemTrayIcon::Trigger, 150);
  EXPECT_EQ(Told(QSystemTrayIcon::Trigger, 300),
            (Messages{kTrayLeftDown, kTrayLeftUp, kTrayLeftDouble, kTrayLeftDown, kTrayLeftUp}));
}

TEST_F(QtTrayClicks, ADoubleClickThatTheDesktopTellsIsOne) {
  Told(QSystemTrayIcon::Trigger, 0);
  EXPECT_EQ(Told(QSystemTrayIcon::DoubleClick, 150),
            (Messages{kTrayLeftDown, kTrayLeftUp, kTrayLeftDouble}));
}

TEST_F(QtTrayClicks, AClickAfterADoubleClickIsAFirstOne) {
  Told(QSystemTrayIcon::Trigger, 0);
  Told(QSystemTrayIcon::DoubleClick, 100);
  EXPECT_EQ(Told(QSystemTrayIcon::Trigger, 200),
            (Messages{kTrayLeftDown, kTrayLeftUp, kTrayLeftDouble, kTrayLeftDown, kTrayLeftUp}));
}

TEST_F(QtTrayClicks, TheRightButtonGoesDownAndUp) {
  EXPECT_EQ(Told(QSystemTrayIcon::Context, 0), (Messages{kTrayRightDown, kTrayRightUp}));
}

TEST_F(QtTrayClicks, OtherActivationsSayNothing) {
  EXPECT_EQ(Told(QSystemTrayIcon::MiddleClick, 0), Messages{});
  EXPECT_EQ(Told(QSystemTrayIcon::Unknown, 0), Messages{});
}

}  // namespace
}  // namespace tarnvale
