#include "platform/ftp_command.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "base/failure.h"
#include "platform/ftp_transport.h"

namespace tarnvale {
namespace {

TEST(FtpCommandText, ReadsAListing) {
  const auto command = ParseFtpCommand("DIR");
  ASSERT_TRUE(command);
  EXPECT_EQ(command->verb, FtpVerb::kList);
}

TEST(FtpCommandText, ReadsAnUploadAsLocalThenRemote) {
  const auto command =
      ParseFtpCommand(R"(PUT "C:\My Files\Auto Compressed.tvz" "AutoCompressed.tvz")");
  ASSERT_TRUE(command);
  EXPECT_EQ(command->verb, FtpVerb::kUpload);
  EXPECT_EQ(command->local, R"(C:\My Files\Auto Compressed.tvz)");
  EXPECT_EQ(command->remote, "AutoCompressed.tvz");
}

TEST(FtpCommandText, ReadsADownloadAsRemoteThenLocal) {
  const auto command = ParseFtpCommand(R"(GET "far away.tvz" "C:\here.tvz")");
  ASSERT_TRUE(command);
  EXPECT_EQ(command->verb, FtpVerb::kDownload);
  EXPECT_EQ(command->local, R"(C:\here.tvz)");
  EXPECT_EQ(command->remote, "far away.tvz");
}

TEST(FtpCommandText, ReadsAClose) {
  const auto command = ParseFtpCommand("CLOSE");
  ASSERT_TRUE(command);
  EXPECT_EQ(command->verb, FtpVerb::kClose);
}

TEST(FtpCommandText, TakesItsWordsInAnyCase) {
  EXPECT_TRUE(ParseFtpCommand("dir"));
  EXPECT_TRUE(ParseFtpCommand(R"(put "C:\a" "a")"));
}

TEST(FtpCommandText, KeepsBytesBeyondAscii) {
  const auto command = ParseFtpCommand(
      "GET \"\xC3\xBC"
      "ber.tvz\" \"C:\\\xC3\xA9.tvz\"");
  ASSERT_TRUE(command);
  EXPECT_EQ(command->remote,
            "\xC3\xBC"
            "ber.tvz");
  EXPECT_EQ(command->local, "C:\\\xC3\xA9.tvz");
}

TEST(FtpCommandText, KeepsADoubleQuoteInAName) {
  const auto command = ParseFtpCommand(R"(PUT "C:\5" disk.tvz" "disk.tvz")");
  ASSERT_TRUE(command);
  EXPECT_EQ(command->local, R"(C:\5" disk.tvz)");
}

TEST(FtpCommandText, RefusesNamesThatCanBeReadInTwoWays) {
  EXPECT_FALSE(ParseFtpCommand(R"(PUT "C:\a" "b" "c")"));
  // The two ends of one quote blank quote blank quote.
  EXPECT_FALSE(ParseFtpCommand(R"(PUT "C:\a" " "c")"));
}

TEST(FtpCommandText, RefusesALineEndOrAZeroByteInAName) {
  EXPECT_FALSE(ParseFtpCommand("PUT \"C:\\a\" \"a\r\nDELE b\""));
  EXPECT_FALSE(ParseFtpCommand("PUT \"C:\\a\" \"a\nDELE b\""));
  EXPECT_FALSE(ParseFtpCommand("GET \"a\rDELE b\" \"C:\\a\""));
  EXPECT_FALSE(ParseFtpCommand(std::string("GET \"a\0b\" \"C:\\a\"", 15)));
}

TEST(FtpCommandText, RefusesWhatIsNoCommand) {
  for (const char* text : {"", " ", "LIST", "DIR x", "DIR ", "CLOSE now", "PUT", "PUT ", "PUT \"",
                           R"(PUT "C:\a")", R"(PUT C:\a a)", R"(PUT "C:\a" a)", R"(PUT "" "a")",
                           R"(PUT "C:\a" "")", R"(PUT "C:\a""a")", R"(DELE "a" "b")"}) {
    EXPECT_FALSE(ParseFtpCommand(text)) << text;
  }
}

TEST(FtpHostText, HasAPortOrTheProtocolsOwn) {
  EXPECT_EQ(ParseFtpHost(" a.b\t"), (FtpHost{"a.b", 0}));
  EXPECT_EQ(ParseFtpHost("a.b:"), (FtpHost{"a.b", 0}));
  EXPECT_EQ(ParseFtpHost("a.b:2121"), (FtpHost{"a.b", 2121}));
  EXPECT_FALSE(ParseFtpHost("a.b:65536"));
  EXPECT_FALSE(ParseFtpHost("a.b:21x"));
}

TEST(FtpHostText, AnAddressWithManyColonsHasItsPortBehindBrackets) {
  EXPECT_EQ(ParseFtpHost("fe80::12"), (FtpHost{"fe80::12", 0}));
  EXPECT_EQ(ParseFtpHost("[fe80::12]"), (FtpHost{"fe80::12", 0}));
  EXPECT_EQ(ParseFtpHost("[fe80::12]:21"), (FtpHost{"fe80::12", 21}));
  EXPECT_FALSE(ParseFtpHost("[fe80::12]21"));
  EXPECT_FALSE(ParseFtpHost("[fe80::12"));
  EXPECT_FALSE(ParseFtpHost("[a.b]:21"));
}

TEST(FtpHostText, RefusesWhatNoHostIsCalled) {
  for (const char* text : {"", " ", ":21", "a b", "a/b", "ftp://a", "user@a"}) {
    EXPECT_FALSE(ParseFtpHost(text)) << text;
  }
}

TEST(TransferErrorTest, SaysWhatFailedAndElseInWhichDirection) {
  for (const auto& [number, code] : {std::pair{kFileNotFound, kTransferFileNotFound},
                                     {kPathNotFound, kTransferPathNotFound},
                                     {kPermissionDenied, kTransferAccessDenied},
                                     {kPathFileAccess, kTransferAccessDenied},
                                     {kDiskFull, kTransferDiskFull}}) {
    EXPECT_EQ(TransferErrorOf(ProgramError(number), FtpVerb::kUpload), code) << number;
    EXPECT_EQ(TransferErrorOf(ProgramError(number), FtpVerb::kDownload), code) << number;
  }
  EXPECT_EQ(TransferErrorOf(ProgramError(kDeviceIoError), FtpVerb::kUpload), kTransferReadFault);
  EXPECT_EQ(TransferErrorOf(ProgramError(kDeviceIoError), FtpVerb::kDownload), kTransferWriteFault);
}

}  // namespace
}  // namespace tarnvale
