// One step of the folder benchmark; folder_bench.sh puts them together.
//
//   folder_bench make FOLDER          the tree: 500 folders of 40 small files,
//                                     20 files of 50 MiB
//   folder_bench touch FOLDER         gives 1% of the small files a new content
//                                     and time
//   folder_bench sync FIRST SECOND    one pass of the folder sync, one way
//   folder_bench flush FOLDER         prints the seconds that one flush takes
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <deque>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "core/file_sync.h"
#include "hosts/linux/linux_host.h"
#include "ui/flush_medium.h"
#include "ui/headless_machine.h"

namespace {

namespace fs = std::filesystem;

constexpr int kFolders = 500;
constexpr int kFilesInFolder = 40;
constexpr int kLargeFiles = 20;
constexpr std::size_t kLargeBytes = std::size_t{50} * 1024 * 1024;
constexpr int kTouchedEvery = 100;

std::string RandomBytes(std::size_t count, std::mt19937_64& random) {
  std::string bytes(count, '\0');
  for (char& byte : bytes) byte = static_cast<char>(random());
  return bytes;
}

fs::path SmallFile(const fs::path& tree, int folder, int file) {
  return tree / ("folder" + std::to_string(folder)) / ("file" + std::to_string(file) + ".dat");
}

void Write(const fs::path& file, const std::string& bytes) {
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  out << bytes;
  if (!out.flush()) throw fs::filesystem_error("write", file, std::error_code());
}

void Make(const fs::path& tree) {
  std::mt19937_64 random(1);
  std::uniform_int_distribution<std::size_t> size(1024, 8192);
  for (int folder = 0; folder < kFolders; ++folder) {
    fs::create_directories(SmallFile(tree, folder, 0).parent_path());
    for (int file = 0; file < kFilesInFolder; ++file) {
      Write(SmallFile(tree, folder, file), RandomBytes(size(random), random));
    }
  }
  const std::string large = RandomBytes(kLargeBytes, random);
  for (int file = 0; file < kLargeFiles; ++file) {
    Write(tree / ("large" + std::to_string(file) + ".dat"), std::to_string(file) + large);
  }
}

void Touch(const fs::path& tree) {
  std::mt19937_64 random(std::random_device{}());
  for (int i = 0; i < kFolders * kFilesInFolder; i += kTouchedEvery) {
    const fs::path file = SmallFile(tree, i / kFilesInFolder, i % kFilesInFolder);
    // The sync goes by whole seconds, and rounds follow one another faster.
    const auto next = fs::last_write_time(file) + std::chrono::seconds(2);
    Write(file, RandomBytes(fs::file_size(file), random));
    fs::last_write_time(file, next);
  }
}

tarnvale::Path PathOf(const std::string& native) {
  return tarnvale::DrivePaths("/").FromNative(fs::absolute(native).string());
}

tarnvale::LinuxSurroundings Surroundings() {
  tarnvale::LinuxSurroundings surroundings;
  surroundings.state_folder = (fs::temp_directory_path() / "tarnvale-bench-state").string();
  return surroundings;
}

// As many timers as the program has, whose ticks do nothing: a yield then costs
// what the program's does while nobody touches its windows.
class IdleTimers {
 public:
  explicit IdleTimers(tarnvale::TimerQueue& queue) {
    for (int i = 0; i < 21; ++i) timers_.emplace_back(queue, 100 + 50 * i, true);
  }

 private:
  std::deque<tarnvale::Timer> timers_;
};

void Sync(const std::string& first, const std::string& second) {
  tarnvale::LinuxHost host(Surroundings());
  tarnvale::HeadlessMachine machine(host.Parts());
  tarnvale::EventLoop& loop = machine.Parts().loop;
  const IdleTimers timers(loop.Timers());
  tarnvale::FileSync(machine.Parts().files, loop).SyncFolders(PathOf(first), PathOf(second), false);
}

void Flush(const std::string& folder) {
  tarnvale::LinuxHost host(Surroundings());
  tarnvale::HeadlessMachine machine(host.Parts());
  const auto start = std::chrono::steady_clock::now();
  tarnvale::FlushMedium(machine.Parts().files, machine.Parts().loop, PathOf(folder));
  const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start;
  std::printf("%.4f\n", passed.count());
}

int Run(const std::string& step, int argc, char** argv) {
  if (step == "make" && argc == 3) {
    Make(argv[2]);
  } else if (step == "touch" && argc == 3) {
    Touch(argv[2]);
  } else if (step == "sync" && argc == 4) {
    Sync(argv[2], argv[3]);
  } else if (step == "flush" && argc == 3) {
    Flush(argv[2]);
  } else {
    std::fprintf(stderr, "usage: folder_bench make|touch|sync|flush FOLDER [SECOND]\n");
    return 2;
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(argc > 1 ? argv[1] : "", argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "folder_bench: %s\n", error.what());
    return 1;
  }
}
