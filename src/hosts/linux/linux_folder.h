// A folder of a Linux machine that is held by its descriptor.
#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_set>

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
  std::optional<std::size_t> FoundBy(const std::string& name, const ListedNames& listed) override;
  std::optional<FolderEntry> File(const std::string& name) override;
  std::unique_ptr<HeldFolder> Inner(const std::string& names) override;
  void MakeFolder(const std::string& name) override;
  void MakeFile(const std::string& name, Rights rights = Rights::kNewFile) override;
  bool Is(const HeldFolder& other) override;

  /// Whether what the medium finds by this name, `there`, has exactly this one. Reads
  /// the folder only if it hasn't been read yet. Raises 75, 57.
  bool HasExactly(const std::string& name, const struct stat& there);
  void NoteMade(const std::string& name) { made_.insert(name); }

  int Fd() const { return folder_.Get(); }
  /// Only what was its path once: for the book on temporaries.
  const std::string& Native() const { return native_; }

  static LinuxFolder& Of(const HeldEntry& entry) { return static_cast<LinuxFolder&>(entry.folder); }

 private:
  [[noreturn]] void RaiseForMaking(const std::string& name, int error);

  Descriptor folder_;
  std::string native_;
  const Temporaries& temporaries_;
  std::optional<FolderContents> listed_;
  std::unordered_set<std::string> made_;
};

}  // namespace tarnvale
