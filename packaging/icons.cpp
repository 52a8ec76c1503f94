// Writes the program's icon in all sizes of an icon theme: `icons FOLDER` makes
// FOLDER/32x32/apps/tarnvale.png and so on.
#include <cstdio>
#include <filesystem>
#include <string>

#include "shell/program_icon.h"
#include "tools/pictures/png.h"

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  for (const int size : {16, 22, 24, 32, 48, 64, 128, 256, 512}) {
    const std::string side = std::to_string(size);
    const auto file =
        std::filesystem::path(argv[1]) / (side + "x" + side) / "apps" / "tarnvale.png";
    if (tarnvale::WritePng(file, tarnvale::DrawProgramIcon(size))) continue;
    std::fprintf(stderr, "can't write %s\n", file.c_str());
    return 1;
  }
  return 0;
}
