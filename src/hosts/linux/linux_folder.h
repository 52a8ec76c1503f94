// A folder of a Linux machine that is held by its descriptor.
#pragma once

#include <string>

#include "hosts/linux/descriptor.h"
#include "hosts/linux/temporaries.h"
#include "platform/files.h"

namespace tarnvale {

/// Raises 75 for what can't be the name of an entry.
void RequireName(const std::string& name);

class LinuxFolder final : public HeldFolder {
 public:
  /// `native` is where the folder was found, absolute.
  LinuxFolder(Descriptor folder, std::string native, const Temporaries& temporaries)
      : folder_(std::move(folder)), native_(std::move(native)), temporaries_(temporaries) {}

  FolderContents Contents() override;
  std::optional<FolderEntry> File(const std::string& name) override;
  std::unique_ptr<HeldFolder> Inner(const std::string& names) override;
  void MakeFolder(const std::string& name) override;
  void MakeFile(const std::string& name) override;
  bool Is(const HeldFolder& other) override;

  int Fd() const { return folder_.Get(); }
  /// Only what was its path once: for the book on temporaries.
  const std::string& Native() const { return native_; }

  static const LinuxFolder& Of(const HeldEntry& entry) {
    return static_cast<const LinuxFolder&>(entry.folder);
  }

 private:
  [[noreturn]] void RaiseForMaking(const std::string& name, int error) const;

  Descriptor folder_;
  std::string native_;
  const Temporaries& temporaries_;
};

}  // namespace tarnvale
