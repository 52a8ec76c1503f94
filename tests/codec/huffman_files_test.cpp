// The file forms of the codec.
#include <gmock/gmock.h>

#include "tests/codec/codec_under_test.h"
#include "tests/codec/generated_inputs.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

class HuffmanFilesTest : public ::testing::Test {
 protected:
  HuffmanFilesTest() { machine.files.MakeFolder("C:\\Data"); }

  // The error that a statement raises.
  static ProgramError ErrorOf(const std::function<void()>& statement) {
    try {
      statement();
    } catch (const ProgramError& error) {
      return error;
    }
    return ProgramError(0, "", "no error");
  }

  FakeMachine machine;
  FakeFiles& files = machine.files;
  NoWorkers nobody;
  clsHuffman codec{machine.files, machine.open_files, nobody};
  const Path source = "C:\\Data\\source";
  const Path packed = "C:\\Data\\packed";
};

TEST_F(HuffmanFilesTest, EncodeFileWritesTheStreamOfAFile) {
  files.Write(source, "ab");
  codec.EncodeFile(source, packed);
  EXPECT_EQ(files.Content(packed), std::string("HE3\r\x03\x02\0\0\0\x02\0a\x01"
                                               "b\x01\x02\x02",
                                               17));
  EXPECT_EQ(files.Content(source), "ab");
  EXPECT_EQ(machine.open_files.OpenCount(), 0);
}

TEST_F(HuffmanFilesTest, DecodeFileWritesTheFileOfAStream) {
  files.Write(packed, "HE0\rhello");
  codec.DecodeFile(packed, source);
  EXPECT_EQ(files.Content(source), "hello");
  EXPECT_EQ(machine.open_files.OpenCount(), 0);
}

TEST_F(HuffmanFilesTest, ALongerOldDestinationLeavesNoTail) {
  files.Write(source, "aa");
  files.Write(packed, std::string(1000, 'x'));
  codec.EncodeFile(source, packed);
  EXPECT_EQ(files.Content(packed), "HE0\raa");
}

TEST_F(HuffmanFilesTest, AFileCanBeItsOwnDestination) {
  files.Write(source, "aa");
  codec.EncodeFile(source, source);
  EXPECT_EQ(files.Content(source), "HE0\raa");
}

TEST_F(HuffmanFilesTest, AMissingSourceOfEncodeFileIsNamedAndTheDestinationKept) {
  files.Write(packed, "old");
  const ProgramError error = ErrorOf([&] { codec.EncodeFile(source, packed); });
  EXPECT_EQ(error.Number(), kProgramDefinedError);
  EXPECT_EQ(error.Source(), "Tarnvale Compressor");
  EXPECT_EQ(error.Description(), "Source Backup File Not Found");
  EXPECT_EQ(files.Content(packed), "old");
  EXPECT_FALSE(files.Exists(source));
}

TEST_F(HuffmanFilesTest, AMissingSourceOfDecodeFileIsNamedAndTheDestinationKept) {
  files.Write(source, "old");
  const ProgramError error = ErrorOf([&] { codec.DecodeFile(packed, source); });
  EXPECT_EQ(error.Number(), kProgramDefinedError);
  EXPECT_EQ(error.Source(), "clsHuffman.DecodeFile()");
  EXPECT_EQ(error.Description(), "Source file does not exist");
  EXPECT_EQ(files.Content(source), "old");
}

TEST_F(HuffmanFilesTest, AFileWhoseLengthCannotBeReadCountsAsMissing) {
  files.Write(source, "ab");
  files.FailNext("Length", 70);
  EXPECT_EQ(RaisedBy([&] { codec.EncodeFile(source, packed); }), kProgramDefinedError);
  files.FailNext("Length", 70);
  EXPECT_EQ(RaisedBy([&] { codec.DecodeFile(source, packed); }), kProgramDefinedError);
  EXPECT_EQ(RaisedBy([&] { codec.EncodeFile("C:\\Data", packed); }), kProgramDefinedError);
}

TEST_F(HuffmanFilesTest, AnEmptyFileRaises9BothWaysAndStaysOpen) {
  files.Write(source, "");
  files.Write(packed, "old");
  EXPECT_EQ(RaisedBy([&] { codec.EncodeFile(source, packed); }), 9);
  EXPECT_EQ(RaisedBy([&] { codec.DecodeFile(source, packed); }), 9);
  EXPECT_EQ(files.Content(packed), "old");
  EXPECT_EQ(machine.open_files.OpenCount(), 2);
}

TEST_F(HuffmanFilesTest, ADamagedStreamLeavesTheDestinationAsItWas) {
  files.Write(packed, "HE1\rhello");
  files.Write(source, "old");
  EXPECT_EQ(RaisedBy([&] { codec.DecodeFile(packed, source); }), kProgramDefinedError);
  EXPECT_EQ(files.Content(source), "old");
}

TEST_F(HuffmanFilesTest, TheDestinationIsDeletedOnlyAfterTheLastReport) {
  files.Write(source, "ab");
  files.Write(packed, "old");
  std::vector<int> reported;
  codec.Progress.Listen([&](std::int16_t percent) {
    reported.push_back(percent);
    EXPECT_EQ(files.Content(packed), "old");
  });
  codec.EncodeFile(source, packed);
  EXPECT_EQ(reported, (std::vector<int>{7, 12, 100}));
}

TEST_F(HuffmanFilesTest, ADestinationThatCannotBeDeletedRaisesItsError) {
  files.Write(source, "ab");
  files.Write(packed, "old");
  files.FailOn("Delete", packed, 75);
  EXPECT_EQ(RaisedBy([&] { codec.EncodeFile(source, packed); }), 75);
  EXPECT_EQ(files.Content(packed), "old");
}

TEST_F(HuffmanFilesTest, AFullMediumRaises61AndTheDestinationStaysOpen) {
  files.Write(source, "ab");
  machine.open_files.FailNext("Write", 61);
  EXPECT_EQ(RaisedBy([&] { codec.EncodeFile(source, packed); }), 61);
  EXPECT_EQ(machine.open_files.OpenCount(), 1);
  EXPECT_EQ(RaisedBy([&] { files.Delete(packed); }), 70);
}

TEST_F(HuffmanFilesTest, ASourceThatCannotBeReadStaysOpen) {
  files.Write(source, "ab");
  machine.open_files.FailNext("Read", 57);
  EXPECT_EQ(RaisedBy([&] { codec.EncodeFile(source, packed); }), 57);
  EXPECT_EQ(machine.open_files.OpenCount(), 1);
}

TEST_F(HuffmanFilesTest, FixedNumbersOfOthersStayFree) {
  files.Write(source, "ab");
  files.Write("C:\\Data\\log", "log");
  machine.open_files.OpenInput(1, "C:\\Data\\log");
  machine.open_files.OpenInput(256, "C:\\Data\\log");
  codec.EncodeFile(source, packed);
  EXPECT_THAT(machine.open_files.Calls(), ::testing::Contains("OpenBinary " + source + " -> 257"));
  EXPECT_THAT(machine.open_files.Calls(), ::testing::Contains("OpenOwn " + packed + " -> 257"));
  machine.open_files.CloseAll();
}

}  // namespace
}  // namespace tarnvale::testing
