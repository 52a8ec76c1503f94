#include "tests/chain/eavesdropper.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <sstream>

#include "tests/hosts/contract/native_files.h"

namespace tarnvale::testing {
namespace {

namespace fs = std::filesystem;

bool IsProcess(const fs::path& entry) {
  const std::string name = entry.filename();
  return std::all_of(name.begin(), name.end(),
                     [](unsigned char letter) { return std::isdigit(letter) != 0; });
}

std::string OutputOf(const char* command) {
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(::popen(command, "r"), ::pclose);
  std::string output;
  std::array<char, 4096> bytes{};
  while (pipe != nullptr) {
    const std::size_t count = std::fread(bytes.data(), 1, bytes.size(), pipe.get());
    if (count == 0) break;
    output.append(bytes.data(), count);
  }
  return output;
}

}  // namespace

void Eavesdropper::Look() {
  ReadCommandLines();
  ReadWindowTitles();
}

void Eavesdropper::ReadCommandLines() {
  for (const auto& entry : fs::directory_iterator("/proc")) {
    if (!IsProcess(entry.path())) continue;
    // Empty for a process that has just gone.
    std::string line = ReadNative(entry.path() / "cmdline");
    std::replace(line.begin(), line.end(), '\0', ' ');
    command_lines_.insert(line);
  }
}

// It gives up when a window goes away meanwhile; the next look sees the others.
// A line of the listing: 0x1a00007 "Title": ("instance" "class") ...
void Eavesdropper::ReadWindowTitles() {
  std::istringstream listing(OutputOf("xwininfo -root -tree 2>/dev/null"));
  for (std::string line; std::getline(listing, line);) {
    const std::size_t begin = line.find('"');
    const std::size_t end = line.find("\": (");
    if (begin == std::string::npos || end == std::string::npos) continue;
    window_titles_.insert(line.substr(begin + 1, end - begin - 1));
  }
}

}  // namespace tarnvale::testing
