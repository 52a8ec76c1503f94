#include "hosts/windows/peers/text_box_peer.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "hosts/windows/dragging.h"
#include "hosts/windows/meanwhile.h"
#include "hosts/windows/wide.h"

namespace tarnvale {
namespace {

// What Ctrl types with a letter.
constexpr WPARAM kCtrlA = 1;
constexpr WPARAM kBackspace = 8;

DWORD StyleOf(const TextBox& box) {
  DWORD style = ES_AUTOHSCROLL;
  if (box.Kind == TextKind::kMemo) style = ES_MULTILINE | ES_AUTOVSCROLL | WS_VSCROLL;
  if (box.Kind == TextKind::kPassword) style |= ES_PASSWORD;
  if (box.ReadOnly) style |= ES_READONLY;
  return style;
}

// A field of many lines knows one line end only.
std::wstring WithFullLineEnds(const std::wstring& text) {
  std::wstring full;
  full.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != L'\r' && text[i] != L'\n') {
      full += text[i];
      continue;
    }
    if (text[i] == L'\r' && i + 1 < text.size() && text[i + 1] == L'\n') ++i;
    full += L"\r\n";
  }
  return full;
}

std::string ClipboardText(HWND owner) {
  std::string text;
  if (::OpenClipboard(owner) == 0) return text;
  HGLOBAL const data = ::GetClipboardData(CF_UNICODETEXT);
  if (const void* held = data == nullptr ? nullptr : ::GlobalLock(data)) {
    text = Narrow(static_cast<const wchar_t*>(held));
    ::GlobalUnlock(data);
  }
  ::CloseClipboard();
  return text;
}

bool MayMoveSelection(UINT message) {
  return (message >= WM_KEYFIRST && message <= WM_KEYLAST) ||
         (message >= WM_MOUSEFIRST && message <= WM_MOUSELAST) || message == EM_SETSEL ||
         message == WM_PASTE || message == WM_CUT || message == WM_CLEAR || message == WM_UNDO;
}

}  // namespace

TextBoxPeer::TextBoxPeer(PeerContext& context, WindowsWindow& window, TextBox& box,
                         const Rect& place, const Peer* container)
    : NativePeer(context, window, box, place, container), box_(box) {
  // An empty masked field shows its zeros, and the record says what is shown.
  if (box_.Kind == TextKind::kMasked && box_.Text.Get().empty()) {
    box_.Text = BlankMask(box_.Mask);
  }
  Create(L"EDIT", StyleOf(box_), WS_EX_CLIENTEDGE);
  ::SendMessageW(Native(), EM_LIMITTEXT, 0, 0);
  if (box_.Kind == TextKind::kPassword) ::SendMessageW(Native(), EM_SETPASSWORDCHAR, L'*', 0);
  if (box_.FixedWidth) {
    ::SendMessageW(Native(), WM_SETFONT, reinterpret_cast<WPARAM>(context_.fonts.FixedWidth()), 0);
  }
  if (!IsMemo()) line_.Begin(Native());
  if (box_.AcceptsFiles) ::DragAcceptFiles(Native(), TRUE);
  ShowText();
  Follow(box_.Text.Changed(), [this] { ShowText(); });
  Follow(box_.Appended, [this](const std::string& text) {
    if (!IsMemo()) {
      ShowText();
      return;
    }
    appended_ += text;
    RequestFrame();
  });
  Follow(box_.Selection.Changed, [this] { ShowSelection(); });
  Follow(box_.ReadOnly.Changed,
         [this] { ::SendMessageW(Native(), EM_SETREADONLY, box_.ReadOnly ? TRUE : FALSE, 0); });
}

std::wstring TextBoxPeer::Text() const {
  std::wstring text(static_cast<std::size_t>(::GetWindowTextLengthW(Native())) + 1, L'\0');
  text.resize(static_cast<std::size_t>(
      ::GetWindowTextW(Native(), text.data(), static_cast<int>(text.size()))));
  return text;
}

std::wstring TextBoxPeer::Document(std::string_view text) const {
  const std::wstring wide = Wide(text.substr(0, text.find('\0')));
  return IsMemo() ? WithFullLineEnds(wide) : wide;
}

TextBoxPeer::Range TextBoxPeer::Selected() const {
  Range range;
  ::SendMessageW(Native(), EM_GETSEL, reinterpret_cast<WPARAM>(&range.start),
                 reinterpret_cast<LPARAM>(&range.end));
  return range;
}

void TextBoxPeer::ShowText() {
  appended_.clear();
  const std::wstring text = Document(box_.Text.Get());
  if (Text() == text) return;
  const Meanwhile showing(is_showing_, true);
  ::SetWindowTextW(Native(), text.c_str());
}

void TextBoxPeer::OnFrame() {
  const Meanwhile showing(is_showing_, true);
  // A line end whose two halves come apart is still one.
  const bool waits = !appended_.empty() && appended_.back() == '\r';
  if (waits) appended_.pop_back();
  const std::wstring text = Document(appended_);
  const auto end = static_cast<WPARAM>(::GetWindowTextLengthW(Native()));
  ::SendMessageW(Native(), EM_SETSEL, end, static_cast<LPARAM>(end));
  ::SendMessageW(Native(), EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(text.c_str()));
  ::SendMessageW(Native(), EM_SCROLLCARET, 0, 0);
  appended_ = waits ? "\r" : "";
}

