#include "codec/archive.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/failure.h"
#include "base/numbers.h"
#include "base/text.h"
#include "codec/container.h"
#include "codec/enumeration.h"
#include "codec/extraction_names.h"
#include "codec/file_numbers.h"

namespace tarnvale {
namespace {

constexpr std::size_t kFilesAhead = 256;

Path StageOf(const Path& archive) {
  return archive + ".tmp";
}

// Where the container of an archive lies while it is written or read.
Path ContainerOf(const Path& archive, bool compress) {
  return compress ? StageOf(archive) : archive;
}

// Required: cut down after a division in double precision, so that 29 of 100
// show as 28.
std::int16_t PercentOf(std::int32_t done, std::int32_t count) {
  const double share = static_cast<double>(done) / static_cast<double>(count);
  return static_cast<std::int16_t>(std::floor(share * 100));
}

// Every place of `part` taken out of `text`, from left to right.
std::string Without(std::string_view text, std::string_view part) {
  std::string rest;
  std::size_t from = 0;
  for (auto at = text.find(part); at != std::string_view::npos; at = text.find(part, from)) {
    rest += text.substr(from, at - from);
    from = at + part.size();
  }
  rest += text.substr(from);
  return rest;
}

}  // namespace

usercontrol11::usercontrol11(const ArchiveParts& machine,
                             std::function<void(ArchiveStatus)> on_status)
    : machine_(machine) {
  if (on_status) StatusChange.Listen(std::move(on_status));
  Raise(ArchiveStatus::kReady);
}

usercontrol11::Codec usercontrol11::MakeCodec(void (usercontrol11::*handler)(std::int16_t)) {
  Codec codec;
  codec.huffman =
      std::make_shared<clsHuffman>(machine_.files, machine_.open_files, machine_.workers);
  codec.progress = codec.huffman->Progress.Subscribe(
      [this, handler](std::int16_t percent) { (this->*handler)(percent); });
  return codec;
}

// A nested operation may put another codec into the member meanwhile: this one is
// held until it is done.
void usercontrol11::Decode(const Codec& codec, const Path& stream, const Path& target) {
  const auto huffman = codec.huffman;
  huffman->DecodeFile(stream, target);
}

void usercontrol11::Forward(Signal<std::int16_t>& event, std::int16_t percent) {
  event.Emit(percent);
  machine_.loop.Yield();
}

bool usercontrol11::RequireArchive(const Path& archive, const std::string& message) {
  if (ArchiveExists(archive)) return true;
  machine_.boxes.Show({.text = message, .icon = BoxIcon::kStop});
  return false;
}

// Relative names. A tree without files gives one empty name.
// Chosen: a name that no extraction takes back is left out, as all behind it
// could never be unpacked.
std::vector<std::string> usercontrol11::CollectNames(const Path& root) {
  const TextList paths = EnumerateFiles(machine_.files, root, true);
  std::vector<std::string> names;
  names.reserve(paths.UpperBound() + 1);
  for (std::size_t i = 0; i <= paths.UpperBound(); ++i) {
    std::string name = Without(paths[i], root);
    if (name != ".." && name != "." && !HoldsDrive(name)) names.push_back(std::move(name));
  }
  return names;
}

std::int32_t usercontrol11::SaveFilesToArchiv(const Path& root_folder, const Path& archive,
                                              bool compress) {
  Raise(ArchiveStatus::kBuildStarts);
  Huffman1 = MakeCodec(&usercontrol11::Huffman1_Progress);
  Raise(ArchiveStatus::kEnumerating);
  const Path root = WithBackslash(root_folder);
  const std::vector<std::string> names = CollectNames(root);
  Raise(ArchiveStatus::kEnumerated);
  if (ArchiveExists(archive)) machine_.files.Delete(archive);
  Raise(ArchiveStatus::kBuilding);
  BuildContainer(root, ContainerOf(archive, compress), names);
  Raise(ArchiveStatus::kBuilt);
  if (compress) CompressStage(StageOf(archive), archive);
  // Required: without compression "done" comes twice.
  Raise(compress ? ArchiveStatus::kCompressed : ArchiveStatus::kDone);
  machine_.loop.Yield();
  Raise(ArchiveStatus::kDone);
  return ToInt32(static_cast<std::int64_t>(names.size()));
}

void usercontrol11::BuildContainer(const Path& root, const Path& container,
                                   const std::vector<std::string>& names) {
  const std::int32_t count = ToInt32(static_cast<std::int64_t>(names.size()));
  // Required: a stage file of the user's that was left is written over from its
  // start, and a longer old tail stays.
  const int number = FreeFileNumber(machine_.open_files);
  machine_.open_files.OpenOwn(number, container);
  ContainerWriter writer(machine_.open_files, number);
  writer.WriteCount(count);
  std::int32_t done = 0;
  ByteBuffer content;
  ReadAhead(root, names, 0);
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i % kFilesAhead == 0) ReadAhead(root, names, i + kFilesAhead);
    AddRecord(writer, root + names[i], names[i], content);
    BuildArchiveProgress.Emit(PercentOf(++done, count));
  }
  ReadAhead(root, names, names.size());
  writer.Finish();
  machine_.open_files.Close(number);
}

