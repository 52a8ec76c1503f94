#include "tests/reliability/workbench.h"

#include <signal.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "hosts/linux/temporaries.h"
#include "platform/temporary_name.h"

namespace tarnvale::reliability {

using std::chrono::microseconds;

namespace {

namespace fs = std::filesystem;

constexpr int kMostReported = 20;

pid_t Start(const std::function<void()>& work) {
  std::fflush(nullptr);
  const pid_t child = ::fork();
  if (child < 0) throw std::runtime_error("no child could be started");
  if (child > 0) return child;
  int code = 0;
  try {
    work();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "child: %s\n", error.what());
    code = 1;
  }
  std::fflush(nullptr);
  ::_exit(code);
}

int WaitFor(pid_t child) {
  int status = 0;
  while (::waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) throw std::runtime_error("the child got lost");
  }
  return status;
}

}  // namespace

std::string ContentOf(const std::string& name, int generation, std::size_t size_bytes) {
  // SplitMix64, started differently for each name and generation.
  std::uint64_t state = static_cast<std::uint64_t>(generation) * 0x9e3779b97f4a7c15U;
  for (const char c : name) state = (state ^ static_cast<unsigned char>(c)) * 0x100000001b3U;
  std::string bytes(size_bytes, '\0');
  for (std::size_t at = 0; at < size_bytes; at += sizeof state) {
    state += 0x9e3779b97f4a7c15U;
    std::uint64_t word = (state ^ (state >> 30U)) * 0xbf58476d1ce4e5b9U;
    word = (word ^ (word >> 27U)) * 0x94d049bb133111ebU;
    word ^= word >> 31U;
    std::memcpy(bytes.data() + at, &word, std::min(sizeof word, size_bytes - at));
  }
  return bytes;
}

WorkFolder::WorkFolder() : WorkFolder(fs::temp_directory_path()) {}

WorkFolder::WorkFolder(fs::path where) {
  std::string name = (where / "tarnvale-reliability-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr) {
    throw std::system_error(errno, std::generic_category(), name);
  }
  path_ = name;
  fs::create_directory(path_ / "drive");
}

WorkFolder::~WorkFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

LinuxSurroundings SurroundingsIn(const fs::path& folder) {
  LinuxSurroundings surroundings;
  surroundings.root = (folder / "drive").string();
  surroundings.state_folder = (folder / "state").string();
  return surroundings;
}

void WriteFile(const fs::path& file, const std::string& bytes) {
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  out << bytes;
  if (!out.flush()) throw std::runtime_error("can't write " + file.string());
}

std::optional<std::string> ReadFile(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) return std::nullopt;
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

int CountTemporaries(const fs::path& tree) {
  int count = 0;
  for (const auto& entry : fs::recursive_directory_iterator(tree)) {
    if (IsTemporaryName(entry.path().filename().string())) ++count;
  }
  return count;
}

bool RunAndKill(const std::function<void()>& work, microseconds delay) {
  const pid_t child = Start(work);
  timespec wait{delay.count() / 1'000'000, (delay.count() % 1'000'000) * 1000};
  while (::nanosleep(&wait, &wait) != 0 && errno == EINTR) continue;
  ::kill(child, SIGKILL);
  const int status = WaitFor(child);
  if (WIFEXITED(status) && WEXITSTATUS(status) != 0) throw std::runtime_error("the child failed");
  return WIFSIGNALED(status);
}

microseconds RunWhole(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  const int status = WaitFor(Start(work));
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) throw std::runtime_error("the child failed");
  return std::chrono::duration_cast<microseconds>(std::chrono::steady_clock::now() - start);
}

microseconds KillMoments::Next(std::mt19937_64& random) const {
  std::uniform_int_distribution<std::int64_t> moment(0, span_.count());
  return microseconds(moment(random));
}

void KillMoments::Learn(bool killed) {
  const microseconds step = killed ? span_ / 20 : -span_ / 6;
  span_ = std::max(span_ + step, microseconds(200));
}

void Findings::Add(const std::string& what) {
  if (++count_ <= kMostReported) std::printf("FOUND: %s\n", what.c_str());
}

}  // namespace tarnvale::reliability
