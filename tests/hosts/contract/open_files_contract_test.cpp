// The table of open files: what every host must do.
#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstdint>

#include "platform/file_text.h"
#include "tests/hosts/contract/host_under_test.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

class OpenFilesContract : public HostTest {
 protected:
  // All items of a text, read one by one.
  std::vector<std::string> ItemsOf(const std::string& text) {
    host.Write("C:\\Data\\items.txt", text);
    open.OpenInput(1, "C:\\Data\\items.txt");
    std::vector<std::string> items;
    while (RaisedBy([&] { items.push_back(open.InputItem(1)); }) == 0) {
    }
    open.Close(1);
    return items;
  }
};
bool SameByte(std::uint8_t byte, char c) {
  return byte == static_cast<std::uint8_t>(c);
}

INSTANTIATE_TEST_SUITE_P(Hosts, OpenFilesContract, ::testing::ValuesIn(AllHosts()), NameOfHost);

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST_P(OpenFilesContract, NumbersRunFrom1To511) {
  for (const int number : {0, -1, 512}) {
    EXPECT_EQ(RaisedBy([&] { open.OpenOutput(number, "C:\\Data\\a.txt"); }), 52) << number;
  }
  EXPECT_THAT(host.Names("C:\\Data"), IsEmpty());
  open.OpenOutput(1, "C:\\Data\\a.txt");
  open.OpenOutput(511, "C:\\Data\\b.txt");
  EXPECT_TRUE(open.IsOpen(1));
  EXPECT_TRUE(open.IsOpen(511));
}

TEST_P(OpenFilesContract, ATakenNumberRaises55AndStaysOpen) {
  host.Write("C:\\Data\\b.txt", "kept");
  open.OpenOutput(1, "C:\\Data\\a.txt");
  EXPECT_EQ(RaisedBy([&] { open.OpenInput(1, "C:\\Data\\b.txt"); }), 55);
  EXPECT_EQ(RaisedBy([&] { open.OpenOutput(1, "C:\\Data\\b.txt"); }), 55);
  EXPECT_EQ(RaisedBy([&] { open.OpenBinary(1, "C:\\Data\\b.txt"); }), 55);
  open.Write(1, "hello");
  open.Close(1);
  EXPECT_EQ(host.Content("C:\\Data\\a.txt"), "hello");
  EXPECT_EQ(host.Content("C:\\Data\\b.txt"), "kept");
}

TEST_P(OpenFilesContract, OpeningAMissingFileForInputRaises53) {
  EXPECT_EQ(RaisedBy([&] { open.OpenInput(1, "C:\\Data\\missing"); }), 53);
  EXPECT_FALSE(open.IsOpen(1));
}

TEST_P(OpenFilesContract, AnOwnFileKeepsWhatItHoldsAndIsMadeWhenItIsMissing) {
  host.Write("C:\\Data\\left", "0123456789");
  open.OpenOwn(1, "C:\\Data\\LEFT");
  open.Write(1, "new");
  open.Seek(1, 0);
  EXPECT_EQ(open.Read(1, 20), "new3456789");
  open.OpenOwn(2, "C:\\Data\\made");
  open.Write(2, "x");
  open.CloseAll();
  EXPECT_EQ(host.Content("C:\\Data\\left"), "new3456789");
  EXPECT_EQ(host.Content("C:\\Data\\made"), "x");
}

TEST_P(OpenFilesContract, AnOwnFileThatRefusesWritingAndAFolderRaise75) {
  host.Write("C:\\Data\\a.txt", "kept");
  host.Files().SetAttributes("C:\\Data\\a.txt", attribute::kReadOnly);
  host.MakeFolder("C:\\Data\\folder");
  EXPECT_EQ(RaisedBy([&] { open.OpenOwn(1, "C:\\Data\\a.txt"); }), 75);
  EXPECT_EQ(RaisedBy([&] { open.OpenOwn(1, "C:\\Data\\folder"); }), 75);
  EXPECT_EQ(RaisedBy([&] { open.OpenOwn(1, "C:\\Missing\\a.txt"); }), 76);
  EXPECT_FALSE(open.IsOpen(1));
  EXPECT_EQ(host.Content("C:\\Data\\a.txt"), "kept");
}

