// Compares the drawings of the controls with their goldens.
//
//   control_goldens                 names what changed; 1 when something did
//   control_goldens --diff FOLDER   also writes golden, drawing and difference
//   control_goldens --renew         writes what changed as the new goldens
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>

#include "tests/kit/goldens.h"
#include "tools/pictures/png.h"

namespace {

using tarnvale::testing::GoldenScene;

struct Order {
  std::optional<std::filesystem::path> diff_folder;
  bool renew = false;
};

std::optional<Order> OrderOf(int argc, char** argv) {
  if (argc == 1) return Order{};
  const std::string flag = argv[1];
  if (argc == 2 && flag == "--renew") return Order{std::nullopt, true};
  if (argc == 3 && flag == "--diff") return Order{argv[2], false};
  return std::nullopt;
}

// True when the scene is as its golden, or is now.
bool Settle(const GoldenScene& scene, const Order& order) {
  const auto difference = tarnvale::testing::DifferenceFromGolden(scene);
  if (!difference) return true;
  std::printf("%s\n", difference->c_str());
  const std::filesystem::path file = tarnvale::testing::GoldenFile(scene);
  if (order.renew) return tarnvale::WritePng(file, scene.picture);
  if (order.diff_folder) {
    const auto golden = tarnvale::ReadPng(file);
    tarnvale::WritePng(
        *order.diff_folder / (scene.name + ".png"),
        tarnvale::testing::SideBySide(golden.value_or(tarnvale::Raster{}), scene.picture));
  }
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  const std::optional<Order> order = OrderOf(argc, argv);
  if (!order) {
    std::fprintf(stderr, "usage: control_goldens [--diff FOLDER | --renew]\n");
    return 2;
  }
  bool settled = true;
  for (const std::string& group : tarnvale::testing::GoldenGroups()) {
    for (const GoldenScene& scene : tarnvale::testing::DrawGroupOfScenes(group)) {
      settled = Settle(scene, *order) && settled;
    }
  }
  return settled ? 0 : 1;
}
