#include "tests/support/fake_open_files.h"

#include <algorithm>

#include "base/failure.h"
#include "platform/input_item.h"

namespace tarnvale::testing {
namespace {

constexpr int kHighestNumber = 511;

bool IsReadOnly(const FakeNode& node) {
  return (node.flags & attribute::kReadOnly) != 0;
}

}  // namespace

FakeOpenFiles::FakeOpenFiles(FakeFiles& files) : files_(files) {
  files_.RefuseToDelete([this](const FakeNode& node) {
    return std::any_of(open_.begin(), open_.end(),
                       [&](const auto& open) { return open.second.node.get() == &node; });
  });
}

void FakeOpenFiles::CheckFree(int number) const {
  if (number < 1 || number > kHighestNumber) throw ProgramError(kBadFileNumber);
  if (open_.count(number) != 0) throw ProgramError(kFileAlreadyOpen);
}

FakeOpenFiles::OpenFile& FakeOpenFiles::Require(int number) {
  const auto open = open_.find(number);
  if (open == open_.end()) throw ProgramError(kBadFileNumber);
  return open->second;
}

void FakeOpenFiles::OpenInput(int number, const Path& file) {
  Enter("OpenInput", file, std::to_string(number));
  CheckFree(number);
  const auto node = files_.Find(file);
  if (node == nullptr) {
    // Tells a missing folder from a missing file.
    files_.RequireFolderOf(file);
    throw ProgramError(kFileNotFound);
  }
  if (node->is_folder) throw ProgramError(kPathFileAccess);
  open_[number] = {node, Mode::kInput, false, 0};
}

void FakeOpenFiles::OpenOutput(int number, const Path& file, Rights) {
  Enter("OpenOutput", file, std::to_string(number));
  CheckFree(number);
  const auto node = files_.FileForWriting(file);
  if (IsReadOnly(*node)) throw ProgramError(kPathFileAccess);
  files_.SetContent(*node, {});
  open_[number] = {node, Mode::kOutput, true, 0};
}

void FakeOpenFiles::OpenBinary(int number, const Path& file) {
  Enter("OpenBinary", file, std::to_string(number));
  CheckFree(number);
  const auto node = files_.FileForWriting(file);
  open_[number] = {node, Mode::kBinary, !IsReadOnly(*node), 0};
}

void FakeOpenFiles::OpenOwn(int number, const Path& file) {
  Enter("OpenOwn", file, std::to_string(number));
  CheckFree(number);
  const auto node = files_.FileForWriting(file);
  if (IsReadOnly(*node)) throw ProgramError(kPathFileAccess);
  open_[number] = {node, Mode::kBinary, true, 0};
}

void FakeOpenFiles::Write(int number, std::string_view bytes) {
  Enter("Write", std::to_string(number));
  OpenFile& open = Require(number);
  if (open.mode == Mode::kInput) throw ProgramError(kBadFileMode);
  if (!open.writable) throw ProgramError(kPathFileAccess);
  if (!open.node->on_medium) throw ProgramError(kDeviceIoError);
  if (bytes.empty()) return;
  std::string content = std::move(open.node->content);
  if (content.size() < open.position + bytes.size()) content.resize(open.position + bytes.size());
  std::copy(bytes.begin(), bytes.end(),
            content.begin() + static_cast<std::ptrdiff_t>(open.position));
  open.position += bytes.size();
  files_.SetContent(*open.node, std::move(content));
}

std::string FakeOpenFiles::InputItem(int number) {
  Enter("InputItem", std::to_string(number));
  OpenFile& open = Require(number);
  if (open.mode != Mode::kInput) throw ProgramError(kBadFileMode);
  const std::string& content = open.node->content;
  InputItemScanner scanner;
  bool more = true;
  while (more && open.position < content.size()) more = scanner.Feed(content[open.position++]);
  if (!scanner.HasBegun()) throw ProgramError(kInputPastEnd);
  if (scanner.EndedInReturn() && open.position < content.size() && content[open.position] == '\n') {
    ++open.position;
  }
  return scanner.Item();
}

std::string FakeOpenFiles::Read(int number, std::size_t count) {
  Enter("Read", std::to_string(number));
  OpenFile& open = Require(number);
  if (open.mode == Mode::kOutput) throw ProgramError(kBadFileMode);
  if (!open.node->on_medium) throw ProgramError(kDeviceIoError);
  const std::string& content = open.node->content;
  if (open.position >= content.size()) return {};
  std::string bytes = content.substr(open.position, count);
  open.position += bytes.size();
  return bytes;
}

std::size_t FakeOpenFiles::ReadInto(int number, std::span<std::uint8_t> bytes) {
  const std::string read = Read(number, bytes.size());
  std::copy(read.begin(), read.end(), bytes.begin());
  return read.size();
}

std::int64_t FakeOpenFiles::Length(int number) {
  Enter("Length", std::to_string(number));
  return static_cast<std::int64_t>(Require(number).node->content.size());
}

void FakeOpenFiles::Seek(int number, std::int64_t position) {
  Enter("Seek", std::to_string(number), std::to_string(position));
  OpenFile& open = Require(number);
  if (position < 0) throw ProgramError(kInvalidCall);
  open.position = static_cast<std::size_t>(position);
}

void FakeOpenFiles::Close(int number) {
  // Closed whatever the script raises.
  const bool was_open = open_.erase(number) != 0;
  if (was_open) Enter("Close", std::to_string(number));
}

void FakeOpenFiles::CloseAll() {
  EnterAndFails("CloseAll", {});
  open_.clear();
}

}  // namespace tarnvale::testing
