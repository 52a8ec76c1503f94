// Copy passes that are killed.
#include <chrono>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "core/file_sync.h"
#include "hosts/linux/linux_host.h"
#include "tests/reliability/checks.h"
#include "tests/reliability/workbench.h"
#include "ui/headless_machine.h"

namespace tarnvale::reliability {
namespace {

namespace fs = std::filesystem;

struct TreeFile {
  std::string place;  // "folder/name"
  std::size_t size_bytes = 0;
};

std::vector<TreeFile> FilesOfTree() {
  std::vector<TreeFile> files;
  const std::vector<std::size_t> sizes{0, 1, 700, 4096, 20'000, 300'000};
  for (int folder = 0; folder < 4; ++folder) {
    for (int file = 0; file < 6; ++file) {
      const std::string place =
          "folder" + std::to_string(folder) + "/file" + std::to_string(file) + ".dat";
      files.push_back({place, sizes[static_cast<std::size_t>(folder + file) % sizes.size()]});
    }
  }
  files.push_back({"large.dat", 3'000'000});
  return files;
}

// One series: a tree whose content ages, and its copy.
class CopyKills {
 public:
  CopyKills(std::uint64_t seed, CopyPass pass)
      : random_(seed), pass_(std::move(pass)), surroundings_(SurroundingsIn(work_.Path())) {}

  int Run(int kills) {
    WriteGeneration();
    KillMoments moments(RunWhole([this] { pass_(surroundings_); }));
    while (kills_ < kills) Round(moments);
    std::printf(
        "copy kills: %d of %d runs killed in work, %d temporaries left by kills, %d targets old,\n"
        "            %d new and %d not there yet after kills; %d survived the next pass, "
        "%d failures\n",
        kills_, runs_, left_by_kills_, old_, new_, absent_, survivors_, findings_.Count());
    if (left_by_kills_ == 0) findings_.Add("no kill ever hit a copy in work");
    return findings_.Count();
  }

 private:
  fs::path Source() const { return work_.Path() / "drive" / "source"; }
  fs::path Target() const { return work_.Path() / "drive" / "target"; }

  void WriteGeneration() {
    ++generation_;
    for (const TreeFile& file : files_) {
      const fs::path path = Source() / file.place;
      fs::create_directories(path.parent_path());
      WriteFile(path, ContentOf(file.place, generation_, file.size_bytes));
      // The sync goes by whole seconds, and rounds follow one another faster.
      fs::last_write_time(path, start_ + std::chrono::seconds(generation_));
    }
  }

  void Round(KillMoments& moments) {
    ++runs_;
    // Every fifth round copies into nothing.
    const bool fresh = runs_ % 5 == 0;
    if (fresh) fs::remove_all(Target());
    WriteGeneration();
    const bool killed = RunAndKill([this] { pass_(surroundings_); }, moments.Next(random_));
    moments.Learn(killed);
    if (killed) ++kills_;
    CheckOldOrNew(fresh);
    if (fs::exists(Target())) left_by_kills_ += CountTemporaries(Target());
    // As after a loss of power, when the bookkeeping never reached the disk.
    if (runs_ % 3 == 0) fs::remove_all(surroundings_.state_folder);
    RunWhole([this] { pass_(surroundings_); });
    CheckAllNew();
  }

  void CheckOldOrNew(bool fresh) {
    for (const TreeFile& file : files_) {
      const auto content = ReadFile(Target() / file.place);
      if (!content) {
        ++absent_;
        if (!fresh) findings_.Add(file.place + " is gone after a kill");
      } else if (*content == ContentOf(file.place, generation_, file.size_bytes)) {
        ++new_;
      } else if (!fresh && *content == ContentOf(file.place, generation_ - 1, file.size_bytes)) {
        ++old_;
      } else {
        findings_.Add(file.place + " is torn after a kill");
      }
    }
  }

  void CheckAllNew() {
    for (const TreeFile& file : files_) {
      if (ReadFile(Target() / file.place) != ContentOf(file.place, generation_, file.size_bytes)) {
        findings_.Add(file.place + " isn't new after the next pass");
      }
    }
    const int left = CountTemporaries(work_.Path());
    survivors_ += left;
    if (left > 0) findings_.Add("a temporary survived the next pass");
    const fs::path slots = fs::path(surroundings_.state_folder) / "copies";
    if (fs::exists(slots) && !fs::is_empty(slots)) findings_.Add("a slot survived the next pass");
  }

  WorkFolder work_;
  std::mt19937_64 random_;
  CopyPass pass_;
  LinuxSurroundings surroundings_;
  std::vector<TreeFile> files_ = FilesOfTree();
  fs::file_time_type start_ = fs::file_time_type::clock::now() - std::chrono::hours(24);
  Findings findings_;
  int generation_ = 0;
  int runs_ = 0;
  int kills_ = 0;
  int left_by_kills_ = 0;
  int survivors_ = 0;
  int old_ = 0;
  int new_ = 0;
  int absent_ = 0;
};

}  // namespace

void SyncPass(const LinuxSurroundings& surroundings) {
  LinuxHost host(surroundings);
  HeadlessMachine machine(host.Parts());
  FileSync(machine.Parts().files, machine.Parts().loop)
      .SyncFolders("C:\\source", "C:\\target", false);
}

int CheckCopyKills(int kills, std::uint64_t seed, const CopyPass& pass) {
  return CopyKills(seed, pass).Run(kills);
}

}  // namespace tarnvale::reliability
