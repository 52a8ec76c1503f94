// Copies that change their target in one step.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "hosts/windows/file_state.h"
#include "hosts/windows/temporaries.h"
#include "platform/files.h"

namespace tarnvale {

/// Whether a copy of `source` may replace what is at its target. Raises 75 for a
/// folder and a read-only file, but 58 for a link in whose place is a folder.
void RequireReplaceable(const FileState& source, const FileState& target);

/// Gives what was written beside a file, and is on the medium, the file's name.
/// `replaces`: something has it. Waits for half a second while another program has one of
/// them open. Raises 70, 58; the temporary is then deleted.
void GiveName(const std::wstring& temporary, const std::wstring& target, bool replaces);
/// As above, so that the name isn't lost if power fails.
void GiveName(TemporarySlot& slot, const std::wstring& target, bool replaces);

struct CopyExtras {
  /// Whether what is at the target by then may be replaced all the same.
  std::function<bool()> may_replace;
  /// Instead of the source's: see MediumTimes.
  std::optional<std::uint64_t> time;
};

/// Copies a file with the attributes `attributes`, or what a link leads to, with time and
/// streams; the copy counts as changed. What is at `target` is replaced. Raises 53, 61,
/// 70, 57, and 58 when that isn't what may be replaced.
void CopyFileBeside(TemporarySlot& slot, const std::wstring& source, DWORD attributes,
                    const std::wstring& target, bool replaces, Rights rights,
                    const CopyExtras& extras);

/// The whole of a link, as the system keeps it. Raises 70, 75.
std::vector<char> ReadLink(const std::wstring& native);

/// Copies a junction or a symbolic link as what it is, with its time. False, and nothing happens,
/// on a medium that can't hold one and for a user who may not make one. Raises 70, 57.
bool CopyLink(const Temporaries& temporaries, const std::wstring& source, const FileState& state,
              const std::wstring& target, bool replaces);

}  // namespace tarnvale
