#include "platform/linux/descriptor.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/resource.h>

#include <cerrno>
#include <string>

namespace tarnvale {
namespace {

/// The most that a file of this process may hold, for as long as it lives.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    ::getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    handler_ = ::signal(SIGXFSZ, SIG_IGN);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &before_);
    ::signal(SIGXFSZ, handler_);
  }

 private:
  rlimit before_{};
  sighandler_t handler_ = SIG_DFL;
};

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

// The system takes what fits, and only the next piece tells that there is no more
// room.
TEST(WriteAll, GoesOnBehindAPieceAndSaysWhyItFailed) {
  const Descriptor file = NamelessFile();
  ASSERT_TRUE(file);
  bool done = true;
  int error = 0;
  {
    const FileSizeLimit limit(1000);
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
