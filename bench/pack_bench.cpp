// Packing a tree of small files against tar and zstd.
//
//   pack_bench [FILES] [ROUNDS]
//
// Makes a tree of FILES (20,000) files of 1 to 8 KiB, 40 in a folder, and one of
// a quarter of them. In every round both contestants pack the large tree, into
// new files, in turn, and ours packs the small one. Prints medians; ends with 1
// when a goal isn't met.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include <unistd.h>

#include "bench/warm_memory.h"
#include "codec/archive.h"
#include "hosts/linux/linux_host.h"
#include "hosts/linux/linux_workers.h"
#include "ui/headless_machine.h"

namespace tarnvale {
namespace {

namespace fs = std::filesystem;

/// A box ends the bench.
class LoudBoxes : public MessageBoxes {
 public:
  BoxAnswer Show(const BoxRequest& request) override {
    std::fprintf(stderr, "pack_bench: %s\n", request.text.c_str());
    std::exit(2);
  }
};

void MakeTree(const fs::path& root, int files) {
  std::mt19937 random(3);
  const std::string letters = "      eeeeetttaaooiinnsshhrdlucmfwygpbvk,.TAQxz1\n";
  for (int i = 0; i < files; ++i) {
    const fs::path folder = root / ("folder" + std::to_string(i / 40));
    if (i % 40 == 0) fs::create_directories(folder);
    std::string content(1024 + random() % 7168, ' ');
    for (char& c : content) c = letters[random() % letters.size()];
    std::ofstream(folder / ("file" + std::to_string(i) + ".txt"), std::ios::binary) << content;
  }
}

double SecondsOf(const std::function<void()>& work) {
  WarmMemory(512);
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double Median(std::vector<double> times) {
  std::sort(times.begin(), times.end());
  return times[times.size() / 2];
}

class Contest {
 public:
  explicit Contest(int files)
      : files_(files),
        folder_(fs::temp_directory_path() / ("pack_bench." + std::to_string(::getpid()))) {
    MakeTree(folder_ / "large", files_);
    MakeTree(folder_ / "small", files_ / 4);
  }
  Contest(const Contest&) = delete;
  Contest& operator=(const Contest&) = delete;
  ~Contest() {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }

  void Round(int round) {
    const std::string suffix = std::to_string(round);
    const double small = SecondsOf([&] { Pack("small", "small" + suffix, files_ / 4); });
    double ours = 0;
    double peer = 0;
    const auto run_ours = [&] {
      ours = SecondsOf([&] { Pack("large", "ours" + suffix, files_); });
    };
    const auto run_peer = [&] {
      const std::string command = "tar -C '" + folder_.string() +
                                  "' -cf - large | zstd -q -1 -T0 > '" +
                                  (folder_ / ("peer" + suffix)).string() + "'";
      peer = SecondsOf([&] {
        if (std::system(command.c_str()) != 0) std::exit(2);
      });
    };
    if (round % 2 == 0) {
      run_ours();
      run_peer();
    } else {
      run_peer();
      run_ours();
    }
    if (round == 0) return;  // warmed up
    small_.push_back(small);
    ours_.push_back(ours);
    peer_.push_back(peer);
  }

  bool Report() const {
    const double ours = Median(ours_);
    const double ratio = ours / Median(peer_);
    const double growth = ours / Median(small_) / 4;
    std::printf("%d files: ours %.3f s   tar | zstd -1 -T0 %.3f s   ratio %.2f  goal 1.00  %s\n",
                files_, ours, Median(peer_), ratio, ratio <= 1 ? "ok" : "MISSED");
    std::printf(
        "%d files: %.3f s   a file of the large tree takes %.2f times as long  goal 1.50  "
        "%s\n",
        files_ / 4, Median(small_), growth, growth <= 1.5 ? "ok" : "MISSED");
    return ratio <= 1 && growth <= 1.5;
  }

 private:
  void Pack(const std::string& tree, const std::string& archive, int files) {
    LinuxSurroundings surroundings;
    surroundings.root = folder_.string();
    surroundings.state_folder = (folder_ / "state").string();
    LoudBoxes boxes;
    LinuxHost host(surroundings);
    HeadlessMachine machine(host.Parts(), boxes);
    LinuxWorkers workers{DrivePaths(surroundings.root)};
    usercontrol11 archiver(ArchiveParts(machine.Parts(), workers));
    if (archiver.SaveFilesToArchiv("C:\\" + tree, "C:\\" + archive + ".tvz", true) != files) {
      std::fprintf(stderr, "pack_bench: not all files were packed\n");
      std::exit(2);
    }
  }

  int files_;
  fs::path folder_;
  std::vector<double> small_, ours_, peer_;
};

}  // namespace
}  // namespace tarnvale

int main(int argc, char** argv) {
  const int files = argc > 1 ? std::atoi(argv[1]) : 20000;
  const int rounds = argc > 2 ? std::atoi(argv[2]) : 5;
  std::printf("medians of %d rounds after one to warm up, contestants in turn\n", rounds);
  tarnvale::Contest contest(files);
  for (int round = 0; round <= rounds; ++round) contest.Round(round);
  return contest.Report() ? 0 : 1;
}