TEST_P(OpenFilesContract, AMissingFolderRaises76) {
  EXPECT_EQ(RaisedBy([&] { open.OpenInput(1, "C:\\Missing\\a.txt"); }), 76);
  EXPECT_EQ(RaisedBy([&] { open.OpenOutput(1, "C:\\Missing\\a.txt"); }), 76);
  EXPECT_EQ(RaisedBy([&] { open.OpenBinary(1, "D:\\a.txt"); }), 76);
  EXPECT_EQ(RaisedBy([&] { open.OpenOutput(1, "a.txt"); }), 76);
}

TEST_P(OpenFilesContract, AFolderRaises75) {
  EXPECT_EQ(RaisedBy([&] { open.OpenInput(1, "C:\\Data"); }), 75);
  EXPECT_EQ(RaisedBy([&] { open.OpenOutput(1, "C:\\Data"); }), 75);
  EXPECT_EQ(RaisedBy([&] { open.OpenBinary(1, "C:\\Data"); }), 75);
  EXPECT_EQ(RaisedBy([&] { open.OpenOutput(1, "C:\\"); }), 75);
}

TEST_P(OpenFilesContract, ANameThatNoFileCanHaveRaises75) {
  EXPECT_EQ(RaisedBy([&] { open.OpenOutput(1, "C:\\Data\\*.txt"); }), 75);
}

TEST_P(OpenFilesContract, OutputEmptiesAnOldFile) {
  host.Write("C:\\Data\\a.txt", "old and long");
  open.OpenOutput(1, "C:\\DATA\\A.TXT");
  EXPECT_EQ(open.Length(1), 0);
  open.Write(1, "new");
  open.Write(1, "er");
  EXPECT_EQ(open.Length(1), 5);
  open.Close(1);
  EXPECT_EQ(host.Content("C:\\Data\\a.txt"), "newer");
  EXPECT_EQ(host.Names("C:\\Data").size(), 1U);
}

TEST_P(OpenFilesContract, AReadOnlyFileRaises75ForOutputAndKeepsItsContent) {
  host.Write("C:\\Data\\a.txt", "old");
  files.SetAttributes("C:\\Data\\a.txt", attribute::kReadOnly);
  EXPECT_EQ(RaisedBy([&] { open.OpenOutput(1, "C:\\Data\\a.txt"); }), 75);
  EXPECT_EQ(host.Content("C:\\Data\\a.txt"), "old");
}

TEST_P(OpenFilesContract, BinaryKeepsWhatAFileHoldsAndWritesAtThePosition) {
  host.Write("C:\\Data\\a.bin", "0123456789");
  open.OpenBinary(1, "C:\\Data\\a.bin");
  open.Write(1, "ab");
  open.Seek(1, 5);
  open.Write(1, "cd");
  open.Close(1);
  EXPECT_EQ(host.Content("C:\\Data\\a.bin"), "ab234cd789");
}

TEST_P(OpenFilesContract, BinaryMakesAMissingFile) {
  open.OpenBinary(1, "C:\\Data\\a.bin");
  open.Write(1, std::string("\0\xFF\r\n", 4));
  open.Seek(1, 0);
  EXPECT_EQ(open.Read(1, 10), std::string("\0\xFF\r\n", 4));
}

TEST_P(OpenFilesContract, AReadOnlyFileOpensInBinaryForReadingAlone) {
  host.Write("C:\\Data\\a.bin", "hello");
  files.SetAttributes("C:\\Data\\a.bin", attribute::kReadOnly);
  open.OpenBinary(1, "C:\\Data\\a.bin");
  EXPECT_EQ(open.Read(1, 10), "hello");
  EXPECT_EQ(RaisedBy([&] { open.Write(1, "x"); }), 75);
  EXPECT_EQ(host.Content("C:\\Data\\a.bin"), "hello");
}

TEST_P(OpenFilesContract, ReadMovesOnAndIsShortOnlyAtTheEnd) {
  host.Write("C:\\Data\\a.bin", "0123456789");
  open.OpenBinary(1, "C:\\Data\\a.bin");
  EXPECT_EQ(open.Read(1, 4), "0123");
  EXPECT_EQ(open.Read(1, 0), "");
  EXPECT_EQ(open.Read(1, 4), "4567");
  EXPECT_EQ(open.Read(1, 4), "89");
  EXPECT_EQ(open.Read(1, 4), "");
}

