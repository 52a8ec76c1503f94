#include "hosts/windows/windows_transfer_files.h"

#include <algorithm>
#include <string>
#include <utility>

#include "base/failure.h"
#include "hosts/windows/native_errors.h"
#include "hosts/windows/ownership.h"
#include "hosts/windows/replacing_copy.h"

namespace tarnvale {
namespace {

constexpr std::size_t kMostBytesAtOnce = std::size_t{1} << 24U;

class FileToSend final : public TransferSource {
 public:
  explicit FileToSend(Handle file) : file_(std::move(file)) {}

  std::size_t Read(std::span<char> bytes) override {
    std::size_t done = 0;
    while (done < bytes.size()) {
      const auto wanted = static_cast<DWORD>(std::min(bytes.size() - done, kMostBytesAtOnce));
      DWORD got = 0;
      if (::ReadFile(file_.Get(), bytes.data() + done, wanted, &got, nullptr) == 0) {
        throw ProgramError(kDeviceIoError);
      }
      if (got == 0) break;
      done += got;
    }
    return done;
  }

 private:
  Handle file_;
};

class FileToReceive final : public TransferTarget {
 public:
  FileToReceive(const Temporaries& temporaries, const Located& target)
      : slot_(temporaries), target_(target.native), replaces_(target.state.has_value()) {
    const std::wstring folder = NativeFolderOf(target_);
    file_ = Handle(::CreateFileW(slot_.Begin(folder).c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                                 OwnersAlone(folder), CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file_) RaiseLast(Attempt::kChange);
  }
  FileToReceive(const FileToReceive&) = delete;
  FileToReceive& operator=(const FileToReceive&) = delete;
  ~FileToReceive() override {
    if (!file_) return;
    file_.Close();
    DeleteTemporary(slot_.NativePath());
  }

  void Write(std::span<const char> bytes) override {
    while (!bytes.empty()) {
      const auto wanted = static_cast<DWORD>(std::min(bytes.size(), kMostBytesAtOnce));
      DWORD done = 0;
      if (::WriteFile(file_.Get(), bytes.data(), wanted, &done, nullptr) == 0) {
        RaiseLast(Attempt::kChange);
      }
      bytes = bytes.subspan(done);
    }
  }

  void Commit() override {
    if (!FlushFile(file_.Get())) RaiseLast(Attempt::kChange);
    file_.Close();
    GiveName(slot_, target_, replaces_);
  }

 private:
  TemporarySlot slot_;
  Handle file_;  ///< none once it was renamed
  std::wstring target_;
  bool replaces_;
};

}  // namespace

std::unique_ptr<TransferSource> WindowsTransferFiles::OpenSource(const Path& file) {
  const Located located = locator_.Find(file);
  if (located.IsFolder()) throw ProgramError(kPathFileAccess);
  Handle opened(::CreateFileW(located.native.c_str(), GENERIC_READ,
                              FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                              FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
  if (!opened) RaiseLast(Attempt::kChange);
  return std::make_unique<FileToSend>(std::move(opened));
}

std::unique_ptr<TransferTarget> WindowsTransferFiles::OpenTarget(const Path& file) {
  const Located located = Locator::RequireTarget(locator_.Locate(file));
  if (located.state) RequireReplaceable({}, *located.state);
  return std::make_unique<FileToReceive>(temporaries_, located);
}

}  // namespace tarnvale
