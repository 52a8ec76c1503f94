// Savings of settings that are killed.
#include <chrono>
#include <cstdio>
#include <random>
#include <string>

#include "hosts/linux/linux_host.h"
#include "tests/reliability/checks.h"
#include "tests/reliability/workbench.h"

namespace tarnvale::reliability {
namespace {

namespace fs = std::filesystem;

constexpr int kSections = 10;
constexpr int kKeys = 40;
constexpr char kHead[] = "; kept as it is\n";
constexpr char kFile[] = "C:\\Tarnvale.ini";

std::string ValueOf(int generation, int key) {
  return std::string(static_cast<std::size_t>(20 + key), static_cast<char>('a' + generation % 26)) +
         std::to_string(generation);
}

void Save(const LinuxSurroundings& surroundings, int generation) {
  LinuxHost host(surroundings);
  ProfileFiles& profiles = host.profiles;
  for (int section = 0; section < kSections; ++section) {
    for (int key = 0; key < kKeys; ++key) {
      profiles.Write("Section" + std::to_string(section), "Key" + std::to_string(key),
                     ValueOf(generation, key), kFile);
    }
  }
  if (!profiles.Flush(kFile)) throw ProgramError(kPathFileAccess);
}

// The file of a generation, written out.
std::string FileOf(int generation) {
  std::string text = kHead;
  for (int section = 0; section < kSections; ++section) {
    text += "[Section" + std::to_string(section) + "]\n";
    for (int key = 0; key < kKeys; ++key) {
      text += "Key" + std::to_string(key) + "=" + ValueOf(generation, key) + "\n";
    }
  }
  return text;
}

}  // namespace

int CheckSettingsKills(int kills, std::uint64_t seed) {
  const WorkFolder work;
  const LinuxSurroundings surroundings = SurroundingsIn(work.Path());
  const fs::path file = work.Path() / "drive" / "Tarnvale.ini";
  std::mt19937_64 random(seed);
  Findings findings;
  int generation = 0;
  WriteFile(file, FileOf(generation));
  KillMoments moments(RunWhole([&] { Save(surroundings, 0); }));
  if (ReadFile(file) != FileOf(0)) findings.Add("a saving changed what it didn't name");
  int runs = 0, killed = 0, old_files = 0, new_files = 0, left = 0, survivors = 0;
  while (killed < kills && findings.Count() == 0) {
    ++runs;
    const int next = generation + 1;
    const bool in_work = RunAndKill([&] { Save(surroundings, next); }, moments.Next(random));
    moments.Learn(in_work);
    if (in_work) ++killed;
    const auto content = ReadFile(file);
    if (content == FileOf(next)) {
      ++new_files;
    } else if (content == FileOf(generation)) {
      ++old_files;
    } else {
      findings.Add("the settings file is torn or gone after a kill");
    }
    left += CountTemporaries(work.Path());
    if (runs % 3 == 0) fs::remove_all(surroundings.state_folder);
    generation = next + 1;
    RunWhole([&] { Save(surroundings, generation); });
    if (ReadFile(file) != FileOf(generation)) findings.Add("the next saving didn't arrive");
    const int remaining = CountTemporaries(work.Path());
    survivors += remaining;
    if (remaining > 0) findings.Add("a temporary survived the next saving");
  }
  if (left == 0) findings.Add("no kill ever hit a saving in work");
  std::printf(
      "settings kills: %d of %d runs killed in work, %d temporaries left by kills, %d files old "
      "and\n"
      "                %d new after kills; %d survived the next saving, %d failures\n",
      killed, runs, left, old_files, new_files, survivors, findings.Count());
  return findings.Count();
}

}  // namespace tarnvale::reliability
