#include "hosts/linux/descriptor.h"

#include <gtest/gtest.h>
#include <sys/mman.h>

#include <cerrno>
#include <string>

#include "tests/hosts/contract/full_medium.h"

namespace tarnvale {
namespace {

Descriptor NamelessFile() {
  return Descriptor(::memfd_create("write_all", MFD_CLOEXEC));
}

TEST(WriteAll, WritesAllOfIt) {
  const Descriptor file = NamelessFile();
  ASSERT_TRUE(file);
  ASSERT_TRUE(WriteAll(file.Get(), "first "));
  ASSERT_TRUE(WriteAll(file.Get(), "second"));
  std::string got(100, '\0');
  got.resize(static_cast<std::size_t>(::pread(file.Get(), got.data(), got.size(), 0)));
  EXPECT_EQ(got, "first second");
}

// The system takes what fits, and only the next piece shows that there is no more
// room.
TEST(WriteAll, GoesOnBehindAPieceAndSaysWhyItFailed) {
  const Descriptor file = NamelessFile();
  ASSERT_TRUE(file);
  bool done = true;
  int error = 0;
  {
    const testing::FullMedium full(1000);
    done = WriteAll(file.Get(), std::string(1500, 'a'));
    error = errno;
  }
  EXPECT_FALSE(done);
  EXPECT_EQ(error, EFBIG);
  EXPECT_EQ(::lseek(file.Get(), 0, SEEK_END), 1000);
}

TEST(WriteAll, HasNothingToDoForNothing) {
  EXPECT_TRUE(WriteAll(-1, ""));
}

}  // namespace
}  // namespace tarnvale
