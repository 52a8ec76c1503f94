#include "hosts/windows/peers/combo_box_peer.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "hosts/windows/meanwhile.h"
#include "hosts/windows/shown_text.h"
#include "hosts/windows/wide.h"

namespace tarnvale {
namespace {

/// How many rows an open list shows.
constexpr int kRowsShown = 10;

}  // namespace

ComboBoxPeer::ComboBoxPeer(PeerContext& context, WindowsWindow& window, ComboBox& combo,
                           const Rect& place, const Peer* container)
    : NativePeer(context, window, combo, place, container), combo_(combo) {
  Create(L"COMBOBOX", CBS_AUTOHSCROLL | CBS_HASSTRINGS | WS_VSCROLL |
                          (combo_.Editable ? CBS_DROPDOWN : CBS_DROPDOWNLIST));
  field_ = ::FindWindowExW(Native(), nullptr, L"EDIT", nullptr);
  if (field_ != nullptr) AddInner(field_);
  Fit();
  if (field_ != nullptr) line_.Begin(field_);
  ShowRows();
  Follow(combo_.Text.Changed(), [this] { ShowText(); });
  Follow(combo_.Rows.Appended, [this] { ShowRows(); });
  Follow(combo_.Rows.Removed, [this](std::size_t) { ShowRows(); });
  Follow(combo_.Rows.Reset, [this] { ShowRows(); });
}

// The system makes the field as high as its text, which says how high the edges are; and the
// height that a window is given is that of the open list too.
void ComboBoxPeer::Fit() {
  const int wanted = Area().bottom - Area().top;
  const auto row = static_cast<int>(::SendMessageW(Native(), CB_GETITEMHEIGHT, 0, 0));
  // Some systems have a least height, which says nothing of the edges.
  int field = wanted;
  for (int tries = 0; tries < 2; ++tries) {
    ::SendMessageW(Native(), CB_SETITEMHEIGHT, static_cast<WPARAM>(-1), std::max(field, 1));
    ::SetWindowPos(Native(), nullptr, 0, 0, Area().right - Area().left, wanted + row * kRowsShown,
                   SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    RECT closed{};
    ::GetWindowRect(Native(), &closed);
    field += wanted - (closed.bottom - closed.top);
  }
}

LRESULT ComboBoxPeer::OnMessage(HWND window, UINT message, WPARAM first, LPARAM second) {
  const auto pass_on = [&] { return PassOn(window, message, first, second); };
  const auto answer = window == field_ ? line_.Serve(message, second, pass_on) : std::nullopt;
  return answer ? *answer : pass_on();
}

void ComboBoxPeer::ShowRows() {
  {
    const Meanwhile showing(is_showing_, true);
    ::SendMessageW(Native(), CB_RESETCONTENT, 0, 0);
    for (const std::string& row : combo_.Rows.Rows()) {
      ::SendMessageW(Native(), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(ToShown(row).c_str()));
    }
  }
  ShowText();
}

void ComboBoxPeer::ShowText() {
  if (is_showing_) return;
  const Meanwhile showing(is_showing_, true);
  const std::string& text = combo_.Text.Get();
  const std::vector<std::string>& rows = combo_.Rows.Rows();
  const auto row = std::find(rows.begin(), rows.end(), text);
  const WPARAM wanted =
      row == rows.end() ? static_cast<WPARAM>(-1) : static_cast<WPARAM>(row - rows.begin());
  const std::wstring wide = Wide(text);
  // A text that is being typed keeps its caret, even where it becomes a row's.
  if (combo_.Editable && FieldText() == wide) return;
  if (static_cast<WPARAM>(::SendMessageW(Native(), CB_GETCURSEL, 0, 0)) != wanted) {
    ::SendMessageW(Native(), CB_SETCURSEL, wanted, 0);
  }
  if (combo_.Editable) ::SetWindowTextW(Native(), wide.c_str());
}

std::wstring ComboBoxPeer::FieldText() const {
  std::wstring text(static_cast<std::size_t>(::GetWindowTextLengthW(Native())) + 1, L'\0');
  text.resize(static_cast<std::size_t>(
      ::GetWindowTextW(Native(), text.data(), static_cast<int>(text.size()))));
  return text;
}

bool ComboBoxPeer::IsOpen() const {
  return ::SendMessageW(Native(), CB_GETDROPPEDSTATE, 0, 0) != 0;
}

// Those that choose in an open list, or close it.
bool ComboBoxPeer::KeepsKey(Key key) const {
  return IsOpen() && (key == Key::kEnter || key == Key::kEscape);
}

void ComboBoxPeer::OnCommand(WORD code) {
  if (is_showing_) return;
  const LRESULT row = ::SendMessageW(Native(), CB_GETCURSEL, 0, 0);
  switch (code) {
    case CBN_EDITCHANGE:
      ReportText(FieldText());
      break;
    case CBN_SELCHANGE:
      // In an open list nothing is chosen yet.
      if (!IsOpen()) ReportText(RowAt(row));
      break;
    case CBN_SELENDOK:
      ReportText(RowAt(row));
      break;
    case CBN_CLOSEUP:
      ShowText();
      break;
    default:
      break;
  }
}

std::wstring ComboBoxPeer::RowAt(LRESULT row) const {
  if (row < 0) return FieldText();
  return Wide(combo_.Rows.At(static_cast<std::size_t>(row)));
}

void ComboBoxPeer::ReportText(const std::wstring& text) {
  Report([&] { combo_.Text = Narrow(text); });
}

}  // namespace tarnvale
