// Copies that change their target in one step.
#pragma once

#include <functional>
#include <string>

#include "hosts/windows/file_state.h"
#include "hosts/windows/temporaries.h"
#include "platform/files.h"

namespace tarnvale {

/// Whether a copy of `source` may replace what stands at its target. Raises 75 for a
/// folder and a read-only file, but 58 for a link in whose place is a folder.
void RequireReplaceable(const FileState& source, const FileState& target);

/// Security of what is made for its owner alone, and for the system, without which
/// nobody could repair it. Null where the medium or the system has none.
SECURITY_ATTRIBUTES* OwnersAlone();

/// Gives what was written beside a file, and is on the medium, the file's name.
/// `replaces`: something has it. Waits for half a second while another program has one of
/// them open. Raises 70, 58; the temporary is then deleted.
void GiveName(const std::wstring& temporary, const std::wstring& target, bool replaces);

/// Copies a file with the attributes `attributes`, or what a link leads to, with time and
/// streams; the copy counts as changed. What stands at `target` is replaced unless
/// `may_replace` then says no, which raises 58. Raises 53, 61, 70, 57.
void CopyFileBeside(Temporaries& temporaries, const std::wstring& source, DWORD attributes,
                    const std::wstring& target, bool replaces, Rights rights,
                    const std::function<bool()>& may_replace);

/// Copies a junction or a symbolic link as what it is. Nothing happens on a medium that
/// can't hold one. Raises 70 where the user may not make one.
void CopyLink(Temporaries& temporaries, const std::wstring& source, const FileState& state,
              const std::wstring& target, bool replaces);

}  // namespace tarnvale
