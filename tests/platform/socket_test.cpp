#include "platform/socket.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

TEST(SocketErrorTextTest, IsTheClassicOneWithoutAFullStop) {
  EXPECT_EQ(SocketErrorText(10061), "Connection is forcefully rejected");
  EXPECT_EQ(SocketErrorText(10054), "The connection is reset by remote side");
  EXPECT_EQ(SocketErrorText(11001), "Authoritative answer: Host not found");
  EXPECT_EQ(SocketErrorText(99999), SocketErrorText(kConnectionAborted));
}

}  // namespace
}  // namespace tarnvale