TEST_P(OpenFilesContract, ReadingIntoMemoryMovesOnAndIsShortOnlyAtTheEnd) {
  host.Write("C:\\Data\\a.bin", "0123456789");
  open.OpenBinary(1, "C:\\Data\\a.bin");
  std::array<std::uint8_t, 6> bytes{};
  EXPECT_EQ(open.ReadInto(1, bytes), 6U);
  EXPECT_THAT(bytes, ElementsAre('0', '1', '2', '3', '4', '5'));
  EXPECT_EQ(open.ReadInto(1, {}), 0U);
  EXPECT_EQ(open.ReadInto(1, bytes), 4U);
  EXPECT_THAT(bytes, ElementsAre('6', '7', '8', '9', '4', '5'));
  EXPECT_EQ(open.ReadInto(1, bytes), 0U);
}

TEST_P(OpenFilesContract, ReadingIntoMemoryRaises52And54) {
  std::array<std::uint8_t, 6> bytes{};
  EXPECT_EQ(RaisedBy([&] { open.ReadInto(7, bytes); }), 52);
  open.OpenOutput(2, "C:\\Data\\b.txt");
  EXPECT_EQ(RaisedBy([&] { open.ReadInto(2, bytes); }), 54);
}

TEST_P(OpenFilesContract, AFileThatIsOpenIsNotDeleted) {
  host.Write("C:\\Data\\a.bin", "hello");
  open.OpenBinary(1, "C:\\Data\\a.bin");
  open.OpenInput(2, "C:\\Data\\a.bin");
  EXPECT_EQ(RaisedBy([&] { files.Delete("C:\\DATA\\A.BIN"); }), 70);
  open.Close(1);
  EXPECT_EQ(RaisedBy([&] { files.Delete("C:\\Data\\a.bin"); }), 70);
  EXPECT_EQ(host.Content("C:\\Data\\a.bin"), "hello");
  open.Close(2);
  files.Delete("C:\\Data\\a.bin");
  EXPECT_TRUE(host.Names("C:\\Data").empty());
}

TEST_P(OpenFilesContract, AnInputFileCanBeReadByBytes) {
  host.Write("C:\\Data\\a.txt", "a,b");
  open.OpenInput(1, "C:\\Data\\a.txt");
  EXPECT_EQ(open.Length(1), 3);
  EXPECT_EQ(open.Read(1, 10), "a,b");
}

TEST_P(OpenFilesContract, WritingBehindTheEndFillsWithZeros) {
  open.OpenBinary(1, "C:\\Data\\a.bin");
  open.Seek(1, 3);
  EXPECT_EQ(open.Length(1), 0);
  open.Write(1, "x");
  EXPECT_EQ(open.Length(1), 4);
  open.Seek(1, 0);
  EXPECT_EQ(open.Read(1, 4), std::string("\0\0\0x", 4));
}

TEST_P(OpenFilesContract, ANegativePositionRaises5) {
  open.OpenBinary(1, "C:\\Data\\a.bin");
  EXPECT_EQ(RaisedBy([&] { open.Seek(1, -1); }), 5);
}

TEST_P(OpenFilesContract, ACopyMovesBothOnAndIsShortOnlyAtTheEnd) {
  host.Write("C:\\Data\\from.bin", "0123456789");
  host.Write("C:\\Data\\to.bin", "abcdefghijklm");
  open.OpenInput(1, "C:\\Data\\from.bin");
  open.OpenBinary(2, "C:\\Data\\to.bin");
  open.Seek(2, 1);
  std::array<std::uint8_t, 4> four{};
  EXPECT_EQ(open.Copy(1, 2, four), 4U);
  EXPECT_EQ(open.Copy(1, 2, four), 4U);
  EXPECT_EQ(open.Copy(1, 2, four), 2U);
  EXPECT_EQ(open.Copy(1, 2, four), 0U);
  open.Close(1);
  open.Close(2);
  EXPECT_EQ(host.Content("C:\\Data\\to.bin"), "a0123456789lm");
}

