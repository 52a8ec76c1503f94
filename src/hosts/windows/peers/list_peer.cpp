#include "hosts/windows/peers/list_peer.h"

#include <algorithm>

#include "hosts/windows/shown_text.h"

namespace tarnvale {

void ListPeer::Make(const std::vector<std::string>& rows) {
  const DWORD selects = selection_.MultiSelect ? LBS_EXTENDEDSEL : 0;
  Create(L"LISTBOX",
         LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | LBS_HASSTRINGS | WS_VSCROLL | WS_HSCROLL | selects,
         WS_EX_CLIENTEDGE);
  Assign(rows);
  OnFrame();
  Follow(selection_.SelectionChanged, [this] { RequestFrame(); });
}

std::size_t ListPeer::Count() const {
  return static_cast<std::size_t>(::SendMessageW(Native(), LB_GETCOUNT, 0, 0));
}

void ListPeer::Assign(const std::vector<std::string>& rows) {
  ::SendMessageW(Native(), WM_SETREDRAW, FALSE, 0);
  ::SendMessageW(Native(), LB_RESETCONTENT, 0, 0);
  widest_ = 0;
  for (const std::string& row : rows) Append(row);
  ::SendMessageW(Native(), WM_SETREDRAW, TRUE, 0);
  Repaint();
}

void ListPeer::Append(const std::string& row) {
  const std::wstring text = ToShown(row);
  ::SendMessageW(Native(), LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
  Widen(text);
  RequestFrame();
}

void ListPeer::RemoveAt(std::size_t index) {
  ::SendMessageW(Native(), LB_DELETESTRING, index, 0);
  RequestFrame();
}

// Of a row that is wider than the list all can be scrolled to.
void ListPeer::Widen(const std::wstring& row) {
  HDC const screen = ::GetDC(Native());
  const auto font = reinterpret_cast<HGDIOBJ>(::SendMessageW(Native(), WM_GETFONT, 0, 0));
  HGDIOBJ const before = ::SelectObject(screen, font);
  SIZE size{};
  ::GetTextExtentPoint32W(screen, row.c_str(), static_cast<int>(row.size()), &size);
  ::SelectObject(screen, before);
  ::ReleaseDC(Native(), screen);
  if (size.cx <= widest_) return;
  widest_ = size.cx;
  // With the room that the system leaves around it.
  ::SendMessageW(Native(), LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(widest_ + size.cy / 2), 0);
}

void ListPeer::OnFrame() {
  const std::size_t count = Count();
  if (!selection_.MultiSelect) {
    const auto wanted = static_cast<WPARAM>(selection_.FirstSelected().value_or(LB_ERR));
    if (static_cast<WPARAM>(::SendMessageW(Native(), LB_GETCURSEL, 0, 0)) != wanted) {
      ::SendMessageW(Native(), LB_SETCURSEL, wanted, 0);
    }
    return;
  }
  for (std::size_t i = 0; i < count; ++i) {
    const bool is_shown = ::SendMessageW(Native(), LB_GETSEL, i, 0) > 0;
    if (is_shown != selection_.IsSelected(i)) {
      ::SendMessageW(Native(), LB_SETSEL, is_shown ? FALSE : TRUE, static_cast<LPARAM>(i));
    }
  }
}

void ListPeer::OnCommand(WORD code) {
  if (code == LBN_SELCHANGE || code == LBN_SELCANCEL) ReportSelection();
  if (code == LBN_DBLCLK) Report([this] { selection_.DoubleClicked.Emit(); });
}

// The record of files names the row that was selected last: the one with the caret.
void ListPeer::ReportSelection() {
  std::vector<bool> rows(Count());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    rows[i] = ::SendMessageW(Native(), LB_GETSEL, i, 0) > 0;
  }
  const auto caret = static_cast<std::size_t>(::SendMessageW(Native(), LB_GETCARETINDEX, 0, 0));
  Report([&] { selection_.Take(rows, caret); });
}

ListBoxPeer::ListBoxPeer(PeerContext& context, WindowsWindow& window, ListBox& list,
                         const Rect& place, const Peer* container)
    : ListPeer(context, window, list, place, container), list_(list) {
  Make(list_.Rows.Rows());
  Follow(list_.Rows.Appended, [this] { Append(list_.Rows.Rows().back()); });
  Follow(list_.Rows.Removed, [this](std::size_t index) { RemoveAt(index); });
  Follow(list_.Rows.Reset, [this] { Assign(list_.Rows.Rows()); });
}

FileListPeer::FileListPeer(PeerContext& context, WindowsWindow& window, FileList& files,
                           const Rect& place, const Peer* container)
    : ListPeer(context, window, files, place, container), files_(files) {
  Make(files_.Rows());
  Follow(files_.RowsChanged, [this] {
    Assign(files_.Rows());
    RequestFrame();
  });
}

}  // namespace tarnvale
