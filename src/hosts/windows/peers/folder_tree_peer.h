#pragma once

#include <unordered_map>

#include "hosts/windows/drives.h"
#include "hosts/windows/message_window.h"
#include "hosts/windows/peers/native_peer.h"
#include "ui/folder_tree_rows.h"

namespace tarnvale {

/// The tree of the system's folders, a drive for each of its roots.
class FolderTreePeer final : public NativePeer {
 public:
  FolderTreePeer(PeerContext& context, WindowsWindow& window, FolderTree& tree, const Rect& place,
                 const Peer* container);

  LONG RoleForReaders() const override { return ROLE_SYSTEM_OUTLINE; }
  void OnFrame() override;
  LRESULT OnNotify(NMHDR& header) override;

 protected:
  LRESULT OnMessage(HWND tree, UINT message, WPARAM first, LPARAM second) override;
  void OnShown(bool is_shown) override;

 private:
  void FollowRows();
  void AddItems(FolderRow& parent, std::size_t first, std::size_t count);
  void RemoveItems(FolderRow& parent, std::size_t first, std::size_t count);
  void ShowWhetherItOpens(FolderRow& row);
  HTREEITEM ItemOf(const FolderRow* row) const;
  FolderRow* RowOf(HTREEITEM item) const;
  FolderRow* Selected() const;
  void ExpandAbove(const FolderRow& row);

  void Opened(HTREEITEM item);
  void ReportSelection();
  void LookForDrives();
  void PeekSoon(UINT delay_ms);
  void PeekAtVisible();

  FolderTree& tree_;
  FolderTreeRows rows_;
  DesktopIcons icons_ = SmallIcons();
  std::unordered_map<const FolderRow*, HTREEITEM> items_;
  FolderRow* changed_parent_ = nullptr;
  std::size_t changed_first_ = 0;
  std::size_t changed_count_ = 0;
  bool starts_anew_ = false;
  bool is_showing_ = false;
  bool gets_focus_ = false;
  MessageWindow media_;
};

}  // namespace tarnvale