void TextBoxPeer::ShowSelection() {
  if (is_showing_) return;
  const Meanwhile showing(is_showing_, true);
  const std::string_view text = box_.Text.Get();
  const TextSelection& selection = box_.Selection.Get();
  const auto units = [&](std::size_t bytes) {
    return Document(text.substr(0, std::min(bytes, text.size()))).size();
  };
  ::SendMessageW(Native(), EM_SETSEL, units(selection.start),
                 static_cast<LPARAM>(units(selection.start + selection.length)));
  ::SendMessageW(Native(), EM_SCROLLCARET, 0, 0);
}

void TextBoxPeer::OnCommand(WORD code) {
  if (code == EN_CHANGE && !is_showing_) ReportText();
}

void TextBoxPeer::ReportText() {
  // What is still to be appended is part of the record's text already.
  if (!appended_.empty()) OnFrame();
  const std::string text = Narrow(Text());
  Report([&] { box_.Text = text; });
}

void TextBoxPeer::ReportSelection() {
  const Range selected = Selected();
  if (is_showing_ || selected == reported_) return;
  reported_ = selected;
  const Meanwhile showing(is_showing_, true);
  const std::wstring text = Text();
  const auto bytes = [&](DWORD units) { return Narrow(text.substr(0, units)).size(); };
  const std::size_t start = bytes(selected.start);
  const TextSelection selection{start, bytes(selected.end) - start};
  Report([&] { box_.Selection = selection; });
}

void TextBoxPeer::ReportFiles(HDROP drop) {
  const std::vector<Path> paths = DroppedPaths(drop, context_.program_path);
  ::DragFinish(drop);
  Report([&] { box_.FilesDropped.Emit(paths); });
}

LRESULT TextBoxPeer::OnMessage(HWND edit, UINT message, WPARAM first, LPARAM second) {
  if (message == WM_DROPFILES) {
    ReportFiles(reinterpret_cast<HDROP>(first));
    return 0;
  }
  if (!IsMemo()) {
    const auto pass_on = [&] { return PassOn(edit, message, first, second); };
    if (const auto answer = line_.Serve(message, second, pass_on)) return *answer;
  }
  if (IgnoresPress(message)) return 0;
  if (message == WM_CHAR && ServeTyped(first)) return 0;
  if (box_.Kind == TextKind::kMasked && ServeMasked(message, first)) return 0;
  const LRESULT result = PassOn(edit, message, first, second);
  if (MayMoveSelection(message)) ReportSelection();
  return result;
}

// The handler of the focus ran before the press that brought it; what it selected stays.
bool TextBoxPeer::IgnoresPress(UINT message) {
  if (message == WM_LBUTTONDOWN) {
    const Range selected = Selected();
    ignores_press_ = GotFocusByPress() && selected.start != selected.end;
    return ignores_press_;
  }
  if (message == WM_LBUTTONUP) return std::exchange(ignores_press_, false);
  return message == WM_MOUSEMOVE && ignores_press_;
}

// Not every system's field knows Ctrl+A, and one of a single line beeps at Enter and Escape.
bool TextBoxPeer::ServeTyped(WPARAM character) {
  if (character == kCtrlA) {
    ::SendMessageW(Native(), EM_SETSEL, 0, -1);
    return true;
  }
  return !IsMemo() && (character == VK_RETURN || character == VK_ESCAPE || character == L'\n');
}

bool TextBoxPeer::ServeMasked(UINT message, WPARAM first) {
  // The system's menu would paste past the mask's rules, and undo what it knows nothing of.
  if (message == WM_CONTEXTMENU || message == WM_UNDO || message == EM_UNDO) return true;
  const bool types = message == WM_CHAR && (first == kBackspace || first >= L' ');
  const bool deletes = message == WM_KEYDOWN && first == VK_DELETE;
  const bool moves_text = message == WM_PASTE || message == WM_CUT || message == WM_CLEAR;
  if (!types && !deletes && !moves_text) return false;
  if (box_.ReadOnly) return true;
  if (message == WM_PASTE) {
    Apply([&](MaskedText& field) { field.Type(ClipboardText(Native())); });
  } else if (types && first != kBackspace) {
    Apply([&](MaskedText& field) {
      field.Type(Narrow(std::wstring(1, static_cast<wchar_t>(first))));
    });
  } else if (types) {
    Apply([](MaskedText& field) { field.EraseBack(); });
  } else {
    if (message == WM_CUT) ::SendMessageW(Native(), WM_COPY, 0, 0);
    Apply([](MaskedText& field) { field.Erase(); });
  }
  return true;
}

template <class Change>
void TextBoxPeer::Apply(Change change) {
  const std::wstring text = Text();
  const Range selected = Selected();
  const auto bytes = [&](DWORD units) { return Narrow(text.substr(0, units)).size(); };
  const MaskedText before{.mask = box_.Mask,
                          .text = Narrow(text),
                          .caret = bytes(selected.start),
                          .selected = bytes(selected.end) - bytes(selected.start)};
  MaskedText field = before;
  change(field);
  if (field == before) return;
  {
    const Meanwhile showing(is_showing_, true);
    if (field.text != before.text) ::SetWindowTextW(Native(), Wide(field.text).c_str());
    const std::size_t caret = Wide(std::string_view(field.text).substr(0, field.caret)).size();
    ::SendMessageW(Native(), EM_SETSEL, caret, static_cast<LPARAM>(caret));
  }
  if (field.text != before.text) ReportText();
  ReportSelection();
}

}  // namespace tarnvale
