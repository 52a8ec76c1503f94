#include "platform/curl/host_address.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

TEST(HostAddressText, HasTheProtocolsPortUnlessItNamesOne) {
  EXPECT_EQ(ParseHostAddress("ftp.example.org"), (HostAddress{"ftp.example.org", 21}));
  EXPECT_EQ(ParseHostAddress("127.0.0.1:2121"), (HostAddress{"127.0.0.1", 2121}));
}

TEST(HostAddressText, TakesIpv6AddressesBareAndInBrackets) {
  EXPECT_EQ(ParseHostAddress("::1"), (HostAddress{"::1", 21}));
  EXPECT_EQ(ParseHostAddress("[::1]"), (HostAddress{"::1", 21}));
  EXPECT_EQ(ParseHostAddress("[fe80::1%eth0]:2121"), (HostAddress{"fe80::1%eth0", 2121}));
}

TEST(HostAddressText, IgnoresBlanksAroundIt) {
  EXPECT_EQ(ParseHostAddress("  ftp.example.org \t"), (HostAddress{"ftp.example.org", 21}));
}

TEST(HostAddressText, RefusesTextsWithoutAHostOrWithAWrongPort) {
  for (const char* text : {"", "  ", ":21", "host:", "host:0", "host:65536", "host:ftp", "host:21x",
                           "host:-1", "[::1", "[]", "[::1]x", "[::1]:"}) {
    EXPECT_FALSE(ParseHostAddress(text)) << text;
  }
}

}  // namespace
}  // namespace tarnvale