// The next files are read while those before them are packed.
void usercontrol11::ReadAhead(const Path& root, const std::vector<std::string>& names,
                              std::size_t from) {
  std::vector<Path> files;
  for (std::size_t i = from; i < std::min(from + kFilesAhead, names.size()); ++i) {
    files.push_back(root + names[i]);
  }
  machine_.workers.ReadAhead(std::move(files));
}

void usercontrol11::AddRecord(ContainerWriter& writer, const Path& file, const std::string& name,
                              ByteBuffer& content) {
  writer.WriteName(name);
  if (const auto read = machine_.workers.TakeRead(file)) {
    writer.WriteContent(*read);
  } else {
    ReadWholeAndClose(machine_.open_files, OpenUnderFreeNumber(machine_.open_files, file), content);
    writer.WriteContent(content.View());
  }
  machine_.loop.Yield();
  const SplitName split = SplitAtLastBackslash(file);
  AddingFile.Emit(split.file, split.folder, ToInt32(machine_.files.Length(file)));
}

void usercontrol11::CompressStage(const Path& stage, const Path& archive) {
  Raise(ArchiveStatus::kCompressing);
  machine_.loop.Yield();
  const auto huffman = Huffman1.huffman;  // as in Decode
  huffman->EncodeFile(stage, archive);
  machine_.loop.Yield();
  const std::int32_t container_size = ToInt32(machine_.files.Length(stage));
  CompressionDone.Emit(container_size, ToInt32(machine_.files.Length(archive)));
  machine_.files.Delete(stage);
}

// All names of a container, as far as it can be read.
std::vector<std::string> usercontrol11::NamesIn(const Path& container) {
  std::vector<std::string> names;
  const int number = OpenUnderFreeNumber(machine_.open_files, container);
  PassedOver pass;
  pass.Step([&] {
    ContainerReader reader(machine_.open_files, number);
    for (std::int32_t left = reader.ReadCount(); left > 0; --left) {
      names.push_back(reader.ReadName());
    }
  });
  machine_.open_files.Close(number);
  return names;
}

// Required: names are taken as they stand; nothing keeps them in the folder. One
// with a drive in it makes no path, also where the system would take it for one.
void usercontrol11::WriteOne(const Path& target_folder, const ContainerRecord& record,
                             const Path& container) {
  if (HoldsDrive(record.name)) throw ProgramError(kPathNotFound);
  ExtractionNames names(machine_.files, target_folder, [&] { return NamesIn(container); });
  const std::optional<Path> file = names.PathOf(record.name);
  if (!file) return;
  names.MakeNewFile();
  WriteEntry(*file, record);
}

void usercontrol11::WriteEntry(const Path& file, const ContainerRecord& record) {
  const int number = FreeFileNumber(machine_.open_files);
  machine_.open_files.OpenOutput(number, file, Rights::kNewFile);
  WriteBytes(machine_.open_files, number, record.content.View());
  machine_.open_files.Close(number);
}

