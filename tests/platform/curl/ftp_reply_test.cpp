#include "platform/curl/ftp_reply.h"

#include <gtest/gtest.h>

#include <string>

namespace tarnvale {
namespace {

class FtpReplies : public ::testing::Test {
 protected:
  int NextCode() {
    const auto reply = reader.Next();
    return reply ? reply->code : 0;
  }

  FtpReplyReader reader;
};

TEST_F(FtpReplies, ReadsOneLine) {
  reader.Feed("220 Welcome\r\n");
  const auto reply = reader.Next();
  ASSERT_TRUE(reply);
  EXPECT_EQ(reply->code, 220);
  EXPECT_EQ(reply->Class(), 2);
  EXPECT_EQ(reply->text, "Welcome");
  EXPECT_TRUE(reader.IsEmpty());
}

TEST_F(FtpReplies, ReadsALineThatComesByteByByte) {
  for (const char c : std::string("331 Password")) reader.Feed({&c, 1});
  EXPECT_TRUE(reader.IsInside());
  EXPECT_EQ(NextCode(), 0);
  reader.Feed("\r\n");
  EXPECT_EQ(NextCode(), 331);
}

TEST_F(FtpReplies, TakesABareLineFeedAndABareCode) {
  reader.Feed("221\n220 a\n");
  EXPECT_EQ(NextCode(), 221);
  EXPECT_EQ(NextCode(), 220);
}

TEST_F(FtpReplies, EndsSeveralLinesOnlyAtTheirOwnCode) {
  reader.Feed("230-Hello\r\n220 files here\r\n230-\r\n anything\r\n\r\n");
  EXPECT_EQ(NextCode(), 0);
  EXPECT_TRUE(reader.IsInside());
  reader.Feed("230 Done\r\n");
  const auto reply = reader.Next();
  ASSERT_TRUE(reply);
  EXPECT_EQ(reply->code, 230);
  EXPECT_EQ(reply->text, "Hello");
}

TEST_F(FtpReplies, KeepsLittleOfAVeryLongLine) {
  reader.Feed("220 " + std::string(65536, 'x'));
  reader.Feed(std::string(1 << 20, 'y') + "\r\n");
  const auto reply = reader.Next();
  ASSERT_TRUE(reply);
  EXPECT_EQ(reply->code, 220);
  EXPECT_LE(reply->text.size(), 1024U);
}

TEST_F(FtpReplies, SeesWhatIsNoReply) {
  for (const char* line : {"SSH-2.0-x\r\n", "HTTP/1.1 200 OK\r\n", "22\r\n", "2200 x\r\n",
                           "620 x\r\n", "020 x\r\n", "\x01\x02\x03\r\n"}) {
    FtpReplyReader fresh;
    fresh.Feed(line);
    EXPECT_TRUE(fresh.IsGarbage()) << line;
    EXPECT_FALSE(fresh.Next()) << line;
  }
}

TEST_F(FtpReplies, PassesOverAnEmptyLineBetweenReplies) {
  reader.Feed("220 a\r\n\r\n331 b\r\n");
  EXPECT_EQ(NextCode(), 220);
  EXPECT_EQ(NextCode(), 331);
  EXPECT_FALSE(reader.IsGarbage());
}

TEST(FtpPassiveReplies, NameThePortOfExtendedPassive) {
  EXPECT_EQ(PortOfExtendedPassive({229, "Entering Extended Passive Mode (|||6446|)"}), 6446);
  EXPECT_EQ(PortOfExtendedPassive({229, "ok (!!!65535!)"}), 65535);
}

TEST(FtpPassiveReplies, RefuseAnotherExtendedForm) {
  for (const char* text : {"", "(", "(|||)", "(||||)", "(|||0|)", "(|||65536|)", "(|||12",
                           "(|1|127.0.0.1|6446|)", "(|||-5|)", "|||6446|"}) {
    EXPECT_FALSE(PortOfExtendedPassive({229, text})) << text;
  }
}

TEST(FtpPassiveReplies, NameThePortOfPassive) {
  EXPECT_EQ(PortOfPassive({227, "Entering Passive Mode (127,0,0,1,25,46)."}), 25 * 256 + 46);
  EXPECT_EQ(PortOfPassive({227, "ok 10,0,0,1,0,21"}), 21);
  EXPECT_EQ(PortOfPassive({227, "Mode 2 is (10,0,0,1,255,255)"}), 65535);
}

TEST(FtpPassiveReplies, RefuseAnotherPassiveForm) {
  for (const char* text : {"", "(1,2,3,4,5)", "(1,2,3,4,0,0)", "(1,2,3,4,256,1)", "(1,2,3,4,5,-1)",
                           "(1 2 3 4 5 6)", "no numbers"}) {
    EXPECT_FALSE(PortOfPassive({227, text})) << text;
  }
}

}  // namespace
}  // namespace tarnvale
