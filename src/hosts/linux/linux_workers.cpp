#include "hosts/linux/linux_workers.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <new>
#include <system_error>
#include <thread>
#include <vector>

#include "hosts/linux/descriptor.h"
#include "hosts/linux/file_state.h"
#include "hosts/linux/own_links.h"

namespace tarnvale {
namespace {

// Larger ones keep a processor busy by themselves.
constexpr std::size_t kLargestAhead = std::size_t{256} << 10U;
// Of all files of one call.
constexpr std::size_t kMostAhead = std::size_t{8} << 20U;
constexpr std::size_t kLargePageBytes = std::size_t{2} << 20U;

}  // namespace

// Of those that this process may use: in a container fewer than the machine has.
std::size_t LinuxWorkers::Helpers() {
  cpu_set_t allowed;
  if (::sched_getaffinity(0, sizeof allowed, &allowed) != 0) return 0;
  return static_cast<std::size_t>(CPU_COUNT(&allowed)) - 1;
}

void LinuxWorkers::Run(std::size_t most_helpers, const std::function<void()>& work) {
  std::vector<std::jthread> helpers;
  const std::size_t count = std::min(most_helpers, Helpers());
  helpers.reserve(count);
  try {
    while (helpers.size() < count) helpers.emplace_back(work);
  } catch (const std::system_error&) {
    // Without more threads it takes longer.
  }
  work();
}

void LinuxWorkers::LetOthersRun() {
  ::sched_yield();
}

// New memory in small pages costs as much time as what goes into it. Where the system has
// no large ones to spare, nothing is lost.
void LinuxWorkers::WillFill(std::span<std::uint8_t> bytes) {
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): only its address counts
  const auto address = reinterpret_cast<std::uintptr_t>(bytes.data());
  const std::size_t skipped = (kLargePageBytes - address % kLargePageBytes) % kLargePageBytes;
  if (bytes.size() < skipped + kLargePageBytes) return;
  const std::size_t whole = (bytes.size() - skipped) / kLargePageBytes * kLargePageBytes;
  ::madvise(bytes.data() + skipped, whole, MADV_HUGEPAGE);
}

void LinuxWorkers::ReadAhead(std::vector<Path> files) {
  if (reader_.joinable()) {
    // Instead of waiting.
    ReadAll(*in_work_);
    reader_.join();
  }
  std::swap(ready_, in_work_);
  next_taken_ = 0;
  in_work_->files.clear();
  in_work_->count = in_work_->begun = 0;
  if (files.empty()) in_work_->bytes.reset();
  if (files.empty() || Helpers() == 0) return;
  for (const Path& file : files) {
    in_work_->files.emplace_back().native = drive_.ToNative(file).value_or("");
  }
  try {
    constexpr std::size_t kRoom = kMostAhead + 2 * kLargestAhead;
    if (!in_work_->bytes) in_work_->bytes = std::make_unique_for_overwrite<std::uint8_t[]>(kRoom);
    reader_ = std::jthread([&ahead = *in_work_] { ReadAll(ahead); });
  } catch (const std::bad_alloc&) {
    // They are read when they are asked for.
  } catch (const std::system_error&) {
    // Without another thread nothing is read ahead.
  }
}

// The files that nobody has begun yet.
void LinuxWorkers::ReadAll(Ahead& ahead) {
  for (std::size_t i = ahead.begun++; i < ahead.files.size(); i = ahead.begun++) {
    if (ahead.count < kMostAhead) ReadOne(ahead.files[i], ahead);
  }
}

// One that fails is read once more when it is asked for, and fails where it counts.
void LinuxWorkers::ReadOne(AheadFile& file, Ahead& ahead) {
  // Should a path lead to a pipe or a terminal, opening doesn't wait.
  const Descriptor opened =
      OpenByOwnLinks(AT_FDCWD, file.native, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (!opened || ::fstat(opened.Get(), &file.info) != 0) return;
  if (!S_ISREG(file.info.st_mode) || file.info.st_size > off_t{kLargestAhead}) return;
  const auto size = static_cast<std::size_t>(file.info.st_size);
  std::uint8_t* const to = &ahead.bytes[ahead.count.fetch_add(size)];
  const ssize_t got = ::pread(opened.Get(), to, size, 0);
  if (got < 0 || static_cast<std::size_t>(got) != size) return;
  file.content = {to, size};
}

std::optional<std::span<const std::uint8_t>> LinuxWorkers::TakeRead(const Path& file) {
  if (ready_->files.empty()) return std::nullopt;
  const std::optional<std::string> native = drive_.ToNative(file);
  while (next_taken_ < ready_->files.size() && ready_->files[next_taken_].native != native) {
    ++next_taken_;
  }
  if (next_taken_ == ready_->files.size()) return std::nullopt;
  const AheadFile& read = ready_->files[next_taken_++];
  struct stat info {};
  if (!read.content || ::lstat(read.native.c_str(), &info) != 0 || !SameState(info, read.info)) {
    return std::nullopt;
  }
  return read.content;
}

}  // namespace tarnvale
