#include "tests/support/fake_profiles.h"

#include <cstdint>
#include <optional>
#include <utility>

#include "base/failure.h"
#include "base/text.h"

namespace tarnvale::testing {

class FakeProfiles::File : public NativeProfile {
 public:
  File(FakeProfiles& profiles, Path file) : profiles_(profiles), file_(std::move(file)) {}

  bool Find() override {
    node_ = profiles_.files_.Find(file_);
    return profiles_.can_be_read_;
  }
  std::string Place() override { return ToLower(file_); }
  bool IsAsRead() override { return read_ == Now(); }
  std::optional<std::string> Read() override {
    read_ = Now();
    if (node_ && node_->is_folder) return std::nullopt;
    return node_ ? node_->content : std::string();
  }
  bool MayBeWritten() override {
    if (node_) return (node_->flags & attribute::kReadOnly) == 0;
    PassedOver pass;
    return pass.Step([&] { profiles_.files_.RequireFolderOf(file_); });
  }
  bool Begin() override { return true; }
  Outcome Replace(const std::string& bytes, bool, std::string&) override {
    if (!profiles_.can_be_replaced_) return Outcome::kFailed;
    profiles_.files_.SetContent(*profiles_.files_.FileForWriting(file_), bytes);
    return Outcome::kDone;
  }

 private:
  using State = std::pair<FakeFiles::NodePtr, std::uint64_t>;
  State Now() const { return {node_, node_ ? node_->revision : 0}; }

  FakeProfiles& profiles_;
  const Path file_;
  FakeFiles::NodePtr node_;  // none for no file
  State read_;
};

std::unique_ptr<NativeProfile> FakeProfiles::MakeNative(const Path& file) {
  return std::make_unique<File>(*this, file);
}

std::string FakeProfiles::Read(const std::string& section, const std::string& key,
                               const std::string& fallback, std::size_t buffer_size,
                               const Path& file) {
  can_be_read_ = !EnterAndFails("Read", file);
  return ProfileTable::Read(section, key, fallback, buffer_size, file);
}

bool FakeProfiles::Write(const std::string& section, const std::string& key,
                         const std::string& value, const Path& file) {
  if (EnterAndFails("Write", file)) return false;
  can_be_read_ = !Fails("Read", file);
  return ProfileTable::Write(section, key, value, file);
}

bool FakeProfiles::Flush(const Path& file) {
  can_be_replaced_ = !EnterAndFails("Flush", file);
  can_be_read_ = !Fails("Read", file);
  return ProfileTable::Flush(file);
}

}  // namespace tarnvale::testing