TEST_P(OpenFilesContract, WhatWasCopiedIsThereForEveryOtherUseOfItsNumbers) {
  host.Write("C:\\Data\\from.bin", "0123456789");
  open.OpenBinary(1, "C:\\Data\\from.bin");
  open.OpenBinary(2, "C:\\Data\\to.bin");
  std::array<std::uint8_t, 3> three{};
  EXPECT_EQ(open.Copy(1, 2, three), 3U);
  EXPECT_EQ(open.Length(2), 3);
  EXPECT_EQ(open.Read(1, 1), "3");
  open.Write(2, "-");
  EXPECT_EQ(open.Copy(1, 2, three), 3U);
  // The source is changed behind the reader's back.
  open.Seek(1, 4);
  open.Write(1, "xyz");
  EXPECT_EQ(open.Copy(1, 2, three), 3U);
  open.Seek(2, 0);
  EXPECT_EQ(open.Read(2, 20), "012-456789");
}

TEST_P(OpenFilesContract, ACopyGoesOnFromOneFileToTheNextAndFromTheNextOne) {
  host.Write("C:\\Data\\from.bin", "0123456789");
  open.OpenInput(1, "C:\\Data\\from.bin");
  std::array<std::uint8_t, 3> three{};
  for (const char* name : {"a", "b"}) {
    open.OpenBinary(2, std::string("C:\\Data\\") + name);
    EXPECT_EQ(open.Copy(1, 2, three), 3U);
    open.Close(2);
  }
  open.Close(1);
  open.OpenBinary(2, "C:\\Data\\joined");
  for (const char* name : {"a", "b"}) {
    open.OpenInput(1, std::string("C:\\Data\\") + name);
    EXPECT_EQ(open.Copy(1, 2, three), 3U);
    open.Close(1);
  }
  open.Close(2);
  EXPECT_EQ(host.Content("C:\\Data\\joined"), "012345");
}

TEST_P(OpenFilesContract, ACopyRunsThroughAChainOfFiles) {
  host.Write("C:\\Data\\a", "012");
  open.OpenBinary(1, "C:\\Data\\a");
  open.OpenBinary(2, "C:\\Data\\b");
  open.OpenBinary(3, "C:\\Data\\c");
  std::array<std::uint8_t, 3> three{};
  EXPECT_EQ(open.Copy(1, 2, three), 3U);
  open.Seek(2, 0);
  EXPECT_EQ(open.Copy(2, 3, three), 3U);
  open.CloseAll();
  EXPECT_EQ(host.Content("C:\\Data\\b"), "012");
  EXPECT_EQ(host.Content("C:\\Data\\c"), "012");
}

TEST_P(OpenFilesContract, ACopyFromTwoFilesKeepsTheirOrder) {
  host.Write("C:\\Data\\a", "01");
  host.Write("C:\\Data\\b", "xy");
  open.OpenInput(1, "C:\\Data\\a");
  open.OpenInput(2, "C:\\Data\\b");
  open.OpenBinary(3, "C:\\Data\\c");
  std::array<std::uint8_t, 1> one{};
  for (const int from : {1, 2, 1, 2}) EXPECT_EQ(open.Copy(from, 3, one), 1U);
  open.CloseAll();
  EXPECT_EQ(host.Content("C:\\Data\\c"), "0x1y");
}

TEST_P(OpenFilesContract, ACopyIntoTwoFilesKeepsTheirOrder) {
  host.Write("C:\\Data\\a", "012345");
  open.OpenInput(1, "C:\\Data\\a");
  open.OpenBinary(2, "C:\\Data\\b");
  open.OpenBinary(3, "C:\\Data\\c");
  std::array<std::uint8_t, 1> one{};
  for (const int to : {2, 3, 2, 3, 2, 3}) EXPECT_EQ(open.Copy(1, to, one), 1U);
  open.CloseAll();
  EXPECT_EQ(host.Content("C:\\Data\\b"), "024");
  EXPECT_EQ(host.Content("C:\\Data\\c"), "135");
}

