#include "hosts/windows/ownership.h"

#include <sddl.h>

#include <array>
#include <cstdint>
#include <vector>

#include "hosts/windows/handle.h"
#include "hosts/windows/paths.h"
#include "hosts/windows/volume.h"

namespace tarnvale {
namespace {

// Aligned for the structures.
using Buffer = std::vector<std::uint64_t>;

// What this process runs as: TokenUser, or TokenOwner, whose everything is that it makes.
Buffer OfThisProcess(TOKEN_INFORMATION_CLASS kind) {
  HANDLE opened = nullptr;
  if (::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &opened) == 0) return {};
  const Handle token(opened);
  Buffer buffer(64);
  DWORD length = 0;
  const auto size = static_cast<DWORD>(buffer.size() * sizeof(Buffer::value_type));
  if (::GetTokenInformation(token.Get(), kind, buffer.data(), size, &length) == 0) return {};
  return buffer;
}

// Both structures begin with it.
PSID SidIn(const Buffer& buffer) {
  const void* const data = buffer.data();
  return buffer.empty() ? nullptr : static_cast<const TOKEN_OWNER*>(data)->Owner;
}

SECURITY_ATTRIBUTES* UsersAlone() {
  static SECURITY_ATTRIBUTES attributes = [] {
    SECURITY_ATTRIBUTES made{sizeof(SECURITY_ATTRIBUTES), nullptr, FALSE};
    const Buffer user = OfThisProcess(TokenUser);
    wchar_t* sid = nullptr;
    if (user.empty() || ::ConvertSidToStringSidW(SidIn(user), &sid) == 0) return made;
    const std::wstring rules = L"D:P(A;;FA;;;" + std::wstring(sid) + L")(A;;FA;;;SY)(A;;FA;;;BA)";
    ::LocalFree(sid);
    ::ConvertStringSecurityDescriptorToSecurityDescriptorW(rules.c_str(), SDDL_REVISION_1,
                                                           &made.lpSecurityDescriptor, nullptr);
    return made;
  }();
  return attributes.lpSecurityDescriptor != nullptr ? &attributes : nullptr;
}

// Those of the folder come to a new file by themselves.
bool HasOwnRules(PSECURITY_DESCRIPTOR descriptor, SECURITY_DESCRIPTOR_CONTROL control) {
  BOOL is_there = FALSE;
  BOOL is_default = FALSE;
  PACL list = nullptr;
  if (::GetSecurityDescriptorDacl(descriptor, &is_there, &list, &is_default) == 0) return false;
  if (is_there == FALSE || list == nullptr) return false;
  if ((control & SE_DACL_PROTECTED) != 0) return true;
  for (DWORD i = 0; i < list->AceCount; ++i) {
    void* rule = nullptr;
    if (::GetAce(list, i, &rule) != 0 &&
        (static_cast<const ACE_HEADER*>(rule)->AceFlags & INHERITED_ACE) == 0) {
      return true;
    }
  }
  return false;
}

bool OwnersCountIn(const std::wstring& native_folder) {
  const Volume volume = VolumeOf(native_folder);
  return volume.is_fixed && (volume.features & FILE_PERSISTENT_ACLS) != 0;
}

}  // namespace

SECURITY_ATTRIBUTES* OwnersAlone(const std::wstring& native_folder) {
  return OwnersCountIn(native_folder) ? UsersAlone() : nullptr;
}

void KeepForOwner(const std::wstring& native) {
  if (const auto* const security = OwnersAlone(NativeFolderOf(native))) {
    ::SetFileSecurityW(native.c_str(),
                       DACL_SECURITY_INFORMATION | PROTECTED_DACL_SECURITY_INFORMATION,
                       security->lpSecurityDescriptor);
  }
}

void KeepRightsOf(const std::wstring& replaced, const std::wstring& fresh) {
  Buffer descriptor(8192);
  DWORD length = 0;
  const auto size = static_cast<DWORD>(descriptor.size() * sizeof(Buffer::value_type));
  SECURITY_DESCRIPTOR_CONTROL control = 0;
  if (::GetFileSecurityW(replaced.c_str(), DACL_SECURITY_INFORMATION, descriptor.data(), size,
                         &length) == 0 ||
      ::GetSecurityDescriptorControl(descriptor.data(), &control, &length) == 0 ||
      !HasOwnRules(descriptor.data(), control)) {
    return;
  }
  const DWORD is_protected = (control & SE_DACL_PROTECTED) != 0
                                 ? PROTECTED_DACL_SECURITY_INFORMATION
                                 : UNPROTECTED_DACL_SECURITY_INFORMATION;
  ::SetFileSecurityW(fresh.c_str(), DACL_SECURITY_INFORMATION | is_protected, descriptor.data());
}

bool IsOfThisUser(const std::wstring& native) {
  if (!OwnersCountIn(NativeFolderOf(native))) return true;
  Buffer descriptor(128);
  DWORD length = 0;
  PSID owner = nullptr;
  BOOL is_default = FALSE;
  const auto size = static_cast<DWORD>(descriptor.size() * sizeof(Buffer::value_type));
  if (::GetFileSecurityW(native.c_str(), OWNER_SECURITY_INFORMATION, descriptor.data(), size,
                         &length) == 0 ||
      ::GetSecurityDescriptorOwner(descriptor.data(), &owner, &is_default) == 0 ||
      owner == nullptr) {
    return true;
  }
  const Buffer user = OfThisProcess(TokenUser);
  const Buffer maker = OfThisProcess(TokenOwner);
  if (user.empty() || maker.empty()) return true;
  return ::EqualSid(owner, SidIn(user)) != 0 || ::EqualSid(owner, SidIn(maker)) != 0;
}

}  // namespace tarnvale
