#include "codec/file_numbers.h"

#include <gmock/gmock.h>

#include "tests/support/fake_machine.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;

/// A file that is cut short as soon as its length was asked for.
class ShrinkingFiles : public FakeOpenFiles {
 public:
  ShrinkingFiles(FakeFiles& files, const Path& file)
      : FakeOpenFiles(files), files_(files), file_(file) {}

  std::int64_t Length(int number) override {
    const std::int64_t before = FakeOpenFiles::Length(number);
    files_.Write(file_, "ab");
    return before;
  }

 private:
  FakeFiles& files_;
  const Path file_;
};

TEST(FileNumbersTest, AFileThatGetsShorterBeforeItIsReadIsFilledUpWithZeros) {
  FakeMachine machine;
  const Path file = "C:\\a.txt";
  machine.files.Write(file, "long");
  ShrinkingFiles open_files(machine.files, file);
  ByteBuffer bytes(std::string_view("of the file before"));
  ReadWholeAndClose(open_files, OpenUnderFreeNumber(open_files, file), bytes);
  EXPECT_THAT(bytes.Bytes(), ElementsAre('a', 'b', 0, 0));
  EXPECT_EQ(open_files.OpenCount(), 0);
}

}  // namespace
}  // namespace tarnvale::testing
