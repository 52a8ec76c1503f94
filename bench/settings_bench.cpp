// How long a settings file takes that holds many list items: prints the
// milliseconds for writing all, changing all, saving again without a change, and
// reading all, each flushed to the medium.
//
//   settings_bench [FOLDER]           a folder on the medium to measure; without
//                                     one the system's temporary folder
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>

#include "hosts/linux/linux_host.h"

namespace {

namespace fs = std::filesystem;
using tarnvale::LinuxHost;
using tarnvale::LinuxSurroundings;

constexpr char kFile[] = "C:\\Tarnvale.ini";
constexpr std::size_t kBuffer = 255;

template <class Work>
double MillisecondsOf(Work&& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
      .count();
}

std::string Item(int index, const char* mark) {
  return "C:\\Documents\\Folder " + std::to_string(index) + "\\" + mark + " file.txt";
}

bool Save(LinuxHost& host, int keys, const char* mark) {
  bool saved = true;
  for (int i = 0; i < keys; ++i) {
    saved = host.profiles.Write("Entries", std::to_string(i), Item(i, mark), kFile) && saved;
  }
  return host.profiles.Flush(kFile) && saved;
}

bool Load(LinuxHost& host, int keys, const char* mark) {
  bool same = true;
  for (int i = 0; i < keys; ++i) {
    same = same &&
           host.profiles.Read("Entries", std::to_string(i), "", kBuffer, kFile) == Item(i, mark);
  }
  return same;
}

// False when something came back wrong: then the times mean nothing.
bool Measure(const LinuxSurroundings& surroundings, int keys) {
  bool right = true;
  double times[4] = {};
  {
    LinuxHost host(surroundings);
    // A section behind the list, so that the list grows in the middle.
    right = host.profiles.Write("Entries", "x", "1", kFile) &&
            host.profiles.Write("Log", "Save", "True", kFile) && host.profiles.Flush(kFile);
    times[0] = MillisecondsOf([&] { right = Save(host, keys, "old") && right; });
    times[1] = MillisecondsOf([&] { right = Save(host, keys, "new") && right; });
    times[2] = MillisecondsOf([&] { right = Save(host, keys, "new") && right; });
  }
  LinuxHost host(surroundings);
  times[3] = MillisecondsOf([&] { right = Load(host, keys, "new") && right; });
  std::printf("%8d %10.1f %10.1f %10.1f %10.1f\n", keys, times[0], times[1], times[2], times[3]);
  return right;
}

}  // namespace

int main(int argc, char** argv) {
  const fs::path base = argc > 1 ? fs::path(argv[1]) : fs::temp_directory_path();
  const fs::path folder = base / "tarnvale-settings-bench";
  std::printf("%8s %10s %10s %10s %10s  (ms)\n", "keys", "write", "change", "same", "read");
  bool right = true;
  for (const int keys : {1000, 10000, 100000}) {
    fs::create_directories(folder / "drive");
    LinuxSurroundings surroundings;
    surroundings.root = (folder / "drive").string();
    surroundings.state_folder = (folder / "state").string();
    surroundings.processes.lock_folder = (folder / "locks").string();
    right = Measure(surroundings, keys) && right;
    fs::remove_all(folder);
  }
  if (!right) std::fputs("a value was lost\n", stderr);
  return right ? 0 : 1;
}