TEST_P(OpenFilesContract, ACopyGoesOnBehindWhatWasCopiedIntoItsSource) {
  host.Write("C:\\Data\\a", "0123");
  host.Write("C:\\Data\\x", "xy");
  open.OpenBinary(1, "C:\\Data\\a");
  open.OpenBinary(2, "C:\\Data\\b");
  open.OpenInput(5, "C:\\Data\\x");
  std::array<std::uint8_t, 1> one{};
  std::array<std::uint8_t, 4> four{};
  EXPECT_EQ(open.Copy(1, 2, one), 1U);
  EXPECT_EQ(open.Copy(5, 1, four), 2U);
  EXPECT_EQ(open.Copy(1, 2, one), 1U);
  open.CloseAll();
  EXPECT_EQ(host.Content("C:\\Data\\b"), "03");
}

TEST_P(OpenFilesContract, ASourceThatGrewIsCopiedToItsNewEnd) {
  host.Write("C:\\Data\\a", "01");
  open.OpenInput(1, "C:\\Data\\a");
  open.OpenBinary(2, "C:\\Data\\b");
  std::array<std::uint8_t, 1> one{};
  std::array<std::uint8_t, 4> four{};
  EXPECT_EQ(open.Copy(1, 2, one), 1U);
  open.OpenBinary(3, "C:\\Data\\a");
  open.Seek(3, 2);
  open.Write(3, "23");
  EXPECT_EQ(open.Copy(1, 2, four), 3U);
  open.CloseAll();
  EXPECT_EQ(host.Content("C:\\Data\\b"), "0123");
}

TEST_P(OpenFilesContract, AFileIsCopiedIntoItself) {
  host.Write("C:\\Data\\a", "0123");
  open.OpenInput(1, "C:\\Data\\a");
  open.OpenBinary(2, "C:\\Data\\a");
  open.Seek(2, 2);
  std::array<std::uint8_t, 2> two{};
  EXPECT_EQ(open.Copy(1, 2, two), 2U);
  EXPECT_EQ(open.Copy(1, 2, two), 2U);
  open.CloseAll();
  EXPECT_EQ(host.Content("C:\\Data\\a"), "010101");
}

