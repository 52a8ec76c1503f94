// Whose a file is, and what is its owner's alone. Both count only on fixed drives: to the
// next system that a stick is plugged into, its user is a stranger.
#pragma once

#include <windows.h>

#include <string>

namespace tarnvale {

/// Security of what is made in a folder for its owner alone, and for the system and its
/// administrators, as a user's own folders are. Null where that doesn't count.
SECURITY_ATTRIBUTES* OwnersAlone(const std::wstring& native_folder);

/// Takes a file from all others. A medium may refuse; that does no harm.
void KeepForOwner(const std::wstring& native);

/// Gives a new file the access list of the one that it replaces, if that has one of its
/// own and not just its folder's.
void KeepRightsOf(const std::wstring& replaced, const std::wstring& fresh);

/// Whether a file is this user's, as everything is where that isn't known.
bool IsOfThisUser(const std::wstring& native);

}  // namespace tarnvale
