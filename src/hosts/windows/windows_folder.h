// A folder of a Windows machine that is held by its handle.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unordered_set>

#include "hosts/windows/file_state.h"
#include "hosts/windows/medium_times.h"
#include "hosts/windows/temporaries.h"
#include "platform/files.h"

namespace tarnvale {

/// As long as the handle is open, the system lets nobody rename or delete the folder or
/// one that it lies in: its path stays its own.
class WindowsFolder final : public HeldFolder {
 public:
  /// `native` is where the folder was found.
  WindowsFolder(Handle folder, std::wstring native, MediumTimes times,
                const Temporaries& temporaries)
      : folder_(std::move(folder)),
        native_(std::move(native)),
        times_(times),
        temporaries_(temporaries) {}

  FolderContents Contents() override;
  std::optional<FolderEntry> File(const std::string& name) override;
  std::optional<std::size_t> FoundBy(const std::string& name, const ListedNames& listed) override;
  std::unique_ptr<HeldFolder> Inner(const std::string& names) override;
  void MakeFolder(const std::string& name) override;
  void MakeFile(const std::string& name, Rights rights = Rights::kNewFile) override;
  bool Is(const HeldFolder& other) override;

  const std::wstring& Native() const { return native_; }
  HANDLE Get() const { return folder_.Get(); }
  /// Of what lies in it.
  const MediumTimes& Times() const { return times_; }
  /// Raises 76 when the folder's medium is gone. Another one may have its drive's letter
  /// by then, and a folder of this name.
  void RequirePresent() const;
  /// Of an entry by its name, there or not. Raises 75 for what can't be a name.
  std::wstring NativeOf(const std::string& name) const;

  /// Whether what the medium finds by this name has exactly this one. Reads the folder
  /// only if it hasn't been read yet. Raises 75, 57.
  bool HasExactly(const std::string& name);
  void NoteMade(const std::string& name) { made_.insert(name); }

  static WindowsFolder& Of(HeldFolder& folder) { return static_cast<WindowsFolder&>(folder); }

 private:
  [[noreturn]] void RaiseForMaking(const std::string& name, DWORD error);

  Handle folder_;
  std::wstring native_;
  MediumTimes times_;
  const Temporaries& temporaries_;
  std::optional<std::unordered_set<std::string>> listed_;
  std::unordered_set<std::string> made_;
};

}  // namespace tarnvale
