#include "tvz/packing.h"

#include <string>

#include "base/failure.h"
#include "codec/archive.h"
#include "native/native_archive.h"
#include "native/native_file.h"
#include "ui/headless_machine.h"

namespace tarnvale {
namespace {

void BuildArchive(const std::string& native, const std::string& folder, const TreeSums& expected,
                  Progress& progress) {
  NativeHost host;
  HeadlessMachine machine(host.Parts());
  NativeWorkers workers;
  usercontrol11 builder(ArchiveParts(machine.Parts(), workers));
  builder.BuildArchiveProgress.Listen([&](std::int16_t done) { progress.Show("adding", done); });
  builder.CompressArchiveProgress.Listen(
      [&](std::int16_t done) { progress.Show("packing", done); });
  const std::int32_t records =
      builder.SaveFilesToArchiv(PathOfNative(host, folder), PathOfNative(host, native), true);
  // The program's list stops short in trees of more than 32,768 entries.
  if (records != expected.files) {
    throw CommandFailure(folder, "has " + std::to_string(expected.files) +
                                     " files, of which an archive would hold " +
                                     std::to_string(records));
  }
}

std::string Explain(const ProgramError& error) {
  if (error.Number() == kOverflow) return "is too large for one archive (256 MiB packed)";
  return error.Description();
}

}  // namespace

std::vector<LeftOut> PackFolder(const std::string& archive, const std::string& folder,
                                Progress& progress) {
  const std::string root = RealFolder(folder, folder);
  const ArchivePlace place = PlaceOfArchive(archive);
  if (LiesIn(place.folder, root)) {
    throw UsageError(archive + ": can't lie in the folder that is packed");
  }
  const TreeSums sums = CheckTree(root);
  About(archive, [&] {
    NewArchive made(place);
    try {
      BuildArchive(made.InWork(), root, sums, progress);
    } catch (const ProgramError& error) {
      throw CommandFailure(error.Number() == kDiskFull ? archive : folder, Explain(error));
    }
    made.PutInPlace();
  });
  return sums.left_out;
}

}  // namespace tarnvale
