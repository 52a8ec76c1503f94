#include "hosts/windows/peers/folder_tree_peer.h"

#include <cstring>
#include <optional>

#include "hosts/windows/meanwhile.h"
#include "hosts/windows/shown_text.h"

namespace tarnvale {
namespace {

constexpr UINT_PTR kPeekTimer = 1;
constexpr UINT kPeekDelayMs = 40;
/// Work that isn't done in the midst of the tree's own.
constexpr UINT kOpenedMessage = WM_APP;

void PrepareTrees() {
  INITCOMMONCONTROLSEX wanted{};
  wanted.dwSize = sizeof wanted;
  wanted.dwICC = ICC_TREEVIEW_CLASSES;
  ::InitCommonControlsEx(&wanted);
}

}  // namespace

FolderTreePeer::FolderTreePeer(PeerContext& context, WindowsWindow& window, FolderTree& tree,
                               const Rect& place, const Peer* container)
    : NativePeer(context, window, tree, place, container),
      tree_(tree),
      rows_(context.files),
      media_(
          [this](UINT message, WPARAM, LPARAM) -> std::optional<LRESULT> {
            if (message != WM_DEVICECHANGE) return std::nullopt;
            Report([this] { LookForDrives(); });
            return TRUE;
          },
          MessageWindow::Hears::kBroadcasts) {
  PrepareTrees();
  Create(WC_TREEVIEWW,
         TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT | TVS_SHOWSELALWAYS | TVS_DISABLEDRAGDROP,
         WS_EX_CLIENTEDGE);
  TreeView_SetImageList(Native(), icons_.list, TVSIL_NORMAL);
  FollowRows();
  AddItems(rows_.Root(), 0, rows_.Root().children.size());
  Follow(tree_.Started, [this] {
    starts_anew_ = true;
    RequestFrame();
  });
  Follow(tree_.SelectedPath.Changed, [this] { RequestFrame(); });
  if (tree_.SelectedPath.Get().empty()) return;
  starts_anew_ = true;
  OnFrame();
}

// The rows, as items.

void FolderTreePeer::FollowRows() {
  rows_.Inserting.Listen([this](const FolderTreeRows::Change& change) {
    changed_parent_ = &change.parent;
    changed_first_ = change.first;
    changed_count_ = change.count;
  });
  rows_.Inserted.Listen([this] { AddItems(*changed_parent_, changed_first_, changed_count_); });
  rows_.Removing.Listen([this](const FolderTreeRows::Change& change) {
    changed_parent_ = &change.parent;
    RemoveItems(change.parent, change.first, change.count);
  });
  rows_.Removed.Listen([this] { ShowWhetherItOpens(*changed_parent_); });
}

void FolderTreePeer::AddItems(FolderRow& parent, std::size_t first, std::size_t count) {
  HTREEITEM before = first == 0 ? TVI_FIRST : ItemOf(parent.children[first - 1].get());
  for (std::size_t i = first; i < first + count; ++i) {
    FolderRow& row = *parent.children[i];
    const bool is_known_drive = row.IsDrive() && rows_.AnswersAtOnce(row);
    std::wstring name = ToShown(row.IsDrive() ? row.name.substr(0, 2) : row.name);
    if (is_known_drive) name = DriveName(row.name);
    TVINSERTSTRUCTW insert{};
    insert.hParent = parent.parent == nullptr ? TVI_ROOT : ItemOf(&parent);
    insert.hInsertAfter = before;
    insert.item.mask = TVIF_TEXT | TVIF_PARAM | TVIF_CHILDREN | TVIF_IMAGE | TVIF_SELECTEDIMAGE;
    insert.item.pszText = name.data();
    insert.item.lParam = reinterpret_cast<LPARAM>(&row);
    insert.item.cChildren = row.MayHaveChildren() ? 1 : 0;
    insert.item.iImage = is_known_drive ? IconOfDrive(row.name, icons_.folder) : icons_.folder;
    insert.item.iSelectedImage = insert.item.iImage;
    before = TreeView_InsertItem(Native(), &insert);
    items_[&row] = before;
  }
  ShowWhetherItOpens(parent);
}

// The items below go with theirs, each with a notice.
void FolderTreePeer::RemoveItems(FolderRow& parent, std::size_t first, std::size_t count) {
  for (std::size_t i = first; i < first + count; ++i) {
    TreeView_DeleteItem(Native(), ItemOf(parent.children[i].get()));
  }
}

void FolderTreePeer::ShowWhetherItOpens(FolderRow& row) {
  TVITEMW item{};
  item.mask = TVIF_CHILDREN;
  item.hItem = ItemOf(&row);
  item.cChildren = row.MayHaveChildren() ? 1 : 0;
  if (item.hItem != nullptr) TreeView_SetItem(Native(), &item);
}

HTREEITEM FolderTreePeer::ItemOf(const FolderRow* row) const {
  const auto found = items_.find(row);
  return found == items_.end() ? nullptr : found->second;
}

FolderRow* FolderTreePeer::RowOf(HTREEITEM item) const {
  TVITEMW asked{};
  asked.mask = TVIF_PARAM;
  asked.hItem = item;
  if (item == nullptr || TreeView_GetItem(Native(), &asked) == 0) return nullptr;
  return reinterpret_cast<FolderRow*>(asked.lParam);
}

FolderRow* FolderTreePeer::Selected() const {
  return RowOf(TreeView_GetSelection(Native()));
}

// The record, shown.

void FolderTreePeer::OnFrame() {
  const Path& path = tree_.SelectedPath.Get();
  const FolderRow* selected = Selected();
  if (!starts_anew_ && selected != nullptr && rows_.PathOf(*selected) == path) return;
  starts_anew_ = false;
  const Meanwhile showing(is_showing_, true);
  const FolderRow* row = rows_.Find(path);
  if (row == nullptr) {
    TreeView_SelectItem(Native(), nullptr);
    return;
  }
  ExpandAbove(*row);
  TreeView_SelectItem(Native(), ItemOf(row));
  TreeView_EnsureVisible(Native(), ItemOf(row));
  PeekSoon(kPeekDelayMs);
}

void FolderTreePeer::ExpandAbove(const FolderRow& row) {
  if (row.parent == nullptr || row.parent->parent == nullptr) return;
  ExpandAbove(*row.parent);
  TreeView_Expand(Native(), ItemOf(row.parent), TVE_EXPAND);
}

// What the user does.

LRESULT FolderTreePeer::OnNotify(NMHDR& header) {
  auto& notice = reinterpret_cast<NMTREEVIEWW&>(header);
  switch (header.code) {
    case TVN_ITEMEXPANDINGW:
      if ((notice.action & TVE_EXPAND) != 0) {
        FolderRow* row = RowOf(notice.itemNew.hItem);
        if (row != nullptr && !row->is_read) rows_.Open(*row);
      }
      return 0;
    case TVN_ITEMEXPANDEDW:
      if ((notice.action & TVE_EXPAND) != 0) {
        ::PostMessageW(Native(), kOpenedMessage, 0, reinterpret_cast<LPARAM>(notice.itemNew.hItem));
      }
      return 0;
    case TVN_SELCHANGINGW:
      // A tree without a selection selects its first row when it gets the focus.
      return static_cast<LRESULT>(gets_focus_);
    case TVN_SELCHANGEDW:
      if (!is_showing_) ReportSelection();
      return 0;
    case TVN_DELETEITEMW:
      items_.erase(reinterpret_cast<FolderRow*>(notice.itemOld.lParam));
      return 0;
    default:
      return 0;
  }
}

LRESULT FolderTreePeer::OnMessage(HWND tree, UINT message, WPARAM first, LPARAM second) {
  if (message == kOpenedMessage) {
    Opened(reinterpret_cast<HTREEITEM>(second));
    return 0;
  }
  if (message == WM_TIMER && first == kPeekTimer) {
    ::KillTimer(Native(), kPeekTimer);
    PeekAtVisible();
    return 0;
  }
  const Meanwhile getting_focus(gets_focus_, message == WM_SETFOCUS);
  const LRESULT result = PassOn(tree, message, first, second);
  if (message == WM_VSCROLL || message == WM_MOUSEWHEEL) PeekSoon(kPeekDelayMs);
  return result;
}

void FolderTreePeer::OnShown(bool is_shown) {
  NativePeer::OnShown(is_shown);
  if (!is_shown) return;
  if (HTREEITEM const selected = TreeView_GetSelection(Native())) {
    TreeView_EnsureVisible(Native(), selected);
  }
  PeekSoon(kPeekDelayMs);
}

// The item may have gone meanwhile.
void FolderTreePeer::Opened(HTREEITEM item) {
  for (const auto& [row, its_item] : items_) {
    if (its_item != item) continue;
    rows_.Refresh(*RowOf(item));
    break;
  }
  PeekSoon(kPeekDelayMs);
}

void FolderTreePeer::ReportSelection() {
  const FolderRow* selected = Selected();
  if (selected == nullptr) return;
  Report([&] { tree_.SelectedPath = rows_.PathOf(*selected); });
}

void FolderTreePeer::LookForDrives() {
  rows_.RefreshDrives();
  PeekSoon(kPeekDelayMs);
}

void FolderTreePeer::PeekSoon(UINT delay_ms) {
  ::SetTimer(Native(), kPeekTimer, delay_ms, nullptr);
}

void FolderTreePeer::PeekAtVisible() {
  if (::IsWindowVisible(Native()) == 0) return;
  RECT area{};
  ::GetClientRect(Native(), &area);
  for (HTREEITEM item = TreeView_GetFirstVisible(Native()); item != nullptr;
       item = TreeView_GetNextVisible(Native(), item)) {
    // The item's number is where its place will be.
    RECT line{};
    std::memcpy(&line, &item, sizeof item);
    const LRESULT has_place =
        ::SendMessageW(Native(), TVM_GETITEMRECT, FALSE, reinterpret_cast<LPARAM>(&line));
    if (has_place == 0 || line.top >= area.bottom) return;
    FolderRow* row = RowOf(item);
    if (row == nullptr || !rows_.Peek(*row)) continue;
    // One folder at a time: each may be large.
    ShowWhetherItOpens(*row);
    PeekSoon(0);
    return;
  }
}

}  // namespace tarnvale
