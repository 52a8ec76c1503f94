// Writes the gallery of the drawn controls: `gallery FOLDER`.
#include <cstdio>
#include <filesystem>

#include "tools/gallery/scenes.h"
#include "tools/pictures/png.h"

namespace {

bool Write(const std::filesystem::path& folder, const tarnvale::GallerySheet& sheet) {
  const std::filesystem::path file = folder / (sheet.file + ".png");
  if (tarnvale::WritePng(file, sheet.picture)) return true;
  std::fprintf(stderr, "can't write %s\n", file.string().c_str());
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: gallery FOLDER\n");
    return 2;
  }
  const std::filesystem::path folder = argv[1];
  bool written = true;
  for (int type = 1; type <= 14; ++type) {
    written = Write(folder, tarnvale::ButtonSheet(type)) && written;
  }
  for (const auto& sheet :
       {tarnvale::ButtonColorSheet(), tarnvale::ButtonPictureSheet(), tarnvale::ProgressSheet(),
        tarnvale::GroupSheet(), tarnvale::CheckBoxSheet()}) {
    written = Write(folder, sheet) && written;
  }
  return written ? 0 : 1;
}