std::int32_t usercontrol11::ExtractFilesFromArchiv(const Path& archive, const Path& target_folder,
                                                   bool compress) {
  Raise(ArchiveStatus::kExtractionStarts);
  Huffman2 = MakeCodec(&usercontrol11::Huffman2_Progress);
  if (!RequireArchive(archive, "The archive does not exist!")) return 0;
  if (compress) {
    Raise(ArchiveStatus::kExtractionDecompresses);
    Decode(Huffman2, archive, StageOf(archive));
    Raise(ArchiveStatus::kExtractionDecompressed);
  }
  const Path target = WithBackslash(target_folder);
  Raise(ArchiveStatus::kExtractionReads);
  const int number = OpenUnderFreeNumber(machine_.open_files, ContainerOf(archive, compress));
  ContainerReader reader(machine_.open_files, number);
  const std::int32_t count = reader.ReadCount();
  Raise(ArchiveStatus::kExtracting);
  ContainerRecord record;
  ExtractionNames names(machine_.files, target,
                        [&] { return NamesIn(ContainerOf(archive, compress)); });
  for (std::int32_t done = 0; done < count;) {
    reader.ReadRecord(record);
    if (HoldsDrive(record.name)) throw ProgramError(kPathNotFound);
    const std::optional<Path> file = names.PathOf(record.name);
    const SplitName split = SplitAtLastBackslash(file.value_or(target + record.name));
    ExtractingFileFromArchive.Emit(split.file, split.folder,
                                   ToInt32(static_cast<std::int64_t>(record.content.Size())));
    if (file) {
      names.MakeNewFile();
      WriteEntry(*file, record);
    }
    machine_.loop.Yield();
    ExtractArchiveProgress.Emit(PercentOf(++done, count));
  }
  machine_.open_files.Close(number);
  Raise(ArchiveStatus::kExtracted);
  if (compress) machine_.files.Delete(StageOf(archive));
  return count;
}

void usercontrol11::ReadFiles(const Path& archive, bool compress) {
  Raise(ArchiveStatus::kListingStarts);
  Huffman3 = MakeCodec(&usercontrol11::Huffman3_Progress);
  if (!RequireArchive(archive, "The Archive Does Not Exist!")) return;
  if (compress) {
    Raise(ArchiveStatus::kListingDecompresses);
    Decode(Huffman3, archive, StageOf(archive));
  }
  Raise(ArchiveStatus::kListingReads);
  const int number = OpenUnderFreeNumber(machine_.open_files, ContainerOf(archive, compress));
  ContainerReader reader(machine_.open_files, number);
  const std::int32_t count = reader.ReadCount();
  ContainerRecord record;
  for (std::int32_t i = 0; i < count; ++i) {
    reader.ReadRecord(record);
    machine_.loop.Yield();
    ReturnContents.Emit(record.name, ToInt32(static_cast<std::int64_t>(record.content.Size())));
  }
  machine_.open_files.Close(number);
  if (compress) machine_.files.Delete(StageOf(archive));
  Raise(ArchiveStatus::kListed);
}

bool usercontrol11::ExtractNamed(ContainerReader& reader, const std::string& entry_name,
                                 const Path& target_folder, const Path& container) {
  const std::string wanted = machine_.files.FoldCase(entry_name);
  const std::int32_t count = reader.ReadCount();
  ContainerRecord record;
  for (std::int32_t i = 0; i < count; ++i) {
    reader.ReadRecord(record);
    // Required: the first one in any case, though one of exactly this name may follow.
    if (machine_.files.FoldCase(record.name) == wanted) {
      WriteOne(target_folder, record, container);
      return true;
    }
    machine_.loop.Yield();
  }
  return false;
}

void usercontrol11::ExtractFile(const Path& archive, const std::string& entry_name,
                                Path& target_folder, bool compress) {
  Raise(ArchiveStatus::kSingleStarts);
  Huffman4 = MakeCodec(&usercontrol11::Huffman4_Progress);
  if (!RequireArchive(archive, "The Archive Does Not Exist!")) return;
  if (compress) {
    Raise(ArchiveStatus::kSingleDecompresses);
    Decode(Huffman4, archive, StageOf(archive));
  }
  Raise(ArchiveStatus::kSingleReads);
  target_folder = WithBackslash(target_folder);
  const int number = OpenUnderFreeNumber(machine_.open_files, ContainerOf(archive, compress));
  ContainerReader reader(machine_.open_files, number);
  // Required: once the entry was found, the container stays open and the stage
  // file stays.
  if (!ExtractNamed(reader, entry_name, target_folder, ContainerOf(archive, compress))) {
    machine_.open_files.Close(number);
    if (compress) machine_.files.Delete(StageOf(archive));
  }
  Raise(ArchiveStatus::kSingleDone);
}

void usercontrol11::DeCompressArchive(const Path& archive, const Path& output) {
  Huffman5 = MakeCodec(&usercontrol11::Huffman5_Progress);
  Decode(Huffman5, archive, output);
}

}  // namespace tarnvale
