#include "hosts/windows/windows_window.h"

#include <commctrl.h>

#include <algorithm>

#include "hosts/windows/accessible.h"
#include "hosts/windows/keys.h"
#include "hosts/windows/meanwhile.h"
#include "hosts/windows/native_errors.h"
#include "hosts/windows/peers/peer_factory.h"
#include "hosts/windows/shown_text.h"
#include "hosts/windows/windows_pictures.h"
#include "ui/accessible_names.h"

namespace tarnvale {
namespace {

constexpr wchar_t kClass[] = L"TarnvaleWindow";

HINSTANCE ProgramModule() {
  return ::GetModuleHandleW(nullptr);
}

struct Styles {
  DWORD style;
  DWORD extended;
};

Styles StylesOf(const Window& window) {
  constexpr DWORD kAll = WS_CLIPCHILDREN;
  switch (window.Frame) {
    case WindowFrame::kFixed:
      return {kAll | WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX, 0};
    case WindowFrame::kDialog:
      return {kAll | WS_POPUP | WS_CAPTION | WS_SYSMENU, 0};
    case WindowFrame::kPlain:
      return {kAll | WS_POPUP, 0};
    case WindowFrame::kPopup:
      break;
  }
  return {kAll | WS_POPUP, WS_EX_TOPMOST | WS_EX_NOACTIVATE | WS_EX_TOOLWINDOW};
}

bool IsFramed(WindowFrame frame) {
  return frame == WindowFrame::kFixed || frame == WindowFrame::kDialog;
}

bool IsKey(UINT message) {
  return message == WM_KEYDOWN || message == WM_SYSKEYDOWN || message == WM_KEYUP ||
         message == WM_SYSKEYUP;
}

bool IsMouse(UINT message) {
  return message == WM_MOUSEMOVE || IsPress(message) || IsDoublePress(message) ||
         IsRelease(message);
}

}  // namespace

HWND UnseenOwner() {
  static HWND const kOwner = ::CreateWindowExW(0, L"Static", nullptr, WS_POPUP, 0, 0, 0, 0, nullptr,
                                               nullptr, ProgramModule(), nullptr);
  return kOwner;
}

WindowsWindow::WindowsWindow(PeerContext& context, Window& record, const int& box_depth)
    : context_(context), record_(record), box_depth_(box_depth) {
  FollowRecord();
  RequestSync();
}

WindowsWindow::~WindowsWindow() {
  *alive_ = false;
  if (native_ == nullptr) return;
  ::SetWindowLongPtrW(native_, GWLP_USERDATA, 0);
  ::ShowWindow(native_, SW_HIDE);
  drops_.reset();
  peers_.clear();
  menus_.reset();
  ::DestroyWindow(native_);
  if (pointer_ != nullptr) ::DestroyCursor(pointer_);
  for (HICON icon : icons_) {
    if (icon != nullptr) ::DestroyIcon(icon);
  }
}

void WindowsWindow::FollowRecord() {
  Follow(record_.Caption.Changed, [this] {
    if (native_ != nullptr) ::SetWindowTextW(native_, ToShown(record_.Caption.Get()).c_str());
  });
  Follow(record_.Icon.Changed, [this] { ApplyIcon(); });
  Follow(record_.Enabled.Changed, [this] { ApplyEnabled(); });
  for (Signal<>* signal :
       {&record_.Visible.Changed, &record_.State.Changed, &record_.InTaskBar.Changed}) {
    Follow(*signal, [this] { RequestSync(); });
  }
  // A hidden window that moves costs nothing; showing it brings all up to date.
  for (Signal<>* signal :
       {&record_.LeftTwips.Changed, &record_.TopTwips.Changed, &record_.Alpha.Changed}) {
    Follow(*signal, [this] {
      if (record_.Visible) RequestSync();
    });
  }
  Follow(record_.Raised, [this] {
    raise_is_requested_ = true;
    RequestSync();
  });
  Follow(record_.FocusMoved, [this] { ShowFocus(); });
}

void WindowsWindow::Build() {
  if (native_ != nullptr) return;
  MakeNative();
  ApplyIcon();
  ApplyEnabled();
  BuildControls();
  FollowDrops();
  MakeTips();
}

void WindowsWindow::MakeNative() {
  WNDCLASSEXW description{};
  description.cbSize = sizeof description;
  description.style = CS_DBLCLKS;
  description.lpfnWndProc = &WindowsWindow::Procedure;
  description.hInstance = ProgramModule();
  description.hCursor = nullptr;
  description.lpszClassName = kClass;
  // It may be there already.
  ::RegisterClassExW(&description);
  const Styles styles = StylesOf(record_);
  native_ = ::CreateWindowExW(styles.extended, kClass, ToShown(record_.Caption.Get()).c_str(),
                              styles.style, 0, 0, 0, 0, nullptr, nullptr, ProgramModule(), nullptr);
  if (native_ == nullptr) RaiseLast(Attempt::kChange);
  ::SetWindowLongPtrW(native_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  if (!record_.MenuBar.empty()) menus_.emplace(native_, record_.MenuBar, context_.loop);
  const Size size = record_.ClientSize;
  RECT frame{0, 0, context_.ToDevice(size.width_px), context_.ToDevice(size.height_px)};
  ::AdjustWindowRectEx(&frame, styles.style, static_cast<BOOL>(menus_.has_value()),
                       styles.extended);
  ::SetWindowPos(native_, nullptr, 0, 0, frame.right - frame.left, frame.bottom - frame.top,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void WindowsWindow::BuildControls() {
  for (const Placement& placement : record_.Placements()) {
    const auto container = peer_of_.find(placement.container);
    std::unique_ptr<Peer> peer = MakePeer(
        context_, *this, placement, container == peer_of_.end() ? nullptr : container->second);
    peer_of_[placement.control] = peer.get();
    peers_.push_back(std::move(peer));
    for (Signal<>* signal :
         {&placement.control->Visible.Changed, &placement.control->Enabled.Changed}) {
      Follow(*signal, [this] { FollowReach(); });
    }
  }
  OrderScene(nullptr);
  CoverNatives();
  labels_ = LabelsOf(record_);
}

// A control lies above its container and above those that were placed before it there.
void WindowsWindow::OrderScene(const Control* container) {
  for (const Placement& placement : record_.Placements()) {
    if (placement.container != container) continue;
    auto* drawn = dynamic_cast<DrawnPeer*>(peer_of_.at(placement.control));
    if (drawn == nullptr) continue;
    scene_.push_back(drawn);
    OrderScene(placement.control);
  }
}

Peer* WindowsWindow::PeerOf(const Control& control) const {
  const auto found = peer_of_.find(&control);
  return found == peer_of_.end() ? nullptr : found->second;
}

NativePeer* WindowsWindow::NativePeerOf(HWND window) const {
  for (const auto& peer : peers_) {
    auto* native = dynamic_cast<NativePeer*>(peer.get());
    if (native != nullptr && native->Native() == window) return native;
  }
  return nullptr;
}

void WindowsWindow::FollowReach() {
  LeaveUnreachable();
  for (const auto& peer : peers_) peer->UpdateReach();
  CoverNatives();
}

// Whether something drawn lies over all of it: placed later than it, or than one of its
// containers, in the same place of the scene.
bool WindowsWindow::IsCovered(const Peer& peer) const {
  for (const Control* c = &peer.Record(); c != nullptr; c = c->Parent()) {
    bool is_above = false;
    for (const Placement& placement : record_.Placements()) {
      if (placement.container != c->Parent()) continue;
      if (placement.control == c) {
        is_above = true;
        continue;
      }
      const auto* drawn = dynamic_cast<const DrawnPeer*>(PeerOf(*placement.control));
      if (!is_above || drawn == nullptr || !drawn->IsShown()) continue;
      const RECT& over = drawn->SeenArea();
      const RECT& under = peer.SeenArea();
      if (over.left <= under.left && over.top <= under.top && over.right >= under.right &&
          over.bottom >= under.bottom) {
        return true;
      }
    }
  }
  return false;
}

// The system's controls would lie above all that is drawn.
void WindowsWindow::CoverNatives() {
  for (const auto& peer : peers_) {
    auto* native = dynamic_cast<NativePeer*>(peer.get());
    if (native != nullptr) native->SetCovered(IsCovered(*native));
  }
}

// What is brought up to date together.

void WindowsWindow::RequestSync() {
  if (sync_is_requested_) return;
  sync_is_requested_ = true;
  Later([this] { Sync(); });
}

void WindowsWindow::Sync() {
  sync_is_requested_ = false;
  // First, as the window may go out of sight in answer.
  EmitResized();
  const bool is_minimized = record_.State.Get() == WindowState::kMinimized;
  // A minimised window that isn't on the task bar is nowhere to be seen.
  const bool is_mapped = record_.Visible && !(is_minimized && !record_.InTaskBar);
  const Meanwhile applying(is_applying_, true);
  if (!is_mapped) {
    raise_is_requested_ = false;
    if (native_ != nullptr) ::ShowWindow(native_, SW_HIDE);
    return;
  }
  Build();
  ApplyTaskBar();
  ApplyAlpha();
  ApplyPosition();
  ApplyState();
  if (raise_is_requested_ && !is_minimized) BringForward();
  raise_is_requested_ = false;
}

void WindowsWindow::EmitResized() {
  if (record_.State.Get() == emitted_state_) return;
  emitted_state_ = record_.State;
  Report([this] { record_.Resized.Emit(); });
}

void WindowsWindow::ApplyTaskBar() {
  HWND const owner = record_.InTaskBar ? nullptr : UnseenOwner();
  if (::GetWindow(native_, GW_OWNER) == owner) return;
  // The task bar looks at it when a window is shown.
  ::ShowWindow(native_, SW_HIDE);
  ::SetWindowLongPtrW(native_, GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(owner));
}

void WindowsWindow::ApplyAlpha() {
  const int alpha = std::clamp(record_.Alpha.Get(), 0, 255);
  const LONG_PTR extended = ::GetWindowLongPtrW(native_, GWL_EXSTYLE);
  const bool is_layered = (extended & WS_EX_LAYERED) != 0;
  if (alpha == 255 && !is_layered) return;
  if (!is_layered) ::SetWindowLongPtrW(native_, GWL_EXSTYLE, extended | WS_EX_LAYERED);
  ::SetLayeredWindowAttributes(native_, 0, static_cast<BYTE>(alpha), LWA_ALPHA);
}

void WindowsWindow::ApplyPosition() {
  if (record_.Frame != WindowFrame::kPopup) {
    PlaceFirst();
    return;
  }
  const auto place = [this](int twips) {
    return ::MulDiv(twips, context_.dpi, 96 * kTwipsPerPixel);
  };
  ::SetWindowPos(native_, HWND_TOPMOST, place(record_.LeftTwips), place(record_.TopTwips), 0, 0,
                 SWP_NOSIZE | SWP_NOACTIVATE);
}

void WindowsWindow::PlaceFirst() {
  if (std::exchange(was_placed_, true)) return;
  RECT screen{};
  ::SystemParametersInfoW(SPI_GETWORKAREA, 0, &screen, 0);
  RECT own{};
  ::GetWindowRect(native_, &own);
  const LONG left = screen.left + (screen.right - screen.left - (own.right - own.left)) / 2;
  const LONG top = screen.top + (screen.bottom - screen.top - (own.bottom - own.top)) * 2 / 5;
  ::SetWindowPos(native_, nullptr, std::max(left, screen.left), std::max(top, screen.top), 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void WindowsWindow::ApplyState() {
  const bool wants_minimized = record_.State.Get() == WindowState::kMinimized;
  if (ordered_state_ != record_.State.Get() && wants_minimized != (::IsIconic(native_) != 0)) {
    ::ShowWindow(native_, wants_minimized ? SW_MINIMIZE : SW_RESTORE);
  }
  ordered_state_ = record_.State.Get();
  if (::IsWindowVisible(native_) != 0) return;
  // The first ShowWindow of a process takes the state that its starter wishes.
  const UINT activation = record_.Frame == WindowFrame::kPopup ? SWP_NOACTIVATE : 0U;
  ::SetWindowPos(native_, nullptr, 0, 0, 0, 0,
                 SWP_SHOWWINDOW | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | activation);
}

void WindowsWindow::BringForward() {
  if (record_.Frame == WindowFrame::kPopup) {
    ::SetWindowPos(native_, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  } else {
    ::SetForegroundWindow(native_);
    ::BringWindowToTop(native_);
  }
}

void WindowsWindow::ApplyIcon() {
  if (native_ == nullptr || record_.Icon.Get().empty()) return;
  constexpr int kMetrics[2][2] = {{SM_CXSMICON, SM_CYSMICON}, {SM_CXICON, SM_CYICON}};
  for (const WPARAM kind : {WPARAM{ICON_SMALL}, WPARAM{ICON_BIG}}) {
    HICON const icon = IconNamed(record_.Icon, kMetrics[kind][0], kMetrics[kind][1]);
    ::SendMessageW(native_, WM_SETICON, kind, reinterpret_cast<LPARAM>(icon));
    HICON const before = std::exchange(icons_[kind], icon);
    if (before != nullptr) ::DestroyIcon(before);
  }
}

void WindowsWindow::ApplyEnabled() {
  // The window takes no input, and looks as ever.
  if (native_ != nullptr) ::EnableWindow(native_, static_cast<BOOL>(TakesInput()));
}

// What the desktop does to it.

void WindowsWindow::ReportState() {
  const auto state = ::IsIconic(native_) != 0 ? WindowState::kMinimized : WindowState::kNormal;
  if (is_applying_ || ::IsWindowVisible(native_) == 0 || record_.State.Get() == state) return;
  ordered_state_ = state;
  Report([&] { record_.State = state; });
  EmitResized();
}

void WindowsWindow::ReportActivation() {
  if (::GetActiveWindow() != native_) return;
  Report([this] {
    if (record_.Focused() == nullptr) record_.FocusNext();
  });
  if (context_.desktop.ActiveWindow.Get() == &record_) return;
  Report([this] { context_.desktop.ActiveWindow = &record_; });
  Report([this] { record_.Activated.Emit(); });
}

void WindowsWindow::ReportOtherProgram() {
  if (context_.desktop.ActiveWindow.Get() != &record_) return;
  Report([this] { context_.desktop.ActiveWindow = nullptr; });
}

// The scene.

void WindowsWindow::Invalidate(const RECT& area) {
  if (native_ != nullptr) ::InvalidateRect(native_, &area, FALSE);
}

void WindowsWindow::FollowColors() {
  for (const auto& peer : peers_) peer->OnColors();
  if (native_ != nullptr) {
    ::RedrawWindow(native_, nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME | RDW_ALLCHILDREN);
  }
}

void WindowsWindow::PaintGround(Surface& surface) const {
  surface.Fill(surface.Area(), context_.colors.ground);
  if (IsFramed(record_.Frame)) return;
  RECT client{};
  ::GetClientRect(native_, &client);
  surface.Frame(client, context_.colors.panel_edge);
}

void WindowsWindow::PaintScene(Surface& surface, const RECT& area) const {
  PaintGround(surface);
  for (DrawnPeer* peer : scene_) {
    RECT part{};
    if (!peer->IsShown() || ::IntersectRect(&part, &peer->SeenArea(), &area) == 0) continue;
    surface.ClipTo(part);
    peer->Paint(surface);
  }
}

void WindowsWindow::PaintGroundOf(const Peer& peer, Surface& surface) const {
  PaintGround(surface);
  std::vector<DrawnPeer*> containers;
  for (const Control* c = peer.Record().Parent(); c != nullptr; c = c->Parent()) {
    if (auto* drawn = dynamic_cast<DrawnPeer*>(PeerOf(*c))) containers.push_back(drawn);
  }
  std::for_each(containers.rbegin(), containers.rend(), [&](DrawnPeer* c) { c->Paint(surface); });
}

void WindowsWindow::Paint() {
  PAINTSTRUCT paint{};
  HDC screen = ::BeginPaint(native_, &paint);
  const RECT& area = paint.rcPaint;
  // A failure must not keep the system asking for the same part for ever.
  const auto draw = [&] {
    if (::IsRectEmpty(&area) != 0) return;
    Surface surface(area);
    PaintScene(surface, area);
    surface.ClipTo(area);
    ::BitBlt(screen, area.left, area.top, area.right - area.left, area.bottom - area.top,
             surface.Dc(), area.left, area.top, SRCCOPY);
  };
  context_.loop.Deliver(draw);
  ::EndPaint(native_, &paint);
}

// Tool tips: one for what is drawn, whose text is asked for anew, and one for each of the
// system's controls.

void WindowsWindow::MakeTips() {
  tips_ = ::CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr,
                            WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, 0, 0, 0, 0, native_, nullptr,
                            ProgramModule(), nullptr);
  if (tips_ == nullptr) return;
  ::SendMessageW(tips_, TTM_SETMAXTIPWIDTH, 0, context_.ToDevice(400));
  const auto add = [this](HWND window) {
    TOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V2_SIZE;
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = native_;
    tool.uId = reinterpret_cast<UINT_PTR>(window);
    tool.lpszText = LPSTR_TEXTCALLBACKW;
    ::SendMessageW(tips_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
  };
  add(native_);
  for (const auto& peer : peers_) {
    if (auto* native = dynamic_cast<NativePeer*>(peer.get())) add(native->Native());
  }
}

LRESULT WindowsWindow::ServeNotice(NMHDR& header) {
  if (header.hwndFrom == tips_ && header.code == TTN_GETDISPINFOW) {
    auto& tip = reinterpret_cast<NMTTDISPINFOW&>(header);
    Peer* peer = NativePeerOf(reinterpret_cast<HWND>(header.idFrom));
    if (peer == nullptr) peer = over_;
    static std::wstring text;
    text = peer == nullptr ? std::wstring() : ToShown(peer->Tip());
    tip.lpszText = text.data();
    return 0;
  }
  NativePeer* peer = NativePeerOf(header.hwndFrom);
  return peer == nullptr ? 0 : peer->OnNotify(header);
}

LRESULT WindowsWindow::ServeCommand(WPARAM first, LPARAM second) {
  if (second == 0 && menus_) menus_->OnCommand(LOWORD(first));
  if (NativePeer* peer = NativePeerOf(reinterpret_cast<HWND>(second)))
    peer->OnCommand(HIWORD(first));
  return 0;
}

LRESULT WindowsWindow::ServeColor(UINT message, WPARAM first, LPARAM second) {
  NativePeer* peer = NativePeerOf(reinterpret_cast<HWND>(second));
  HBRUSH const brush = peer == nullptr ? nullptr : peer->OnColor(reinterpret_cast<HDC>(first));
  return brush != nullptr ? reinterpret_cast<LRESULT>(brush)
                          : ::DefWindowProcW(native_, message, first, second);
}

LRESULT CALLBACK WindowsWindow::Procedure(HWND window, UINT message, WPARAM first,
                                          LPARAM second) noexcept {
  auto* self = reinterpret_cast<WindowsWindow*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
  if (self == nullptr || self->context_.ending) {
    return ::DefWindowProcW(window, message, first, second);
  }
  LRESULT result = 0;
  // As a handler of the loop's, so that nobody deletes the window while it is within.
  self->context_.loop.Deliver([&] { result = self->Serve(message, first, second); });
  return result;
}

LRESULT WindowsWindow::Serve(UINT message, WPARAM first, LPARAM second) {
  if (IsMouse(message)) {
    ServeMouse(message, first, second);
    return 0;
  }
  if (IsKey(message) && ServeDrawnKey(message, first, second)) return 0;
  switch (message) {
    case WM_PAINT:
      Paint();
      return 0;
    case WM_GETOBJECT:
      if (WantsClientObject(second)) return SceneForReaders(*this, first);
      break;
    case WM_ERASEBKGND:
      return 1;
    case WM_CLOSE:
      if (TakesInput()) Report([this] { record_.Close(); });
      return 0;
    case WM_SIZE:
      ReportState();
      return 0;
    case WM_ACTIVATE:
      // Handlers may show boxes, which the system doesn't allow here.
      if (LOWORD(first) != WA_INACTIVE) Later([this] { ReportActivation(); });
      break;
    case WM_ACTIVATEAPP:
      if (first == 0) Later([this] { ReportOtherProgram(); });
      break;
    case WM_MOUSEACTIVATE:
      if (record_.Frame == WindowFrame::kPopup) return MA_NOACTIVATE;
      break;
    case WM_SETFOCUS:
      ShowFocus();
      return 0;
    case WM_KILLFOCUS:
      MarkFocused(nullptr);
      return 0;
    case WM_MOUSELEAVE:
      ServeMouseLeave();
      return 0;
    case WM_CAPTURECHANGED:
      ServeLostCapture();
      return 0;
    case WM_SETCURSOR:
      if (ServePointer(reinterpret_cast<HWND>(first), LOWORD(second))) return 1;
      break;
    case WM_COMMAND:
      return ServeCommand(first, second);
    case WM_NOTIFY:
      return ServeNotice(*reinterpret_cast<NMHDR*>(second));
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
    case WM_CTLCOLORSTATIC:
      return ServeColor(message, first, second);
    default:
      break;
  }
  return ::DefWindowProcW(native_, message, first, second);
}

// Screen readers.

std::string WindowsWindow::NameForReaders(const Peer& peer) const {
  const auto label = labels_.find(&peer.Record());
  return tarnvale::NameForReaders(peer.Record(), label == labels_.end() ? nullptr : label->second);
}

LONG WindowsWindow::NumberForReaders(const Peer& peer) const {
  const auto found = std::find_if(peers_.begin(), peers_.end(),
                                  [&](const auto& known) { return known.get() == &peer; });
  return static_cast<LONG>(found - peers_.begin()) + 1;
}

Peer* WindowsWindow::At(POINT at) const {
  const auto found = std::find_if(peers_.begin(), peers_.end(), [&](const auto& peer) {
    return dynamic_cast<NativePeer*>(peer.get()) != nullptr && peer->IsShown() &&
           ::PtInRect(&peer->SeenArea(), at) != 0;
  });
  return found != peers_.end() ? found->get() : DrawnAt(at);
}

bool WindowsWindow::PressForReaders(DrawnPeer& peer) {
  if (!peer.CanBePressed() || !peer.IsShown() || !peer.IsUsable() || !TakesInput()) return false;
  Later([this, &peer] {
    if (peer.IsShown() && peer.IsUsable() && TakesInput()) peer.PressForReaders();
  });
  return true;
}

void WindowsWindow::FocusForReaders(Peer& peer) {
  Later([this, &peer] {
    if (TakesInput()) record_.Focus(peer.Record());
  });
}

void WindowsWindow::NotifyReaders(DWORD event, const Peer& peer) const {
  if (native_ != nullptr) ::NotifyWinEvent(event, native_, OBJID_CLIENT, NumberForReaders(peer));
}

void WindowsWindow::Report(const std::function<void()>& handler) {
  if (!context_.ending) context_.loop.Deliver(handler);
}

void WindowsWindow::Later(std::function<void()> job) {
  context_.loop.Post([this, alive = alive_, job = std::move(job)] {
    if (*alive && !context_.ending) job();
  });
}

}  // namespace tarnvale
