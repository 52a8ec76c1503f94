#include "tests/support/fake_open_files.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "base/characters.h"
#include "base/failure.h"

namespace tarnvale::testing {
namespace {

class FakeFile final : public NativeFile {
 public:
  FakeFile(FakeFiles& files, std::multiset<const FakeNode*>& open_nodes, FakeFiles::NodePtr node)
      : files_(files),
        open_nodes_(open_nodes),
        node_(std::move(node)),
        place_(open_nodes.insert(node_.get())) {}
  FakeFile(const FakeFile&) = delete;
  FakeFile& operator=(const FakeFile&) = delete;
  ~FakeFile() override { open_nodes_.erase(place_); }

  std::size_t ReadAt(std::int64_t position, std::span<std::uint8_t> bytes) override {
    RequireMedium();
    const auto start = std::min(static_cast<std::size_t>(position), node_->content.size());
    const std::size_t count = std::min(bytes.size(), node_->content.size() - start);
    std::copy_n(node_->content.begin() + static_cast<std::ptrdiff_t>(start), count, bytes.begin());
    return count;
  }

  void WriteAt(std::int64_t position, std::string_view bytes) override {
    RequireMedium();
    if (bytes.empty()) return;
    const auto start = static_cast<std::size_t>(position);
    std::string content = std::move(node_->content);
    if (content.size() < start + bytes.size()) content.resize(start + bytes.size());
    content.replace(start, bytes.size(), bytes);
    files_.SetContent(*node_, std::move(content));
  }

  std::int64_t Length() override { return static_cast<std::int64_t>(node_->content.size()); }
  void Close() override {}

 private:
  void RequireMedium() const {
    if (!node_->on_medium) throw ProgramError(kDeviceIoError);
  }

  FakeFiles& files_;
  std::multiset<const FakeNode*>& open_nodes_;
  FakeFiles::NodePtr node_;
  std::multiset<const FakeNode*>::iterator place_;
};

}  // namespace

FakeOpenFiles::FakeOpenFiles(FakeFiles& files) : files_(files) {
  files_.RefuseToDelete([this](const FakeNode& node) { return open_nodes_.contains(&node); });
}

OpenFileTable::Opened FakeOpenFiles::OpenNative(Use use, const Path& file, Rights) {
  FakeFiles::NodePtr node = use == Use::kInput ? files_.Find(file) : files_.FileForWriting(file);
  if (node == nullptr) {
    // Distinguishes a missing folder from a missing file.
    files_.RequireFolderOf(file);
    throw ProgramError(kFileNotFound);
  }
  if (node->is_folder) throw ProgramError(kPathFileAccess);
  const bool is_writable = (node->flags & attribute::kReadOnly) == 0;
  const bool must_be = use == Use::kOutput || use == Use::kOwn;
  if (must_be && !is_writable) throw ProgramError(kPathFileAccess);
  if (use == Use::kOutput) files_.SetContent(*node, {});
  return {std::make_unique<FakeFile>(files_, open_nodes_, std::move(node)), is_writable};
}

void FakeOpenFiles::OpenInput(int number, const Path& file) {
  Enter("OpenInput", file, std::to_string(number));
  OpenFileTable::OpenInput(number, file);
}

void FakeOpenFiles::OpenOutput(int number, const Path& file, Rights rights) {
  Enter("OpenOutput", file, std::to_string(number));
  OpenFileTable::OpenOutput(number, file, rights);
}

void FakeOpenFiles::OpenBinary(int number, const Path& file) {
  Enter("OpenBinary", file, std::to_string(number));
  OpenFileTable::OpenBinary(number, file);
}

void FakeOpenFiles::OpenOwn(int number, const Path& file) {
  Enter("OpenOwn", file, std::to_string(number));
  OpenFileTable::OpenOwn(number, file);
}

void FakeOpenFiles::Write(int number, std::string_view bytes) {
  Enter("Write", std::to_string(number));
  OpenFileTable::Write(number, bytes);
}

std::string FakeOpenFiles::InputItem(int number) {
  Enter("InputItem", std::to_string(number));
  return OpenFileTable::InputItem(number);
}

std::optional<std::string> FakeOpenFiles::ToCodePage(std::string_view text) const {
  if (!is_western_) return OpenFileTable::ToCodePage(text);
  std::string bytes;
  while (!text.empty()) {
    const Character first = FirstCharacter(text);
    if (first.bytes == 0 || first.value > 0xFF) return std::nullopt;
    bytes += static_cast<char>(first.value);
    text.remove_prefix(first.bytes);
  }
  return bytes;
}

std::optional<std::string> FakeOpenFiles::FromCodePage(std::string_view bytes) const {
  if (!is_western_) return OpenFileTable::FromCodePage(bytes);
  std::string text;
  for (const char byte : bytes) AppendCharacter(text, static_cast<unsigned char>(byte));
  return text;
}

std::size_t FakeOpenFiles::ReadInto(int number, std::span<std::uint8_t> bytes) {
  Enter("Read", std::to_string(number));
  return OpenFileTable::ReadInto(number, bytes);
}

std::int64_t FakeOpenFiles::Length(int number) {
  Enter("Length", std::to_string(number));
  return OpenFileTable::Length(number);
}

void FakeOpenFiles::Seek(int number, std::int64_t position) {
  Enter("Seek", std::to_string(number), std::to_string(position));
  OpenFileTable::Seek(number, position);
}

void FakeOpenFiles::Close(int number) {
  // Closed whatever the script raises.
  const bool was_open = IsOpen(number);
  OpenFileTable::Close(number);
  if (was_open) Enter("Close", std::to_string(number));
}

void FakeOpenFiles::CloseAll() {
  EnterAndFails("CloseAll", {});
  OpenFileTable::CloseAll();
}

}  // namespace tarnvale::testing
