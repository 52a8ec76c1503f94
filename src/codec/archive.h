// The archive builder: packs a folder tree into one file, lists it, unpacks it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/signal.h"
#include "codec/container.h"
#include "codec/huffman.h"
#include "platform/files.h"
#include "platform/open_files.h"
#include "platform/workers.h"
#include "ui/event_loop.h"
#include "ui/message_boxes.h"

namespace tarnvale {

class ContainerWriter;

/// The values of usercontrol11::StatusChange.
enum class ArchiveStatus : std::int32_t {
  kReady = 0,
  kCompressing = 1,
  kCompressed = 2,
  kBuilding = 3,
  kBuilt = 4,
  kExtracting = 5,
  kExtracted = 6,
  kEnumerating = 7,
  kEnumerated = 8,
  kBuildStarts = 9,
  kExtractionStarts = 10,
  kExtractionReads = 11,
  kExtractionDecompresses = 12,
  kExtractionDecompressed = 13,
  kDone = 14,
  kListingReads = 15,
  kListed = 16,
  kListingDecompresses = 17,
  kListingStarts = 18,
  kSingleStarts = 19,
  kSingleDecompresses = 20,
  kSingleReads = 21,
  kSingleDone = 22,
};

/// What it uses of a machine; any bundle that has these can be given for it. The
/// workers, which few bundles have, may be given separately.
struct ArchiveParts {
  template <class Parts>
  // NOLINTNEXTLINE(google-explicit-constructor): it is that machine, seen narrowly.
  ArchiveParts(const Parts& parts) : ArchiveParts(parts, nobody) {}
  template <class Parts>
  ArchiveParts(const Parts& parts, Workers& helpers)
      : files(parts.files),
        open_files(parts.open_files),
        loop(parts.loop),
        boxes(parts.boxes),
        workers(helpers) {}

  static inline NoWorkers nobody;

  FileSystem& files;
  OpenFiles& open_files;
  EventLoop& loop;
  MessageBoxes& boxes;
  Workers& workers;
};

/// Packs and unpacks. An archive is a container, or, with the compress flag, the
/// Huffman stream of one, with a file of the archive's name and ".tmp" as the
/// stage in between.
///
/// Every operation yields. All raise what the codec and the file system raise,
/// and 5, 6, 62 or 67 of their own; then they are left at once: open files stay
/// open, the stage file stays. An archive that is missing shows a box instead.
class usercontrol11 {
 public:
  /// `on_status` hears every StatusChange, the first one included, which comes
  /// from this constructor.
  explicit usercontrol11(const ArchiveParts& machine,
                         std::function<void(ArchiveStatus)> on_status = {});
  usercontrol11(const usercontrol11&) = delete;
  usercontrol11& operator=(const usercontrol11&) = delete;

  /// Packs all files below a folder, see EnumerateFiles, replacing the archive.
  /// Returns the number of records.
  std::int32_t SaveFilesToArchiv(const Path& root_folder, const Path& archive, bool compress);

  /// Writes all entries below a folder; returns their number. Names are joined
  /// to the folder as they stand and may lead out of it.
  std::int32_t ExtractFilesFromArchiv(const Path& archive, const Path& target_folder,
                                      bool compress);

  /// Reports all entries.
  void ReadFiles(const Path& archive, bool compress);

  /// Writes the first entry of this name, whatever its letters' case. The
  /// caller sees the folder with a backslash added. After an entry was found,
  /// the container stays open and a stage file stays: as long as the process
  /// lives, what would delete that file raises 70.
  void ExtractFile(const Path& archive, const std::string& entry_name, Path& target_folder,
                   bool compress);

  /// One DecodeFile, whatever the stream holds.
  void DeCompressArchive(const Path& archive, const Path& output);

  // Percents are 0 to 100, sizes bytes.
  Signal<ArchiveStatus> StatusChange;
  Signal<std::int16_t> BuildArchiveProgress;
  Signal<std::int16_t> ExtractArchiveProgress;
  Signal<std::int16_t> CompressArchiveProgress;
  Signal<std::int16_t> DeCompressArchiveProgress;
  Signal<std::int16_t> DeCompressArchiveUserRequestProgress;
  /// File name, folder with a backslash at its end, size.
  Signal<const std::string&, const Path&, std::int32_t> AddingFile;
  Signal<const std::string&, const Path&, std::int32_t> ExtractingFileFromArchive;
  /// Sizes of the container and of the archive.
  Signal<std::int32_t, std::int32_t> CompressionDone;
  /// Entry name and size.
  Signal<const std::string&, std::int32_t> ReturnContents;
  Signal<std::int16_t> ReturnContentsDecryptingProcess;
  Signal<std::int16_t> ExtractSingleDecompressProcess;

 private:
  /// A codec and the connection to its progress; the connection ends when a new
  /// codec takes the place.
  struct Codec {
    std::shared_ptr<clsHuffman> huffman;
    Subscription progress;
  };

  void Raise(ArchiveStatus status) { StatusChange.Emit(status); }
  Codec MakeCodec(void (usercontrol11::*handler)(std::int16_t));
  static void Decode(const Codec& codec, const Path& stream, const Path& target);
  void Forward(Signal<std::int16_t>& event, std::int16_t percent);
  void Huffman1_Progress(std::int16_t percent) { Forward(CompressArchiveProgress, percent); }
  void Huffman2_Progress(std::int16_t percent) { Forward(DeCompressArchiveProgress, percent); }
  void Huffman3_Progress(std::int16_t percent) {
    Forward(ReturnContentsDecryptingProcess, percent);
  }
  void Huffman4_Progress(std::int16_t percent) { Forward(ExtractSingleDecompressProcess, percent); }
  void Huffman5_Progress(std::int16_t percent) {
    Forward(DeCompressArchiveUserRequestProgress, percent);
  }

  std::vector<std::string> CollectNames(const Path& root);
  void BuildContainer(const Path& root, const Path& container,
                      const std::vector<std::string>& names);
  void ReadAhead(const Path& root, const std::vector<std::string>& names, std::size_t from);
  void AddRecord(ContainerWriter& writer, const Path& file, const std::string& name,
                 ByteBuffer& content);
  void CompressStage(const Path& stage, const Path& archive);
  bool ArchiveExists(const Path& archive) { return !machine_.files.List(archive, {}).empty(); }
  bool RequireArchive(const Path& archive, const std::string& message);
  std::vector<std::string> NamesIn(const Path& container);
  void WriteOne(const Path& target_folder, const ContainerRecord& record, const Path& container);
  void WriteEntry(const Path& file, const ContainerRecord& record);
  bool ExtractNamed(ContainerReader& reader, const std::string& entry_name,
                    const Path& target_folder, const Path& container);

  const ArchiveParts machine_;
  Codec Huffman1;  ///< SaveFilesToArchiv
  Codec Huffman2;  ///< ExtractFilesFromArchiv
  Codec Huffman3;  ///< ReadFiles
  Codec Huffman4;  ///< ExtractFile
  Codec Huffman5;  ///< DeCompressArchive
};

}  // namespace tarnvale