TEST_P(OpenFilesContract, ACopyOfMegabytesIsTheSame) {
  std::string bytes(9'000'001, '\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 7 + i / 255);
  host.Write("C:\\Data\\from.bin", bytes);
  open.OpenInput(1, "C:\\Data\\from.bin");
  open.OpenBinary(2, "C:\\Data\\to.bin");
  std::vector<std::uint8_t> step(12000);
  while (open.Copy(1, 2, step) > 0) {
  }
  EXPECT_EQ(open.Length(2), 9'000'001);
  open.CloseAll();
  EXPECT_TRUE(host.Content("C:\\Data\\to.bin") == bytes);
}

TEST_P(OpenFilesContract, OneFileIsCopiedIntoTwoMegabytesByMegabytes) {
  std::string bytes(12'000'000, '\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 7 + i / 255);
  host.Write("C:\\Data\\from.bin", bytes);
  open.OpenInput(1, "C:\\Data\\from.bin");
  open.OpenBinary(2, "C:\\Data\\a.bin");
  open.OpenBinary(3, "C:\\Data\\b.bin");
  std::vector<std::uint8_t> step(1'500'000);
  for (int i = 0; i < 8; ++i) EXPECT_EQ(open.Copy(1, 2 + i / 2 % 2, step), step.size());
  open.CloseAll();
  std::array<std::string, 2> expected;
  for (std::size_t i = 0; i < 8; ++i) {
    expected.at(i / 2 % 2) += bytes.substr(i * step.size(), step.size());
  }
  EXPECT_TRUE(host.Content("C:\\Data\\a.bin") == expected[0]);
  EXPECT_TRUE(host.Content("C:\\Data\\b.bin") == expected[1]);
}

TEST_P(OpenFilesContract, MegabytesAreReadAsTheyAreUpToTheEnd) {
  std::string bytes(21'000'001, '\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 7 + i / 255);
  host.Write("C:\\Data\\from.bin", bytes);
  open.OpenInput(1, "C:\\Data\\from.bin");
  open.Seek(1, 3);
  std::vector<std::uint8_t> some(17'000'000);
  EXPECT_EQ(open.ReadInto(1, some), some.size());
  EXPECT_TRUE(std::equal(some.begin(), some.end(), bytes.begin() + 3, SameByte));
  std::vector<std::uint8_t> rest(17'000'000, 0xEE);
  EXPECT_EQ(open.ReadInto(1, rest), 3'999'998U);
  EXPECT_TRUE(
      std::equal(rest.begin(), rest.begin() + 3'999'998, bytes.begin() + 17'000'003, SameByte));
  EXPECT_EQ(rest[3'999'998], 0xEE);
  EXPECT_EQ(open.ReadInto(1, rest), 0U);
}

TEST_P(OpenFilesContract, MoreThanAMebibyteIsReadAtOnce) {
  constexpr std::size_t kMebibyte = 1 << 20;
  std::string bytes(2 * kMebibyte + 3, '\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 7 + i / 255);
  host.Write("C:\\Data\\from.bin", bytes);
  open.OpenInput(1, "C:\\Data\\from.bin");
  EXPECT_TRUE(open.Read(1, kMebibyte + 1) == bytes.substr(0, kMebibyte + 1));
  EXPECT_TRUE(open.Read(1, 5 * kMebibyte) == bytes.substr(kMebibyte + 1));
}

TEST_P(OpenFilesContract, ACopyRaises52And54And75) {
  host.Write("C:\\Data\\a.bin", "hello");
  host.Write("C:\\Data\\locked.bin", "kept");
  files.SetAttributes("C:\\Data\\locked.bin", attribute::kReadOnly);
  open.OpenInput(1, "C:\\Data\\a.bin");
  open.OpenOutput(2, "C:\\Data\\b.bin");
  open.OpenBinary(3, "C:\\Data\\locked.bin");
  std::array<std::uint8_t, 4> four{};
  EXPECT_EQ(RaisedBy([&] { open.Copy(1, 7, four); }), 52);
  EXPECT_EQ(RaisedBy([&] { open.Copy(7, 2, four); }), 52);
  EXPECT_EQ(RaisedBy([&] { open.Copy(3, 1, four); }), 54);
  EXPECT_EQ(RaisedBy([&] { open.Copy(2, 3, four); }), 54);
  EXPECT_EQ(RaisedBy([&] { open.Copy(1, 3, four); }), 75);
  open.CloseAll();
  EXPECT_EQ(host.Content("C:\\Data\\locked.bin"), "kept");
}

TEST_P(OpenFilesContract, ANumberThatIsNotOpenRaises52) {
  EXPECT_FALSE(open.IsOpen(7));
  EXPECT_EQ(RaisedBy([&] { open.Write(7, "x"); }), 52);
  EXPECT_EQ(RaisedBy([&] { open.Read(7, 1); }), 52);
  EXPECT_EQ(RaisedBy([&] { open.InputItem(7); }), 52);
  EXPECT_EQ(RaisedBy([&] { open.Length(7); }), 52);
  EXPECT_EQ(RaisedBy([&] { open.Seek(7, 0); }), 52);
  EXPECT_EQ(RaisedBy([&] { open.Close(7); }), 0);
}

TEST_P(OpenFilesContract, TheWrongModeRaises54) {
  host.Write("C:\\Data\\a.txt", "hello");
  open.OpenInput(1, "C:\\Data\\a.txt");
  open.OpenOutput(2, "C:\\Data\\b.txt");
  open.OpenBinary(3, "C:\\Data\\c.bin");
  EXPECT_EQ(RaisedBy([&] { open.Write(1, "x"); }), 54);
  EXPECT_EQ(RaisedBy([&] { open.Read(2, 1); }), 54);
  EXPECT_EQ(RaisedBy([&] { open.InputItem(2); }), 54);
  EXPECT_EQ(RaisedBy([&] { open.InputItem(3); }), 54);
}

TEST_P(OpenFilesContract, ClosingFreesANumber) {
  open.OpenOutput(1, "C:\\Data\\a.txt");
  open.Close(1);
  EXPECT_FALSE(open.IsOpen(1));
  open.OpenOutput(1, "C:\\Data\\b.txt");
  EXPECT_TRUE(open.IsOpen(1));
}

TEST_P(OpenFilesContract, CloseAllClosesEveryNumber) {
  open.OpenOutput(1, "C:\\Data\\a.txt");
  open.Write(1, "hello");
  open.OpenBinary(200, "C:\\Data\\b.bin");
  open.CloseAll();
  EXPECT_FALSE(open.IsOpen(1));
  EXPECT_FALSE(open.IsOpen(200));
  EXPECT_EQ(host.Content("C:\\Data\\a.txt"), "hello");
}

TEST_P(OpenFilesContract, WrittenFilesCountAsChanged) {
  if (!host.ClearsArchive()) GTEST_SKIP() << kNoArchive;
  host.Write("C:\\Data\\a.txt", "old");
  files.SetAttributes("C:\\Data\\a.txt", 0);
  open.OpenOutput(1, "C:\\Data\\a.txt");
  open.Write(1, "newer");
  open.Close(1);
  EXPECT_EQ(files.Attributes("C:\\Data\\a.txt"), attribute::kArchive);
}

TEST_P(OpenFilesContract, ItemsEndAtCommasAndLineEnds) {
  EXPECT_THAT(ItemsOf("one,two\r\nthree\nfour"), ElementsAre("one", "two", "three", "four"));
}

TEST_P(OpenFilesContract, LeadingBlanksOfAnItemAreSkipped) {
  EXPECT_THAT(ItemsOf("  C:\\My Data \t\r\n"), ElementsAre("C:\\My Data \t"));
}

TEST_P(OpenFilesContract, AQuotedItemRunsToItsClosingQuote) {
  EXPECT_THAT(ItemsOf(" \"C:\\a, b\"\r\nnext"), ElementsAre("C:\\a, b", "next"));
  EXPECT_THAT(ItemsOf("\"two\r\nlines\",next"), ElementsAre("two\r\nlines", "next"));
  EXPECT_THAT(ItemsOf("\"open"), ElementsAre("open"));
}

TEST_P(OpenFilesContract, AnEmptyLineIsAnEmptyItem) {
  EXPECT_THAT(ItemsOf("\r\n\r\nx"), ElementsAre("", "", "x"));
  EXPECT_THAT(ItemsOf(",x"), ElementsAre("", "x"));
}

TEST_P(OpenFilesContract, AReturnAloneEndsAnItem) {
  EXPECT_THAT(ItemsOf("x\ry\r"), ElementsAre("x", "y"));
}

TEST_P(OpenFilesContract, TheEndOfTheFileRaises62) {
  host.Write("C:\\Data\\a.txt", "one\r\n");
  open.OpenInput(1, "C:\\Data\\a.txt");
  EXPECT_EQ(open.InputItem(1), "one");
  EXPECT_EQ(RaisedBy([&] { open.InputItem(1); }), 62);
  open.Close(1);
  EXPECT_THAT(ItemsOf(""), IsEmpty());
}

TEST_P(OpenFilesContract, AnItemCanBeLongerThanAnyBuffer) {
  const std::string item(100000, 'x');
  EXPECT_THAT(ItemsOf(item + "\r\nend"), ElementsAre(item, "end"));
}

TEST_P(OpenFilesContract, ALineEndAcrossABufferIsOneLineEnd) {
  const std::string item(4095, 'x');
  EXPECT_THAT(ItemsOf(item + "\r\nend"), ElementsAre(item, "end"));
}

TEST_P(OpenFilesContract, EveryTextComesBackFromItsBytes) {
  for (const std::string text :
       {"plain", "\xC3\xBC", "\xD0\x96", "\xF0\x9F\x98\x80", "\xEF\xBB\xBFx"}) {
    EXPECT_EQ(TextFromFile(open, TextToFile(open, text)), text);
  }
}

// Some editors put a mark before what they write as UTF-8.
TEST_P(OpenFilesContract, AMarkIsNoPartOfTheFirstItem) {
  EXPECT_THAT(ItemsOf("\xEF\xBB\xBF\"C:\\a,b\"\r\nnext\r\n"), ElementsAre("C:\\a,b", "next"));
  EXPECT_THAT(ItemsOf("\xEF\xBB\xBF"), IsEmpty());
}

}  // namespace
}  // namespace tarnvale::testing
