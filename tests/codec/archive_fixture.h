// An archive builder that writes down all that it reports.
#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "codec/archive.h"
#include "tests/support/fake_machine.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {

/// Little-endian fields and bytes, put together by hand.
inline std::string Number16(int value) {
  return {static_cast<char>(value & 0xFF), static_cast<char>((value >> 8) & 0xFF)};
}
inline std::string Number32(std::int64_t value) {
  return Number16(static_cast<int>(value & 0xFFFF)) +
         Number16(static_cast<int>((value >> 16) & 0xFFFF));
}
inline std::string Record(const std::string& name, const std::string& content) {
  return Number16(static_cast<int>(name.size())) + name +
         Number32(static_cast<std::int64_t>(content.size())) + content;
}

class ArchiveFixture : public ::testing::Test {
 protected:
  ArchiveFixture() {
    files.MakeFolder("C:\\Store");
    Record1(archiver.BuildArchiveProgress, "build");
    Record1(archiver.ExtractArchiveProgress, "extract");
    Record1(archiver.CompressArchiveProgress, "compress");
    Record1(archiver.DeCompressArchiveProgress, "decompress");
    Record1(archiver.DeCompressArchiveUserRequestProgress, "request");
    Record1(archiver.ReturnContentsDecryptingProcess, "list");
    Record1(archiver.ExtractSingleDecompressProcess, "single");
    archiver.AddingFile.Listen([this](const std::string& file, const Path& folder, int size) {
      reported.push_back("adding " + file + " in " + folder + " " + std::to_string(size));
    });
    archiver.ExtractingFileFromArchive.Listen(
        [this](const std::string& file, const Path& folder, int size) {
          reported.push_back("extracting " + file + " to " + folder + " " + std::to_string(size));
        });
    archiver.CompressionDone.Listen([this](int container, int packed) {
      reported.push_back("sizes " + std::to_string(container) + " " + std::to_string(packed));
    });
    archiver.ReturnContents.Listen([this](const std::string& name, int size) {
      reported.push_back("entry " + name + " " + std::to_string(size));
    });
  }

  void Record1(Signal<std::int16_t>& event, std::string name) {
    event.Listen([this, name = std::move(name)](std::int16_t percent) {
      reported.push_back(name + " " + std::to_string(percent));
    });
  }

  /// The yield before which an event came, for the order of both.
  int YieldsDuring(const std::function<void()>& statement) {
    const int before = machine.loop.YieldCount();
    statement();
    return machine.loop.YieldCount() - before;
  }

  FakeMachine machine;
  FakeFiles& files = machine.files;
  std::vector<std::string> reported;
  usercontrol11 archiver{machine.Interfaces(), [this](ArchiveStatus status) {
                           reported.push_back("status " + std::to_string(static_cast<int>(status)));
                         }};
  const Path archive = "C:\\Store\\a.tvz";
  const Path stage = "C:\\Store\\a.tvz.tmp";
};

}  // namespace tarnvale::testing
